// The client: conversations over the real loopback with a server of the test's own.
#include "Connection.h"
#include "ConnectionFrame.h"
#include "ConsoleFile.h"
#include "ConsoleSettings.h"
#include "ConsoleView.h"
#include "LineRules.h"
#include "Server.h"
#include "resource.h"
#include "support/ImportHook.h"
#include "support/Input.h"
#include "textview/Lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>

namespace {

class Recorder : public ConnectionObserver
{
public:
    void OnLines(const LineBatch& batch, bool endsUnfinished) override
    {
        lines.resize(lines.size() - (unfinished ? 1 : 0));
        for (unsigned i = 0; i < batch.GetCount(); ++i) {
            const auto& [text, attributes] = batch.GetLines()[i];
            lines.emplace_back(attributes == GetSentAttributes() ? L"> " : L"");
            lines.back().append(text.begin(), text.end());
        }
        unfinished = endsUnfinished;
    }
    void OnStateChange() override {}
    void OnLogStop(const YReportMessageParams&) override { ++logStops; }

    std::vector<std::wstring> lines;
    bool unfinished = false;
    unsigned logStops = 0;
};

class ConnectionTest : public testing::Test
{
protected:
    ~ConnectionTest() override { connection->Abandon(); }

    bool WaitFor(ConnectionState state) const
    {
        return PumpUntil([&] { return connection->GetState() == state; }, 20'000);
    }
    bool WaitForLines(const std::vector<std::wstring>& lines) const
    {
        return PumpUntil([&] { return recorder.lines == lines; }, 20'000);
    }

    std::optional<Server> server;  // waits for the end of its conversations: goes last
    Recorder recorder;
    YUnknownPointer<Connection> connection =
        YUnknownPointer<Connection>::Make(static_cast<ConnectionObserver&>(recorder));
};

int(WINAPI* realRecv)(SOCKET, char*, int, int) = nullptr;

int WINAPI ReceiveOne(SOCKET socket, char* bytes, int room, int flags)
{
    return realRecv(socket, bytes, std::min(room, 1), flags);
}

TEST_F(ConnectionTest, DecodesLinesWhereverTheyAreCut)
{
    const ImportHook one(L"CommonUi.dll", "ws2_32.dll", "recv", &ReceiveOne);
    realRecv = one.Original<int WINAPI(SOCKET, char*, int, int)>();
    server.emplace(1, [](SOCKET socket) {
        Put(socket, "\xC3\xBC \xE2\x82\xAC\r\n\xF0\x9D\x84\x9E\x1B\n\r\nerror \xC3");
    });
    connection->Connect(server->peer);
    ASSERT_TRUE(WaitFor(ConnectionState::EndedByPeer));
    EXPECT_EQ(recorder.lines, (std::vector<std::wstring>{L"\xFC \x20AC", L"\xD834\xDD1E\xB7", L"",
                                                         L"error \xFFFD"}));
    EXPECT_FALSE(recorder.unfinished);
    EXPECT_EQ(connection->GetReceivedLines(), 4u);
}

TEST_F(ConnectionTest, ShowsADialogueInItsOrderAndConnectsAgain)
{
    server.emplace(2, [](SOCKET socket) {
        Put(socket, "name? ");
        Put(socket, "Hello " + Get(socket));
        Get(socket);
    });
    for (int i = 0; i < 2; ++i) {
        recorder.lines.clear();
        connection->Connect(server->peer);
        ASSERT_TRUE(WaitForLines({L"name? "}));
        EXPECT_TRUE(connection->Send(L"Zo\xEB"));
        EXPECT_TRUE(WaitForLines({L"name? ", L"> Zo\xEB", L"Hello Zo\xEB"}));
        connection->Disconnect();
        ASSERT_TRUE(WaitFor(ConnectionState::EndedByUs));
        EXPECT_FALSE(connection->Send(L"too late"));
    }
}

TEST_F(ConnectionTest, EndsLinesAsItsUserWantsAndShowsThemOrNot)
{
    const char* const ends[] = {"\r\n", "\n", "\r"};
    std::vector<std::string> received;
    server.emplace(1, [&](SOCKET socket) {
        for (int i = 0; i < 3; ++i) {
            received.push_back(Get(socket));
            Put(socket, "ok\n");
        }
    });
    connection->Connect(server->peer);
    ASSERT_TRUE(WaitFor(ConnectionState::Connected));
    connection->SetShowingSent(false);
    for (unsigned i = 0; i < 3; ++i) {
        connection->SetLineEnd(static_cast<LineEnd>(i));
        connection->Send(L"x");
        ASSERT_TRUE(WaitForLines(std::vector<std::wstring>(i + 1, L"ok")));
    }
    ASSERT_TRUE(WaitFor(ConnectionState::EndedByPeer));
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(received[i], std::string("x") + ends[i]);
    }
}

TEST_F(ConnectionTest, SaysWhyItFailed)
{
    const Peer nobody = Server(0, nullptr).peer;
    connection->Connect(nobody);
    ASSERT_TRUE(WaitFor(ConnectionState::Failed));
    EXPECT_EQ(connection->GetError().GetTrimmedText(),
              L"The connection to 127.0.0.1 port " + std::to_wstring(nobody.port) + L" failed. " +
                  YGetErrorText(WSAECONNREFUSED));
}

TEST_F(ConnectionTest, DisconnectsWhenAllThatWasSentIsOnItsWay)
{
    constexpr unsigned lines = 3'000;
    const std::wstring line(2'000, L'x');
    std::atomic<bool> reads = false;
    std::atomic<std::size_t> received = 0;
    server.emplace(1, [&](SOCKET socket) {
        while (!reads) {
            ::SwitchToThread();
        }
        for (std::size_t count; (count = Get(socket).size()) > 0;) {
            received += count;
        }
        Put(socket, "bye\r\n");
    });
    connection->Connect(server->peer);
    ASSERT_TRUE(WaitFor(ConnectionState::Connected));
    for (unsigned i = 0; i < lines; ++i) {
        connection->Send(line);
    }
    connection->Disconnect();
    EXPECT_EQ(connection->GetState(), ConnectionState::Closing);
    reads = true;
    EXPECT_TRUE(WaitFor(ConnectionState::EndedByUs));
    EXPECT_EQ(received, lines * 2'002);
    EXPECT_EQ(recorder.lines.back(), L"bye");
}

BOOL WINAPI FailToWrite(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*)
{
    ::SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

TEST_F(ConnectionTest, LogsWhatComesAndGoesOnWithoutALog)
{
    const ConsoleFile file("before\n");
    server.emplace(1, [](SOCKET socket) {
        while (!Get(socket).empty()) {
            Put(socket, "a\tb \xC3\xA9\r\n");
        }
    });
    YReportMessageParams error;
    EXPECT_FALSE(connection->GetLog().Start(L"Q:\\no folder\\log", error));
    EXPECT_NE(std::wstring(error.GetText()).find(L"Q:\\no folder\\log"), std::wstring::npos);
    ASSERT_TRUE(connection->GetLog().Start(file.GetPath(), error));
    connection->Connect(server->peer);
    ASSERT_TRUE(WaitFor(ConnectionState::Connected));
    connection->Send(L"1");
    ASSERT_TRUE(WaitForLines({L"> 1", L"a       b \xE9"}));
    const std::ifstream log(std::filesystem::path(file.GetPath()), std::ios::binary);
    EXPECT_EQ((std::ostringstream() << log.rdbuf()).str(), "before\na\tb \xC3\xA9\r\n");
    const ImportHook full(L"ConsoleTests.exe", "kernel32.dll", "WriteFile", &FailToWrite);
    connection->Send(L"2");
    EXPECT_TRUE(PumpUntil([&] { return recorder.lines.size() == 4; }, 20'000));
    EXPECT_EQ(recorder.logStops, 1u);
    EXPECT_FALSE(connection->GetLog().IsRunning());
}

TEST(ConnectionFrame, IsTypedIntoAndShowsTheAnswer)
{
    const Server server(1, [](SOCKET socket) { Put(socket, "Echo: " + Get(socket)); });
    ConsoleSettings settings;
    ConnectionFrame* const frame = ConnectionFrame::Open(settings, server.peer, SW_SHOWNORMAL);
    ASSERT_TRUE(frame && Activate(*frame));
    const Connection& connection = frame->GetConnection();
    const auto isConnected = [&] { return connection.GetState() == ConnectionState::Connected; };
    ASSERT_TRUE(PumpUntil(isConnected, 20'000));
    for (const WORD key : {WORD{'H'}, WORD{'I'}, WORD{VK_RETURN}}) {
        TypeKey(key);
    }
    const YTextViewBuffer& shown = frame->GetView().GetBuffer();
    ASSERT_TRUE(PumpUntil([&] { return shown.GetLineCount() == 4; }, 20'000));
    EXPECT_EQ(TextOf(shown, 1), L"hi");
    EXPECT_EQ(shown.GetLineInfo(1).attributes, GetSentAttributes());
    EXPECT_EQ(TextOf(shown, 2), L"Echo: hi");
    TypeKey(VK_UP);
    CString typed;
    frame->GetDlgItem(IDC_INPUT)->GetWindowText(typed);
    EXPECT_EQ(typed, CString(L"hi"));
    EXPECT_EQ(settings.GetPeer().port, server.peer.port);
    frame->DestroyWindow();
}

// From the start of each connection, and from the moment it is chosen for one that is open.
TEST(ConnectionFrame, LogsWhereItsUserWantsLogs)
{
    namespace fs = std::filesystem;
    const fs::path folder =
        fs::temp_directory_path() / (L"console-logs-" + std::to_wstring(::GetCurrentProcessId()));
    fs::create_directories(folder);
    ConsoleSettings settings;
    ConnectionFrame* frame = nullptr;
    {
        const Server server(1, [](SOCKET socket) { Put(socket, "Echo: " + Get(socket)); });
        frame = ConnectionFrame::Open(settings, server.peer, SW_SHOWNORMAL);
        ASSERT_TRUE(frame);
        const Connection& connection = frame->GetConnection();
        ASSERT_TRUE(
            PumpUntil([&] { return connection.GetState() == ConnectionState::Connected; }, 20'000));
        ConsoleChoices choices;
        choices.logs = true;
        choices.logFolder = folder.wstring();
        choices.logsSent = true;
        choices.logsNotices = true;
        ChangeChoices(settings, choices);
        ASSERT_TRUE(Activate(*frame));
        TypeKey('A');
        TypeKey(VK_RETURN);
        ASSERT_TRUE(PumpUntil([&] { return connection.GetState() == ConnectionState::EndedByPeer; },
                              20'000));
    }
    frame->DestroyWindow();
    std::vector<fs::path> logs;
    for (const auto& entry : fs::directory_iterator(folder)) {
        logs.push_back(entry.path());
    }
    ASSERT_EQ(logs.size(), 1u);
    EXPECT_EQ(logs[0].filename().wstring().find(L"127.0.0.1 "), 0u);
    std::ostringstream text;
    text << std::ifstream(logs[0], std::ios::binary).rdbuf();
    EXPECT_EQ(text.str().find("a\r\nEcho: a\r\n--- 127.0.0.1 port "), 0u) << text.str();
    fs::remove_all(folder);
}

}  // namespace
