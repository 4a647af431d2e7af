#include "textview/YTextViewOutlineSelection.h"

#include "YUnknownPointer.h"
#include "support/CaseName.h"
#include "textview/ITextViewSelectionSink.h"
#include "textview/Lines.h"
#include "textview/YTextViewHighlight.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using Position = YTextViewCharPosition;
using Segment = YTextViewLineDrawInfo;
using Segments = std::vector<Segment>;

constexpr double w = 7.5;
constexpr int h = 16;

class Selection final : public ITextViewSelectionSink
{
public:
    explicit Selection(const std::vector<unsigned>& lengths) : buffer(50)
    {
        std::vector<std::wstring> texts;
        for (const unsigned length : lengths) {
            texts.emplace_back(length, L'x');
        }
        Append(buffer, texts);
    }

    void Select(const Position& begin, const Position& end, bool columns)
    {
        highlight = YUnknownPointer<YTextViewHighlight>::Make(nullptr, begin, end);
        columnar = columns;
    }
    void SelectNothing() { highlight.Reset(); }

    const YTextViewBuffer& GetBuffer() const override { return buffer; }
    YTextViewHighlight* GetHighlight() const override { return highlight.Get(); }
    bool IsColumnSelect() const override { return columnar; }
    double GetCharacterWidth() const override { return w; }
    int GetCharacterHeight() const override { return h; }

private:
    YTextViewBuffer buffer;
    YUnknownPointer<YTextViewHighlight> highlight;
    bool columnar = false;
};

// Segments in cells, at an x offset of 0; dx is what a side is moved by.
Segment Top(unsigned row, unsigned first, unsigned last)
{
    const int y = static_cast<int>(row) * h;
    return {first * w, y, (last + 1) * w, y};
}

Segment Bottom(unsigned row, unsigned first, unsigned last)
{
    const int y = static_cast<int>(row + 1) * h - 1;
    return {first * w, y, (last + 1) * w, y};
}

Segment Left(unsigned column, unsigned first, unsigned last, int dx = 0)
{
    const double x = column * w + dx;
    return {x, static_cast<int>(first) * h, x, static_cast<int>(last + 1) * h};
}

Segment Right(unsigned column, unsigned first, unsigned last, int dx = 0)
{
    const double x = column * w + w - 1.0 + dx;
    return {x, static_cast<int>(first) * h, x, static_cast<int>(last + 1) * h};
}

}  // namespace

void PrintTo(const YTextViewLineDrawInfo& s, std::ostream* stream)
{
    *stream << "(" << s.startX << ", " << s.startY << ")-(" << s.endX << ", " << s.endY << ")";
}

// The lines by their lengths, and which of them are on the page.
struct Page
{
    std::vector<unsigned> lengths;
    unsigned firstLine, lineCount;
};

struct Ends
{
    Position begin, end;
    bool columns = false;
};

struct OutlineCase
{
    OutlineCase(const char* title, const Page& shown, const Ends& selected, const Segments& lines)
        : name(title), page(shown), ends(selected), segments(lines)
    {}

    const char* name;
    Page page;
    Ends ends;
    Segments segments;
};

class YTextViewOutline : public testing::TestWithParam<OutlineCase>
{};

TEST_P(YTextViewOutline, HasTheseSegments)
{
    const auto& [name, page, ends, segments] = GetParam();
    Selection selection(page.lengths);
    selection.Select(ends.begin, ends.end, ends.columns);
    const YTextViewOutlineSelection outline(&selection, 0, page.firstLine, page.lineCount);
    EXPECT_EQ(outline.GetSegments(), segments);
}

// Whole outlines on lines of one length are below; here are the shorter lines and the page's edges.
INSTANTIATE_TEST_SUITE_P(
    Stream, YTextViewOutline,
    testing::Values(
        OutlineCase("StepsAtBothEnds", {{9, 9, 9, 9}, 0, 4}, {{5, 0}, {3, 2}},
                    {Top(0, 5, 8), Top(1, 0, 4), Left(5, 0, 0, -1), Left(0, 1, 2), Bottom(2, 0, 3),
                     Bottom(1, 4, 8), Right(8, 0, 1), Right(3, 2, 2, 1)}),
        OutlineCase("TopStepEndsWithItsLine", {{9, 2, 9}, 0, 3}, {{5, 0}, {8, 2}},
                    {Top(0, 5, 8), Top(1, 0, 1), Left(5, 0, 0, -1), Left(0, 1, 2), Bottom(2, 0, 8),
                     Right(8, 0, 2)}),
        OutlineCase("TopStepEndsWithTheSelection", {{9, 9}, 0, 2}, {{5, 0}, {1, 1}},
                    {Top(0, 5, 8), Top(1, 0, 1), Left(5, 0, 0, -1), Left(0, 1, 1), Bottom(1, 0, 1),
                     Bottom(0, 5, 8), Right(8, 0, 0), Right(1, 1, 1, 1)}),
        OutlineCase("NoTopStepAboveAnEmptyLine", {{9, 0, 4}, 0, 3}, {{5, 0}, {3, 2}},
                    {Top(0, 5, 8), Left(5, 0, 2), Bottom(2, 0, 3), Right(3, 0, 2)}),
        OutlineCase("BeginsAboveThePage", {{9, 9, 9, 9}, 2, 2}, {{5, 0}, {3, 3}},
                    {Left(0, 0, 1), Bottom(1, 0, 3), Bottom(0, 4, 8), Right(8, 0, 0),
                     Right(3, 1, 1, 1)}),
        OutlineCase("BeginsOnTheLineAboveThePage", {{9, 9, 9}, 1, 2}, {{5, 0}, {8, 2}},
                    {Top(0, 0, 4), Left(0, 0, 1), Bottom(1, 0, 8), Right(8, 0, 1)}),
        OutlineCase("EndsOnTheFirstRow", {{9, 9, 9}, 2, 1}, {{5, 0}, {3, 2}},
                    {Left(0, 0, 0), Bottom(0, 0, 3), Right(3, 0, 0)}),
        OutlineCase("EndsBelowThePage", {{9, 9, 9}, 0, 1}, {{0, 0}, {8, 2}},
                    {Top(0, 0, 8), Left(0, 0, 2), Bottom(2, 0, 8), Right(8, 0, 2)}),
        OutlineCase("BeginsOnAnEmptyLine", {{0, 9, 9}, 0, 3}, {{0, 0}, {3, 2}},
                    {Left(0, 0, 2), Bottom(2, 0, 3), Bottom(1, 4, 8), Right(0, 0, 1),
                     Right(3, 2, 2, 1)}),
        OutlineCase("AboveThePage", {{9, 9, 9}, 2, 1}, {{0, 0}, {8, 1}}, {}),
        OutlineCase("BelowThePage", {{9, 9, 9}, 0, 2}, {{0, 2}, {8, 2}}, {})),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Columnar, YTextViewOutline,
    testing::Values(OutlineCase("LastLineEndsWithin", {{9, 9, 4}, 0, 3}, {{2, 0}, {5, 2}, true},
                                {Top(0, 2, 5), Left(2, 0, 2), Bottom(2, 2, 3), Bottom(1, 4, 5),
                                 Right(5, 0, 1), Right(3, 2, 2, 1)}),
                    OutlineCase("BeginsAboveThePage", {{9, 9, 9}, 1, 2}, {{2, 0}, {5, 2}, true},
                                {Left(2, 0, 1), Bottom(1, 2, 5), Right(5, 0, 1)}),
                    OutlineCase("UpsideDown", {{9, 1, 1}, 0, 3}, {{2, 2}, {5, 0}, true}, {})),
    CaseName());

TEST(YTextViewOutlineSelection, NothingSelectedHasNoSegments)
{
    Selection selection({9});
    EXPECT_TRUE(YTextViewOutlineSelection(&selection, 0, 0, 1).GetSegments().empty());
}

TEST(YTextViewOutlineSelection, TheOffsetMovesEverySegment)
{
    Selection selection({9, 9, 9});
    selection.Select({5, 0}, {3, 2}, false);
    const Segments plain = YTextViewOutlineSelection(&selection, 0, 0, 3).GetSegments();
    const Segments moved = YTextViewOutlineSelection(&selection, 100, 0, 3).GetSegments();
    ASSERT_EQ(plain.size(), moved.size());
    for (std::size_t i = 0; i < plain.size(); ++i) {
        EXPECT_DOUBLE_EQ(moved[i].startX, plain[i].startX + 100);
        EXPECT_DOUBLE_EQ(moved[i].endX, plain[i].endX + 100);
        EXPECT_EQ(moved[i].startY, plain[i].startY);
    }
}

namespace {

using Cells = std::set<std::pair<int, int>>;  // row, column

constexpr int columns = 4;
constexpr int rows = 4;

// The cells that a horizontal segment runs along.
void AddRow(Cells& cells, int row, const Segment& segment)
{
    const int last = static_cast<int>(std::lround(segment.endX / w));
    for (int column = static_cast<int>(std::lround(segment.startX / w)); column < last; ++column) {
        cells.insert({row, column});
    }
}

void AddColumn(Cells& cells, int column, const Segment& segment)
{
    for (int row = segment.startY / h; row < segment.endY / h; ++row) {
        cells.insert({row, column});
    }
}

struct Edges
{
    Cells top, bottom, left, right;

    bool operator==(const Edges&) const = default;
};

// Left sides stand between the top lines and the bottom lines, right sides after those.
Edges EdgesOf(const Segments& segments)
{
    Edges edges;
    bool afterBottom = false;
    for (const Segment& segment : segments) {
        if (segment.startY == segment.endY && segment.startY % h == 0) {
            AddRow(edges.top, segment.startY / h, segment);
        } else if (segment.startY == segment.endY) {
            AddRow(edges.bottom, segment.startY / h, segment);
            afterBottom = true;
        } else if (afterBottom) {
            AddColumn(edges.right, static_cast<int>(std::lround((segment.startX + 1) / w)) - 1,
                      segment);
        } else {
            AddColumn(edges.left, static_cast<int>(std::lround(segment.startX / w)), segment);
        }
    }
    return edges;
}

Edges EdgesOf(const Cells& cells)
{
    Edges edges;
    for (const auto& cell : cells) {
        const auto& [row, column] = cell;
        const auto addUnless = [&](Cells& edge, int otherRow, int otherColumn) {
            if (!cells.contains({otherRow, otherColumn})) {
                edge.insert(cell);
            }
        };
        addUnless(edges.top, row - 1, column);
        addUnless(edges.bottom, row + 1, column);
        addUnless(edges.left, row, column - 1);
        addUnless(edges.right, row, column + 1);
    }
    return edges;
}

}  // namespace

// On lines of one length every side of the outline divides a selected cell from one that is not.
TEST(YTextViewOutlineSelection, SurroundsExactlyTheSelectedCells)
{
    Selection selection(std::vector<unsigned>(rows, columns));
    for (int i = 0; i < 2 * rows * columns * rows * columns; ++i) {
        const bool columnar = i % 2 == 1;
        const int first = i / 2 % (rows * columns);
        const int last = i / 2 / (rows * columns);
        const int left = first % columns;
        const int right = last % columns;
        if (first > last || (columnar && left > right)) {
            continue;
        }
        Cells cells;
        for (int cell = first; cell <= last; ++cell) {
            const int column = cell % columns;
            if (!columnar || (left <= column && column <= right)) {
                cells.insert({cell / columns, column});
            }
        }
        selection.Select(
            Position(static_cast<unsigned>(left), static_cast<unsigned>(first / columns)),
            Position(static_cast<unsigned>(right), static_cast<unsigned>(last / columns)),
            columnar);
        const YTextViewOutlineSelection outline(&selection, 0, 0, rows);
        EXPECT_EQ(EdgesOf(outline.GetSegments()), EdgesOf(cells))
            << (columnar ? "columns " : "stream ") << first << " to " << last;
    }
}
