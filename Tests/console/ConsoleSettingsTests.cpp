// What the program remembers, kept in a folder as for a user.
#include "SettingsTest.h"
#include "foundation/ScratchRegistry.h"

#include <cwchar>
#include <vector>

namespace fs = std::filesystem;

class ConsoleSettingsTest : public SettingsFolderTest
{
protected:
    ScratchRegistry registry;
};

TEST_F(ConsoleSettingsTest, ComeBackAsTheyWereLeft)
{
    ConsoleSettings settings = Load();
    EXPECT_EQ(settings.GetLineLimit(), 100'000u);
    LOGFONT font{};
    EXPECT_FALSE(settings.GetFont(font));
    Save(settings);
    EXPECT_TRUE(fs::is_empty(folder)) << "nothing was changed";

    settings.SetLineLimit(1'000);
    font.lfHeight = -20;
    font.lfWeight = FW_BOLD;
    std::wcscpy(font.lfFaceName, L"Some Face");
    settings.SetFont(font);
    settings.AddRecentFile(L"C:\\a.log");
    settings.AddRecentFile(L"C:\\b & c.log");
    settings.AddRecentFile(L"c:\\A.LOG");
    Save(settings);

    ConsoleSettings again = Load();
    EXPECT_EQ(again.GetLineLimit(), 1'000u);
    ASSERT_TRUE(again.GetFont(font));
    EXPECT_NEAR(font.lfHeight, -20, 1);
    EXPECT_EQ(font.lfWeight, FW_BOLD);
    EXPECT_STREQ(font.lfFaceName, L"Some Face");
    EXPECT_EQ(again.GetRecentFiles(), (std::vector<std::wstring>{L"c:\\A.LOG", L"C:\\b & c.log"}));
    again.RemoveRecentFile(L"C:\\a.log");
    for (int i = 0; i < 20; ++i) {
        again.AddRecentFile(L"C:\\" + std::to_wstring(i));
    }
    Save(again);
    EXPECT_EQ(Load().GetRecentFiles().size(), ConsoleSettings::mostRecentFiles);
    EXPECT_EQ(Load().GetRecentFiles().front(), L"C:\\19");
}

TEST_F(ConsoleSettingsTest, EveryChoiceComesBack)
{
    ConsoleChoices other;
    other.lineLimit = 77;
    other.outlines = other.splits = other.matchesCase = other.matchesWords = other.logs = true;
    other.colorsLines = other.wrapsAround = other.findsWhileTyping = false;
    other.showsSent = other.follows = other.remembers = false;
    other.colors = {CLR_INVALID, 1, 2, 3, 0xFFFFFF};
    other.font = L"120 700 1 Some Face";
    other.lineEnd = static_cast<unsigned>(LineEnd::Cr);
    other.tlsVersions = YProfileTlsVersions::version13;
    other.logFolder = L"C:\\caf\xE9; \"a\"=1";
    other.certificate = L"C:\\me.pfx";
    other.codePage = 1251;
    other.tabWidth = 3;
    ConsoleSettings settings = Load();
    settings.SetChoices(other);
    settings.SetFindPlace(YPoint(-5, 120));
    Save(settings);
    EXPECT_TRUE(Load().GetChoices() == other);
    EXPECT_EQ(Load().GetFindPlace(), YPoint(-5, 120));
    settings.SetChoices({});
    Save(settings);
    EXPECT_TRUE(Load().GetChoices() == ConsoleChoices());
}

TEST_F(ConsoleSettingsTest, WhatMakesNoSenseIsTheDefault)
{
    WriteFile("Line End=dword:00000003\r\nTab Width=dword:00000000\r\nFollow Files=\"no\"\r\n"
              "Error Colour=dword:01000000\r\nFind Window=\"left\"\r\nTLS Versions=dword:1\r\n");
    EXPECT_TRUE(Load().GetChoices() == ConsoleChoices());
    EXPECT_EQ(Load().GetFindPlace(), YPoint(-1, -1));
    for (const char* lines : {"dword:00000000", "dword:000f4241", "\"many\"", "hex:01"}) {
        WriteFile(std::string("Buffer Lines=") + lines + "\r\nFont=\"0 400 0 X\"\r\n");
        const ConsoleSettings settings = Load();
        LOGFONT font{};
        EXPECT_EQ(settings.GetLineLimit(), 100'000u) << lines;
        EXPECT_FALSE(settings.GetFont(font));
    }
    EXPECT_EQ(incidents, 0);
    WriteFile("\x01\x02 no settings");
    EXPECT_EQ(Load().GetLineLimit(), 100'000u);
    EXPECT_EQ(incidents, 1);
    EXPECT_TRUE(fs::exists(folder / L"Console.ini.bad"));
}

TEST_F(ConsoleSettingsTest, TheAdministratorDecidesTheBufferSize)
{
    ConsoleSettings settings = Load();
    settings.SetLineLimit(2'000);
    Save(settings);
    constexpr wchar_t policies[] = L"Software\\Policies\\Orlith";
    ScratchRegistry::SetNumber(HKEY_CURRENT_USER, policies, L"Buffer Lines", 5'000);
    EXPECT_TRUE(Load().IsLineLimitLocked());
    EXPECT_EQ(Load().GetLineLimit(), 5'000u);
    ScratchRegistry::SetNumber(HKEY_LOCAL_MACHINE, policies, L"Buffer Lines", 2'000'000);
    EXPECT_FALSE(Load().IsLineLimitLocked()) << "more than there may be locks nothing";
    EXPECT_EQ(Load().GetLineLimit(), 2'000u) << "the user's own choice is still there";
}

TEST(ConsoleSettings, WithoutAProfileTheDefaultsServe)
{
    ConsoleSettings settings;
    YReportMessageParams error;
    EXPECT_FALSE(settings.Load(error));
    EXPECT_NE(error.GetMessageId(), 0u);
    EXPECT_EQ(settings.GetLineLimit(), 100'000u);
    settings.SetLineLimit(500);
    EXPECT_FALSE(settings.Save(error));
}
