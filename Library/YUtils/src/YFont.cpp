#include "YFont.h"

#include <afxwin.h>

#include <algorithm>
#include <cwchar>

namespace {

constexpr int defaultDpi = 96;
constexpr int pointsPerInch = 72;

bool SameFace(const LOGFONTW& left, const LOGFONTW& right)
{
    return std::wcsncmp(left.lfFaceName, right.lfFaceName, LF_FACESIZE) == 0;
}

LONG HeightInPixels(const YFontData& font, int dpi)
{
    return font.pointSize != 0 ? -::MulDiv(font.pointSize, dpi, pointsPerInch) : font.pixelHeight;
}

LOGFONTW ToLogFont(const YFontData& font, int dpi)
{
    LOGFONTW result{};
    result.lfHeight = HeightInPixels(font, dpi);
    result.lfWidth = font.width;
    result.lfEscapement = font.escapement;
    result.lfOrientation = font.orientation;
    result.lfWeight = font.weight;
    result.lfItalic = font.italic;
    result.lfUnderline = font.underline;
    result.lfStrikeOut = font.strikeOut;
    result.lfCharSet = font.charSet;
    result.lfOutPrecision = font.outPrecision;
    result.lfClipPrecision = font.clipPrecision;
    result.lfQuality = font.quality;
    result.lfPitchAndFamily = font.pitchAndFamily;
    const unsigned length = std::min<unsigned>(font.face.GetLength(), LF_FACESIZE - 1);
    std::copy_n(font.face.c_str(), length, result.lfFaceName);
    return result;
}

}  // namespace

bool YLogFont::operator==(const YLogFont& other) const noexcept
{
    const LOGFONTW& a = fields;
    const LOGFONTW& b = other.fields;
    return a.lfHeight == b.lfHeight && a.lfWidth == b.lfWidth && a.lfEscapement == b.lfEscapement &&
           a.lfOrientation == b.lfOrientation && a.lfWeight == b.lfWeight &&
           a.lfItalic == b.lfItalic && a.lfUnderline == b.lfUnderline &&
           a.lfStrikeOut == b.lfStrikeOut && a.lfCharSet == b.lfCharSet &&
           a.lfOutPrecision == b.lfOutPrecision && a.lfClipPrecision == b.lfClipPrecision &&
           a.lfQuality == b.lfQuality && a.lfPitchAndFamily == b.lfPitchAndFamily && SameFace(a, b);
}

YFontData::YFontData(const LOGFONTW& font)
    : face(font.lfFaceName, static_cast<unsigned>(::wcsnlen(font.lfFaceName, LF_FACESIZE))),
      pixelHeight(font.lfHeight),
      width(font.lfWidth),
      escapement(font.lfEscapement),
      orientation(font.lfOrientation),
      weight(font.lfWeight),
      italic(font.lfItalic != 0),
      underline(font.lfUnderline != 0),
      strikeOut(font.lfStrikeOut != 0),
      charSet(font.lfCharSet),
      outPrecision(font.lfOutPrecision),
      clipPrecision(font.lfClipPrecision),
      quality(font.lfQuality),
      pitchAndFamily(font.lfPitchAndFamily)
{}

std::unique_ptr<CFont> YCreateFont(CClientDC& dc, const YFontData& font, bool scaleToDevice)
{
    const int dpi = scaleToDevice ? dc.GetDeviceCaps(LOGPIXELSY) : defaultDpi;
    const LOGFONTW fields = ToLogFont(font, dpi);
    auto result = std::make_unique<CFont>();
    if (!result->CreateFontIndirect(&fields)) {
        return nullptr;
    }
    return result;
}
