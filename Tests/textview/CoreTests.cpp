#include "textview/RecordingView.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Position = YTextViewCharPosition;

constexpr int w = RecordingView::width;
constexpr int h = RecordingView::height;

std::vector<std::wstring> Texts(unsigned count, const std::wstring& text = L"0123456789abcdefghij")
{
    return std::vector<std::wstring>(count, text);
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

}  // namespace

// Scrolling.

TEST(YTextViewBase, PagesStopAtBothEndsAndKeepTheColumn)
{
    RecordingView view;
    view.SetCaret(true);
    view.Append(Texts(15));
    view.ScrollToPoint(0, 4);
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
    linked.Append(Texts(1));
    view.Clear();
    EXPECT_FALSE(linked.CanClear());
    view.Append(Texts(10));
    EXPECT_EQ(view.vertical.point, 4u);
}

// Selecting.

TEST(YTextViewBase, LessThanHalfACellIsAClick)
{
    RecordingView view;
    view.Append(Texts(3));
    const POINT start{2 * w + 1, 1 * h + 1};
    view.OnMouseMove(RecordingView::InCell(5, 2));  // without the button
    view.OnLButtonDown(start);
    view.OnMouseMove({start.x + w / 2, start.y + h / 2});
    EXPECT_EQ(Ends(view), "none");
    view.OnMouseMove({start.x + w / 2 + 1, start.y});
    EXPECT_EQ(Ends(view), "2,1-2,1");
    view.OnLButtonUp(start);
    view.OnMouseMove(RecordingView::InCell(9, 2));
    EXPECT_EQ(Ends(view), "2,1-2,1");
    view.Press(0, 0);
    EXPECT_EQ(Ends(view), "none");
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

TEST(YTextViewBase, ALossOfLinesAndClearEndTheSelection)
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

TEST(YTextViewBase, RunsBeginAtWholePixels)
{
    RecordingView view;
    view.UpdateSize(7.5, h);
    view.Append({L"abcdefgh"});
    EXPECT_EQ(view.GetPageWidth(), 12u);
    EXPECT_EQ(view.GetPageHeight(), 6u);
    view.OnLButtonDown({8, 0});
    view.OnMouseMove({30, 0});
    const std::vector<RecordingView::Run> runs = view.Draw();
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(runs[1].x, 7);
    EXPECT_EQ(runs[1].text, L"bcde");
    EXPECT_EQ(runs[2].x, 37);
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
