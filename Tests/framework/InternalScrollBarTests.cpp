// The control library's scroll bars: what is told to the system, when it is drawn.
#include "WindowTest.h"

#include "support/ImportHook.h"

#include <BCGCBProInc.h>

#include <climits>

namespace {

// Calls of SetScrollInfo that reach the system, and how many of them draw at once.
int systemCalls = 0;
int drawingCalls = 0;
int(WINAPI* realSetScrollInfo)(HWND, int, LPCSCROLLINFO, BOOL) = nullptr;

int WINAPI CountSetScrollInfo(HWND window, int bar, LPCSCROLLINFO info, BOOL redraw)
{
    ++systemCalls;
    drawingCalls += redraw ? 1 : 0;
    return realSetScrollInfo(window, bar, info, redraw);
}

class ScrollView : public TBCGPInternalScrollBarWrapperWnd<CView>
{
public:
    int framePaints = 0;
    int paints = 0;
    std::vector<int> positionsAtSize;  // of the vertical bar, at each WM_SIZE
    void PostNcDestroy() override {}  // belongs to its test

protected:
    void OnDraw(CDC*) override { ++paints; }
    afx_msg void OnNcPaint()
    {
        ++framePaints;
        CView::OnNcPaint();
    }
    afx_msg void OnSize(UINT type, int cx, int cy)
    {
        CView::OnSize(type, cx, cy);
        positionsAtSize.push_back(GetScrollPos(SB_VERT));
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(ScrollView, TBCGPInternalScrollBarWrapperWnd<CView>)
    ON_WM_NCPAINT()
    ON_WM_SIZE()
END_MESSAGE_MAP()

class InternalScrollBarTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        realSetScrollInfo = hook.Original<int WINAPI(HWND, int, LPCSCROLLINFO, BOOL)>();
        ASSERT_TRUE(
            view.Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 200), &top, 1));
        ShowTop();
    }

    // Range 0..99, page 20: shown, last position 80.
    void ShowVertical()
    {
        Set(SIF_RANGE | SIF_PAGE, 99, 20, 0);
        Settle();
    }

    bool Set(UINT mask, int maximum, UINT page, int position)
    {
        SCROLLINFO info{};
        info.fMask = mask;
        info.nMax = maximum;
        info.nPage = page;
        info.nPos = position;
        return view.SetScrollInfo(SB_VERT, &info) != FALSE;
    }

    void Settle()
    {
        view.UpdateWindow();
        PumpMessages();
        view.framePaints = 0;
        view.paints = 0;
        view.positionsAtSize.clear();
        systemCalls = 0;
        drawingCalls = 0;
    }

    bool IsShown() { return (view.GetStyle() & WS_VSCROLL) != 0; }

    int SystemPosition() { return ::GetScrollPos(view, SB_VERT); }

    // The bar's column of pixels as it is on the screen.
    std::vector<COLORREF> Pixels()
    {
        CWindowDC dc(&view);
        std::vector<COLORREF> column(200);
        for (int y = 0; y < 200; ++y) {
            column[static_cast<std::size_t>(y)] = dc.GetPixel(192, y);
        }
        return column;
    }

    // What a complete fresh drawing looks like.
    std::vector<COLORREF> PixelsRedrawn()
    {
        view.RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_UPDATENOW);
        return Pixels();
    }

    ImportHook hook{L"CommonFramework.dll", "user32.dll", "SetScrollInfo", &CountSetScrollInfo};
    ScrollView view;
};

}  // namespace

TEST_F(InternalScrollBarTest, WhatDoesNotChangeIsNotTold)
{
    ShowVertical();
    EXPECT_TRUE(Set(SIF_RANGE | SIF_PAGE, 99, 20, 0));
    EXPECT_TRUE(Set(SIF_POS, 0, 0, -5));  // clamped to where it is
    EXPECT_EQ(systemCalls, 0);
    EXPECT_EQ(view.SetScrollPos(SB_VERT, 1000), 0);
    EXPECT_TRUE(Set(SIF_POS, 0, 0, 80));
    EXPECT_TRUE(Set(SIF_POS, 0, 0, 99));
    EXPECT_EQ(systemCalls, 1);
    EXPECT_EQ(view.GetScrollPos(SB_VERT), 80);
    EXPECT_EQ(SystemPosition(), 80);
}

struct ClampCase
{
    const char* name;
    int maximum;
    UINT page;
    int position;
};

class InternalScrollBarClamp : public InternalScrollBarTest,
                               public testing::WithParamInterface<ClampCase>
{};

// Whatever is set, the store agrees with the system that it stands for.
TEST_P(InternalScrollBarClamp, StoreAgreesWithTheSystem)
{
    ShowVertical();
    const ClampCase& c = GetParam();
    Set(SIF_ALL, c.maximum, c.page, c.position);
    SCROLLINFO stored{};
    ASSERT_TRUE(view.GetScrollInfo(SB_VERT, &stored));
    SCROLLINFO systems{};
    systems.cbSize = sizeof(systems);
    systems.fMask = SIF_ALL;
    ::GetScrollInfo(view, SB_VERT, &systems);
    EXPECT_EQ(stored.nPos, systems.nPos);
    EXPECT_EQ(stored.nPage, systems.nPage);
    EXPECT_EQ(stored.nMax, systems.nMax);
    EXPECT_EQ(stored.nMin, systems.nMin);
}

INSTANTIATE_TEST_SUITE_P(Values, InternalScrollBarClamp,
                         testing::Values(ClampCase{"PastTheEnd", 99, 20, 99},
                                         ClampCase{"Saturated", 99, 20, -1},
                                         ClampCase{"NoPage", 99, 0, 99},
                                         ClampCase{"PageBeyondAll", 99, 500, 50},
                                         ClampCase{"NegativeMaximum", -1, 20, 3},
                                         ClampCase{"Huge", INT_MAX - 1, 10, INT_MAX},
                                         ClampCase{"HugePage", INT_MAX - 1, UINT_MAX, 7}),
                         CaseName());

TEST_F(InternalScrollBarTest, ManyChangesAreDrawnOnceAndCorrectly)
{
    ShowVertical();
    const std::vector<COLORREF> atTop = Pixels();
    for (int line = 1; line <= 40; ++line) {
        Set(SIF_POS, 0, 0, line);
        Set(SIF_RANGE | SIF_PAGE, 99 + line, 20, 0);
    }
    EXPECT_EQ(view.framePaints, 0);
    EXPECT_EQ(Pixels(), atTop);
    view.UpdateWindow();
    PumpMessages();
    EXPECT_EQ(view.framePaints, 1);
    EXPECT_EQ(drawingCalls, 0);
    const std::vector<COLORREF> drawn = Pixels();
    EXPECT_NE(drawn, atTop);
    EXPECT_EQ(drawn, PixelsRedrawn());
}

TEST_F(InternalScrollBarTest, ChangeOnAHiddenWindowDoesNotBlockLaterOnes)
{
    ShowVertical();
    const std::vector<COLORREF> atTop = Pixels();
    view.ShowWindow(SW_HIDE);
    Set(SIF_POS, 0, 0, 30);
    view.ShowWindow(SW_SHOW);
    Settle();
    const std::vector<COLORREF> shown = Pixels();
    EXPECT_NE(shown, atTop);
    Set(SIF_POS, 0, 0, 60);
    Settle();
    EXPECT_NE(Pixels(), shown);
    EXPECT_EQ(Pixels(), PixelsRedrawn());
}

TEST_F(InternalScrollBarTest, BarComesAndGoesAtOnceWithConsistentValues)
{
    Settle();
    EXPECT_FALSE(IsShown());
    Set(SIF_ALL, 99, 20, 50);
    EXPECT_TRUE(IsShown());
    // The window has become narrower inside the call, where the new values already held.
    EXPECT_EQ(view.positionsAtSize, (std::vector<int>{50}));
    view.positionsAtSize.clear();
    view.SetScrollRange(SB_VERT, 0, 0);
    EXPECT_FALSE(IsShown());
    EXPECT_EQ(view.positionsAtSize, (std::vector<int>{0}));
    EXPECT_EQ(view.GetScrollPos(SB_VERT), 0);
}

TEST_F(InternalScrollBarTest, LivesBeforeAndAfterItsWindow)
{
    ScrollView other;
    SCROLLINFO info{};
    info.nMax = 99;
    info.nPos = 5;
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(
            other.Create(nullptr, nullptr, WS_CHILD | WS_VSCROLL, CRect(0, 0, 90, 90), &top, 2));
        EXPECT_EQ(other.GetScrollPos(SB_VERT), 0);
        info.fMask = SIF_ALL;
        EXPECT_TRUE(other.SetScrollInfo(SB_VERT, &info));
        EXPECT_EQ(other.GetScrollPos(SB_VERT), 5);
        other.DestroyWindow();
        EXPECT_FALSE(other.SetScrollInfo(SB_VERT, &info));
        EXPECT_EQ(other.GetScrollPos(SB_VERT), 0);
    }
}
