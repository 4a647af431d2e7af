#include "LineQueue.h"

#include <mutex>
#include <utility>

namespace {

// A wake that could not be posted (the window's message queue was full) is tried again.
constexpr DWORD retryTime = 250;  // milliseconds

}  // namespace

LineQueue::LineQueue(HWND readerWindow, UINT wakeMessage)
    : window(readerWindow), message(wakeMessage)
{
    full.reserve(most);
    empty.reserve(most);
}

std::unique_ptr<LineNews> LineQueue::GetEmpty()
{
    const std::lock_guard lock(mutex);
    while (!stopped) {
        if (!empty.empty()) {
            std::unique_ptr<LineNews> news = std::move(empty.back());
            empty.pop_back();
            return news;
        }
        if (made < most) {
            auto news = std::make_unique<LineNews>();
            ++made;
            return news;
        }
        WakeReader();
        changed.Wait(mutex, retryTime);
    }
    return nullptr;
}

void LineQueue::Put(std::unique_ptr<LineNews> news)
{
    const std::lock_guard lock(mutex);
    full.push_back(std::move(news));
    WakeReader();
}

void LineQueue::Wake()
{
    const std::lock_guard lock(mutex);
    WakeReader();
}

bool LineQueue::Sleep(DWORD milliseconds)
{
    const std::lock_guard lock(mutex);
    if (!full.empty()) {
        WakeReader();
    }
    while (!poked && !stopped && changed.Wait(mutex, milliseconds)) {}
    poked = false;
    return !stopped;
}

bool LineQueue::IsStopped() const
{
    const std::lock_guard lock(mutex);
    return stopped;
}

std::unique_ptr<LineNews> LineQueue::Take()
{
    const std::lock_guard lock(mutex);
    if (full.empty()) {
        wakePosted = false;
        return nullptr;
    }
    std::unique_ptr<LineNews> news = std::move(full.front());
    full.erase(full.begin());
    return news;
}

void LineQueue::GiveBack(std::unique_ptr<LineNews> news)
{
    news->lines.Clear();
    news->endsUnfinished = false;
    const std::lock_guard lock(mutex);
    empty.push_back(std::move(news));
    changed.Notify();
}

void LineQueue::Poke()
{
    const std::lock_guard lock(mutex);
    poked = true;
    changed.Notify();
}

void LineQueue::Stop()
{
    const std::lock_guard lock(mutex);
    stopped = true;
    changed.Notify();
}

void LineQueue::WakeReader()
{
    wakePosted = wakePosted || ::PostMessageW(window, message, 0, 0) != FALSE;
}
