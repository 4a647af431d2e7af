#include "afxwin.h"

#include "HandleMap.h"

#include <new>

IMPLEMENT_DYNCREATE(CGdiObject, CObject)
IMPLEMENT_DYNCREATE(CPen, CGdiObject)
IMPLEMENT_DYNCREATE(CBrush, CGdiObject)
IMPLEMENT_DYNCREATE(CFont, CGdiObject)
IMPLEMENT_DYNCREATE(CBitmap, CGdiObject)
IMPLEMENT_DYNCREATE(CRgn, CGdiObject)

namespace {

struct GdiTraits
{
    static constexpr HandleKind kind = HandleKind::GdiObject;
    using Object = CGdiObject;
    using Handle = HGDIOBJ;

    static std::unique_ptr<CGdiObject> Make(HGDIOBJ handle);
    static void SetHandle(CGdiObject& object, HGDIOBJ handle) noexcept
    {
        object.m_hObject = handle;
    }
};

using GdiMap = HandleMap<GdiTraits>;

// Of the class that belongs to the kind of handle: callers cast what FromHandle gives.
std::unique_ptr<CGdiObject> GdiTraits::Make(HGDIOBJ handle)
{
    switch (::GetObjectType(handle)) {
    case OBJ_PEN:
    case OBJ_EXTPEN: return std::make_unique<CPen>();
    case OBJ_BRUSH: return std::make_unique<CBrush>();
    case OBJ_FONT: return std::make_unique<CFont>();
    case OBJ_BITMAP: return std::make_unique<CBitmap>();
    case OBJ_REGION: return std::make_unique<CRgn>();
    default: return std::make_unique<CGdiObject>();
    }
}

}  // namespace

CGdiObject::~CGdiObject()
{
    DeleteObject();
}

CGdiObject* AFXAPI CGdiObject::FromHandle(HGDIOBJ hObject)
{
    return GdiMap::FromHandle(hObject);
}

BOOL CGdiObject::Attach(HGDIOBJ hObject)
{
    ASSERT(m_hObject == nullptr);
    if (hObject == nullptr || m_hObject != nullptr) {
        return FALSE;
    }
    try {
        GdiMap::SetPermanent(hObject, this);
    } catch (const std::bad_alloc&) {
        return FALSE;
    }
    m_hObject = hObject;
    return TRUE;
}

HGDIOBJ CGdiObject::Detach()
{
    const HGDIOBJ detached = m_hObject;
    if (detached != nullptr) {
        GdiMap::RemoveHandle(detached, this);
        m_hObject = nullptr;
    }
    return detached;
}

BOOL CGdiObject::DeleteObject()
{
    return m_hObject != nullptr && ::DeleteObject(Detach());
}

int CGdiObject::GetObject(int nCount, LPVOID lpObject) const
{
    return ::GetObjectW(m_hObject, nCount, lpObject);
}

UINT CGdiObject::GetObjectType() const
{
    return ::GetObjectType(m_hObject);
}

BOOL CGdiObject::CreateStockObject(int nIndex)
{
    return Attach(::GetStockObject(nIndex));
}

BOOL CGdiObject::AttachNew(HGDIOBJ hObject)
{
    if (Attach(hObject)) {
        return TRUE;
    }
    if (hObject != nullptr) {
        ::DeleteObject(hObject);
    }
    return FALSE;
}

CPen::CPen(int nPenStyle, int nWidth, COLORREF crColor)
{
    if (!CreatePen(nPenStyle, nWidth, crColor)) {
        AfxThrowResourceException();
    }
}

CPen* AFXAPI CPen::FromHandle(HPEN hPen)
{
    return static_cast<CPen*>(CGdiObject::FromHandle(hPen));
}

BOOL CPen::CreatePen(int nPenStyle, int nWidth, COLORREF crColor)
{
    return AttachNew(::CreatePen(nPenStyle, nWidth, crColor));
}

CBrush::CBrush(COLORREF crColor)
{
    if (!CreateSolidBrush(crColor)) {
        AfxThrowResourceException();
    }
}

CBrush* AFXAPI CBrush::FromHandle(HBRUSH hBrush)
{
    return static_cast<CBrush*>(CGdiObject::FromHandle(hBrush));
}

BOOL CBrush::CreateSolidBrush(COLORREF crColor)
{
    return AttachNew(::CreateSolidBrush(crColor));
}

BOOL CBrush::CreateSysColorBrush(int nIndex)
{
    return Attach(::GetSysColorBrush(nIndex));
}

BOOL CBrush::CreatePatternBrush(CBitmap* pBitmap)
{
    return AttachNew(::CreatePatternBrush(*pBitmap));
}

CFont* AFXAPI CFont::FromHandle(HFONT hFont)
{
    return static_cast<CFont*>(CGdiObject::FromHandle(hFont));
}

BOOL CFont::CreateFontIndirect(const LOGFONT* lpLogFont)
{
    return AttachNew(::CreateFontIndirectW(lpLogFont));
}

BOOL CFont::CreateFont(int nHeight, int nWidth, int nEscapement, int nOrientation, int nWeight,
                       BYTE bItalic, BYTE bUnderline, BYTE cStrikeOut, BYTE nCharSet,
                       BYTE nOutPrecision, BYTE nClipPrecision, BYTE nQuality, BYTE nPitchAndFamily,
                       LPCTSTR lpszFacename)
{
    return AttachNew(::CreateFontW(nHeight, nWidth, nEscapement, nOrientation, nWeight, bItalic,
                                   bUnderline, cStrikeOut, nCharSet, nOutPrecision, nClipPrecision,
                                   nQuality, nPitchAndFamily, lpszFacename));
}

int CFont::GetLogFont(LOGFONT* pLogFont) const
{
    return GetObject(sizeof(LOGFONT), pLogFont);
}

CBitmap* AFXAPI CBitmap::FromHandle(HBITMAP hBitmap)
{
    return static_cast<CBitmap*>(CGdiObject::FromHandle(hBitmap));
}

BOOL CBitmap::LoadBitmap(LPCTSTR lpszResourceName)
{
    return AttachNew(
        ::LoadBitmapW(::AfxFindResourceHandle(lpszResourceName, RT_BITMAP), lpszResourceName));
}

BOOL CBitmap::LoadBitmap(UINT nIDResource)
{
    return LoadBitmap(MAKEINTRESOURCEW(nIDResource));
}

BOOL CBitmap::CreateBitmap(int nWidth, int nHeight, UINT nPlanes, UINT nBitcount,
                           const void* lpBits)
{
    return AttachNew(::CreateBitmap(nWidth, nHeight, nPlanes, nBitcount, lpBits));
}

BOOL CBitmap::CreateCompatibleBitmap(CDC* pDC, int nWidth, int nHeight)
{
    return AttachNew(::CreateCompatibleBitmap(pDC->m_hDC, nWidth, nHeight));
}

int CBitmap::GetBitmap(BITMAP* pBitMap) const
{
    return GetObject(sizeof(BITMAP), pBitMap);
}

CRgn* AFXAPI CRgn::FromHandle(HRGN hRgn)
{
    return static_cast<CRgn*>(CGdiObject::FromHandle(hRgn));
}

BOOL CRgn::CreateRectRgn(int x1, int y1, int x2, int y2)
{
    return AttachNew(::CreateRectRgn(x1, y1, x2, y2));
}

BOOL CRgn::CreateRectRgnIndirect(LPCRECT lpRect)
{
    return AttachNew(::CreateRectRgnIndirect(lpRect));
}

void CRgn::SetRectRgn(LPCRECT lpRect)
{
    ::SetRectRgn(*this, lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
}

int CRgn::CombineRgn(const CRgn* pRgn1, const CRgn* pRgn2, int nCombineMode)
{
    // RGN_COPY takes no second region.
    return ::CombineRgn(*this, *pRgn1, pRgn2 == nullptr ? nullptr : static_cast<HRGN>(*pRgn2),
                        nCombineMode);
}

int CRgn::GetRgnBox(LPRECT lpRect) const
{
    return ::GetRgnBox(*this, lpRect);
}

BOOL CRgn::PtInRegion(POINT point) const
{
    return ::PtInRegion(*this, point.x, point.y);
}
