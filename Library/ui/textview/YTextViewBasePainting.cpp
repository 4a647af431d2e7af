// How the view cuts its visible lines into runs of one colour.

#include "textview/YTextViewBase.h"

#include "textview/YTextViewOutlineSelection.h"
#include "textview/YTextViewPixels.h"

#include <algorithm>

// What all rows of one paint have in common.
struct YTextViewBase::Painting
{
    CDC* dc;
    RECT clip;
    COLORREF foreground;
    COLORREF background;
    COLORREF highlightForeground;
    COLORREF highlightBackground;
    int left;  // pixels, where the first visible column begins
    unsigned firstColumn;
    unsigned maxRun;  // characters that a row paints at most
};

void YTextViewBase::OnDraw(CDC* dc, RECT clip)
{
    unsigned first = 0;
    unsigned count = 0;
    CalculateVisibleLines(first, count);
    const Painting painting = StartPainting(dc, clip);
    for (unsigned row = 0; row < count; ++row) {
        DrawRow(painting, first + row, static_cast<int>(row) * characterHeight);
    }
    if (selectionDrawStyle == SelectionDrawStyle::Outline && normalizedHighlight) {
        DrawOutline(painting, first, count);
    }
}

YTextViewBase::Painting YTextViewBase::StartPainting(CDC* dc, const RECT& clip) const
{
    Painting painting{};
    painting.dc = dc;
    painting.clip = clip;
    GetTextColor(painting.foreground, painting.background);
    GetHighlightColor(painting.highlightForeground, painting.highlightBackground);
    painting.left = GetHorizontalPoint(leftMargin);
    painting.firstColumn = GetHScrollPoint();
    painting.maxRun = AddSaturated(ToHorzCharPosition(clip.right), 1);
    return painting;
}

void YTextViewBase::DrawRow(const Painting& painting, unsigned line, int y)
{
    const YTextViewBuffer::LineInfo& info = buffer.GetLineInfo(line);
    const unsigned length = static_cast<unsigned>(info.text.size());
    if (length == 0) {
        return;
    }
    COLORREF color = unsetColor;
    GetTextAttributes(info.attributes, color);
    if (color == unsetColor) {
        color = painting.foreground;
    }
    const bool inClip = painting.clip.top <= y + characterHeight && y <= painting.clip.bottom;
    const unsigned column = painting.firstColumn;
    if (!inClip || column >= length) {
        return;
    }
    DrawTextInfo run{color, painting.background, painting.left, y, info.text.data() + column, 0};
    YTextViewCharPosition begin;
    YTextViewCharPosition end;
    unsigned from = 0;
    unsigned to = 0;
    if (!LineHasHighlight(line, info, begin, end, from, to)) {
        run.count = std::min(length - column, painting.maxRun);
        DrawText(painting.dc, run);
        return;
    }
    if (!columnar) {  // a line between the ends is selected whole
        from = line > begin.line ? 0 : from;
        to = line < end.line ? length - 1 : to;
    }
    DrawHighlightedRow(painting, info, run, from, to);
}

// Cuts the row before, within and after columns from to to, both of which the line has.
void YTextViewBase::DrawHighlightedRow(const Painting& painting,
                                       const YTextViewBuffer::LineInfo& info, DrawTextInfo run,
                                       unsigned from, unsigned to)
{
    const unsigned length = static_cast<unsigned>(info.text.size());
    const COLORREF color = run.foreground;
    unsigned remaining = painting.maxRun;
    for (unsigned column = painting.firstColumn; column < length && remaining > 0;) {
        const bool selected = from <= column && column <= to;
        const unsigned next = selected ? to + 1 : column < from ? from : length;
        run.foreground = selected ? painting.highlightForeground : color;
        run.background = selected ? painting.highlightBackground : painting.background;
        run.text = info.text.data() + column;
        run.count = std::min(next - column, remaining);
        DrawText(painting.dc, run);
        run.x += GetHorizontalPoint(run.count);
        column += run.count;
        remaining -= run.count;
    }
}

void YTextViewBase::DrawOutline(const Painting& painting, unsigned first, unsigned count)
{
    const YTextViewOutlineSelection outline(this, painting.left, first, count);
    DrawLine(painting.dc, painting.highlightBackground, outline.GetSegments());
}
