// A saved host is connected to as it was saved.
#include "ConnectionFrame.h"
#include "ConsoleSettings.h"
#include "ConsoleView.h"
#include "Server.h"
#include "support/Input.h"
#include "textview/Lines.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

Session MakeSession(const Peer& peer)
{
    Session session;
    session.name = L"saved";
    session.peer = peer;
    session.lineEnd = LineEnd::Lf;
    session.logsIn = true;
    session.user = L"zoe";
    session.password.Set(YUnicodeString(L"s3cret \x20AC", Str::Sensitive));
    session.lines = {L"one", L"two"};
    return session;
}

}  // namespace

TEST(SavedConnection, LogsInAndSendsItsLinesButShowsNoPassword)
{
    const fs::path folder =
        fs::temp_directory_path() / (L"saved-logs-" + std::to_wstring(::GetCurrentProcessId()));
    fs::create_directories(folder);
    ConsoleSettings settings;
    ConsoleChoices choices;
    choices.logFolder = folder.wstring();
    settings.SetChoices(choices);
    std::string received;
    ConnectionFrame* frame = nullptr;
    {
        const Server server(1, [&](SOCKET socket) {
            while (received.find("two\n") == std::string::npos) {
                const std::string more = Get(socket);
                received += more;
                if (more.empty()) {
                    break;
                }
            }
            Put(socket, "welcome\n");
        });
        Session session = MakeSession(server.peer);
        session.options = Session::logs | Session::showsSent;
        frame = ConnectionFrame::Open(settings, session, SW_SHOWNORMAL);
        ASSERT_TRUE(frame);
        EXPECT_TRUE(PumpUntil(
            [&] { return frame->GetConnection().GetState() == ConnectionState::EndedByPeer; },
            20'000));
    }
    EXPECT_EQ(received, "zoe\ns3cret \xE2\x82\xAC\none\ntwo\n");
    std::vector<std::wstring> shown;
    const YTextViewBuffer& buffer = frame->GetView().GetBuffer();
    for (unsigned i = 1; i + 1 < buffer.GetLineCount(); ++i) {  // between the notices
        shown.push_back(TextOf(buffer, i));
    }
    EXPECT_EQ(shown, (std::vector<std::wstring>{L"zoe", L"one", L"two", L"welcome"}));
    frame->DestroyWindow();
    std::ostringstream log;
    for (const auto& entry : fs::directory_iterator(folder)) {
        log << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    }
    EXPECT_EQ(log.str(), "welcome\n");
    fs::remove_all(folder);
}

TEST(SavedConnection, SendsNothingWhereThePasswordIsUnreadable)
{
    ConsoleSettings settings;
    std::string received;
    ConnectionFrame* frame = nullptr;
    {
        const Server server(1, [&](SOCKET socket) { received = Get(socket); });
        Session session = MakeSession(server.peer);
        session.password.SetBytes({1, 2, 3});
        frame = ConnectionFrame::Open(settings, session, SW_SHOWNORMAL);
        ASSERT_TRUE(frame);
        const YTextViewBuffer& buffer = frame->GetView().GetBuffer();
        EXPECT_TRUE(PumpUntil([&] { return buffer.GetLineCount() == 2; }, 20'000));
        EXPECT_NE(TextOf(buffer, 1).find(L"cannot be read"), std::wstring::npos);
        frame->DestroyWindow();
    }
    EXPECT_EQ(received, "");
}
