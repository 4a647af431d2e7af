// The line edit's button and its tooltips, and the keys of an edit in a toolbar.
#include "YInput.h"
#include "YMessages.h"
#include "YModule.h"
#include "YReportMessageParams.h"
#include "autocomplete/LineEditImages.h"
#include "autocomplete/YLineEdit.h"

#include <algorithm>
#include <utility>

namespace {

constexpr UINT_PTR buttonTool = 1;

bool HasColourImages()
{
    return globalData.m_bUseBuiltIn32BitIcons && globalData.m_nBitsPerPixel >= 16;
}

unsigned ChooseSize(CWnd& window)
{
    const CClientDC dc(&window);
    const int dpi = dc.GetDeviceCaps(LOGPIXELSX);
    if (dpi >= 192) {
        return LINE_EDIT_IMAGES_AT_192_DPI;
    }
    return dpi >= 144 ? LINE_EDIT_IMAGES_AT_144_DPI : 0;
}

// The program's own image, if it has one. As a section: another bitmap need not keep the alpha.
HBITMAP LoadButtonImage(unsigned id)
{
    for (const HINSTANCE module : {::AfxGetResourceHandle(), HINSTANCE{YGetLibraryModule()}}) {
        if (const HANDLE image = ::LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0,
                                              LR_CREATEDIBSECTION)) {
            return static_cast<HBITMAP>(image);
        }
    }
    return nullptr;
}

// What the keys of an edit mean in a toolbar, whose frame would else take them for its own.
struct EditKey
{
    UINT key;
    bool ctrl;
    bool shift;
    UINT message;
    LPARAM selectionEnd;  // of EM_SETSEL: -1 is all of the text
};

constexpr EditKey editKeys[] = {
    {'C', true, false, WM_COPY, 0},  {VK_INSERT, true, false, WM_COPY, 0},
    {'X', true, false, WM_CUT, 0},   {VK_DELETE, false, true, WM_CUT, 0},
    {'V', true, false, WM_PASTE, 0}, {VK_INSERT, false, true, WM_PASTE, 0},
    {'Z', true, false, WM_UNDO, 0},  {'A', true, false, EM_SETSEL, -1},
};

const EditKey* FindEditKey(UINT key)
{
    const bool ctrl = IsKeyModifierPressed(VK_CONTROL);
    const bool shift = IsKeyModifierPressed(VK_SHIFT);
    if (IsKeyModifierPressed(VK_MENU)) {  // with Ctrl a third level of the keyboard: a character
        return nullptr;
    }
    const auto* const found =
        std::find_if(std::begin(editKeys), std::end(editKeys), [=](const EditKey& candidate) {
            return candidate.key == key && candidate.ctrl == ctrl && candidate.shift == shift;
        });
    return found == std::end(editKeys) ? nullptr : found;
}

bool IsMouseMessage(UINT message)
{
    return (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
           (message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK);
}

}  // namespace

void YLineEdit::UpdateSearchIcon()
{
    if (iconType != SearchButton) {
        return;
    }
    const bool hasColours = HasColourImages();
    if (GetText().IsEmpty()) {
        ShowImage(hasColours ? LINE_EDIT_IMAGE_SEARCH_COLOUR : LINE_EDIT_IMAGE_SEARCH);
    } else {
        ShowImage(hasColours ? LINE_EDIT_IMAGE_CLEAR_COLOUR : LINE_EDIT_IMAGE_CLEAR);
    }
}

void YLineEdit::ShowImage(unsigned id)
{
    if (id == currentImage) {
        return;
    }
    currentImage = id;
    SetBrowseButtonImage(LoadButtonImage(id + ChooseSize(*this)));
    RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_UPDATENOW);
}

void YLineEdit::CreateTooltips()
{
    const std::pair<CToolTipCtrl*, unsigned> tooltips[] = {{&searchTooltip, MSG_SEARCH},
                                                           {&clearTooltip, MSG_CLEAR}};
    for (const auto& [tooltip, text] : tooltips) {
        if (tooltip->GetSafeHwnd() == nullptr && tooltip->Create(this)) {
            tooltip->AddTool(this, YReportMessageParams(text).GetTrimmedTextSingleLine(),
                             &m_rectBtn, buttonTool);
            tooltip->Activate(TRUE);
        }
    }
}

CToolTipCtrl& YLineEdit::GetTooltip()
{
    return GetText().IsEmpty() ? searchTooltip : clearTooltip;
}

void YLineEdit::OnNcPaint()
{
    CToolTipCtrl& tooltip = GetTooltip();
    if (tooltip.GetSafeHwnd() != nullptr) {
        tooltip.SetToolRect(this, buttonTool, &m_rectBtn);
    }
    CBCGPEdit::OnNcPaint();
}

BOOL YLineEdit::PreTranslateMessage(MSG* message)
{
    if (IsMouseMessage(message->message)) {
        RelayToTooltip(*message);
    }
    if (message->message == WM_KEYDOWN && hasFocus &&
        DYNAMIC_DOWNCAST(CBCGPToolBar, GetParent()) != nullptr &&
        ProcessEditKey(static_cast<UINT>(message->wParam))) {
        return TRUE;
    }
    return CBCGPEdit::PreTranslateMessage(message);
}

// The button lies in the frame, and a tooltip knows messages of the client area only.
void YLineEdit::RelayToTooltip(const MSG& message)
{
    CToolTipCtrl& tooltip = iconType != NoButton ? GetTooltip() : searchTooltip;
    if (tooltip.GetSafeHwnd() == nullptr) {
        return;
    }
    MSG relayed = message;
    if (message.message < WM_MOUSEFIRST) {
        CPoint point(message.lParam);
        ScreenToClient(&point);
        relayed.message += WM_MOUSEFIRST - WM_NCMOUSEMOVE;
        relayed.wParam = 0;
        relayed.lParam = MAKELPARAM(point.x, point.y);
    }
    tooltip.RelayEvent(&relayed);
}

bool YLineEdit::ProcessEditKey(UINT key)
{
    const EditKey* const found = FindEditKey(key);
    if (found == nullptr) {
        return false;
    }
    // The hint is no text: only pasting, which removes it, has something to do there.
    if (!IsPlaceholderText() || found->message == WM_PASTE) {
        SendMessage(found->message, 0, found->selectionEnd);
    }
    return true;
}
