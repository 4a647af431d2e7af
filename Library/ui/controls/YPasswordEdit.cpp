#include "controls/YPasswordEdit.h"

#include "YInput.h"
#include "controls/CleanSensitiveDataEdit.h"

IMPLEMENT_DYNAMIC(YPasswordEdit, CEdit)

BEGIN_MESSAGE_MAP(YPasswordEdit, CEdit)
    ON_WM_KEYDOWN()
    ON_WM_CHAR()
    ON_WM_DESTROY()
END_MESSAGE_MAP()

namespace {

constexpr UINT lastControl = 31;
constexpr UINT backspace = 8;
constexpr UINT paste = 22;  // Ctrl+V

bool IsTypedLiterally(UINT character)
{
    return character != 0 && character <= lastControl && character != backspace &&
           character != paste;
}

}  // namespace

// An object that goes before its window would take the handler with it that overwrites the text.
YPasswordEdit::~YPasswordEdit()
{
    CEdit::DestroyWindow();
}

// The system's edit acts on Ctrl+A when the key goes down: all would be selected by the time that its
// character came, and be replaced by it. With Alt the key is a letter of some keyboards.
void YPasswordEdit::OnKeyDown(UINT key, UINT repetitions, UINT flags)
{
    const bool isShortcut = key >= 'A' && key <= 'Z' && IsKeyModifierPressed(VK_CONTROL) &&
                            !IsKeyModifierPressed(VK_MENU);
    if (!isShortcut) {
        CEdit::OnKeyDown(key, repetitions, flags);
    }
}

// The edit itself puts the character in the place of the selection, and the caret behind it: a new
// text composed here would be a copy of the password, and longer than the edit's limit allows.
// Nothing of it can be undone, so the edit keeps no copy of what was replaced either.
void YPasswordEdit::OnChar(UINT character, UINT repetitions, UINT flags)
{
    const bool takesText = (GetStyle() & ES_READONLY) == 0;
    if (!takesText || !IsTypedLiterally(character)) {
        CEdit::OnChar(character, repetitions, flags);
        return;
    }
    const HWND handle = m_hWnd;
    const wchar_t text[] = {static_cast<wchar_t>(character), 0};
    ReplaceSel(text);
    ::SendMessageW(handle, EM_SCROLLCARET, 0, 0);  // the host has heard: the object may be gone
}

void YPasswordEdit::OnDestroy()
{
    CleanSensitiveDataEdit(this);
    CEdit::OnDestroy();
}
