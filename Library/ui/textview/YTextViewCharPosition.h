// YTextViewCharPosition.h: the address of a character cell.
#pragma once

// Counted from 0; line 0 is the oldest one held. npos in either field: past every end.
struct YTextViewCharPosition
{
    unsigned column = 0;  // UTF-16 units
    unsigned line = 0;

    YTextViewCharPosition() = default;
    YTextViewCharPosition(unsigned atColumn, unsigned atLine) : column(atColumn), line(atLine) {}

    bool operator==(const YTextViewCharPosition&) const = default;
};
