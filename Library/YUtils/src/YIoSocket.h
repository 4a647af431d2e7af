// YIoSocket.h: the library's socket.
#pragma once

#include "CommonUiApi.h"
#include "IHostnameResolver.h"
#include "ISocket.h"
#include "ISocketSink.h"
#include "SocketOperation.h"
#include "YNotificationSink.h"
#include "YUnknown.h"
#include "YUnknownPointer.h"

#include <afxsock.h>

#include <array>

// What a socket is to others: to the host, and to its resolver.
class YIoSocketInterface : public ISocket, public IHostnameResolverSink
{};

// A TCP or datagram socket whose events come as window messages; ISocket says how it is used. Two
// windows serve it, both of the thread that called Create or CreateAndConnect first, or accepted it:
// the framework's for the events of the network, which are answered at once, and one of its own for
// what was finished inside a request. Made with one reference. Released by another thread it dies
// on its own one, as soon as that handles messages.
class COMMONUI_API YIoSocket : public CAsyncSocket,
                               public YUnknown<YIoSocketInterface>,
                               private YNotificationSink
{
public:
    using Interface = YIoSocketInterface;

    YIoSocket() = default;
    YIoSocket(const YIoSocket&) = delete;
    YIoSocket& operator=(const YIoSocket&) = delete;

    ULONG STDMETHODCALLTYPE Release() override;
    ULONG STDMETHODCALLTYPE Release() const override;

    void Read(void* context, IBuffer* buffer) override;
    void Write(void* context, IBuffer* buffer) override;
    void Close() override;
    void SetSink(ISocketSink* next) override;
    void SetAcceptSink(IListenSocketSink* next) override;
    unsigned Create(IInternetAddress* address) override;
    unsigned Bind(void* context, IInternetAddress* address) override;
    unsigned Listen(int backlog) override;
    void Accept(void* context) override;
    void Connect(void* context, const char* hostName, unsigned short port,
                 IHostnameResolverSink* resolverSink) override;
    void Connect(void* context, IInternetAddress* address) override;
    void CreateAndConnect(void* context, const char* hostName, unsigned short port,
                          IHostnameResolverSink* resolverSink) override;
    unsigned Shutdown(int how) override;
    unsigned EnableInheritance(bool isInheritable) override;
    unsigned SetSockOpt(int option, const void* value, int length, int level) override;
    unsigned GetSockOpt(int option, void* value, int* length, int level) override;
    unsigned GetPeerName(IInternetAddress*& address) override;
    unsigned GetSockName(IInternetAddress*& address) override;
    void ReadOOB(void* context, IBuffer* buffer) override;
    void WriteOOB(void* context, IBuffer* buffer) override;
    void WriteTo(void* context, IInternetAddress* address, IBuffer* buffer) override;
    void ReadFrom(void* context, IBuffer* buffer) override;

    // The local address as text, and its port.
    bool GetSockName(CString& host, unsigned& port);

    void OnHostname(void* context, const YReportMessageParams& reportParams,
                    const Result& result) override;

protected:
    ~YIoSocket() override;
    void DeleteThis() override;
    void DeleteThis() const override;

    BOOL Accept(CAsyncSocket& rConnectedSocket, SOCKADDR* lpSockAddr = nullptr,
                int* lpSockAddrLen = nullptr) override;
    void OnReceive(int nErrorCode) override;
    void OnSend(int nErrorCode) override;
    void OnOutOfBandData(int nErrorCode) override;
    void OnAccept(int nErrorCode) override;
    void OnConnect(int nErrorCode) override;
    void OnClose(int nErrorCode) override;

private:
    // At once: inside an event of the network. By message: inside a caller's request.
    enum class Delivery { AtOnce, ByMessage };
    // Of one attempt: nothing yet, one operation, or one that failed, so that the next may be tried.
    enum class Progress { None, Finished, Failed };
    // The finished operations of one kind.
    struct Answers
    {
        UINT message;  // that has them told
        void (YIoSocket::*tell)(const SocketOperation& operation);
        SocketQueue finished = {};
        bool isPostPending = false;
    };

    // The socket tells something; what that finishes is told before it ends.
    class EventScope
    {
    public:
        explicit EventScope(YIoSocket& entered) : socket(&entered) { ++entered.eventDepth; }
        ~EventScope() { socket->LeaveEvent(); }
        EventScope(const EventScope&) = delete;
        EventScope& operator=(const EventScope&) = delete;

    private:
        const YUnknownPointer<YIoSocket> socket;
    };

    // The window's messages.
    enum : UINT {
        tellReads = WM_USER + 1,
        tellWrites,
        tellConnects,
        tellAccepts,
        tellBinds,
        dropReference
    };

    std::array<Answers*, 5> AllAnswers() { return {&reads, &writes, &accepts, &connects, &binds}; }

    using YNotificationSink::Create;
    LRESULT OnNotify(UINT notification, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnTimer(UINT_PTR timer) override;

    bool HasSocket() const { return m_hSocket != INVALID_SOCKET; }

    void BeginAnew(int socketType);
    void ApplyOptions();

    void Finish(Answers& answers, SocketQueue& pending, Delivery delivery);
    void FinishNew(Answers& answers, SocketOperation&& request, unsigned code);
    bool Announce(Answers& answers);
    bool KeepTimer();
    void LeaveEvent();
    void Deliver(Answers& answers, std::size_t most);
    void Abort(Answers& answers, SocketQueue& pending);
    void TellRead(const SocketOperation& read);
    void TellWrite(const SocketOperation& write);
    void TellConnect(const SocketOperation& connect);
    void TellAccept(const SocketOperation& accept);
    void TellBind(const SocketOperation& bind);

    void StartRead(SocketOperation&& request);
    bool ReadPending(Delivery delivery, int flags);
    Progress ReadFront(Delivery delivery, int flags);
    int ReceiveInto(SocketOperation& read, int flags) const;
    unsigned JudgeReceived(const SocketOperation& read, unsigned bytes);
    void FinishRead(Delivery delivery, unsigned code, unsigned bytes);
    void StartWrite(SocketOperation&& request);
    void SendPending(Delivery delivery);
    Progress SendFront(Delivery delivery);
    int SendRest(const SocketOperation& write) const;

    void StartConnect(SocketOperation&& request, IInternetAddress* address);
    unsigned BeginConnect(IInternetAddress* address);
    void StartResolving(SocketOperation&& request, const char* hostName, unsigned short port);
    unsigned UseResolved(unsigned code, const Result& result);
    Progress AcceptIncomingSocket(Delivery delivery);
    unsigned TakeConnection(SocketOperation& accept);
    unsigned PrepareForAccept(YUnknownPointer<YIoSocket>& accepted) const;

    YUnknownPointer<ISocketSink> sink;
    YUnknownPointer<IBindSocketSink> bindSink;
    YUnknownPointer<IListenSocketSink> acceptSink;
    bool oobInline = false;  // set before there was a socket
    bool noDelay = false;
    unsigned pendingIncoming = 0;  // connections that came while nobody waited for one
    bool sendBlocked = true;  // until the network says that it takes data
    unsigned bytesSentOfFront = 0;
    bool readable = false;  // data may be waiting
    bool closedByPeer = false;
    bool eofDelivered = false;
    bool isStream = true;
    bool isClosed = false;
    bool isEnding = false;
    unsigned eventDepth = 0;  // events that are being told, one inside another
    bool hasTimer = false;
    bool isTimerNeeded = false;  // since it last came
    unsigned abandonedNames = 0;  // closed while they were looked up

    SocketQueue pendingConnects;  // one at most
    SocketQueue pendingAccepts;
    SocketQueue pendingReads;
    SocketQueue pendingWrites;
    Answers reads{tellReads, &YIoSocket::TellRead};
    Answers writes{tellWrites, &YIoSocket::TellWrite};
    Answers accepts{tellAccepts, &YIoSocket::TellAccept};
    Answers connects{tellConnects, &YIoSocket::TellConnect};
    Answers binds{tellBinds, &YIoSocket::TellBind};
};
