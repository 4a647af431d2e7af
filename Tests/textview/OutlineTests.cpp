#include "textview/YTextViewOutlineSelection.h"

#include "YUnknownPointer.h"
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

void PrintTo(const YTextViewLineDrawInfo& s, std::ostream* stream)
{
    *stream << "(" << s.startX << ", " << s.startY << ")-(" << s.endX << ", " << s.endY << ")";
}

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
        for (const unsigned length : lengths) {
            Append(buffer, {std::wstring(length, L'x')});
        }
    }

    void Select(const Position& begin, const Position& end, bool columns)
    {
        highlight = YUnknownPointer<YTextViewHighlight>::Make(nullptr, begin, end);
        columnar = columns;
    }

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

void ExpectOutline(const Page& page, const Ends& ends, const Segments& segments)
{
    SCOPED_TRACE(testing::PrintToString(segments));
    Selection selection(page.lengths);
    const auto segmentsAt = [&](int offset) {
        return YTextViewOutlineSelection(&selection, offset, page.firstLine, page.lineCount)
            .GetSegments();
    };
    EXPECT_TRUE(segmentsAt(0).empty());
    selection.Select(ends.begin, ends.end, ends.columns);
    EXPECT_EQ(segmentsAt(0), segments);
    Segments moved = segments;
    for (Segment& segment : moved) {
        segment.startX += 100;
        segment.endX += 100;
    }
    EXPECT_EQ(segmentsAt(100), moved);
}

}  // namespace

// Whole outlines on lines of one length are below; here are shorter lines and the page's edges.
TEST(YTextViewOutlineSelection, EndsWithItsLinesAndGoesOnBeyondThePage)
{
    ExpectOutline({{9, 9, 9, 9}, 0, 4}, {{5, 0}, {3, 2}},
                  {Top(0, 5, 8), Top(1, 0, 4), Left(5, 0, 0, -1), Left(0, 1, 2), Bottom(2, 0, 3),
                   Bottom(1, 4, 8), Right(8, 0, 1), Right(3, 2, 2, 1)});
    ExpectOutline({{9, 2, 9}, 0, 3}, {{5, 0}, {8, 2}},
                  {Top(0, 5, 8), Top(1, 0, 1), Left(5, 0, 0, -1), Left(0, 1, 2), Bottom(2, 0, 8),
                   Right(8, 0, 2)});
    // No top step above an empty line.
    ExpectOutline({{9, 0, 4}, 0, 3}, {{5, 0}, {3, 2}},
                  {Top(0, 5, 8), Left(5, 0, 2), Bottom(2, 0, 3), Right(3, 0, 2)});
    ExpectOutline(
        {{9, 9, 9, 9}, 2, 2}, {{5, 0}, {3, 3}},
        {Left(0, 0, 1), Bottom(1, 0, 3), Bottom(0, 4, 8), Right(8, 0, 0), Right(3, 1, 1, 1)});
    ExpectOutline({{9, 9, 9}, 0, 1}, {{0, 0}, {8, 2}},
                  {Top(0, 0, 8), Left(0, 0, 2), Bottom(2, 0, 8), Right(8, 0, 2)});
    ExpectOutline(
        {{0, 9, 9}, 0, 3}, {{0, 0}, {3, 2}},
        {Left(0, 0, 2), Bottom(2, 0, 3), Bottom(1, 4, 8), Right(0, 0, 1), Right(3, 2, 2, 1)});
    ExpectOutline({{9, 9, 9}, 2, 1}, {{0, 0}, {8, 1}}, {});  // above the page
    ExpectOutline({{9, 9, 4}, 0, 3}, {{2, 0}, {5, 2}, true},
                  {Top(0, 2, 5), Left(2, 0, 2), Bottom(2, 2, 3), Bottom(1, 4, 5), Right(5, 0, 1),
                   Right(3, 2, 2, 1)});
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
