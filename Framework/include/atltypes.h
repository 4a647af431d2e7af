// atltypes.h: sizes, points and rectangles as values.
#pragma once

#include "afxver_.h"

class CPoint;
class CRect;

// A width and a height.
class CSize : public tagSIZE
{
public:
    CSize() noexcept : CSize(0, 0) {}
    CSize(int initCX, int initCY) noexcept { SetSize(initCX, initCY); }
    CSize(SIZE initSize) noexcept : CSize(initSize.cx, initSize.cy) {}
    CSize(POINT initPt) noexcept : CSize(initPt.x, initPt.y) {}
    // The low word is the width, the high word the height, both signed.
    CSize(DWORD dwSize) noexcept
        : CSize(static_cast<short>(LOWORD(dwSize)), static_cast<short>(HIWORD(dwSize)))
    {}

    void SetSize(int width, int height) noexcept
    {
        cx = width;
        cy = height;
    }
    void operator+=(SIZE size) noexcept { SetSize(cx + size.cx, cy + size.cy); }
    void operator-=(SIZE size) noexcept { SetSize(cx - size.cx, cy - size.cy); }

    CSize operator+(SIZE size) const noexcept { return CSize(cx + size.cx, cy + size.cy); }
    CSize operator-(SIZE size) const noexcept { return CSize(cx - size.cx, cy - size.cy); }
    CSize operator-() const noexcept { return CSize(-cx, -cy); }
    CPoint operator+(POINT point) const noexcept;
    CPoint operator-(POINT point) const noexcept;  // the point, moved back by this size
    CRect operator+(const RECT* lpRect) const noexcept;
    CRect operator-(const RECT* lpRect) const noexcept;

    // Two overloads each, here and below: with one, two values of the class itself would match it
    // either way round.
    friend bool operator==(const CSize& left, const CSize& right) noexcept
    {
        return left.cx == right.cx && left.cy == right.cy;
    }
    friend bool operator==(const CSize& left, const SIZE& right) noexcept
    {
        return left == CSize(right);
    }
};

// A position.
class CPoint : public tagPOINT
{
public:
    CPoint() noexcept : CPoint(0, 0) {}
    CPoint(int initX, int initY) noexcept { SetPoint(initX, initY); }
    CPoint(POINT initPt) noexcept : CPoint(initPt.x, initPt.y) {}
    CPoint(SIZE initSize) noexcept : CPoint(initSize.cx, initSize.cy) {}
    // As mouse messages bring it: x in the low word, y in the high one, both signed.
    CPoint(LPARAM dwPoint) noexcept
        : CPoint(static_cast<short>(LOWORD(dwPoint)), static_cast<short>(HIWORD(dwPoint)))
    {}

    void SetPoint(int newX, int newY) noexcept
    {
        x = newX;
        y = newY;
    }
    void Offset(int xOffset, int yOffset) noexcept { SetPoint(x + xOffset, y + yOffset); }
    void Offset(POINT point) noexcept { Offset(point.x, point.y); }
    void Offset(SIZE size) noexcept { Offset(size.cx, size.cy); }
    void operator+=(SIZE size) noexcept { Offset(size); }
    void operator+=(POINT point) noexcept { Offset(point); }
    void operator-=(SIZE size) noexcept { Offset(-size.cx, -size.cy); }
    void operator-=(POINT point) noexcept { Offset(-point.x, -point.y); }

    CPoint operator+(SIZE size) const noexcept { return CPoint(x + size.cx, y + size.cy); }
    CPoint operator+(POINT point) const noexcept { return CPoint(x + point.x, y + point.y); }
    CPoint operator-(SIZE size) const noexcept { return CPoint(x - size.cx, y - size.cy); }
    CSize operator-(POINT point) const noexcept { return CSize(x - point.x, y - point.y); }
    CPoint operator-() const noexcept { return CPoint(-x, -y); }
    CRect operator+(const RECT* lpRect) const noexcept;
    CRect operator-(const RECT* lpRect) const noexcept;

    friend bool operator==(const CPoint& left, const CPoint& right) noexcept
    {
        return left.x == right.x && left.y == right.y;
    }
    friend bool operator==(const CPoint& left, const POINT& right) noexcept
    {
        return left == CPoint(right);
    }
};

// A rectangle; right and bottom are just outside. Width and the tests expect it normalised: left
// not right of right, top not below bottom.
class CRect : public tagRECT
{
public:
    CRect() noexcept : CRect(0, 0, 0, 0) {}
    CRect(int l, int t, int r, int b) noexcept { SetRect(l, t, r, b); }
    CRect(const RECT& srcRect) noexcept : CRect(&srcRect) {}
    CRect(LPCRECT lpSrcRect) noexcept
        : CRect(lpSrcRect->left, lpSrcRect->top, lpSrcRect->right, lpSrcRect->bottom)
    {}
    CRect(POINT point, SIZE size) noexcept
        : CRect(point.x, point.y, point.x + size.cx, point.y + size.cy)
    {}
    CRect(POINT topLeft, POINT bottomRight) noexcept
        : CRect(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y)
    {}

    int Width() const noexcept { return right - left; }
    int Height() const noexcept { return bottom - top; }
    CSize Size() const noexcept { return CSize(Width(), Height()); }
    // Copies, and const ones, so that nobody writes to them in the belief to move the rectangle.
    const CPoint TopLeft() const noexcept { return CPoint(left, top); }
    const CPoint BottomRight() const noexcept { return CPoint(right, bottom); }
    CPoint CenterPoint() const noexcept;

    operator LPRECT() noexcept { return this; }
    operator LPCRECT() const noexcept { return this; }

    BOOL IsRectEmpty() const noexcept { return left >= right || top >= bottom; }
    BOOL IsRectNull() const noexcept { return *this == CRect(); }
    BOOL PtInRect(POINT point) const noexcept { return ::PtInRect(this, point); }
    BOOL EqualRect(LPCRECT lpRect) const noexcept { return *this == *lpRect; }

    void SetRect(int x1, int y1, int x2, int y2) noexcept
    {
        left = x1;
        top = y1;
        right = x2;
        bottom = y2;
    }
    void SetRect(POINT topLeft, POINT bottomRight) noexcept { *this = CRect(topLeft, bottomRight); }
    void SetRectEmpty() noexcept { *this = CRect(); }
    void CopyRect(LPCRECT lpSrcRect) noexcept { *this = CRect(lpSrcRect); }

    // Outwards; the rectangle's four values are distances of the four sides.
    void InflateRect(int x, int y) noexcept { InflateRect(x, y, x, y); }
    void InflateRect(SIZE size) noexcept { InflateRect(size.cx, size.cy); }
    void InflateRect(LPCRECT lpRect) noexcept;
    void InflateRect(int l, int t, int r, int b) noexcept;
    void DeflateRect(int x, int y) noexcept { InflateRect(-x, -y); }
    void DeflateRect(SIZE size) noexcept { InflateRect(-size.cx, -size.cy); }
    void DeflateRect(LPCRECT lpRect) noexcept;
    void DeflateRect(int l, int t, int r, int b) noexcept { InflateRect(-l, -t, -r, -b); }

    void OffsetRect(int x, int y) noexcept { SetRect(left + x, top + y, right + x, bottom + y); }
    void OffsetRect(POINT point) noexcept { OffsetRect(point.x, point.y); }
    void OffsetRect(SIZE size) noexcept { OffsetRect(size.cx, size.cy); }
    void MoveToX(int x) noexcept { OffsetRect(x - left, 0); }
    void MoveToY(int y) noexcept { OffsetRect(0, y - top); }
    void MoveToXY(int x, int y) noexcept { OffsetRect(x - left, y - top); }
    void MoveToXY(POINT point) noexcept { MoveToXY(point.x, point.y); }
    void NormalizeRect() noexcept;

    // FALSE: the result is empty.
    BOOL IntersectRect(LPCRECT lpRect1, LPCRECT lpRect2) noexcept
    {
        return ::IntersectRect(this, lpRect1, lpRect2);
    }
    BOOL UnionRect(LPCRECT lpRect1, LPCRECT lpRect2) noexcept
    {
        return ::UnionRect(this, lpRect1, lpRect2);
    }
    BOOL SubtractRect(LPCRECT lpRectSrc1, LPCRECT lpRectSrc2) noexcept
    {
        return ::SubtractRect(this, lpRectSrc1, lpRectSrc2);
    }

    void operator+=(POINT point) noexcept { OffsetRect(point); }
    void operator+=(SIZE size) noexcept { OffsetRect(size); }
    void operator+=(LPCRECT lpRect) noexcept { InflateRect(lpRect); }
    void operator-=(POINT point) noexcept { OffsetRect(-point.x, -point.y); }
    void operator-=(SIZE size) noexcept { OffsetRect(-size.cx, -size.cy); }
    void operator-=(LPCRECT lpRect) noexcept { DeflateRect(lpRect); }
    void operator&=(const RECT& rect) noexcept { IntersectRect(this, &rect); }
    void operator|=(const RECT& rect) noexcept { UnionRect(this, &rect); }

    template <class Change>
    CRect operator+(Change change) const noexcept
    {
        CRect result(*this);
        result += change;
        return result;
    }
    template <class Change>
    CRect operator-(Change change) const noexcept
    {
        CRect result(*this);
        result -= change;
        return result;
    }
    CRect operator&(const RECT& rect) const noexcept
    {
        CRect result(*this);
        result &= rect;
        return result;
    }
    CRect operator|(const RECT& rect) const noexcept
    {
        CRect result(*this);
        result |= rect;
        return result;
    }

    friend bool operator==(const CRect& left, const CRect& right) noexcept
    {
        return left.left == right.left && left.top == right.top && left.right == right.right &&
               left.bottom == right.bottom;
    }
    friend bool operator==(const CRect& left, const RECT& right) noexcept
    {
        return left == CRect(right);
    }
};

inline CPoint CSize::operator+(POINT point) const noexcept
{
    return CPoint(cx + point.x, cy + point.y);
}

inline CPoint CSize::operator-(POINT point) const noexcept
{
    return CPoint(point.x - cx, point.y - cy);
}

inline CRect CSize::operator+(const RECT* lpRect) const noexcept
{
    return CRect(lpRect) + *this;
}

inline CRect CSize::operator-(const RECT* lpRect) const noexcept
{
    return CRect(lpRect) - *this;
}

inline CRect CPoint::operator+(const RECT* lpRect) const noexcept
{
    return CRect(lpRect) + *this;
}

inline CRect CPoint::operator-(const RECT* lpRect) const noexcept
{
    return CRect(lpRect) - *this;
}

inline CPoint CRect::CenterPoint() const noexcept
{
    return CPoint((left + right) / 2, (top + bottom) / 2);
}

inline void CRect::InflateRect(LPCRECT lpRect) noexcept
{
    InflateRect(lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
}

inline void CRect::InflateRect(int l, int t, int r, int b) noexcept
{
    SetRect(left - l, top - t, right + r, bottom + b);
}

inline void CRect::DeflateRect(LPCRECT lpRect) noexcept
{
    DeflateRect(lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
}

inline void CRect::NormalizeRect() noexcept
{
    if (left > right) {
        SetRect(right, top, left, bottom);
    }
    if (top > bottom) {
        SetRect(left, bottom, right, top);
    }
}
