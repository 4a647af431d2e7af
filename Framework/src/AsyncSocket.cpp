#include "afxsock.h"

#include "SocketWindow.h"

#include <memory>
#include <string>
#include <utility>

IMPLEMENT_DYNAMIC(CAsyncSocket, CObject)

namespace {

// Cleaning up leaves the reason to be told.
class KeptLastError
{
public:
    KeptLastError() : error(::WSAGetLastError()) {}
    ~KeptLastError() { ::WSASetLastError(error); }
    KeptLastError(const KeptLastError&) = delete;
    KeptLastError& operator=(const KeptLastError&) = delete;

private:
    int error;
};

struct AddressListDeleter
{
    void operator()(ADDRINFOW* list) const
    {
        const KeptLastError kept;
        ::FreeAddrInfoW(list);
    }
};
using AddressList = std::unique_ptr<ADDRINFOW, AddressListDeleter>;

// Room for an address of any family.
struct Endpoint
{
    SOCKADDR* Get() { return reinterpret_cast<SOCKADDR*>(&address); }

    SOCKADDR_STORAGE address{};
    int length = sizeof(address);
};

BOOL Fail(int error)
{
    ::WSASetLastError(error);
    return FALSE;
}

// Only addresses that the socket can use; host null: the wildcard. Null: the last error tells why.
AddressList FindAddresses(SOCKET socket, LPCTSTR host, UINT port, int flags)
{
    WSAPROTOCOL_INFOW kind{};
    int length = sizeof(kind);
    if (::getsockopt(socket, SOL_SOCKET, SO_PROTOCOL_INFOW, reinterpret_cast<char*>(&kind),
                     &length) != 0) {
        return nullptr;
    }
    ADDRINFOW hints{};
    hints.ai_flags = flags;
    hints.ai_family = kind.iAddressFamily;
    hints.ai_socktype = kind.iSocketType;
    ADDRINFOW* found = nullptr;
    const int error = port > 0xFFFF
                          ? WSAEINVAL
                          : ::GetAddrInfoW(host, std::to_wstring(port).c_str(), &hints, &found);
    if (error != 0) {
        ::WSASetLastError(error);
        return nullptr;
    }
    return AddressList(found);
}

BOOL Describe(Endpoint& endpoint, CString& address, UINT& port)
{
    wchar_t host[NI_MAXHOST];
    const int error = ::GetNameInfoW(endpoint.Get(), endpoint.length, host, NI_MAXHOST, nullptr, 0,
                                     NI_NUMERICHOST);
    if (error != 0) {
        return Fail(error);
    }
    address = host;
    // The port lies at the same place in both families.
    port = ::ntohs(reinterpret_cast<const sockaddr_in&>(endpoint.address).sin_port);
    return TRUE;
}

}  // namespace

BOOL AFXAPI AfxSocketInit(WSADATA* lpwsaData)
{
    WSADATA data;
    const int error = ::WSAStartup(MAKEWORD(2, 2), lpwsaData != nullptr ? lpwsaData : &data);
    return error == 0 || Fail(error);
}

CAsyncSocket::~CAsyncSocket()
{
    CAsyncSocket::Close();
}

BOOL CAsyncSocket::Create(UINT nSocketPort, int nSocketType, long lEvent, LPCTSTR lpszSocketAddress)
{
    if (!Socket(nSocketType, lEvent)) {
        return FALSE;
    }
    if (!Bind(nSocketPort, lpszSocketAddress)) {
        const KeptLastError kept;
        CAsyncSocket::Close();
        return FALSE;
    }
    return TRUE;
}

BOOL CAsyncSocket::Socket(int nSocketType, long lEvent, int nProtocolType, int nAddressFormat)
{
    if (!CheckEmpty()) {
        return FALSE;
    }
    const SOCKET made = ::socket(nAddressFormat, nSocketType, nProtocolType);
    if (made == INVALID_SOCKET) {
        return FALSE;
    }
    if (!Attach(made, lEvent)) {
        const KeptLastError kept;
        ::closesocket(made);
        return FALSE;
    }
    return TRUE;
}

BOOL CAsyncSocket::Attach(SOCKET hSocket, long lEvent)
{
    if (!CheckEmpty()) {
        return FALSE;
    }
    message = SocketWindow::Add(*this, hSocket);
    if (message == 0) {
        return FALSE;
    }
    m_hSocket = hSocket;
    if (!AsyncSelect(lEvent)) {
        const KeptLastError kept;
        Detach();
        return FALSE;
    }
    return TRUE;
}

SOCKET CAsyncSocket::Detach()
{
    if (const HWND window = SocketWindow::FindWindowOf(*this, message)) {
        ::WSAAsyncSelect(m_hSocket, window, 0, 0);
    }
    SocketWindow::Remove(*this, m_hSocket, message);
    message = 0;
    events = 0;
    return std::exchange(m_hSocket, INVALID_SOCKET);
}

CAsyncSocket* PASCAL CAsyncSocket::FromHandle(SOCKET hSocket)
{
    return SocketWindow::Find(hSocket);
}

BOOL CAsyncSocket::GetPeerName(CString& rPeerAddress, UINT& rPeerPort)
{
    Endpoint peer;
    return GetPeerName(peer.Get(), &peer.length) && Describe(peer, rPeerAddress, rPeerPort);
}

BOOL CAsyncSocket::GetPeerName(SOCKADDR* lpSockAddr, int* lpSockAddrLen)
{
    return ::getpeername(m_hSocket, lpSockAddr, lpSockAddrLen) == 0;
}

BOOL CAsyncSocket::GetSockName(CString& rSocketAddress, UINT& rSocketPort)
{
    Endpoint own;
    return GetSockName(own.Get(), &own.length) && Describe(own, rSocketAddress, rSocketPort);
}

BOOL CAsyncSocket::GetSockName(SOCKADDR* lpSockAddr, int* lpSockAddrLen)
{
    return ::getsockname(m_hSocket, lpSockAddr, lpSockAddrLen) == 0;
}

BOOL CAsyncSocket::SetSockOpt(int nOptionName, const void* lpOptionValue, int nOptionLen,
                              int nLevel)
{
    return ::setsockopt(m_hSocket, nLevel, nOptionName, static_cast<const char*>(lpOptionValue),
                        nOptionLen) == 0;
}

BOOL CAsyncSocket::GetSockOpt(int nOptionName, void* lpOptionValue, int* lpOptionLen, int nLevel)
{
    return ::getsockopt(m_hSocket, nLevel, nOptionName, static_cast<char*>(lpOptionValue),
                        lpOptionLen) == 0;
}

BOOL CAsyncSocket::Accept(CAsyncSocket& rConnectedSocket, SOCKADDR* lpSockAddr, int* lpSockAddrLen)
{
    if (!rConnectedSocket.CheckEmpty()) {
        return FALSE;
    }
    const SOCKET accepted = ::accept(m_hSocket, lpSockAddr, lpSockAddrLen);
    if (accepted == INVALID_SOCKET) {
        return FALSE;
    }
    // The system has let it inherit the selection, under our number: its target selects anew.
    if (!rConnectedSocket.Attach(accepted, events)) {
        const KeptLastError kept;
        ::closesocket(accepted);
        return FALSE;
    }
    return TRUE;
}

BOOL CAsyncSocket::AsyncSelect(long lEvent)
{
    const HWND window = SocketWindow::FindWindowOf(*this, message);
    if (window == nullptr) {
        return Fail(WSAENOTSOCK);
    }
    if (::WSAAsyncSelect(m_hSocket, window, message, lEvent) != 0) {
        return FALSE;
    }
    events = lEvent;
    return TRUE;
}

BOOL CAsyncSocket::Bind(UINT nSocketPort, LPCTSTR lpszSocketAddress)
{
    const AddressList found =
        FindAddresses(m_hSocket, lpszSocketAddress, nSocketPort, AI_PASSIVE | AI_NUMERICHOST);
    return found != nullptr && Bind(found->ai_addr, static_cast<int>(found->ai_addrlen));
}

BOOL CAsyncSocket::Bind(const SOCKADDR* lpSockAddr, int nSockAddrLen)
{
    return ::bind(m_hSocket, lpSockAddr, nSockAddrLen) == 0;
}

void CAsyncSocket::Close()
{
    const SOCKET closed = Detach();
    if (closed != INVALID_SOCKET) {
        ::closesocket(closed);
    }
}

BOOL CAsyncSocket::Connect(LPCTSTR lpszHostAddress, UINT nHostPort)
{
    const AddressList found = FindAddresses(m_hSocket, lpszHostAddress, nHostPort, 0);
    return found != nullptr && Connect(found->ai_addr, static_cast<int>(found->ai_addrlen));
}

BOOL CAsyncSocket::Connect(const SOCKADDR* lpSockAddr, int nSockAddrLen)
{
    return ::connect(m_hSocket, lpSockAddr, nSockAddrLen) == 0;
}

BOOL CAsyncSocket::IOCtl(long lCommand, DWORD* lpArgument)
{
    return ::ioctlsocket(m_hSocket, lCommand, lpArgument) == 0;
}

BOOL CAsyncSocket::Listen(int nConnectionBacklog)
{
    return ::listen(m_hSocket, nConnectionBacklog) == 0;
}

BOOL CAsyncSocket::ShutDown(int nHow)
{
    return ::shutdown(m_hSocket, nHow) == 0;
}

int CAsyncSocket::Receive(void* lpBuf, int nBufLen, int nFlags)
{
    return ::recv(m_hSocket, static_cast<char*>(lpBuf), nBufLen, nFlags);
}

int CAsyncSocket::ReceiveFrom(void* lpBuf, int nBufLen, CString& rSocketAddress, UINT& rSocketPort,
                              int nFlags)
{
    Endpoint peer;
    const int received = ReceiveFrom(lpBuf, nBufLen, peer.Get(), &peer.length, nFlags);
    if (received == SOCKET_ERROR || !Describe(peer, rSocketAddress, rSocketPort)) {
        return SOCKET_ERROR;
    }
    return received;
}

int CAsyncSocket::ReceiveFrom(void* lpBuf, int nBufLen, SOCKADDR* lpSockAddr, int* lpSockAddrLen,
                              int nFlags)
{
    return ::recvfrom(m_hSocket, static_cast<char*>(lpBuf), nBufLen, nFlags, lpSockAddr,
                      lpSockAddrLen);
}

int CAsyncSocket::Send(const void* lpBuf, int nBufLen, int nFlags)
{
    return ::send(m_hSocket, static_cast<const char*>(lpBuf), nBufLen, nFlags);
}

int CAsyncSocket::SendTo(const void* lpBuf, int nBufLen, UINT nHostPort, LPCTSTR lpszHostAddress,
                         int nFlags)
{
    const LPCTSTR host = lpszHostAddress != nullptr ? lpszHostAddress : L"255.255.255.255";
    const AddressList found = FindAddresses(m_hSocket, host, nHostPort, 0);
    if (found == nullptr) {
        return SOCKET_ERROR;
    }
    return SendTo(lpBuf, nBufLen, found->ai_addr, static_cast<int>(found->ai_addrlen), nFlags);
}

int CAsyncSocket::SendTo(const void* lpBuf, int nBufLen, const SOCKADDR* lpSockAddr,
                         int nSockAddrLen, int nFlags)
{
    return ::sendto(m_hSocket, static_cast<const char*>(lpBuf), nBufLen, nFlags, lpSockAddr,
                    nSockAddrLen);
}

void CAsyncSocket::OnReceive(int) {}
void CAsyncSocket::OnSend(int) {}
void CAsyncSocket::OnOutOfBandData(int) {}
void CAsyncSocket::OnAccept(int) {}
void CAsyncSocket::OnConnect(int) {}
void CAsyncSocket::OnClose(int) {}

// A second socket would leave the first one open, with nobody to close it.
BOOL CAsyncSocket::CheckEmpty() const
{
    ASSERT(m_hSocket == INVALID_SOCKET);
    return m_hSocket == INVALID_SOCKET || Fail(WSAEISCONN);
}

void CAsyncSocket::Notify(int event, int error)
{
    switch (event) {
    case FD_READ: OnReceive(error); break;
    case FD_WRITE: OnSend(error); break;
    case FD_OOB: OnOutOfBandData(error); break;
    case FD_ACCEPT: OnAccept(error); break;
    case FD_CONNECT: OnConnect(error); break;
    case FD_CLOSE: OnClose(error); break;
    default: break;
    }
}
