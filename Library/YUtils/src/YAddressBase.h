// YAddressBase.h: what the two kinds of address have in common.
#pragma once

#include "CommonUiApi.h"
#include "IInternetAddress.h"
#include "YUnknown.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <span>

// Where a socket address keeps its parts.
struct YSockAddrIPv4
{
    using Record = sockaddr_in;
    static constexpr int family = AF_INET;
    static auto& Address(auto& record) { return record.sin_addr; }
    static auto& Port(auto& record) { return record.sin_port; }
    static unsigned long GetScope(const Record&) { return 0; }
    static void SetScope(Record&, unsigned long) {}
};
struct YSockAddrIPv6
{
    using Record = sockaddr_in6;
    static constexpr int family = AF_INET6;
    static auto& Address(auto& record) { return record.sin6_addr; }
    static auto& Port(auto& record) { return record.sin6_port; }
    static unsigned long GetScope(const Record& record) { return record.sin6_scope_id; }
    static void SetScope(Record& record, unsigned long scope) { record.sin6_scope_id = scope; }
};

// Everything that does not depend on how an address is written or counted.
template <class Parts>
class COMMONUI_API YAddressBase : public YUnknown<IInternetAddress>
{
public:
    bool IsValid() const override { return valid; }
    bool IsInSubnet(const IInternetAddress* other, unsigned prefixBits) const override;
    bool Equals(const IInternetAddress* other) const override;
    bool IsAny() const override;

    bool SetFromSockAddr(const sockaddr* address, int length) override;
    bool SetFromAddrInfo(const addrinfo* record) override;
    using IInternetAddress::SetFromText;
    bool SetFromText(const wchar_t* text, unsigned short port) override;
    bool SetRawAddress(const void* bytes, unsigned length) override;
    void SetPort(unsigned short port) override;
    unsigned short GetPort() const override;

    bool GetRawAddress(const void** bytes, unsigned* length) const override;
    bool GetSockAddr(const sockaddr** address, int* length) const override;
    int GetAddressFamily() const override;
    int GetSocketType() const override { return socketType; }
    int GetProtocol() const override { return protocol; }
    bool LessThan(const IInternetAddress* other) const override;

protected:
    using Record = typename Parts::Record;

    YAddressBase() = default;
    ~YAddressBase() override = default;

    std::span<unsigned char> GetBytes();
    std::span<const unsigned char> GetBytes() const;

    bool valid = true;
    int socketType = SOCK_STREAM;
    int protocol = IPPROTO_TCP;
    Record socketAddress = MakeEmpty();  // port and address in network order

private:
    static Record MakeEmpty();
    // The socket address of a valid one of the same family, else null.
    static const Record* GetRecord(const IInternetAddress* address);
};

extern template class YAddressBase<YSockAddrIPv4>;
extern template class YAddressBase<YSockAddrIPv6>;
