// The saved hosts and the widths of columns, kept in a folder as for a user.
#include "SettingsTest.h"
#include "support/ImportHook.h"

#include <afxwin.h>
#include <wincrypt.h>

#include <vector>

namespace {

YUnicodeString Secret(const wchar_t* text)
{
    return YUnicodeString(text, Str::Sensitive);
}

Session MakeSession(const std::wstring& name)
{
    Session session;
    session.name = name;
    session.peer = {L"host", 7'000};
    return session;
}

std::vector<std::wstring> NamesIn(ConsoleSettings settings)
{
    std::vector<std::wstring> names;
    for (std::size_t i = 0; i < settings.GetSessions().GetCount(); ++i) {
        names.push_back(settings.GetSessions().Get(i).name);
    }
    return names;
}

BOOL WINAPI FailToProtect(DATA_BLOB*, LPCWSTR, DATA_BLOB*, PVOID, CRYPTPROTECT_PROMPTSTRUCT*, DWORD,
                          DATA_BLOB*)
{
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

using Names = std::vector<std::wstring>;

class SessionListTest : public SettingsFolderTest
{
protected:
    std::string ReadFile() const
    {
        std::ifstream file(folder / L"Console.ini", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

}  // namespace

TEST_F(SessionListTest, EverySessionComesBack)
{
    Session full = MakeSession(L"caf\xE9 \\ \"1\"=[x]");
    full.lineEnd = LineEnd::Cr;
    full.options = Session::logs | Session::atStart;
    full.logsIn = true;
    full.user = L"Zo\xEB";
    ASSERT_TRUE(full.password.Set(Secret(L"s3cret \x20AC")));
    full.lines = {L"one", L"", L"; three \\n"};
    ConsoleSettings settings = Load();
    settings.GetSessions().Add(full);
    settings.GetSessions().Add(MakeSession(L"plain"));
    Save(settings);

    ConsoleSettings again = Load();
    ASSERT_EQ(again.GetSessions().GetCount(), 2u);
    EXPECT_TRUE(again.GetSessions().Get(0) == full);
    EXPECT_TRUE(again.GetSessions().Get(1) == MakeSession(L"plain"));
    const YUnicodeString password = again.GetSessions().Get(0).password.Get();
    EXPECT_EQ(password, L"s3cret \x20AC");
    EXPECT_TRUE(password.IsSensitive());
    EXPECT_EQ(ReadFile().find("s3cret"), std::string::npos);
    EXPECT_EQ(ReadFile().find("730033006300"), std::string::npos) << "as UTF-16";
}

TEST_F(SessionListTest, WhatIsRemovedOrReplacedLeavesNothingBehind)
{
    ConsoleSettings settings = Load();
    SessionList& sessions = settings.GetSessions();
    for (const wchar_t* name : {L"a", L"b", L"c"}) {
        sessions.Add(MakeSession(name));
    }
    Session withPassword = MakeSession(L"gone");
    ASSERT_TRUE(withPassword.password.Set(Secret(L"x")));
    sessions.Replace(sessions.Get(1), withPassword);
    Save(settings);
    EXPECT_NE(ReadFile().find("Password"), std::string::npos);

    sessions.Exchange(0, 2);
    sessions.Remove(sessions.Get(2));
    sessions.Replace(sessions.Get(1), MakeSession(L"new"));
    Save(settings);
    EXPECT_EQ(NamesIn(Load()), (Names{L"c", L"new"}));
    EXPECT_EQ(ReadFile().find("Password"), std::string::npos);
    EXPECT_EQ(ReadFile().find("gone"), std::string::npos);
    EXPECT_EQ(ReadFile().find("Sessions\\3"), std::string::npos);
}

TEST_F(SessionListTest, WhatMakesNoSenseIsLeftOutOrTheDefault)
{
    const char* const whole = "Name=\"ok\"\r\nHost=\"h\"\r\nPort=dword:00000017\r\n";
    WriteFile(std::string("[Sessions\\2]\r\n") + whole +
              "Line End=dword:00000009\r\nOptions=dword:00000100\r\nLog In=\"yes\"\r\n"
              "Password=hex:010203\r\nLines=dword:1\r\n"
              "[Sessions\\10]\r\n" +
              whole +
              "[Sessions\\3]\r\nName=\"\"\r\nHost=\"h\"\r\nPort=dword:00000017\r\n"
              "[Sessions\\4]\r\nName=\"no port\"\r\nHost=\"h\"\r\nPort=dword:00010000\r\n"
              "[Sessions\\5]\r\n"
              "[Sessions\\other]\r\n" +
              whole);
    ConsoleSettings settings = Load();
    EXPECT_EQ(incidents, 0);
    ASSERT_EQ(settings.GetSessions().GetCount(), 2u);
    Session& damaged = settings.GetSessions().Get(0);
    EXPECT_EQ(damaged.lineEnd, std::nullopt);
    EXPECT_EQ(damaged.options, Session::showsSent);
    EXPECT_FALSE(damaged.logsIn);
    EXPECT_TRUE(damaged.password.Get().IsEmpty());
    EXPECT_TRUE(damaged.lines.empty());
}

TEST(ProtectedPassword, StaysAsItWasWhereTheSystemRefuses)
{
    ProtectedPassword password;
    ASSERT_TRUE(password.Set(Secret(L"old")));
    {
        const ImportHook refusal(L"ConsoleTests.exe", "crypt32.dll", "CryptProtectData",
                                 &FailToProtect);
        EXPECT_FALSE(password.Set(Secret(L"new")));
    }
    EXPECT_EQ(password.Get(), L"old");
    EXPECT_TRUE(password.Set(Secret(L"")));
    EXPECT_TRUE(password.IsEmpty());
}

TEST_F(SettingsFolderTest, ColumnsComeBackInProportionToTheScreen)
{
    const auto widthsOf = [](ConsoleSettings settings) {
        std::vector<int> widths;
        settings.GetColumnWidths().GetColumnWidths(L"Sessions", widths);
        return widths;
    };
    ConsoleSettings settings = Load();
    settings.GetColumnWidths().SetColumnWidths(L"Sessions", {120, 0, 80});
    Save(settings);
    EXPECT_EQ(widthsOf(Load()), (std::vector<int>{120, 0, 80}));
    const int dpi = CClientDC(nullptr).GetDeviceCaps(LOGPIXELSX);
    WriteFile("[Columns]\r\nSessions=\"" + std::to_string(2 * dpi) + " 120 80\"\r\n");
    EXPECT_EQ(widthsOf(Load()), (std::vector<int>{60, 40}));
    for (const char* text : {"", "0 10 10", "96 -1 10", "96 10 x", "96 99999", "9999 10"}) {
        WriteFile("[Columns]\r\nSessions=\"" + std::string(text) + "\"\r\n");
        EXPECT_EQ(widthsOf(Load()), std::vector<int>()) << text;
    }
}
