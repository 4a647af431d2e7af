#include "YArray.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

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

TEST(YArray, ResizesExactlyAndKeepsWhatFits)
{
    YArray<std::string> texts(2);
    texts[0] = "a";
    texts[1] = "b";
    texts.Resize(3);
    EXPECT_EQ(texts[2], "");
    texts.Resize(1);
    EXPECT_EQ(texts.GetSize(), 1u);
    EXPECT_EQ(texts[0], "a");
    EXPECT_THROW(texts.Resize(0xFFFFFFFF), std::length_error);
    EXPECT_EQ(texts[0], "a");
}
