// Files that are damaged, changed by others, or not to be touched.
#include "FolderProfile.h"
#include "OpenProfile.h"
#include "SafeFile.h"
#include "ScratchFolder.h"

#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

using Incident = ProfileReport::Incident;
using Files = std::set<std::wstring>;

class FolderProfileTest : public testing::Test
{
protected:
    FolderProfileTest() { Reopen(); }

    void Reopen()
    {
        factory.emplace(folder.GetPath(),
                        [this](const ProfileReport& report) { reports.push_back(report); });
        root = OpenRoot(*factory);
    }
    // As another process sees it.
    YProfileKey OpenElsewhere(const wchar_t* key)
    {
        elsewhere.emplace(folder.GetPath(), ProfileReportSink());
        return YProfileKey(OpenRoot(*elsewhere), key);
    }

    ScratchFolder folder;
    std::vector<ProfileReport> reports;
    std::optional<FolderProfileFactory> factory;
    std::optional<FolderProfileFactory> elsewhere;
    YProfileKey root{nullptr};
};

TEST_F(FolderProfileTest, KeepsOneReadableFileForEachKey)
{
    root.WriteDWORD(L"Runs", 3);
    YProfileKey(YProfileKey(root, L"Window"), L"Main").WriteString(L"Title", L"caf\u00E9");
    root = YProfileKey(nullptr);
    EXPECT_EQ(folder.GetFiles(), (Files{L"Settings.ini", L"Window.ini"}));
    EXPECT_EQ(folder.Read(L"Window.ini"), "; CommonUi settings, version 1\r\n"
                                          "[Main]\r\nTitle=\"caf\xC3\xA9\"\r\n; end\r\n");
}

TEST_F(FolderProfileTest, WritesNothingWhereNothingWasChanged)
{
    const YProfileKey key(root, L"Key");
    key.WriteDWORD(L"Value", 1);
    EXPECT_TRUE(key.Flush());
    const FileStamp before = GetFileStamp(folder.GetPath(L"Key.ini"));
    key.WriteDWORD(L"Value", 1);
    EXPECT_TRUE(key.Flush());
    EXPECT_TRUE(root.Flush());
    EXPECT_EQ(GetFileStamp(folder.GetPath(L"Key.ini")), before);
    EXPECT_TRUE(before);
}

TEST_F(FolderProfileTest, ReadingLeavesNoTrace)
{
    DWORD value = 0;
    EXPECT_FALSE(root.ReadDWORD(L"Value", value));
    EXPECT_FALSE(YProfileKey(root, L"Key", YProfileKey::openExisting).IsOpen());
    root = YProfileKey(nullptr);
    EXPECT_EQ(folder.GetFiles(), Files());
    EXPECT_FALSE(folder.Has(L".lock"));
}

TEST_F(FolderProfileTest, MakesItsFolderWithTheFirstSave)
{
    const std::wstring path = folder.GetPath(L"new");
    const FolderProfileFactory unused(path, {});
    EXPECT_FALSE(folder.Has(L"new"));
    FolderProfileFactory used(path, {});
    const YProfileKey key(OpenRoot(used), L"Key");
    EXPECT_TRUE(key.Flush());
    EXPECT_TRUE(folder.Has(L"new\\Key.ini"));
}

TEST_F(FolderProfileTest, KeepsDamagedFilesAsideUpToNine)
{
    for (int i = 1; i <= 10; ++i) {
        folder.Write(L"Key.ini", "garbage " + std::to_string(i));
        const YProfileKey key(root, L"Key");
        ASSERT_TRUE(key.IsOpen());
        EXPECT_TRUE(key.GetValueNames().empty());
        ASSERT_EQ(reports.size(), static_cast<std::size_t>(i));
        EXPECT_EQ(reports.back().incident, Incident::FileDamaged);
        EXPECT_EQ(reports.back().file, folder.GetPath(L"Key.ini"));
        EXPECT_EQ(reports.back().keptAs.empty(), i == 10);
    }
    EXPECT_EQ(folder.Read(L"Key.ini.bad"), "garbage 1");
    EXPECT_EQ(folder.Read(L"Key.ini.bad9"), "garbage 9");
    EXPECT_EQ(reports.front().keptAs, folder.GetPath(L"Key.ini.bad"));
    EXPECT_EQ(folder.GetFiles().size(), 10u);
}

TEST_F(FolderProfileTest, KeepsFilesOfNoSaneSizeAside)
{
    folder.Write(L"Settings.ini", "a=dword:1\n" + std::string(16u << 20, ';'));
    EXPECT_TRUE(root.WriteDWORD(L"Value", 1));
    EXPECT_TRUE(folder.Has(L"Settings.ini.bad"));
    const std::vector<BYTE> many(9u << 20);
    EXPECT_TRUE(root.WriteBinary(L"Large", many.data(), static_cast<unsigned>(many.size())));
    EXPECT_FALSE(root.Flush());
    EXPECT_EQ(CodeOf(root), DWORD{ERROR_FILE_TOO_LARGE});
    EXPECT_TRUE(root.DeleteValue(L"Large"));
    EXPECT_TRUE(root.Flush());
}

TEST_F(FolderProfileTest, DoesNotTouchAFileThatCannotBeOpened)
{
    folder.Write(L"Key.ini", "a=dword:1\n");
    const YUniqueFile held(::CreateFileW(folder.GetPath(L"Key.ini").c_str(), GENERIC_READ, 0,
                                         nullptr, OPEN_EXISTING, 0, nullptr));
    const YProfileKey key(root, L"Key");
    EXPECT_FALSE(key.IsOpen());
    EXPECT_EQ(CodeOf(key), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_TRUE(reports.empty());
    EXPECT_EQ(folder.GetFiles(), Files{L"Key.ini"});
}

TEST_F(FolderProfileTest, MergesWhatOthersHaveSaved)
{
    {
        const YProfileKey first = OpenElsewhere(L"Key");
        for (const wchar_t* name : {L"Stays", L"Ours", L"Theirs", L"OursGone", L"TheirsGone"}) {
            first.WriteDWORD(name, 1);
        }
        for (const wchar_t* name : {L"OursGone", L"OursAgain", L"TheirsGone", L"TheirsButOurs"}) {
            YProfileKey(first, name).WriteDWORD(L"Old", 1);
        }
    }
    const YProfileKey ours(root, L"Key");
    const YProfileKey kept(ours, L"TheirsButOurs");
    const YProfileKey gone(ours, L"TheirsGone");
    ours.WriteDWORD(L"Ours", 2);
    ours.WriteDWORD(L"OursNew", 2);
    ours.DeleteValue(L"OursGone");
    ours.DeleteKey(L"OursGone");
    ours.DeleteKey(L"OursAgain");
    YProfileKey(ours, L"OursAgain").WriteDWORD(L"New", 2);
    kept.WriteDWORD(L"New", 2);
    {
        const YProfileKey theirs = OpenElsewhere(L"Key");
        theirs.WriteDWORD(L"Ours", 3);
        theirs.WriteDWORD(L"Theirs", 3);
        theirs.WriteDWORD(L"OursGone", 3);
        theirs.DeleteValue(L"TheirsGone");
        theirs.DeleteKey(L"TheirsGone");
        theirs.DeleteKey(L"TheirsButOurs");
        YProfileKey(theirs, L"TheirsNew").WriteDWORD(L"New", 3);
    }
    EXPECT_TRUE(ours.Flush());
    EXPECT_FALSE(gone.WriteDWORD(L"New", 2));
    EXPECT_EQ(ReadNumber(ours, L"Theirs"), 3u);
    ours.WriteDWORD(L"Stays", 4);
    EXPECT_TRUE(ours.Flush());
    EXPECT_EQ(folder.Read(L"Key.ini"), "; CommonUi settings, version 1\r\n"
                                       "Stays=dword:00000004\r\n"
                                       "Ours=dword:00000002\r\n"
                                       "Theirs=dword:00000003\r\n"
                                       "OursNew=dword:00000002\r\n"
                                       "[TheirsButOurs]\r\nNew=dword:00000002\r\n"
                                       "[OursAgain]\r\nNew=dword:00000002\r\n"
                                       "[TheirsNew]\r\nNew=dword:00000003\r\n"
                                       "; end\r\n");
}

void WINAPI StandStill(FILETIME* time)
{
    *time = {0, 30'000'000};
}

TEST_F(FolderProfileTest, SeesASaveOfTheSameSizeAtTheSameTime)
{
    const ImportHook clock(nullptr, "KERNEL32.dll", "GetSystemTimeAsFileTime", &StandStill);
    const YProfileKey ours(root, L"Key");
    ours.WriteDWORD(L"Theirs", 1);
    EXPECT_TRUE(ours.Flush());
    OpenElsewhere(L"Key").WriteDWORD(L"Theirs", 2);
    ours.WriteDWORD(L"Ours", 1);
    EXPECT_TRUE(ours.Flush());
    EXPECT_EQ(ReadNumber(ours, L"Theirs"), 2u);
}

TEST_F(FolderProfileTest, ADamagedFileDoesNotCostWhatIsInMemory)
{
    const YProfileKey key(root, L"Key");
    key.WriteDWORD(L"Old", 1);
    EXPECT_TRUE(key.Flush());
    folder.Write(L"Key.ini", "garbage");
    key.WriteDWORD(L"New", 2);
    EXPECT_TRUE(key.Flush());
    EXPECT_EQ(reports.size(), 1u);
    EXPECT_EQ(ReadNumber(OpenElsewhere(L"Key"), L"Old"), 1u);
    EXPECT_EQ(ReadNumber(OpenElsewhere(L"Key"), L"New"), 2u);
}

TEST_F(FolderProfileTest, ReportsToTheHostWhatTheLastReleaseCouldNotSave)
{
    {
        const YProfileKey key(root, L"Key");
        key.WriteDWORD(L"Value", 1);
        EXPECT_TRUE(key.Flush());
        key.WriteDWORD(L"Value", 2);
        std::filesystem::create_directory(folder.GetPath(L"Key.ini.tmp"));
    }
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports[0].incident, Incident::SaveFailed);
    EXPECT_EQ(reports[0].error.GetMessageId(), static_cast<unsigned>(ERROR_ACCESS_DENIED));
    EXPECT_EQ(ReadNumber(OpenElsewhere(L"Key"), L"Value"), 1u);
}

}  // namespace
