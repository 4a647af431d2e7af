#include "YRect.h"

#include <gtest/gtest.h>

TEST(YRect, NormalizeOrdersEachPairOfSidesByItself)
{
    YRect rect(30, 5, 10, 20);
    EXPECT_EQ(rect.GetWidth(), -20);
    EXPECT_TRUE(rect.IsEmpty());
    rect.Normalize();
    EXPECT_EQ(rect, YRect(10, 5, 30, 20));
    EXPECT_EQ(rect.GetWidth(), 20);
    EXPECT_EQ(rect.GetHeight(), 15);
}

TEST(YRect, GoesToTheFrameworksRectangleAndBack)
{
    const YRect rect(-1, 2, 3, 4);
    const CRect framework = rect;
    EXPECT_EQ(framework, CRect(-1, 2, 3, 4));
    EXPECT_EQ(YRect(framework), rect);
    EXPECT_EQ(YPoint(CPoint(5, 6)), YPoint(5, 6));
    EXPECT_EQ(static_cast<CRect>(YRectF(-1.9, 0.9, 1.9, 2.0)), CRect(-1, 0, 1, 2));
}
