#include "YAddressIPv6.h"

#include "YWinsock.h"

#include <algorithm>
#include <string>

YAddressIPv6::~YAddressIPv6() = default;

bool YAddressIPv6::IsLoopback() const
{
    return valid && std::ranges::equal(GetBytes(), in6addr_loopback.s6_addr);
}

bool YAddressIPv6::SetFromText(const char* text, unsigned short port)
{
    valid = false;
    // An empty text would be this computer's own name.
    if (!text || *text == '\0') {
        return false;
    }
    const YUniqueAddressInfo found = YFindAddressInfo(text, nullptr, AI_NUMERICHOST, AF_INET6);
    if (found && SetFromSockAddr(found.Get()->ai_addr, static_cast<int>(found.Get()->ai_addrlen))) {
        SetPort(port);
    }
    return valid;
}

YUnicodeString YAddressIPv6::ToString(bool withPort) const
{
    constexpr DWORD longestService = 32;
    wchar_t host[NI_MAXHOST];
    wchar_t service[longestService];
    const int flags = withPort ? NI_NUMERICHOST | NI_NUMERICSERV : NI_NUMERICHOST;
    if (!valid || !YStartWinsock() ||
        ::GetNameInfoW(reinterpret_cast<const sockaddr*>(&socketAddress), sizeof socketAddress,
                       host, NI_MAXHOST, withPort ? service : nullptr,
                       withPort ? longestService : 0, flags) != 0) {
        return {};
    }
    try {
        return withPort ? YUnicodeString(std::wstring(L"[") + host + L"]:" + service) : host;
    } catch (const std::exception&) {
        return {};
    }
}

// The carry runs from the last byte to the left. One that runs out of the first leaves that byte
// as it is, all others zero: whoever walks a range has to stop at false anyway, and a look ahead
// would cost every step.
bool YAddressIPv6::Increment()
{
    if (!valid) {
        return false;
    }
    const std::span<unsigned char> bytes = GetBytes();
    for (std::size_t i = bytes.size(); i-- > 0;) {
        if (bytes[i] != 0xFF) {
            ++bytes[i];
            return true;
        }
        if (i > 0) {
            bytes[i] = 0;
        }
    }
    return false;
}
