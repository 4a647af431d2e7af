#include "AlphaImage.h"
#include "BCGPEdit.h"
#include "Dpi.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CBCGPEdit, CEdit)

BEGIN_MESSAGE_MAP(CBCGPEdit, CEdit)
    ON_WM_CTLCOLOR_REFLECT()
    ON_WM_NCCALCSIZE()
    ON_WM_NCHITTEST()
    ON_WM_NCPAINT()
    ON_WM_NCLBUTTONDOWN()
    ON_WM_NCLBUTTONDBLCLK()
    ON_WM_NCMOUSEMOVE()
    ON_MESSAGE(WM_NCMOUSELEAVE, &CBCGPEdit::OnNcMouseLeave)
    ON_WM_MOUSEMOVE()
    ON_WM_LBUTTONUP()
    ON_WM_CAPTURECHANGED()
    ON_WM_ENABLE()
END_MESSAGE_MAP()

namespace {

constexpr int imageMargin = 2;  // left and right of the image, at 96 DPI
constexpr int labelMargin = 4;

}  // namespace

CBCGPEdit::CBCGPEdit() = default;
CBCGPEdit::~CBCGPEdit() = default;

void CBCGPEdit::EnableBrowseButton(BOOL bEnable, LPCTSTR szLabel)
{
    hasButton = bEnable != FALSE;
    label = szLabel;
    OnChangeLayout();
}

void CBCGPEdit::SetBrowseButtonImage(HBITMAP hBitmap, BOOL bAutoDestroy)
{
    image.DeleteObject();
    if (hBitmap != nullptr) {
        if (const HBITMAP copy = CopyAsAlphaImage(hBitmap)) {
            image.Attach(copy);
        }
        if (bAutoDestroy) {
            ::DeleteObject(hBitmap);
        }
    }
    OnChangeLayout();
}

void CBCGPEdit::SetBrowseButtonImage(UINT uiBmpResId)
{
    const LPCTSTR resource = MAKEINTRESOURCE(uiBmpResId);
    const HINSTANCE module = ::AfxFindResourceHandle(resource, RT_BITMAP);
    // Not as the screen's kind of bitmap: that need not keep the alpha.
    const HANDLE bitmap = ::LoadImageW(module, resource, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
    SetBrowseButtonImage(static_cast<HBITMAP>(bitmap));
}

void CBCGPEdit::OnChangeLayout()
{
    if (m_hWnd == nullptr) {
        return;
    }
    SetWindowPos(nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME);
}

HBRUSH CBCGPEdit::CtlColor(CDC* pDC, UINT)
{
    const int ground = TakesText() ? COLOR_WINDOW : COLOR_BTNFACE;
    pDC->SetTextColor(::GetSysColor(IsWindowEnabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
    pDC->SetBkColor(::GetSysColor(ground));
    return ::GetSysColorBrush(ground);
}

void CBCGPEdit::OnNcCalcSize(BOOL bCalcValidRects, NCCALCSIZE_PARAMS* lpncsp)
{
    CEdit::OnNcCalcSize(bCalcValidRects, lpncsp);
    m_rectBtn.SetRectEmpty();
    if (!hasButton) {
        return;
    }
    RECT& client = lpncsp->rgrc[0];
    const int width = std::min(GetButtonWidth(), static_cast<int>(client.right - client.left));
    client.right -= width;
    m_rectBtn.SetRect(client.right - client.left, 0, client.right - client.left + width,
                      client.bottom - client.top);
}

// A part of the frame that neither sizes nor moves the window.
LRESULT CBCGPEdit::OnNcHitTest(CPoint point)
{
    return IsOnButton(point) ? HTBORDER : CEdit::OnNcHitTest(point);
}

void CBCGPEdit::OnNcPaint()
{
    CEdit::OnNcPaint();
    if (m_rectBtn.IsRectEmpty()) {
        return;
    }
    CRect window;
    GetWindowRect(&window);
    CRect button = m_rectBtn;
    ClientToScreen(&button);
    button.OffsetRect(-window.left, -window.top);
    CWindowDC dc(this);
    OnDrawBrowseButton(&dc, button, isPressed, isHot);
}

void CBCGPEdit::OnDrawBrowseButton(CDC* pDC, CRect rect, BOOL bIsButtonPressed, BOOL bIsButtonHot)
{
    const bool isRaised = bIsButtonPressed || bIsButtonHot;
    CBrush* const ground =
        CBrush::FromHandle(isRaised ? ::GetSysColorBrush(COLOR_BTNFACE) : AskForGround(*pDC));
    pDC->FillRect(&rect, ground);
    CRect content = rect;
    if (isRaised) {
        pDC->DrawEdge(&rect, bIsButtonPressed ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
    }
    if (bIsButtonPressed) {
        content.OffsetRect(1, 1);
    }
    if (image.GetSafeHandle() != nullptr) {
        DrawAlphaImage(*pDC, image, content, !IsWindowEnabled());
    } else {
        DrawLabel(*pDC, content);
    }
}

void CBCGPEdit::OnNcLButtonDown(UINT nHitTest, CPoint point)
{
    if (!IsOnButton(point)) {
        CEdit::OnNcLButtonDown(nHitTest, point);
        return;
    }
    SetFocus();
    SetCapture();
    isCaptured = true;
    ShowButtonState(true, true);
}

// The second press of two quick ones is one as any other.
void CBCGPEdit::OnNcLButtonDblClk(UINT nHitTest, CPoint point)
{
    CBCGPEdit::OnNcLButtonDown(nHitTest, point);
}

void CBCGPEdit::OnNcMouseMove(UINT nHitTest, CPoint point)
{
    if (IsOnButton(point) && !isHot) {
        TRACKMOUSEEVENT leave{sizeof(leave), TME_LEAVE | TME_NONCLIENT, m_hWnd, 0};
        ::TrackMouseEvent(&leave);
        ShowButtonState(false, true);
    }
    CEdit::OnNcMouseMove(nHitTest, point);
}

LRESULT CBCGPEdit::OnNcMouseLeave(WPARAM, LPARAM)
{
    if (!isCaptured) {
        ShowButtonState(false, false);
    }
    return Default();
}

void CBCGPEdit::OnMouseMove(UINT nFlags, CPoint point)
{
    const bool isOver = m_rectBtn.PtInRect(point) != FALSE;
    ShowButtonState(isCaptured && isOver, isCaptured && isOver);
    if (!isCaptured) {
        CEdit::OnMouseMove(nFlags, point);
    }
}

void CBCGPEdit::OnLButtonUp(UINT nFlags, CPoint point)
{
    if (!isCaptured) {
        CEdit::OnLButtonUp(nFlags, point);
        return;
    }
    ::ReleaseCapture();
    if (m_rectBtn.PtInRect(point)) {
        OnBrowse();  // last: it may end the window
    }
}

void CBCGPEdit::OnCaptureChanged(CWnd* pWnd)
{
    isCaptured = false;
    ShowButtonState(false, false);
    CEdit::OnCaptureChanged(pWnd);
}

void CBCGPEdit::OnEnable(BOOL bEnable)
{
    CEdit::OnEnable(bEnable);
    RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME);
}

int CBCGPEdit::GetButtonWidth() const
{
    BITMAP size{};
    if (image.GetSafeHandle() != nullptr && image.GetObject(sizeof(size), &size) != 0) {
        return size.bmWidth + 2 * ScaleToScreen(imageMargin);
    }
    CClientDC dc(const_cast<CBCGPEdit*>(this));
    CFont* const previous = dc.SelectObject(GetFont());
    const int width = dc.GetTextExtent(label).cx;
    dc.SelectObject(previous);
    return width + 2 * ScaleToScreen(labelMargin);
}

bool CBCGPEdit::IsOnButton(CPoint screenPoint) const
{
    ScreenToClient(&screenPoint);
    return m_rectBtn.PtInRect(screenPoint) != FALSE;
}

void CBCGPEdit::ShowButtonState(bool pressed, bool hot)
{
    if (pressed == isPressed && hot == isHot) {
        return;
    }
    isPressed = pressed;
    isHot = hot;
    RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_UPDATENOW);
}

bool CBCGPEdit::TakesText() const
{
    return IsWindowEnabled() && (GetStyle() & ES_READONLY) == 0;
}

// As the edit itself does before it paints, so that field and button never differ.
HBRUSH CBCGPEdit::AskForGround(CDC& dc) const
{
    const UINT question = TakesText() ? WM_CTLCOLOREDIT : WM_CTLCOLORSTATIC;
    return reinterpret_cast<HBRUSH>(::SendMessageW(::GetParent(m_hWnd), question,
                                                   reinterpret_cast<WPARAM>(dc.GetSafeHdc()),
                                                   reinterpret_cast<LPARAM>(m_hWnd)));
}

void CBCGPEdit::DrawLabel(CDC& dc, CRect rect)
{
    CFont* const previous = dc.SelectObject(GetFont());
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(::GetSysColor(IsWindowEnabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
    dc.DrawText(label, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    dc.SelectObject(previous);
}
