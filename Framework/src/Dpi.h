// Dpi.h: lengths at the resolution of the screen.
#pragma once

#include "afxwin.h"

// Pixels of the screen for pixels at 96 DPI.
inline int ScaleToScreen(int pixels)
{
    const CClientDC screen(nullptr);
    return ::MulDiv(pixels, screen.GetDeviceCaps(LOGPIXELSX), 96);
}
