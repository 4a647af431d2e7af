// The control library's scroll bars: what is told to the system, when it is drawn.
#include "WindowTest.h"

#include "support/ImportHook.h"

#include <BCGCBProInc.h>

#include <climits>
#include <tuple>

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
    void PostNcDestroy() override {}  // belongs to its test

protected:
    void OnDraw(CDC*) override {}
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        framePaints += message == WM_NCPAINT ? 1 : 0;
        return TBCGPInternalScrollBarWrapperWnd<CView>::WindowProc(message, wParam, lParam);
    }
};

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
        SCROLLINFO info{sizeof(info), mask, 0, maximum, page, position, 0};
        return view.SetScrollInfo(SB_VERT, &info) != FALSE;
    }

    void Settle()
    {
        view.UpdateWindow();
        PumpMessages();
        view.framePaints = 0;
        systemCalls = 0;
        drawingCalls = 0;
    }

    // The bar's column of pixels as it is on the screen.
    std::vector<COLORREF> Pixels()
    {
        CWindowDC dc(&view);
        std::vector<COLORREF> column;
        for (int y = 0; y < 200; ++y) {
            column.push_back(dc.GetPixel(192, y));
        }
        return column;
    }

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
    EXPECT_EQ(::GetScrollPos(view, SB_VERT), 80);
}

TEST_F(InternalScrollBarTest, StoreAgreesWithTheSystemWhateverIsSet)
{
    const std::tuple<int, UINT, int> cases[] = {{99, 20, 99},
                                                {99, 20, -1},
                                                {99, 0, 99},
                                                {99, 500, 50},
                                                {-1, 20, 3},
                                                {INT_MAX - 1, 10, INT_MAX},
                                                {INT_MAX - 1, UINT_MAX, 7}};
    for (const auto& [maximum, page, position] : cases) {
        SCOPED_TRACE(testing::Message() << maximum << " " << page << " " << position);
        ShowVertical();
        Set(SIF_ALL, maximum, page, position);
        SCROLLINFO stored{};
        ASSERT_TRUE(view.GetScrollInfo(SB_VERT, &stored));
        SCROLLINFO systems{sizeof(systems), SIF_ALL, 0, 0, 0, 0, 0};
        ::GetScrollInfo(view, SB_VERT, &systems);
        EXPECT_EQ(stored.nPos, systems.nPos);
        EXPECT_EQ(stored.nPage, systems.nPage);
        EXPECT_EQ(stored.nMax, systems.nMax);
        EXPECT_EQ(stored.nMin, systems.nMin);
    }
}

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

TEST_F(InternalScrollBarTest, LivesBeforeAndAfterItsWindow)
{
    ScrollView other;
    SCROLLINFO info{sizeof(info), SIF_ALL, 0, 99, 0, 5, 0};
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(
            other.Create(nullptr, nullptr, WS_CHILD | WS_VSCROLL, CRect(0, 0, 90, 90), &top, 2));
        EXPECT_EQ(other.GetScrollPos(SB_VERT), 0);
        EXPECT_TRUE(other.SetScrollInfo(SB_VERT, &info));
        EXPECT_EQ(other.GetScrollPos(SB_VERT), 5);
        other.DestroyWindow();
        EXPECT_FALSE(other.SetScrollInfo(SB_VERT, &info));
        EXPECT_EQ(other.GetScrollPos(SB_VERT), 0);
    }
}
