// SocketKit.h: sockets under test, and a sink that remembers what it was told.
#pragma once

#include "IHostnameResolver.h"
#include "YAddress.h"
#include "YBasicBuffer.h"
#include "YIoSocket.h"
#include "YUnknownPointer.h"
#include "support/Input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

inline YUnknownPointer<IBuffer> MakeRoom(unsigned bytes)
{
    return YUnknownPointer<YBasicBuffer>::Make(bytes);
}

inline YUnknownPointer<IBuffer> MakeBytes(std::string_view bytes)
{
    const auto buffer = MakeRoom(static_cast<unsigned>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer->Data());
    buffer->SetSize(static_cast<unsigned>(bytes.size()));
    return buffer;
}

inline std::string GetText(IBuffer* buffer)
{
    return buffer ? std::string(reinterpret_cast<char*>(buffer->Data()), buffer->Size())
                  : std::string();
}

inline YUnknownPointer<IInternetAddress> MakeLoopback(unsigned short port, int family = AF_INET)
{
    return YUnknownPointer<IInternetAddress>::Adopt(
        MakeNumericAddress(family == AF_INET ? "127.0.0.1" : "::1", port));
}

// "read", "write", "readOOB", "writeOOB", "connect", "readFrom", "bind", "accept".
struct SocketAnswer
{
    std::string what;
    void* context = nullptr;
    unsigned error = 0;
    unsigned bytes = 0;  // of a read: the buffer's size

    bool operator==(const SocketAnswer&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const SocketAnswer& answer)
{
    return stream << answer.what << '(' << answer.context << ", " << answer.error << ", "
                  << answer.bytes << ')';
}

// What a sink was told.
struct SocketRecord
{
    bool WaitForCount(std::size_t count)
    {
        return PumpUntil([&] { return answers.size() >= count; }, 20'000);
    }
    std::size_t Count(std::string_view what) const
    {
        return static_cast<std::size_t>(
            std::count_if(answers.begin(), answers.end(),
                          [&](const SocketAnswer& answer) { return answer.what == what; }));
    }

    std::vector<SocketAnswer> answers;
    std::string received;
    std::string urgent;
    std::vector<YUnknownPointer<ISocket>> accepted;
    YUnknownPointer<IInternetAddress> sender, receiver;
    std::function<void(const SocketAnswer&)> onAnswer;
};

struct SocketSinks : ISocketSink, IReadFromSocketSink, IListenSocketSink
{};

// Remembers every answer, then does what its test says.
template <class Sinks>
class RecordingSinkOf : public YUnknown<Sinks>, public SocketRecord
{
public:
    void OnRead(void* context, unsigned error, IBuffer* buffer) override
    {
        received += GetText(buffer);
        Note({"read", context, error, buffer->Size()});
    }
    void OnWrite(void* context, unsigned error, IBuffer*, unsigned bytes) override
    {
        Note({"write", context, error, bytes});
    }
    void OnReadOOB(void* context, unsigned error, IBuffer* buffer) override
    {
        urgent += GetText(buffer);
        Note({"readOOB", context, error, buffer->Size()});
    }
    void OnWriteOOB(void* context, unsigned error, IBuffer*, unsigned bytes) override
    {
        Note({"writeOOB", context, error, bytes});
    }
    void OnConnect(void* context, unsigned error) override { Note({"connect", context, error}); }
    void OnReadFrom(void* context, unsigned error, IBuffer* buffer, IInternetAddress* address,
                    unsigned) override
    {
        received += GetText(buffer);
        sender = YUnknownPointer<IInternetAddress>(address);
        Note({"readFrom", context, error, buffer->Size()});
    }
    void OnAccept(void* context, unsigned error, ISocket* newSocket, IInternetAddress* local,
                  IInternetAddress* peer) override
    {
        if (newSocket) {
            accepted.emplace_back(newSocket);
            sender = YUnknownPointer<IInternetAddress>(peer);
            receiver = YUnknownPointer<IInternetAddress>(local);
        }
        Note({"accept", context, error});
    }

protected:
    void Note(const SocketAnswer& answer)
    {
        answers.push_back(answer);
        if (onAnswer) {
            onAnswer(answer);
        }
    }
};
using RecordingSink = RecordingSinkOf<SocketSinks>;

struct BindSinks : SocketSinks, IBindSocketSink
{};

class BindingSink : public RecordingSinkOf<BindSinks>
{
public:
    void OnBind(void* context, unsigned error) override { Note({"bind", context, error}); }
};

// Its references now. 1: the test's own is the last one.
template <class Object>
ULONG CountReferences(Object* object)
{
    object->AddRef();
    return object->Release();
}

inline void* Context(unsigned number)
{
    return reinterpret_cast<void*>(static_cast<UINT_PTR>(number));
}

// A listener on a free port of the loopback.
struct Listener
{
    explicit Listener(int family = AF_INET)
    {
        socket->SetAcceptSink(sink.Get());
        EXPECT_EQ(socket->Create(MakeLoopback(0, family).Get()), 0U);
        EXPECT_EQ(socket->Bind(nullptr, MakeLoopback(0, family).Get()), 0U);
        EXPECT_EQ(socket->Listen(5), 0U);
        IInternetAddress* own = nullptr;
        EXPECT_EQ(socket->GetSockName(own), 0U);
        address = YUnknownPointer<IInternetAddress>::Adopt(own);
    }

    YUnknownPointer<RecordingSink> sink = YUnknownPointer<RecordingSink>::Make();
    YUnknownPointer<YIoSocket> socket = YUnknownPointer<YIoSocket>::Make();
    YUnknownPointer<IInternetAddress> address;
};

// One end of a connection.
struct End
{
    YUnknownPointer<RecordingSink> sink = YUnknownPointer<RecordingSink>::Make();
    YUnknownPointer<ISocket> socket;
};

// Two connected sockets of ours.
struct Connection
{
    explicit Connection(int family = AF_INET)
    {
        Listener listener(family);
        const auto made = YUnknownPointer<YIoSocket>::Make();
        client.socket = YUnknownPointer<ISocket>(made.Get());
        client.socket->SetSink(client.sink.Get());
        listener.socket->Accept(Context(1));
        EXPECT_EQ(client.socket->Create(listener.address.Get()), 0U);
        client.socket->Connect(Context(2), listener.address.Get());
        EXPECT_TRUE(client.sink->WaitForCount(1) && listener.sink->WaitForCount(1));
        EXPECT_EQ(client.sink->answers, (std::vector<SocketAnswer>{{"connect", Context(2)}}));
        EXPECT_EQ(listener.sink->answers, (std::vector<SocketAnswer>{{"accept", Context(1)}}));
        if (!listener.sink->accepted.empty()) {
            server.socket = listener.sink->accepted.front();
            server.socket->SetSink(server.sink.Get());
        }
        client.sink->answers.clear();
    }

    End client;
    End server;
};
