#include "controls/YListButtons.h"

#include "YModule.h"
#include "YUniqueHandle.h"
#include "controls/ListIcons.h"

#include <afxwin.h>

namespace {

struct IconTraits
{
    using Handle = HICON;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle icon) noexcept { ::DestroyIcon(icon); }
};

// The button draws from a copy of its own; the icon is not its property.
void SetIcon(CWnd* button, int id, int pixels)
{
    if (!button) {
        return;
    }
    const YUniqueHandle<IconTraits> icon(static_cast<HICON>(::LoadImageW(
        YGetLibraryModule(), MAKEINTRESOURCEW(id), IMAGE_ICON, pixels, pixels, LR_DEFAULTCOLOR)));
    button->SendMessage(BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon.Get()));
}

bool HasFocus(const CWnd* button)
{
    return ::GetFocus() == button->m_hWnd;
}

}  // namespace

void InitializeUpDownButtons(CWnd* up, CWnd* down, bool large)
{
    const int small = ::GetSystemMetrics(SM_CXSMICON);
    const int pixels = large ? small * 3 / 2 : small;
    SetIcon(up, large ? IDI_MOVE_UP_LARGE : IDI_MOVE_UP, pixels);
    SetIcon(down, large ? IDI_MOVE_DOWN_LARGE : IDI_MOVE_DOWN, pixels);
}

void EnableUpDownButtons(CWnd* up, CWnd* down, bool enable, int selectionIndex, int itemCount)
{
    if (!up) {
        return;
    }
    const bool canGoUp = enable && selectionIndex > 0;
    const bool canGoDown = enable && selectionIndex >= 0 && selectionIndex != itemCount - 1;
    CWnd* next = nullptr;  // to have the focus
    if (down && HasFocus(up) && !canGoUp) {
        next = down;
    } else if (down && HasFocus(down) && !canGoDown) {
        next = up;
    }
    EnableButton(up, canGoUp);
    EnableButton(down, canGoDown);
    if (next) {  // only now: a disabled window cannot have it
        next->SetFocus();
    }
}

void EnableButton(CWnd* button, bool enable)
{
    if (button) {
        button->EnableWindow(enable);
    }
}
