// SocketOperation.h: what a socket has been asked for, from the request to its answer.
#pragma once

#include "IBuffer.h"
#include "IHostnameResolver.h"
#include "IInternetAddress.h"
#include "ISocket.h"
#include "YUnknownPointer.h"

#include <list>

// 32 bits, as requests are told apart.
enum class SocketOperationKind : unsigned {
    Ordinary = 0,
    OutOfBand = 1,
    Datagram = 2,  // with the peer's address
};

// A request, and once it is finished its result. Everything is owned.
struct SocketOperation
{
    void* context = nullptr;
    SocketOperationKind kind = SocketOperationKind::Ordinary;
    YUnknownPointer<IBuffer> buffer = {};  // null but for reads and writes
    YUnknownPointer<IInternetAddress> address = {};  // the peer's
    YUnknownPointer<IInternetAddress> localAddress = {};  // of an accepted socket
    YUnknownPointer<ISocket> newSocket = {};
    YUnknownPointer<IHostnameResolverSink> resolverSink = {};
    bool isResolving = false;  // a connect that still waits for the addresses of its name
    unsigned error = 0;
    unsigned bytes = 0;
};

// First in, first out. Finishing moves the entry from one queue to another, without memory that
// could be missing then; an empty queue, of which a socket has nine, owns none.
using SocketQueue = std::list<SocketOperation>;
