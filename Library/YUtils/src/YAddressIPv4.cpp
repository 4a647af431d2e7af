#include "YAddressIPv4.h"

#include "YFormatMessage.h"

YAddressIPv4::~YAddressIPv4() = default;

bool YAddressIPv4::IsLoopback() const
{
    return valid && GetBytes().front() == 127;
}

bool YAddressIPv4::SetFromText(const char* text, unsigned short port)
{
    in_addr parsed{};
    valid = text && ::inet_pton(AF_INET, text, &parsed) == 1;
    if (valid) {
        socketAddress.sin_addr = parsed;
        SetPort(port);
    }
    return valid;
}

YUnicodeString YAddressIPv4::ToString(bool withPort) const
{
    wchar_t host[INET_ADDRSTRLEN];
    if (!valid || !::InetNtopW(AF_INET, &socketAddress.sin_addr, host, INET_ADDRSTRLEN)) {
        return {};
    }
    try {
        return withPort ? YUnicodeString(YFormatText(L"%1:%2!hu!", host, GetPort())) : host;
    } catch (const std::exception&) {
        return {};
    }
}

bool YAddressIPv4::Increment()
{
    const unsigned long current = ::ntohl(socketAddress.sin_addr.s_addr);
    if (!valid || current == INADDR_BROADCAST) {
        return false;
    }
    socketAddress.sin_addr.s_addr = ::htonl(current + 1);
    return true;
}
