// WorkerLock.h: what a worker and the user interface share is guarded by these.
#pragma once

#include <windows.h>

// The system's own lock and condition, which own nothing: a std::mutex of this tool chain's run
// time leaves an event and a block of memory behind when two threads have met at it.
class WorkerLock
{
public:
    WorkerLock() = default;
    WorkerLock(const WorkerLock&) = delete;
    WorkerLock& operator=(const WorkerLock&) = delete;

    // Named for std::lock_guard.
    void lock() { ::AcquireSRWLockExclusive(&handle); }
    void unlock() { ::ReleaseSRWLockExclusive(&handle); }

private:
    friend class WorkerCondition;

    SRWLOCK handle = SRWLOCK_INIT;
};

class WorkerCondition
{
public:
    WorkerCondition() = default;
    WorkerCondition(const WorkerCondition&) = delete;
    WorkerCondition& operator=(const WorkerCondition&) = delete;

    // Lets go of the lock while it waits; may return for no reason. False: the time is over.
    bool Wait(WorkerLock& lock, DWORD milliseconds)
    {
        return ::SleepConditionVariableSRW(&handle, &lock.handle, milliseconds, 0) != FALSE;
    }
    void Notify() { ::WakeConditionVariable(&handle); }

private:
    CONDITION_VARIABLE handle = CONDITION_VARIABLE_INIT;
};
