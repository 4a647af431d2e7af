// The text of a rectangle, which stands in the settings of every release.
#include "YRect.h"

#include <gtest/gtest.h>

#include <climits>

TEST(RectText, IsWrittenFromTheBottomUpAndReadBack)
{
    EXPECT_EQ(YRect(1, 2, 3, 4).ToString(), L"4, 3, 2, 1");
    for (const YRect& rect : {YRect(1, 2, 3, 4), YRect(INT_MIN, -5, 0, INT_MAX), YRect()}) {
        EXPECT_EQ(YRect(rect.ToString().c_str()), rect);
    }
}

TEST(RectText, IsFourNumbersAndNothingElse)
{
    YRect rect;
    for (const wchar_t* text : {L"4,3,2,-1", L" 4 ,\t3 , 2,  -1 "}) {
        EXPECT_TRUE(YRect::Parse(text, rect)) << text;
        EXPECT_EQ(rect, YRect(-1, 2, 3, 4));
    }
    for (const wchar_t* text :
         {static_cast<const wchar_t*>(nullptr), L"", L"4, 3, 2", L"4, 3, 2, -1, 0",
          L"4, 3, 2, -1 px", L"4, 3, 2, - 1", L"2147483648, 3, 2, -1", L"\u0664, 3, 2, -1"}) {
        EXPECT_FALSE(YRect::Parse(text, rect)) << text;
        EXPECT_EQ(rect, YRect(-1, 2, 3, 4));
        EXPECT_EQ(YRect(text), YRect());
    }
}
