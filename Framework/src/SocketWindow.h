// SocketWindow.h: the hidden window through which a thread's sockets hear of their events.
#pragma once

#include "HandleMap.h"
#include "afxsock.h"

// One in every thread that has sockets attached; it goes with the last of them, or with the thread.
// Each attachment has a message number of its own, and the numbers go round in a ring: the system
// uses the handle of a closed socket again at once, but a notification that was under way at that
// time names the number of the old attachment, and reaches nobody.
// All operations speak of the calling thread's sockets and are safe where it has none.
class SocketWindow final : public HandleMapBase
{
public:
    // The number of the new attachment. 0: WSAENOBUFS; no number, window or memory was left.
    static UINT Add(CAsyncSocket& socket, SOCKET handle) noexcept;
    // Also where the attachment is another thread's, or only half made.
    static void Remove(const CAsyncSocket& socket, SOCKET handle, UINT message) noexcept;
    // Null: no socket of this thread.
    static CAsyncSocket* Find(SOCKET handle) noexcept;
    static HWND FindWindowOf(const CAsyncSocket& socket, UINT message) noexcept;

    ~SocketWindow() override;
    SocketWindow(const SocketWindow&) = delete;
    SocketWindow& operator=(const SocketWindow&) = delete;
    void DeleteTemporary() noexcept override {}  // every object is its maker's

private:
    SocketWindow();  // std::bad_alloc: the system gave no window
    static SocketWindow* FindOwn() noexcept;
    static SocketWindow& FindOrAdd();
    static LRESULT CALLBACK Receive(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);

    UINT TakeNumber();

    HWND window;
    UINT lastTaken;
    std::unordered_map<UINT, CAsyncSocket*> byNumber;
    std::unordered_map<SOCKET, CAsyncSocket*> byHandle;
};
