// ColumnInfo.h: the table of columns that a list is made from.
#pragma once

#include "YUnicodeString.h"

struct ColumnInfoExact
{
    YUnicodeString title;
    int width;  // pixels at 96 DPI; -1: what the other columns leave
    int format;  // LVCFMT_...
};

struct ColumnInfoRatio
{
    YUnicodeString title;
    double ratio;  // of the width that is there
    int format;  // LVCFMT_...
};
