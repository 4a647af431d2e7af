// GDI objects and device contexts: who owns a handle, which object stands for it, what is drawn.
#include "afxwin.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr COLORREF red = RGB(255, 0, 0);
constexpr COLORREF green = RGB(0, 255, 0);
constexpr COLORREF white = RGB(255, 255, 255);

bool IsAlive(HGDIOBJ handle)
{
    return ::GetObjectType(handle) != 0;
}

// A bitmap to draw on, white, and its device context.
class Canvas
{
public:
    Canvas()
    {
        CClientDC screen(nullptr);
        dc.CreateCompatibleDC(&screen);
        bitmap.CreateCompatibleBitmap(&screen, 20, 20);
        former = dc.SelectObject(&bitmap);
        dc.FillSolidRect(0, 0, 20, 20, white);
    }
    ~Canvas() { dc.SelectObject(former); }

    CBitmap bitmap;  // outlives the context that it is selected in
    CDC dc;

private:
    CBitmap* former = nullptr;
};

// Each test ends with idle time, where temporary objects go.
class CGdiObjectTest : public testing::Test
{
protected:
    void TearDown() override { CWinThread().OnIdle(1); }
};

class CDCTest : public CGdiObjectTest
{};

}  // namespace

TEST_F(CGdiObjectTest, DeletesWhatItOwnsAndNothingElse)
{
    HGDIOBJ owned = nullptr;
    HGDIOBJ detached = nullptr;
    {
        CPen pen(PS_SOLID, 1, red);
        owned = pen;
        CBrush brush(red);
        detached = brush.Detach();
    }
    EXPECT_FALSE(IsAlive(owned));
    EXPECT_TRUE(IsAlive(detached));
    ::DeleteObject(detached);
}

TEST_F(CGdiObjectTest, TemporaryObjectsHaveTheClassOfTheirHandle)
{
    const HPEN pen = ::CreatePen(PS_SOLID, 1, red);
    CPen* temporary = CPen::FromHandle(pen);
    EXPECT_TRUE(temporary->IsKindOf(RUNTIME_CLASS(CPen)));
    EXPECT_EQ(CPen::FromHandle(pen), temporary);
    EXPECT_EQ(CGdiObject::FromHandle(nullptr), nullptr);
    ::DeleteObject(pen);
}

TEST_F(CGdiObjectTest, PermanentObjectComesBeforeATemporaryOne)
{
    const HPEN handle = ::CreatePen(PS_SOLID, 1, red);
    CPen* temporary = CPen::FromHandle(handle);
    CPen pen;
    ASSERT_TRUE(pen.Attach(handle));
    EXPECT_EQ(CPen::FromHandle(handle), &pen);
    EXPECT_EQ(temporary->GetSafeHandle(), handle);  // who holds it may go on using it

    temporary->Detach();
    EXPECT_EQ(CPen::FromHandle(handle), &pen);
    pen.Detach();
    EXPECT_NE(CPen::FromHandle(handle), &pen);
    EXPECT_EQ(CPen::FromHandle(handle)->GetSafeHandle(), handle);
    ::DeleteObject(handle);
}

TEST_F(CGdiObjectTest, MapsEndWithTheirThreadAndLeaveHandlesAlone)
{
    const HPEN lent = ::CreatePen(PS_SOLID, 1, red);
    CPen pen(PS_SOLID, 1, green);
    std::thread([&] {
        CPen::FromHandle(lent);
        EXPECT_NE(CPen::FromHandle(pen), &pen);  // another thread's object is not this one's
        CPen own(PS_SOLID, 1, red);
    }).join();
    EXPECT_TRUE(IsAlive(lent));
    EXPECT_EQ(CPen::FromHandle(pen), &pen);
    ::DeleteObject(lent);
}

#ifndef _DEBUG
TEST_F(CGdiObjectTest, TakesNoSecondHandle)
{
    CPen pen(PS_SOLID, 1, red);
    const HPEN first = pen;
    EXPECT_FALSE(pen.CreatePen(PS_SOLID, 1, green));
    EXPECT_EQ(static_cast<HPEN>(pen), first);
}
#endif

TEST_F(CGdiObjectTest, StockObjectsSurviveTheirHolders)
{
    {
        CFont font;
        ASSERT_TRUE(font.CreateStockObject(SYSTEM_FONT));
        CBrush brush;
        ASSERT_TRUE(brush.CreateSysColorBrush(COLOR_WINDOW));
    }
    EXPECT_TRUE(IsAlive(::GetStockObject(SYSTEM_FONT)));
    EXPECT_TRUE(IsAlive(::GetSysColorBrush(COLOR_WINDOW)));
}

TEST_F(CGdiObjectTest, FailedCreationLeavesTheObjectEmpty)
{
    CBitmap bitmap;
    EXPECT_FALSE(bitmap.LoadBitmap(L"no such bitmap"));
    EXPECT_EQ(bitmap.GetSafeHandle(), nullptr);
    EXPECT_FALSE(bitmap.DeleteObject());
    EXPECT_FALSE(bitmap.Attach(nullptr));
}

TEST(CFontTest, TellsWhatItWasMadeFrom)
{
    LOGFONT asked{};
    asked.lfHeight = -13;
    asked.lfWeight = FW_BOLD;
    ::lstrcpynW(asked.lfFaceName, L"Courier New", LF_FACESIZE);
    CFont font;
    ASSERT_TRUE(font.CreateFontIndirect(&asked));
    LOGFONT told{};
    EXPECT_NE(font.GetLogFont(&told), 0);
    EXPECT_EQ(told.lfHeight, -13);
    EXPECT_EQ(told.lfWeight, FW_BOLD);
    EXPECT_STREQ(told.lfFaceName, L"Courier New");
}

TEST(CRgnTest, Combines)
{
    CRgn left, right, both;
    ASSERT_TRUE(left.CreateRectRgn(0, 0, 5, 5));
    ASSERT_TRUE(right.CreateRectRgn(5, 0, 9, 5));
    ASSERT_TRUE(both.CreateRectRgn(0, 0, 0, 0));
    EXPECT_EQ(both.CombineRgn(&left, &right, RGN_OR), SIMPLEREGION);
    CRect box;
    both.GetRgnBox(&box);
    EXPECT_EQ(box, CRect(0, 0, 9, 5));
    EXPECT_EQ(both.CombineRgn(&left, nullptr, RGN_COPY), SIMPLEREGION);
    EXPECT_FALSE(both.PtInRegion(CPoint(6, 1)));
}

TEST_F(CDCTest, SelectionGivesBackWhatWasThere)
{
    Canvas canvas;
    CPen first(PS_SOLID, 1, red);
    CPen second(PS_SOLID, 1, green);
    CPen* stock = canvas.dc.SelectObject(&first);
    ASSERT_NE(stock, nullptr);
    EXPECT_EQ(canvas.dc.SelectObject(&second), &first);
    EXPECT_EQ(canvas.dc.SelectStockObject(WHITE_PEN), &second);
    CFont empty;
    EXPECT_EQ(canvas.dc.SelectObject(&empty), nullptr);
    EXPECT_NE(canvas.dc.SelectObject(stock), nullptr);
}

TEST_F(CDCTest, FillsAndFramesExactly)
{
    Canvas canvas;
    canvas.dc.SetBkColor(green);
    canvas.dc.FillSolidRect(2, 3, 4, 5, red);
    EXPECT_EQ(canvas.dc.GetBkColor(), green);
    EXPECT_EQ(canvas.dc.GetPixel(2, 3), red);
    EXPECT_EQ(canvas.dc.GetPixel(5, 7), red);
    EXPECT_EQ(canvas.dc.GetPixel(6, 7), white);
    EXPECT_EQ(canvas.dc.GetPixel(5, 8), white);

    const CRect frame(10, 10, 16, 16);
    canvas.dc.Draw3dRect(frame, red, green);
    EXPECT_EQ(canvas.dc.GetPixel(10, 10), red);
    EXPECT_EQ(canvas.dc.GetPixel(14, 10), red);
    EXPECT_EQ(canvas.dc.GetPixel(15, 10), green);
    EXPECT_EQ(canvas.dc.GetPixel(10, 14), red);
    EXPECT_EQ(canvas.dc.GetPixel(10, 15), green);
    EXPECT_EQ(canvas.dc.GetPixel(11, 11), white);
}

TEST_F(CDCTest, MovesOriginAndRestoresState)
{
    Canvas canvas;
    const int saved = canvas.dc.SaveDC();
    EXPECT_EQ(canvas.dc.SetViewportOrg(3, 4), CPoint(0, 0));
    EXPECT_EQ(canvas.dc.SetViewportOrg(CPoint(5, 5)), CPoint(3, 4));
    canvas.dc.SetPixel(0, 0, red);
    EXPECT_EQ(canvas.dc.MoveTo(1, 2), CPoint(0, 0));
    EXPECT_EQ(canvas.dc.MoveTo(0, 0), CPoint(1, 2));
    ASSERT_TRUE(canvas.dc.RestoreDC(saved));
    EXPECT_EQ(canvas.dc.GetViewportOrg(), CPoint(0, 0));
    EXPECT_EQ(canvas.dc.GetPixel(5, 5), red);
}

TEST_F(CDCTest, CopiesFromAnotherContext)
{
    Canvas source;
    Canvas target;
    source.dc.FillSolidRect(0, 0, 5, 5, red);
    EXPECT_TRUE(target.dc.BitBlt(10, 10, 5, 5, &source.dc, 0, 0, SRCCOPY));
    EXPECT_EQ(target.dc.GetPixel(14, 14), red);
    EXPECT_TRUE(target.dc.StretchBlt(0, 0, 10, 10, &source.dc, 0, 0, 5, 5, SRCCOPY));
    EXPECT_EQ(target.dc.GetPixel(9, 9), red);
}

TEST_F(CDCTest, WindowContextsThrowWhereThereIsNoWindow)
{
    CWnd gone;
    gone.m_hWnd = reinterpret_cast<HWND>(0xBAD0);
    EXPECT_THROW(CClientDC{&gone}, CResourceException*);
    EXPECT_THROW(CWindowDC{&gone}, CResourceException*);
    EXPECT_THROW(CPaintDC{&gone}, CResourceException*);
    gone.m_hWnd = nullptr;
}

TEST_F(CDCTest, ClientContextGivesBackItsHandle)
{
    CClientDC screen(nullptr);
    EXPECT_EQ(CDC::FromHandle(screen), &screen);
    EXPECT_GT(screen.GetDeviceCaps(LOGPIXELSY), 0);
    EXPECT_FALSE(screen.IsPrinting());
}
