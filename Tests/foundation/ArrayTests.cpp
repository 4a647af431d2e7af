#include "YArray.h"

#include <gtest/gtest.h>

TEST(YArray, RefusesEveryIndexPastTheEnd)
{
    YArray<int> numbers;
    const YArray<int>& constant = numbers;
    EXPECT_THROW(numbers[0], YArray<int>::OutOfRange);
    EXPECT_THROW(numbers.RemoveAt(0), YArrayOutOfRange);
    EXPECT_THROW(numbers.InsertAt(1, 7), YArrayOutOfRange);
    numbers.Add(1);
    EXPECT_EQ(numbers[0], 1);
    EXPECT_THROW(numbers[1], YArrayOutOfRange);
    EXPECT_THROW(constant[0xFFFFFFFF], YArrayOutOfRange);
}
