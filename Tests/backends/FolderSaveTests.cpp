// A save that is interrupted anywhere leaves the whole old file or the whole new one.
#include "FileFaults.h"
#include "FolderProfile.h"
#include "OpenProfile.h"
#include "SafeFile.h"
#include "ScratchFolder.h"
#include "SystemCalls.h"

#include "support/LeakCheck.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

using Files = std::set<std::wstring>;

class FolderSaveTest : public testing::TestWithParam<bool>
{
protected:
    // Value is 1 in a file, or, where the parameter says so, nowhere yet.
    void Prepare()
    {
        std::filesystem::remove(folder.GetPath(L"Key.ini"));
        if (GetParam()) {
            Save(1);
        }
    }
    bool Save(DWORD value)
    {
        FolderProfileFactory factory(folder.GetPath(), {});
        const YProfileKey key(OpenRoot(factory), L"Key");
        return key.WriteDWORD(L"Value", value) && key.Flush();
    }
    // 0: there is none.
    DWORD Load()
    {
        bool isDamaged = false;
        FolderProfileFactory factory(folder.GetPath(),
                                     [&](const ProfileReport&) { isDamaged = true; });
        const YProfileKey key(OpenRoot(factory), L"Key", YProfileKey::openExisting);
        const DWORD value = ReadNumber(key, L"Value");
        EXPECT_FALSE(isDamaged);
        return value;
    }
    DWORD GetOldValue() const { return GetParam() ? 1 : 0; }

    ScratchFolder folder;
};

TEST_P(FolderSaveTest, SurvivesTheEndOfTheProcessAtEveryCall)
{
    FileFaults faults;
    int call = 0;
    unsigned oldFiles = 0;
    bool isReached = true;
    while (isReached) {
        SCOPED_TRACE("call " + std::to_string(++call));
        Prepare();
        faults.FailAt(call, FileFaults::Kind::EndsProcess);
        Save(2);
        isReached = faults.IsReached();
        faults.Stop();
        const DWORD value = Load();
        EXPECT_TRUE(value == 2 || (value == GetOldValue() && isReached)) << value;
        oldFiles += value != 2;
        EXPECT_TRUE(Save(3));  // nothing stands in the way
        EXPECT_EQ(Load(), 3u);
        EXPECT_EQ(folder.GetFiles(), Files{L"Key.ini"});
    }
    EXPECT_GT(oldFiles, 4u);
    EXPECT_GT(call, 10);
}

TEST_P(FolderSaveTest, TellsOfEveryFailedCallAndSavesLater)
{
    for (const auto kind : {FileFaults::Kind::Fails, FileFaults::Kind::WritesHalf}) {
        FileFaults faults;
        const LeakCheck leaks;
        int failures = 0;
        bool isReached = true;
        for (int call = 1; isReached; ++call) {
            SCOPED_TRACE("call " + std::to_string(call));
            Prepare();
            FolderProfileFactory factory(folder.GetPath(), {});
            const YProfileKey key(OpenRoot(factory), L"Key");
            EXPECT_TRUE(key.WriteDWORD(L"Value", 2));
            faults.FailAt(call, kind);
            const bool isSaved = key.Flush();
            isReached = faults.IsReached();
            faults.Stop();
            if (!isSaved) {
                ++failures;
                EXPECT_EQ(CodeOf(key), DWORD{ERROR_DISK_FULL});
            }
            EXPECT_EQ(Load(), isSaved ? 2 : GetOldValue());
            EXPECT_EQ(folder.GetFiles().size(), isSaved || GetParam() ? 1u : 0u);
            EXPECT_TRUE(key.WriteDWORD(L"Value", 3));
            EXPECT_TRUE(key.Flush());
            EXPECT_EQ(Load(), 3u);
        }
        EXPECT_GE(failures, kind == FileFaults::Kind::Fails ? 4 : 1);
    }
}

INSTANTIATE_TEST_SUITE_P(OfExistingFile, FolderSaveTest, testing::Bool());

class HeldFileTest : public testing::Test
{
protected:
    HeldFileTest()
    {
        folder.Write(L"Key.ini", "Value=dword:1\n");
        key = YProfileKey(OpenRoot(factory), L"Key");
        key.WriteDWORD(L"Value", 2);
        holder.Reset(::CreateFileW(folder.GetPath(L"Key.ini").c_str(), GENERIC_READ,
                                   FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    static HANDLE WINAPI ReleaseAtThirdRefusal(LPCWSTR path, DWORD access, DWORD sharing,
                                               SECURITY_ATTRIBUTES* security, DWORD disposition,
                                               DWORD flags, HANDLE pattern)
    {
        const HANDLE file =
            systemCalls.CreateFileW(path, access, sharing, security, disposition, flags, pattern);
        if (file == INVALID_HANDLE_VALUE && access == DELETE && ++refusals == 3) {
            holder.Reset();
        }
        return file;
    }

    ScratchFolder folder;
    FolderProfileFactory factory{folder.GetPath(), {}};
    YProfileKey key{nullptr};
    static inline YUniqueFile holder{INVALID_HANDLE_VALUE};  // as a virus scanner does
    static inline int refusals = 0;
};

TEST_F(HeldFileTest, SavesWhenAnotherProgramLetsGoOfTheFile)
{
    refusals = 0;
    const ImportHook hook(nullptr, "KERNEL32.dll", "CreateFileW", &ReleaseAtThirdRefusal);
    EXPECT_TRUE(key.Flush());
    EXPECT_EQ(refusals, 3);
    EXPECT_NE(folder.Read(L"Key.ini").find("Value=dword:00000002"), std::string::npos);
}

TEST_F(HeldFileTest, GivesUpInTimeWhereAnotherProgramKeepsTheFile)
{
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_FALSE(key.Flush());
    const ULONGLONG waited = ::GetTickCount64() - start;
    EXPECT_GE(waited, patienceMilliseconds);
    EXPECT_LT(waited, patienceMilliseconds + 1500);
    EXPECT_NE(CodeOf(key), 0u);
    EXPECT_EQ(folder.Read(L"Key.ini"), "Value=dword:1\n");
    EXPECT_EQ(folder.GetFiles(), Files{L"Key.ini"});
    holder.Reset();
    EXPECT_TRUE(key.Flush());
}

YUniqueKernelHandle StartWriter(const std::wstring& arguments)
{
    wchar_t program[MAX_PATH];
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring command =
        std::filesystem::path(program).replace_filename(L"BackendWriter.exe").wstring() + L" " +
        arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    ::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &startup, &process);
    const YUniqueKernelHandle thread(process.hThread);
    return YUniqueKernelHandle(process.hProcess);
}

DWORD WaitForStatus(const YUniqueKernelHandle& process)
{
    constexpr DWORD limit = 60'000;  // milliseconds
    DWORD status = STILL_ACTIVE;
    if (::WaitForSingleObject(process.Get(), limit) == WAIT_OBJECT_0) {
        ::GetExitCodeProcess(process.Get(), &status);
    }
    return status;
}

TEST(FolderSaveProcess, TwoProcessesThatSaveAtOnceLoseNothing)
{
    const ScratchFolder folder;
    const YUniqueKernelHandle first = StartWriter(folder.GetPath() + L" a 50");
    const YUniqueKernelHandle second = StartWriter(folder.GetPath() + L" b 50");
    EXPECT_EQ(WaitForStatus(first), 0u);
    EXPECT_EQ(WaitForStatus(second), 0u);
    FolderProfileFactory factory(folder.GetPath(), {});
    const YProfileKey key(OpenRoot(factory), L"Key");
    EXPECT_EQ(key.GetValueNames().size(), 100u);
    EXPECT_EQ(ReadNumber(key, L"a50"), 50u);
    EXPECT_EQ(folder.GetFiles(), Files{L"Key.ini"});
}

// Where the old file is gone already, the complete new one takes its place.
TEST(FolderSaveProcess, DiesWithoutHarm)
{
    const struct
    {
        const wchar_t* function;
        bool survivesOld;
    } deaths[] = {{L"WriteFile", true}, {L"ReplaceFileW", true}, {L"MoveFileExW", false}};
    for (const auto& death : deaths) {
        const ScratchFolder folder;
        folder.Write(L"Key.ini", "Old=dword:1\n");
        EXPECT_EQ(WaitForStatus(StartWriter(folder.GetPath() + L" New 1 " + death.function)), 77u);
        EXPECT_TRUE(folder.Has(L"Key.ini.tmp"));
        FolderProfileFactory factory(folder.GetPath(), {});
        const YProfileKey key(OpenRoot(factory), L"Key");
        EXPECT_EQ(ReadNumber(key, L"Old"), 1u);
        EXPECT_EQ(ReadNumber(key, L"New1"), death.survivesOld ? 0u : 1u);
        EXPECT_EQ(folder.GetFiles(), Files{L"Key.ini"});
        EXPECT_TRUE(key.WriteDWORD(L"Later", 2));
        EXPECT_TRUE(key.Flush());
    }
}

}  // namespace
