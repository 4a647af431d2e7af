// YFont.h: descriptions of fonts, and the font made from one.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <windows.h>

#include <memory>

class CClientDC;
class CFont;

// A LOGFONT as a value. Equal when every field is, the face name up to its terminator: what lies
// behind it is left over from whoever filled the record.
class COMMONUI_API YLogFont
{
public:
    YLogFont() = default;
    YLogFont(const LOGFONTW& font) : fields(font) {}

    const LOGFONTW& Get() const noexcept { return fields; }
    bool operator==(const YLogFont& other) const noexcept;

private:
    LOGFONTW fields{};
};

// What a font should be like, with its height in points or in pixels.
struct COMMONUI_API YFontData
{
    YFontData() = default;
    explicit YFontData(const LOGFONTW& font);  // the height in pixels

    YUnicodeString face;  // cut to 31 characters; empty: the system chooses
    int pointSize = 0;  // 1/72 inch, without the internal leading; 0: pixelHeight counts
    int pixelHeight = 0;  // as LOGFONT's: negative without, positive with the internal leading
    int width = 0;  // average, in pixels; 0: in proportion
    int escapement = 0;  // tenths of a degree
    int orientation = 0;  // tenths of a degree
    int weight = FW_NORMAL;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    BYTE charSet = DEFAULT_CHARSET;
    BYTE outPrecision = OUT_DEFAULT_PRECIS;
    BYTE clipPrecision = CLIP_DEFAULT_PRECIS;
    BYTE quality = DEFAULT_QUALITY;
    BYTE pitchAndFamily = DEFAULT_PITCH | FF_DONTCARE;
};

// The font for a window, null when the system cannot make it. A height in points is scaled by the
// resolution of dc when scaleToDevice, else by 96 DPI; a height in pixels is taken as it is.
COMMONUI_API std::unique_ptr<CFont> YCreateFont(CClientDC& dc, const YFontData& font,
                                                bool scaleToDevice);
