// Sockets of ours over the real loopback: what is asked is answered, whatever happens meanwhile.
#include "SocketKit.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"
#include "support/TestThread.h"

#include <stdexcept>
#include <utility>

namespace {

class SocketTest : public testing::TestWithParam<int>  // a family
{};

TEST_P(SocketTest, TalksBothWays)
{
    Connection pair(GetParam());
    ASSERT_TRUE(pair.server.socket);
    for (const auto& [from, to] :
         {std::pair(&pair.client, &pair.server), std::pair(&pair.server, &pair.client)}) {
        from->socket->Write(Context(3), MakeBytes("a line of text").Get());
        to->socket->Read(Context(4), MakeRoom(100).Get());
        ASSERT_TRUE(from->sink->WaitForCount(1) && to->sink->WaitForCount(1));
        EXPECT_EQ(to->sink->received, "a line of text");
        EXPECT_EQ(from->sink->answers, (std::vector<SocketAnswer>{{"write", Context(3), 0, 14}}));
        from->sink->answers.clear();
        to->sink->answers.clear();
    }
    // The end of the stream is told once.
    pair.server.socket->Shutdown(SD_SEND);
    pair.client.socket->Read(Context(5), MakeRoom(1).Get());
    pair.client.socket->Read(Context(6), MakeRoom(1).Get());
    ASSERT_TRUE(pair.client.sink->WaitForCount(2));
    EXPECT_EQ(pair.client.sink->answers,
              (std::vector<SocketAnswer>{{"read", Context(5), 0, 0},
                                         {"read", Context(6), ERROR_OPERATION_ABORTED, 0}}));
}

YUnknownPointer<IInternetAddress> GetOwnAddress(ISocket& socket)
{
    IInternetAddress* own = nullptr;
    EXPECT_EQ(socket.GetSockName(own), 0U);
    return YUnknownPointer<IInternetAddress>::Adopt(own);
}

YUnknownPointer<IInternetAddress> MakeDatagramLoopback(int family)
{
    const auto address = MakeLoopback(0, family);
    addrinfo hints{};
    addrinfo* found = nullptr;
    hints.ai_family = family;
    hints.ai_socktype = SOCK_DGRAM;
    EXPECT_EQ(::getaddrinfo(nullptr, "0", &hints, &found), 0);
    EXPECT_TRUE(address->SetFromAddrInfo(found));
    ::freeaddrinfo(found);
    return address;
}

struct DatagramSocket
{
    explicit DatagramSocket(int family)
    {
        socket->SetSink(sink.Get());
        EXPECT_EQ(socket->Create(MakeDatagramLoopback(family).Get()), 0U);
        EXPECT_EQ(socket->Bind(nullptr, MakeLoopback(0, family).Get()), 0U);
        address = GetOwnAddress(*socket);
    }

    YUnknownPointer<RecordingSink> sink = YUnknownPointer<RecordingSink>::Make();
    YUnknownPointer<YIoSocket> socket = YUnknownPointer<YIoSocket>::Make();
    YUnknownPointer<IInternetAddress> address;
};

TEST_P(SocketTest, KeepsDatagramsApart)
{
    DatagramSocket left(GetParam());
    DatagramSocket right(GetParam());
    const struct
    {
        unsigned size, room, error;
    } cases[] = {{5, 100, 0}, {0, 100, 0}, {100, 99, WSAEMSGSIZE}, {1400, 1400, 0}};
    for (const auto& c : cases) {
        left.sink->answers.clear();
        right.sink->answers.clear();
        right.sink->received.clear();
        const std::string text(c.size, 'd');
        right.socket->ReadFrom(Context(1), MakeRoom(c.room).Get());
        left.socket->WriteTo(Context(2), right.address.Get(), MakeBytes(text).Get());
        ASSERT_TRUE(right.sink->WaitForCount(1) && left.sink->WaitForCount(1)) << c.size;
        const unsigned bytes = c.error == 0 ? c.size : 0;
        EXPECT_EQ(right.sink->answers,
                  (std::vector<SocketAnswer>{{"readFrom", Context(1), c.error, bytes}}));
        EXPECT_EQ(left.sink->answers,
                  (std::vector<SocketAnswer>{{"write", Context(2), 0, c.size}}));
        if (bytes > 0) {
            EXPECT_EQ(right.sink->received, text);
            EXPECT_TRUE(right.sink->sender && right.sink->sender->Equals(left.address.Get()));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Families, SocketTest, testing::Values(AF_INET, AF_INET6));

// A socket that is about to give an answer of one kind, as often as it is asked to. Nobody else
// holds it.
class Situation
{
public:
    explicit Situation(std::string what) : kind(std::move(what))
    {
        if (kind == "accept") {
            socket = std::exchange(listener.socket, {});
            socket->SetSink(listener.sink.Get());
            record = listener.sink.Get();
        } else if (kind == "readFrom") {
            socket = std::exchange(datagrams.socket, {});
            record = datagrams.sink.Get();
        } else if (kind == "bind" || kind == "connect") {
            const auto made = YUnknownPointer<YIoSocket>::Make();
            EXPECT_EQ(made->Create(listener.address.Get()), 0U);
            made->SetSink(binder.Get());
            socket = YUnknownPointer<ISocket>(made.Get());
            record = binder.Get();
        } else {
            socket = std::exchange(pair.client.socket, {});
            record = pair.client.sink.Get();
        }
    }
    ~Situation() { record->onAnswer = {}; }
    Situation(const Situation&) = delete;
    Situation& operator=(const Situation&) = delete;

    void Ask()
    {
        if (kind == "accept") {
            callers.push_back(YUnknownPointer<YIoSocket>::Make());
            callers.back()->CreateAndConnect(nullptr, "127.0.0.1", listener.address->GetPort(),
                                             nullptr);
            socket->Accept(Context(1));
        } else if (kind == "readFrom") {
            socket->ReadFrom(Context(1), MakeRoom(9).Get());
            socket->WriteTo(Context(2), datagrams.address.Get(), MakeBytes("news").Get());
        } else if (kind == "bind") {
            EXPECT_EQ(socket->Bind(Context(1), MakeLoopback(0).Get()), unsigned{ERROR_IO_PENDING});
        } else if (kind == "connect") {
            socket->Connect(Context(1), listener.address.Get());
        } else if (kind.starts_with("read")) {
            socket->Read(Context(1), MakeRoom(9).Get());
            kind == "read" ? pair.server.socket->Write(nullptr, MakeBytes("news").Get())
                           : pair.server.socket->WriteOOB(nullptr, MakeBytes("!").Get());
        } else if (kind == "write") {
            socket->Write(Context(1), MakeBytes("news").Get());
        } else {
            socket->WriteOOB(Context(1), MakeBytes("!").Get());
        }
    }
    bool WaitForCount(std::size_t count)
    {
        return PumpUntil([&] { return record->Count(kind) >= count; }, 20'000);
    }
    // At the first answer only.
    void OnAnswer(std::function<void()> work)
    {
        record->onAnswer = [this, work, isDone = false](const SocketAnswer& answer) mutable {
            if (answer.what == kind && !std::exchange(isDone, true)) {
                work();
            }
        };
    }

    const std::string kind;
    YUnknownPointer<ISocket> socket;
    SocketRecord* record = nullptr;

private:
    Listener listener;
    Connection pair;
    DatagramSocket datagrams{AF_INET};
    YUnknownPointer<BindingSink> binder = YUnknownPointer<BindingSink>::Make();
    std::vector<YUnknownPointer<YIoSocket>> callers;
};

class SocketAnswers : public testing::TestWithParam<const char*>
{
protected:
    Situation situation{GetParam()};
};

TEST_P(SocketAnswers, MayTakeTheLastReference)
{
    situation.OnAnswer([&] { situation.socket.Reset(); });
    situation.Ask();
    EXPECT_TRUE(situation.WaitForCount(1));
    PumpMessages();
    EXPECT_EQ(situation.record->Count(GetParam()), 1U);
}

TEST_P(SocketAnswers, MayCloseTheSocket)
{
    situation.OnAnswer([&] {
        situation.socket->Read(Context(7), MakeRoom(9).Get());
        situation.socket->Write(Context(8), MakeBytes("news").Get());
        const auto before = situation.record->answers.size();
        situation.socket->Close();
        EXPECT_GE(situation.record->answers.size(), before + 2);
        situation.socket->Read(Context(9), MakeRoom(9).Get());
    });
    situation.Ask();
    const auto& answers = situation.record->answers;
    const SocketAnswer last{"read", Context(9), ERROR_OPERATION_ABORTED};
    EXPECT_TRUE(PumpUntil([&] { return !answers.empty() && answers.back() == last; }, 20'000));
}

TEST_P(SocketAnswers, MayHandleMessages)
{
    bool isNestedTold = false;
    situation.OnAnswer([&] {
        situation.Ask();
        isNestedTold = situation.WaitForCount(2);
        situation.socket.Reset();
    });
    situation.Ask();
    EXPECT_TRUE(situation.WaitForCount(2) && isNestedTold);
}

TEST_P(SocketAnswers, MayThrow)
{
    situation.OnAnswer([] { throw std::runtime_error("an answer"); });
    situation.Ask();
    EXPECT_TRUE(situation.WaitForCount(1));
    situation.Ask();
    EXPECT_TRUE(situation.WaitForCount(2));
}

INSTANTIATE_TEST_SUITE_P(Kinds, SocketAnswers,
                         testing::Values("read", "write", "readOOB", "writeOOB", "connect",
                                         "accept", "readFrom", "bind"),
                         [](const auto& kind) { return std::string(kind.param); });

TEST(SocketClose, EndsWhatWaitsInOrder)
{
    const auto sink = YUnknownPointer<RecordingSink>::Make();
    const auto socket = YUnknownPointer<YIoSocket>::Make();
    socket->SetSink(sink.Get());
    socket->SetAcceptSink(sink.Get());
    ASSERT_EQ(socket->Create(MakeLoopback(0).Get()), 0U);
    socket->Connect(Context(1), nullptr);  // finished at once
    socket->Accept(Context(3));
    socket->Write(Context(4), MakeBytes("x").Get());
    socket->Read(Context(5), MakeRoom(1).Get());
    socket->Read(Context(6), MakeRoom(1).Get());
    {
        const Listener listener;
        socket->Connect(Context(2), listener.address.Get());
    }
    EXPECT_TRUE(sink->answers.empty());
    sink->onAnswer = [&](const SocketAnswer& answer) {
        if (answer.what == "read" && sink->answers.size() < 1000) {
            socket->Read(answer.context, MakeRoom(1).Get());
        }
    };
    socket->Close();
    std::string order;
    for (const SocketAnswer& answer : sink->answers) {
        order += answer.what + std::to_string(answer.error) + ' ';
    }
    EXPECT_EQ(order, "connect10014 read995 read995 write995 accept995 connect995 ");
    EXPECT_TRUE(sink->WaitForCount(1000));  // who reads for ever keeps no thread
    PumpMessages();
}

TEST(SocketRelease, ByAnotherThreadWhileAnswersArePosted)
{
    for (int round = 0; round < 200; ++round) {
        auto socket = YUnknownPointer<YIoSocket>::Make();
        const auto sink = YUnknownPointer<RecordingSink>::Make();
        socket->SetSink(sink.Get());
        ASSERT_EQ(socket->Create(MakeLoopback(0).Get()), 0U);
        socket->Connect(Context(1), nullptr);
        socket->Read(Context(2), MakeRoom(1).Get());
        const TestThread other([&] { socket.Reset(); });
        ASSERT_TRUE(PumpUntil([&] { return CountReferences(sink.Get()) == 1; }, 20'000));
        ASSERT_EQ(sink->answers.size(), 2U);
    }
}

BOOL WINAPI RefusePost(HWND, UINT, WPARAM, LPARAM)
{
    ::SetLastError(ERROR_NOT_ENOUGH_QUOTA);
    return FALSE;
}

TEST(SocketFaults, FullQueueOfMessagesLosesNothing)
{
    Connection pair;
    {
        const ImportHook hook(L"CommonUi.dll", "user32.dll", "PostMessageW", &RefusePost);
        pair.client.socket->Write(Context(1), MakeBytes("first").Get());
        EXPECT_TRUE(pair.client.sink->answers.empty());
        EXPECT_TRUE(pair.client.sink->WaitForCount(1));
    }
    pair.client.socket->Write(Context(2), MakeBytes("second").Get());
    EXPECT_TRUE(pair.client.sink->WaitForCount(2));
    const ImportHook hook(L"CommonUi.dll", "user32.dll", "PostMessageW", &RefusePost);
    pair.client.socket->Read(Context(3), MakeRoom(1).Get());
    const TestThread other([&] { pair.client.socket.Reset(); });
    EXPECT_TRUE(PumpUntil([&] { return CountReferences(pair.client.sink.Get()) == 1; }, 20'000));
    EXPECT_EQ(pair.client.sink->answers.back(),
              (SocketAnswer{"read", Context(3), ERROR_OPERATION_ABORTED}));
}

// The handle may be used again at once, by another attachment.
TEST(SocketFaults, LateNotificationReachesNobody)
{
    const Listener listener;  // attached first
    const auto sink = YUnknownPointer<RecordingSink>::Make();
    const auto socket = YUnknownPointer<YIoSocket>::Make();
    socket->SetSink(sink.Get());
    ASSERT_EQ(socket->Create(listener.address.Get()), 0U);
    socket->Close();
    ASSERT_EQ(socket->Create(listener.address.Get()), 0U);
    socket->Connect(Context(1), listener.address.Get());
    const HWND window = ::FindWindowExW(HWND_MESSAGE, nullptr, L"CommonFrameworkSockets", nullptr);
    ::SendMessageW(window, WM_USER + 1, socket->m_hSocket,
                   WSAMAKESELECTREPLY(FD_CONNECT, WSAECONNREFUSED));
    EXPECT_TRUE(sink->answers.empty());
    EXPECT_TRUE(sink->WaitForCount(1));
    EXPECT_EQ(sink->answers.back().error, 0U);
}

TEST(SocketAccept, TakesThoseThatCameEarly)
{
    const Listener listener;
    End clients[3];
    for (End& client : clients) {
        const auto made = YUnknownPointer<YIoSocket>::Make();
        client.socket = YUnknownPointer<ISocket>(made.Get());
        made->SetSink(client.sink.Get());
        made->CreateAndConnect(nullptr, "127.0.0.1", listener.address->GetPort(), nullptr);
        ASSERT_TRUE(client.sink->WaitForCount(1));
    }
    for (unsigned i = 0; i < 3; ++i) {
        listener.socket->Accept(Context(i));
    }
    ASSERT_TRUE(listener.sink->WaitForCount(3));
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(listener.sink->answers[i], (SocketAnswer{"accept", Context(i)}));
        IInternetAddress* peer = nullptr;
        ASSERT_EQ(listener.sink->accepted[i]->GetPeerName(peer), 0U);
        const auto owned = YUnknownPointer<IInternetAddress>::Adopt(peer);
        EXPECT_TRUE(owned->Equals(GetOwnAddress(*clients[i].socket).Get()));
    }
    EXPECT_TRUE(listener.sink->receiver->Equals(listener.address.Get()));
}

TEST(SocketStream, QueuesForASlowReaderWithoutCopies)
{
    constexpr unsigned count = 1000, size = 8389;  // 8 MiB
    Connection pair;
    std::string sent;
    std::vector<YUnknownPointer<IBuffer>> buffers;
    for (unsigned i = 0; i < count; ++i) {
        std::string text(size, static_cast<char>('a' + i % 26));
        text.front() = static_cast<char>(i);
        buffers.push_back(MakeBytes(text));
        sent += text;
    }
    const ResourceCounts before = CountResources();
    for (unsigned i = 0; i < count; ++i) {
        pair.client.socket->Write(Context(i), buffers[i].Get());
    }
    EXPECT_LE(CountResources().blocks, before.blocks + static_cast<long>(count));
    PumpMessages();
    const auto& answers = pair.client.sink->answers;
    EXPECT_LT(answers.size(), count);  // the system does not take all of it
    pair.server.sink->onAnswer = [&](const SocketAnswer&) {
        pair.server.socket->Read(nullptr, MakeRoom(0x10000).Get());
    };
    pair.server.socket->Read(nullptr, MakeRoom(0x10000).Get());
    EXPECT_TRUE(
        PumpUntil([&] { return pair.server.sink->received.size() >= sent.size(); }, 60'000));
    EXPECT_TRUE(pair.client.sink->WaitForCount(count));
    EXPECT_TRUE(pair.server.sink->received == sent);
    for (unsigned i = 0; i < answers.size(); ++i) {
        EXPECT_TRUE(answers[i].context == Context(i) && answers[i].error == 0);
    }
    pair.server.sink->onAnswer = {};
}

TEST(SocketOptions, HoldBeforeTheSocketAndAfter)
{
    const BOOL on = TRUE;
    const BOOL off = FALSE;
    const auto socket = YUnknownPointer<YIoSocket>::Make();
    EXPECT_EQ(socket->SetSockOpt(SO_SNDBUF, &off, 4, SOL_SOCKET), 0U);
    EXPECT_EQ(socket->SetSockOpt(SO_SNDBUF, &on, 2, SOL_SOCKET), unsigned{WSAEFAULT});
    EXPECT_NE(socket->SetSockOpt(SO_SNDBUF, &on, 4, SOL_SOCKET), 0U);
    EXPECT_EQ(socket->SetSockOpt(SO_OOBINLINE, &on, 4, SOL_SOCKET), 0U);
    EXPECT_EQ(socket->SetSockOpt(TCP_NODELAY, &on, 4, IPPROTO_TCP), 0U);
    EXPECT_EQ(socket->Create(MakeLoopback(0).Get()), 0U);
    for (const auto& [option, level] :
         {std::pair(SO_OOBINLINE, SOL_SOCKET), std::pair(TCP_NODELAY, int{IPPROTO_TCP})}) {
        BOOL value = FALSE;
        int length = sizeof value;
        EXPECT_EQ(socket->GetSockOpt(option, &value, &length, level), 0U);
        EXPECT_TRUE(value) << option;
    }
}

TEST(SocketConnect, TellsWhyItFailed)
{
    const auto free = Listener().address;  // nobody listens there any more
    const auto nowhere =
        YUnknownPointer<IInternetAddress>::Adopt(MakeNumericAddress("255.255.255.255", 9));
    for (const auto& address : {free, nowhere}) {
        const auto sink = YUnknownPointer<RecordingSink>::Make();
        const auto socket = YUnknownPointer<YIoSocket>::Make();
        socket->SetSink(sink.Get());
        ASSERT_EQ(socket->Create(address.Get()), 0U);
        socket->Connect(Context(1), address.Get());
        EXPECT_TRUE(sink->answers.empty());
        ASSERT_TRUE(sink->WaitForCount(1));
        // The system has several codes for an address to which no way leads.
        const unsigned code = sink->answers.front().error;
        EXPECT_TRUE(address == nowhere ? code != 0 : code == WSAECONNREFUSED) << code;
    }
}

struct FaultCount
{
    static inline int calls, failing;
};

// One of the system's functions, of which one call fails.
template <int id, class Function>
class Fault;
template <int id, class Result, class... Arguments>
class Fault<id, Result WSAAPI(Arguments...)>
{
public:
    Fault(const wchar_t* module, const char* library, const char* function, Result failure)
        : hook(module, library, function, &Call)
    {
        real = hook.template Original<Result WSAAPI(Arguments...)>();
        failed = failure;
    }

private:
    static Result WSAAPI Call(Arguments... arguments)
    {
        if (++FaultCount::calls == FaultCount::failing) {
            ::WSASetLastError(WSAENOBUFS);
            return failed;
        }
        return real(arguments...);
    }

    static inline Result WSAAPI (*real)(Arguments...);
    static inline Result failed;
    const ImportHook hook;
};

// Ends where something fails; whatever was asked for until then is answered.
void Converse()
{
    const BOOL on = TRUE;
    const auto sink = YUnknownPointer<RecordingSink>::Make();
    const auto listener = YUnknownPointer<YIoSocket>::Make();
    const auto client = YUnknownPointer<YIoSocket>::Make();
    auto own = MakeLoopback(0);
    listener->SetAcceptSink(sink.Get());
    client->SetSink(sink.Get());
    client->SetSockOpt(TCP_NODELAY, &on, sizeof on, IPPROTO_TCP);
    bool isFailed = false;
    sink->onAnswer = [&](const SocketAnswer& answer) { isFailed |= answer.error != 0; };
    IInternetAddress* bound = nullptr;
    if (listener->Create(own.Get()) || listener->Bind(nullptr, own.Get()) || listener->Listen(1) ||
        listener->GetSockName(bound)) {
        return;
    }
    own = YUnknownPointer<IInternetAddress>::Adopt(bound);
    listener->Accept(Context(1));
    client->CreateAndConnect(Context(2), "127.0.0.1", own->GetPort(), nullptr);
    std::size_t asked = 2;
    const auto goesOn = [&] {
        EXPECT_TRUE(PumpUntil([&] { return isFailed || sink->answers.size() == asked; }, 20'000));
        return !isFailed;
    };
    for (bool isUrgent = false; goesOn() && asked < 6; isUrgent = true) {
        ISocket& server = *sink->accepted.front();
        server.SetSink(sink.Get());
        server.Read(Context(3), MakeRoom(9).Get());
        isUrgent ? client->WriteOOB(Context(4), MakeBytes("!").Get())
                 : client->Write(Context(4), MakeBytes("news").Get());
        asked += 2;
    }
    for (const auto& server : std::exchange(sink->accepted, {})) {
        server->Close();
    }
    client->Close();
    listener->Close();
    PumpMessages();
    EXPECT_EQ(sink->answers.size(), asked);
}

TEST(SocketFaults, EveryFailingCallIsToldAndLeavesNothing)
{
    constexpr const wchar_t* ui = L"CommonUi.dll";
    constexpr const wchar_t* framework = L"CommonFramework.dll";
    constexpr const char* winsock = "ws2_32.dll";
    const Listener keeper;  // of the framework's window
    const Fault<0, decltype(::socket)> socket{ui, winsock, "socket", INVALID_SOCKET};
    const Fault<1, decltype(::bind)> bind{ui, winsock, "bind", -1};
    const Fault<2, decltype(::listen)> listen{ui, winsock, "listen", -1};
    const Fault<3, decltype(::connect)> connect{ui, winsock, "connect", -1};
    const Fault<4, decltype(::send)> send{ui, winsock, "send", -1};
    const Fault<5, decltype(::recv)> recv{ui, winsock, "recv", -1};
    const Fault<6, decltype(::setsockopt)> option{ui, winsock, "setsockopt", -1};
    const Fault<7, decltype(::getsockname)> own{ui, winsock, "getsockname", -1};
    const Fault<8, decltype(::getpeername)> peer{ui, winsock, "getpeername", -1};
    const Fault<9, decltype(::PostMessageW)> post{ui, "user32.dll", "PostMessageW", 0};
    const Fault<10, decltype(::CreateWindowExW)> window{ui, "user32.dll", "CreateWindowExW",
                                                        nullptr};
    const Fault<11, decltype(::accept)> accept{framework, winsock, "accept", INVALID_SOCKET};
    const Fault<12, decltype(::WSAAsyncSelect)> select{framework, winsock, "WSAAsyncSelect", -1};
    FaultCount::failing = 0;
    Converse();  // makes what is made once
    do {
        SCOPED_TRACE(++FaultCount::failing);
        const LeakCheck leaks;
        FaultCount::calls = 0;
        Converse();
    } while (FaultCount::calls >= FaultCount::failing && !HasFailure());
    EXPECT_GT(FaultCount::failing, 30);
}

}  // namespace
