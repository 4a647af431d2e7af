// afxgdi_.h: GDI objects and device contexts. Part of afxwin.h.
#pragma once

#include "afx.h"

class CBitmap;
class CBrush;
class CDC;
class CFont;
class CPen;
class CWnd;

// Owns a GDI object, which is deleted with it. FromHandle also gives objects that own nothing: they
// only lend the handle of something foreign, and end in idle time. An object stays in the thread
// that attached its handle. A class takes no second handle while it has one.
class COMMONFRAMEWORK_API CGdiObject : public CObject
{
    DECLARE_DYNCREATE(CGdiObject)

    CGdiObject() = default;
    ~CGdiObject() override;

    // The thread's object with this handle, else a temporary one; null for null.
    static CGdiObject* AFXAPI FromHandle(HGDIOBJ hObject);

    operator HGDIOBJ() const { return m_hObject; }
    HGDIOBJ GetSafeHandle() const { return m_hObject; }

    // FALSE: there is no handle, or no memory to take it over.
    BOOL Attach(HGDIOBJ hObject);
    HGDIOBJ Detach();
    BOOL DeleteObject();

    // The bytes stored, or needed where lpObject is null; 0: failed.
    int GetObject(int nCount, LPVOID lpObject) const;
    UINT GetObjectType() const;
    BOOL CreateStockObject(int nIndex);

    HGDIOBJ m_hObject = nullptr;

protected:
    // For what was just made: deletes it where it cannot be attached.
    BOOL AttachNew(HGDIOBJ hObject);
};

class COMMONFRAMEWORK_API CPen : public CGdiObject
{
    DECLARE_DYNCREATE(CPen)

    CPen() = default;
    // Throws CResourceException* where the pen cannot be made.
    CPen(int nPenStyle, int nWidth, COLORREF crColor);

    static CPen* AFXAPI FromHandle(HPEN hPen);
    operator HPEN() const { return static_cast<HPEN>(m_hObject); }
    BOOL CreatePen(int nPenStyle, int nWidth, COLORREF crColor);
};

class COMMONFRAMEWORK_API CBrush : public CGdiObject
{
    DECLARE_DYNCREATE(CBrush)

    CBrush() = default;
    // Throws CResourceException* where the brush cannot be made.
    explicit CBrush(COLORREF crColor);

    static CBrush* AFXAPI FromHandle(HBRUSH hBrush);
    operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }
    BOOL CreateSolidBrush(COLORREF crColor);
    BOOL CreateSysColorBrush(int nIndex);  // the system's own brush, which is never deleted
    BOOL CreatePatternBrush(CBitmap* pBitmap);
};

class COMMONFRAMEWORK_API CFont : public CGdiObject
{
    DECLARE_DYNCREATE(CFont)

    static CFont* AFXAPI FromHandle(HFONT hFont);
    operator HFONT() const { return static_cast<HFONT>(m_hObject); }
    BOOL CreateFontIndirect(const LOGFONT* lpLogFont);
    BOOL CreateFont(int nHeight, int nWidth, int nEscapement, int nOrientation, int nWeight,
                    BYTE bItalic, BYTE bUnderline, BYTE cStrikeOut, BYTE nCharSet,
                    BYTE nOutPrecision, BYTE nClipPrecision, BYTE nQuality, BYTE nPitchAndFamily,
                    LPCTSTR lpszFacename);
    int GetLogFont(LOGFONT* pLogFont) const;  // 0: failed
};

class COMMONFRAMEWORK_API CBitmap : public CGdiObject
{
    DECLARE_DYNCREATE(CBitmap)

    static CBitmap* AFXAPI FromHandle(HBITMAP hBitmap);
    operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }
    BOOL LoadBitmap(LPCTSTR lpszResourceName);
    BOOL LoadBitmap(UINT nIDResource);
    BOOL CreateBitmap(int nWidth, int nHeight, UINT nPlanes, UINT nBitcount, const void* lpBits);
    BOOL CreateCompatibleBitmap(CDC* pDC, int nWidth, int nHeight);
    int GetBitmap(BITMAP* pBitMap) const;  // 0: failed
};

class COMMONFRAMEWORK_API CRgn : public CGdiObject
{
    DECLARE_DYNCREATE(CRgn)

    static CRgn* AFXAPI FromHandle(HRGN hRgn);
    operator HRGN() const { return static_cast<HRGN>(m_hObject); }
    BOOL CreateRectRgn(int x1, int y1, int x2, int y2);
    BOOL CreateRectRgnIndirect(LPCRECT lpRect);
    void SetRectRgn(LPCRECT lpRect);
    // This region becomes the combination; the result says what it is (NULLREGION, ...).
    int CombineRgn(const CRgn* pRgn1, const CRgn* pRgn2, int nCombineMode);
    int GetRgnBox(LPRECT lpRect) const;
    BOOL PtInRegion(POINT point) const;
};

// A device context, which is deleted with it. What draws goes to m_hDC, what asks to m_hAttribDC;
// they are the same unless a derived class parts them.
class COMMONFRAMEWORK_API CDC : public CObject
{
    DECLARE_DYNCREATE(CDC)

    CDC() = default;
    ~CDC() override;

    static CDC* AFXAPI FromHandle(HDC hDC);
    operator HDC() const { return m_hDC; }
    HDC GetSafeHdc() const { return m_hDC; }

    BOOL Attach(HDC hDC);  // FALSE: there is no handle, or no memory to take it over
    HDC Detach();
    BOOL CreateCompatibleDC(CDC* pDC);  // null: of the screen
    BOOL DeleteDC();

    BOOL IsPrinting() const { return m_bPrinting; }  // what the one who prints has set
    int GetDeviceCaps(int nIndex) const;
    int SaveDC();
    BOOL RestoreDC(int nSavedDC);

    // The object that was selected before; null: failed, and it still is.
    CGdiObject* SelectStockObject(int nIndex);
    CPen* SelectObject(CPen* pPen);
    CBrush* SelectObject(CBrush* pBrush);
    CFont* SelectObject(CFont* pFont);
    CBitmap* SelectObject(CBitmap* pBitmap);
    int SelectObject(CRgn* pRgn);  // as the clip region, copied; the kind of region
    CFont* GetCurrentFont() const;

    COLORREF GetBkColor() const;
    COLORREF SetBkColor(COLORREF crColor);
    int GetBkMode() const;
    int SetBkMode(int nBkMode);
    COLORREF GetTextColor() const;
    COLORREF SetTextColor(COLORREF crColor);
    UINT SetTextAlign(UINT nFlags);
    int SetROP2(int nDrawMode);
    int SetStretchBltMode(int nStretchMode);

    int SetMapMode(int nMapMode);
    CPoint GetViewportOrg() const;
    CPoint SetViewportOrg(int x, int y);
    CPoint SetViewportOrg(POINT point);
    CPoint SetBrushOrg(int x, int y);
    CPoint SetBrushOrg(POINT point);

    int GetClipBox(LPRECT lpRect) const;
    int SelectClipRgn(CRgn* pRgn);  // null: no clipping
    int IntersectClipRect(LPCRECT lpRect);
    int ExcludeClipRect(LPCRECT lpRect);

    CPoint MoveTo(int x, int y);
    CPoint MoveTo(POINT point);
    BOOL LineTo(int x, int y);
    BOOL LineTo(POINT point);
    BOOL Rectangle(int x1, int y1, int x2, int y2);
    BOOL Rectangle(LPCRECT lpRect);

    void FillRect(LPCRECT lpRect, CBrush* pBrush);
    void FrameRect(LPCRECT lpRect, CBrush* pBrush);
    void InvertRect(LPCRECT lpRect);
    // These two leave the background colour as they find it.
    void FillSolidRect(LPCRECT lpRect, COLORREF clr);
    void FillSolidRect(int x, int y, int cx, int cy, COLORREF clr);
    // A frame of one pixel: left and top in the first colour, right and bottom in the second.
    void Draw3dRect(LPCRECT lpRect, COLORREF clrTopLeft, COLORREF clrBottomRight);
    void DrawFocusRect(LPCRECT lpRect);
    BOOL DrawEdge(LPRECT lpRect, UINT nEdge, UINT nFlags);
    BOOL DrawFrameControl(LPRECT lpRect, UINT nType, UINT nState);

    BOOL TextOut(int x, int y, LPCTSTR lpszString, int nCount);
    BOOL TextOut(int x, int y, const CString& str);
    BOOL ExtTextOut(int x, int y, UINT nOptions, LPCRECT lpRect, LPCTSTR lpszString, UINT nCount,
                    int* lpDxWidths);
    int DrawText(LPCTSTR lpszString, int nCount, LPRECT lpRect, UINT nFormat);
    int DrawText(const CString& str, LPRECT lpRect, UINT nFormat);
    CSize GetTextExtent(LPCTSTR lpszString, int nCount) const;
    CSize GetTextExtent(const CString& str) const;
    BOOL GetTextMetrics(TEXTMETRIC* lpMetrics) const;

    BOOL PatBlt(int x, int y, int nWidth, int nHeight, DWORD dwRop);
    BOOL BitBlt(int x, int y, int nWidth, int nHeight, CDC* pSrcDC, int xSrc, int ySrc,
                DWORD dwRop);
    BOOL StretchBlt(int x, int y, int nWidth, int nHeight, CDC* pSrcDC, int xSrc, int ySrc,
                    int nSrcWidth, int nSrcHeight, DWORD dwRop);
    COLORREF GetPixel(int x, int y) const;
    COLORREF SetPixel(int x, int y, COLORREF crColor);

    HDC m_hDC = nullptr;
    HDC m_hAttribDC = nullptr;
    BOOL m_bPrinting = FALSE;
};

// The client area of a window, for the life of the object; null: the screen. This and the next two
// throw CResourceException* where there is no device context to be had.
class COMMONFRAMEWORK_API CClientDC : public CDC
{
    DECLARE_DYNAMIC(CClientDC)

    explicit CClientDC(CWnd* pWnd);
    ~CClientDC() override;

protected:
    HWND m_hWnd;
};

// The whole window, frame included, for the life of the object; null: the screen.
class COMMONFRAMEWORK_API CWindowDC : public CDC
{
    DECLARE_DYNAMIC(CWindowDC)

    explicit CWindowDC(CWnd* pWnd);
    ~CWindowDC() override;

protected:
    HWND m_hWnd;
};

// BeginPaint and EndPaint round the answer to WM_PAINT.
class COMMONFRAMEWORK_API CPaintDC : public CDC
{
    DECLARE_DYNAMIC(CPaintDC)

    explicit CPaintDC(CWnd* pWnd);
    ~CPaintDC() override;

    PAINTSTRUCT m_ps{};

protected:
    HWND m_hWnd;
};
