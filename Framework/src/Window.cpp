#include "FrameworkState.h"
#include "WindowAccessibility.h"
#include "WindowMap.h"
#include "WindowProcedure.h"
#include "afxlayout.h"

#include <utility>

IMPLEMENT_DYNCREATE(CWnd, CCmdTarget)

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
    ON_WM_NCDESTROY()
    ON_WM_GETMINMAXINFO()
    ON_WM_CTLCOLOR()
    ON_WM_DRAWITEM()
    ON_WM_VSCROLL()
    ON_WM_HSCROLL()
    ON_MESSAGE(WM_GETOBJECT, &CWnd::OnGetObject)
END_MESSAGE_MAP()

CWnd::CWnd() = default;

CWnd::~CWnd()
{
    if (m_hWnd != nullptr) {
        DestroyWindow();
    }
}

CWnd* PASCAL CWnd::FromHandle(HWND hWnd)
{
    return WindowMap::FromHandle(hWnd);
}

CWnd* PASCAL CWnd::FromHandlePermanent(HWND hWnd)
{
    return WindowMap::FindPermanent(hWnd);
}

BOOL CWnd::Attach(HWND hWndNew)
{
    ASSERT(m_hWnd == nullptr);
    ASSERT(FromHandlePermanent(hWndNew) == nullptr);
    if (hWndNew == nullptr) {
        return FALSE;
    }
    WindowMap::SetPermanent(hWndNew, this);
    m_hWnd = hWndNew;
    superWindowProc = WindowProcedure::RejoinChain(hWndNew);
    return TRUE;
}

HWND CWnd::Detach()
{
    if (accessibility) {
        accessibility->Disconnect();
    }
    if (superWindowProc != nullptr) {
        WindowProcedure::LeaveInChain(m_hWnd, std::exchange(superWindowProc, nullptr));
    }
    WindowMap::RemoveHandle(m_hWnd, this);
    return std::exchange(m_hWnd, nullptr);
}

BOOL CWnd::SubclassWindow(HWND hWnd)
{
    if (FromHandlePermanent(hWnd) != nullptr || !Attach(hWnd)) {
        return FALSE;
    }
    PreSubclassWindow();
    if (!HookProcedure()) {
        Detach();
        return FALSE;
    }
    return TRUE;
}

BOOL CWnd::SubclassDlgItem(UINT nID, CWnd* pParent)
{
    const HWND control = ::GetDlgItem(pParent->GetSafeHwnd(), static_cast<int>(nID));
    return control != nullptr && SubclassWindow(control);
}

HWND CWnd::UnsubclassWindow()
{
    RestoreProcedure();
    return Detach();
}

BOOL CWnd::DestroyWindow()
{
    if (m_hWnd == nullptr) {
        return FALSE;
    }
    const HWND handle = m_hWnd;
    const bool isPermanent = FromHandlePermanent(handle) == this;
    const BOOL destroyed = ::DestroyWindow(handle);
    // The window of a permanent object has told it so: the object may be no more.
    if (!isPermanent || (destroyed && FromHandlePermanent(handle) == this)) {
        Detach();
    }
    return destroyed;
}

void CWnd::OnNcDestroy()
{
    CWinThread* const thread = ::AfxGetThread();
    if (thread != nullptr && thread->m_pMainWnd == this) {
        thread->m_pMainWnd = nullptr;
        ::AfxPostQuitMessage(0);
    }
    Default();
    RestoreProcedure();
    superWindowProc = nullptr;  // no message follows
    dynamicLayout.reset();
    Detach();
    PostNcDestroy();
}

void CWnd::SendMessageToDescendants(UINT message, WPARAM wParam, LPARAM lParam, BOOL bDeep,
                                    BOOL bOnlyPerm)
{
    HWND next = nullptr;
    for (HWND child = ::GetTopWindow(m_hWnd); child != nullptr; child = next) {
        next = ::GetWindow(child, GW_HWNDNEXT);  // the child may go while it handles the message
        CWnd* const window = bOnlyPerm ? FromHandlePermanent(child) : FromHandle(child);
        if (window != nullptr) {
            ::SendMessageW(child, message, wParam, lParam);
        }
        if (bDeep && ::IsWindow(child) && ::GetTopWindow(child) != nullptr) {
            FromHandle(child)->SendMessageToDescendants(message, wParam, lParam, bDeep, bOnlyPerm);
        }
    }
}

namespace {

BOOL ModifyStyleBits(HWND window, int which, DWORD remove, DWORD add, UINT flags)
{
    const DWORD before = static_cast<DWORD>(::GetWindowLongW(window, which));
    const DWORD after = (before & ~remove) | add;
    if (before == after) {
        return FALSE;
    }
    ::SetWindowLongW(window, which, static_cast<LONG>(after));
    if (flags != 0) {
        ::SetWindowPos(window, nullptr, 0, 0, 0, 0,
                       SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | flags);
    }
    return TRUE;
}

}  // namespace

BOOL CWnd::ModifyStyle(DWORD dwRemove, DWORD dwAdd, UINT nFlags)
{
    return ModifyStyleBits(m_hWnd, GWL_STYLE, dwRemove, dwAdd, nFlags);
}

BOOL CWnd::ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags)
{
    return ModifyStyleBits(m_hWnd, GWL_EXSTYLE, dwRemove, dwAdd, nFlags);
}

void CWnd::GetWindowText(CString& rString) const
{
    const int length = GetWindowTextLength();
    const int copied = ::GetWindowTextW(m_hWnd, rString.GetBuffer(length), length + 1);
    rString.ReleaseBuffer(copied);
}

void CWnd::SetFont(CFont* pFont, BOOL bRedraw)
{
    const HGDIOBJ font = pFont != nullptr ? pFont->GetSafeHandle() : nullptr;
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font), MAKELPARAM(bRedraw, 0));
}

CFont* CWnd::GetFont() const
{
    return CFont::FromHandle(reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)));
}

CMenu* CWnd::GetMenu() const
{
    return CMenu::FromHandle(::GetMenu(m_hWnd));
}

BOOL CWnd::SetMenu(CMenu* pMenu)
{
    return ::SetMenu(m_hWnd, pMenu != nullptr ? pMenu->GetSafeHmenu() : nullptr);
}

CFrameWnd* CWnd::GetParentFrame() const
{
    for (HWND above = ::GetParent(m_hWnd); above != nullptr; above = ::GetParent(above)) {
        CWnd* const window = FromHandlePermanent(above);
        if (window != nullptr && window->IsFrameWnd()) {
            return static_cast<CFrameWnd*>(window);
        }
    }
    return nullptr;
}

CFrameWnd* CWnd::GetTopLevelFrame() const
{
    CWnd* const self = FromHandlePermanent(m_hWnd);
    CFrameWnd* frame =
        self != nullptr && self->IsFrameWnd() ? static_cast<CFrameWnd*>(self) : GetParentFrame();
    for (CFrameWnd* above = frame; above != nullptr; above = above->GetParentFrame()) {
        frame = above;
    }
    return frame;
}

void CWnd::ClientToScreen(LPRECT lpRect) const
{
    ::MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<POINT*>(lpRect), 2);
}

void CWnd::ScreenToClient(LPRECT lpRect) const
{
    ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(lpRect), 2);
}

BOOL CWnd::SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags)
{
    const HWND after = pWndInsertAfter != nullptr ? pWndInsertAfter->GetSafeHwnd() : nullptr;
    return ::SetWindowPos(m_hWnd, after, x, y, cx, cy, nFlags);
}

BOOL CWnd::GetWindowPlacement(WINDOWPLACEMENT* lpwndpl) const
{
    lpwndpl->length = sizeof(WINDOWPLACEMENT);
    return ::GetWindowPlacement(m_hWnd, lpwndpl);
}

BOOL CWnd::RedrawWindow(LPCRECT lpRectUpdate, CRgn* prgnUpdate, UINT flags)
{
    const auto region =
        prgnUpdate != nullptr ? static_cast<HRGN>(prgnUpdate->GetSafeHandle()) : nullptr;
    return ::RedrawWindow(m_hWnd, lpRectUpdate, region, flags);
}

int CWnd::MessageBox(LPCTSTR lpszText, LPCTSTR lpszCaption, UINT nType)
{
    const CWinApp* const application = ::AfxGetApp();
    if (lpszCaption == nullptr && application != nullptr) {
        lpszCaption = application->m_pszAppName;
    }
    return ::MessageBoxW(m_hWnd, lpszText, lpszCaption, nType);
}

BOOL CWnd::PreTranslateMessage(MSG*)
{
    return FALSE;
}

BOOL PASCAL CWnd::WalkPreTranslateTree(HWND hWndStop, MSG* pMsg)
{
    for (HWND handle = pMsg->hwnd; handle != nullptr; handle = ::GetParent(handle)) {
        CWnd* const window = FromHandlePermanent(handle);
        if (window != nullptr && window->PreTranslateMessage(pMsg)) {
            return TRUE;
        }
        if (handle == hWndStop) {
            break;
        }
    }
    return FALSE;
}
