// How a toolbar looks, and what it does under the mouse.
#include "BCGPToolBar.h"

void CBCGPToolBar::OnPaint()
{
    CPaintDC dc(this);
    CFont* const previous = dc.SelectObject(&font);
    for (int i = 0; i < GetCount(); ++i) {
        CBCGPToolbarButton* const button = GetButton(i);
        button->OnDraw(&dc, button->Rect(), nullptr, TRUE, FALSE, i == hotButton);
    }
    dc.SelectObject(previous);
}

BOOL CBCGPToolBar::OnEraseBkgnd(CDC* pDC)
{
    CRect client;
    GetClientRect(&client);
    pDC->FillSolidRect(&client, ::GetSysColor(COLOR_BTNFACE));
    return TRUE;
}

void CBCGPToolBar::OnMouseMove(UINT nFlags, CPoint point)
{
    CBCGPControlBar::OnMouseMove(nFlags, point);
    const int index = HitTest(point);
    if (armedButton != -1) {
        const int armed = index == armedButton ? armedButton : -1;
        ShowStates(armed, armed);
        return;
    }
    ShowStates(IsClickable(index) ? index : -1, -1);
    TRACKMOUSEEVENT leave{sizeof(leave), TME_LEAVE, m_hWnd, 0};
    ::TrackMouseEvent(&leave);
}

LRESULT CBCGPToolBar::OnMouseLeave(WPARAM, LPARAM)
{
    if (armedButton == -1) {
        ShowStates(-1, -1);
    }
    return 0;
}

void CBCGPToolBar::OnLButtonDown(UINT nFlags, CPoint point)
{
    CBCGPControlBar::OnLButtonDown(nFlags, point);
    const int index = HitTest(point);
    if (IsClickable(index)) {
        SetCapture();
        armedButton = index;
        ShowStates(index, index);
    }
}

void CBCGPToolBar::OnLButtonUp(UINT nFlags, CPoint point)
{
    const int clicked = armedButton != -1 && HitTest(point) == armedButton ? armedButton : -1;
    if (armedButton == -1) {
        CBCGPControlBar::OnLButtonUp(nFlags, point);
        return;
    }
    ::ReleaseCapture();
    CWnd* const owner = GetParentFrame();
    if (clicked != -1 && owner != nullptr) {
        owner->SendMessage(WM_COMMAND, GetButton(clicked)->m_nID);  // last: it may end the bar
    }
}

void CBCGPToolBar::OnCaptureChanged(CWnd* pWnd)
{
    armedButton = -1;
    ShowStates(-1, -1);
    CBCGPControlBar::OnCaptureChanged(pWnd);
}

bool CBCGPToolBar::IsClickable(int index) const
{
    CBCGPToolbarButton* const button = GetButton(index);
    return button != nullptr && (button->m_nStyle & (TBBS_SEPARATOR | TBBS_DISABLED)) == 0 &&
           button->GetHwnd() == nullptr;
}

void CBCGPToolBar::ShowStates(int hot, int pressed)
{
    if (hot != hotButton) {
        InvalidateButton(hotButton);
        InvalidateButton(hot);
        hotButton = hot;
    }
    if (pressed != pressedButton) {
        SetButtonStyle(pressedButton,
                       GetButtonStyle(pressedButton) & ~static_cast<UINT>(TBBS_PRESSED));
        SetButtonStyle(pressed, GetButtonStyle(pressed) | static_cast<UINT>(TBBS_PRESSED));
        pressedButton = pressed;
    }
}

void CBCGPToolBar::InvalidateButton(int index)
{
    if (HasButton(index) && m_hWnd != nullptr) {
        InvalidateRect(GetButton(index)->Rect());
    }
}
