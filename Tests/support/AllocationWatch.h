// AllocationWatch.h: the largest block that anybody asks operator new for.
#pragma once

#include "support/ImportHook.h"

#include <algorithm>
#include <cstddef>

// Watches while it lives, one at a time: every operator new of every module of ours is a call of
// malloc by the C++ run time.
class AllocationWatch
{
public:
    AllocationWatch()
    {
        original = hook.Original<void*(std::size_t)>();
        largest = 0;
    }
    std::size_t GetLargest() const { return largest; }

private:
    static void* Watch(std::size_t size)
    {
        largest = std::max(largest, size);
        return original(size);
    }

    static inline std::size_t largest;
    static inline void* (*original)(std::size_t);
    const ImportHook hook{L"libstdc++-6.dll", "msvcrt.dll", "malloc", &Watch};
};
