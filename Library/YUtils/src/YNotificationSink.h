// YNotificationSink.h: a window of its own for an object that works on one thread.
#pragma once

#include "CommonUiApi.h"
#include "YReportMessageParams.h"

#include <atomic>

// Owns a message-only window. What any thread posts to it reaches OnNotify on the thread that made
// the window, while that thread pumps messages. Derive from it, call Create on the thread that is
// to do the work, and Destroy at the latest in the destructor of the class that has OnNotify: this
// class's own destructor comes too late for what OnNotify uses. Create, Destroy and destruction
// by one thread at a time. The order of the virtual operations is binary contract.
class COMMONUI_API YNotificationSink
{
public:
    YNotificationSink() = default;
    virtual ~YNotificationSink();
    YNotificationSink(const YNotificationSink&) = delete;
    YNotificationSink& operator=(const YNotificationSink&) = delete;

    // True: there is a window of the calling thread; one of another thread is destroyed first.
    // False: GetError() says why there is none.
    virtual bool Create();
    virtual bool CreateWindowNow();  // what Create does while there is no window
    // On the window's thread, or without a window, at once. From another thread it waits until that
    // thread has handled everything posted before, and only as long as that thread can: not for
    // one that has ended, and a moment where nothing can be posted to it. No OnNotify begins later.
    virtual void Destroy();

    bool HasWindow() const { return window != nullptr; }
    bool IsOwnThread() const;  // true, too, while there is no window
    // False: there is no window, or it takes no more messages. Any thread.
    bool Post(UINT message, WPARAM wParam, LPARAM lParam) const;
    // For another thread than the window's, when the window takes no more posts: does not wait
    // either, but is handled even while that thread sends a message itself.
    bool Send(UINT message, WPARAM wParam, LPARAM lParam) const;
    const YReportMessageParams& GetError() const { return error; }

protected:
    // A message from WM_USER on. May delete this object. What it throws ends here, unheard.
    virtual LRESULT OnNotify(UINT message, WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnTimer(UINT_PTR timer);  // 0; a timer of the window's
    // On the window's thread. Needs no room among the posts: comes as long as anything comes.
    bool StartTimer(UINT_PTR timer, UINT milliseconds) const;
    void StopTimer(UINT_PTR timer) const;
    virtual HWND GetParentWindow() const;  // HWND_MESSAGE: nobody sees or enumerates the window

private:
    static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) noexcept;
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

    YReportMessageParams error;
    std::atomic<HWND> window = nullptr;
    DWORD threadId = 0;  // of the window
};
