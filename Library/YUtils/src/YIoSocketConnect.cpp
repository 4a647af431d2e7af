// Connects and accepts of YIoSocket.
#include "CallGuarded.h"
#include "HostServices.h"
#include "YAddress.h"
#include "YIoSocket.h"
#include "YReportMessageParams.h"

#include <new>
#include <utility>

namespace {

constexpr long connectionEvents = FD_READ | FD_WRITE | FD_OOB | FD_CLOSE;

void* ToContext(unsigned name)
{
    return reinterpret_cast<void*>(static_cast<UINT_PTR>(name));
}

YUnknownPointer<IInternetAddress> GetFirst(const IHostnameResolverSink::Result& result)
{
    return result.addresses.empty() ? nullptr : result.addresses.front();
}

}  // namespace

void YIoSocket::Connect(void* context, const char* hostName, unsigned short port,
                        IHostnameResolverSink* resolverSink)
{
    CreateAndConnect(context, hostName, port, resolverSink);
}

void YIoSocket::Connect(void* context, IInternetAddress* address)
{
    if (pendingConnects.empty()) {
        StartConnect({context}, address);
    }
}

void YIoSocket::CreateAndConnect(void* context, const char* hostName, unsigned short port,
                                 IHostnameResolverSink* resolverSink)
{
    if (!pendingConnects.empty()) {
        return;
    }
    SocketOperation request{context};
    const auto address =
        YUnknownPointer<IInternetAddress>::Adopt(MakeNumericAddress(hostName, port));
    if (!address) {
        request.resolverSink = resolverSink;
        StartResolving(std::move(request), hostName, port);
        return;
    }
    const unsigned code = HasSocket() ? ERROR_SUCCESS : Create(address.Get());
    if (code != ERROR_SUCCESS) {
        FinishNew(connects, std::move(request), code);
    } else {
        StartConnect(std::move(request), address.Get());
    }
}

// Begun, or failed at once; what the framework's event tells ends it.
void YIoSocket::StartConnect(SocketOperation&& request, IInternetAddress* address)
{
    pendingConnects.push_back(std::move(request));
    const unsigned code = BeginConnect(address);
    if (code != ERROR_SUCCESS && code != WSAEWOULDBLOCK) {
        pendingConnects.front().error = code;
        Finish(connects, pendingConnects, Delivery::ByMessage);
    }
}

unsigned YIoSocket::BeginConnect(IInternetAddress* address)
{
    const sockaddr* record = nullptr;
    int length = 0;
    if (isClosed) {
        return ERROR_OPERATION_ABORTED;
    }
    if (!address || !address->GetSockAddr(&record, &length)) {
        return WSAEFAULT;
    }
    if (!AsyncSelect(connectionEvents | FD_CONNECT) ||
        ::connect(m_hSocket, record, length) == SOCKET_ERROR) {
        return static_cast<unsigned>(::WSAGetLastError());
    }
    return ERROR_SUCCESS;
}

void YIoSocket::StartResolving(SocketOperation&& request, const char* hostName, unsigned short port)
{
    IHostnameResolver* const resolver = GetHostnameResolver();
    if (!Create() || !resolver) {
        FinishNew(connects, std::move(request), resolver ? ERROR_OUTOFMEMORY : ERROR_NOT_READY);
        return;
    }
    const YUnknownPointer<YIoSocket> self(this);
    if (!HasSocket()) {
        BeginAnew(SOCK_STREAM);  // reads and writes may be asked for before the name is known
    }
    request.isResolving = true;
    pendingConnects.push_back(std::move(request));
    resolver->Resolve(this, ToContext(abandonedNames), hostName, port, 0, IPPROTO_TCP);
}

void YIoSocket::OnHostname(void* context, const YReportMessageParams& reportParams,
                           const Result& result)
{
    const YUnknownPointer<YIoSocket> self(this);
    // Answers come in any order, those of names that were abandoned included.
    if (context != ToContext(abandonedNames) || pendingConnects.empty() ||
        !pendingConnects.front().isResolving) {
        return;
    }
    SocketQueue resolved;
    resolved.splice(resolved.begin(), pendingConnects);
    SocketOperation& request = resolved.front();
    request.isResolving = false;
    if (request.resolverSink) {
        CallGuarded([&] { request.resolverSink->OnHostname(context, reportParams, result); });
        request.resolverSink.Reset();
    }
    request.error = UseResolved(reportParams.GetMessageId(), result);
    if (request.error != ERROR_SUCCESS) {
        Finish(connects, resolved, Delivery::ByMessage);
    } else {
        StartConnect(std::move(request), GetFirst(result).Get());
    }
}

// The caller has just been told the addresses, and may have closed the socket or begun to connect it
// otherwise.
unsigned YIoSocket::UseResolved(unsigned code, const Result& result)
{
    if (code != ERROR_SUCCESS) {
        return code;
    }
    if (!pendingConnects.empty()) {
        return WSAEALREADY;
    }
    if (isClosed) {
        return ERROR_OPERATION_ABORTED;
    }
    const YUnknownPointer<IInternetAddress> first = GetFirst(result);
    if (!first) {
        return WSAHOST_NOT_FOUND;
    }
    return HasSocket() ? ERROR_SUCCESS : Create(first.Get());
}

// Some events of a connection may be told again, so that there may be nobody to tell; a name that is
// being resolved is not what the event is about.
void YIoSocket::OnConnect(int nErrorCode)
{
    const EventScope scope(*this);
    if (!pendingConnects.empty() && !pendingConnects.front().isResolving) {
        SocketQueue connected;
        connected.splice(connected.begin(), pendingConnects);
        connected.front().error = static_cast<unsigned>(nErrorCode);
        CallGuarded([&] { TellConnect(connected.front()); });
    } else {
        Deliver(connects, connects.finished.size());
    }
}

void YIoSocket::Accept(void* context)
{
    if (isClosed) {
        FinishNew(accepts, {context}, ERROR_OPERATION_ABORTED);
        return;
    }
    pendingAccepts.push_back({context});
    if (pendingIncoming > 0) {
        --pendingIncoming;
        AcceptIncomingSocket(Delivery::ByMessage);
    }
}

void YIoSocket::OnAccept(int)
{
    const EventScope scope(*this);
    if (pendingAccepts.empty()) {
        ++pendingIncoming;
    } else {
        AcceptIncomingSocket(Delivery::AtOnce);
    }
}

YIoSocket::Progress YIoSocket::AcceptIncomingSocket(Delivery delivery)
{
    const YUnknownPointer<YIoSocket> self(this);
    if (pendingAccepts.empty()) {
        return Progress::None;
    }
    SocketOperation& accept = pendingAccepts.front();
    accept.error = TakeConnection(accept);
    if (accept.error == WSAEWOULDBLOCK) {
        return Progress::None;
    }
    Finish(accepts, pendingAccepts, delivery);
    return Progress::Finished;
}

unsigned YIoSocket::TakeConnection(SocketOperation& accept)
{
    YUnknownPointer<YIoSocket> accepted;
    if (const unsigned code = PrepareForAccept(accepted)) {
        ++pendingIncoming;  // it still waits, and is not told again
        return code;
    }
    // It has inherited the events of a listener, which are not those of a connection.
    if (!Accept(*accepted) || !accepted->AsyncSelect(connectionEvents)) {
        return static_cast<unsigned>(::WSAGetLastError());
    }
    IInternetAddress* local = nullptr;
    IInternetAddress* peer = nullptr;
    accepted->GetSockName(local);
    accepted->GetPeerName(peer);
    accept.localAddress = YUnknownPointer<IInternetAddress>::Adopt(local);
    accept.address = YUnknownPointer<IInternetAddress>::Adopt(peer);
    accept.newSocket = YUnknownPointer<ISocket>(accepted.Get());
    return ERROR_SUCCESS;
}

// Memory first: a connection is not taken to be lost.
unsigned YIoSocket::PrepareForAccept(YUnknownPointer<YIoSocket>& accepted) const
{
    accepted = YUnknownPointer<YIoSocket>::Adopt(new (std::nothrow) YIoSocket);
    return accepted && accepted->Create() ? ERROR_SUCCESS : ERROR_OUTOFMEMORY;
}

BOOL YIoSocket::Accept(CAsyncSocket& rConnectedSocket, SOCKADDR* lpSockAddr, int* lpSockAddrLen)
{
    if (rConnectedSocket.m_hSocket != INVALID_SOCKET) {
        rConnectedSocket.CAsyncSocket::Close();
    }
    return CAsyncSocket::Accept(rConnectedSocket, lpSockAddr, lpSockAddrLen);
}
