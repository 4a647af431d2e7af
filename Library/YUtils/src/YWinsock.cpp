#include "YWinsock.h"

#include <atomic>

bool YStartWinsock() noexcept
{
    // Two threads that meet here start it twice, which is harmless: starts are counted.
    static std::atomic<bool> started = false;
    if (!started) {
        WSADATA data;
        started = ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    return started;
}

YUniqueAddressInfo YFindAddressInfo(const char* host, const char* service, int flags,
                                    int family) noexcept
{
    addrinfo hints{};
    hints.ai_flags = flags;
    hints.ai_family = family;
    addrinfo* found = nullptr;
    if (!YStartWinsock() || ::getaddrinfo(host, service, &hints, &found) != 0) {
        found = nullptr;
    }
    return YUniqueAddressInfo(found);
}
