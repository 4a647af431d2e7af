// Reads and writes of YIoSocket.
#include "YAddress.h"
#include "YIoSocket.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace {

constexpr int longestAddress = 128;  // bytes

int ToCount(unsigned bytes)
{
    return static_cast<int>(std::min<unsigned>(bytes, INT_MAX));
}

}  // namespace

void YIoSocket::Read(void* context, IBuffer* buffer)
{
    StartRead({context, SocketOperationKind::Ordinary, buffer});
}

void YIoSocket::ReadFrom(void* context, IBuffer* buffer)
{
    StartRead({context, SocketOperationKind::Datagram, buffer});
}

void YIoSocket::ReadOOB(void*, IBuffer*) {}

void YIoSocket::Write(void* context, IBuffer* buffer)
{
    StartWrite({context, SocketOperationKind::Ordinary, buffer});
}

void YIoSocket::WriteOOB(void* context, IBuffer* buffer)
{
    StartWrite({context, SocketOperationKind::OutOfBand, buffer});
}

void YIoSocket::WriteTo(void* context, IInternetAddress* address, IBuffer* buffer)
{
    StartWrite({context, SocketOperationKind::Datagram, buffer, address});
}

void YIoSocket::StartRead(SocketOperation&& request)
{
    if (isClosed || !request.buffer) {
        FinishNew(reads, std::move(request), isClosed ? ERROR_OPERATION_ABORTED : WSAEFAULT);
        return;
    }
    pendingReads.push_back(std::move(request));
    if (readable || closedByPeer) {
        ReadPending(Delivery::ByMessage, 0);
    }
}

void YIoSocket::OnReceive(int)
{
    const EventScope scope(*this);
    readable = true;
    ReadPending(Delivery::AtOnce, 0);
}

// The urgent byte goes to the read that waits.
void YIoSocket::OnOutOfBandData(int)
{
    const EventScope scope(*this);
    readable = true;
    ReadPending(Delivery::AtOnce, MSG_OOB);
}

// The last bytes may still lie there.
void YIoSocket::OnClose(int)
{
    const EventScope scope(*this);
    closedByPeer = true;
    while (ReadPending(Delivery::AtOnce, 0)) {}
    for (std::size_t most = pendingAccepts.size();
         most > 0 && AcceptIncomingSocket(Delivery::AtOnce) != Progress::None; --most) {}
}

// One read for one notification: the system tells again as long as there is something to read.
// Failures do not count; a read that is asked for when one is told waits for the next notification,
// or a failure that lasts would keep the thread. False: nothing was finished.
bool YIoSocket::ReadPending(Delivery delivery, int flags)
{
    const YUnknownPointer<YIoSocket> self(this);
    bool isAnyFinished = false;
    Progress progress = Progress::Failed;
    std::size_t most = pendingReads.size();
    for (; most > 0 && progress == Progress::Failed && !pendingReads.empty(); --most) {
        progress = ReadFront(delivery, flags);
        isAnyFinished = isAnyFinished || progress != Progress::None;
    }
    return isAnyFinished;
}

YIoSocket::Progress YIoSocket::ReadFront(Delivery delivery, int flags)
{
    SocketOperation& read = pendingReads.front();
    if (read.buffer->Capacity() == 0) {
        // Nothing is taken, so nothing would be told again either; and it must not look like the end.
        FinishRead(delivery, ERROR_SUCCESS, 0);
        return Progress::Failed;
    }
    readable = false;
    const int received = ReceiveInto(read, flags);
    const int code = received == SOCKET_ERROR ? ::WSAGetLastError() : 0;
    if (code == WSAEWOULDBLOCK) {
        return Progress::None;
    }
    if (code == WSAEINVAL && (flags & MSG_OOB)) {
        return ReadFront(delivery, 0);  // SO_OOBINLINE is set: the byte lies in the stream
    }
    if (flags & MSG_OOB) {
        read.kind = SocketOperationKind::OutOfBand;
    }
    if (received == SOCKET_ERROR) {
        FinishRead(delivery, static_cast<unsigned>(code), 0);
        return Progress::Failed;
    }
    const unsigned bytes = std::min(static_cast<unsigned>(received), read.buffer->Capacity());
    FinishRead(delivery, JudgeReceived(read, bytes), bytes);
    return Progress::Finished;
}

int YIoSocket::ReceiveInto(SocketOperation& read, int flags) const
{
    auto* const data = reinterpret_cast<char*>(read.buffer->Data());
    const int room = ToCount(read.buffer->Capacity());
    if (read.kind != SocketOperationKind::Datagram) {
        return ::recv(m_hSocket, data, room, flags);
    }
    alignas(sockaddr_storage) char name[longestAddress];
    auto* const peer = reinterpret_cast<sockaddr*>(name);
    int length = sizeof name;
    const int received = ::recvfrom(m_hSocket, data, room, flags, peer, &length);
    if (received > 0) {
        read.address =
            YUnknownPointer<IInternetAddress>::Adopt(MakeAddressFromSockAddr(peer, length));
    }
    return received;
}

// The end of the stream is told once, also where the data ends before the peer's close is told. An
// empty datagram ends nothing.
unsigned YIoSocket::JudgeReceived(const SocketOperation& read, unsigned bytes)
{
    const bool isEnd =
        bytes == 0 && (closedByPeer || (isStream && read.kind == SocketOperationKind::Ordinary));
    return isEnd && std::exchange(eofDelivered, true) ? ERROR_OPERATION_ABORTED : ERROR_SUCCESS;
}

void YIoSocket::FinishRead(Delivery delivery, unsigned code, unsigned bytes)
{
    SocketOperation& read = pendingReads.front();
    read.buffer->SetSize(bytes);
    read.error = code;
    read.bytes = bytes;
    Finish(reads, pendingReads, delivery);
}

void YIoSocket::StartWrite(SocketOperation&& request)
{
    if (isClosed || !request.buffer) {
        FinishNew(writes, std::move(request), isClosed ? ERROR_OPERATION_ABORTED : WSAEFAULT);
        return;
    }
    pendingWrites.push_back(std::move(request));
    if (!sendBlocked) {
        SendPending(Delivery::ByMessage);
    }
}

void YIoSocket::OnSend(int)
{
    const EventScope scope(*this);
    sendBlocked = false;
    SendPending(Delivery::AtOnce);
}

void YIoSocket::SendPending(Delivery delivery)
{
    const YUnknownPointer<YIoSocket> self(this);
    while (!pendingWrites.empty() && SendFront(delivery) != Progress::None) {}
}

YIoSocket::Progress YIoSocket::SendFront(Delivery delivery)
{
    SocketOperation& write = pendingWrites.front();
    const unsigned size = write.buffer->Size();
    // The buffer may have been cut behind our back.
    bytesSentOfFront = std::min(bytesSentOfFront, size);
    const unsigned remaining = size - bytesSentOfFront;
    const int sent = SendRest(write);
    const int code = sent == SOCKET_ERROR ? ::WSAGetLastError() : 0;
    if (code == WSAEWOULDBLOCK) {
        sendBlocked = true;
        return Progress::None;
    }
    if (sent != SOCKET_ERROR && static_cast<unsigned>(sent) < remaining) {
        bytesSentOfFront += static_cast<unsigned>(sent);
        return Progress::Finished;
    }
    bytesSentOfFront = 0;
    write.error = static_cast<unsigned>(code);
    // Of the last call only: whoever wants the sum knows the buffer's size.
    write.bytes = sent == SOCKET_ERROR ? 0 : remaining;
    Finish(writes, pendingWrites, delivery);
    return Progress::Finished;
}

int YIoSocket::SendRest(const SocketOperation& write) const
{
    const auto* const start =
        reinterpret_cast<const char*>(write.buffer->Data()) + bytesSentOfFront;
    const int bytes = ToCount(write.buffer->Size() - bytesSentOfFront);
    if (write.kind != SocketOperationKind::Datagram) {
        const int flags = write.kind == SocketOperationKind::OutOfBand ? MSG_OOB : 0;
        return ::send(m_hSocket, start, bytes, flags);
    }
    const sockaddr* peer = nullptr;
    int length = 0;
    if (!write.address || !write.address->GetSockAddr(&peer, &length)) {
        ::WSASetLastError(WSAEFAULT);
        return SOCKET_ERROR;
    }
    return ::sendto(m_hSocket, start, bytes, 0, peer, length);
}
