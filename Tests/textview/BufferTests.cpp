#include "textview/YTextViewBuffer.h"

#include "textview/Lines.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

TEST(YTextViewBuffer, SlotsKeepTheirAllocationAndForgetTheirLine)
{
    YTextViewBuffer buffer(2);
    int attribute = 0;
    const auto line = Line(std::wstring(1000, L'x'), &attribute);
    unsigned removed = 0;
    buffer.AppendLines(&line, 1, removed);
    const wchar_t* const block = buffer.GetLineInfo(0).text.data();
    buffer.ClearLastLine();
    EXPECT_EQ(buffer.GetLineInfo(0).attributes, nullptr);
    EXPECT_EQ(TextOf(buffer, 0), L"");
    Append(buffer, {L"short"});
    EXPECT_EQ(buffer.GetLineInfo(0).text.data(), block);
}

// See YTextViewBuffer::Relay.
TEST(YTextViewBuffer, ShrinkingAWrappedRingKeepsTheSimpleLayout)
{
    YTextViewBuffer buffer(10);
    Append(buffer, {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"9", L"10"});
    Append(buffer, {L"11", L"12", L"13", L"14", L"15", L"16"});  // in slots 0 to 5
    for (int i = 0; i < 3; ++i) {
        buffer.ClearLastLine();  // 7 to 13 in slots 6 to 9, 0 to 2
    }
    EXPECT_FALSE(buffer.SetBufferSize(8));
    // 7 to 10 moved to slots 3 to 6; slot 7 still has its 8; 11 and 12 are read in slots 0 and 1.
    EXPECT_EQ(TextsOf(buffer),
              (std::vector<std::wstring>{L"7", L"8", L"9", L"10", L"8", L"11", L"12"}));
}

// Lines "abcde", "", "fgh", "ij"; with a wrapped ring as well, where no rectangle can be had.
TEST(YTextViewBuffer, CopiesPartsOfItsLines)
{
    YTextViewBuffer flat(5);
    Append(flat, {L"abcde", L"", L"fgh", L"ij"});
    YTextViewBuffer wrapped(5);
    Append(wrapped, {L"x", L"x", L"x", L"abcde", L"", L"fgh", L"ij"});
    wrapped.SetBufferSize(4);
    const struct
    {
        Range range;
        std::optional<std::wstring> text;
    } cases[] = {{{0, 1, 0, 3}, L"bc"},
                 {{0, 2, 0, 2}, L""},
                 {{1, 0, 2, 2}, L"fg\r\n"},
                 {{2, 4, 3, 1}, L"fgh\r\ni\r\n"},
                 {{2, 0, 99, 1}, L"fgh\r\ni\r\n"},
                 {{2, 1, 0, 2}, L"gh\r\nab\r\n"},
                 {{0, 3, 0, 1}, std::nullopt},
                 {{0, 1, 3, 3, true}, L"bc\r\n\0\0\r\ngh\r\nj\r\n"s},
                 {{2, 0, 3, 9, true}, L"fgh\0\0\0\0\0\0\r\nij\r\n"s},
                 {{0, 3, 3, 5, true}, std::nullopt},  // the last line ends left of it
                 {{0, 1, 3, npos, true}, std::nullopt}};
    for (const auto& [range, text] : cases) {
        SCOPED_TRACE(testing::Message() << range.startLine << ", " << range.startColumn << " to "
                                        << range.endLine << ", " << range.endColumn);
        EXPECT_EQ(Copy(flat, range), text);
        EXPECT_TRUE(range.columnar || Copy(wrapped, range) == text);
    }
}

TEST(YTextViewBuffer, ColumnarCopyAcrossTheEndOfTheRingThrows)
{
    YTextViewBuffer buffer(3);
    Append(buffer, {L"a", L"b\0c"s, L"def"});
    Append(buffer, {L"g"});  // in slot 0
    EXPECT_EQ(Copy(buffer, {0, 0, 1, 3, true}), L"b\0\0\r\ndef\r\n"s);  // a NUL ends a field
    void* memory = &buffer;
    unsigned length = 0;
    EXPECT_THROW(buffer.CopyTextToBuffer(memory, length, 0, 0, 2, 1, true), YArrayOutOfRange);
    EXPECT_EQ(memory, nullptr);
}
