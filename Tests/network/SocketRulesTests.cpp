// The rules of a socket, step by step: the network is played, so that every order of its events
// can be.
#include "CommonUiInit.h"
#include "SocketKit.h"
#include "YReportMessageParams.h"
#include "support/CaseName.h"
#include "support/ImportHook.h"

#include <map>
#include <random>
#include <stdexcept>

namespace {

// The byte stream that the peer sends: letters in their order, for ever.
char GetByte(std::size_t position)
{
    return static_cast<char>('a' + position % 26);
}

struct NetworkState
{
    std::size_t arrived = 0, taken = 0;  // of the stream
    bool hasEnded = false;  // the peer has closed
    int failure = 0;  // of receiving
    bool isFailureLasting = false;
    std::size_t room = 0;  // for what is sent
    std::string sent, log;
    std::map<std::size_t, unsigned> pieces;  // of what was sent, by their ends
    std::vector<std::pair<HWND, UINT>> posts;
};

// In place of the system: nothing leaves, nothing comes but what the test says.
struct FakeNetwork
{
    static inline NetworkState state;

    ~FakeNetwork() { state = {}; }

private:
    static int Fail(int code)
    {
        ::WSASetLastError(code);
        return SOCKET_ERROR;
    }
    static SOCKET WSAAPI MakeSocket(int, int, int) { return 0x1230; }
    static int WSAAPI CloseSocket(SOCKET) { return 0; }
    static int WSAAPI Select(SOCKET, HWND, UINT, long) { return 0; }
    static int WSAAPI Connect(SOCKET, const sockaddr* peer, int)
    {
        const auto port = ::ntohs(reinterpret_cast<const sockaddr_in*>(peer)->sin_port);
        state.log += "->" + std::to_string(port) + ' ';
        return Fail(WSAEWOULDBLOCK);
    }
    static int WSAAPI Receive(SOCKET socket, char* data, int room, int flags)
    {
        if (flags & MSG_OOB) {
            *data = 'U';
            return 1;
        }
        if (socket == INVALID_SOCKET) {
            return Fail(WSAENOTSOCK);
        }
        if (state.failure != 0) {
            return Fail(state.isFailureLasting ? state.failure : std::exchange(state.failure, 0));
        }
        if (state.taken == state.arrived) {
            return state.hasEnded ? 0 : Fail(WSAEWOULDBLOCK);
        }
        int count = 0;
        for (; count < room && state.taken < state.arrived; ++count) {
            data[count] = GetByte(state.taken++);
        }
        return count;
    }
    static int WSAAPI Send(SOCKET socket, const char* data, int bytes, int)
    {
        if (socket == INVALID_SOCKET) {
            return Fail(WSAENOTSOCK);
        }
        const int taken = std::min(bytes, static_cast<int>(state.room));
        state.room -= static_cast<std::size_t>(taken);
        state.sent.append(data, static_cast<std::size_t>(taken));
        if (taken > 0) {
            state.pieces[state.sent.size()] = static_cast<unsigned>(taken);
        }
        return taken > 0 ? taken : Fail(WSAEWOULDBLOCK);
    }
    static BOOL WINAPI Post(HWND window, UINT message, WPARAM, LPARAM)
    {
        state.posts.emplace_back(window, message);
        return TRUE;
    }

    const ImportHook hooks[7] = {
        {L"CommonUi.dll", "ws2_32.dll", "socket", &MakeSocket},
        {L"CommonUi.dll", "ws2_32.dll", "connect", &Connect},
        {L"CommonUi.dll", "ws2_32.dll", "recv", &Receive},
        {L"CommonUi.dll", "ws2_32.dll", "send", &Send},
        {L"CommonUi.dll", "user32.dll", "PostMessageW", &Post},
        {L"CommonFramework.dll", "ws2_32.dll", "closesocket", &CloseSocket},
        {L"CommonFramework.dll", "ws2_32.dll", "WSAAsyncSelect", &Select}};
};

class EventfulSocket : public YIoSocket
{
public:
    using YIoSocket::OnClose;
    using YIoSocket::OnConnect;
    using YIoSocket::OnOutOfBandData;
    using YIoSocket::OnReceive;
    using YIoSocket::OnSend;
};

// The host's: keeps every question until the test answers it.
class FakeResolver : public YUnknown<IHostnameResolver>
{
public:
    void Resolve(IHostnameResolverSink* sink, void* context, const char*, unsigned short port,
                 unsigned, int) override
    {
        questions.push_back({sink, context, port});
        if (answersInside) {
            Answer(0, ERROR_SUCCESS, true);
        }
    }
    void Answer(std::size_t index, unsigned error, bool hasAddress) const
    {
        const Question asked = questions.at(index);
        IHostnameResolverSink::Result result;
        if (hasAddress) {
            result.addresses = {MakeLoopback(asked.port), MakeLoopback(1)};
        }
        YReportMessageParams report;
        report.SetMessageId(error);
        asked.sink->OnHostname(asked.context, report, result);
    }

    bool answersInside = false;

private:
    struct Question
    {
        YUnknownPointer<IHostnameResolverSink> sink;
        void* context;
        unsigned short port;
    };
    std::vector<Question> questions;
};

class ResolverSink : public YUnknown<IHostnameResolverSink>
{
public:
    explicit ResolverSink(std::function<void()> body) : work(std::move(body)) {}
    void OnHostname(void*, const YReportMessageParams& report, const Result&) override
    {
        FakeNetwork::state.log += "resolved:" + std::to_string(report.GetMessageId()) + ' ';
        work();
    }

private:
    std::function<void()> work;
};

// Plays scripts, a letter a step; a request's context is its number. Capitals and digits are the
// caller's doings, small letters and signs those of the network and of the resolver.
class SocketPlay
{
public:
    SocketPlay()
    {
        keeper.Attach(1);
        socket->SetSink(sink.Get());
        sink->onAnswer = [this](const SocketAnswer& answer) { Note(answer); };
        CommonUiInit([] { return static_cast<IHostnameResolver*>(resolver.Get()); }, nullptr,
                     nullptr);
        resolver = YUnknownPointer<FakeResolver>::Make();
    }
    ~SocketPlay()
    {
        sink->onAnswer = {};
        CommonUiInit(nullptr, nullptr, nullptr);
        resolver.Reset();
        socket.Reset();
    }
    SocketPlay(const SocketPlay&) = delete;
    SocketPlay& operator=(const SocketPlay&) = delete;

    std::string Run(std::string_view script)
    {
        for (const char step : script) {
            Step(step);
        }
        return net.log;
    }
    void BeginAnew()
    {
        net = {};
        requests = 0;
        sink->answers.clear();
        sink->received.clear();
    }

    void Step(char step)
    {
        switch (step) {
        case 'M': EXPECT_EQ(socket->Create(MakeLoopback(1).Get()), 0U); break;
        case 'C': socket->Connect(Next(), MakeLoopback(2).Get()); break;
        case 'R': socket->Read(Next(), MakeRoom(4).Get()); break;
        case 'O': socket->ReadOOB(Next(), MakeRoom(4).Get()); break;
        case 'W': socket->Write(Next(), MakeBytes("0123456789").Get()); break;
        case 'Z': socket->Close(); break;
        case 'U': socket->SetSink(nullptr); break;
        case 'I': resolver->answersInside = true; [[fallthrough]];
        case 'N': ConnectByName(); break;
        case 'T': throw std::runtime_error("a callback");
        case 'c': socket->OnConnect(0); break;
        case 'i': net.arrived += net.hasEnded ? 0 : 5; break;  // not told yet
        case 'r': net.arrived += net.hasEnded ? 0 : 5; [[fallthrough]];
        case 'q': socket->OnReceive(0); break;  // perhaps for nothing
        case 's': net.room += 6, socket->OnSend(0); break;
        case 'o': socket->OnOutOfBandData(0); break;
        case 'e': net.hasEnded = true; break;
        case 'x': net.hasEnded = true; [[fallthrough]];
        case 'y': socket->OnClose(0); break;
        case 'g': net.isFailureLasting = true; [[fallthrough]];
        case 'f': net.failure = WSAECONNABORTED; break;
        case 'a': resolver->Answer(0, ERROR_SUCCESS, true); break;
        case 'b': resolver->Answer(1, ERROR_SUCCESS, true); break;
        case '!': resolver->Answer(0, WSATRY_AGAIN, false); break;
        case '-': resolver->Answer(0, ERROR_SUCCESS, false); break;
        default: TakeTurn();
        }
    }

    unsigned requests = 0;
    const FakeNetwork network;
    NetworkState& net = FakeNetwork::state;
    CAsyncSocket keeper;  // of the framework's window
    YUnknownPointer<RecordingSink> sink = YUnknownPointer<RecordingSink>::Make();
    YUnknownPointer<EventfulSocket> socket = YUnknownPointer<EventfulSocket>::Make();
    static inline YUnknownPointer<FakeResolver> resolver;
    std::string onResolved, onFailure;  // scripts

private:
    void* Next() { return Context(++requests); }
    void Note(const SocketAnswer& answer)
    {
        const auto context = reinterpret_cast<UINT_PTR>(answer.context);
        net.log += answer.what + std::to_string(context) + ':' + std::to_string(answer.error);
        net.log += answer.bytes != 0 ? '/' + std::to_string(answer.bytes) + ' ' : " ";
        if (answer.error != 0) {
            Run(onFailure);
        }
    }
    void ConnectByName()
    {
        const auto answer = YUnknownPointer<ResolverSink>::Make([this] { Run(onResolved); });
        void* const context = Next();
        socket->Connect(context, "host.example", static_cast<unsigned short>(100 + requests),
                        answer.Get());
    }
    // Messages that were posted come.
    void TakeTurn()
    {
        for (const auto& [window, message] : std::exchange(net.posts, {})) {
            ::SendMessageW(window, message, 0, 0);
        }
    }
};

class SocketRules : public testing::Test
{
protected:
    // A life of the socket.
    void Live(std::string_view script)
    {
        SCOPED_TRACE(script);
        play.BeginAnew();
        for (const char step : script) {
            const std::size_t told = play.sink->answers.size();
            play.Step(step);
            if (step == 'R' || step == 'W') {
                ASSERT_EQ(play.sink->answers.size(), told);  // never inside a request
            }
        }
        CheckAnswers();
        CheckBytes();
    }
    // Each request has one, in order; and after the end of the stream comes nothing.
    void CheckAnswers()
    {
        std::map<char, UINT_PTR> last;
        bool isEnd = false;
        std::size_t written = 0;
        for (const SocketAnswer& answer : play.sink->answers) {
            const auto context = reinterpret_cast<UINT_PTR>(answer.context);
            ASSERT_LT(std::exchange(last[answer.what[0]], context), context);
            if (answer.what == "read") {
                ASSERT_TRUE(!isEnd || answer.error != 0) << answer;
                isEnd = isEnd || (answer.error == 0 && answer.bytes == 0);
            } else if (answer.what == "write" && answer.error == 0) {
                ASSERT_EQ(answer.bytes, play.net.pieces[written += 10]) << answer;
            }
        }
        ASSERT_EQ(play.sink->answers.size(), play.requests);
    }
    void CheckBytes()
    {
        const std::string& received = play.sink->received;
        ASSERT_EQ(received.size(), play.net.taken);
        for (std::size_t i = 0; i < received.size(); ++i) {
            ASSERT_EQ(received[i], GetByte(i));
        }
        for (std::size_t i = 0; i < play.net.sent.size(); ++i) {
            ASSERT_EQ(play.net.sent[i], static_cast<char>('0' + i % 10));
        }
    }

    SocketPlay play;
};

TEST_F(SocketRules, HoldInEveryOrderOfEvents)
{
    constexpr std::string_view events = "csrox.";
    constexpr unsigned orders = 6 * 6 * 6 * 6 * 6 * 6;
    for (unsigned order = 0; order < orders && !HasFatalFailure(); ++order) {
        std::string script = "MCWRR";
        for (unsigned i = 0, rest = order; i < 6; ++i, rest /= 6) {
            script += events[rest % 6];
            script += i == 2 ? "RW" : "";
        }
        Live(script + "Z.");
    }
}

TEST_F(SocketRules, HoldInLongRandomPlays)
{
    constexpr std::string_view steps = "RRRRWWcsssrriqoef..xy";
    std::mt19937 random(20);
    for (unsigned round = 0; round < 3000 && !HasFatalFailure(); ++round) {
        std::string script = "MC";
        while (script.size() < 40) {
            // The end is for the second half.
            script += steps[random() % (script.size() < 20 ? steps.size() - 2 : steps.size())];
        }
        Live(script + "Z.");
    }
}

struct PlayCase
{
    const char* name;
    const char* script;
    const char* log;
    const char* onResolved = "";
    const char* onFailure = "";
};

class SocketPlays : public testing::TestWithParam<PlayCase>
{};

TEST_P(SocketPlays, AreToldSo)
{
    SocketPlay play;
    play.onResolved = GetParam().onResolved;
    play.onFailure = GetParam().onFailure;
    EXPECT_EQ(play.Run(GetParam().script), GetParam().log);
}

INSTANTIATE_TEST_SUITE_P(
    Network, SocketPlays,
    testing::Values(
        PlayCase{"CloseLeavesNoByte", "MiiRRRRx", "read1:0/4 read2:0/4 read3:0/2 read4:0 "},
        PlayCase{"CloseWithNothingYet", "MRyr", "read1:0/4 "},
        PlayCase{"SinkGoesInsideItsCall", "MRRfr", "read1:10053 ", "", "U"},
        PlayCase{"UrgentReadsAreNeverAnswered", "MOoOoZ.", ""},
        PlayCase{"ReadsForEverEndTheirTurn", "MRRgqq",
                 "read1:10053 read2:10053 read3:10053 read4:10053 ", "", "R"},
        PlayCase{"ThrowingLosesNoRead", "MRRgy", "read1:10053 read2:10053 ", "", "T"},
        PlayCase{"ThrowingInCloseLosesNothing", "MRRWCZ",
                 "->2 read1:995 read2:995 write3:995 connect4:995 ", "", "T"},
        PlayCase{"BegunAnewInsideClose", "MRZc", "read1:995 ->2 connect2:0 ", "", "MC"}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Names, SocketPlays,
    testing::Values(PlayCase{"InsideTheCall", "Ic", "resolved:0 ->101 connect1:0 "},
                    PlayCase{"Later", "Nac", "resolved:0 ->101 connect1:0 "},
                    PlayCase{"WithoutSuccess", "N!.", "resolved:11002 connect1:11002 "},
                    PlayCase{"WithoutAddress", "N-.", "resolved:0 connect1:11001 "},
                    PlayCase{"AfterClose", "NZa.", "connect1:995 "},
                    PlayCase{"CloseAndAnew", "NZNabc", "connect1:995 resolved:0 ->102 connect2:0 "},
                    PlayCase{"SecondIsIgnored", "NNCNac", "resolved:0 ->101 connect1:0 "},
                    PlayCase{"EventOfAnEarlierConnect", "Ncac", "resolved:0 ->101 connect1:0 "},
                    PlayCase{"SinkCloses", "Na.", "resolved:0 connect1:995 ", "Z"},
                    PlayCase{"SinkConnectsOtherwise", "MNa.c",
                             "resolved:0 ->2 connect1:10037 connect2:0 ", "C"},
                    PlayCase{"SinkThrows", "Nac", "resolved:0 ->101 connect1:0 ", "T"},
                    PlayCase{"NothingOfTheLastLifeStays", "MsyZNWRassr",
                             "resolved:0 ->101 write2:0/10 read3:0/4 "}),
    CaseName());

HWND WINAPI RefuseWindow(DWORD, LPCWSTR, LPCWSTR, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE,
                         LPVOID)
{
    return nullptr;
}

// There is no window, so that the answer comes inside the request, and it may be the last one.
TEST(SocketWithoutWindow, MayBeReleasedInsideItsAnswer)
{
    const auto sink = YUnknownPointer<RecordingSink>::Make();
    auto socket = YUnknownPointer<YIoSocket>::Make();
    socket->SetSink(sink.Get());
    std::vector<std::string> spoilt;  // what lies where the socket was
    sink->onAnswer = [&](const SocketAnswer&) {
        socket.Reset();
        spoilt.assign(9, std::string(sizeof(YIoSocket), '\x7F'));
    };
    const ImportHook hook(L"CommonUi.dll", "user32.dll", "CreateWindowExW", &RefuseWindow);
    socket->CreateAndConnect(Context(1), "127.0.0.1", 1, nullptr);
    EXPECT_EQ(sink->answers,
              (std::vector<SocketAnswer>{{"connect", Context(1), ERROR_OUTOFMEMORY}}));
    EXPECT_EQ(CountReferences(sink.Get()), 1U);
}

}  // namespace
