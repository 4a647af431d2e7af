#include "YFont.h"

#include <afxwin.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cwchar>

namespace {

LOGFONTW CourierNew()
{
    LOGFONTW font{};
    font.lfHeight = -13;
    font.lfWidth = 1;
    font.lfEscapement = 2;
    font.lfOrientation = 3;
    font.lfWeight = FW_BOLD;
    font.lfItalic = 1;
    font.lfCharSet = ANSI_CHARSET;
    font.lfPitchAndFamily = FIXED_PITCH;
    std::wcscpy(font.lfFaceName, L"Courier New");
    return font;
}

LOGFONTW Make(const YFontData& data, bool scaleToDevice)
{
    CClientDC dc(nullptr);  // the screen
    LOGFONTW made{};
    if (const auto font = YCreateFont(dc, data, scaleToDevice)) {
        ::GetObjectW(static_cast<HFONT>(font->GetSafeHandle()), sizeof(made), &made);
    }
    return made;
}

}  // namespace

TEST(YLogFont, EqualUpToTheEndOfTheFaceName)
{
    const YLogFont font(CourierNew());
    LOGFONTW other = CourierNew();
    other.lfFaceName[LF_FACESIZE - 1] = L'x';  // behind the terminator
    EXPECT_TRUE(font == YLogFont(other));
    other.lfFaceName[0] = L'c';
    EXPECT_FALSE(font == YLogFont(other));
}

// Every field before the name, a byte at a time: none is left out of the comparison.
TEST(YLogFont, DiffersInEveryField)
{
    const YLogFont font(CourierNew());
    for (std::size_t byte = 0; byte < offsetof(LOGFONTW, lfFaceName); ++byte) {
        LOGFONTW other = CourierNew();
        reinterpret_cast<unsigned char*>(&other)[byte] ^= 0x10;
        EXPECT_FALSE(font == YLogFont(other)) << "byte " << byte;
    }
}

TEST(YCreateFont, TakesEveryFieldOfALogFontAndItsPixels)
{
    for (const bool scale : {false, true}) {
        EXPECT_TRUE(YLogFont(Make(YFontData(CourierNew()), scale)) == YLogFont(CourierNew()));
    }
}

TEST(YCreateFont, ScalesPointsByTheDevice)
{
    YFontData data(CourierNew());
    data.pointSize = 9;
    CClientDC dc(nullptr);
    EXPECT_EQ(Make(data, false).lfHeight, -12);
    EXPECT_EQ(Make(data, true).lfHeight, -::MulDiv(9, dc.GetDeviceCaps(LOGPIXELSY), 72));
}
