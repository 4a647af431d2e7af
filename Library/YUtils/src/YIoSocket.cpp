#include "YIoSocket.h"

#include "CallGuarded.h"
#include "YAddress.h"
#include "YMessages.h"
#include "YWinsock.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr int longestAddress = 128;  // bytes
// Answers in a row: whoever asks anew with each one must not keep the thread for ever.
constexpr std::size_t mostInARow = 256;
constexpr UINT_PTR answerTimer = 1;
constexpr UINT timerPeriod = 20;  // milliseconds
constexpr long acceptEvents = FD_ACCEPT | FD_CLOSE;

unsigned GetCode(int result)
{
    return result == 0 ? ERROR_SUCCESS : static_cast<unsigned>(::WSAGetLastError());
}

unsigned MakeName(SOCKET socket, decltype(&::getpeername) getName, IInternetAddress*& address)
{
    alignas(sockaddr_storage) char name[longestAddress];
    auto* const record = reinterpret_cast<sockaddr*>(name);
    int length = sizeof name;
    address = nullptr;
    if (const unsigned code = GetCode(getName(socket, record, &length))) {
        return code;
    }
    address = MakeAddressFromSockAddr(record, length);
    return address ? ERROR_SUCCESS : MSG_ADDRESS_NOT_CONVERTIBLE;
}

bool IsSet(const void* value, int length)
{
    const auto* const bytes = static_cast<const unsigned char*>(value);
    return std::any_of(bytes, bytes + length, [](unsigned char byte) { return byte != 0; });
}

}  // namespace

// Closed by now, without windows' messages from here on.
YIoSocket::~YIoSocket()
{
    Destroy();
}

// The last reference is gone; closing needs one, and tells whoever still waits. One of those may
// take a reference and keep the object.
void YIoSocket::DeleteThis()
{
    if (isEnding) {
        delete this;
        return;
    }
    isEnding = true;
    AddRef();
    Close();
    if (Release() > 0) {
        isEnding = false;
    }
}

void YIoSocket::DeleteThis() const
{
    const_cast<YIoSocket*>(this)->DeleteThis();
}

ULONG YIoSocket::Release()
{
    return std::as_const(*this).Release();
}

// Another thread's reference goes with the message. Where no message gets through, nobody pumps any
// more.
ULONG YIoSocket::Release() const
{
    if (IsOwnThread()) {
        return YUnknown::Release();
    }
    AddRef();
    const ULONG count = YUnknown::Release();
    if (Post(dropReference, 0, 0) || YNotificationSink::Send(dropReference, 0, 0)) {
        return count;
    }
    return YUnknown::Release();
}

LRESULT YIoSocket::OnNotify(UINT notification, WPARAM, LPARAM)
{
    const YUnknownPointer<YIoSocket> self(this);
    if (notification == dropReference) {
        Release();
        return 0;
    }
    const EventScope scope(*this);
    for (Answers* const answers : AllAnswers()) {
        if (answers->message == notification) {
            answers->isPostPending = false;
            Deliver(*answers, mostInARow);
        }
    }
    return 0;
}

// What could not be posted, or was left to an event that has not come to its end yet.
LRESULT YIoSocket::OnTimer(UINT_PTR timer)
{
    const EventScope scope(*this);
    if (!isTimerNeeded) {
        StopTimer(timer);
        hasTimer = false;
    }
    isTimerNeeded = false;
    return 0;
}

void YIoSocket::Close()
{
    const YUnknownPointer<YIoSocket> self(this);
    if (HasSocket()) {
        AsyncSelect(0);
        CAsyncSocket::Close();
    }
    isClosed = true;
    if (!pendingConnects.empty() && pendingConnects.front().isResolving) {
        ++abandonedNames;
    }
    // Told anything, the caller may begin anew: what it asks for then is not ended here.
    SocketQueue lastReads = std::exchange(pendingReads, {});
    SocketQueue lastWrites = std::exchange(pendingWrites, {});
    SocketQueue lastAccepts = std::exchange(pendingAccepts, {});
    SocketQueue lastConnects = std::exchange(pendingConnects, {});
    for (Answers* const answers : AllAnswers()) {
        Deliver(*answers, answers->finished.size());
    }
    Abort(reads, lastReads);
    Abort(writes, lastWrites);
    Abort(accepts, lastAccepts);
    Abort(connects, lastConnects);
}

void YIoSocket::SetSink(ISocketSink* next)
{
    sink = YUnknownPointer<ISocketSink>(next);
    if (!bindSink) {
        bindSink = YUnknownPointer<IBindSocketSink>(dynamic_cast<IBindSocketSink*>(next));
    }
}

void YIoSocket::SetAcceptSink(IListenSocketSink* next)
{
    acceptSink = YUnknownPointer<IListenSocketSink>(next);
}

unsigned YIoSocket::Create(IInternetAddress* address)
{
    if (!address) {
        return WSAEFAULT;
    }
    if (HasSocket()) {
        return WSAEISCONN;
    }
    if (!Create()) {
        return ERROR_OUTOFMEMORY;
    }
    if (!YStartWinsock()) {
        return WSASYSNOTREADY;
    }
    const SOCKET made =
        ::socket(address->GetAddressFamily(), address->GetSocketType(), address->GetProtocol());
    if (made == INVALID_SOCKET) {
        return static_cast<unsigned>(::WSAGetLastError());
    }
    if (!Attach(made)) {
        const auto code = static_cast<unsigned>(::WSAGetLastError());
        ::closesocket(made);
        return code;
    }
    BeginAnew(address->GetSocketType());
    ApplyOptions();
    return ERROR_SUCCESS;
}

void YIoSocket::BeginAnew(int socketType)
{
    pendingIncoming = 0;
    sendBlocked = true;
    bytesSentOfFront = 0;
    readable = false;
    closedByPeer = false;
    eofDelivered = false;
    isStream = socketType == SOCK_STREAM;
    isClosed = false;
    hasTimer = false;  // it was the last window's
}

// A socket to which one of them means nothing works as well without.
void YIoSocket::ApplyOptions()
{
    const BOOL on = TRUE;
    const auto* const value = reinterpret_cast<const char*>(&on);
    if (oobInline) {
        ::setsockopt(m_hSocket, SOL_SOCKET, SO_OOBINLINE, value, sizeof on);
    }
    if (noDelay) {
        ::setsockopt(m_hSocket, IPPROTO_TCP, TCP_NODELAY, value, sizeof on);
    }
}

unsigned YIoSocket::Bind(void* context, IInternetAddress* address)
{
    const sockaddr* record = nullptr;
    int length = 0;
    const bool isGiven = address && address->GetSockAddr(&record, &length);
    const unsigned code = isGiven ? GetCode(::bind(m_hSocket, record, length)) : WSAEFAULT;
    if (!bindSink) {
        return code;
    }
    FinishNew(binds, {context}, code);
    return ERROR_IO_PENDING;
}

unsigned YIoSocket::Listen(int backlog)
{
    if (!AsyncSelect(acceptEvents)) {
        return static_cast<unsigned>(::WSAGetLastError());
    }
    return GetCode(::listen(m_hSocket, backlog));
}

unsigned YIoSocket::Shutdown(int how)
{
    return ShutDown(how) ? ERROR_SUCCESS : static_cast<unsigned>(::WSAGetLastError());
}

unsigned YIoSocket::EnableInheritance(bool isInheritable)
{
    const BOOL done =
        ::SetHandleInformation(reinterpret_cast<HANDLE>(m_hSocket), HANDLE_FLAG_INHERIT,
                               isInheritable ? HANDLE_FLAG_INHERIT : 0);
    return done ? ERROR_SUCCESS : ::GetLastError();
}

unsigned YIoSocket::SetSockOpt(int option, const void* value, int length, int level)
{
    const bool isGiven = value && length > 0;
    if (option == SO_SNDBUF) {
        if (!value || length != sizeof(int)) {
            return WSAEFAULT;
        }
        if (!IsSet(value, length)) {
            return ERROR_SUCCESS;
        }
    }
    if (!HasSocket() && isGiven && (option == SO_OOBINLINE || option == TCP_NODELAY)) {
        (option == SO_OOBINLINE ? oobInline : noDelay) = IsSet(value, length);
        return ERROR_SUCCESS;
    }
    return GetCode(::setsockopt(m_hSocket, level, option, static_cast<const char*>(value), length));
}

unsigned YIoSocket::GetSockOpt(int option, void* value, int* length, int level)
{
    return GetCode(::getsockopt(m_hSocket, level, option, static_cast<char*>(value), length));
}

unsigned YIoSocket::GetPeerName(IInternetAddress*& address)
{
    return MakeName(m_hSocket, &::getpeername, address);
}

unsigned YIoSocket::GetSockName(IInternetAddress*& address)
{
    return MakeName(m_hSocket, &::getsockname, address);
}

bool YIoSocket::GetSockName(CString& host, unsigned& port)
{
    return CAsyncSocket::GetSockName(host, port) != FALSE;
}

// The front operation is finished.
void YIoSocket::Finish(Answers& answers, SocketQueue& pending, Delivery delivery)
{
    answers.finished.splice(answers.finished.end(), pending, pending.begin());
    if (delivery == Delivery::AtOnce || !Announce(answers)) {
        Deliver(answers, mostInARow);
    }
}

// A request whose outcome is known at once.
void YIoSocket::FinishNew(Answers& answers, SocketOperation&& request, unsigned code)
{
    SocketQueue known;
    known.push_back(std::move(request));
    known.front().error = code;
    Finish(answers, known, Delivery::ByMessage);
}

// One message at a time, and none inside an event, whose end tells what has been finished meanwhile: a
// message costs about as much as sending a few bytes. The timer stands by where the thread takes no
// more messages, or where the event runs a message loop of its own and is long in ending. False: there
// is no window at all.
bool YIoSocket::Announce(Answers& answers)
{
    if (eventDepth == 0 && !answers.isPostPending) {
        answers.isPostPending = Post(answers.message, 0, 0);
    }
    return answers.isPostPending || KeepTimer();
}

bool YIoSocket::KeepTimer()
{
    isTimerNeeded = true;
    hasTimer = hasTimer || StartTimer(answerTimer, timerPeriod);
    return hasTimer;
}

void YIoSocket::LeaveEvent()
{
    for (Answers* const answers : AllAnswers()) {
        Deliver(*answers, mostInARow);
    }
    --eventDepth;
    for (Answers* const answers : AllAnswers()) {
        if (!answers->finished.empty()) {
            Announce(*answers);
        }
    }
}

// What a call adds has its turn in the same loop. Any call may take the last reference.
void YIoSocket::Deliver(Answers& answers, std::size_t most)
{
    const YUnknownPointer<YIoSocket> self(this);
    for (; most > 0 && !answers.finished.empty(); --most) {
        SocketQueue told;
        told.splice(told.begin(), answers.finished, answers.finished.begin());
        CallGuarded([&] { (this->*answers.tell)(told.front()); });
    }
    if (!answers.finished.empty()) {
        Announce(answers);
    }
}

void YIoSocket::Abort(Answers& answers, SocketQueue& pending)
{
    for (SocketOperation& operation : pending) {
        operation.error = ERROR_OPERATION_ABORTED;
        operation.bytes = 0;
    }
    answers.finished.splice(answers.finished.end(), pending);
    Deliver(answers, answers.finished.size());
}

void YIoSocket::TellRead(const SocketOperation& read)
{
    const YUnknownPointer<ISocketSink> target = sink;  // the call may replace it
    if (!target) {
        return;
    }
    if (read.error != ERROR_SUCCESS && read.buffer) {
        read.buffer->SetSize(0);  // whatever it held before was not read now
    }
    switch (read.kind) {
    case SocketOperationKind::Ordinary:
        target->OnRead(read.context, read.error, read.buffer.Get());
        break;
    case SocketOperationKind::OutOfBand:
        target->OnReadOOB(read.context, read.error, read.buffer.Get());
        break;
    case SocketOperationKind::Datagram:
        if (auto* const datagrams = dynamic_cast<IReadFromSocketSink*>(target.Get())) {
            datagrams->OnReadFrom(read.context, read.error, read.buffer.Get(), read.address.Get(),
                                  0);
        }
        break;
    }
}

void YIoSocket::TellWrite(const SocketOperation& write)
{
    const YUnknownPointer<ISocketSink> target = sink;
    if (!target) {
        return;
    }
    if (write.kind == SocketOperationKind::OutOfBand) {
        target->OnWriteOOB(write.context, write.error, write.buffer.Get(), write.bytes);
    } else {
        target->OnWrite(write.context, write.error, write.buffer.Get(), write.bytes);
    }
}

void YIoSocket::TellConnect(const SocketOperation& connect)
{
    const YUnknownPointer<ISocketSink> target = sink;
    if (target) {
        target->OnConnect(connect.context, connect.error);
    }
}

void YIoSocket::TellAccept(const SocketOperation& accept)
{
    const YUnknownPointer<IListenSocketSink> target = acceptSink;
    if (target) {
        target->OnAccept(accept.context, accept.error, accept.newSocket.Get(),
                         accept.localAddress.Get(), accept.address.Get());
    }
}

void YIoSocket::TellBind(const SocketOperation& bind)
{
    const YUnknownPointer<IBindSocketSink> target = bindSink;
    if (target) {
        target->OnBind(bind.context, bind.error);
    }
}
