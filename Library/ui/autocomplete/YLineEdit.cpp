#include "autocomplete/YLineEdit.h"

#include "autocomplete/LineEditImages.h"

#include <imm.h>

#include <string_view>
#include <utility>

IMPLEMENT_DYNAMIC(YLineEdit, CBCGPEdit)

namespace {

// Posted to ourselves.
constexpr UINT restorePlaceholderMessage = WM_USER + 1;
constexpr UINT finishInitialisationMessage = WM_USER + 2;

constexpr COLORREF hintColor = RGB(128, 128, 128);

std::wstring_view TextOrEmpty(const wchar_t* text)
{
    return text != nullptr ? text : std::wstring_view();
}

// Whether the host, which hears of every change, has ended the edit while a call was out.
bool IsGone(HWND handle, const YLineEdit* edit)
{
    return CWnd::FromHandlePermanent(handle) != edit;
}

}  // namespace

// While it lives, what changes in the edit is the control's own writing.
class YLineEdit::WritingText
{
public:
    explicit WritingText(YLineEdit& writer)
        : edit(writer), handle(writer.m_hWnd), before(std::exchange(writer.settingText, true))
    {}
    ~WritingText()
    {
        if (!IsGone(handle, &edit)) {
            edit.settingText = before;
        }
    }
    WritingText(const WritingText&) = delete;
    WritingText& operator=(const WritingText&) = delete;

private:
    YLineEdit& edit;
    HWND handle;
    bool before;
};

BEGIN_MESSAGE_MAP(YLineEdit, CBCGPEdit)
    ON_WM_CTLCOLOR_REFLECT()
    ON_WM_KEYDOWN()
    ON_WM_CHAR()
    ON_MESSAGE(WM_PASTE, &YLineEdit::OnPaste)
    ON_MESSAGE(EM_REPLACESEL, &YLineEdit::OnReplaceSelection)
    ON_MESSAGE(WM_IME_NOTIFY, &YLineEdit::OnImeNotify)
    ON_WM_SETFOCUS()
    ON_WM_KILLFOCUS()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONDBLCLK()
    ON_WM_MOUSEMOVE()
    ON_WM_NCPAINT()
    ON_MESSAGE(restorePlaceholderMessage, &YLineEdit::OnRestorePlaceholder)
    ON_MESSAGE(finishInitialisationMessage, &YLineEdit::OnFinishInitialisation)
END_MESSAGE_MAP()

YLineEdit::YLineEdit() = default;
YLineEdit::~YLineEdit() = default;

BOOL YLineEdit::Create(CWnd* parent, const CRect& place, unsigned id, const wchar_t* hint,
                       IconType icon)
{
    placeholder = TextOrEmpty(hint);
    iconType = icon;
    return CBCGPEdit::Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, place, parent,
                             id) &&
           PostMessage(finishInitialisationMessage);
}

LRESULT YLineEdit::OnFinishInitialisation(WPARAM, LPARAM)
{
    InitControl(std::wstring(placeholder).c_str(), iconType);
    return 0;
}

void YLineEdit::InitControl(const wchar_t* hint, IconType icon)
{
    const HWND handle = m_hWnd;
    placeholder = TextOrEmpty(hint);
    iconType = icon;
    WritePlaceholder();
    if (IsGone(handle, this)) {
        return;
    }
    if (iconType != NoButton) {
        EnableBrowseButton();
    }
    if (iconType == SearchButton) {
        UpdateSearchIcon();
    } else if (iconType == BrowseButton) {
        ShowImage(LINE_EDIT_IMAGE_BROWSE);
    }
    CreateTooltips();
    settingText = false;
}

void YLineEdit::SetPlaceholderText(const wchar_t* hint)
{
    placeholder = TextOrEmpty(hint);
}

YUnicodeString YLineEdit::GetText() const
{
    CString text;
    GetWindowText(text);
    return text == placeholder.c_str() ? YUnicodeString() : YUnicodeString(text);
}

bool YLineEdit::IsPlaceholderText() const
{
    CString text;
    GetWindowText(text);
    return text == placeholder.c_str();
}

void YLineEdit::Clear()
{
    SetWindowText(hasFocus ? L"" : placeholder.c_str());
}

// Leaves settingText set: what is put in next is no change to react to, until the restoring message.
bool YLineEdit::ClearPlaceholder()
{
    if (!IsPlaceholderText()) {
        return false;
    }
    settingText = true;
    SetWindowText(L"");
    return true;
}

void YLineEdit::WritePlaceholder()
{
    const WritingText writing(*this);
    SetWindowText(placeholder.c_str());
}

void YLineEdit::WritePlaceholderIfEmpty()
{
    if (GetWindowTextLength() == 0 && !placeholder.empty()) {  // else the parent would hear of it
        WritePlaceholder();
    }
}

LRESULT YLineEdit::OnRestorePlaceholder(WPARAM, LPARAM)
{
    const HWND handle = m_hWnd;
    WritePlaceholderIfEmpty();
    if (!IsGone(handle, this)) {
        settingText = false;
    }
    return 0;
}

// By reflection from inside the notification, so that the parent hears of the change as well.
BOOL YLineEdit::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    if (message == WM_COMMAND && HIWORD(wParam) == EN_CHANGE && !settingText) {
        const HWND handle = m_hWnd;
        OnChange();
        if (IsGone(handle, this)) {
            return TRUE;
        }
    }
    return CBCGPEdit::OnChildNotify(message, wParam, lParam, result);
}

void YLineEdit::OnChange()
{
    UpdateSearchIcon();
    WritePlaceholderIfEmpty();
}

void YLineEdit::OnChar(UINT character, UINT repetitions, UINT flags)
{
    const HWND handle = m_hWnd;
    ClearPlaceholder();
    if (!IsGone(handle, this)) {
        CBCGPEdit::OnChar(character, repetitions, flags);
    }
    if (!IsGone(handle, this)) {
        UpdateSearchIcon();
        PostMessage(restorePlaceholderMessage);
    }
}

void YLineEdit::OnKeyDown(UINT key, UINT repetitions, UINT flags)
{
    if (IsComposing()) {  // the key is the input method's, and so is the place of the caret
        CBCGPEdit::OnKeyDown(key, repetitions, flags);
        return;
    }
    const HWND handle = m_hWnd;
    ClearPlaceholder();
    if (!IsGone(handle, this)) {
        CBCGPEdit::OnKeyDown(key, repetitions, flags);
    }
    if (!IsGone(handle, this)) {
        PostMessage(restorePlaceholderMessage);
    }
}

bool YLineEdit::IsComposing() const
{
    const HIMC context = ::ImmGetContext(m_hWnd);
    if (context == nullptr) {
        return false;
    }
    const LONG bytes = ::ImmGetCompositionStringW(context, GCS_COMPSTR, nullptr, 0);
    ::ImmReleaseContext(m_hWnd, context);
    return bytes > 0;
}

// What comes in is a change to react to: no message restores afterwards.
void YLineEdit::ClearPlaceholderBeforeInsertion()
{
    const HWND handle = m_hWnd;
    if (ClearPlaceholder() && !IsGone(handle, this)) {
        settingText = false;
    }
}

LRESULT YLineEdit::OnPaste(WPARAM wParam, LPARAM lParam)
{
    return OnReplaceSelection(wParam, lParam);
}

// Drops and some menus insert in this way. Where there was nothing to insert, nothing has changed,
// and nobody else would bring the hint back (tests: PasteOfNothing, DropOfNothing).
LRESULT YLineEdit::OnReplaceSelection(WPARAM, LPARAM)
{
    const HWND handle = m_hWnd;
    ClearPlaceholderBeforeInsertion();
    const LRESULT answer = IsGone(handle, this) ? 0 : Default();
    if (!IsGone(handle, this)) {
        WritePlaceholderIfEmpty();
    }
    return answer;
}

LRESULT YLineEdit::OnImeNotify(WPARAM wParam, LPARAM)
{
    const HWND handle = m_hWnd;
    if (wParam == IMN_OPENCANDIDATE) {
        ClearPlaceholderBeforeInsertion();
    }
    return IsGone(handle, this) ? 0 : Default();
}

void YLineEdit::OnSetFocus(CWnd* previous)
{
    const HWND handle = m_hWnd;
    hasFocus = true;
    const bool wasCleared = ClearPlaceholder();
    if (!IsGone(handle, this)) {
        CBCGPEdit::OnSetFocus(previous);
    }
    if (wasCleared && !IsGone(handle, this)) {
        PostMessage(restorePlaceholderMessage);
    }
}

void YLineEdit::OnKillFocus(CWnd* next)
{
    const HWND handle = m_hWnd;
    hasFocus = false;
    WritePlaceholderIfEmpty();
    if (!IsGone(handle, this)) {
        CBCGPEdit::OnKillFocus(next);
    }
}

// The hint can neither be selected nor be split by the caret.
void YLineEdit::OnLButtonDown(UINT flags, CPoint point)
{
    if (!IsHintUnderHand()) {
        CBCGPEdit::OnLButtonDown(flags, point);
    }
}

void YLineEdit::OnLButtonDblClk(UINT flags, CPoint point)
{
    if (!IsHintUnderHand()) {
        CBCGPEdit::OnLButtonDblClk(flags, point);
    }
}

void YLineEdit::OnMouseMove(UINT flags, CPoint point)
{
    if ((flags & MK_LBUTTON) == 0 || !IsHintUnderHand()) {
        CBCGPEdit::OnMouseMove(flags, point);
    }
}

HBRUSH YLineEdit::CtlColor(CDC* dc, UINT kind)
{
    const HBRUSH brush = CBCGPEdit::CtlColor(dc, kind);
    if (!IsPlaceholderText()) {
        return brush;
    }
    dc->SetTextColor(hintColor);
    if (DYNAMIC_DOWNCAST(CBCGPToolBar, GetParent()) != nullptr) {
        return brush;
    }
    dc->SetBkColor(::GetSysColor(COLOR_WINDOW));
    return ::GetSysColorBrush(COLOR_WINDOW);
}

void YLineEdit::OnBrowse()
{
    const HWND handle = m_hWnd;
    CBCGPEdit::OnBrowse();
    if (!IsGone(handle, this) && !GetText().IsEmpty()) {
        SetWindowText(L"");
    }
}
