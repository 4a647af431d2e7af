#include "YUniqueHandle.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

int closed = 0;

struct CountingTraits
{
    using Handle = int;
    static Handle Invalid() noexcept { return -1; }
    static void Close(Handle) noexcept
    {
        ++closed;
        ::SetLastError(ERROR_INVALID_HANDLE);
    }
};
using CountingHandle = YUniqueHandle<CountingTraits>;

}  // namespace

TEST(YUniqueHandle, ClosesOnceAndKeepsTheLastError)
{
    closed = 0;
    ::SetLastError(ERROR_FILE_NOT_FOUND);
    {
        CountingHandle first(1);
        CountingHandle second(std::move(first));
        EXPECT_FALSE(first);
        CountingHandle third(3);
        third = std::move(second);
        EXPECT_EQ(closed, 1);
        EXPECT_EQ(third.Get(), 1);
        third.Reset(4);
        EXPECT_EQ(closed, 2);
        CountingHandle fourth(5);
        EXPECT_EQ(fourth.Detach(), 5);
    }
    EXPECT_EQ(closed, 3);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
}
