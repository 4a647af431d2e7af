#include "AlphaImage.h"

#include <algorithm>
#include <span>

namespace {

BYTE Multiply(BYTE colour, BYTE alpha)
{
    return static_cast<BYTE>((colour * alpha + 127) / 255);
}

void MultiplyByAlpha(std::span<RGBQUAD> pixels)
{
    const bool hasAlpha = std::any_of(pixels.begin(), pixels.end(),
                                      [](const RGBQUAD& pixel) { return pixel.rgbReserved != 0; });
    for (RGBQUAD& pixel : pixels) {
        const BYTE alpha = hasAlpha ? pixel.rgbReserved : BYTE{255};
        pixel = {Multiply(pixel.rgbBlue, alpha), Multiply(pixel.rgbGreen, alpha),
                 Multiply(pixel.rgbRed, alpha), alpha};
    }
}

}  // namespace

HBITMAP CopyAsAlphaImage(HBITMAP source)
{
    BITMAP size{};
    if (::GetObjectW(source, sizeof(size), &size) == 0) {
        return nullptr;
    }
    BITMAPINFO format{};
    format.bmiHeader = {
        sizeof(BITMAPINFOHEADER), size.bmWidth, -size.bmHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const CClientDC screen(nullptr);
    const HBITMAP copy = ::CreateDIBSection(screen, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (copy == nullptr) {
        return nullptr;
    }
    if (::GetDIBits(screen, source, 0, static_cast<UINT>(size.bmHeight), bits, &format,
                    DIB_RGB_COLORS) == 0) {
        ::DeleteObject(copy);
        return nullptr;
    }
    MultiplyByAlpha({static_cast<RGBQUAD*>(bits), static_cast<std::size_t>(size.bmWidth) *
                                                      static_cast<std::size_t>(size.bmHeight)});
    return copy;
}

void DrawAlphaImage(CDC& dc, const CBitmap& image, const CRect& rect, bool dimmed)
{
    BITMAP size{};
    CDC source;
    if (image.GetObject(sizeof(size), &size) == 0 || !source.CreateCompatibleDC(&dc)) {
        return;
    }
    const HGDIOBJ previous = ::SelectObject(source, image.GetSafeHandle());
    const CPoint corner((rect.left + rect.right - size.bmWidth) / 2,
                        (rect.top + rect.bottom - size.bmHeight) / 2);
    const BLENDFUNCTION blend{AC_SRC_OVER, 0, static_cast<BYTE>(dimmed ? 128 : 255), AC_SRC_ALPHA};
    ::GdiAlphaBlend(dc, corner.x, corner.y, size.bmWidth, size.bmHeight, source, 0, 0, size.bmWidth,
                    size.bmHeight, blend);
    ::SelectObject(source, previous);
}
