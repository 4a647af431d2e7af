#include "WindowLayout.h"

#include "afxext.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CControlBar, CWnd)

BEGIN_MESSAGE_MAP(CControlBar, CWnd)
    ON_MESSAGE(WM_SIZEPARENT, &CControlBar::OnSizeParent)
    ON_MESSAGE(WM_IDLEUPDATECMDUI, &CControlBar::OnIdleUpdateCmdUI)
END_MESSAGE_MAP()

LRESULT CControlBar::OnSizeParent(WPARAM, LPARAM lParam)
{
    AFX_SIZEPARENTPARAMS& layout = *reinterpret_cast<AFX_SIZEPARENTPARAMS*>(lParam);
    if (!IsVisible()) {
        return 0;
    }
    const CSize size = CalcFixedLayout(layout.bStretch, TRUE);
    CRect place(layout.rect);
    if ((m_dwStyle & CBRS_ALIGN_TOP) != 0) {
        place.bottom = std::min(place.bottom, place.top + size.cy);
        layout.rect.top = place.bottom;
    } else {
        place.top = std::max(place.top, place.bottom - size.cy);
        layout.rect.bottom = place.top;
    }
    layout.sizeTotal.cy += place.Height();
    if (layout.hDWP != nullptr) {
        RepositionWindow(layout.hDWP, m_hWnd, place);
    }
    return 0;
}

LRESULT CControlBar::OnIdleUpdateCmdUI(WPARAM wParam, LPARAM)
{
    CFrameWnd* const frame = GetTopLevelFrame();
    if (frame != nullptr && IsVisible()) {
        OnUpdateCmdUI(frame, static_cast<BOOL>(wParam));
    }
    return 0;
}
