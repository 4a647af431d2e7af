// ISocket.h: a socket whose operations answer later.
#pragma once

#include <windows.h>

#include <unknwn.h>

class IBuffer;
class IHostnameResolverSink;
class IInternetAddress;
class IListenSocketSink;
class ISocketSink;

// What may wait is a request: it carries a context, which is the caller's own business, and is
// answered through a sink by a call with that context. Answers come on the socket's thread, the one
// that made its first socket or connection, while that pumps messages, and never inside the call
// that made the request (but for one whose socket gets no window: nothing could come later there).
// Requests of a kind are answered in their order. A request holds its buffer and its addresses until
// it is answered; nobody else changes them meanwhile.
//
// The library implements it (YIoSocket). All operations are for the socket's thread, except the
// references; what is called inside an answer may be anything, Close and the last Release too. The
// codes are Winsock's or Win32's, 0 for success. The order is binary contract.
class ISocket : public IUnknown
{
public:
    // OnRead: up to the buffer's capacity was stored, and the buffer's size tells how much. 0 bytes
    // without error: the peer sends no more; every later read ends with ERROR_OPERATION_ABORTED.
    virtual void Read(void* context, IBuffer* buffer) = 0;
    // OnWrite, when all that the buffer holds is on its way: its byte count is that of the last
    // piece, so it is the whole size where the system took all at once. Waits for the connection.
    virtual void Write(void* context, IBuffer* buffer) = 0;
    // Ends the socket. Before it returns, finished requests have been answered and the others end
    // with ERROR_OPERATION_ABORTED, as do those that are made later; Create begins anew.
    virtual void Close() = 0;
    // Null: answers are dropped. The first sink that is an IBindSocketSink as well, by
    // dynamic_cast, stays the one for Bind.
    virtual void SetSink(ISocketSink* sink) = 0;
    virtual void SetAcceptSink(IListenSocketSink* sink) = 0;
    // A socket for the address's family, type and protocol, with the options set so far.
    // ERROR_OUTOFMEMORY: no window; WSAEISCONN: there is a socket.
    virtual unsigned Create(IInternetAddress* address) = 0;
    // With a bind sink ERROR_IO_PENDING: OnBind has the code. Else the code itself.
    virtual unsigned Bind(void* context, IInternetAddress* address) = 0;
    virtual unsigned Listen(int backlog) = 0;
    // OnAccept of the accept sink, for one connection.
    virtual void Accept(void* context) = 0;
    // OnConnect. While one waits, another is ignored: it is never answered.
    virtual void Connect(void* context, const char* hostName, unsigned short port,
                         IHostnameResolverSink* resolverSink) = 0;  // as CreateAndConnect
    virtual void Connect(void* context, IInternetAddress* address) = 0;
    // OnConnect. Makes the socket where there is none yet. A name is one for the host's resolver,
    // whose answer also goes to resolverSink (which may be null), and of its addresses the first is
    // the one; a numeric address (MakeNumericAddress) asks nobody.
    virtual void CreateAndConnect(void* context, const char* hostName, unsigned short port,
                                  IHostnameResolverSink* resolverSink) = 0;
    virtual unsigned Shutdown(int how) = 0;  // SD_RECEIVE, SD_SEND, SD_BOTH
    virtual unsigned EnableInheritance(bool isInheritable) = 0;  // by child processes
    // Bytes. SO_OOBINLINE and TCP_NODELAY may be set before there is a socket. Of SO_SNDBUF a 0,
    // which would make every write wait for the peer, is taken and ignored.
    virtual unsigned SetSockOpt(int option, const void* value, int length, int level) = 0;
    virtual unsigned GetSockOpt(int option, void* value, int* length, int level) = 0;
    // A new address, of which the caller owns the reference. MSG_ADDRESS_NOT_CONVERTIBLE: it
    // is of a kind that we have none for.
    virtual unsigned GetPeerName(IInternetAddress*& address) = 0;
    virtual unsigned GetSockName(IInternetAddress*& address) = 0;
    // Does nothing and is never answered. Out-of-band data goes to the front ordinary read, which
    // is then answered through OnReadOOB.
    virtual void ReadOOB(void* context, IBuffer* buffer) = 0;
    // OnWriteOOB. The peer takes the last byte for the urgent one.
    virtual void WriteOOB(void* context, IBuffer* buffer) = 0;
    // Of a datagram socket: OnWrite.
    virtual void WriteTo(void* context, IInternetAddress* address, IBuffer* buffer) = 0;
    // Of a datagram socket: OnReadFrom of a sink that is an IReadFromSocketSink as well.
    virtual void ReadFrom(void* context, IBuffer* buffer) = 0;
};
