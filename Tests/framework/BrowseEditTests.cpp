// The edit with a button inside its right edge, and the tooltip.
#include "WindowTest.h"

#include "support/LeakCheck.h"

#include <BCGCBProInc.h>
#include <afxcmn.h>

#include <memory>

namespace {

class BrowseEdit : public CBCGPEdit
{
public:
    using CBCGPEdit::m_rectBtn;

    void OnBrowse() override
    {
        ++clicks;
        if (endsItself) {
            DestroyWindow();
        }
    }

    int clicks = 0;
    bool endsItself = false;
};

// Red, half transparent; straight alpha, as files have it.
HBITMAP MakeImage(int width, int height)
{
    BITMAPINFO format{};
    format.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HBITMAP bitmap = ::CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    std::fill_n(static_cast<DWORD*>(bits), width * height, 0x80FF0000u);
    return bitmap;
}

class CBCGPEditTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        ASSERT_TRUE(edit.CreateEx(WS_EX_CLIENTEDGE, L"EDIT", L"",
                                  WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, CRect(20, 20, 220, 44),
                                  &top, editId));
        edit.EnableBrowseButton();
        ShowTop();
        ASSERT_TRUE(Activate(top));
        MovePointer(top, {5, 5});
        // The window may have come up under the pointer.
        ASSERT_TRUE(PumpUntil([&] { return ButtonCorner() == ::GetSysColor(COLOR_WINDOW); }));
    }

    int GetTextWidth()
    {
        CRect client;
        edit.GetClientRect(&client);
        return client.Width();
    }

    // What the window shows there, in client coordinates.
    COLORREF PixelAt(CPoint point)
    {
        edit.UpdateWindow();
        PumpMessages();
        CRect window;
        edit.GetWindowRect(&window);
        edit.ClientToScreen(&point);
        CWindowDC dc(&edit);
        return dc.GetPixel(point.x - window.left, point.y - window.top);
    }
    CPoint Button() { return edit.m_rectBtn.CenterPoint(); }
    COLORREF ButtonCorner() { return PixelAt(edit.m_rectBtn.TopLeft() + CSize(2, 2)); }

    static constexpr UINT editId = 40;
    BrowseEdit edit;
};

}  // namespace

TEST_F(CBCGPEditTest, TheButtonTakesItsWidthFromTheText)
{
    const int labelled = GetTextWidth();
    EXPECT_EQ(edit.m_rectBtn.left, labelled);
    edit.SetBrowseButtonImage(MakeImage(30, 8));
    EXPECT_GE(edit.m_rectBtn.Width(), 30);
    EXPECT_LT(GetTextWidth(), labelled);
    EXPECT_EQ(edit.m_rectBtn.left, GetTextWidth());
    edit.EnableBrowseButton(FALSE);
    EXPECT_TRUE(edit.m_rectBtn.IsRectEmpty());
    EXPECT_EQ(GetTextWidth(), 200 - 2 * ::GetSystemMetrics(SM_CXEDGE));
}

TEST_F(CBCGPEditTest, TheImagesAlphaCountsOnce)
{
    edit.SetBrowseButtonImage(MakeImage(8, 8));
    const COLORREF white = ::GetSysColor(COLOR_WINDOW);
    ASSERT_EQ(white, RGB(255, 255, 255));
    const COLORREF blended = PixelAt(Button());
    EXPECT_NEAR(GetRValue(blended), 255, 1);
    EXPECT_NEAR(GetGValue(blended), 127, 1);
    EXPECT_NEAR(GetBValue(blended), 127, 1);
    EXPECT_EQ(ButtonCorner(), white);
}

TEST_F(CBCGPEditTest, ClicksWhenReleasedOverTheButton)
{
    ClickLeft(edit, Button());
    EXPECT_EQ(edit.clicks, 1);
    EXPECT_EQ(::GetFocus(), edit.m_hWnd);
    ClickLeft(edit, Button());  // as well when it comes as a double click
    EXPECT_EQ(edit.clicks, 2);
    PressLeft(edit, Button());
    ReleaseLeft(edit, {10, 5});
    EXPECT_EQ(edit.clicks, 2);
    EXPECT_EQ(::GetCapture(), nullptr);
    PressLeft(edit, {10, 5});
    ReleaseLeft(edit, Button());
    EXPECT_EQ(edit.clicks, 2);
    edit.SendMessage(WM_NCLBUTTONDBLCLK, HTBORDER, [&] {
        CPoint point = Button();
        edit.ClientToScreen(&point);
        return MAKELPARAM(point.x, point.y);
    }());
    ReleaseLeft(edit, Button());
    EXPECT_EQ(edit.clicks, 3);
}

TEST_F(CBCGPEditTest, ShowsWhatThePointerDoes)
{
    const COLORREF resting = ButtonCorner();
    const COLORREF face = ::GetSysColor(COLOR_BTNFACE);
    MovePointer(edit, Button());
    EXPECT_EQ(ButtonCorner(), face);
    const COLORREF hotEdge = PixelAt(edit.m_rectBtn.TopLeft());
    PressLeft(edit, Button());
    EXPECT_NE(PixelAt(edit.m_rectBtn.TopLeft()), hotEdge);
    MovePointer(edit, {10, 5});  // slips off, and back
    EXPECT_EQ(ButtonCorner(), resting);
    MovePointer(edit, Button());
    EXPECT_EQ(ButtonCorner(), face);
    ReleaseLeft(edit, {10, 5});
    EXPECT_EQ(ButtonCorner(), resting);
    MovePointer(edit, Button());
    MovePointer(top, {5, 5});
    EXPECT_TRUE(PumpUntil([&] { return ButtonCorner() == resting; }));
}

TEST_F(CBCGPEditTest, LosingTheCaptureIsNoClick)
{
    PressLeft(edit, Button());
    ::SetCapture(top);
    ::ReleaseCapture();
    ReleaseLeft(edit, Button());
    EXPECT_EQ(edit.clicks, 0);
    MovePointer(top, {5, 5});
    EXPECT_TRUE(PumpUntil([&] { return ButtonCorner() == ::GetSysColor(COLOR_WINDOW); }));
}

TEST_F(CBCGPEditTest, ADisabledFieldIsGreyAllOver)
{
    edit.EnableWindow(FALSE);
    EXPECT_EQ(ButtonCorner(), ::GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(PixelAt({GetTextWidth() - 3, 3}), ::GetSysColor(COLOR_BTNFACE));
    ClickLeft(edit, Button());
    EXPECT_EQ(edit.clicks, 0);
}

TEST_F(CBCGPEditTest, OnBrowseMayEndTheWindow)
{
    edit.endsItself = true;
    ClickLeft(edit, Button());
    EXPECT_EQ(edit.clicks, 1);
    EXPECT_EQ(edit.m_hWnd, nullptr);
}

TEST_F(CBCGPEditTest, ImagesLeaveNothingBehind)
{
    const HBITMAP lent = MakeImage(8, 8);
    edit.SetBrowseButtonImage(lent, FALSE);
    {
        const LeakCheck leaks;
        for (int i = 0; i < 20; ++i) {
            edit.SetBrowseButtonImage(MakeImage(8, 8));
            edit.SetBrowseButtonImage(lent, FALSE);
            PixelAt(Button());
        }
        edit.SetBrowseButtonImage(static_cast<HBITMAP>(nullptr));
        edit.SetBrowseButtonImage(lent, FALSE);
    }
    EXPECT_TRUE(::DeleteObject(lent));
}

TEST_F(CBCGPEditTest, ATooltipShowsOverItsToolOnly)
{
    CToolTipCtrl tip;
    ASSERT_TRUE(tip.Create(&edit));
    CRect nowhere(0, 0, 0, 0);
    ASSERT_TRUE(tip.AddTool(&edit, L"Browse", &nowhere, 1));
    tip.SetToolRect(&edit, 1, &edit.m_rectBtn);
    tip.SendMessage(TTM_SETDELAYTIME, TTDT_INITIAL, 10);
    tip.Activate(TRUE);
    const auto relay = [&](CPoint point) {
        MovePointer(edit, point);
        MSG move{edit, WM_MOUSEMOVE, 0, MAKELPARAM(point.x, point.y), 0, {}};
        tip.RelayEvent(&move);
    };
    relay(Button());
    EXPECT_TRUE(PumpUntil([&] { return tip.IsWindowVisible() != FALSE; }));
    relay({10, 5});
    EXPECT_TRUE(PumpUntil([&] { return tip.IsWindowVisible() == FALSE; }));
}
