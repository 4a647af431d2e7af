#include "textview/YTextViewBuffer.h"

#include "support/CaseName.h"
#include "textview/Lines.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace std::string_literals;

}  // namespace

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

TEST(YTextViewBuffer, ClearingTheLastLineOfNoneWrapsTheCount)
{
    YTextViewBuffer buffer(3);
    buffer.ClearLastLine();
    EXPECT_EQ(buffer.GetLineCount(), npos);
    EXPECT_EQ(Copy(buffer), std::nullopt);
    Append(buffer, {L"filler"});  // into the slot before the first
    EXPECT_EQ(buffer.GetLineCount(), 0u);
    buffer.ClearLastLine();
    buffer.Clear();
    EXPECT_EQ(buffer.GetLineCount(), 0u);
    EXPECT_EQ(Append(buffer, {L"a", L"b"}), 0u);
    EXPECT_EQ(TextsOf(buffer), (std::vector<std::wstring>{L"a", L"b"}));
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
    EXPECT_TRUE(buffer.SetBufferSize(0));  // no buffer is smaller than a line
    EXPECT_EQ(buffer.GetLineCount(), 1u);
}

struct CopyCase
{
    const char* name;
    Range range;
    std::optional<std::wstring> text;
};

class YTextViewBufferCopy : public testing::TestWithParam<CopyCase>
{};

// Lines "abcde", "", "fgh", "ij"; with a wrapped ring as well, where no rectangle can be had.
TEST_P(YTextViewBufferCopy, Copies)
{
    const CopyCase& c = GetParam();
    YTextViewBuffer flat(5);
    Append(flat, {L"abcde", L"", L"fgh", L"ij"});
    EXPECT_EQ(Copy(flat, c.range), c.text);
    if (!c.range.columnar) {
        YTextViewBuffer wrapped(5);
        Append(wrapped, {L"x", L"x", L"x", L"abcde", L"", L"fgh", L"ij"});
        wrapped.SetBufferSize(4);
        EXPECT_EQ(Copy(wrapped, c.range), c.text);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Stream, YTextViewBufferCopy,
    testing::Values(CopyCase{"All", {}, L"abcde\r\n\r\nfgh\r\nij\r\n"},
                    CopyCase{"PartOfOneLine", {0, 1, 0, 3}, L"bc"},
                    CopyCase{"NothingOfOneLine", {0, 2, 0, 2}, L""},
                    CopyCase{"StartAtTheEndOfALine", {0, 5, 2, 1}, L"\r\nf\r\n"},
                    CopyCase{"StartOnAnEmptyLine", {1, 0, 2, 2}, L"fg\r\n"},
                    CopyCase{"StartBeyondTheLine", {2, 4, 3, 1}, L"fgh\r\ni\r\n"},
                    CopyCase{"EndBeyondTheLine", {2, 0, 3, 99}, L"fgh\r\nij\r\n"},
                    CopyCase{"EndBeyondTheLines", {2, 0, 99, 1}, L"fgh\r\ni\r\n"},
                    CopyCase{"LinesBackwards", {2, 1, 0, 2}, L"gh\r\nab\r\n"},
                    CopyCase{"ColumnsBackwards", {0, 3, 0, 1}, std::nullopt}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Columnar, YTextViewBufferCopy,
    testing::Values(
        CopyCase{"ShortLinesAreFilled", {0, 1, 3, 3, true}, L"bc\r\n\0\0\r\ngh\r\nj\r\n"s},
        CopyCase{"WidthIsThatAskedFor", {2, 0, 3, 9, true}, L"fgh\0\0\0\0\0\0\r\nij\r\n"s},
        CopyCase{"EndLineShorterThanTheLeftColumn", {0, 3, 3, 5, true}, std::nullopt},
        CopyCase{"ToTheEndOfTheLines", {0, 1, 3, npos, true}, std::nullopt},
        CopyCase{"UpsideDown", {1, 0, 0, npos, true}, std::nullopt}),
    CaseName());

TEST(YTextViewBuffer, AFieldOfARectangleEndsAtANul)
{
    YTextViewBuffer buffer(3);
    Append(buffer, {L"a\0c"s, L"def"});
    EXPECT_EQ(Copy(buffer, {0, 0, 1, 3, true}), L"a\0\0\r\ndef\r\n"s);
}

TEST(YTextViewBuffer, ColumnarCopyAcrossTheEndOfTheRingThrows)
{
    YTextViewBuffer buffer(3);
    Append(buffer, {L"a", L"b", L"c"});
    Append(buffer, {L"d"});  // in slot 0
    EXPECT_EQ(Copy(buffer, {0, 0, 1, 1, true}), L"b\r\nc\r\n");
    void* memory = &buffer;
    unsigned length = 0;
    EXPECT_THROW(buffer.CopyTextToBuffer(memory, length, 0, 0, 2, 1, true), YArrayOutOfRange);
    EXPECT_EQ(memory, nullptr);
}
