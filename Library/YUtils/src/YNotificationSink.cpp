#include "YNotificationSink.h"

#include "CallGuarded.h"
#include "YModule.h"
#include "YUniqueHandle.h"

#include <afxwin.h>

namespace {

constexpr wchar_t className[] = L"Notification YNotificationSink";
constexpr int extraBytes = 4;
// How long a thread to which nothing can be posted may take, and how often the window of one that
// does not answer is looked for.
constexpr UINT patience = 1000;  // milliseconds

// Once; a failure is tried again by whoever needs a window next. Two threads that meet here both
// succeed, the second one because the class exists.
DWORD RegisterWindowClass(WNDPROC procedure)
{
    static std::atomic<bool> registered = false;
    if (registered) {
        return ERROR_SUCCESS;
    }
    WNDCLASSW description{};
    description.style = CS_VREDRAW;
    description.lpfnWndProc = procedure;
    description.cbWndExtra = extraBytes;
    description.hInstance = YGetLibraryModule();
    description.lpszClassName = className;
    if (!::RegisterClassW(&description) && ::GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        return ::GetLastError();
    }
    registered = true;
    return ERROR_SUCCESS;
}

void SetSink(HWND window, YNotificationSink* sink)
{
    ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(sink));
}

YNotificationSink* GetSink(HWND window)
{
    return reinterpret_cast<YNotificationSink*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
}

// The event of a close that was posted goes with the message, and both ends use it: where the
// message may yet be handled the event is left open rather than have a stranger signalled.
void WaitForClose(HWND window, HANDLE thread, YUniqueKernelHandle& closed)
{
    const HANDLE ends[] = {closed.Get(), thread};
    const DWORD count = thread ? 2 : 1;
    DWORD result = WAIT_TIMEOUT;
    bool isGone = false;
    while (result == WAIT_TIMEOUT && !isGone) {
        isGone = !::IsWindow(window);  // together with its messages, if its thread destroyed it
        result = ::WaitForMultipleObjects(count, ends, FALSE, patience);
    }
    if (result == WAIT_TIMEOUT) {
        static_cast<void>(closed.Detach());
    }
}

// What cannot be posted may still be sent. A thread that does not take that in time keeps the
// window until it ends, without the sink.
void CloseWithoutPost(HWND window)
{
    DWORD_PTR result = 0;
    if (!::SendMessageTimeoutW(window, WM_CLOSE, reinterpret_cast<WPARAM>(window), 0, SMTO_NORMAL,
                               patience, &result)) {
        SetSink(window, nullptr);
    }
}

void CloseFromOtherThread(HWND window, DWORD threadId)
{
    // Before the post: once the window is closed its thread may end, and its id serve another.
    const YUniqueKernelHandle thread(::OpenThread(SYNCHRONIZE, FALSE, threadId));
    YUniqueKernelHandle closed(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (closed && ::PostMessageW(window, WM_CLOSE, reinterpret_cast<WPARAM>(window),
                                 reinterpret_cast<LPARAM>(closed.Get()))) {
        WaitForClose(window, thread.Get(), closed);
    } else {
        CloseWithoutPost(window);
    }
}

// A close that names its window comes from Destroy; others are not for this window to obey.
void Close(HWND window, WPARAM wParam, LPARAM lParam)
{
    if (reinterpret_cast<HWND>(wParam) != window) {
        return;
    }
    SetSink(window, nullptr);
    ::DestroyWindow(window);
    if (lParam) {
        ::SetEvent(reinterpret_cast<HANDLE>(lParam));
    }
}

}  // namespace

YNotificationSink::~YNotificationSink()
{
    YNotificationSink::Destroy();
}

bool YNotificationSink::Create()
{
    if (HasWindow()) {
        if (threadId == ::GetCurrentThreadId()) {
            return true;
        }
        Destroy();
    }
    return CreateWindowNow();
}

bool YNotificationSink::CreateWindowNow()
{
    if (const DWORD failure = RegisterWindowClass(&WindowProcedure)) {
        error.SetErrorCode(failure);
        return false;
    }
    const HWND created = ::CreateWindowExW(0, className, className, WS_OVERLAPPEDWINDOW,
                                           CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, GetParentWindow(),
                                           nullptr, YGetLibraryModule(), nullptr);
    if (!created) {
        error.SetErrorCode(::GetLastError());
        return false;
    }
    SetSink(created, this);
    threadId = ::GetCurrentThreadId();
    window = created;
    return true;
}

void YNotificationSink::Destroy()
{
    const HWND last = window.exchange(nullptr);
    if (!last) {
        return;
    }
    if (threadId != ::GetCurrentThreadId()) {
        CloseFromOtherThread(last, threadId);
        return;
    }
    SetSink(last, nullptr);
    ::DestroyWindow(last);
}

bool YNotificationSink::IsOwnThread() const
{
    return !HasWindow() || threadId == ::GetCurrentThreadId();
}

bool YNotificationSink::Post(UINT message, WPARAM wParam, LPARAM lParam) const
{
    const HWND target = window;
    return target && ::PostMessageW(target, message, wParam, lParam);  // null would be this thread
}

bool YNotificationSink::Send(UINT message, WPARAM wParam, LPARAM lParam) const
{
    const HWND target = window;
    return target && ::SendNotifyMessageW(target, message, wParam, lParam);
}

LRESULT YNotificationSink::OnNotify(UINT, WPARAM, LPARAM)
{
    return 0;
}

LRESULT YNotificationSink::OnTimer(UINT_PTR)
{
    return 0;
}

bool YNotificationSink::StartTimer(UINT_PTR timer, UINT milliseconds) const
{
    return HasWindow() && ::SetTimer(window, timer, milliseconds, nullptr) != 0;
}

void YNotificationSink::StopTimer(UINT_PTR timer) const
{
    if (HasWindow()) {
        ::KillTimer(window, timer);
    }
}

HWND YNotificationSink::GetParentWindow() const
{
    return HWND_MESSAGE;
}

// Touches nothing of the sink behind its handler, which may have deleted it.
LRESULT CALLBACK YNotificationSink::WindowProcedure(HWND window, UINT message, WPARAM wParam,
                                                    LPARAM lParam) noexcept
{
    YNotificationSink* const sink = GetSink(window);
    return CallGuarded([&]() -> LRESULT {
        if (message == WM_CLOSE) {
            Close(window, wParam, lParam);
            return 0;
        }
        if (message == WM_TIMER || message >= WM_USER) {
            return sink ? sink->HandleMessage(message, wParam, lParam) : 0;
        }
        return ::DefWindowProcW(window, message, wParam, lParam);
    });
}

LRESULT YNotificationSink::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return message == WM_TIMER ? OnTimer(wParam) : OnNotify(message, wParam, lParam);
}
