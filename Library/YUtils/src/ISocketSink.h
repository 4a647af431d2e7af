// ISocketSink.h: how a socket answers.
#pragma once

#include <windows.h>

#include <unknwn.h>

class IBuffer;
class IInternetAddress;
class ISocket;

// The host implements them. Called on the socket's thread with the request's context and a Winsock
// or Win32 code, 0 for success. What is passed is borrowed: whoever wants to keep it adds a
// reference. An exception ends at the socket, unheard. The order is binary contract.
class ISocketSink : public IUnknown
{
public:
    virtual void OnRead(void* context, unsigned error, IBuffer* buffer) = 0;
    virtual void OnWrite(void* context, unsigned error, IBuffer* buffer, unsigned bytes) = 0;
    virtual void OnReadOOB(void* context, unsigned error, IBuffer* buffer) = 0;
    virtual void OnWriteOOB(void* context, unsigned error, IBuffer* buffer, unsigned bytes) = 0;
    virtual void OnConnect(void* context, unsigned error) = 0;
};

// For ReadFrom and Bind; found by dynamic_cast of the ISocketSink, so the same object has them.
class IReadFromSocketSink : public IUnknown
{
public:
    // address: the sender; null where nothing came. The last argument is 0, kept for flags.
    virtual void OnReadFrom(void* context, unsigned error, IBuffer* buffer,
                            IInternetAddress* address, unsigned flags) = 0;
};

class IBindSocketSink : public IUnknown
{
public:
    virtual void OnBind(void* context, unsigned error) = 0;
};

class IListenSocketSink : public IUnknown
{
public:
    // newSocket is connected and reads nothing before it is told to: set its sink here. Null, as
    // the addresses, where there is an error; an address that cannot be told is null.
    virtual void OnAccept(void* context, unsigned error, ISocket* newSocket,
                          IInternetAddress* localAddress, IInternetAddress* peerAddress) = 0;
};
