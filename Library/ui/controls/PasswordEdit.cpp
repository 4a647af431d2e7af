#include "controls/PasswordEdit.h"

#include "controls/CleanSensitiveDataEdit.h"
#include "controls/IPasswordEditSink.h"

#include <utility>

IMPLEMENT_DYNAMIC(PasswordEdit, CEdit)

BEGIN_MESSAGE_MAP(PasswordEdit, CEdit)
    ON_WM_SETFOCUS()
    ON_WM_KILLFOCUS()
    ON_CONTROL_REFLECT(EN_CHANGE, &PasswordEdit::OnEnChange)
    ON_WM_LBUTTONDOWN()
    ON_WM_DESTROY()
END_MESSAGE_MAP()

namespace {

constexpr wchar_t placeholder[] = L"********";

// Whether the host, which hears of everything, has ended the edit while a call was out.
bool IsGone(HWND handle, const PasswordEdit* edit)
{
    return CWnd::FromHandlePermanent(handle) != edit;
}

}  // namespace

PasswordEdit::PasswordEdit(IPasswordEditSink* initialSink) : sink(initialSink) {}

// An object that goes before its window would take the handler with it that overwrites the text. The
// window loses the focus on the way, but sink and string may have gone by now.
PasswordEdit::~PasswordEdit()
{
    sink = nullptr;
    associatedString = nullptr;
    CEdit::DestroyWindow();
}

void PasswordEdit::SetPseudoPassword()
{
    SetStandIn(placeholder);
}

// The string comes first: whoever is notified finds both alike.
bool PasswordEdit::SetPassword(const YUnicodeString& text)
{
    const HWND handle = m_hWnd;
    if (associatedString) {
        *associatedString = text;
    }
    SetWindowText(text.c_str());
    return !IsGone(handle, this);
}

// Our own writing is a change as any other, and takes the flag away: it is put back.
bool PasswordEdit::SetStandIn(const YUnicodeString& text)
{
    if (!SetPassword(text)) {
        return false;
    }
    placeholderShown = true;
    return true;
}

bool PasswordEdit::HidePlaceholder()
{
    return !placeholderShown || SetStandIn(L"");
}

bool PasswordEdit::ShowPlaceholder()
{
    return !placeholderShown || SetStandIn(placeholder);
}

void PasswordEdit::MarkChanged()
{
    placeholderShown = false;
    touched = true;
}

void PasswordEdit::OnSetFocus(CWnd* previous)
{
    const HWND handle = m_hWnd;
    CEdit::OnSetFocus(previous);
    if (!IsGone(handle, this) && HidePlaceholder() && sink) {
        sink->OnSetFocusPassword(this);
    }
}

void PasswordEdit::OnKillFocus(CWnd* next)
{
    const HWND handle = m_hWnd;
    CEdit::OnKillFocus(next);
    if (!IsGone(handle, this) && ShowPlaceholder() && sink) {
        sink->OnKillFocusPassword(this);
    }
}

void PasswordEdit::OnEnChange()
{
    MarkChanged();
    if (sink) {
        sink->OnEnChangePassword(this);
    }
}

// A second click places the caret only in what the user has typed: in asterisks, or in a text that
// the dialog came with, there is nothing to be mended, only to be replaced.
void PasswordEdit::OnLButtonDown(UINT flags, CPoint point)
{
    const HWND handle = m_hWnd;
    CEdit::OnLButtonDown(flags, point);
    if (!IsGone(handle, this) && !GetTouched()) {
        SetSel(0, -1);
    }
}

// The dialog may ask for GetTouched after it has closed, and its sink may be half gone by now: the
// overwriting is no change to tell of.
void PasswordEdit::OnDestroy()
{
    IPasswordEditSink* const told = std::exchange(sink, nullptr);
    const bool wasPlaceholderShown = placeholderShown;
    const bool wasTouched = touched;
    CleanSensitiveDataEdit(this);
    sink = told;
    placeholderShown = wasPlaceholderShown;
    touched = wasTouched;
    CEdit::OnDestroy();
}
