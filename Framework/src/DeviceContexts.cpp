#include "afxwin.h"

#include "HandleMap.h"

#include <new>

IMPLEMENT_DYNCREATE(CDC, CObject)
IMPLEMENT_DYNAMIC(CClientDC, CDC)
IMPLEMENT_DYNAMIC(CWindowDC, CDC)
IMPLEMENT_DYNAMIC(CPaintDC, CDC)

namespace {

struct ContextTraits
{
    static constexpr HandleKind kind = HandleKind::DeviceContext;
    using Object = CDC;
    using Handle = HDC;

    static std::unique_ptr<CDC> Make(HDC) { return std::make_unique<CDC>(); }
    static void SetHandle(CDC& context, HDC handle) noexcept
    {
        context.m_hDC = handle;
        context.m_hAttribDC = handle;
    }
};

using ContextMap = HandleMap<ContextTraits>;

HWND HandleOf(const CWnd* window)
{
    return window == nullptr ? nullptr : window->GetSafeHwnd();
}

HDC HandleOf(const CDC* context)
{
    return context == nullptr ? nullptr : context->GetSafeHdc();
}

HGDIOBJ HandleOf(const CGdiObject* object)
{
    return object == nullptr ? nullptr : object->GetSafeHandle();
}

// The object that is leaving is asked for first: when there is no memory to present it, nothing has
// changed yet.
template <class Object>
Object* Select(HDC context, UINT type, const Object* object)
{
    CGdiObject* previous = CGdiObject::FromHandle(::GetCurrentObject(context, type));
    const HGDIOBJ selected = HandleOf(object);
    if (selected == nullptr || ::SelectObject(context, selected) == nullptr) {
        return nullptr;
    }
    return static_cast<Object*>(previous);
}

UINT KindOfStockObject(int index)
{
    return ::GetObjectType(::GetStockObject(index));
}

// Fills by drawing no text on an opaque ground: no brush is made for one use.
void FillWithBackground(HDC context, const RECT& rect)
{
    ::ExtTextOutW(context, 0, 0, ETO_OPAQUE, &rect, nullptr, 0, nullptr);
}

}  // namespace

CDC::~CDC()
{
    DeleteDC();
}

CDC* AFXAPI CDC::FromHandle(HDC hDC)
{
    return ContextMap::FromHandle(hDC);
}

BOOL CDC::Attach(HDC hDC)
{
    ASSERT(m_hDC == nullptr);
    if (hDC == nullptr || m_hDC != nullptr) {
        return FALSE;
    }
    try {
        ContextMap::SetPermanent(hDC, this);
    } catch (const std::bad_alloc&) {
        return FALSE;
    }
    ContextTraits::SetHandle(*this, hDC);
    return TRUE;
}

HDC CDC::Detach()
{
    const HDC detached = m_hDC;
    if (detached != nullptr) {
        ContextMap::RemoveHandle(detached, this);
        ContextTraits::SetHandle(*this, nullptr);
    }
    return detached;
}

BOOL CDC::CreateCompatibleDC(CDC* pDC)
{
    const HDC made = ::CreateCompatibleDC(HandleOf(pDC));
    if (Attach(made)) {
        return TRUE;
    }
    if (made != nullptr) {
        ::DeleteDC(made);
    }
    return FALSE;
}

BOOL CDC::DeleteDC()
{
    return m_hDC != nullptr && ::DeleteDC(Detach());
}

int CDC::GetDeviceCaps(int nIndex) const
{
    return ::GetDeviceCaps(m_hAttribDC, nIndex);
}

int CDC::SaveDC()
{
    return ::SaveDC(m_hDC);
}

BOOL CDC::RestoreDC(int nSavedDC)
{
    return ::RestoreDC(m_hDC, nSavedDC);
}

CGdiObject* CDC::SelectStockObject(int nIndex)
{
    CGdiObject* previous =
        CGdiObject::FromHandle(::GetCurrentObject(m_hDC, KindOfStockObject(nIndex)));
    return ::SelectObject(m_hDC, ::GetStockObject(nIndex)) == nullptr ? nullptr : previous;
}

CPen* CDC::SelectObject(CPen* pPen)
{
    return Select(m_hDC, OBJ_PEN, pPen);
}

CBrush* CDC::SelectObject(CBrush* pBrush)
{
    return Select(m_hDC, OBJ_BRUSH, pBrush);
}

CFont* CDC::SelectObject(CFont* pFont)
{
    return Select(m_hDC, OBJ_FONT, pFont);
}

CBitmap* CDC::SelectObject(CBitmap* pBitmap)
{
    return Select(m_hDC, OBJ_BITMAP, pBitmap);
}

int CDC::SelectObject(CRgn* pRgn)
{
    return SelectClipRgn(pRgn);
}

CFont* CDC::GetCurrentFont() const
{
    return static_cast<CFont*>(CGdiObject::FromHandle(::GetCurrentObject(m_hAttribDC, OBJ_FONT)));
}

COLORREF CDC::GetBkColor() const
{
    return ::GetBkColor(m_hAttribDC);
}

COLORREF CDC::SetBkColor(COLORREF crColor)
{
    return ::SetBkColor(m_hDC, crColor);
}

int CDC::GetBkMode() const
{
    return ::GetBkMode(m_hAttribDC);
}

int CDC::SetBkMode(int nBkMode)
{
    return ::SetBkMode(m_hDC, nBkMode);
}

COLORREF CDC::GetTextColor() const
{
    return ::GetTextColor(m_hAttribDC);
}

COLORREF CDC::SetTextColor(COLORREF crColor)
{
    return ::SetTextColor(m_hDC, crColor);
}

UINT CDC::SetTextAlign(UINT nFlags)
{
    return ::SetTextAlign(m_hDC, nFlags);
}

int CDC::SetROP2(int nDrawMode)
{
    return ::SetROP2(m_hDC, nDrawMode);
}

int CDC::SetStretchBltMode(int nStretchMode)
{
    return ::SetStretchBltMode(m_hDC, nStretchMode);
}

int CDC::SetMapMode(int nMapMode)
{
    return ::SetMapMode(m_hDC, nMapMode);
}

CPoint CDC::GetViewportOrg() const
{
    CPoint origin;
    ::GetViewportOrgEx(m_hAttribDC, &origin);
    return origin;
}

CPoint CDC::SetViewportOrg(int x, int y)
{
    CPoint previous;
    ::SetViewportOrgEx(m_hDC, x, y, &previous);
    return previous;
}

CPoint CDC::SetViewportOrg(POINT point)
{
    return SetViewportOrg(point.x, point.y);
}

CPoint CDC::SetBrushOrg(int x, int y)
{
    CPoint previous;
    ::SetBrushOrgEx(m_hDC, x, y, &previous);
    return previous;
}

CPoint CDC::SetBrushOrg(POINT point)
{
    return SetBrushOrg(point.x, point.y);
}

int CDC::GetClipBox(LPRECT lpRect) const
{
    return ::GetClipBox(m_hAttribDC, lpRect);
}

int CDC::SelectClipRgn(CRgn* pRgn)
{
    return ::SelectClipRgn(m_hDC, static_cast<HRGN>(HandleOf(pRgn)));
}

int CDC::IntersectClipRect(LPCRECT lpRect)
{
    return ::IntersectClipRect(m_hDC, lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
}

int CDC::ExcludeClipRect(LPCRECT lpRect)
{
    return ::ExcludeClipRect(m_hDC, lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
}

CPoint CDC::MoveTo(int x, int y)
{
    CPoint previous;
    ::MoveToEx(m_hDC, x, y, &previous);
    return previous;
}

CPoint CDC::MoveTo(POINT point)
{
    return MoveTo(point.x, point.y);
}

BOOL CDC::LineTo(int x, int y)
{
    return ::LineTo(m_hDC, x, y);
}

BOOL CDC::LineTo(POINT point)
{
    return LineTo(point.x, point.y);
}

BOOL CDC::Rectangle(int x1, int y1, int x2, int y2)
{
    return ::Rectangle(m_hDC, x1, y1, x2, y2);
}

BOOL CDC::Rectangle(LPCRECT lpRect)
{
    return Rectangle(lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
}

void CDC::FillRect(LPCRECT lpRect, CBrush* pBrush)
{
    ::FillRect(m_hDC, lpRect, *pBrush);
}

void CDC::FrameRect(LPCRECT lpRect, CBrush* pBrush)
{
    ::FrameRect(m_hDC, lpRect, *pBrush);
}

void CDC::InvertRect(LPCRECT lpRect)
{
    ::InvertRect(m_hDC, lpRect);
}

void CDC::FillSolidRect(LPCRECT lpRect, COLORREF clr)
{
    const COLORREF previous = SetBkColor(clr);
    FillWithBackground(m_hDC, *lpRect);
    SetBkColor(previous);
}

void CDC::FillSolidRect(int x, int y, int cx, int cy, COLORREF clr)
{
    const CRect rect(x, y, x + cx, y + cy);
    FillSolidRect(rect, clr);
}

void CDC::Draw3dRect(LPCRECT lpRect, COLORREF clrTopLeft, COLORREF clrBottomRight)
{
    const CRect rect(lpRect);
    FillSolidRect(rect.left, rect.top, rect.Width() - 1, 1, clrTopLeft);
    FillSolidRect(rect.left, rect.top, 1, rect.Height() - 1, clrTopLeft);
    FillSolidRect(rect.right - 1, rect.top, 1, rect.Height(), clrBottomRight);
    FillSolidRect(rect.left, rect.bottom - 1, rect.Width(), 1, clrBottomRight);
}

void CDC::DrawFocusRect(LPCRECT lpRect)
{
    ::DrawFocusRect(m_hDC, lpRect);
}

BOOL CDC::DrawEdge(LPRECT lpRect, UINT nEdge, UINT nFlags)
{
    return ::DrawEdge(m_hDC, lpRect, nEdge, nFlags);
}

BOOL CDC::DrawFrameControl(LPRECT lpRect, UINT nType, UINT nState)
{
    return ::DrawFrameControl(m_hDC, lpRect, nType, nState);
}

BOOL CDC::TextOut(int x, int y, LPCTSTR lpszString, int nCount)
{
    return ::TextOutW(m_hDC, x, y, lpszString, nCount);
}

BOOL CDC::TextOut(int x, int y, const CString& str)
{
    return TextOut(x, y, str, str.GetLength());
}

BOOL CDC::ExtTextOut(int x, int y, UINT nOptions, LPCRECT lpRect, LPCTSTR lpszString, UINT nCount,
                     int* lpDxWidths)
{
    return ::ExtTextOutW(m_hDC, x, y, nOptions, lpRect, lpszString, nCount, lpDxWidths);
}

int CDC::DrawText(LPCTSTR lpszString, int nCount, LPRECT lpRect, UINT nFormat)
{
    return ::DrawTextW(m_hDC, lpszString, nCount, lpRect, nFormat);
}

int CDC::DrawText(const CString& str, LPRECT lpRect, UINT nFormat)
{
    return DrawText(str, str.GetLength(), lpRect, nFormat);
}

CSize CDC::GetTextExtent(LPCTSTR lpszString, int nCount) const
{
    CSize extent;
    ::GetTextExtentPoint32W(m_hAttribDC, lpszString, nCount, &extent);
    return extent;
}

CSize CDC::GetTextExtent(const CString& str) const
{
    return GetTextExtent(str, str.GetLength());
}

BOOL CDC::GetTextMetrics(TEXTMETRIC* lpMetrics) const
{
    return ::GetTextMetricsW(m_hAttribDC, lpMetrics);
}

BOOL CDC::PatBlt(int x, int y, int nWidth, int nHeight, DWORD dwRop)
{
    return ::PatBlt(m_hDC, x, y, nWidth, nHeight, dwRop);
}

BOOL CDC::BitBlt(int x, int y, int nWidth, int nHeight, CDC* pSrcDC, int xSrc, int ySrc,
                 DWORD dwRop)
{
    return ::BitBlt(m_hDC, x, y, nWidth, nHeight, HandleOf(pSrcDC), xSrc, ySrc, dwRop);
}

BOOL CDC::StretchBlt(int x, int y, int nWidth, int nHeight, CDC* pSrcDC, int xSrc, int ySrc,
                     int nSrcWidth, int nSrcHeight, DWORD dwRop)
{
    return ::StretchBlt(m_hDC, x, y, nWidth, nHeight, HandleOf(pSrcDC), xSrc, ySrc, nSrcWidth,
                        nSrcHeight, dwRop);
}

COLORREF CDC::GetPixel(int x, int y) const
{
    return ::GetPixel(m_hDC, x, y);
}

COLORREF CDC::SetPixel(int x, int y, COLORREF crColor)
{
    return ::SetPixel(m_hDC, x, y, crColor);
}

CClientDC::CClientDC(CWnd* pWnd) : m_hWnd(HandleOf(pWnd))
{
    const HDC context = ::GetDC(m_hWnd);
    if (!Attach(context)) {
        ::ReleaseDC(m_hWnd, context);
        AfxThrowResourceException();
    }
}

CClientDC::~CClientDC()
{
    ::ReleaseDC(m_hWnd, Detach());
}

CWindowDC::CWindowDC(CWnd* pWnd) : m_hWnd(HandleOf(pWnd))
{
    const HDC context = ::GetWindowDC(m_hWnd);
    if (!Attach(context)) {
        ::ReleaseDC(m_hWnd, context);
        AfxThrowResourceException();
    }
}

CWindowDC::~CWindowDC()
{
    ::ReleaseDC(m_hWnd, Detach());
}

CPaintDC::CPaintDC(CWnd* pWnd) : m_hWnd(HandleOf(pWnd))
{
    if (!Attach(::BeginPaint(m_hWnd, &m_ps))) {
        ::EndPaint(m_hWnd, &m_ps);
        AfxThrowResourceException();
    }
}

CPaintDC::~CPaintDC()
{
    ::EndPaint(m_hWnd, &m_ps);
    Detach();
}
