// TestThread.h: a thread of a test's own.
#pragma once

#include "YUniqueHandle.h"

#include <process.h>

#include <functional>
#include <utility>

// Runs its work at once; the destructor waits for it. By the run time itself: a std::thread of this
// tool chain may leave a handle behind.
class TestThread
{
public:
    explicit TestThread(std::function<void()> body) : work(std::move(body))
    {
        thread.Reset(
            reinterpret_cast<HANDLE>(::_beginthreadex(nullptr, 0, &Enter, this, 0, nullptr)));
    }
    ~TestThread() { Join(); }
    TestThread(const TestThread&) = delete;
    TestThread& operator=(const TestThread&) = delete;

    void Join()
    {
        if (thread) {
            ::WaitForSingleObject(thread.Get(), INFINITE);
            thread.Reset();
        }
    }

private:
    static unsigned __stdcall Enter(void* self)
    {
        static_cast<TestThread*>(self)->work();
        return 0;
    }

    std::function<void()> work;
    YUniqueKernelHandle thread;
};
