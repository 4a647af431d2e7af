#include "SocketWindow.h"

#include "FrameworkState.h"

#include <memory>
#include <new>
#include <utility>

namespace {

constexpr wchar_t className[] = L"CommonFrameworkSockets";
constexpr UINT firstNumber = WM_USER;
constexpr UINT lastNumber = 0x7FFF;  // what a window's own messages may be

bool IsNumber(UINT message)
{
    return message >= firstNumber && message <= lastNumber;
}

// Once is enough, but asking again tells the same and needs no memory of its own.
bool RegisterWindowClass(WNDPROC procedure)
{
    WNDCLASSW description{};
    description.lpfnWndProc = procedure;
    description.hInstance = ::AfxGetInstanceHandle();
    description.lpszClassName = className;
    return ::RegisterClassW(&description) != 0 || ::GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

template <class Map>
void EraseOwn(Map& map, typename Map::key_type key, const CAsyncSocket& socket) noexcept
{
    const auto found = map.find(key);
    if (found != map.end() && found->second == &socket) {
        map.erase(found);
    }
}

template <class Map>
CAsyncSocket* FindIn(const Map& map, typename Map::key_type key) noexcept
{
    const auto found = map.find(key);
    return found == map.end() ? nullptr : found->second;
}

}  // namespace

SocketWindow::SocketWindow() : window(nullptr), lastTaken(lastNumber)
{
    if (RegisterWindowClass(&Receive)) {
        window = ::CreateWindowExW(0, className, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                   ::AfxGetInstanceHandle(), nullptr);
    }
    if (window == nullptr) {
        throw std::bad_alloc();
    }
}

SocketWindow::~SocketWindow()
{
    ::DestroyWindow(window);
}

UINT SocketWindow::Add(CAsyncSocket& socket, SOCKET handle) noexcept
{
    UINT message = 0;
    try {
        SocketWindow& own = FindOrAdd();
        message = own.TakeNumber();
        own.byNumber[message] = &socket;
        // An entry that is there already is of a socket that was closed behind its object's back.
        own.byHandle[handle] = &socket;
        return message;
    } catch (const std::bad_alloc&) {
        Remove(socket, handle, message);
        ::WSASetLastError(WSAENOBUFS);
        return 0;
    }
}

void SocketWindow::Remove(const CAsyncSocket& socket, SOCKET handle, UINT message) noexcept
{
    SocketWindow* const own = FindOwn();
    if (own == nullptr) {
        return;
    }
    EraseOwn(own->byNumber, message, socket);
    EraseOwn(own->byHandle, handle, socket);
    if (own->byNumber.empty()) {
        RemoveHandleMap(HandleKind::Socket);
    }
}

CAsyncSocket* SocketWindow::Find(SOCKET handle) noexcept
{
    const SocketWindow* const own = FindOwn();
    return own == nullptr ? nullptr : FindIn(own->byHandle, handle);
}

HWND SocketWindow::FindWindowOf(const CAsyncSocket& socket, UINT message) noexcept
{
    const SocketWindow* const own = FindOwn();
    return own != nullptr && FindIn(own->byNumber, message) == &socket ? own->window : nullptr;
}

SocketWindow* SocketWindow::FindOwn() noexcept
{
    return static_cast<SocketWindow*>(FindHandleMap(HandleKind::Socket));
}

SocketWindow& SocketWindow::FindOrAdd()
{
    if (SocketWindow* const own = FindOwn()) {
        return *own;
    }
    std::unique_ptr<SocketWindow> made(new SocketWindow);
    return static_cast<SocketWindow&>(AddHandleMap(HandleKind::Socket, std::move(made)));
}

UINT SocketWindow::TakeNumber()
{
    if (byNumber.size() > lastNumber - firstNumber) {
        throw std::bad_alloc();
    }
    do {
        lastTaken = lastTaken == lastNumber ? firstNumber : lastTaken + 1;
    } while (byNumber.contains(lastTaken));
    return lastTaken;
}

LRESULT CALLBACK SocketWindow::Receive(HWND handle, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!IsNumber(message)) {
        // A close is of nobody who may.
        return message == WM_CLOSE ? 0 : ::DefWindowProcW(handle, message, wParam, lParam);
    }
    const SocketWindow* const own = FindOwn();
    CAsyncSocket* const socket = own == nullptr ? nullptr : FindIn(own->byNumber, message);
    if (socket == nullptr || socket->m_hSocket != wParam) {
        return 0;
    }
    try {
        socket->Notify(WSAGETSELECTEVENT(lParam), WSAGETSELECTERROR(lParam));
        return 0;
    } catch (...) {
        return AnswerForCurrentException(MSG{handle, message, wParam, lParam, 0, {}});
    }
}
