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
