#include "YAddress.h"

#include "YAddressIPv4.h"
#include "YAddressIPv6.h"
#include "YUnknownPointer.h"
#include "YWinsock.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

// The shape only: the system has judged the numbers.
bool IsDottedQuad(const char* text)
{
    if (!IsDigit(*text)) {
        return false;
    }
    for (int i = 0; i < 3; ++i) {
        text = std::strchr(text, '.');
        if (!text || !IsDigit(*++text)) {
            return false;
        }
    }
    return std::all_of(text, text + std::strlen(text), IsDigit);
}

YUniqueAddressInfo FindNumeric(const char* host)
{
    if (!host || *host == '\0') {
        return YFindAddressInfo(nullptr, "0", AI_PASSIVE, AF_UNSPEC);
    }
    YUniqueAddressInfo found = YFindAddressInfo(host, nullptr, AI_NUMERICHOST, AF_UNSPEC);
    if (found && found.Get()->ai_family == AF_INET && !IsDottedQuad(host)) {
        found.Reset();
    }
    return found;
}

}  // namespace

IInternetAddress* MakeAddress(int family) noexcept
{
    switch (family) {
    case AF_INET: return new (std::nothrow) YAddressIPv4;
    case AF_INET6: return new (std::nothrow) YAddressIPv6;
    default: return nullptr;
    }
}

IInternetAddress* MakeAddressFromSockAddr(const sockaddr* address, int length) noexcept
{
    if (!address || length < int{sizeof address->sa_family}) {
        return nullptr;
    }
    auto made = YUnknownPointer<IInternetAddress>::Adopt(MakeAddress(address->sa_family));
    return made && made->SetFromSockAddr(address, length) ? made.Detach() : nullptr;
}

IInternetAddress* MakeNumericAddress(const char* host, unsigned short port) noexcept
{
    const YUniqueAddressInfo found = FindNumeric(host);
    if (!found) {
        return nullptr;
    }
    IInternetAddress* const made =
        MakeAddressFromSockAddr(found.Get()->ai_addr, static_cast<int>(found.Get()->ai_addrlen));
    if (made) {
        made->SetPort(port);
    }
    return made;
}
