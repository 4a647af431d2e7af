// How the view turns what the mouse selected into the selection that is shown and copied.

#include "textview/YTextViewBase.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

bool SameHighlight(const YTextViewHighlight* left, const YTextViewHighlight* right)
{
    return left && right ? left->Equal(*right) : left == right;
}

}  // namespace

void YTextViewBase::OnHighlightChange()
{
    NormalizeHighlight();
}

void YTextViewBase::PrepareForNormalizeHighlight() {}

bool YTextViewBase::FinishNormalizeHighlight(YTextViewCharPosition&, YTextViewCharPosition&)
{
    return true;
}

void YTextViewBase::OnNormalizeHighlightChange() {}

// The end lies past the last character; normalising brings it back onto a character.
void YTextViewBase::SelectAllInternal()
{
    if (!CanSelectAll()) {
        return;
    }
    if (!mouseHighlight) {
        mouseHighlight = YUnknownPointer<YTextViewHighlight>::Make(this);
    }
    const unsigned lastLine = buffer.GetLineCount() - 1;
    PlaceMouseHighlight({0, 0}, {LengthOf(lastLine), lastLine});
    InvalidateWindow();
}

void YTextViewBase::UpdateHighlight(YTextViewHighlight* highlight, bool columns)
{
    // It may be one of the three that are released.
    const YUnknownPointer<YTextViewHighlight> source(highlight);
    previousHighlight.Reset();
    normalizedHighlight.Reset();
    mouseHighlight.Reset();
    if (source) {
        using Pointer = YUnknownPointer<YTextViewHighlight>;
        columnar = columns;
        normalizedHighlight = Pointer::Make(*source);
        previousHighlight = Pointer::Make(*source);
        mouseHighlight = Pointer::Make(this);
        mouseHighlight->Update(source->GetBegin(), source->GetEnd(), false);
    }
    InvalidateWindow();
}

void YTextViewBase::SelectAll()
{
    SelectAllInternal();
    if (linkedView) {
        linkedView->SelectAllInternal();
    }
}

void YTextViewBase::ResetMouseHighlight()
{
    if (!mouseHighlight) {
        return;
    }
    mouseHighlight.Reset();
    OnHighlightChange();
    InvalidateWindow();
}

void YTextViewBase::ResetNormalizedHighlight()
{
    if (!normalizedHighlight) {
        return;
    }
    normalizedHighlight.Reset();
    OnNormalizeHighlightChange();
}

bool YTextViewBase::NormalizeHighlight()
{
    PrepareForNormalizeHighlight();
    YTextViewCharPosition begin;
    YTextViewCharPosition end;
    if (!FindNormalizedEnds(begin, end)) {
        ResetNormalizedHighlight();
        return false;
    }
    auto next = YUnknownPointer<YTextViewHighlight>::Make(nullptr, begin, end);
    if (SameHighlight(normalizedHighlight.Get(), next.Get())) {
        return true;
    }
    normalizedHighlight = std::move(next);
    OnNormalizeHighlightChange();
    return true;
}

// A stream of text: from one character to another, the last included.
bool YTextViewBase::NormalizeHighlight(YTextViewCharPosition& begin, YTextViewCharPosition& end)
{
    if (begin.line > end.line || (begin.line == end.line && begin.column > end.column)) {
        std::swap(begin, end);
    }
    if (begin.column >= LengthOf(begin.line)) {
        begin = {0, begin.line + 1};
    }
    if (!SnapEndToCharacter(end)) {
        return false;
    }
    return begin.line < end.line || (begin.line == end.line && begin.column <= end.column);
}

// A rectangle. Its lower edge moves up past lines that end left of it, even past its upper edge:
// nothing is selected then. Its columns are not clamped.
bool YTextViewBase::NormalizeColumnarHighlight(YTextViewCharPosition& begin,
                                               YTextViewCharPosition& end)
{
    if (begin.line > end.line) {
        std::swap(begin.line, end.line);
    }
    if (begin.column > end.column) {
        std::swap(begin.column, end.column);
    }
    while (begin.column >= LengthOf(end.line)) {  // columns are ordered: neither edge is inside
        if (end.line == 0) {
            return false;
        }
        --end.line;
    }
    return true;
}

bool YTextViewBase::FindNormalizedEnds(YTextViewCharPosition& begin, YTextViewCharPosition& end)
{
    const unsigned lines = buffer.GetLineCount();
    if (!mouseHighlight || lines == 0) {
        return false;
    }
    begin = mouseHighlight->GetBegin();
    end = mouseHighlight->GetEnd();
    if (begin.line >= lines && end.line >= lines) {
        return false;
    }
    begin.line = std::min(begin.line, lines - 1);
    end.line = std::min(end.line, lines - 1);
    const bool found =
        columnar ? NormalizeColumnarHighlight(begin, end) : NormalizeHighlight(begin, end);
    return found && FinishNormalizeHighlight(begin, end);
}

// Past the end of a line is its last character; on an empty line, the last one above. False: there
// is none.
bool YTextViewBase::SnapEndToCharacter(YTextViewCharPosition& end) const
{
    if (end.column < LengthOf(end.line)) {
        return true;
    }
    while (LengthOf(end.line) == 0) {
        if (end.line == 0) {
            return false;
        }
        --end.line;
    }
    end.column = LengthOf(end.line) - 1;
    return true;
}

bool YTextViewBase::LineHasHighlight(unsigned line, const YTextViewBuffer::LineInfo& info,
                                     YTextViewCharPosition& begin, YTextViewCharPosition& end,
                                     unsigned& from, unsigned& to) const
{
    if (!normalizedHighlight || !normalizedHighlight->ContainsLine(line) || info.text.empty() ||
        selectionDrawStyle != SelectionDrawStyle::Filled) {
        return false;
    }
    begin = normalizedHighlight->GetBegin();
    end = normalizedHighlight->GetEnd();
    const unsigned last = static_cast<unsigned>(info.text.size()) - 1;
    if (last < begin.column && last < end.column) {
        from = 0;
        to = last;
        return !columnar;
    }
    from = std::min(last, begin.column);
    to = std::min(last, end.column);
    return true;
}

unsigned YTextViewBase::LengthOf(unsigned line) const
{
    return static_cast<unsigned>(buffer.GetLineInfo(line).text.size());
}

// More than half a cell from where the button went down; less is an unsteady click.
bool YTextViewBase::IsDrag(POINT point) const
{
    const double dx = std::abs(1.0 * point.x - anchorPoint.x);
    const double dy = std::abs(1.0 * point.y - anchorPoint.y);
    const int halfHeight = characterHeight / 2;
    return dx > characterWidth * 0.5 || dy > halfHeight;
}

// From the cell that is now where the button went down.
void YTextViewBase::StartMouseHighlight(const YTextViewCharPosition& end)
{
    YTextViewCharPosition begin;
    PointToCharposition(anchorPoint, begin);
    mouseHighlight = YUnknownPointer<YTextViewHighlight>::Make(this);
    PlaceMouseHighlight(begin, end);
}

// Normalises once. An end that stays where it was tells nobody, and the begin never does.
void YTextViewBase::PlaceMouseHighlight(const YTextViewCharPosition& begin,
                                        const YTextViewCharPosition& end)
{
    mouseHighlight->UpdateBegin(begin);
    if (mouseHighlight->GetEnd() == end) {
        OnHighlightChange();
    } else {
        mouseHighlight->UpdateEnd(end);
    }
}

// Follows the text after lines were dropped. What is drawn follows on its own, not by normalising
// again: where its last line is gone but the mouse's is not, it stays until the mouse changes it.
void YTextViewBase::ScrollHighlights(unsigned lines)
{
    if (mouseHighlight && !mouseHighlight->Scroll(lines)) {
        ResetMouseHighlight();
    }
    if (normalizedHighlight) {
        normalizedHighlight->Scroll(lines);
    }
}

// True: the drag has changed what is to be painted.
bool YTextViewBase::UpdatePreviousHighlight()
{
    if (SameHighlight(previousHighlight.Get(), normalizedHighlight.Get())) {
        return false;
    }
    previousHighlight = normalizedHighlight;
    return true;
}
