// Scroll bars of windows and scroll bar controls.
#include "afxwin.h"

IMPLEMENT_DYNAMIC(CScrollBar, CWnd)

namespace {

// The system answers with a position, which may be 0; whether it took the values has to be asked
// otherwise.
BOOL SetInfo(HWND window, int bar, SCROLLINFO& info, BOOL redraw)
{
    if (!::IsWindow(window)) {
        return FALSE;
    }
    info.cbSize = sizeof(info);
    ::SetScrollInfo(window, bar, &info, redraw);
    return TRUE;
}

BOOL GetInfo(HWND window, int bar, SCROLLINFO& info, UINT mask)
{
    info.cbSize = sizeof(info);
    info.fMask = mask;
    return ::GetScrollInfo(window, bar, &info);
}

}  // namespace

CScrollBar* CWnd::GetScrollBarCtrl(int) const
{
    return nullptr;
}

BOOL CWnd::SetScrollInfo(int nBar, LPSCROLLINFO lpScrollInfo, BOOL bRedraw)
{
    if (CScrollBar* const control = GetScrollBarCtrl(nBar)) {
        return control->SetScrollInfo(lpScrollInfo, bRedraw);
    }
    return SetInfo(m_hWnd, nBar, *lpScrollInfo, bRedraw);
}

BOOL CWnd::GetScrollInfo(int nBar, LPSCROLLINFO lpScrollInfo, UINT nMask)
{
    if (CScrollBar* const control = GetScrollBarCtrl(nBar)) {
        return control->GetScrollInfo(lpScrollInfo, nMask);
    }
    return GetInfo(m_hWnd, nBar, *lpScrollInfo, nMask);
}

int CWnd::SetScrollPos(int nBar, int nPos, BOOL bRedraw)
{
    if (CScrollBar* const control = GetScrollBarCtrl(nBar)) {
        return control->SetScrollPos(nPos, bRedraw);
    }
    return ::SetScrollPos(m_hWnd, nBar, nPos, bRedraw);
}

int CWnd::GetScrollPos(int nBar) const
{
    if (const CScrollBar* const control = GetScrollBarCtrl(nBar)) {
        return control->GetScrollPos();
    }
    return ::GetScrollPos(m_hWnd, nBar);
}

void CWnd::SetScrollRange(int nBar, int nMinPos, int nMaxPos, BOOL bRedraw)
{
    if (CScrollBar* const control = GetScrollBarCtrl(nBar)) {
        control->SetScrollRange(nMinPos, nMaxPos, bRedraw);
        return;
    }
    ::SetScrollRange(m_hWnd, nBar, nMinPos, nMaxPos, bRedraw);
}

void CWnd::GetScrollRange(int nBar, LPINT lpMinPos, LPINT lpMaxPos) const
{
    if (const CScrollBar* const control = GetScrollBarCtrl(nBar)) {
        control->GetScrollRange(lpMinPos, lpMaxPos);
        return;
    }
    ::GetScrollRange(m_hWnd, nBar, lpMinPos, lpMaxPos);
}

void CWnd::ShowScrollBar(UINT nBar, BOOL bShow)
{
    CScrollBar* const control =
        nBar == SB_BOTH ? nullptr : GetScrollBarCtrl(static_cast<int>(nBar));
    if (control != nullptr) {
        control->ShowScrollBar(bShow);
        return;
    }
    ::ShowScrollBar(m_hWnd, static_cast<int>(nBar), bShow);
}

BOOL CScrollBar::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    return CWnd::Create(L"SCROLLBAR", nullptr, dwStyle, rect, pParentWnd, nID);
}

BOOL CScrollBar::SetScrollInfo(LPSCROLLINFO lpScrollInfo, BOOL bRedraw)
{
    return SetInfo(m_hWnd, SB_CTL, *lpScrollInfo, bRedraw);
}

BOOL CScrollBar::GetScrollInfo(LPSCROLLINFO lpScrollInfo, UINT nMask)
{
    return GetInfo(m_hWnd, SB_CTL, *lpScrollInfo, nMask);
}

int CScrollBar::SetScrollPos(int nPos, BOOL bRedraw)
{
    return ::SetScrollPos(m_hWnd, SB_CTL, nPos, bRedraw);
}

int CScrollBar::GetScrollPos() const
{
    return ::GetScrollPos(m_hWnd, SB_CTL);
}

void CScrollBar::SetScrollRange(int nMinPos, int nMaxPos, BOOL bRedraw)
{
    ::SetScrollRange(m_hWnd, SB_CTL, nMinPos, nMaxPos, bRedraw);
}

void CScrollBar::GetScrollRange(LPINT lpMinPos, LPINT lpMaxPos) const
{
    ::GetScrollRange(m_hWnd, SB_CTL, lpMinPos, lpMaxPos);
}

void CScrollBar::ShowScrollBar(BOOL bShow)
{
    ::ShowScrollBar(m_hWnd, SB_CTL, bShow);
}
