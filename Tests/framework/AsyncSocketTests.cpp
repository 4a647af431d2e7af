// Sockets over the loopback: who is told what, and what a callback may do to its socket.
#include "support/ImportHook.h"
#include "support/Input.h"

#include <afxsock.h>
#include <afxwin.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

using Events = std::vector<std::pair<int, int>>;  // FD_..., error

// Notes its events, then does what its test says.
class Probe : public CAsyncSocket
{
public:
    bool WaitFor(int event) const
    {
        return PumpUntil([&] { return !seen.empty() && seen.back().first == event; });
    }

    Events seen;
    std::function<void(int event)> onEvent = [](int) {};

private:
    void OnReceive(int error) override { Note(FD_READ, error); }
    void OnSend(int error) override { Note(FD_WRITE, error); }
    void OnOutOfBandData(int error) override { Note(FD_OOB, error); }
    void OnAccept(int error) override { Note(FD_ACCEPT, error); }
    void OnConnect(int error) override { Note(FD_CONNECT, error); }
    void OnClose(int error) override { Note(FD_CLOSE, error); }

    void Note(int event, int error)
    {
        seen.emplace_back(event, error);
        const auto work = onEvent;  // the socket may go meanwhile
        work(event);
    }
};

class AsyncSocketTest : public testing::TestWithParam<int>  // a family
{
protected:
    static void SetUpTestSuite() { ASSERT_TRUE(AfxSocketInit()); }
    ~AsyncSocketTest() override { EXPECT_EQ(FindWindow(), nullptr); }

    static HWND FindWindow()
    {
        return ::FindWindowExW(HWND_MESSAGE, nullptr, L"CommonFrameworkSockets", nullptr);
    }
    // As the system notifies; the first attachment of a thread has WM_USER, the next one the next.
    static void Notify(UINT number, SOCKET handle, int event, int error = 0)
    {
        ::SendMessageW(FindWindow(), number, handle, WSAMAKESELECTREPLY(event, error));
    }
    static void Bind(Probe& socket, int type, long events, CString& address, UINT& port)
    {
        const LPCWSTR loopback = GetParam() == AF_INET ? L"127.0.0.1" : L"::1";
        ASSERT_TRUE(socket.Socket(type, events, 0, GetParam()) && socket.Bind(0, loopback));
        EXPECT_TRUE(socket.GetSockName(address, port) && address == loopback);
    }
};

TEST_P(AsyncSocketTest, ConnectsAndTalksBothWays)
{
    Probe listener, client, server;
    CString address, peer;
    UINT port = 0, clientPort = 0, peerPort = 0;
    Bind(listener, SOCK_STREAM, FD_ACCEPT | FD_READ | FD_CLOSE, address, port);
    ASSERT_TRUE(listener.Listen());
    Bind(client, SOCK_STREAM, FD_READ | FD_CONNECT | FD_CLOSE, address, clientPort);
    EXPECT_FALSE(client.Connect(address, port));
    EXPECT_EQ(CAsyncSocket::GetLastError(), WSAEWOULDBLOCK);
    ASSERT_TRUE(listener.WaitFor(FD_ACCEPT) && client.WaitFor(FD_CONNECT));
#ifndef _DEBUG
    EXPECT_FALSE(listener.Accept(client));
    EXPECT_EQ(CAsyncSocket::GetLastError(), WSAEISCONN);
#endif
    ASSERT_TRUE(listener.Accept(server) && server.GetPeerName(peer, peerPort));
    EXPECT_EQ(std::pair(peer, peerPort), std::pair(address, clientPort));

    for (const auto& [from, to] : {std::pair(&client, &server), std::pair(&server, &client)}) {
        char received = 0;
        EXPECT_EQ(from->Send("x", 1), 1);
        EXPECT_TRUE(to->WaitFor(FD_READ));
        EXPECT_EQ(to->Receive(&received, 1), 1);
    }
    server.onEvent = [&](int) { server.Close(); };
    EXPECT_TRUE(client.ShutDown() && server.WaitFor(FD_CLOSE) && client.WaitFor(FD_CLOSE));
    EXPECT_EQ(listener.seen, (Events{{FD_ACCEPT, 0}}));
    EXPECT_EQ(client.seen, (Events{{FD_CONNECT, 0}, {FD_READ, 0}, {FD_CLOSE, 0}}));
    EXPECT_EQ(server.seen, (Events{{FD_READ, 0}, {FD_CLOSE, 0}}));
}

INSTANTIATE_TEST_SUITE_P(Families, AsyncSocketTest, testing::Values(AF_INET, AF_INET6));

TEST_F(AsyncSocketTest, NotificationReachesItsOwnerOnly)
{
    Probe first, second, other;
    ASSERT_TRUE(first.Create(0, SOCK_DGRAM, 0) && other.Create(0, SOCK_DGRAM, 0));
    ASSERT_TRUE(second.Attach(first.Detach(), 0));  // as if the handle had been used again
    Notify(WM_USER, second, FD_READ);
    Notify(WM_USER + 2, other, FD_READ);
    Notify(WM_USER + 3, second, FD_READ);
    ::SendMessageW(FindWindow(), WM_CLOSE, 0, 0);  // of a stranger
    const Events events{
        {FD_READ, 0},       {FD_WRITE, WSAENETDOWN},       {FD_OOB, 1},
        {FD_ACCEPT, 65535}, {FD_CONNECT, WSAECONNREFUSED}, {FD_CLOSE, WSAECONNRESET}};
    for (const auto& [event, error] : events) {
        Notify(WM_USER + 2, second, event, error);
    }
    EXPECT_EQ(second.seen, events);
    EXPECT_TRUE(first.seen.empty() && other.seen.empty());
}

TEST_F(AsyncSocketTest, CallbackMayRunALoopThatDeletesItsSocket)
{
    auto socket = std::make_unique<Probe>();
    ASSERT_TRUE(socket->Create(0, SOCK_DGRAM, 0));
    socket->onEvent = [&](int event) {
        if (event == FD_CLOSE) {
            socket.reset();
            AfxThrowUserException();
        }
        ::PostMessageW(FindWindow(), WM_USER, *socket, FD_CLOSE);
        EXPECT_TRUE(PumpUntil([&] { return socket == nullptr; }));
    };
    Notify(WM_USER, *socket, FD_READ);
    EXPECT_EQ(FindWindow(), nullptr);  // it was the last one
}

int WINAPI SelectAnything(SOCKET, HWND, u_int, long)
{
    return 0;
}

TEST_F(AsyncSocketTest, FailedAttachmentLeavesNothing)
{
    CAsyncSocket late;
    EXPECT_FALSE(late.Create(0, SOCK_STREAM, FD_READ, L"nowhere"));
    EXPECT_FALSE(late.Attach(0x7FFC));
    EXPECT_EQ(CAsyncSocket::GetLastError(), WSAENOTSOCK);
    EXPECT_EQ(late.m_hSocket, INVALID_SOCKET);

    const ImportHook hook(L"CommonFramework.dll", "ws2_32.dll", "WSAAsyncSelect", &SelectAnything);
    std::vector<CAsyncSocket> sockets(0x8000 - WM_USER);
    for (SOCKET handle = 0; CAsyncSocket & socket : sockets) {
        ASSERT_TRUE(socket.Attach(++handle));
    }
    EXPECT_FALSE(late.Attach(999'999));
    EXPECT_EQ(CAsyncSocket::GetLastError(), WSAENOBUFS);
    sockets[1].Detach();
    EXPECT_TRUE(late.Attach(999'999));
    EXPECT_EQ(CAsyncSocket::FromHandle(1000), &sockets[999]);
    late.Detach();
    for (CAsyncSocket& socket : sockets) {
        socket.Detach();
    }
}

TEST_F(AsyncSocketTest, OutlivesItsThreadWithoutWindow)
{
    Probe socket;
    CWinThread thread([](LPVOID p) -> UINT { return static_cast<Probe*>(p)->Create(); }, &socket);
    thread.m_bAutoDelete = FALSE;
    ASSERT_TRUE(thread.CreateThread());
    ASSERT_EQ(::WaitForSingleObject(thread, 10000), WAIT_OBJECT_0);
    EXPECT_EQ(FindWindow(), nullptr);
    EXPECT_NE(socket.m_hSocket, INVALID_SOCKET);
    EXPECT_FALSE(socket.AsyncSelect());
}

}  // namespace
