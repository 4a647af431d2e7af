// afxsock.h: sockets that tell their events through messages.
#pragma once

#include "afx.h"

#include <winsock2.h>
#include <ws2tcpip.h>

// Starts Winsock; before the first socket of the program. FALSE: there is none. Ended by the system
// together with the process: sockets may live in static objects, up to the very end.
COMMONFRAMEWORK_API BOOL AFXAPI AfxSocketInit(WSADATA* lpwsaData = nullptr);

// One socket, non-blocking once it is attached, whose events arrive as calls of OnReceive and so on
// while its thread handles messages. Every member is for the thread that attached the socket; only
// the object may die elsewhere, after that thread. Inside a callback the socket may be closed,
// detached or deleted, and messages may be handled: nothing of it is touched afterwards.
//
// What fails returns FALSE or SOCKET_ERROR, and GetLastError has the Winsock code. Texts of
// addresses are those of IPv4 or IPv6, as the socket is.
class COMMONFRAMEWORK_API CAsyncSocket : public CObject
{
    DECLARE_DYNAMIC(CAsyncSocket)

private:
    static constexpr long allEvents =
        FD_READ | FD_WRITE | FD_OOB | FD_ACCEPT | FD_CONNECT | FD_CLOSE;

public:
    enum { receives = 0, sends = 1, both = 2 };  // for ShutDown

    CAsyncSocket() = default;  // without socket
    ~CAsyncSocket() override;  // closes

    // A new IPv4 socket, bound. Without address: any of this machine; port 0: one that is free.
    BOOL Create(UINT nSocketPort = 0, int nSocketType = SOCK_STREAM, long lEvent = allEvents,
                LPCTSTR lpszSocketAddress = nullptr);
    // A new socket, not bound.
    BOOL Socket(int nSocketType = SOCK_STREAM, long lEvent = allEvents, int nProtocolType = 0,
                int nAddressFormat = PF_INET);
    // Takes the socket over and selects the events; after a failure it is still the caller's.
    BOOL Attach(SOCKET hSocket, long lEvent = allEvents);
    // Gives the socket back, open and without events.
    SOCKET Detach();
    // The calling thread's object; null: none has this socket.
    static CAsyncSocket* PASCAL FromHandle(SOCKET hSocket);
    operator SOCKET() const { return m_hSocket; }

    static int PASCAL GetLastError() { return ::WSAGetLastError(); }
    BOOL GetPeerName(CString& rPeerAddress, UINT& rPeerPort);
    BOOL GetPeerName(SOCKADDR* lpSockAddr, int* lpSockAddrLen);
    BOOL GetSockName(CString& rSocketAddress, UINT& rSocketPort);
    BOOL GetSockName(SOCKADDR* lpSockAddr, int* lpSockAddrLen);
    BOOL SetSockOpt(int nOptionName, const void* lpOptionValue, int nOptionLen,
                    int nLevel = SOL_SOCKET);
    BOOL GetSockOpt(int nOptionName, void* lpOptionValue, int* lpOptionLen,
                    int nLevel = SOL_SOCKET);

    // The next connection that waits, with the events that this socket has selected. The target
    // has no socket; where it has one, nothing is accepted and the connection waits on.
    virtual BOOL Accept(CAsyncSocket& rConnectedSocket, SOCKADDR* lpSockAddr = nullptr,
                        int* lpSockAddrLen = nullptr);
    // From now on these events and no others; those that hold already are told again.
    BOOL AsyncSelect(long lEvent = allEvents);
    BOOL Bind(UINT nSocketPort, LPCTSTR lpszSocketAddress = nullptr);
    BOOL Bind(const SOCKADDR* lpSockAddr, int nSockAddrLen);
    virtual void Close();  // no callback comes any more
    // WSAEWOULDBLOCK: begun, OnConnect tells the rest. By name: waits for the name's resolution,
    // and tries the first address.
    BOOL Connect(LPCTSTR lpszHostAddress, UINT nHostPort);
    BOOL Connect(const SOCKADDR* lpSockAddr, int nSockAddrLen);
    BOOL IOCtl(long lCommand, DWORD* lpArgument);
    BOOL Listen(int nConnectionBacklog = 5);
    BOOL ShutDown(int nHow = sends);

    // The bytes received or sent, which may be fewer than were asked for.
    virtual int Receive(void* lpBuf, int nBufLen, int nFlags = 0);
    int ReceiveFrom(void* lpBuf, int nBufLen, CString& rSocketAddress, UINT& rSocketPort,
                    int nFlags = 0);
    int ReceiveFrom(void* lpBuf, int nBufLen, SOCKADDR* lpSockAddr, int* lpSockAddrLen,
                    int nFlags = 0);
    virtual int Send(const void* lpBuf, int nBufLen, int nFlags = 0);
    // Without address: to everybody on the local net, IPv4.
    int SendTo(const void* lpBuf, int nBufLen, UINT nHostPort, LPCTSTR lpszHostAddress = nullptr,
               int nFlags = 0);
    int SendTo(const void* lpBuf, int nBufLen, const SOCKADDR* lpSockAddr, int nSockAddrLen,
               int nFlags = 0);

    SOCKET m_hSocket = INVALID_SOCKET;

protected:
    // nErrorCode: 0, or the Winsock code of what went wrong.
    virtual void OnReceive(int nErrorCode);
    virtual void OnSend(int nErrorCode);
    virtual void OnOutOfBandData(int nErrorCode);
    virtual void OnAccept(int nErrorCode);
    virtual void OnConnect(int nErrorCode);
    virtual void OnClose(int nErrorCode);

private:
    friend class SocketWindow;

    BOOL CheckEmpty() const;
    void Notify(int event, int error);

    UINT message = 0;  // of this attachment's notifications; 0: none
    long events = 0;  // that are selected
};
