// The view's commands, geometry and scrolling; selecting and painting have files of their own.

#include "textview/YTextViewBase.h"

#include "YInput.h"
#include "textview/ITextViewLinkedScrollbar.h"
#include "textview/YTextViewPixels.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

constexpr unsigned defaultBufferSize = 50;  // lines

int Absolute(int value)
{
    return value == INT_MIN ? INT_MAX : std::abs(value);
}

// The cell n cells from the scroll point, in the direction of the distance in pixels.
unsigned MoveBy(unsigned position, int pixels, unsigned cells)
{
    return pixels < 0 ? SubtractDownTo0(position, cells) : AddSaturated(position, cells);
}

}  // namespace

YTextViewBase::YTextViewBase() : buffer(defaultBufferSize) {}

void YTextViewBase::ShowVertScrollbarIfNeeded(bool show)
{
    showVertScrollbar = show;
}

void YTextViewBase::ShowHorzScrollbarIfNeeded(bool show)
{
    showHorzScrollbar = show;
}

void YTextViewBase::UpdateFont(const YLogFont& newFont)
{
    UpdateFontInternal(newFont);
    if (linkedView) {
        linkedView->UpdateFontInternal(newFont);
    }
}

YTextViewBase::~YTextViewBase() = default;

void YTextViewBase::Clear()
{
    ClearInternal();
    if (linkedView) {
        linkedView->ClearInternal();
    }
}

void YTextViewBase::UpdateFontInternal(const YLogFont& newFont)
{
    if (font && *font == newFont) {
        return;
    }
    font = std::make_unique<YLogFont>(newFont);
    UpdateFontInternal();
}

void YTextViewBase::ClearInternal()
{
    buffer.Clear();
    ResetMouseHighlight();
    SetCaret(false);
    UpdateScrollSize();
    InvalidateWindow();
    RepaintWindow();
}

void YTextViewBase::SetCaretInternal(bool on)
{
    caret = on;
}

void YTextViewBase::AppendLines(const YTextViewBuffer::LineInfo* lines, unsigned count)
{
    unsigned removed = 0;
    bool changed = false;
    try {
        changed = buffer.AppendLines(lines, count, removed);
    } catch (...) {
        FollowAppend(true, removed);  // for the lines that are in
        throw;
    }
    FollowAppend(changed, removed);
}

void YTextViewBase::SetBufferSize(unsigned size)
{
    try {
        if (!buffer.SetBufferSize(size)) {
            return;
        }
    } catch (...) {
        FollowShrink();  // the lines that had to go are gone
        throw;
    }
    FollowShrink();
}

void YTextViewBase::SetSelectionDrawStyle(SelectionDrawStyle style)
{
    if (style == selectionDrawStyle) {
        return;
    }
    selectionDrawStyle = style;
    InvalidateWindow();
    RepaintWindow();
}

void YTextViewBase::OnSizeChange()
{
    UpdatePageSize();
    UpdateScrollSize();
}

void YTextViewBase::OnLButtonDown(POINT point)
{
    AdjustPoint(point);
    mouseDown = true;
    SetCaret(true);
    if (IsKeyModifierPressed(VK_SHIFT)) {
        YTextViewCharPosition position;
        PointToCharposition(point, position);
        if (mouseHighlight) {
            mouseHighlight->UpdateEnd(position);
        } else {
            StartMouseHighlight(position);
        }
        InvalidateWindow();
    } else {
        columnar = IsKeyModifierPressed(VK_MENU);
        anchorPoint = point;
        ResetMouseHighlight();
    }
    CaptureMouse();
}

void YTextViewBase::OnLButtonUp(POINT point)
{
    AdjustPoint(point);
    YTextViewCharPosition position;
    PointToCharposition(point, position);
    SetCaret(true);
    if (mouseDown) {
        mouseDown = false;
        if (mouseHighlight) {
            mouseHighlight->UpdateEnd(position);
        }
    }
    ReleaseMouse();
    InvalidateWindow();
    RepaintWindow();
}

void YTextViewBase::OnMouseMove(POINT point)
{
    if (!mouseDown) {
        return;
    }
    AdjustPoint(point);
    lastPoint = point;
    YTextViewCharPosition position;
    PointToCharposition(point, position);
    if (mouseHighlight) {
        mouseHighlight->UpdateEnd(position);
    } else if (IsDrag(point)) {
        StartMouseHighlight(position);
    }
    if (AutoScroll(point, position) || UpdatePreviousHighlight()) {
        InvalidateWindow();
    }
}

void YTextViewBase::OnPageUp()
{
    if (FillsMoreThanPage()) {
        ScrollToPoint(SubtractDownTo0(GetVScrollPoint(), pageHeight), GetHScrollPoint());
    }
}

void YTextViewBase::OnPageDown()
{
    if (FillsMoreThanPage()) {
        const unsigned line = AddSaturated(GetVScrollPoint(), pageHeight);
        ScrollToPoint(std::min(line, buffer.GetLineCount() - 1), GetHScrollPoint());
    }
}

void YTextViewBase::OnCtrlEnd()
{
    SetCaret(false);
    ScrollToEnd();
}

void YTextViewBase::OnGoToStart()
{
    if (FillsMoreThanPage()) {
        ScrollToPoint(0, GetHScrollPoint());
    }
}

// The last cell of the selection is part of it; the buffer wants the column after it.
void YTextViewBase::OnEditCopy()
{
    if (!CanCopy()) {
        return;
    }
    const YTextViewCharPosition begin = normalizedHighlight->GetBegin();
    const YTextViewCharPosition end = normalizedHighlight->GetEnd();
    buffer.CopyTextToClipboard(begin.line, begin.column, end.line, end.column + 1, columnar);
}

void YTextViewBase::SetCaret(bool on)
{
    SetCaretInternal(on);
    if (linkedView) {
        linkedView->SetCaretInternal(on);
    }
}

void YTextViewBase::UpdateSize(double width, int height)
{
    characterWidth = width;
    characterHeight = height;
    pageWidth = 0;
    pageHeight = 0;
}

void YTextViewBase::UpdatePageSize()
{
    RECT client{};
    GetClientRect(&client);
    if (characterWidth != 0.0) {
        pageWidth = ToHorzCharPosition(client.right);
    }
    if (characterHeight != 0) {
        pageHeight = static_cast<unsigned>(std::max(ToVertCharPosition(client.bottom), 0));
    }
}

void YTextViewBase::UpdateScrollSize()
{
    if (pageWidth == 0 || pageHeight == 0) {
        UpdatePageSize();
    }
    const unsigned lines = buffer.GetLineCount();
    UpdateVScrollSize(lines, pageHeight);
    if (UsesLinkedScrollbar()) {
        linkedVertScrollbar->UpdateScrollSize(lines, pageHeight);
    }
    UpdateHScrollSize(buffer.GetMaxLineLength(), pageWidth);
}

void YTextViewBase::ScrollToPoint(unsigned line, unsigned column)
{
    ScrollToVPoint(line);
    if (UsesLinkedScrollbar()) {
        linkedVertScrollbar->ScrollToPoint(line);
    }
    ScrollToHPoint(column);
}

unsigned YTextViewBase::GetVScrollPoint() const
{
    return UsesLinkedScrollbar() ? linkedVertScrollbar->GetScrollPoint()
                                 : GetVScrollPointInternal();
}

unsigned YTextViewBase::ToHorzCharPosition(int x) const
{
    return characterWidth > 0.0 ? ToCells(x / characterWidth) : 0;
}

int YTextViewBase::ToVertCharPosition(int y) const
{
    return characterHeight > 0 ? y / characterHeight : 0;
}

int YTextViewBase::GetHorizontalPoint(unsigned column) const
{
    return ToPixels(column * characterWidth);
}

// Left of or above the client area: cells left of or above the first visible one.
void YTextViewBase::PointToCharposition(POINT point, YTextViewCharPosition& position) const
{
    const unsigned columns = ToHorzCharPosition(Absolute(point.x));
    const unsigned lines = static_cast<unsigned>(ToVertCharPosition(Absolute(point.y)));
    position.column = MoveBy(GetHScrollPoint(), point.x, columns);
    position.line = MoveBy(GetVScrollPoint(), point.y, lines);
}

void YTextViewBase::AdjustPoint(POINT& point) const
{
    point.x -= GetHorizontalPoint(leftMargin);
}

// A row that is partly visible counts.
void YTextViewBase::CalculateVisibleLines(unsigned& first, unsigned& count) const
{
    first = GetVScrollPoint();
    count = 0;
    RECT client{};
    GetClientRect(&client);
    const unsigned lines = buffer.GetLineCount();
    if (characterHeight <= 0 || client.bottom <= 0 || lines < first) {
        return;
    }
    const int rows = client.bottom / characterHeight + (client.bottom % characterHeight != 0);
    count = std::min(static_cast<unsigned>(rows), lines - first);
}

void YTextViewBase::ScrollToEnd()
{
    if (FillsMoreThanPage()) {
        ScrollToPoint(buffer.GetLineCount() - 1, 0);
    }
}

// Follows a drag out of the client area, a step for each move of the mouse. True: it scrolled.
bool YTextViewBase::AutoScroll(POINT point, const YTextViewCharPosition& position)
{
    RECT client{};
    GetClientRect(&client);
    unsigned column = GetHScrollPoint();
    const unsigned line = GetVScrollPoint();
    const bool beside = point.x < 0 || point.x > client.right;
    if (beside) {
        column = point.x < 0 ? position.column
                             : AddSaturated(column, ToHorzCharPosition(point.x - client.right));
        ScrollToPoint(line, column);
    }
    if (point.y < 0) {
        ScrollToPoint(position.line, column);
    } else if (point.y > client.bottom) {
        const int below = ToVertCharPosition(point.y - client.bottom);
        ScrollToPoint(AddSaturated(line, static_cast<unsigned>(below)), column);
    } else {
        return beside;
    }
    return true;
}

void YTextViewBase::FollowAppend(bool sizeChanged, unsigned removed)
{
    if (sizeChanged) {
        UpdateScrollSize();
    }
    if (!caret) {
        ScrollToEnd();
    }
    if (removed > 0) {
        ScrollHighlights(removed);
    }
    InvalidateWindow();
}

void YTextViewBase::FollowShrink()
{
    UpdateScrollSize();
    ResetMouseHighlight();
    InvalidateWindow();
}
