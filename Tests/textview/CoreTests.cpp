#include "support/CaseName.h"
#include "textview/ITextViewLinkedScrollbar.h"
#include "textview/RecordingView.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using Position = YTextViewCharPosition;
using Run = RecordingView::Run;
using Runs = std::vector<Run>;

constexpr int w = RecordingView::width;
constexpr int h = RecordingView::height;

std::vector<std::wstring> Texts(unsigned count, const std::wstring& text = L"0123456789abcdefghij")
{
    return std::vector<std::wstring>(count, text);
}

Run Plain(int x, int row, const std::wstring& text)
{
    return {RecordingView::textColor, RecordingView::backColor, x, row * h, text};
}

Run Marked(int x, int row, const std::wstring& text)
{
    return {RecordingView::markColor, RecordingView::markBackColor, x, row * h, text};
}

// The ends of the selection that is shown, as "column,line-column,line".
std::string Ends(const YTextViewBase& view)
{
    const YTextViewHighlight* const highlight = view.GetHighlight();
    if (!highlight) {
        return "none";
    }
    const auto name = [](const Position& position) {
        return std::to_string(position.column) + "," + std::to_string(position.line);
    };
    return name(highlight->GetBegin()) + "-" + name(highlight->GetEnd());
}

class LinkedBar final : public ITextViewLinkedScrollbar
{
public:
    void UpdateScrollSize(unsigned newTotal, unsigned newPage) override
    {
        total = newTotal;
        page = newPage;
    }
    void ScrollToPoint(unsigned line) override { point = line; }
    unsigned GetScrollPoint() const override { return point; }
    void OnVScroll(UINT, UINT) override {}
    long OnMouseWheel(UINT, long) override { return 0; }
    void SyncScrollPoint(unsigned) override {}
    void GetScrollInfo(SCROLLINFO*) override {}

    unsigned total = 0, page = 0, point = 0;
};

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Run& run)
{
    return stream << run.foreground << " on " << run.background << " at " << run.x << "," << run.y
                  << ": " << testing::PrintToString(run.text);
}

// Scrolling.

TEST(YTextViewBase, PageIsOfWholeCells)
{
    RecordingView view;
    EXPECT_EQ(view.GetPageWidth(), 12u);
    EXPECT_EQ(view.GetPageHeight(), 6u);
    view.client = {0, 0, 12 * w - 1, 6 * h - 1};
    view.OnSizeChange();
    EXPECT_EQ(view.GetPageWidth(), 11u);
    EXPECT_EQ(view.GetPageHeight(), 5u);
    view.UpdateSize(7.5, 10);
    EXPECT_EQ(view.GetPageWidth(), 0u);
    view.Append({L"measured by the first line"});
    EXPECT_EQ(view.GetPageWidth(), 12u);
    EXPECT_EQ(view.GetPageHeight(), 9u);
    EXPECT_EQ(view.horizontal.total, 26u);
}

TEST(YTextViewBase, ScrollCommandsDoNothingWhenAllLinesFit)
{
    RecordingView view;
    view.Append(Texts(6));
    view.horizontal.point = 3;
    view.OnPageDown();
    view.OnPageUp();
    view.OnGoToStart();
    view.OnCtrlEnd();
    EXPECT_EQ(view.vertical.point, 0u);
    EXPECT_EQ(view.horizontal.point, 3u);
}

TEST(YTextViewBase, PagesStopAtBothEndsAndKeepTheColumn)
{
    RecordingView view;
    view.SetCaret(true);
    view.Append(Texts(15));
    view.ScrollToPoint(0, 4);
    view.OnPageDown();
    EXPECT_EQ(view.vertical.point, 6u);
    view.OnPageDown();
    view.OnPageDown();
    EXPECT_EQ(view.vertical.point, 9u);
    view.OnPageUp();
    EXPECT_EQ(view.vertical.point, 3u);
    view.OnPageUp();
    EXPECT_EQ(view.vertical.point, 0u);
    view.ScrollToPoint(5, 4);
    view.OnGoToStart();
    EXPECT_EQ(view.vertical.point, 0u);
    EXPECT_EQ(view.horizontal.point, 4u);
    view.OnCtrlEnd();
    EXPECT_EQ(view.vertical.point, 9u);
    EXPECT_EQ(view.horizontal.point, 0u);
}

TEST(YTextViewBase, FollowsTheEndUntilAClickAndAgainAfterCtrlEndOrClear)
{
    RecordingView view;
    RecordingView linked;
    view.SetLinkedView(&linked);
    view.Append(Texts(10));
    EXPECT_EQ(view.vertical.point, 4u);

    linked.SetLinkedView(&view);
    linked.Press(0, 0);  // in the other view
    view.Append(Texts(10));
    EXPECT_EQ(view.vertical.point, 4u);
    linked.OnCtrlEnd();
    view.Append(Texts(1));
    EXPECT_EQ(view.vertical.point, 15u);

    view.Press(0, 0);
    view.Append(Texts(10));
    EXPECT_EQ(view.vertical.point, 15u);
    view.Clear();
    view.Append(Texts(10));
    EXPECT_EQ(view.vertical.point, 4u);
}

TEST(YTextViewBase, ALinkedBarTakesThePlaceOfAHiddenOne)
{
    RecordingView view;
    LinkedBar bar;
    view.SetLinkedVerticalScrollbar(&bar);
    view.Append(Texts(20));
    EXPECT_EQ(bar.total, 0u);
    EXPECT_EQ(bar.point, 0u);

    view.ShowVertScrollbarIfNeeded(false);
    view.UpdateScrollSize();
    EXPECT_EQ(bar.total, 20u);
    EXPECT_EQ(bar.page, 6u);
    bar.point = 7;
    view.OnPageDown();
    EXPECT_EQ(bar.point, 13u);
    EXPECT_EQ(view.vertical.point, 13u);
    bar.point = 18;
    EXPECT_EQ(view.Draw().size(), 2u);  // from the bar's position to the last line
}

// Fonts.

TEST(YTextViewBase, OnlyAnotherFontIsMeasured)
{
    RecordingView view;
    RecordingView linked;
    view.SetLinkedView(&linked);
    LOGFONTW font{};
    font.lfHeight = -13;
    view.UpdateFont(YLogFont(font));
    view.UpdateFont(YLogFont(font));
    EXPECT_EQ(view.measurements, 1);
    EXPECT_EQ(linked.measurements, 1);
    font.lfHeight = -14;
    view.UpdateFont(YLogFont(font));
    EXPECT_EQ(view.measurements, 2);
    ASSERT_NE(linked.GetLogFont(), nullptr);
    EXPECT_EQ(linked.GetLogFont()->Get().lfHeight, -14);
}

// Selecting.

TEST(YTextViewBase, LessThanHalfACellIsAClick)
{
    RecordingView view;
    view.Append(Texts(3));
    const POINT start{2 * w + 1, 1 * h + 1};
    view.OnLButtonDown(start);
    view.OnMouseMove({start.x + w / 2, start.y + h / 2});
    EXPECT_EQ(Ends(view), "none");
    view.OnMouseMove({start.x + w / 2 + 1, start.y});
    EXPECT_EQ(Ends(view), "2,1-2,1");
    view.OnLButtonUp(start);
    EXPECT_EQ(Ends(view), "2,1-2,1");
    view.Press(0, 0);
    EXPECT_EQ(Ends(view), "none");
}

TEST(YTextViewBase, TheFirstCellCanBeSelectedAlone)
{
    RecordingView view;
    view.Append(Texts(3));
    view.OnLButtonDown({0, 0});
    view.OnMouseMove({w - 1, 0});
    EXPECT_EQ(Ends(view), "0,0-0,0");
}

TEST(YTextViewBase, MovesWithoutTheButtonSelectNothing)
{
    RecordingView view;
    view.Append(Texts(3));
    view.OnMouseMove(RecordingView::InCell(5, 2));
    EXPECT_EQ(Ends(view), "none");
    view.Drag(0, 0, 5, 0);
    view.OnMouseMove(RecordingView::InCell(9, 2));
    EXPECT_EQ(Ends(view), "0,0-5,0");
}

TEST(YTextViewBase, ShiftExtendsFromTheLastClickAndKeepsTheKind)
{
    RecordingView view;
    view.Append(Texts(4));
    {
        KeyDown alt(VK_MENU);
        view.Press(3, 2);
        view.Release(3, 2);
    }
    KeyDown shift(VK_SHIFT);
    view.Press(1, 0);
    EXPECT_EQ(Ends(view), "1,0-3,2");
    EXPECT_TRUE(view.IsColumnSelect());
    view.Release(1, 0);
    view.Press(5, 3);
    EXPECT_EQ(Ends(view), "3,2-5,3");
}

// The end of the drag is where select all puts its own: nothing but the begin changes.
TEST(YTextViewBase, SelectAllAfterADragToTheVeryEnd)
{
    RecordingView view;
    view.Append(Texts(2, L"abc"));
    view.Drag(1, 0, 3, 1);
    ASSERT_EQ(Ends(view), "1,0-2,1");
    view.SelectAll();
    EXPECT_EQ(Ends(view), "0,0-2,1");
}

TEST(YTextViewBase, SelectAllSelectsInTheLinkedViewAsWell)
{
    RecordingView view;
    RecordingView linked;
    view.SetLinkedView(&linked);
    linked.Append({L"abc", L""});
    EXPECT_FALSE(view.CanSelectAll());
    view.SelectAll();
    EXPECT_EQ(Ends(view), "none");
    EXPECT_EQ(Ends(linked), "0,0-2,0");
}

TEST(YTextViewBase, ADragOutsideScrollsByTheDistance)
{
    RecordingView view;
    view.Append(Texts(30));
    view.ScrollToPoint(10, 4);
    view.Press(1, 1);
    view.OnMouseMove({1 * w, -2 * h});
    EXPECT_EQ(view.vertical.point, 8u);
    view.OnMouseMove({-3 * w, 1 * h});
    EXPECT_EQ(view.horizontal.point, 1u);
    view.OnMouseMove({view.client.right + 5 * w, view.client.bottom + 3 * h});
    EXPECT_EQ(view.horizontal.point, 6u);
    EXPECT_EQ(view.vertical.point, 11u);
    view.OnMouseMove({view.client.right + 500 * w, -500 * h});
    EXPECT_EQ(view.horizontal.point, 8u);
    EXPECT_EQ(view.vertical.point, 0u);
}

TEST(YTextViewBase, AMoveThatChangesNothingIsNotRepainted)
{
    RecordingView view;
    view.Append(Texts(3));
    view.Press(0, 0);
    view.OnMouseMove(RecordingView::InCell(4, 1));
    const int invalidations = view.invalidations;
    const int changes = view.highlightChanges;
    view.OnMouseMove(RecordingView::InCell(4, 1));
    EXPECT_EQ(view.invalidations, invalidations);
    EXPECT_EQ(view.highlightChanges, changes);
    view.OnMouseMove(RecordingView::InCell(5, 1));
    EXPECT_EQ(view.invalidations, invalidations + 1);
    EXPECT_EQ(view.highlightChanges, changes + 1);
}

TEST(YTextViewBase, TheSelectionMovesWithItsTextAndLeavesWithIt)
{
    RecordingView view;
    view.SetBufferSize(5);
    view.Append({L"a", L"b", L"cdef", L"ghij", L"k"});
    view.Drag(1, 2, 2, 3);
    ASSERT_EQ(Ends(view), "1,2-2,3");
    view.Append(Texts(2));
    EXPECT_EQ(Ends(view), "1,0-2,1");
    view.Append(Texts(1));
    EXPECT_EQ(Ends(view), "0,0-2,0");
    view.Append(Texts(1));
    EXPECT_EQ(Ends(view), "none");
    EXPECT_FALSE(view.CanCopy());
}

TEST(YTextViewBase, LinesDroppedDuringADragMoveItsBeginning)
{
    RecordingView view;
    view.SetBufferSize(6);
    view.Append(Texts(6));
    view.Press(2, 3);
    view.OnMouseMove(RecordingView::InCell(4, 4));
    view.Append(Texts(2));
    view.OnMouseMove(RecordingView::InCell(6, 5));
    EXPECT_EQ(Ends(view), "2,1-6,5");
}

TEST(YTextViewBase, AHookMayRefuseASelection)
{
    RecordingView view;
    view.Append(Texts(2));
    view.Drag(0, 0, 3, 1);
    view.refuseHighlight = true;
    view.SelectAll();
    EXPECT_EQ(Ends(view), "none");
}

TEST(YTextViewBase, ACopyNeedsASelectionAndPermission)
{
    RecordingView view;
    view.Append(Texts(2));
    EXPECT_FALSE(view.CanCopy());
    view.SelectAll();
    EXPECT_TRUE(view.CanCopy());
    view.EnableCopy(false);
    EXPECT_FALSE(view.CanCopy());
}

TEST(YTextViewBase, ALinkedViewShowsACopyOfTheSelection)
{
    RecordingView view;
    RecordingView linked;
    view.Append(Texts(4));
    linked.Append(Texts(4));
    view.Drag(1, 0, 3, 2);
    linked.UpdateHighlight(view.GetHighlight(), true);
    EXPECT_EQ(Ends(linked), "1,0-3,2");
    EXPECT_TRUE(linked.IsColumnSelect());
    EXPECT_EQ(linked.highlightChanges, 0);
    view.Press(0, 0);
    EXPECT_EQ(Ends(linked), "1,0-3,2");

    linked.UpdateHighlight(linked.GetHighlight(), false);  // its own
    EXPECT_EQ(Ends(linked), "1,0-3,2");
    KeyDown shift(VK_SHIFT);
    linked.Press(5, 3);
    EXPECT_EQ(Ends(linked), "1,0-5,3");
    linked.UpdateHighlight(nullptr, true);
    EXPECT_EQ(Ends(linked), "none");
    EXPECT_FALSE(linked.IsColumnSelect());
}

TEST(YTextViewBase, ClearAndALossOfLinesEndTheSelection)
{
    RecordingView view;
    view.Append(Texts(4));
    view.SelectAll();
    view.SetBufferSize(4);
    EXPECT_EQ(Ends(view), "0,0-19,3");
    view.SetBufferSize(3);
    EXPECT_EQ(Ends(view), "none");
    view.SelectAll();
    view.Clear();
    EXPECT_EQ(Ends(view), "none");
    EXPECT_FALSE(view.CanClear());
    EXPECT_EQ(view.vertical.total, 0u);
}

// Painting.

TEST(YTextViewBase, ALineHasTheColourOfItsAttributes)
{
    RecordingView view;
    const COLORREF red = 0x0000FF;
    const YTextViewBuffer::LineInfo lines[] = {Line(L"red", &red), Line(L""), Line(L"plain")};
    view.AppendLines(lines, 3);
    EXPECT_EQ(view.Draw(),
              (Runs{{red, RecordingView::backColor, 0, 0, L"red"}, Plain(0, 2, L"plain")}));
    view.SelectAll();
    EXPECT_EQ(view.Draw(), (Runs{Marked(0, 0, L"red"), Marked(0, 2, L"plain")}));
}

TEST(YTextViewBase, OnlyRowsThatMeetTheClipAreDrawnAndNotBeyondIt)
{
    RecordingView view;
    view.SetCaret(true);
    view.Append(Texts(20));
    const RECT clip{0, 2 * h + 1, 5 * w + 1, 3 * h - 1};
    EXPECT_EQ(view.Draw(clip), (Runs{Plain(0, 2, L"012345")}));
    view.client.bottom = 6 * h + 1;  // a part of a seventh row
    EXPECT_EQ(view.Draw().size(), 7u);
}

TEST(YTextViewBase, RunsBeginAtTheFirstVisibleColumn)
{
    RecordingView view;
    view.Append({L"0123456789abcdefghij", L"01234", L"0123456789abcdef"});
    view.Drag(3, 0, 7, 0);
    view.ScrollToPoint(0, 5);
    EXPECT_EQ(view.Draw(), (Runs{Marked(0, 0, L"567"), Plain(3 * w, 0, L"89abcdefgh"),
                                 Plain(0, 2, L"56789abcdef")}));
    // The last run is cut where the row ends.
    view.ScrollToPoint(0, 0);
    EXPECT_EQ(view.Draw({0, 0, 5 * w, 1}), (Runs{Plain(0, 0, L"012"), Marked(3 * w, 0, L"345")}));
}

TEST(YTextViewBase, RunsBeginAtWholePixels)
{
    RecordingView view;
    view.UpdateSize(7.5, h);
    view.Append({L"abcdefgh"});
    view.OnLButtonDown({8, 0});
    view.OnMouseMove({30, 0});
    EXPECT_EQ(view.Draw(), (Runs{Plain(0, 0, L"a"), Marked(7, 0, L"bcde"), Plain(37, 0, L"fgh")}));
}

TEST(YTextViewBase, AnOutlineLeavesTheTextItsColours)
{
    RecordingView view;
    view.Append({L"abcdef"});
    view.Drag(1, 0, 3, 0);
    view.SetSelectionDrawStyle(SelectionDrawStyle::Outline);
    EXPECT_EQ(view.repaints, 2);  // the release and the style
    EXPECT_EQ(view.Draw(), (Runs{Plain(0, 0, L"abcdef")}));
    ASSERT_EQ(view.outlines.size(), 1u);
    EXPECT_EQ(view.outlines[0].size(), 4u);
    view.SetSelectionDrawStyle(static_cast<SelectionDrawStyle>(3));
    EXPECT_EQ(view.Draw(), (Runs{Plain(0, 0, L"abcdef")}));
    EXPECT_TRUE(view.outlines.empty());
    EXPECT_TRUE(view.CanCopy());
}

TEST(YTextViewBase, BeforeAnythingIsMeasuredEveryPointIsTheScrollPoint)
{
    RecordingView view;
    view.Append(Texts(20));
    view.ScrollToPoint(3, 2);
    view.UpdateSize(0.0, 0);
    view.Drag(5, 5, 9, 2);
    EXPECT_EQ(Ends(view), "2,3-2,3");
    EXPECT_TRUE(view.Draw().empty());
}
