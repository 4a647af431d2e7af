// ViewFixture.h: text views as real windows, alone or linked, for tests by messages and by input.
#pragma once

#include "support/Input.h"
#include "support/LeakCheck.h"
#include "textview/ITextViewLinkedScrollbar.h"
#include "textview/Lines.h"
#include "textview/YTextView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// Its own host: it hands its selection on to the linked view; a line's attributes are its colour.
class TestView : public YTextView
{
public:
    void Append(const std::vector<std::wstring>& texts)
    {
        const auto lines = Lines(texts);
        AppendLines(lines.data(), static_cast<unsigned>(lines.size()));
    }
    // Lines "first", "first + 1", ...
    void AppendNumbered(unsigned first, unsigned count)
    {
        std::vector<YTextViewBuffer::LineInfo> lines;
        for (unsigned number = first; number < first + count; ++number) {
            lines.push_back(Line(std::to_wstring(number)));
        }
        AppendLines(lines.data(), count);
    }

    using YTextView::GetHScrollPoint;
    using YTextView::GetPageHeight;
    using YTextView::GetPageWidth;
    using YTextView::GetVScrollPoint;
    using YTextView::OnEditCopy;
    using YTextView::ScrollToPoint;
    using YTextView::SelectAll;
    using YTextView::SetCaret;
    using YTextView::UpdateFontInternal;

    // The selection's ends, both included.
    struct Selection
    {
        unsigned line = 0, column = 0, endLine = 0, endColumn = 0;
        bool operator==(const Selection&) const = default;
    };
    std::optional<Selection> GetSelection() const
    {
        if (!GetHighlight()) {
            return std::nullopt;
        }
        const auto begin = GetHighlight()->GetBegin();
        const auto end = GetHighlight()->GetEnd();
        return Selection{begin.line, begin.column, end.line, end.column};
    }

    int paints = 0;
    RECT lastClip{};
    std::function<void()> atPost;  // for each WM_APP
    std::function<void()> atSelectionChange;
    unsigned trackedLine = 0;  // where the thumb has led while it was dragged

protected:
    void OnDraw(CDC* dc) override
    {
        dc->GetClipBox(&lastClip);
        paints += ::IsRectEmpty(&lastClip) == FALSE;  // else a paint of the frame alone
        YTextView::OnDraw(dc);
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_APP) {
            atPost();
        }
        const LRESULT result = YTextView::WindowProc(message, wParam, lParam);
        if (message == WM_VSCROLL && LOWORD(wParam) == SB_THUMBTRACK) {
            trackedLine = GetVScrollPoint();
        }
        return result;
    }
    void GetTextAttributes(const void* attributes, COLORREF& color) const override
    {
        if (attributes) {
            std::memcpy(&color, attributes, sizeof(color));
        }
    }
    void OnNormalizeHighlightChange() override
    {
        if (GetLinkedView()) {
            GetLinkedView()->UpdateHighlight(GetHighlight(), IsColumnSelect());
        }
        if (atSelectionChange) {
            atSelectionChange();
        }
    }
};

// A linked bar as a host would write one: it keeps the values.
class LinkedBar : public ITextViewLinkedScrollbar
{
public:
    void UpdateScrollSize(unsigned newTotal, unsigned newPage) override
    {
        total = newTotal;
        page = newPage;
        ScrollToPoint(point);
    }
    void ScrollToPoint(unsigned line) override
    {
        point = std::min(line, total > page ? total - page : 0);
    }
    unsigned GetScrollPoint() const override { return point; }
    void OnVScroll(UINT code, UINT position) override { scrolls.push_back({code, position}); }
    long OnMouseWheel(UINT wParam, long) override
    {
        wheels.push_back(GET_WHEEL_DELTA_WPARAM(wParam));
        return 17;
    }
    void SyncScrollPoint(unsigned line) override { synced.push_back(line); }
    void GetScrollInfo(SCROLLINFO* info) override
    {
        info->nMin = 0;
        info->nMax = static_cast<int>(total) - 1;
        info->nPage = page;
        info->nPos = static_cast<int>(point);
    }

    unsigned total = 0, page = 0, point = 0;
    std::vector<std::pair<UINT, UINT>> scrolls;
    std::vector<int> wheels;
    std::vector<unsigned> synced;
};

inline LOGFONTW FontOf(const wchar_t* face, int height)
{
    LOGFONTW font{};
    font.lfHeight = height;
    font.lfCharSet = DEFAULT_CHARSET;
    std::wcscpy(font.lfFaceName, face);
    return font;
}

// The pixels of a part of a window's client area, as they are on screen.
class Picture
{
public:
    Picture(CWnd& window, const RECT& part) : place(part)
    {
        CClientDC dc(&window);
        for (int y = place.top; y < place.bottom; ++y) {
            for (int x = place.left; x < place.right; ++x) {
                pixels.push_back(dc.GetPixel(x, y));
            }
        }
    }

    bool operator==(const Picture& other) const { return pixels == other.pixels; }

    // Points in client coordinates, inside the part.
    COLORREF At(int x, int y) const
    {
        const int column = x - place.left;
        const int row = y - place.top;
        return pixels[static_cast<std::size_t>(row * (place.right - place.left) + column)];
    }
    int Count(COLORREF color) const
    {
        return static_cast<int>(std::count(pixels.begin(), pixels.end(), color));
    }
    int CountAllBut(COLORREF color) const { return static_cast<int>(pixels.size()) - Count(color); }
    bool IsMadeOf(COLORREF one, COLORREF another) const
    {
        return Count(one) + Count(another) == static_cast<int>(pixels.size());
    }

private:
    RECT place;
    std::vector<COLORREF> pixels;  // row by row
};

// A modifier and what is done with it enter the input queue together: under Wine a move of the
// pointer lets go of held keys a moment later.
inline INPUT KeyInput(WORD virtualKey, DWORD flags = 0)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    return input;
}

inline INPUT ButtonInput(DWORD flags)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    return input;
}

inline void SendTogether(std::vector<INPUT> inputs)
{
    ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    PumpMessages();
}

// A frame in the middle of the screen, with room around it to drag to, and one view in it whose
// client area holds 40 x 10 cells and a bit while it has no scroll bars.
class ViewTest : public testing::Test
{
protected:
    static constexpr int columns = 40, rows = 10;  // whole cells
    static constexpr int extraWidth = 3, extraHeight = 7;  // less than a cell

    void SetUp() override
    {
        frame = new CFrameWnd;
        // A pop-up: window managers leave it where it is, under a pointer that presses and drags.
        ASSERT_TRUE(frame->Create(nullptr, L"Text view", WS_POPUP, CRect(300, 250, 900, 750)));
        view = MakeView(1);
        cell = {static_cast<int>(view->GetCharacterWidth()), view->GetCharacterHeight()};
        Place(*view, 100);
        frame->ShowWindow(SW_SHOWNORMAL);
        ASSERT_TRUE(Activate(*view));
        view->UpdateWindow();
        PumpMessages();
    }

    void TearDown() override
    {
        frame->DestroyWindow();
        PumpMessages();
    }

    TestView* MakeView(UINT id)
    {
        auto* const made = new TestView;
        EXPECT_TRUE(made->Create(nullptr, L"", WS_CHILD | WS_VISIBLE, CRect(100, 100, 200, 200),
                                 frame, id));
        return made;
    }

    void Place(CWnd& window, int top) const
    {
        window.MoveWindow(100, top, columns * cell.cx + extraWidth, rows * cell.cy + extraHeight);
    }

    POINT InCell(int column, int row, int dx = 3) const
    {
        return {column * cell.cx + dx, row * cell.cy + cell.cy / 2};
    }

    void SendMouse(UINT message, POINT point) const
    {
        view->SendMessage(message, MK_LBUTTON, MAKELPARAM(point.x, point.y));
    }

    // A drag by messages, as fast as can be: from the first cell to the second, both included.
    void Select(int column, int row, int toColumn, int toRow) const
    {
        SendMouse(WM_LBUTTONDOWN, InCell(column, row, 0));
        SendMouse(WM_MOUSEMOVE, InCell(column, row, cell.cx - 1));
        SendMouse(WM_MOUSEMOVE, InCell(toColumn, toRow, cell.cx - 1));
        SendMouse(WM_LBUTTONUP, InCell(toColumn, toRow, cell.cx - 1));
    }

    void UseFont(const wchar_t* face, int height)
    {
        view->UpdateFont(YLogFont(FontOf(face, height)));
        cell = {static_cast<int>(view->GetCharacterWidth()), view->GetCharacterHeight()};
    }

    // The whole cells without scroll bars.
    RECT Page() const { return {0, 0, columns * cell.cx, rows * cell.cy}; }
    RECT Cells(int column, int row, int count = 1) const
    {
        return {column * cell.cx, row * cell.cy, (column + count) * cell.cx, (row + 1) * cell.cy};
    }

    // As if another window had been over it.
    void Scribble(COLORREF color) const
    {
        CClientDC dc(view);
        CBrush brush(color);
        const RECT page = Page();
        dc.FillRect(&page, &brush);
    }

    // Paints now if anything is to be painted.
    Picture Shoot(const RECT& part) const
    {
        view->UpdateWindow();
        return Picture(*view, part);
    }

    // What is on screen is what a repaint of everything gives. Repaints.
    bool IsScreenUpToDate() const
    {
        const Picture seen(*view, Page());
        view->Invalidate();
        return Shoot(Page()) == seen;
    }

    CFrameWnd* frame = nullptr;
    TestView* view = nullptr;  // the frame's
    SIZE cell{};
};

// The view's own bar is hidden; the linked one stands in for it.
class LinkedBarTest : public ViewTest
{
protected:
    void SetUp() override
    {
        ViewTest::SetUp();
        view->SetLinkedVerticalScrollbar(&bar);
        view->ShowVertScrollbarIfNeeded(false);
        view->SetBufferSize(100);
        view->AppendNumbered(0, 100);
    }

    LinkedBar bar;
};
