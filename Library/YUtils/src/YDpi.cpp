#include "YDpi.h"

#include <afxwin.h>

#include <algorithm>

int AdjustForDpiX(CDC* dc, int value)
{
    const int scaled = ::MulDiv(value, dc->GetDeviceCaps(LOGPIXELSX), 96);
    return value > 0 ? std::max(scaled, 1) : scaled;
}
