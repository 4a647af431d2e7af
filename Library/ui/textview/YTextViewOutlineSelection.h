// YTextViewOutlineSelection.h: the outline of a selection.
#pragma once

#include "CommonUiApi.h"
#include "textview/YTextViewLineDrawInfo.h"

#include <vector>

class ITextViewSelectionSink;
struct YTextViewCharPosition;

// The lines round the visible part of a view's normalised selection, ragged as the selection is: a
// step at the top where it starts within a line, a step at the bottom where it ends short of the
// line above. Built, drawn and thrown away within one paint.
// Row r is line firstLine + r; y grows from the top of row 0, x from xOffset. Pixels.
class COMMONUI_API YTextViewOutlineSelection
{
public:
    YTextViewOutlineSelection(const ITextViewSelectionSink* sink, int xOffset, unsigned firstLine,
                              unsigned lineCount);

    // In the order in which they were made; none when nothing of the selection is visible.
    const std::vector<YTextViewLineDrawInfo>& GetSegments() const { return segments; }

private:
    void AddLeftSide(const YTextViewCharPosition& begin, const YTextViewCharPosition& end,
                     unsigned firstLine);
    void AddRightSide(const YTextViewCharPosition& begin, const YTextViewCharPosition& end,
                      unsigned firstLine);
    void AddTopLine(const YTextViewCharPosition& begin, const YTextViewCharPosition& end,
                    unsigned firstLine);
    void AddTopStep(const YTextViewCharPosition& begin, const YTextViewCharPosition& end,
                    unsigned firstLine);
    void AddBottomLine(const YTextViewCharPosition& begin, const YTextViewCharPosition& end,
                       unsigned firstLine);
    void AddBottomStep(const YTextViewCharPosition& begin, const YTextViewCharPosition& end,
                       unsigned firstLine, unsigned bottomColumn);

    void AddHorizontalLine(unsigned row, unsigned firstColumn, unsigned lastColumn, bool top);
    void AddVerticalLine(unsigned column, unsigned firstRow, unsigned lastRow, bool left);
    void AdjustHorizontalPosition(unsigned segmentIndex, int dx);  // checked

    double GetHorizontalLength(unsigned columns) const;
    int GetVerticalLength(unsigned rows) const;
    unsigned LengthOf(unsigned line) const;
    unsigned LastColumnOf(unsigned line) const;
    unsigned LastSegment() const;

    std::vector<YTextViewLineDrawInfo> segments;
    const ITextViewSelectionSink* sink;  // borrowed
    int xOffset;
    bool topStep = false;
    bool bottomStep = false;
};
