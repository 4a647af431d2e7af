#include "textview/YTextViewOutlineSelection.h"

#include "textview/ITextViewSelectionSink.h"
#include "textview/YTextViewBuffer.h"
#include "textview/YTextViewHighlight.h"
#include "textview/YTextViewPixels.h"

#include <algorithm>

namespace {

// What begins above the page begins at its first row.
unsigned RowOf(unsigned line, unsigned firstLine)
{
    return line >= firstLine ? line - firstLine : 0;
}

}  // namespace

YTextViewOutlineSelection::YTextViewOutlineSelection(const ITextViewSelectionSink* selectionSink,
                                                     int offset, unsigned firstLine,
                                                     unsigned lineCount)
    : sink(selectionSink), xOffset(offset)
{
    const YTextViewHighlight* const highlight = sink->GetHighlight();
    if (!highlight) {
        return;
    }
    const YTextViewCharPosition begin = highlight->GetBegin();
    const YTextViewCharPosition end = highlight->GetEnd();
    // A rectangle below lines that all end left of it is upside down: nothing in it is selected.
    const bool nothingSelected = begin.line > end.line;
    if (begin.line >= firstLine + lineCount || firstLine > end.line || nothingSelected) {
        return;
    }
    AddTopLine(begin, end, firstLine);
    AddLeftSide(begin, end, firstLine);
    AddBottomLine(begin, end, firstLine);
    AddRightSide(begin, end, firstLine);
}

// With a step at the top the side is that of the first line, then that of the lines below. The
// first line's is moved out of the way of its text by a pixel.
void YTextViewOutlineSelection::AddLeftSide(const YTextViewCharPosition& begin,
                                            const YTextViewCharPosition& end, unsigned firstLine)
{
    const bool beginVisible = begin.line >= firstLine;
    unsigned topRow = RowOf(begin.line, firstLine);
    const unsigned bottomRow = RowOf(end.line, firstLine);
    if (!topStep) {
        const bool wholeLines = !beginVisible && !sink->IsColumnSelect();
        AddVerticalLine(wholeLines ? 0 : begin.column, topRow, bottomRow, true);
        return;
    }
    if (beginVisible) {
        AddVerticalLine(begin.column, topRow, topRow, true);
        AdjustHorizontalPosition(LastSegment(), -1);
        ++topRow;
    }
    AddVerticalLine(0, topRow, bottomRow, true);
}

// With a step at the bottom the side is that of the lines above, then that of the last line.
void YTextViewOutlineSelection::AddRightSide(const YTextViewCharPosition& begin,
                                             const YTextViewCharPosition& end, unsigned firstLine)
{
    const bool columns = sink->IsColumnSelect();
    const unsigned topRow = RowOf(begin.line, firstLine);
    const unsigned bottomRow = RowOf(end.line, firstLine);
    if (!bottomStep) {
        AddVerticalLine(end.column, topRow, bottomRow, false);
        return;
    }
    if (bottomRow != 0) {
        const unsigned column = columns ? end.column : LastColumnOf(begin.line);
        AddVerticalLine(column, topRow, bottomRow - 1, false);
    }
    AddVerticalLine(columns ? LastColumnOf(end.line) : end.column, bottomRow, bottomRow, false);
    AdjustHorizontalPosition(LastSegment(), 1);
}

void YTextViewOutlineSelection::AddTopLine(const YTextViewCharPosition& begin,
                                           const YTextViewCharPosition& end, unsigned firstLine)
{
    const bool oneLine = begin.line == end.line;
    if (firstLine <= begin.line && LengthOf(begin.line) > 0) {
        const bool endsHere = oneLine || sink->IsColumnSelect();
        AddHorizontalLine(begin.line - firstLine, begin.column,
                          endsHere ? end.column : LastColumnOf(begin.line), true);
    }
    if (!sink->IsColumnSelect() && begin.column != 0 && !oneLine && firstLine <= begin.line + 1) {
        AddTopStep(begin, end, firstLine);
    }
}

// Over the part of the second line that lies left of where the first begins.
void YTextViewOutlineSelection::AddTopStep(const YTextViewCharPosition& begin,
                                           const YTextViewCharPosition& end, unsigned firstLine)
{
    const unsigned second = begin.line + 1;
    if (LengthOf(second) == 0) {
        return;
    }
    unsigned column = std::min(LastColumnOf(second), begin.column - 1);
    if (second == end.line) {
        column = std::min(column, end.column);
    }
    AddHorizontalLine(second - firstLine, 0, column, true);
    topStep = true;
}

void YTextViewOutlineSelection::AddBottomLine(const YTextViewCharPosition& begin,
                                              const YTextViewCharPosition& end, unsigned firstLine)
{
    if (LengthOf(end.line) == 0) {
        return;
    }
    const bool oneLine = begin.line == end.line;
    const bool columns = sink->IsColumnSelect();
    const unsigned left = oneLine || columns ? begin.column : 0;
    const unsigned right = oneLine ? end.column : std::min(end.column, LastColumnOf(end.line));
    AddHorizontalLine(end.line - firstLine, left, right, false);
    if (columns && right == end.column) {
        return;
    }
    if (!oneLine && end.line != 0) {
        AddBottomStep(begin, end, firstLine, right);
    }
}

// Under the part of the last line but one that lies right of where the last ends.
void YTextViewOutlineSelection::AddBottomStep(const YTextViewCharPosition& begin,
                                              const YTextViewCharPosition& end, unsigned firstLine,
                                              unsigned bottomColumn)
{
    const unsigned above = end.line - 1;
    if (firstLine > above || LengthOf(above) == 0 || bottomColumn >= LastColumnOf(above)) {
        return;
    }
    const unsigned left =
        above == begin.line ? std::max(bottomColumn + 1, begin.column) : bottomColumn + 1;
    const unsigned right = sink->IsColumnSelect() ? end.column : LastColumnOf(above);
    AddHorizontalLine(above - firstLine, left, right, false);
    bottomStep = true;
}

void YTextViewOutlineSelection::AddHorizontalLine(unsigned row, unsigned firstColumn,
                                                  unsigned lastColumn, bool top)
{
    const int y = top ? GetVerticalLength(row) : GetVerticalLength(row + 1) - 1;
    const double right = (1.0 + lastColumn) * sink->GetCharacterWidth();
    segments.push_back({xOffset + GetHorizontalLength(firstColumn), y, xOffset + right, y});
}

void YTextViewOutlineSelection::AddVerticalLine(unsigned column, unsigned firstRow,
                                                unsigned lastRow, bool left)
{
    const double edge = left ? 0.0 : sink->GetCharacterWidth() - 1.0;
    const double x = xOffset + GetHorizontalLength(column) + edge;
    segments.push_back({x, GetVerticalLength(firstRow), x, GetVerticalLength(lastRow + 1)});
}

void YTextViewOutlineSelection::AdjustHorizontalPosition(unsigned segmentIndex, int dx)
{
    YTextViewLineDrawInfo& segment = segments.at(segmentIndex);
    segment.startX += dx;
    segment.endX += dx;
}

double YTextViewOutlineSelection::GetHorizontalLength(unsigned columns) const
{
    return columns * sink->GetCharacterWidth();
}

// A selection may reach far below the page: cut off where no int goes.
int YTextViewOutlineSelection::GetVerticalLength(unsigned rows) const
{
    return ToPixels(1.0 * rows * sink->GetCharacterHeight());
}

unsigned YTextViewOutlineSelection::LengthOf(unsigned line) const
{
    return static_cast<unsigned>(sink->GetBuffer().GetLineInfo(line).text.size());
}

// 0 for an empty line: a selection that began past the end of the text above begins on it.
unsigned YTextViewOutlineSelection::LastColumnOf(unsigned line) const
{
    return std::max(LengthOf(line), 1u) - 1;
}

unsigned YTextViewOutlineSelection::LastSegment() const
{
    return static_cast<unsigned>(segments.size()) - 1;
}
