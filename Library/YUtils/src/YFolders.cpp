#include "YFolders.h"

#include "IString.h"
#include "YCriticalSection.h"
#include "YLongPath.h"
#include "YMessages.h"
#include "YReportMessageParams.h"
#include "YUniqueHandle.h"

#include <afxwin.h>

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>

#include <objbase.h>
#include <shlobj.h>

namespace {

// One of the process's folders. One lock for all: they are set once and read rarely.
class SharedFolder
{
public:
    void Set(const wchar_t* path)
    {
        const std::lock_guard lock(mutex);
        folder = path;
    }
    // The caller's string is the host's code: not run under the lock.
    void Get(IString* path) const { path->Assign(Copy().c_str(), Str::NotSensitive); }

private:
    YUnicodeString Copy() const
    {
        const std::lock_guard lock(mutex);
        return folder;
    }

    static inline constinit YCriticalSection mutex;
    YUnicodeString folder;
};

SharedFolder configFolder;
SharedFolder installFolder;
SharedFolder sshDataFolder;
SharedFolder userDataFolder;

struct TaskMemoryTraits
{
    using Handle = void*;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle block) noexcept { ::CoTaskMemFree(block); }
};
using UniqueTaskMemory = YUniqueHandle<TaskMemoryTraits>;

// What the shell's newer dialogs ask of their thread.
class OleScope
{
public:
    OleScope() : result(::OleInitialize(nullptr)) {}
    OleScope(const OleScope&) = delete;
    OleScope& operator=(const OleScope&) = delete;
    ~OleScope()
    {
        if (*this) {
            ::OleUninitialize();
        }
    }
    explicit operator bool() const { return SUCCEEDED(result); }

private:
    HRESULT result;
};

enum class Kind { Missing, File, Folder };

// Missing: GetLastError() tells why.
Kind GetKind(const wchar_t* path)
{
    DWORD attributes = INVALID_FILE_ATTRIBUTES;
    YRunWithLongPath(path, [&](const wchar_t* name) {
        attributes = ::GetFileAttributesW(name);
        return attributes != INVALID_FILE_ATTRIBUTES;
    });
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return Kind::Missing;
    }
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? Kind::Folder : Kind::File;
}

// Another thread or process at the same time has another name.
std::wstring GetTemporaryName(const wchar_t* folder)
{
    static std::atomic<unsigned> counter;
    std::wstring name = folder;
    if (!name.ends_with(L'\\') && !name.ends_with(L'/')) {
        name += L'\\';
    }
    return name + L"TEST" + std::to_wstring(::GetCurrentProcessId()) + L"-" +
           std::to_wstring(++counter) + L".tmp";
}

// The system deletes the file as soon as it is closed, even if the process dies first.
bool CreateTemporaryFile(const std::wstring& name)
{
    return YRunWithLongPath(name.c_str(), [](const wchar_t* path) {
        const YUniqueFile file(::CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                             FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE,
                                             nullptr));
        return static_cast<bool>(file);
    });
}

// False: GetLastError() tells why, or nothing.
bool CanCreateFileIn(const wchar_t* folder)
{
    const Kind kind = GetKind(folder);
    if (kind != Kind::Folder) {
        if (kind == Kind::File) {
            ::SetLastError(ERROR_DIRECTORY);
        }
        return false;
    }
    for (int attempt = 0; attempt < 10; ++attempt) {
        if (CreateTemporaryFile(GetTemporaryName(folder))) {
            return true;
        }
        if (::GetLastError() != ERROR_FILE_EXISTS) {
            break;  // else a file of somebody else's has that name
        }
    }
    return false;
}

void MakeFullPath(YUnicodeString& folder)
{
    const std::wstring full = YGetFullPath(folder.c_str());
    if (!full.empty() && full.size() < MAX_PATH) {
        folder = full.c_str();
    }
}

std::wstring_view WithoutTrailing(std::wstring_view separators, std::wstring_view path)
{
    return path.substr(0, path.find_last_not_of(separators) + 1);
}

bool IsDrivePath(std::wstring_view path)
{
    return YStartsWithDrive(path) && (path.size() == 2 || path[2] == L'\\');
}

bool DriveExists(wchar_t letter)
{
    const wchar_t root[] = {letter, L':', L'\\', L'\0'};
    return ::GetDriveTypeW(root) != DRIVE_NO_ROOT_DIR;
}

bool IsOnExistingDrive(const wchar_t* path)
{
    const std::wstring full = YGetFullPath(path);
    return IsDrivePath(full) && DriveExists(full[0]);
}

// Length of the part in front of the file name, separator included.
std::size_t FindFileName(std::wstring_view path)
{
    const std::size_t separator = path.find_last_of(L"\\/");
    return (separator != path.npos ? separator : path.rfind(L':')) + 1;  // npos + 1 is 0
}

// Where the shell's dialog starts. Empty: where it likes.
std::wstring FindStartFolder(CWnd* edit, const wchar_t* initialFolder,
                             const wchar_t* fallbackFolder)
{
    CString typed;
    edit->GetWindowText(typed);
    for (const wchar_t* folder :
         {static_cast<const wchar_t*>(typed), initialFolder, fallbackFolder}) {
        if (folder && GetKind(folder) == Kind::Folder) {
            return YGetFullPath(folder);
        }
    }
    return {};
}

int CALLBACK SelectStartFolder(HWND dialog, UINT message, LPARAM, LPARAM start)
{
    if (message == BFFM_INITIALIZED) {
        ::SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, start);
    }
    return 0;
}

// Empty: cancelled, or not a folder of the file system.
YUnicodeString AskForFolder(CWnd* parent, const wchar_t* title, const std::wstring& start)
{
    const OleScope ole;
    BROWSEINFOW browse{};
    browse.hwndOwner = parent ? parent->GetSafeHwnd() : nullptr;
    browse.lpszTitle = title;
    browse.ulFlags = BIF_RETURNONLYFSDIRS | (ole ? BIF_NEWDIALOGSTYLE : 0u);
    if (!start.empty()) {
        browse.lpfn = &SelectStartFolder;
        browse.lParam = reinterpret_cast<LPARAM>(start.c_str());
    }
    const UniqueTaskMemory item(::SHBrowseForFolderW(&browse));
    PWSTR path = nullptr;
    if (item) {
        ::SHGetNameFromIDList(static_cast<PCIDLIST_ABSOLUTE>(item.Get()), SIGDN_FILESYSPATH, &path);
    }
    const UniqueTaskMemory owner(path);
    return path;
}

}  // namespace

void SetOrxConfigPathSub(const wchar_t* path)
{
    configFolder.Set(path);
}

void SetOrxInstallPathSub(const wchar_t* path)
{
    installFolder.Set(path);
}

void SetOrxSshDataPathSub(const wchar_t* path)
{
    sshDataFolder.Set(path);
}

void SetOrxUserDataPathSub(const wchar_t* path)
{
    userDataFolder.Set(path);
}

void GetOrxConfigPathSub(IString* path)
{
    configFolder.Get(path);
}

void GetOrxInstallPathSub(IString* path)
{
    installFolder.Get(path);
}

void GetOrxSshDataPathSub(IString* path)
{
    sshDataFolder.Get(path);
}

void GetOrxUserDataPathSub(IString* path)
{
    userDataFolder.Get(path);
}

bool IsValidConfigFolder(YUnicodeString& folder, YReportMessageParams& error)
{
    ::SetLastError(ERROR_SUCCESS);  // calls that succeed leave an older code
    if (CanCreateFileIn(folder.c_str())) {
        MakeFullPath(folder);
        return true;
    }
    const DWORD code = ::GetLastError();
    if (code == ERROR_SUCCESS) {
        return true;
    }
    // The whole object: an earlier failure's inserts would come before the folder.
    error.SetErrorCode(code == ERROR_ACCESS_DENIED ? MSG_FOLDER_DENIED : MSG_FOLDER_NOT_VALID);
    error.AddInsert(folder.c_str());
    return false;
}

bool YExtractLocalDirectory(const wchar_t* path, YUnicodeString& directory,
                            YUnicodeString& fileName)
{
    if (!path || *path == L'\0') {
        return false;
    }
    const std::wstring whole = path;  // it may be the text of an output
    const std::wstring full = YGetFullPath(path);
    if (IsDrivePath(full)) {
        directory = YUnicodeString(WithoutTrailing(L"\\", whole));
        fileName.Clear();
        return DriveExists(full[0]);
    }
    const Kind kind = GetKind(whole.c_str());
    if (kind == Kind::Folder) {
        directory = YUnicodeString(whole);
        fileName.Clear();
        return true;
    }
    const std::wstring folder = whole.substr(0, FindFileName(whole));
    directory = YUnicodeString(WithoutTrailing(L"\\/", folder));
    fileName = YUnicodeString(whole.substr(folder.size()));
    return kind == Kind::File || IsOnExistingDrive(folder.c_str()) ||
           GetKind(folder.c_str()) == Kind::Folder;
}

bool OnBrowseLocalFolderHelper(CWnd* parent, CWnd* edit, const wchar_t* title,
                               YReportMessageParams& error, const wchar_t* initialFolder,
                               const wchar_t* fallbackFolder)
{
    YUnicodeString folder =
        AskForFolder(parent, title, FindStartFolder(edit, initialFolder, fallbackFolder));
    if (folder.IsEmpty() || !IsValidConfigFolder(folder, error)) {
        return false;
    }
    edit->SetWindowText(folder.c_str());
    return true;
}

// Bound when it is asked for, so that the library loads where the shell lacks it.
bool YGetKnownFolder(REFKNOWNFOLDERID id, YUnicodeString& folder)
{
    using GetFolder = HRESULT(WINAPI*)(REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR*);
    const FARPROC found =
        ::GetProcAddress(::GetModuleHandleW(L"shell32.dll"), "SHGetKnownFolderPath");
    const auto getFolder = reinterpret_cast<GetFolder>(reinterpret_cast<void*>(found));
    if (!getFolder) {
        return false;
    }
    PWSTR path = nullptr;
    const HRESULT result = getFolder(id, 0, nullptr, &path);
    const UniqueTaskMemory owner(path);
    if (FAILED(result) || !path) {
        return false;
    }
    folder = path;
    return true;
}
