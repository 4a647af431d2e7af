#include "textview/YTextViewBuffer.h"

#include "support/CaseName.h"
#include "textview/Lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using namespace std::string_literals;

std::vector<std::wstring> Numbers(unsigned first, unsigned count)
{
    std::vector<std::wstring> texts;
    for (unsigned i = 0; i < count; ++i) {
        texts.push_back(std::to_wstring(first + i));
    }
    return texts;
}

}  // namespace

struct AppendCase
{
    const char* name;
    unsigned capacity, held, appended, removed, oldest;
};

class YTextViewBufferAppend : public testing::TestWithParam<AppendCase>
{};

TEST_P(YTextViewBufferAppend, DropsExactlyWhatDoesNotFit)
{
    const AppendCase& c = GetParam();
    YTextViewBuffer buffer(c.capacity);
    Append(buffer, Numbers(1, c.held));
    EXPECT_EQ(Append(buffer, Numbers(c.held + 1, c.appended)), c.removed);
    const unsigned last = c.held + c.appended;
    EXPECT_EQ(TextsOf(buffer), Numbers(c.oldest, last - c.oldest + 1));
}

INSTANTIATE_TEST_SUITE_P(Sizes, YTextViewBufferAppend,
                         testing::Values(AppendCase{"Fits", 3, 1, 2, 0, 1},
                                         AppendCase{"OneTooMany", 3, 3, 1, 1, 2},
                                         AppendCase{"MoreThanCapacity", 4, 0, 10, 0, 7},
                                         AppendCase{"ReplacesAll", 3, 2, 3, 2, 3},
                                         AppendCase{"MoreThanAll", 3, 3, 5, 3, 6},
                                         AppendCase{"RingOfOne", 1, 1, 1, 1, 2}),
                         CaseName());

TEST(YTextViewBuffer, AppendReportsAChangeOfCountOrLongestLengthOnly)
{
    YTextViewBuffer buffer(2);
    unsigned removed = 9;
    EXPECT_FALSE(buffer.AppendLines(nullptr, 0, removed));
    EXPECT_EQ(removed, 0u);

    const auto append = [&](const wchar_t* text) {
        const auto line = Line(text);
        return buffer.AppendLines(&line, 1, removed);
    };
    EXPECT_TRUE(append(L"abc"));
    EXPECT_TRUE(append(L""));
    EXPECT_TRUE(append(L"ab"));  // the longest has left
    EXPECT_EQ(removed, 1u);
    EXPECT_FALSE(append(L"ab"));  // full, and no longer than the longest
    EXPECT_EQ(removed, 1u);
    EXPECT_TRUE(append(L"abcd"));
    EXPECT_EQ(buffer.GetMaxLineLength(), 4u);
}

TEST(YTextViewBuffer, LongestLengthFallsWhenItsLastHolderLeaves)
{
    YTextViewBuffer buffer(3);
    Append(buffer, {L"long", L"a", L"long"});
    Append(buffer, {L"b"});
    EXPECT_EQ(buffer.GetMaxLineLength(), 4u);
    Append(buffer, {L"c"});
    EXPECT_EQ(buffer.GetMaxLineLength(), 4u);
    Append(buffer, {L"dd"});
    EXPECT_EQ(buffer.GetMaxLineLength(), 2u);
    buffer.Clear();
    EXPECT_EQ(buffer.GetMaxLineLength(), 0u);
}

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

// The line that replaces the last one is seldom shorter for long: the scroll range must not jump.
TEST(YTextViewBuffer, ClearingTheLastLineKeepsTheLongestLength)
{
    YTextViewBuffer buffer(3);
    Append(buffer, {L"a", L"longest"});
    buffer.ClearLastLine();
    EXPECT_EQ(TextsOf(buffer), std::vector<std::wstring>{L"a"});
    EXPECT_EQ(buffer.GetMaxLineLength(), 7u);
    Append(buffer, {L"b"});
    EXPECT_EQ(buffer.GetMaxLineLength(), 7u);
    Append(buffer, {L"c", L"d", L"e"});
    EXPECT_EQ(buffer.GetMaxLineLength(), 1u);
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

TEST(YTextViewBuffer, LinesBeyondTheLastAreOtherSlotsNotOutOfBounds)
{
    YTextViewBuffer buffer(3);
    Append(buffer, Numbers(1, 4));
    EXPECT_EQ(TextOf(buffer, 3), L"2");
    EXPECT_NO_THROW(buffer.GetLineInfo(npos));
}

struct ResizeCase
{
    const char* name;
    unsigned capacity, appended, size;
    bool dropped;
    unsigned oldest;
};

class YTextViewBufferResize : public testing::TestWithParam<ResizeCase>
{};

TEST_P(YTextViewBufferResize, KeepsTheNewestLinesInOrderAndTheRingSound)
{
    const ResizeCase& c = GetParam();
    YTextViewBuffer buffer(c.capacity);
    for (unsigned i = 1; i <= c.appended; ++i) {
        Append(buffer, {std::to_wstring(i)});
    }
    EXPECT_EQ(buffer.SetBufferSize(c.size), c.dropped);
    EXPECT_EQ(TextsOf(buffer), Numbers(c.oldest, c.appended - c.oldest + 1));
    const unsigned size = std::max(c.size, 1u);
    Append(buffer, Numbers(c.appended + 1, size));
    EXPECT_EQ(TextsOf(buffer), Numbers(c.appended + 1, size));
}

INSTANTIATE_TEST_SUITE_P(Layouts, YTextViewBufferResize,
                         testing::Values(ResizeCase{"Same", 4, 3, 4, false, 1},
                                         ResizeCase{"HeadAtFront", 4, 4, 6, false, 1},
                                         ResizeCase{"ShrinkAtFront", 4, 4, 2, true, 3},
                                         ResizeCase{"GrowWrapped", 4, 6, 6, false, 3},
                                         ResizeCase{"ShrinkWrappedToLines", 5, 7, 3, true, 5},
                                         ResizeCase{"ShrinkToOne", 5, 7, 1, true, 7},
                                         ResizeCase{"Empty", 4, 0, 2, false, 1},
                                         ResizeCase{"NothingIsOneLine", 4, 2, 0, true, 2}),
                         CaseName());

// See YTextViewBuffer::Relay.
TEST(YTextViewBuffer, ShrinkingAWrappedRingKeepsTheSimpleLayout)
{
    YTextViewBuffer buffer(10);
    Append(buffer, Numbers(1, 10));
    Append(buffer, Numbers(11, 6));  // 7 to 16 in slots 6 to 9, 0 to 5
    for (int i = 0; i < 3; ++i) {
        buffer.ClearLastLine();  // 7 to 13 in slots 6 to 9, 0 to 2
    }
    EXPECT_FALSE(buffer.SetBufferSize(8));
    // 7 to 10 moved to slots 3 to 6; slot 7 still has its 8; 11 and 12 are read in slots 0 and 1.
    EXPECT_EQ(TextsOf(buffer),
              (std::vector<std::wstring>{L"7", L"8", L"9", L"10", L"8", L"11", L"12"}));
}

TEST(YTextViewBuffer, TheLongestLineIsFollowedThroughAChangeOfSize)
{
    YTextViewBuffer buffer(4);
    Append(buffer, {L"a", L"b", L"longest", L"c"});
    Append(buffer, {L"d", L"e"});  // wrapped: the longest is the oldest, in slot 2
    buffer.SetBufferSize(6);  // now in slot 4
    Append(buffer, {L"f", L"g"});
    EXPECT_EQ(buffer.GetMaxLineLength(), 7u);
    Append(buffer, {L"h"});
    EXPECT_EQ(buffer.GetMaxLineLength(), 1u);
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
                    CopyCase{"OneLineWhole", {2, npos, 2, npos}, L"fgh"},
                    CopyCase{"NothingOfOneLine", {0, 2, 0, 2}, L""},
                    CopyCase{"StartAtTheEndOfALine", {0, 5, 2, 1}, L"\r\nf\r\n"},
                    CopyCase{"StartOnAnEmptyLine", {1, 0, 2, 2}, L"fg\r\n"},
                    CopyCase{"EndOnAnEmptyLine", {0, 3, 1, 0}, L"de\r\n\r\n"},
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
        CopyCase{"OneLine", {0, 1, 0, 3, true}, L"bc"},
        CopyCase{"WidthIsThatAskedFor", {2, 0, 3, 9, true}, L"fgh\0\0\0\0\0\0\r\nij\r\n"s},
        CopyCase{"EndLineShorterThanTheLeftColumn", {0, 3, 3, 5, true}, std::nullopt},
        CopyCase{"ToTheEndOfTheLines", {0, 1, 3, npos, true}, std::nullopt},
        CopyCase{"FromTheStartToTheEnd", {0, 0, 3, npos, true}, std::nullopt},
        CopyCase{"UpsideDown", {1, 0, 0, npos, true}, std::nullopt}),
    CaseName());

TEST(YTextViewBuffer, AFieldOfARectangleEndsAtANul)
{
    YTextViewBuffer buffer(3);
    Append(buffer, {L"a\0c"s, L"def"});
    EXPECT_EQ(Copy(buffer, {0, 0, 1, 3, true}), L"a\0\0\r\ndef\r\n"s);
}

TEST(YTextViewBuffer, AnEmptyBufferIsNotCopied)
{
    YTextViewBuffer buffer(3);
    EXPECT_EQ(Copy(buffer), std::nullopt);
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
