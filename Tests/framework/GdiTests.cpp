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
