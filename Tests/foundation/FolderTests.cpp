#include "YFolders.h"
#include "YLongPath.h"
#include "YMessages.h"
#include "YReportMessageParams.h"

#include "support/ImportHook.h"

#include <afxwin.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <knownfolders.h>
#include <shlobj.h>

namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

const std::wstring longPrefix = L"\\\\?\\";

// While it lives the library can make no file; ERROR_SUCCESS: nor is it told why.
class RefusedFiles
{
public:
    explicit RefusedFiles(DWORD codeOfIt) { code = codeOfIt; }

private:
    static HANDLE WINAPI Create(LPCWSTR, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE)
    {
        if (code != ERROR_SUCCESS) {
            ::SetLastError(code);
        }
        return INVALID_HANDLE_VALUE;
    }

    static inline DWORD code;
    ImportHook file{L"CommonUi.dll", "kernel32.dll", "CreateFileW", &Create};
};

// The shell's dialog and the user before it.
std::wstring chosenFolder;  // empty: cancelled
std::wstring startFolder;

LRESULT WINAPI SendToDialog(HWND, UINT message, WPARAM isPath, LPARAM path)
{
    const bool isStart = message == BFFM_SETSELECTIONW && isPath;
    startFolder = isStart ? reinterpret_cast<wchar_t*>(path) : L"?";
    return 0;
}

PIDLIST_ABSOLUTE WINAPI Browse(LPBROWSEINFOW browse)
{
    EXPECT_TRUE(browse->hwndOwner && browse->lpszTitle == L"Choose"s);
    const ImportHook select(L"CommonUi.dll", "user32.dll", "SendMessageW", &SendToDialog);
    startFolder.clear();
    if (browse->lpfn) {
        browse->lpfn(nullptr, BFFM_INITIALIZED, 0, browse->lParam);
    }
    return chosenFolder.empty() ? nullptr : ::ILCreateFromPathW(chosenFolder.c_str());
}

// A folder of the test's own.
class YFoldersTest : public testing::Test
{
protected:
    YFoldersTest() { fs::create_directory(folder); }
    ~YFoldersTest() override
    {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    static void ExpectRefused(const std::wstring& refused, unsigned message)
    {
        YUnicodeString checked(refused);
        YReportMessageParams error(MSG_FIND_WHAT);
        error.AddInsert(L"an earlier one");
        EXPECT_FALSE(IsValidConfigFolder(checked, error));
        EXPECT_EQ(error.GetMessageId(), message);
        EXPECT_NE(std::wstring(error.GetText()).find(L"'" + refused + L"'"), std::wstring::npos);
        EXPECT_EQ(checked, YUnicodeString(refused));
    }
    static void ExpectValid(const std::wstring& valid, const std::wstring& fullPath)
    {
        YUnicodeString checked(valid);
        YReportMessageParams error;
        EXPECT_TRUE(IsValidConfigFolder(checked, error));
        EXPECT_EQ(checked, YUnicodeString(fullPath));
    }

    const std::wstring folder = fs::temp_directory_path().wstring() + L"CommonUiTests" +
                                std::to_wstring(::GetCurrentProcessId());
};

}  // namespace

TEST_F(YFoldersTest, FolderThatTakesFilesIsValidAndStaysAsItWas)
{
    wchar_t before[MAX_PATH];
    ::GetCurrentDirectoryW(MAX_PATH, before);
    ::SetCurrentDirectoryW(folder.c_str());
    fs::create_directory(L"sub");
    ExpectValid(L"sub", folder + L"\\sub");
    EXPECT_TRUE(fs::is_empty(L"sub"));
    ExpectValid(folder + L"\\sub\\..\\", folder + L"\\");
    ::SetCurrentDirectoryW(before);
}

TEST_F(YFoldersTest, FolderThatTakesNoFilesIsRefused)
{
    std::ofstream(fs::path(folder + L"\\file")).put('x');
    for (const wchar_t* name : {L"\\missing", L"\\missing\\too", L"\\file"}) {
        ExpectRefused(folder + name, MSG_FOLDER_NOT_VALID);
    }
    {
        const RefusedFiles denied(ERROR_ACCESS_DENIED);
        ExpectRefused(folder, MSG_FOLDER_DENIED);
    }
    const RefusedFiles silent(ERROR_SUCCESS);
    ::SetLastError(ERROR_ACCESS_DENIED);  // of something else, long ago
    ExpectValid(folder, folder);
}

TEST(YLongPath, IsTriedOnceAndOnlyWhereItCanHelp)
{
    std::vector<std::wstring> tried;
    const auto run = [&](const wchar_t* path, DWORD code) {
        tried.clear();
        return YRunWithLongPath(path, [&](const wchar_t* name) {
            tried.emplace_back(name);
            ::SetLastError(code);
            return tried.size() > 1;
        });
    };
    EXPECT_TRUE(run(L"\\\\server\\share\\a", ERROR_FILENAME_EXCED_RANGE));
    EXPECT_EQ(tried.back(), L"\\\\?\\UNC\\server\\share\\a");
    EXPECT_TRUE(run(L"z:\\a", ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(tried.back(), L"\\\\?\\z:\\a");
    EXPECT_FALSE(run(L"z:\\a", ERROR_FILE_NOT_FOUND));
    for (const wchar_t* path : {L"", L"C:folder", L"folder\\file", L"\\folder", L"\\\\?\\C:\\a"}) {
        EXPECT_FALSE(run(path, ERROR_PATH_NOT_FOUND)) << path;
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
    }
}

TEST_F(YFoldersTest, TypedPathIsSplit)
{
    std::wstring absent = L"A:\\";
    while (::GetDriveTypeW(absent.c_str()) != DRIVE_NO_ROOT_DIR) {
        ++absent[0];
    }
    std::ofstream(fs::path(folder + L"\\file.txt")).put('x');
    const std::wstring existing = longPrefix + folder;  // does not begin with a drive
    const struct
    {
        std::wstring path, directory, fileName;
        bool result;
    } cases[] = {{L"C:\\", L"C:", L"", true},
                 {absent + L"a", absent + L"a", L"", false},
                 {existing, existing, L"", true},
                 {existing + L"\\file.txt", existing, L"file.txt", true},
                 {existing + L"\\new.txt", existing, L"new.txt", true},
                 {existing + L"\\no/new.txt", existing + L"\\no", L"new.txt", false},
                 {L"", L"before", L"before", false}};
    for (const auto& c : cases) {
        YUnicodeString directory(L"before");
        YUnicodeString fileName(L"before");
        EXPECT_EQ(YExtractLocalDirectory(c.path.c_str(), directory, fileName), c.result) << c.path;
        EXPECT_EQ(directory, YUnicodeString(c.directory));
        EXPECT_EQ(fileName, YUnicodeString(c.fileName)) << c.path;
    }
}

TEST_F(YFoldersTest, ChosenFolderGoesIntoTheEditControlIfItIsValid)
{
    CWnd edit;
    edit.CreateEx(0, L"EDIT", L"typed", WS_POPUP, CRect(0, 0, 100, 20), nullptr, 0);
    YReportMessageParams error;
    const auto browse = [&](const wchar_t* initial, const wchar_t* fallback) {
        const bool isChosen =
            OnBrowseLocalFolderHelper(&edit, &edit, L"Choose", error, initial, fallback);
        CString text;
        edit.GetWindowText(text);
        EXPECT_EQ(text, isChosen ? folder.c_str() : L"typed");
        return isChosen;
    };
    const ImportHook dialog(L"CommonUi.dll", "shell32.dll", "SHBrowseForFolderW", &Browse);
    chosenFolder.clear();
    EXPECT_FALSE(browse(L"missing", L"C:\\windows"));
    EXPECT_EQ(startFolder, L"C:\\windows");
    EXPECT_EQ(error.GetMessageId(), 0u);  // cancelled
    chosenFolder = folder;
    {
        const RefusedFiles denied(ERROR_ACCESS_DENIED);
        EXPECT_FALSE(browse(nullptr, nullptr));
        EXPECT_EQ(startFolder, L"");
        EXPECT_EQ(error.GetMessageId(), unsigned{MSG_FOLDER_DENIED});
    }
    EXPECT_TRUE(browse(L"C:\\windows", folder.c_str()));
    EXPECT_EQ(startFolder, L"C:\\windows");
    EXPECT_TRUE(browse(L"C:\\windows", nullptr));
    EXPECT_EQ(startFolder, folder);  // from the edit control
}

TEST(YKnownFolder, IsFoundWhereTheSystemHasIt)
{
    YUnicodeString found(L"before");
    EXPECT_FALSE(YGetKnownFolder(GUID{}, found));
    EXPECT_EQ(found, L"before");
    EXPECT_TRUE(YGetKnownFolder(FOLDERID_RoamingAppData, found));
    EXPECT_TRUE(fs::is_directory(found.c_str()));
}
