// YWinsock.h: the library's own use of Winsock.
#pragma once

#include "YUniqueHandle.h"

#include <winsock2.h>
#include <ws2tcpip.h>

// Starts Winsock for this module when it is first needed. Never ended again: the system does that
// with the process, and a DLL has no safe moment of its own for it. False: there is no Winsock; the
// next call tries again. Any thread. A host that opens sockets starts Winsock itself as well.
bool YStartWinsock() noexcept;

// What a look-up answered.
struct YAddressInfoTraits
{
    using Handle = addrinfo*;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle list) noexcept { ::freeaddrinfo(list); }
};
using YUniqueAddressInfo = YUniqueHandle<YAddressInfoTraits>;

// Both texts may be null. Null: no answer. With AI_NUMERICHOST nobody is asked and nothing blocks.
YUniqueAddressInfo YFindAddressInfo(const char* host, const char* service, int flags,
                                    int family) noexcept;
