#include "controls/YStaticURL.h"

#include "YAccessibleAnswer.h"
#include "YMessages.h"
#include "YOpenUrl.h"
#include "YReportMessageParams.h"
#include "controls/IStaticUrlSink.h"
#include "textview/YClipboard.h"

#include <algorithm>
#include <string>

namespace {

constexpr UINT openCommand = 32800;
constexpr UINT copyCommand = 32801;
constexpr COLORREF linkColor = RGB(0, 0, 238);
constexpr int focusDistance = 2;  // pixels, between text and rectangle

CString LoadText(unsigned id)
{
    CString text;
    text.LoadString(id);
    return text;
}

}  // namespace

IMPLEMENT_DYNAMIC(YStaticURL, CStatic)

BEGIN_MESSAGE_MAP(YStaticURL, CStatic)
    ON_WM_CTLCOLOR_REFLECT()
    ON_CONTROL_REFLECT(STN_CLICKED, &YStaticURL::OnClicked)
    ON_WM_CONTEXTMENU()
    ON_WM_SETFOCUS()
    ON_WM_KILLFOCUS()
    ON_WM_PAINT()
    ON_WM_SETCURSOR()
    ON_COMMAND(openCommand, &YStaticURL::OnURLContextOpen)
    ON_COMMAND(copyCommand, &YStaticURL::OnURLContextCopy)
END_MESSAGE_MAP()

YStaticURL::YStaticURL(unsigned textResourceId, int cursorResourceId, IStaticUrlSink* sink)
    : YStaticURL(LoadText(textResourceId).GetString(), cursorResourceId, sink)
{}

YStaticURL::YStaticURL(const wchar_t* text, int cursorResourceId, IStaticUrlSink* sink)
    : linkText(text), cursorId(cursorResourceId), urlSink(sink)
{
    EnableActiveAccessibility();
}

YStaticURL::~YStaticURL() = default;

void YStaticURL::PreSubclassWindow()
{
    ModifyStyle(0, SS_NOTIFY | WS_TABSTOP);
    if (!handCursor) {
        handCursor = ::LoadCursorW(::AfxGetResourceHandle(), MAKEINTRESOURCEW(cursorId));
    }
    if (!handCursor) {
        handCursor = ::LoadCursorW(nullptr, IDC_HAND);
    }
    centered = (GetStyle() & SS_TYPEMASK) == SS_CENTER;
    UnderlineFont();
    CStatic::PreSubclassWindow();
}

// Without a font of its own a control writes in the system's.
void YStaticURL::UnderlineFont()
{
    HGDIOBJ font = reinterpret_cast<HGDIOBJ>(SendMessage(WM_GETFONT));
    if (!font) {
        font = ::GetStockObject(SYSTEM_FONT);
    }
    LOGFONTW description{};
    ::GetObjectW(font, sizeof description, &description);
    description.lfUnderline = TRUE;
    underlinedFont.DeleteObject();
    if (underlinedFont.CreateFontIndirect(&description)) {
        SetFont(&underlinedFont);
    }
}

// Colours and cursor

HBRUSH YStaticURL::CtlColor(CDC* dc, UINT)
{
    dc->SetTextColor(linkColor);
    dc->SetBkMode(TRANSPARENT);
    return static_cast<HBRUSH>(::GetStockObject(HOLLOW_BRUSH));
}

BOOL YStaticURL::OnSetCursor(CWnd* window, UINT hitTest, UINT message)
{
    if (hitTest != HTCLIENT) {
        return CStatic::OnSetCursor(window, hitTest, message);
    }
    ::SetCursor(handCursor);
    return TRUE;
}

// Use

void YStaticURL::OnClicked()
{
    Open();
}

// The dialog would act on Return as soon as it is pressed, so it never sees the press; the link opens
// at the release, as a button does for Space.
BOOL YStaticURL::PreTranslateMessage(MSG* message)
{
    const bool isKey =
        message->hwnd == m_hWnd && (message->wParam == VK_SPACE || message->wParam == VK_RETURN);
    if (isKey && message->message == WM_KEYDOWN) {
        return TRUE;
    }
    if (isKey && message->message == WM_KEYUP) {
        Open();
        return TRUE;
    }
    return CStatic::PreTranslateMessage(message);
}

// Messages are handled while the shell works, and the sink may do what it likes: the link may be gone
// after either.
void YStaticURL::Open()
{
    const HWND handle = m_hWnd;
    const YUnicodeString address = linkText;
    OpenURLWithoutConfig(address);
    if (FromHandlePermanent(handle) == this && urlSink) {
        urlSink->OnURLOpened();
    }
}

void YStaticURL::OnContextMenu(CWnd*, CPoint)
{
    const YReportMessageParams open(MSG_OPEN_LINK);
    const YReportMessageParams copy(MSG_COPY_SHORTCUT);
    CMenu menu;
    menu.CreatePopupMenu();
    menu.AppendMenu(MF_STRING, openCommand, open.GetTrimmedText());
    menu.AppendMenu(MF_SEPARATOR);
    menu.AppendMenu(MF_STRING, copyCommand, copy.GetTrimmedText());
    menu.SetDefaultItem(openCommand);
    CPoint cursor;
    ::GetCursorPos(&cursor);
    menu.TrackPopupMenu(TPM_LEFTALIGN | TPM_RIGHTBUTTON, cursor.x, cursor.y, this);
}

void YStaticURL::OnURLContextOpen()
{
    Open();
}

void YStaticURL::OnURLContextCopy()
{
    YCopyTextToClipboard(linkText.c_str());
}

// Focus

void YStaticURL::OnSetFocus(CWnd* previous)
{
    CStatic::OnSetFocus(previous);
    if (IsWindowVisible()) {
        // What is still to be painted would paint over the rectangle. Our own painting draws it.
        GetParent()->RedrawWindow(nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        if (!focusDrawn) {
            DrawFocus();
        }
    }
}

void YStaticURL::OnKillFocus(CWnd* next)
{
    CStatic::OnKillFocus(next);
    if (focusDrawn) {
        DrawFocus();
        // Where something was painted over it meanwhile, it has just come back.
        const CRect place = GetFocusRect();
        GetParent()->RedrawWindow(&place, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    }
}

// A dialog gives the focus before it is seen.
void YStaticURL::OnPaint()
{
    CStatic::OnPaint();
    if (!focusDrawn && GetFocus() == this) {
        DrawFocus();
    }
}

// The text as the control writes it.
CRect YStaticURL::GetFocusRect()
{
    CString text;
    GetWindowText(text);
    CRect client;
    GetClientRect(&client);
    CRect place(0, 0, client.right, 0);
    CClientDC dc(this);
    CFont* const before = dc.SelectObject(GetFont());
    dc.DrawText(text, &place,
                DT_CALCRECT | DT_WORDBREAK | ((GetStyle() & SS_NOPREFIX) ? DT_NOPREFIX : 0U));
    if (before) {
        dc.SelectObject(before);
    }
    if (centered) {
        place.OffsetRect((client.Width() - place.Width()) / 2, 0);
    }
    place.InflateRect(focusDistance, focusDistance);
    ClientToScreen(&place);
    GetParent()->ScreenToClient(&place);
    return place;
}

// In exclusive-or mode: the second drawing takes the first one away.
void YStaticURL::DrawFocus()
{
    const CRect place = GetFocusRect();
    CClientDC dc(GetParent());
    dc.DrawFocusRect(&place);
    focusDrawn = !focusDrawn;
}

// Screen readers

HRESULT YStaticURL::get_accRole(VARIANT child, VARIANT* role)
{
    return YIsAccessibleSelf(child) ? YAnswerNumber(ROLE_SYSTEM_LINK, role) : E_INVALIDARG;
}

HRESULT YStaticURL::get_accState(VARIANT child, VARIANT* state)
{
    const HRESULT result = CStatic::get_accState(child, state);
    if (SUCCEEDED(result) && state->vt == VT_I4) {
        state->lVal |= STATE_SYSTEM_LINKED;
    }
    return result;
}

HRESULT YStaticURL::get_accValue(VARIANT child, BSTR* value)
{
    return YIsAccessibleSelf(child) ? YAnswerText(linkText, value) : E_INVALIDARG;
}

HRESULT YStaticURL::get_accDefaultAction(VARIANT child, BSTR* action)
{
    const YReportMessageParams open(MSG_OPEN_LINK);
    std::wstring text = open.GetTrimmedText();
    text.erase(std::remove(text.begin(), text.end(), L'&'), text.end());
    return YIsAccessibleSelf(child) ? YAnswerText(text, action) : E_INVALIDARG;
}

// The reader does not wait for the program that is started.
HRESULT YStaticURL::accDoDefaultAction(VARIANT child)
{
    if (!YIsAccessibleSelf(child)) {
        return E_INVALIDARG;
    }
    return IsWindowEnabled() && PostMessage(WM_COMMAND, openCommand) ? S_OK : E_FAIL;
}
