// How a window shares its client area among its children.
#include "WindowLayout.h"

void RepositionWindow(HDWP& moves, HWND window, const RECT& place)
{
    constexpr UINT flags = SWP_NOACTIVATE | SWP_NOZORDER;
    const int width = place.right - place.left;
    const int height = place.bottom - place.top;
    if (moves != nullptr) {
        moves =
            ::DeferWindowPos(moves, window, nullptr, place.left, place.top, width, height, flags);
    }
    if (moves == nullptr) {  // no memory for a list of moves: one by one
        ::SetWindowPos(window, nullptr, place.left, place.top, width, height, flags);
    }
}

void CWnd::RepositionBars(UINT nIDFirst, UINT nIDLast, UINT nIDLeftOver, UINT nFlag,
                          LPRECT lpRectParam, LPCRECT lpRectClient, BOOL bStretch)
{
    const bool isQuestion = nFlag == reposQuery;
    AFX_SIZEPARENTPARAMS layout{};
    layout.bStretch = bStretch;
    if (lpRectClient != nullptr) {
        layout.rect = *lpRectClient;
    } else {
        GetClientRect(&layout.rect);
    }
    if (!isQuestion) {
        constexpr int expectedMoves = 4;  // the list grows
        layout.hDWP = ::BeginDeferWindowPos(expectedMoves);
    }

    HWND leftOver = nullptr;
    for (HWND child = ::GetTopWindow(m_hWnd); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        const UINT id = static_cast<UINT>(::GetDlgCtrlID(child));
        if (id == nIDLeftOver) {
            leftOver = child;
        } else if (id >= nIDFirst && id <= nIDLast && FromHandlePermanent(child) != nullptr) {
            ::SendMessageW(child, WM_SIZEPARENT, 0, reinterpret_cast<LPARAM>(&layout));
        }
    }
    if (isQuestion) {
        if (lpRectParam != nullptr) {
            *lpRectParam = layout.rect;
        }
        return;
    }
    if (leftOver != nullptr) {
        RepositionWindow(layout.hDWP, leftOver, layout.rect);
    }
    if (layout.hDWP != nullptr) {
        ::EndDeferWindowPos(layout.hDWP);
    }
}
