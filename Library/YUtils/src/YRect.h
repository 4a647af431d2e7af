// YRect.h: points and rectangles, whole and fractional.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <atltypes.h>

#include <utility>

// A point in pixels.
struct YPoint
{
    int x = 0;
    int y = 0;

    YPoint() = default;
    YPoint(int atX, int atY) : x(atX), y(atY) {}
    YPoint(POINT point) : x(point.x), y(point.y) {}

    operator CPoint() const { return CPoint(x, y); }
    bool operator==(const YPoint&) const = default;
};

// The four sides of a rectangle; right and bottom lie just outside it. The sides may be crossed
// (a drag to the left): Normalize orders them.
template <class Number>
struct YRectOf
{
    Number left = 0;
    Number top = 0;
    Number right = 0;
    Number bottom = 0;

    YRectOf() = default;
    YRectOf(Number atLeft, Number atTop, Number atRight, Number atBottom)
        : left(atLeft), top(atTop), right(atRight), bottom(atBottom)
    {}
    YRectOf(const RECT& rect)
        : left(static_cast<Number>(rect.left)),
          top(static_cast<Number>(rect.top)),
          right(static_cast<Number>(rect.right)),
          bottom(static_cast<Number>(rect.bottom))
    {}

    Number GetWidth() const { return right - left; }  // negative while the sides are crossed
    Number GetHeight() const { return bottom - top; }
    bool IsEmpty() const { return right <= left || bottom <= top; }

    void Normalize()
    {
        if (left > right) {
            std::swap(left, right);
        }
        if (top > bottom) {
            std::swap(top, bottom);
        }
    }

    // Fractions are cut off towards zero.
    operator CRect() const
    {
        return CRect(static_cast<int>(left), static_cast<int>(top), static_cast<int>(right),
                     static_cast<int>(bottom));
    }
    bool operator==(const YRectOf&) const = default;
};

using YRectF = YRectOf<double>;

// A whole rectangle has a text as well: bottom, right, top and left as decimal numbers, separated
// by commas. The order is the reverse of every other one here; it stays, because the settings of
// earlier releases are full of such texts.
struct YRect : YRectOf<int>
{
    using YRectOf::YRectOf;

    YRect() = default;
    // What is no rectangle's text becomes an empty rectangle at the origin.
    COMMONUI_API explicit YRect(const wchar_t* text);

    // False: rect is as it was. Blanks may stand round the numbers, and nothing else.
    COMMONUI_API static bool Parse(const wchar_t* text, YRect& rect);
    COMMONUI_API YUnicodeString ToString() const;  // "4, 3, 2, 1" for the sides 1, 2, 3, 4
};
