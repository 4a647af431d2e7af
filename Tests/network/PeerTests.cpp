// Sockets of ours against programs that we did not write, on the loopback: tools/with-peers starts
// them, and says what each one does.
#include "SocketKit.h"

#include <cstdlib>
#include <memory>
#include <utility>

namespace {

constexpr std::size_t blockBytes = 65521;
constexpr std::size_t fileBlocks = 1025;  // 64 MiB
constexpr std::size_t mostWaiting = 16;  // blocks: 1 MiB
constexpr DWORD limit = 40'000;  // milliseconds

unsigned short GetPeer(const std::string& name)
{
    char text[16] = {};
    ::GetEnvironmentVariableA(("COMMONUI_PEER_" + name).c_str(), text, sizeof text);
    const int port = std::atoi(text);
    EXPECT_NE(port, 0) << "there is no " << name << ": run this by tools/with-peers";
    return static_cast<unsigned short>(port);
}

// Blocks are all the same, of a length that no buffer has, so that a piece that is lost, doubled or
// displaced shows.
std::string_view GetPattern(std::size_t position, std::size_t bytes)
{
    static std::string twoBlocks;
    for (int line = 1; twoBlocks.size() < blockBytes; ++line) {
        twoBlocks += std::to_string(line) + '\n';
    }
    if (twoBlocks.size() < 2 * blockBytes) {
        twoBlocks.resize(blockBytes);
        twoBlocks += twoBlocks;
    }
    return std::string_view(twoBlocks).substr(position % blockBytes, bytes);
}

// Our end of a conversation. It reads whatever comes, until the end. Text is kept; blocks, and what
// follows the head of a file, are compared.
class Talk
{
public:
    explicit Talk(unsigned short port, int family = AF_INET) { Open(port, family); }
    explicit Talk(ISocket* accepted) : socket(accepted) { Begin(); }
    ~Talk()
    {
        sink->onAnswer = nullptr;
        socket->Close();
    }

    void Open(unsigned short port, int family = AF_INET)
    {
        const auto address = MakeLoopback(port, family);
        ends.clear();
        heard.clear();
        EXPECT_EQ(socket->Create(address.Get()), 0U);
        socket->Connect(nullptr, address.Get());
        Begin();
    }
    void Say(std::string_view bytes)
    {
        ++waiting;
        socket->Write(nullptr, MakeBytes(bytes).Get());
    }
    void SayBlocks(std::size_t count)
    {
        for (blocksToSay = count; blocksToSay > 0 && waiting < mostWaiting; --blocksToSay) {
            Say(GetPattern(0, blockBytes));
        }
    }
    // Nothing more is said.
    void Finish()
    {
        EXPECT_TRUE(PumpUntil([&] { return waiting == 0 || HasEnded(); }, limit));
        EXPECT_EQ(socket->Shutdown(SD_SEND), 0U);
    }
    void ExpectText(std::string_view text)
    {
        EXPECT_TRUE(PumpUntil([&] { return heard.starts_with(text) || HasEnded(); }, limit));
        EXPECT_EQ(heard.substr(0, text.size()), text);
    }
    void ExpectBlocks(std::size_t count)
    {
        EXPECT_TRUE(
            PumpUntil([&] { return HasEnded() || bytesOfBlocks >= count * blockBytes; }, limit));
        EXPECT_EQ(std::exchange(bytesOfBlocks, 0), count * blockBytes);
    }
    // Told once; what is read afterwards is refused.
    void ExpectEnd()
    {
        EXPECT_TRUE(PumpUntil([&] { return HasEnded(); }, limit));
        EXPECT_EQ(ends, (std::vector<unsigned>{0, ERROR_OPERATION_ABORTED}));
    }
    bool HasEnded() const { return ends.size() > 1 || (ends.size() == 1 && ends[0] != 0); }

    YUnknownPointer<RecordingSink> sink = YUnknownPointer<RecordingSink>::Make();
    YUnknownPointer<ISocket> socket{YUnknownPointer<YIoSocket>::Make().Get()};
    bool areBlocks = false;  // what is heard
    std::string heard;
    std::vector<unsigned> ends;  // the codes of the reads that brought nothing
    std::size_t waiting = 0;  // writes
    unsigned writeError = 0;
    Talk* relay = nullptr;  // is told what is heard here

private:
    void Begin()
    {
        sink->onAnswer = [this](const SocketAnswer& answer) { Note(answer); };
        socket->SetSink(sink.Get());
        socket->Read(nullptr, room.Get());
    }
    void Note(const SocketAnswer& answer)
    {
        const std::string bytes = std::exchange(sink->received, {});
        if (answer.what.starts_with("write")) {
            --waiting;
            writeError = answer.error;
            SayBlocks(blocksToSay);
        } else if (answer.error == 0 && answer.bytes > 0) {
            Hear(bytes);
        } else if (answer.what != "connect" || answer.error != 0) {
            ends.push_back(answer.error);
        }
        if (answer.what.starts_with("read") && !HasEnded()) {
            socket->Read(nullptr, room.Get());
        }
    }
    void Hear(const std::string& bytes)
    {
        heard += bytes;
        if (relay) {
            relay->Say(bytes);
        } else if (heard.starts_with("HTTP/") && heard.find("\r\n\r\n") != heard.npos) {
            heard.erase(0, heard.find("\r\n\r\n") + 4);
            areBlocks = true;
        }
        if (areBlocks) {
            EXPECT_TRUE(heard == GetPattern(bytesOfBlocks, heard.size())) << bytesOfBlocks;
            bytesOfBlocks += std::exchange(heard, {}).size();
        }
    }

    YUnknownPointer<IBuffer> room = MakeRoom(blockBytes);
    std::size_t blocksToSay = 0;
    std::size_t bytesOfBlocks = 0;  // heard, and not yet expected
};

TEST(PeerTest, OneConnectionFetchesThreeFiles)
{
    for (const int family : {AF_INET, AF_INET6}) {
        Talk talk(GetPeer("HTTP"), family);
        for (const auto& [file, blocks] :
             {std::pair("pattern HTTP/1.1", fileBlocks), std::pair("block HTTP/1.1", 1U),
              std::pair("block HTTP/1.0", 1U)}) {
            EXPECT_EQ(talk.ends, std::vector<unsigned>());
            talk.areBlocks = false;
            talk.Say(std::string("GET /") + file + "\r\nHost: localhost\r\n\r\n");
            talk.ExpectBlocks(blocks);
        }
        talk.ExpectEnd();  // as the older version ends
    }
}

TEST(PeerTest, EchoComesBackWhole)
{
    for (const auto& [count, blocks] : {std::pair(1U, fileBlocks), std::pair(8U, 64U)}) {
        std::vector<std::unique_ptr<Talk>> talks(count);
        for (auto& talk : talks) {
            talk = std::make_unique<Talk>(GetPeer("ECHO"));
            talk->areBlocks = true;
            talk->SayBlocks(blocks);
        }
        for (const auto& talk : talks) {
            talk->ExpectBlocks(blocks);
            talk->Finish();
            talk->ExpectEnd();
        }
    }
}

TEST(PeerTest, SocketIsUsedAgainAfterClose)
{
    Talk talk(GetPeer("SSH"));
    talk.ExpectText("SSH-2.0-");
    talk.socket->Close();
    EXPECT_EQ(talk.ends, std::vector<unsigned>{ERROR_OPERATION_ABORTED});
    talk.Open(GetPeer("SSH"));
    talk.ExpectText("SSH-2.0-");
}

TEST(PeerTest, AnswerComesAfterOurEnd)
{
    Talk talk(GetPeer("SAME"));
    talk.SayBlocks(16);
    talk.Finish();
    talk.ExpectEnd();
    EXPECT_EQ(talk.heard, "same\n");
}

TEST(PeerTest, ListenerTakesWhoCameBeforeAndWhoComesLater)
{
    Listener listener;
    const std::string order = "send " + std::to_string(listener.address->GetPort());
    unsigned asked = 0;
    for (const char* const count : {" 5\n", " 15\n"}) {  // five is what the system keeps for us
        Talk talk(GetPeer("ORDER"));
        talk.Say(order + count);
        talk.ExpectText("sent");
        for (; asked < 20; ++asked) {
            listener.socket->Accept(nullptr);
        }
    }
    ASSERT_TRUE(listener.sink->WaitForCount(20));
    for (const auto& accepted : listener.sink->accepted) {
        Talk talk(accepted.Get());
        talk.areBlocks = true;
        talk.ExpectEnd();
        talk.ExpectBlocks(1);
    }
}

TEST(PeerTest, ResetEndsReadsAndWrites)
{
    Talk talk(GetPeer("RESET"));
    talk.Say("x");
    ASSERT_TRUE(PumpUntil([&] { return talk.HasEnded(); }, limit));
    // Wine may tell a reset as an end; Windows names it.
    EXPECT_TRUE(talk.ends.front() == 0 || talk.ends.front() == WSAECONNRESET) << talk.ends.front();
    talk.Say("y");
    EXPECT_TRUE(PumpUntil([&] { return talk.waiting == 0; }, limit));
    EXPECT_NE(talk.writeError, 0U);
}

TEST(PeerTest, TlsServerRefusesNoise)
{
    Talk talk(GetPeer("TLS"));
    talk.Say(std::string_view("\x16\x03\x01\x00\x05noise", 10));
    talk.ExpectEnd();
    EXPECT_TRUE(talk.heard.starts_with("\x15\x03"));  // an alert
}

TEST(PeerTest, TlsSessionGoesThroughTwoSockets)
{
    Listener listener;
    listener.socket->Accept(nullptr);
    Talk order(GetPeer("ORDER"));
    order.Say("tls " + std::to_string(listener.address->GetPort()) + '\n');
    ASSERT_TRUE(listener.sink->WaitForCount(1));
    Talk client(listener.sink->accepted.front().Get());
    Talk server(GetPeer("TLS"));
    client.relay = &server;
    server.relay = &client;
    for (const auto& [ended, other] : {std::pair(&server, &client), std::pair(&client, &server)}) {
        ended->ExpectEnd();
        other->Finish();
        EXPECT_TRUE(ended->heard.starts_with("\x16\x03"));  // a handshake
        EXPECT_GT(ended->heard.size(), 1'100'000U);
    }
    order.ExpectEnd();
    EXPECT_EQ(order.heard, "same\n");
}

TEST(PeerTest, DatagramsComeBackWhole)
{
    const auto peer = MakeLoopback(GetPeer("UDP"));
    addrinfo record{};
    int length = 0;
    ASSERT_TRUE(peer->GetSockAddr(const_cast<const sockaddr**>(&record.ai_addr), &length));
    record.ai_addrlen = static_cast<std::size_t>(length);
    record.ai_socktype = SOCK_DGRAM;
    const auto datagrams = MakeLoopback(0);
    ASSERT_TRUE(datagrams->SetFromAddrInfo(&record));
    const auto sink = YUnknownPointer<RecordingSink>::Make();
    const auto socket = YUnknownPointer<YIoSocket>::Make();
    socket->SetSink(sink.Get());
    ASSERT_EQ(socket->Create(datagrams.Get()), 0U);
    for (std::size_t number = 0; number < 100; ++number) {
        const std::string sent(GetPattern(number, 1 + number * 1399 / 99));
        socket->ReadFrom(nullptr, MakeRoom(2000).Get());
        socket->WriteTo(nullptr, peer.Get(), MakeBytes(sent).Get());
        ASSERT_TRUE(sink->WaitForCount(2 * (number + 1))) << number;
        EXPECT_EQ(std::exchange(sink->received, {}), sent);
        EXPECT_TRUE(sink->sender && sink->sender->Equals(peer.Get()));
    }
    socket->Close();
}

// Of its own accord the system keeps the urgent byte out of the stream.
TEST(Peers, ExchangeUrgentBytes)
{
    const auto sink = YUnknownPointer<RecordingSink>::Make();
    const auto socket = YUnknownPointer<YIoSocket>::Make();
    sink->onAnswer = [&](const SocketAnswer& answer) {
        if (answer.what != "writeOOB" && answer.error == 0) {
            socket->Read(Context(2), MakeRoom(99).Get());
        }
    };
    socket->SetSink(sink.Get());
    socket->CreateAndConnect(Context(1), "127.0.0.1", GetPeer("URGENT"), nullptr);
    socket->WriteOOB(Context(3), MakeBytes("?").Get());
    EXPECT_TRUE(PumpUntil([&] { return sink->received.ends_with('\n'); }, limit));
    EXPECT_EQ(sink->received, "urgent ?\n");
    EXPECT_EQ(sink->urgent, "!");
    EXPECT_EQ(sink->Count("writeOOB"), 1U);
    sink->onAnswer = {};
}

}  // namespace
