#include "YString.h"

#include <gtest/gtest.h>

#include <utility>

TEST(YString, ConvertsToAndFromTheSystemsCodePage)
{
    const CString wide(L"caf\xE9 \x20AC");
    const YString bytes(wide);
    EXPECT_EQ(bytes, YUnicodeString(wide).ToBytes().c_str());
    EXPECT_EQ(CString(bytes), wide);
    const YString withNul(CString(L"a\0b", 3));
    EXPECT_EQ(withNul, YString("a\0b", 3));
    EXPECT_EQ(CString(withNul).GetLength(), 3);
    EXPECT_TRUE(YString(CString()).IsEmpty());
    EXPECT_EQ(YString(CString(L"\x4E2D")), "?");
    EXPECT_TRUE(YString(wide, Str::Sensitive).IsSensitive());
}

TEST(YString, IsEqualByLengthAndBytes)
{
    EXPECT_EQ(YString("abc"), "abc");
    EXPECT_NE(YString("abc"), "abC");
    EXPECT_NE(YString("a\0b", 3), YString("a\0c", 3));
    EXPECT_NE(YString("a\0", 2), YString("a"));
    EXPECT_LT(YString("a"), YString("\xE9"));  // unsigned
    EXPECT_EQ(YString(nullptr), YString());
}

TEST(YString, GrowsAndMoves)
{
    YString text("a");
    text += "b";
    text += 'c';
    text += YString("d", 1, Str::Sensitive);
    EXPECT_EQ(text, "abcd");
    EXPECT_TRUE(text.IsSensitive());
    EXPECT_EQ(text + "e" + YString("f"), "abcdef");
    text = text;
    EXPECT_EQ(text, "abcd");
    YString moved = std::move(text);
    EXPECT_TRUE(text.IsEmpty());
    moved = "new";
    EXPECT_EQ(moved, "new");
    EXPECT_TRUE(moved.IsSensitive());  // once sensitive, always
}
