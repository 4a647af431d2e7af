// ws2tcpip.h: addresses as wide text, which has ASCII characters only, for building natively.
#pragma once

#include <winsock2.h>

inline const wchar_t* InetNtopW(int family, const void* address, wchar_t* text, std::size_t length)
{
    char narrow[INET6_ADDRSTRLEN];
    if (!::inet_ntop(family, address, narrow, sizeof narrow) || std::strlen(narrow) >= length) {
        return nullptr;
    }
    MultiByteToWideChar(CP_ACP, 0, narrow, static_cast<int>(std::strlen(narrow)) + 1, text,
                        static_cast<int>(length));
    return text;
}

inline int GetNameInfoW(const sockaddr* address, socklen_t size, wchar_t* host, DWORD hostLength,
                        wchar_t* service, DWORD serviceLength, int flags)
{
    char narrowHost[NI_MAXHOST];
    char narrowService[NI_MAXSERV];
    const int code =
        ::getnameinfo(address, size, narrowHost, sizeof narrowHost,
                      service ? narrowService : nullptr, service ? sizeof narrowService : 0, flags);
    if (code == 0) {
        MultiByteToWideChar(CP_ACP, 0, narrowHost, static_cast<int>(std::strlen(narrowHost)) + 1,
                            host, static_cast<int>(hostLength));
    }
    if (code == 0 && service) {
        MultiByteToWideChar(CP_ACP, 0, narrowService,
                            static_cast<int>(std::strlen(narrowService)) + 1, service,
                            static_cast<int>(serviceLength));
    }
    return code;
}
