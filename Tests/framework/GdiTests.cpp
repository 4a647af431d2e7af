// GDI objects and device contexts: who owns a handle, which object stands for it.
#include "afxwin.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr COLORREF red = RGB(255, 0, 0);
constexpr COLORREF green = RGB(0, 255, 0);

}  // namespace

TEST(CGdiObjectTest, MapsEndWithTheirThreadAndLeaveHandlesAlone)
{
    const HPEN lent = ::CreatePen(PS_SOLID, 1, red);
    CPen pen(PS_SOLID, 1, green);
    std::thread([&] {
        CPen::FromHandle(lent);
        EXPECT_NE(CPen::FromHandle(pen), &pen);  // another thread's object is not this one's
        CPen own(PS_SOLID, 1, red);
    }).join();
    EXPECT_NE(::GetObjectType(lent), 0u);
    EXPECT_EQ(CPen::FromHandle(pen), &pen);
    ::DeleteObject(lent);
}

TEST(CGdiObjectTest, SelectionGivesBackWhatWasThere)
{
    CClientDC dc(nullptr);
    CPen first(PS_SOLID, 1, red);
    CPen second(PS_SOLID, 1, green);
    CPen* stock = dc.SelectObject(&first);
    ASSERT_NE(stock, nullptr);
    EXPECT_EQ(dc.SelectObject(&second), &first);
    EXPECT_EQ(dc.SelectStockObject(WHITE_PEN), &second);
    CFont empty;
    EXPECT_EQ(dc.SelectObject(&empty), nullptr);
    EXPECT_NE(dc.SelectObject(stock), nullptr);
}

TEST(CGdiObjectTest, WindowContextsThrowWhereThereIsNoWindow)
{
    CWnd gone;
    gone.m_hWnd = reinterpret_cast<HWND>(0xBAD0);
    EXPECT_THROW(CClientDC{&gone}, CResourceException*);
    EXPECT_THROW(CWindowDC{&gone}, CResourceException*);
    EXPECT_THROW(CPaintDC{&gone}, CResourceException*);
    gone.m_hWnd = nullptr;
}
