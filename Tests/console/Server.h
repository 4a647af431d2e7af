// Server.h: a host to talk to, of the test's own.
#pragma once

#include "Peer.h"
#include "support/TestThread.h"

#include <gtest/gtest.h>
#include <winsock2.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>

// Accepts one connection after another and talks to each, on a thread of its own.
class Server
{
public:
    Server(int conversations, std::function<void(SOCKET)> talk)
    {
        WSADATA data;
        ::WSAStartup(MAKEWORD(2, 2), &data);
        listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{AF_INET, 0, {}, {}};
        int length = sizeof address;
        address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), length), 0);
        ::listen(listener, 5);
        ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
        peer = {L"127.0.0.1", ::ntohs(address.sin_port)};
        thread.emplace([this, conversations, talk] {
            for (int i = 0; i < conversations; ++i) {
                const SOCKET accepted = ::accept(listener, nullptr, nullptr);
                talk(accepted);
                ::closesocket(accepted);
            }
        });
    }
    ~Server()
    {
        thread.reset();
        ::closesocket(listener);
    }

    Peer peer;

private:
    SOCKET listener;
    std::optional<TestThread> thread;
};

inline void Put(SOCKET socket, const std::string& text)
{
    ::send(socket, text.data(), static_cast<int>(text.size()), 0);
}

// What has come; empty at the end.
inline std::string Get(SOCKET socket)
{
    std::string bytes(1 << 16, 0);
    bytes.resize(std::max(::recv(socket, bytes.data(), 1 << 16, 0), 0));
    return bytes;
}
