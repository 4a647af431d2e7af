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
