// AlphaImage.h: bitmaps with transparency.
#pragma once

#include "afxwin.h"

// A copy of 32 bits a pixel, its colours multiplied by its alpha, for DrawAlphaImage; a bitmap
// without any alpha is opaque. Null: failed.
HBITMAP CopyAsAlphaImage(HBITMAP source);

// In the middle of the rectangle, in its own size; dimmed: half of it shines through.
void DrawAlphaImage(CDC& dc, const CBitmap& image, const CRect& rect, bool dimmed);
