// LineQueue.h: batches of lines on their way from a worker to the user interface, and back.
#pragma once

#include "LineBatch.h"
#include "WorkerLock.h"

#include <windows.h>

#include <memory>
#include <vector>

// One delivery.
struct LineNews
{
    LineBatch lines;
    bool endsUnfinished = false;  // the last line is not complete: the next delivery replaces it
};

// At most `most` deliveries exist, so a worker that is faster than its reader waits, and what is
// on the way takes bounded memory. They go round: once warm, nothing is allocated.
// The reader's window is woken by one posted message, and not again before it has found the queue
// empty: a message for each delivery would starve its input and its painting.
// One worker, one reader, each on a thread of its own.
class LineQueue
{
public:
    static constexpr unsigned most = 8;

    LineQueue(HWND window, UINT message);
    LineQueue(const LineQueue&) = delete;
    LineQueue& operator=(const LineQueue&) = delete;

    // The worker's side. Waits while all are on their way; null: stopped.
    std::unique_ptr<LineNews> GetEmpty();
    void Put(std::unique_ptr<LineNews> news);
    // Tells the reader that something other than lines has changed.
    void Wake();
    // Sleeps until Poke, Stop or the end of the time. False: stopped.
    bool Sleep(DWORD milliseconds);
    bool IsStopped() const;

    // The reader's side. Null: there is none now, and the next one will wake the window.
    std::unique_ptr<LineNews> Take();
    void GiveBack(std::unique_ptr<LineNews> news);
    void Poke();
    void Stop();

private:
    void WakeReader();  // locked

    const HWND window;
    const UINT message;
    mutable WorkerLock mutex;  // guards all below
    WorkerCondition changed;
    std::vector<std::unique_ptr<LineNews>> full;  // the oldest first
    std::vector<std::unique_ptr<LineNews>> empty;
    unsigned made = 0;
    bool wakePosted = false;
    bool poked = false;
    bool stopped = false;
};
