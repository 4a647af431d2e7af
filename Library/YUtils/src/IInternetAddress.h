// IInternetAddress.h: a network endpoint.
#pragma once

#include "YUnicodeString.h"

#include <windows.h>

#include <unknwn.h>

struct addrinfo;
struct sockaddr;

// An address of one family and a port. The library implements it (YAddressIPv4, YAddressIPv6) and
// hands it out, hosts hand it in; kept alive by its references. One thread at a time changes it. No
// exception leaves it. The order is binary contract.
//
// Valid once it holds an address: each Set... that fails leaves it invalid. An invalid address
// answers false, 0 or an empty text and takes no port; its kind (family, type, protocol) stays.
// `other` may be null, which equals nothing.
class IInternetAddress : public IUnknown
{
public:
    virtual bool IsValid() const = 0;
    // Both count ports, and the scopes of IPv6, only where both have one: 0 stands for any.
    // prefixBits past the end mean the whole address.
    virtual bool IsInSubnet(const IInternetAddress* other, unsigned prefixBits) const = 0;
    virtual bool Equals(const IInternetAddress* other) const = 0;
    virtual bool IsAny() const = 0;  // all zeros
    virtual bool IsLoopback() const = 0;  // 127.x.x.x, or ::1 alone

    // Only of its own family and in full length. The port comes along, and the scope of IPv6.
    virtual bool SetFromSockAddr(const sockaddr* address, int length) = 0;  // bytes
    virtual bool SetFromAddrInfo(const addrinfo* record) = 0;  // with type and protocol
    // Numeric text only: nobody is asked, nothing blocks. The scope of a link-local address may
    // follow it, "fe80::1%3".
    virtual bool SetFromText(const char* text, unsigned short port) = 0;
    virtual bool SetFromText(const wchar_t* text, unsigned short port) = 0;
    // 4 or 16 bytes in network order. The port stays.
    virtual bool SetRawAddress(const void* bytes, unsigned length) = 0;
    virtual void SetPort(unsigned short port) = 0;
    virtual unsigned short GetPort() const = 0;

    // Valid until the next change. False: null and 0.
    virtual bool GetRawAddress(const void** bytes, unsigned* length) const = 0;
    virtual bool GetSockAddr(const sockaddr** address, int* length) const = 0;
    virtual int GetAddressFamily() const = 0;  // AF_INET or AF_INET6
    virtual int GetSocketType() const = 0;
    virtual int GetProtocol() const = 0;

    // "192.0.2.5:22", "[::1]:22"; without the port "192.0.2.5", "::1". Empty: there is no text.
    virtual YUnicodeString ToString(bool withPort) const = 0;
    // To the next address in numeric order. False: this was the last one. IPv4 then stays at it;
    // IPv6 has carried through every byte but the first, which alone stays.
    virtual bool Increment() = 0;
    // By number, without port and scope. False for addresses of two families.
    virtual bool LessThan(const IInternetAddress* other) const = 0;
};
