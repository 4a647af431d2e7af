// The text of a rectangle, which stands in the settings of every release.
#include "YRect.h"

#include "support/CaseName.h"

#include <gtest/gtest.h>

#include <climits>

TEST(RectText, IsWrittenFromTheBottomUpAndReadBack)
{
    EXPECT_EQ(YRect(1, 2, 3, 4).ToString(), L"4, 3, 2, 1");
    for (const YRect& rect : {YRect(1, 2, 3, 4), YRect(INT_MIN, -5, 0, INT_MAX), YRect()}) {
        EXPECT_EQ(YRect(rect.ToString().c_str()), rect);
    }
}

struct RectTextCase
{
    const char* name;
    const wchar_t* text;
    bool isRectangle;
};
class RectTextParse : public testing::TestWithParam<RectTextCase>
{};

TEST_P(RectTextParse, TakesFourNumbersAndNothingElse)
{
    YRect rect(7, 7, 7, 7);
    EXPECT_EQ(YRect::Parse(GetParam().text, rect), GetParam().isRectangle);
    EXPECT_EQ(rect, GetParam().isRectangle ? YRect(-1, 2, 3, 4) : YRect(7, 7, 7, 7));
    EXPECT_EQ(YRect(GetParam().text), GetParam().isRectangle ? YRect(-1, 2, 3, 4) : YRect());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RectTextParse,
    testing::Values(RectTextCase{"Tight", L"4,3,2,-1", true},
                    RectTextCase{"Blanks", L" 4 ,\t3 , 2,  -1 ", true},
                    RectTextCase{"Null", nullptr, false}, RectTextCase{"Empty", L"", false},
                    RectTextCase{"Three", L"4, 3, 2", false},
                    RectTextCase{"EmptySide", L"4, 3, 2, ", false},
                    RectTextCase{"Five", L"4, 3, 2, -1, 0", false},
                    RectTextCase{"Tail", L"4, 3, 2, -1 px", false},
                    RectTextCase{"Fraction", L"4.0, 3, 2, -1", false},
                    RectTextCase{"Plus", L"+4, 3, 2, -1", false},
                    RectTextCase{"TornSign", L"4, 3, 2, - 1", false},
                    RectTextCase{"TooLarge", L"2147483648, 3, 2, -1", false},
                    RectTextCase{"TooSmall", L"4, 3, 2, -2147483649", false},
                    RectTextCase{"Wraps", L"4, 3, 18446744073709551618, -1", false},
                    RectTextCase{"OtherDigits", L"\u0664, 3, 2, -1", false}),
    CaseName());
