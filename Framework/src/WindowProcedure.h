// WindowProcedure.h: the way of a message from the system to the object of its window.
#pragma once

#include "afxwin.h"

class WindowProcedure
{
public:
    // The procedure of every window that has an object. Lets no exception out.
    static LRESULT CALLBACK Receive(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);

    // For a window whose object goes while our procedure stays: from now on that hands on to
    // `previous`, so that the window keeps its behaviour.
    static void LeaveInChain(HWND handle, WNDPROC previous);
    // For a new object of such a window, which takes that place again: once more on top, our
    // procedure would call itself. Null: the window is none such.
    static WNDPROC RejoinChain(HWND handle);
};

// The creation of a window between CreateEx and its first message. The object enters itself through
// a CBT hook: the only way that serves the system's own classes as well as ours, and gives the
// object each message from the first on.
class WindowCreation
{
public:
    explicit WindowCreation(CWnd& waiting);
    ~WindowCreation();
    WindowCreation(const WindowCreation&) = delete;
    WindowCreation& operator=(const WindowCreation&) = delete;

    bool IsReady() const { return hook != nullptr; }  // false: the system gave no hook
    HWND GetAttached() const { return attached; }  // null: no window has appeared

private:
    static LRESULT CALLBACK OnHook(int code, WPARAM wParam, LPARAM lParam);
    bool Attach(HWND handle) noexcept;

    CWnd& window;
    HWND attached = nullptr;
    HHOOK hook;
    WindowCreation* outer;  // the thread's creation in progress, when this one began
};
