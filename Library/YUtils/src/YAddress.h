// YAddress.h: makes addresses of the right kind.
#pragma once

#include "CommonUiApi.h"

class IInternetAddress;
struct sockaddr;

// Each gives a new object, whose one reference the caller owns, or null: no such address, or no
// memory. Nothing blocks and no exception is thrown.

// AF_INET or AF_INET6; any other family has none.
COMMONUI_API IInternetAddress* MakeAddress(int family) noexcept;
COMMONUI_API IInternetAddress* MakeAddressFromSockAddr(const sockaddr* address,
                                                       int length) noexcept;  // bytes

// Of a host that is written as an address; an empty text (or null) is the address that a listener
// binds to all interfaces with. Of IPv4 only the full dotted quad counts: what else the system
// takes for an address (127.1) null sends to the resolver, as the name that the user typed.
COMMONUI_API IInternetAddress* MakeNumericAddress(const char* host, unsigned short port) noexcept;
