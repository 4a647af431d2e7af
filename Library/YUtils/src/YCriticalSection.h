// YCriticalSection.h: a lock that its thread may take again.
#pragma once

#include <windows.h>

#include <atomic>

// For what calls the host, or a host's class, while it is held, and may be called back. Owns
// nothing, unlike the locks of this tool chain's run time, which leave an event behind when two
// threads have met at them; so it needs no order of making among the other globals of a module.
class YCriticalSection
{
public:
    constexpr YCriticalSection() = default;
    YCriticalSection(const YCriticalSection&) = delete;
    YCriticalSection& operator=(const YCriticalSection&) = delete;

    // Named for std::lock_guard.
    void lock() noexcept
    {
        const DWORD self = ::GetCurrentThreadId();
        if (owner.load(std::memory_order_relaxed) != self) {
            ::AcquireSRWLockExclusive(&handle);
            owner.store(self, std::memory_order_relaxed);
        }
        ++depth;
    }
    void unlock() noexcept
    {
        if (--depth == 0) {
            owner.store(0, std::memory_order_relaxed);
            ::ReleaseSRWLockExclusive(&handle);
        }
    }

private:
    SRWLOCK handle = SRWLOCK_INIT;
    // The thread that holds the handle; 0: none. Only that thread ever finds itself here.
    std::atomic<DWORD> owner = 0;
    unsigned depth = 0;  // the owner's alone
};
