#include "YUnicodeString.h"

#include <gtest/gtest.h>

#include <string>

TEST(YUnicodeString, ConvertsCodePages)
{
    EXPECT_STREQ(YUnicodeString::FromBytes("\x93 \x80", 1252).c_str(), L"\x201C \x20AC");
    EXPECT_EQ(YUnicodeString(L"\x201C \x20AC").ToBytes(1252), "\x93 \x80");
    EXPECT_EQ(YUnicodeString(L"\xD83D\xDE00").ToBytes(CP_UTF8), "\xF0\x9F\x98\x80");
    EXPECT_EQ(YUnicodeString(L"\x4E2D").ToBytes(1252), "?");
    EXPECT_EQ(YUnicodeString().ToBytes(), "");
    EXPECT_TRUE(YUnicodeString::FromBytes("").IsEmpty());
}

TEST(YUnicodeString, DecodesEveryCharacterOfUtf8)
{
    for (char32_t character = 1; character < 0x110000; character += character < 0x900 ? 1 : 251) {
        if (character >= 0xD800 && character < 0xE000) {
            continue;
        }
        std::wstring units(1, static_cast<wchar_t>(character));
        if (character >= 0x10000) {
            units = {static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10)),
                     static_cast<wchar_t>(0xDC00 + (character & 0x3FF))};
        }
        const YUnicodeString text(units);
        ASSERT_EQ(YUnicodeString::FromUtf8(text.ToBytes(CP_UTF8)), text)
            << static_cast<unsigned>(character);
    }
}

TEST(YUnicodeString, RefusesWhatIsNotUtf8)
{
    for (const char* bytes :
         {"a\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2\x41", "\xC2\xC2\x80",
          "\xE0\x9F\xBF", "\xE2\x82", "\xE2\x82\x41", "\xED\xA0\x80", "\xED\xBF\xBF",
          "\xF0\x8F\xBF\xBF", "\xF0\x9F\x98", "\xF0\x9F\x98\x41", "\xF4\x90\x80\x80",
          "\xF5\x80\x80\x80", "\xFE", "\xFF"}) {
        EXPECT_THROW(YUnicodeString::FromUtf8(bytes), IllegalSequence) << bytes;
    }
}
