// YAddressIPv6.h: an IPv6 endpoint.
#pragma once

#include "YAddressBase.h"

// New: ::, port 0, for a TCP stream; valid. An IPv4 address written in IPv6 (::ffff:192.0.2.5) is
// an IPv6 address like any other: it equals no IPv4 address, and ::ffff:127.0.0.1 is no loopback.
class COMMONUI_API YAddressIPv6 : public YAddressBase<YSockAddrIPv6>
{
public:
    YAddressIPv6() = default;

    bool IsLoopback() const override;
    using YAddressBase::SetFromText;
    bool SetFromText(const char* text, unsigned short port) override;
    YUnicodeString ToString(bool withPort) const override;
    bool Increment() override;

protected:
    ~YAddressIPv6() override;
};
