// What the text view puts on screen, read back pixel by pixel from its window.

#include "support/CaseName.h"
#include "textview/ClipboardFaults.h"
#include "textview/ViewFixture.h"

#include <afxole.h>

namespace {

constexpr COLORREF red = RGB(200, 0, 0);

const COLORREF textColor = ::GetSysColor(COLOR_WINDOWTEXT);
const COLORREF backColor = ::GetSysColor(COLOR_WINDOW);
const COLORREF markColor = ::GetSysColor(COLOR_HIGHLIGHTTEXT);
const COLORREF markBackColor = ::GetSysColor(COLOR_HIGHLIGHT);

// Whether the same pixels are of the one colour here and of the other there.
bool HaveSameShape(const Picture& one, COLORREF color, const Picture& other, COLORREF otherColor,
                   const RECT& part)
{
    for (int y = part.top; y < part.bottom; ++y) {
        for (int x = part.left; x < part.right; ++x) {
            if ((one.At(x, y) == color) != (other.At(x, y) == otherColor)) {
                return false;
            }
        }
    }
    return true;
}

struct CellCase
{
    const char* name;
    const wchar_t* text;
    const wchar_t* face = L"Courier New";
};

class ViewCells : public ViewTest, public testing::WithParamInterface<CellCase>
{};

}  // namespace

// Each UTF-16 unit is drawn into its own cell wherever it stands, is selected by a drag inside that
// cell, keeps its shape when it is, and is what a copy gives.
TEST_P(ViewCells, WhatIsDrawnIsHitAndCopied)
{
    const std::wstring text = GetParam().text;
    UseFont(GetParam().face, -13);
    const RECT row = Cells(0, 0, columns);
    view->Append({text});
    const Picture whole = Shoot(row);
    for (int column = 0; column < static_cast<int>(text.size()); ++column) {
        SCOPED_TRACE("column " + std::to_string(column));
        const RECT part = Cells(column, 0);
        Select(column, 0, column, 0);
        const unsigned at = static_cast<unsigned>(column);
        EXPECT_EQ(view->GetSelection(), (TestView::Selection{0, at, 0, at}));
        view->OnEditCopy();
        EXPECT_EQ(ClipboardText(), text.substr(at, 1));
        const Picture marked = Shoot(row);
        EXPECT_TRUE(Picture(*view, part).IsMadeOf(markColor, markBackColor));
        EXPECT_EQ(marked.Count(markBackColor), Picture(*view, part).Count(markBackColor));
        EXPECT_TRUE(HaveSameShape(whole, backColor, marked, markBackColor, part));
    }
    ::OleSetClipboard(nullptr);
    for (std::size_t column = 0; column < text.size(); ++column) {
        SCOPED_TRACE("column " + std::to_string(column));
        std::wstring alone(text.size(), L' ');
        alone[column] = text[column];
        view->Clear();
        view->Append({alone});
        const Picture single = Shoot(row);
        const RECT part = Cells(static_cast<int>(column), 0);
        EXPECT_EQ(single.CountAllBut(backColor),
                  Picture(*view, part).CountAllBut(backColor));  // nothing beside the cell
        EXPECT_TRUE(HaveSameShape(whole, backColor, single, backColor, part));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ViewCells,
    testing::Values(CellCase{"Ascii", L"The quick_Brown fox #@|~"},
                    CellCase{"Latin", L"\xC4\xE9\xDF\xD8 \xAB\xBB\xAD-\x17F"},
                    CellCase{"Cjk", L"a\x4E2D\x6587z\x3042"},
                    CellCase{"Combining", L"e\x0301xo\x0308"},
                    CellCase{"SurrogatePair", L"a\xD83D\xDE00z"},
                    CellCase{"LoneSurrogates", L"\xDC00 a\xD800"},
                    CellCase{"Hebrew", L"ab \x05E9\x05DC 12\x05DD (cd"},
                    CellCase{"Tabs", L"a\tb\t\tc"}, CellCase{"Controls", L"a\x01\x1B[0m\x7Fz"},
                    // Of other widths than the cell, where others mean
                    // to follow at once; of another direction.
                    CellCase{"Narrow", L"ilI|.:;t 1()[]j", L"Tahoma"},
                    CellCase{"Arabic", L"i\x0627\x062F\x0661\x0664\x0627 1\x0661;", L"Tahoma"}),
    CaseName());

TEST_F(ViewTest, LinesHaveTheirColoursAndASelectionItsOwnToTheEndOfEach)
{
    const std::vector<YTextViewBuffer::LineInfo> lines{Line(L"0123456789", &red), Line(L"01")};
    view->AppendLines(lines.data(), 2);
    EXPECT_GT(Shoot(Cells(0, 0, 4)).Count(red), 0);
    EXPECT_GT(Shoot(Cells(0, 1)).Count(textColor), 0);
    Select(4, 0, 0, 1);
    EXPECT_TRUE(Shoot(Cells(0, 0, 4)).IsMadeOf(red, backColor));
    EXPECT_TRUE(Shoot(Cells(4, 0, 6)).IsMadeOf(markColor, markBackColor));
    EXPECT_EQ(Shoot(Cells(10, 0, 5)).CountAllBut(backColor), 0);
    EXPECT_TRUE(Shoot(Cells(0, 1)).IsMadeOf(markColor, markBackColor));
    EXPECT_TRUE(Shoot(Cells(1, 1)).IsMadeOf(textColor, backColor));
    EXPECT_EQ(Shoot(Cells(0, 2, columns)).CountAllBut(backColor), 0);
}

TEST_F(ViewTest, AnOutlineIsClosedAndLeavesTheTextItsColours)
{
    view->SetSelectionDrawStyle(SelectionDrawStyle::Outline);
    view->Append({L"0123456789", L"0123456789", L"0123456789"});
    const Picture before = Shoot(Page());
    Select(2, 1, 4, 1);
    const Picture after = Shoot(Page());
    RECT box = Cells(2, 1, 3);
    --box.right;  // from here on: the last pixels inside
    --box.bottom;
    int different = 0;
    for (int y = 0; y < rows * cell.cy; ++y) {
        for (int x = 0; x < columns * cell.cx; ++x) {
            const bool across =
                (y == box.top || y == box.bottom) && x >= box.left && x <= box.right;
            const bool down = (x == box.left || x == box.right) && y >= box.top && y <= box.bottom;
            const COLORREF expected = across || down ? markBackColor : before.At(x, y);
            different += after.At(x, y) != expected;
        }
    }
    EXPECT_EQ(different, 0);
    view->SetSelectionDrawStyle(SelectionDrawStyle{7});  // any other value: not shown
    EXPECT_EQ(Shoot(Page()), before);
    EXPECT_TRUE(view->CanCopy());
}

TEST_F(ViewTest, OnlyTheInvalidPartIsPainted)
{
    view->Append(std::vector<std::wstring>(rows, std::wstring(columns, L'#')));
    Select(3, 3, 6, 6);
    const Picture whole = Shoot(Page());
    const RECT part{3 * cell.cx + 3, 4 * cell.cy + 5, 9 * cell.cx + 1, 6 * cell.cy - 4};
    const Picture before = Shoot(part);
    Scribble(red);
    view->InvalidateRect(&part);
    EXPECT_EQ(Shoot(part), before);
    EXPECT_TRUE(::EqualRect(&view->lastClip, &part));
    const int partPixels = (part.right - part.left) * (part.bottom - part.top);
    EXPECT_EQ(Shoot(Page()).CountAllBut(red), partPixels);
    view->Invalidate();
    EXPECT_EQ(Shoot(Page()), whole);
}

// Repaints

TEST_F(ViewTest, ABurstOfOutputIsPaintedOnce)
{
    view->SetBufferSize(1000);
    view->AppendNumbered(0, 100);
    PumpMessages();
    const int before = view->paints;
    for (unsigned line = 0; line < 10'000; ++line) {
        view->AppendNumbered(line, 1);
    }
    PumpMessages();
    EXPECT_LE(view->paints - before, 2);
    EXPECT_TRUE(IsScreenUpToDate());
}

struct LostPaintCase
{
    const char* name;
    void (*lose)(CWnd& view);  // the repaint that was asked for
    void (*restore)(CWnd& view);
    bool soon = false;  // not at once
};

class ViewLostPaint : public ViewTest, public testing::WithParamInterface<LostPaintCase>
{};

// The view asks for one repaint at a time. When somebody takes that one away, the output that
// follows is seen again: at once, or soon where nobody tells the view.
TEST_P(ViewLostPaint, TheNewestLineIsOnScreenInTheEnd)
{
    unsigned next = 0;
    const auto append = [this, &next] { view->AppendNumbered(next++, 1); };
    view->SetBufferSize(100);
    while (next < 100) {  // until it is full: from then on the bars stay as they are
        append();
    }
    PumpMessages();
    append();
    GetParam().lose(*view);
    append();
    GetParam().restore(*view);
    append();
    PumpMessages();
    if (GetParam().soon) {
        const int before = view->paints;
        EXPECT_TRUE(PumpUntil([this, before, &append] {
            append();
            return view->paints > before;
        }));
        view->UpdateWindow();
    }
    EXPECT_TRUE(IsScreenUpToDate());
}

INSTANTIATE_TEST_SUITE_P(
    Ways, ViewLostPaint,
    testing::Values(LostPaintCase{"Validated", [](CWnd& view) { view.ValidateRect(nullptr); },
                                  [](CWnd&) {}, true},
                    LostPaintCase{"Hidden", [](CWnd& view) { view.ShowWindow(SW_HIDE); },
                                  [](CWnd& view) { view.ShowWindow(SW_SHOWNA); }},
                    LostPaintCase{"RedrawOff", [](CWnd& view) { view.SetRedraw(FALSE); },
                                  [](CWnd& view) { view.SetRedraw(TRUE); }}),
    CaseName());
