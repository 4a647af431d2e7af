// Splitters: how panes share the room, and what dragging a bar does.
#include "WindowTest.h"

#include <afxext.h>

namespace {

constexpr int barSize = 6;
constexpr int width = 300;
constexpr int height = 200;

class PaneView : public CView
{
    DECLARE_DYNCREATE(PaneView)

protected:
    void OnDraw(CDC* dc) override { dc->FillSolidRect(CRect(0, 0, 999, 999), RGB(255, 255, 255)); }
};

IMPLEMENT_DYNCREATE(PaneView, CView)

class CSplitterWndTest : public testing::Test
{
protected:
    void SetUp() override
    {
        frame = new CFrameWnd;
        ASSERT_TRUE(frame->Create(nullptr, L"Splitter", WS_POPUP | WS_CLIPCHILDREN,
                                  CRect(50, 50, 50 + width, 50 + height)));
        ASSERT_TRUE(splitter.CreateStatic(frame, 2, 2));
        for (int row = 0; row < 2; ++row) {
            for (int column = 0; column < 2; ++column) {
                ASSERT_TRUE(splitter.CreateView(row, column, RUNTIME_CLASS(PaneView),
                                                CSize(100, 80), nullptr));
            }
        }
        splitter.SetColumnInfo(0, 100, 40);
        splitter.SetColumnInfo(1, 0, 60);
        splitter.SetRowInfo(0, 80, 20);
        frame->RecalcLayout();
        frame->ShowWindow(SW_SHOWNORMAL);
        ASSERT_TRUE(Activate(*frame));
    }

    void TearDown() override
    {
        frame->DestroyWindow();
        PumpMessages();
    }

    CRect PlaceOf(int row, int column)
    {
        CRect place;
        splitter.GetPane(row, column)->GetWindowRect(&place);
        splitter.ScreenToClient(&place);
        return place;
    }

    int ColumnWidth(int column)
    {
        int current = 0;
        int minimum = 0;
        splitter.GetColumnInfo(column, current, minimum);
        return current;
    }

    CFrameWnd* frame = nullptr;  // deletes itself
    CSplitterWnd splitter;
};

}  // namespace

TEST_F(CSplitterWndTest, PanesAndBarsCoverTheClientArea)
{
    EXPECT_EQ(PlaceOf(0, 0), CRect(0, 0, 100, 80));
    EXPECT_EQ(PlaceOf(0, 1), CRect(100 + barSize, 0, width, 80));
    EXPECT_EQ(PlaceOf(1, 0), CRect(0, 80 + barSize, 100, height));
    EXPECT_EQ(PlaceOf(1, 1), CRect(100 + barSize, 80 + barSize, width, height));
    EXPECT_EQ(splitter.GetDlgItem(splitter.IdFromRowCol(1, 1)), splitter.GetPane(1, 1));
}

TEST_F(CSplitterWndTest, DraggingMovesTheBarWithinTheMinima)
{
    int left = 100;  // width of the first column
    const std::pair<int, int> cases[] = {// where the bar's middle is let go, the new width
                                         {150 + barSize / 2, 150},
                                         {5, 40},
                                         {width + 200, width - barSize - 60}};
    for (const auto& [to, expected] : cases) {
        DragLeft(splitter, {left + barSize / 2, 30}, {to, 30});
        left = expected;
        EXPECT_EQ(ColumnWidth(0), expected);
        EXPECT_EQ(PlaceOf(1, 1).left, expected + barSize);
        EXPECT_EQ(PlaceOf(0, 0).bottom, 80);  // the other direction stays
        EXPECT_EQ(::GetCapture(), nullptr);
        EXPECT_EQ(::GetFocus(), frame->GetActiveView()->GetSafeHwnd());
    }
}

TEST_F(CSplitterWndTest, IntersectionDragsBothBars)
{
    DragLeft(splitter, {102, 82}, {152, 122});
    EXPECT_EQ(PlaceOf(0, 0), CRect(0, 0, 150, 120));
}

TEST_F(CSplitterWndTest, EscapeAndLostCaptureCancelWithoutTrace)
{
    const auto pixel = [&] { return CClientDC(splitter.GetPane(0, 1)).GetPixel(50, 30); };
    for (const bool byKey : {true, false}) {
        PressLeft(splitter, {102, 30});
        MovePointer(splitter, {100 + barSize + 50, 30});
        EXPECT_EQ(pixel(), RGB(0, 0, 0));  // the tracker
        if (byKey) {
            TypeKey(VK_ESCAPE);
            EXPECT_EQ(::GetCapture(), nullptr);
        } else {
            ::SetCapture(*frame);
        }
        EXPECT_EQ(pixel(), RGB(255, 255, 255));
        ReleaseLeft(splitter, {180, 30});
        ::ReleaseCapture();
        EXPECT_EQ(ColumnWidth(0), 100);
    }
}
