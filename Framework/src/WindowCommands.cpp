// Commands and notifications: what a parent answers, and what it hands back to the control.
#include "FrameworkState.h"
#include "WindowMap.h"

#include <cstring>

namespace {

// Asks a command's update handler whether the command may run, and shows nothing.
class EnabledTest : public CCmdUI
{
public:
    void Enable(BOOL bOn) override { isEnabled = bOn != FALSE; }
    void SetCheck(int) override {}
    void SetRadio(BOOL) override {}
    void SetText(LPCTSTR) override {}

    bool isEnabled = true;
};

// The command may have come by keyboard, past a menu that would have shown it grey.
bool IsEnabled(CCmdTarget& target, UINT id)
{
    EnabledTest test;
    test.m_nID = id;
    target.OnCmdMsg(id, static_cast<int>(CN_UPDATE_COMMAND_UI), &test, nullptr);
    return test.isEnabled;
}

// Some notifications are packed structures: their headers lie wherever they lie.
NMHDR HeaderOf(LPARAM lParam)
{
    NMHDR header;
    std::memcpy(&header, reinterpret_cast<const void*>(lParam), sizeof header);
    return header;
}

}  // namespace

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT id = LOWORD(wParam);
    if (const HWND control = reinterpret_cast<HWND>(lParam)) {
        return ReflectLastMsg(control) || IsExchangingData(m_hWnd) ||
               OnCmdMsg(id, HIWORD(wParam), nullptr, nullptr);
    }
    if (id == 0) {
        return FALSE;
    }
    return !IsEnabled(*this, id) || OnCmdMsg(id, CN_COMMAND, nullptr, nullptr);
}

BOOL CWnd::OnNotify(WPARAM, LPARAM lParam, LRESULT* pResult)
{
    const NMHDR header = HeaderOf(lParam);
    if (ReflectLastMsg(header.hwndFrom, pResult)) {
        return TRUE;
    }
    AFX_NOTIFY notify{pResult, reinterpret_cast<NMHDR*>(lParam)};
    return OnCmdMsg(static_cast<UINT>(header.idFrom), MAKELONG(header.code, WM_NOTIFY), &notify,
                    nullptr);
}

BOOL PASCAL CWnd::ReflectLastMsg(HWND hWndChild, LRESULT* pResult)
{
    CWnd* const child = FromHandlePermanent(hWndChild);
    return child != nullptr && child->SendChildNotifyLastMsg(pResult);
}

BOOL CWnd::SendChildNotifyLastMsg(LRESULT* pResult)
{
    const MSG current = GetThreadState().handled;
    return OnChildNotify(current.message, current.wParam, current.lParam, pResult);
}

BOOL CWnd::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult)
{
    return ReflectChildNotify(message, wParam, lParam, pResult);
}

BOOL CWnd::ReflectChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult)
{
    switch (message) {
    case WM_VSCROLL:
    case WM_HSCROLL:
    case WM_DRAWITEM: return OnWndMsg(WM_REFLECT_BASE + message, wParam, lParam, pResult);
    case WM_COMMAND:
        return OnCmdMsg(0, MAKELONG(HIWORD(wParam), WM_REFLECT_BASE + WM_COMMAND), nullptr,
                        nullptr);
    case WM_NOTIFY: {
        AFX_NOTIFY notify{pResult, reinterpret_cast<NMHDR*>(lParam)};
        return OnCmdMsg(0, MAKELONG(HeaderOf(lParam).code, WM_REFLECT_BASE + WM_NOTIFY), &notify,
                        nullptr);
    }
    default:
        return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC &&
               OnWndMsg(WM_REFLECT_BASE + WM_CTLCOLOR, wParam, message - WM_CTLCOLORMSGBOX,
                        pResult);
    }
}

HBRUSH CWnd::OnCtlColor(CDC*, CWnd* pWnd, UINT)
{
    LRESULT brush = 0;
    if (pWnd != nullptr && pWnd->SendChildNotifyLastMsg(&brush)) {
        return reinterpret_cast<HBRUSH>(brush);
    }
    return reinterpret_cast<HBRUSH>(Default());
}

void CWnd::OnDrawItem(int, LPDRAWITEMSTRUCT lpDrawItemStruct)
{
    const bool isMenu = lpDrawItemStruct->CtlType == ODT_MENU;
    if (isMenu || !ReflectLastMsg(lpDrawItemStruct->hwndItem)) {
        Default();
    }
}

void CWnd::OnVScroll(UINT, UINT, CScrollBar* pScrollBar)
{
    if (pScrollBar == nullptr || !static_cast<CWnd*>(pScrollBar)->SendChildNotifyLastMsg()) {
        Default();
    }
}

void CWnd::OnHScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar)
{
    CWnd::OnVScroll(nSBCode, nPos, pScrollBar);  // the message in hand says which it is
}
