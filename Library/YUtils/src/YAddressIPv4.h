// YAddressIPv4.h: an IPv4 endpoint.
#pragma once

#include "YAddressBase.h"

// New: 0.0.0.0, port 0, for a TCP stream; valid.
class COMMONUI_API YAddressIPv4 : public YAddressBase<YSockAddrIPv4>
{
public:
    YAddressIPv4() = default;

    bool IsLoopback() const override;
    using YAddressBase::SetFromText;
    bool SetFromText(const char* text, unsigned short port) override;
    YUnicodeString ToString(bool withPort) const override;
    bool Increment() override;

protected:
    ~YAddressIPv4() override;
};
