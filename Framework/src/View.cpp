#include "afxwin.h"

IMPLEMENT_DYNAMIC(CView, CWnd)

BEGIN_MESSAGE_MAP(CView, CWnd)
    ON_WM_CREATE()
    ON_WM_DESTROY()
    ON_WM_PAINT()
    ON_WM_MOUSEACTIVATE()
    ON_MESSAGE(WM_INITIALUPDATE, &CView::OnInitialUpdateMessage)
END_MESSAGE_MAP()

namespace {

LPCTSTR ViewClassName()
{
    return ::AfxRegisterWndClass(CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW,
                                 ::LoadCursorW(nullptr, IDC_ARROW),
                                 reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1));
}

}  // namespace

BOOL CView::PreCreateWindow(CREATESTRUCT& cs)
{
    if (cs.lpszClass == nullptr) {
        cs.lpszClass = ViewClassName();
    }
    if ((cs.style & WS_BORDER) != 0) {  // a sunken edge instead of the line
        cs.style &= ~WS_BORDER;
        cs.dwExStyle |= WS_EX_CLIENTEDGE;
    }
    return TRUE;
}

void CView::OnDestroy()
{
    CFrameWnd* const frame = GetParentFrame();
    if (frame != nullptr && frame->GetActiveView() == this) {
        frame->SetActiveView(nullptr);
    }
    CWnd::OnDestroy();
}

void CView::OnInitialUpdate()
{
    OnUpdate(nullptr, 0, nullptr);
}

void CView::OnUpdate(CView*, LPARAM, CObject*)
{
    Invalidate();
}

LRESULT CView::OnInitialUpdateMessage(WPARAM, LPARAM)
{
    OnInitialUpdate();
    return 0;
}

void CView::OnPrepareDC(CDC*, void*) {}

void CView::OnPaint()
{
    CPaintDC dc(this);
    OnPrepareDC(&dc);
    OnDraw(&dc);
}

void CView::OnActivateView(BOOL bActivate, CView* pActivateView, CView*)
{
    CFrameWnd* const frame = GetTopLevelFrame();
    // Whoever works in another window of the thread keeps the focus.
    const bool isFrameActive = frame != nullptr && ::GetActiveWindow() == frame->GetSafeHwnd();
    if (bActivate && pActivateView == this && isFrameActive) {
        SetFocus();
    }
}

int CView::OnMouseActivate(CWnd* pDesktopWnd, UINT nHitTest, UINT message)
{
    const int answer = CWnd::OnMouseActivate(pDesktopWnd, nHitTest, message);
    CFrameWnd* const frame = GetParentFrame();
    if (answer == MA_NOACTIVATE || answer == MA_NOACTIVATEANDEAT || frame == nullptr) {
        return answer;
    }
    if (frame->GetActiveView() == this) {
        OnActivateView(TRUE, this, this);  // the focus may be elsewhere
    } else {
        frame->SetActiveView(this);
    }
    return answer;
}
