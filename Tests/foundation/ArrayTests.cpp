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

// The library throws it, a host catches it: by any of its names, whatever the element.
TEST(YArray, OneExceptionForAllArrays)
{
    YArray<std::string> texts;
    EXPECT_THROW(texts[0], std::out_of_range);
    try {
        texts[0] = "x";
        FAIL();
    } catch (const YArray<int>::OutOfRange& error) {
        EXPECT_STREQ(error.what(), "YArray: index out of range");
    }
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

TEST(YArray, InsertsAndRemovesInPlace)
{
    YArray<int> numbers;
    numbers.Add(1);
    numbers.Add(3);
    numbers.InsertAt(1, 2);
    numbers.InsertAt(3, 4);
    numbers.RemoveAt(0);
    EXPECT_EQ(std::vector<int>(numbers.begin(), numbers.end()), (std::vector<int>{2, 3, 4}));
    numbers.RemoveAll();
    EXPECT_TRUE(numbers.IsEmpty());
}
