// RecordingView.h: a text view without a window, which records what the core asks of one.
#pragma once

#include "textview/Lines.h"
#include "textview/YTextViewBase.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

// Cells of 8 x 16 pixels, 12 columns and 6 rows in view, no margin. Its scroll bars clamp as the
// system's do.
class RecordingView : public YTextViewBase
{
public:
    static constexpr COLORREF textColor = 1, backColor = 2, markColor = 3, markBackColor = 4;
    static constexpr int width = 8, height = 16;

    struct Run
    {
        COLORREF foreground, background;
        int x, y;
        std::wstring text;
    };

    struct Bar
    {
        unsigned total = 0, page = 0, point = 0;

        void ScrollTo(unsigned position)
        {
            point = std::min(position, total > page ? total - page : 0);
        }
    };

    RecordingView()
    {
        UpdateSize(width, height);
        OnSizeChange();
    }

    void Append(const std::vector<std::wstring>& texts)
    {
        const auto lines = Lines(texts);
        AppendLines(lines.data(), static_cast<unsigned>(lines.size()));
    }

    // The runs of one paint of the whole client area.
    std::vector<Run> Draw()
    {
        runs.clear();
        OnDraw(nullptr, client);
        return runs;
    }

    // Gestures, from the cell at one column and row of the page to another.
    static POINT InCell(unsigned column, unsigned row)
    {
        return {static_cast<int>(column) * width + 3, static_cast<int>(row) * height + 7};
    }
    void Press(unsigned column, unsigned row) { OnLButtonDown(InCell(column, row)); }
    void Release(unsigned column, unsigned row) { OnLButtonUp(InCell(column, row)); }
    // By way of the far corner, so that it is a drag even within one cell.
    void Drag(unsigned column, unsigned row, unsigned toColumn, unsigned toRow)
    {
        Press(column, row);
        OnMouseMove(InCell(11, 5));
        OnMouseMove(InCell(toColumn, toRow));
        Release(toColumn, toRow);
    }

    // The text that a copy of the selection puts on the clipboard, NUL characters included.
    std::wstring Selected(YTextViewBuffer& sameLines) const
    {
        const YTextViewHighlight* const highlight = GetHighlight();
        if (!highlight) {
            return L"";
        }
        const auto begin = highlight->GetBegin();
        const auto end = highlight->GetEnd();
        return Copy(sameLines,
                    {begin.line, begin.column, end.line, end.column + 1, IsColumnSelect()})
            .value_or(L"");
    }

    using YTextViewBase::CanClear;
    using YTextViewBase::GetPageHeight;
    using YTextViewBase::GetPageWidth;
    using YTextViewBase::OnCtrlEnd;
    using YTextViewBase::OnEditCopy;
    using YTextViewBase::OnGoToStart;
    using YTextViewBase::OnLButtonDown;
    using YTextViewBase::OnLButtonUp;
    using YTextViewBase::OnMouseMove;
    using YTextViewBase::OnPageDown;
    using YTextViewBase::OnPageUp;
    using YTextViewBase::OnSizeChange;
    using YTextViewBase::ScrollToPoint;
    using YTextViewBase::SelectAll;
    using YTextViewBase::SetCaret;
    using YTextViewBase::UpdateFontInternal;
    using YTextViewBase::UpdateSize;

    void Update() override { InvalidateWindow(); }

    RECT client{0, 0, 12 * width, 6 * height};
    Bar vertical, horizontal;
    std::vector<Run> runs;
    int invalidations = 0, highlightChanges = 0;
    bool captured = false;

protected:
    void UpdateVScrollSize(unsigned total, unsigned page) override
    {
        vertical = {total, page, vertical.point};
        vertical.ScrollTo(vertical.point);
    }
    void UpdateHScrollSize(unsigned total, unsigned page) override
    {
        horizontal = {total, page, horizontal.point};
        horizontal.ScrollTo(horizontal.point);
    }
    unsigned GetVScrollPointInternal() const override { return vertical.point; }
    unsigned GetHScrollPointInternal() const override { return horizontal.point; }
    void ScrollToVPoint(unsigned line) override { vertical.ScrollTo(line); }
    void ScrollToHPoint(unsigned column) override { horizontal.ScrollTo(column); }
    void DrawText(CDC*, const DrawTextInfo& run) override
    {
        runs.push_back({run.foreground, run.background, run.x, run.y, {run.text, run.count}});
    }
    void DrawLine(CDC*, COLORREF, const std::vector<YTextViewLineDrawInfo>&) override {}
    void GetTextAttributes(const void*, COLORREF&) const override {}
    void GetTextColor(COLORREF& foreground, COLORREF& background) const override
    {
        foreground = textColor;
        background = backColor;
    }
    void GetHighlightColor(COLORREF& foreground, COLORREF& background) const override
    {
        foreground = markColor;
        background = markBackColor;
    }
    void GetClientRect(RECT* rect) const override { *rect = client; }
    void InvalidateWindow() override { ++invalidations; }
    void RepaintWindow() override {}
    void CaptureMouse() override { captured = true; }
    bool ReleaseMouse() override { return std::exchange(captured, false); }
    void UpdateFontInternal() override {}
    void OnNormalizeHighlightChange() override { ++highlightChanges; }
};

// Holds a key down for this thread, as GetKeyState sees it.
class KeyDown
{
public:
    explicit KeyDown(int virtualKey)
    {
        ::GetKeyboardState(before);
        BYTE now[256];
        std::memcpy(now, before, sizeof(now));
        now[virtualKey] = 0x80;
        ::SetKeyboardState(now);
    }
    ~KeyDown() { ::SetKeyboardState(before); }
    KeyDown(const KeyDown&) = delete;
    KeyDown& operator=(const KeyDown&) = delete;

private:
    BYTE before[256]{};
};
