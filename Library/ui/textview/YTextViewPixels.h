// YTextViewPixels.h: from cells to pixels and back.
#pragma once

#include <climits>

// Fractions are cut off towards zero. What no int holds becomes the nearest that one does: a
// position so far out is off every screen either way, but must not turn up on the other side.
inline int ToPixels(double value)
{
    if (!(value > INT_MIN)) {  // not a number: as far left
        return INT_MIN;
    }
    return value < INT_MAX ? static_cast<int>(value) : INT_MAX;
}

inline unsigned ToCells(double value)
{
    if (!(value > 0.0)) {
        return 0;
    }
    return value < static_cast<double>(UINT_MAX) ? static_cast<unsigned>(value) : UINT_MAX;
}

// Positions stop at 0 and at the largest one instead of wrapping round.
inline unsigned AddSaturated(unsigned value, unsigned more)
{
    return value > UINT_MAX - more ? UINT_MAX : value + more;
}

inline unsigned SubtractDownTo0(unsigned value, unsigned less)
{
    return value > less ? value - less : 0;
}
