// The socket against a bare WSAAsyncSelect loop over the loopback, and deferred calls against bare
// posts. Both ends of a connection are served by the one thread that measures.
#include "Report.h"
#include "Subjects.h"
#include "ViewHost.h"

#include <YAddress.h>
#include <YBasicBuffer.h>
#include <YIoSocket.h>
#include <YMsgDeferredProcedureDispatcher.h>
#include <YUniqueHandle.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <optional>
#include <vector>

namespace {

constexpr unsigned blockBytes = 64 * 1024;
constexpr unsigned streamBytes = 32u << 20;  // an iteration
constexpr unsigned writesAhead = 8;  // the bare loop fills the system's buffer at once, too
constexpr unsigned roundTrips = 500;
constexpr unsigned idleSockets = 1'000;
constexpr unsigned connectRounds = 10'000;
constexpr unsigned calls = 6'400;
constexpr unsigned callsAPost = 64;
constexpr UINT events = WM_USER + 1;

YUnknownPointer<IInternetAddress> MakeLoopback()
{
    return YUnknownPointer<IInternetAddress>::Adopt(MakeNumericAddress("127.0.0.1", 0));
}

YUnknownPointer<IBuffer> MakeBlock(unsigned bytes)
{
    const YUnknownPointer<IBuffer> block = YUnknownPointer<YBasicBuffer>::Make(bytes);
    block->SetSize(bytes);
    return block;
}

// False: something that can only be a fault took too long.
template <class Condition>
bool PumpUntil(Condition isMet)
{
    const ULONGLONG end = ::GetTickCount64() + 60'000;
    MSG message;
    while (!isMet()) {
        if (::GetTickCount64() > end) {
            return false;
        }
        ::MsgWaitForMultipleObjectsEx(0, nullptr, 1000, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        while (!isMet() && ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            ::DispatchMessageW(&message);
        }
    }
    return true;
}

// Ours

struct Sinks : ISocketSink, IListenSocketSink
{};

// One end that reads into one block, or writes from one, again and again.
class End : public YUnknown<Sinks>
{
public:
    explicit End(unsigned bytes) : block(MakeBlock(bytes)) {}

    void Adopt(ISocket* connected)
    {
        socket = YUnknownPointer<ISocket>(connected);
        socket->SetSink(this);
    }
    void Close()
    {
        toRead = toWrite = 0;
        socket->Close();
        socket->SetSink(nullptr);
        socket.Reset();
    }
    void Read(unsigned bytes)
    {
        toRead = bytes;
        ReadNext();
    }
    void Write(unsigned bytes)
    {
        toWrite = bytes;
        for (unsigned i = 0; i < writesAhead; ++i) {
            WriteNext();
        }
    }

    unsigned toRead = 0;
    unsigned toWrite = 0;  // not yet asked for
    bool isConnected = false;
    unsigned answersPerRead = 0;  // bytes written for each read: the far end of round trips
    YUnknownPointer<ISocket> socket;
    YUnknownPointer<ISocket> accepted;

private:
    void ReadNext()
    {
        if (toRead > 0) {
            socket->Read(nullptr, block.Get());
        }
    }
    void WriteNext()
    {
        if (toWrite > 0) {
            toWrite -= std::min(toWrite, block->Size());
            socket->Write(nullptr, block.Get());
        }
    }

    void OnRead(void*, unsigned error, IBuffer* buffer) override
    {
        toRead = error ? 0 : toRead - std::min(toRead, buffer->Size());
        if (answersPerRead > 0 && toRead > 0) {
            Write(answersPerRead);
        }
        ReadNext();
    }
    void OnWrite(void*, unsigned, IBuffer*, unsigned) override { WriteNext(); }
    void OnReadOOB(void*, unsigned, IBuffer*) override {}
    void OnWriteOOB(void*, unsigned, IBuffer*, unsigned) override {}
    void OnConnect(void*, unsigned error) override { isConnected = error == 0; }
    void OnAccept(void*, unsigned, ISocket* newSocket, IInternetAddress*,
                  IInternetAddress*) override
    {
        accepted = YUnknownPointer<ISocket>(newSocket);
    }

    const YUnknownPointer<IBuffer> block;
};

class Listener
{
public:
    Listener()
    {
        socket->Create(MakeLoopback().Get());
        socket->Bind(nullptr, MakeLoopback().Get());
        socket->Listen(SOMAXCONN);
        socket->SetAcceptSink(sink.Get());
        IInternetAddress* own = nullptr;
        socket->GetSockName(own);
        address = YUnknownPointer<IInternetAddress>::Adopt(own);
    }
    // Null: no connection.
    YUnknownPointer<ISocket> Connect(End& client)
    {
        const auto made = YUnknownPointer<YIoSocket>::Make();
        client.Adopt(made.Get());
        socket->Accept(nullptr);
        made->Create(address.Get());
        made->Connect(nullptr, address.Get());
        const bool done = PumpUntil([&] { return client.isConnected && sink->accepted; });
        return done ? std::move(sink->accepted) : nullptr;
    }

private:
    YUnknownPointer<YIoSocket> socket = YUnknownPointer<YIoSocket>::Make();
    YUnknownPointer<End> sink = YUnknownPointer<End>::Make(1u);
    YUnknownPointer<IInternetAddress> address;
};

struct Pair
{
    explicit Pair(unsigned bytes)
        : client(YUnknownPointer<End>::Make(bytes)), server(YUnknownPointer<End>::Make(bytes))
    {
        if (const YUnknownPointer<ISocket> accepted = Listener().Connect(*client)) {
            server->Adopt(accepted.Get());
        }
    }
    ~Pair()
    {
        client->Close();
        if (server->socket) {
            server->Close();
        }
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    YUnknownPointer<End> client;
    YUnknownPointer<End> server;
};

void Stream(benchmark::State& state)
{
    const Pair pair(blockBytes);
    for (auto _ : state) {
        pair.server->Read(streamBytes);
        pair.client->Write(streamBytes);
        if (!pair.server->socket || !PumpUntil([&] { return pair.server->toRead == 0; })) {
            state.SkipWithError("the stream stands still");
            break;
        }
    }
}

void RoundTrips(benchmark::State& state)
{
    const Pair pair(1);
    pair.server->answersPerRead = 1;
    pair.client->answersPerRead = 1;
    pair.server->Read(UINT_MAX);
    for (auto _ : state) {
        pair.client->Read(roundTrips);
        pair.client->Write(1);
        if (!PumpUntil([&] { return pair.client->toRead == 0; })) {
            state.SkipWithError("no answer came");
            break;
        }
    }
}

// Bare: what such a loop is when it does that and nothing else.

struct SocketTraits
{
    using Handle = SOCKET;
    static Handle Invalid() noexcept { return INVALID_SOCKET; }
    static void Close(Handle socket) noexcept { ::closesocket(socket); }
};
using UniqueSocket = YUniqueHandle<SocketTraits>;

class BarePair
{
public:
    explicit BarePair(unsigned bytes) : block(bytes)
    {
        WNDCLASSW description{};
        description.lpfnWndProc = &Receive;
        description.lpszClassName = L"BarePair";
        ::RegisterClassW(&description);
        window = ::CreateWindowExW(0, L"BarePair", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                   nullptr, nullptr);
        ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        Connect();
        ::WSAAsyncSelect(client.Get(), window, events, FD_READ | FD_WRITE | FD_CLOSE);
        ::WSAAsyncSelect(server.Get(), window, events, FD_READ | FD_WRITE | FD_CLOSE);
    }
    ~BarePair() { ::DestroyWindow(window); }
    BarePair(const BarePair&) = delete;
    BarePair& operator=(const BarePair&) = delete;

    void Write(unsigned bytes)
    {
        toWrite = bytes;
        WriteSome();
    }

    unsigned toRead = 0;  // by the server; by the client where there are echoes
    unsigned toWrite = 0;  // by the client
    bool echoes = false;

private:
    void Connect()
    {
        const UniqueSocket listener(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
        auto* const record = reinterpret_cast<sockaddr*>(&address);
        int length = sizeof address;
        ::bind(listener.Get(), record, length);
        ::listen(listener.Get(), 1);
        ::getsockname(listener.Get(), record, &length);
        client.Reset(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
        ::connect(client.Get(), record, length);
        server.Reset(::accept(listener.Get(), nullptr, nullptr));
    }
    void WriteSome()
    {
        while (toWrite > 0) {
            const int sent =
                ::send(client.Get(), block.data(),
                       static_cast<int>(std::min<std::size_t>(toWrite, block.size())), 0);
            if (sent <= 0) {
                return;
            }
            toWrite -= static_cast<unsigned>(sent);
        }
    }
    void ReadSome(SOCKET socket)
    {
        const int received = ::recv(socket, block.data(), static_cast<int>(block.size()), 0);
        if (received <= 0) {
            return;
        }
        if (!echoes || socket == client.Get()) {
            toRead -= std::min(toRead, static_cast<unsigned>(received));
        }
        if (echoes && toRead > 0) {
            ::send(socket, block.data(), received, 0);
        }
    }
    static LRESULT CALLBACK Receive(HWND handle, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* const self = reinterpret_cast<BarePair*>(::GetWindowLongPtrW(handle, GWLP_USERDATA));
        if (message != events || !self) {
            return ::DefWindowProcW(handle, message, wParam, lParam);
        }
        if (WSAGETSELECTEVENT(lParam) == FD_READ) {
            self->ReadSome(wParam);
        } else if (WSAGETSELECTEVENT(lParam) == FD_WRITE && wParam == self->client.Get()) {
            self->WriteSome();
        }
        return 0;
    }

    std::vector<char> block;
    HWND window = nullptr;
    UniqueSocket client{INVALID_SOCKET};
    UniqueSocket server{INVALID_SOCKET};
};

void StreamBare(benchmark::State& state)
{
    BarePair pair(blockBytes);
    for (auto _ : state) {
        pair.toRead = streamBytes;
        pair.Write(streamBytes);
        if (!PumpUntil([&] { return pair.toRead == 0; })) {
            state.SkipWithError("the stream stands still");
            break;
        }
    }
}

void RoundTripsBare(benchmark::State& state)
{
    BarePair pair(1);
    pair.echoes = true;
    for (auto _ : state) {
        pair.toRead = roundTrips;
        pair.Write(1);
        if (!PumpUntil([&] { return pair.toRead == 0; })) {
            state.SkipWithError("no answer came");
            break;
        }
    }
}

// Many

std::size_t HeapBytes()
{
    std::size_t bytes = 0;
    std::vector<HANDLE> heaps(::GetProcessHeaps(0, nullptr));
    const DWORD count = ::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    for (DWORD i = 0; i < std::min(count, static_cast<DWORD>(heaps.size())); ++i) {
        PROCESS_HEAP_ENTRY entry{};
        while (::HeapWalk(heaps[i], &entry)) {
            bytes += entry.wFlags & PROCESS_HEAP_ENTRY_BUSY ? entry.cbData + entry.cbOverhead : 0;
        }
    }
    return bytes;
}

// A thousand connections at once, both ends: two thousand sockets. Each says and hears a word.
void IdleSockets(benchmark::State& state)
{
    for (auto _ : state) {
        Listener listener;
        std::vector<YUnknownPointer<End>> ends;
        const std::size_t before = HeapBytes();
        for (unsigned i = 0; i < idleSockets; ++i) {
            const auto client = YUnknownPointer<End>::Make(1u);
            const auto server = YUnknownPointer<End>::Make(1u);
            const YUnknownPointer<ISocket> accepted = listener.Connect(*client);
            if (!accepted) {
                state.SkipWithError("a connection failed");
                return;
            }
            server->Adopt(accepted.Get());
            ends.push_back(client);
            ends.push_back(server);
        }
        state.counters["bytes"] =
            static_cast<double>(HeapBytes() - before) / static_cast<double>(ends.size());
        for (const auto& end : ends) {
            end->Read(1);
        }
        for (const auto& end : ends) {
            end->Write(1);
        }
        const auto isServed = [](const auto& end) { return end->toRead == 0; };
        if (!PumpUntil([&] { return std::all_of(ends.begin(), ends.end(), isServed); })) {
            state.SkipWithError("not all are served");
        }
        for (const auto& end : ends) {
            end->Close();
        }
    }
}

long CountWindows()
{
    long count = 0;
    for (HWND window = nullptr;
         (window = ::FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr));) {
        ++count;
    }
    return count;
}

long CountHandles()
{
    DWORD count = 0;
    ::GetProcessHandleCount(::GetCurrentProcess(), &count);
    return static_cast<long>(count);
}

void ConnectRounds(benchmark::State& state)
{
    for (auto _ : state) {
        Listener listener;
        std::optional<long> before;
        for (unsigned i = 0; i < connectRounds; ++i) {
            const auto client = YUnknownPointer<End>::Make(1u);
            const YUnknownPointer<ISocket> accepted = listener.Connect(*client);
            if (!accepted) {
                state.SkipWithError("a connection failed");
                return;
            }
            accepted->Close();
            client->Close();
            before = before.value_or(CountHandles() + CountWindows());  // after the first round
        }
        Pump();
        state.counters["leaked"] = static_cast<double>(CountHandles() + CountWindows() - *before);
    }
}

// Deferred calls

class CountedCall : public YUnknown<IDeferredProcedure>
{
public:
    void Run(unsigned) override { ++runs; }

    unsigned runs = 0;
};

void DeferredCalls(benchmark::State& state)
{
    const auto dispatcher = YUnknownPointer<YMsgDeferredProcedureDispatcher>::Make();
    const auto call = YUnknownPointer<CountedCall>::Make();
    dispatcher->Create();
    for (auto _ : state) {
        call->runs = 0;
        for (unsigned done = 0; done < calls; done += callsAPost) {
            for (unsigned i = 0; i < callsAPost; ++i) {
                dispatcher->Queue(call.Get(), 0);
            }
            if (!PumpUntil([&] { return call->runs == done + callsAPost; })) {
                state.SkipWithError("a call was not run");
                return;
            }
        }
    }
}

void BarePosts(benchmark::State& state)
{
    const auto sink = std::make_unique<BarePair>(1);  // any window
    const HWND window = ::FindWindowExW(HWND_MESSAGE, nullptr, L"BarePair", nullptr);
    MSG message;
    for (auto _ : state) {
        for (unsigned i = 0; i < calls; ++i) {
            ::PostMessageW(window, WM_USER + 2, 0, 0);
            ::GetMessageW(&message, nullptr, 0, 0);
            ::DispatchMessageW(&message);
        }
    }
}

}  // namespace

void AddNetworkSubjects(Report& report)
{
    ::AfxSocketInit();
    const auto add = [](const char* name, void (*function)(benchmark::State&)) {
        return benchmark::RegisterBenchmark(name, function)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    };
    add("Stream", &Stream);
    add("StreamBare", &StreamBare);
    report.CompareRate("stream 32 MiB through sockets, to a bare WSAAsyncSelect loop", "Stream",
                       "StreamBare", 0.95);
    add("RoundTrips", &RoundTrips);
    add("RoundTripsBare", &RoundTripsBare);
    report.CompareRate("round trips of one byte, to the same", "RoundTrips", "RoundTripsBare",
                       0.95);
    add("IdleSockets", &IdleSockets)->Iterations(1)->Repetitions(1);
    report.CheckCounter("2,000 sockets of one thread, all served: bytes of each", "IdleSockets",
                        "bytes", 2048);
    add("ConnectRounds", &ConnectRounds)->Iterations(1)->Repetitions(1);
    report.CheckCounter("connect and close 10,000 times: handles and windows left", "ConnectRounds",
                        "leaked", 0);
    add("DeferredCalls", &DeferredCalls);
    add("BarePosts", &BarePosts);
    report.CompareRate("deferred calls, 64 a post, to bare posts", "DeferredCalls", "BarePosts",
                       20);
}
