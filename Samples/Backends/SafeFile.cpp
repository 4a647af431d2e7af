#include "SafeFile.h"

#include <algorithm>

namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr unsigned maxKeptAside = 9;

std::wstring GetTemporaryPath(const std::wstring& path)
{
    return path + L".tmp";
}

// How the system says that another program has the file open. "Access denied" is among them: a file
// that is being deleted, or is mapped, answers with it.
bool IsHeldByOther(DWORD code)
{
    return code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION ||
           code == ERROR_LOCK_VIOLATION || code == ERROR_UNABLE_TO_REMOVE_REPLACED;
}

// Calls until the operation returns something else than that, or the time is over.
template <class Operation>
DWORD Persist(Operation operation, DWORD milliseconds = patienceMilliseconds)
{
    constexpr DWORD longestPause = 50;
    const ULONGLONG end = ::GetTickCount64() + milliseconds;
    DWORD pause = 2;
    for (;;) {
        const DWORD code = operation();
        const ULONGLONG now = ::GetTickCount64();
        if (!IsHeldByOther(code) || now >= end) {
            return code;
        }
        ::Sleep(std::min(pause, static_cast<DWORD>(end - now)));
        pause = std::min(pause * 2, longestPause);
    }
}

DWORD GetCode(BOOL succeeded)
{
    return succeeded ? ERROR_SUCCESS : ::GetLastError();
}

DWORD OpenFile(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition,
               DWORD flags, YUniqueFile& file)
{
    file.Reset(::CreateFileW(path.c_str(), access, sharing, nullptr, disposition, flags, nullptr));
    return GetCode(static_cast<bool>(file));
}

ULONGLONG Join(DWORD high, DWORD low)
{
    return static_cast<ULONGLONG>(high) << 32 | low;
}

ULONGLONG Join(FILETIME time)
{
    return Join(time.dwHighDateTime, time.dwLowDateTime);
}

FileStamp GetStamp(HANDLE file)
{
    LARGE_INTEGER size{};
    FILETIME written{};
    if (!::GetFileSizeEx(file, &size) || !::GetFileTime(file, nullptr, nullptr, &written)) {
        return {};
    }
    return {static_cast<ULONGLONG>(size.QuadPart), Join(written)};
}

DWORD ReadAll(HANDLE file, std::string& bytes)
{
    std::size_t read = 0;
    while (read < bytes.size()) {
        DWORD count = 0;
        if (!::ReadFile(file, bytes.data() + read, static_cast<DWORD>(bytes.size() - read), &count,
                        nullptr)) {
            return ::GetLastError();
        }
        if (count == 0) {
            break;  // it has just become shorter
        }
        read += count;
    }
    bytes.resize(read);
    return ERROR_SUCCESS;
}

DWORD WriteAll(HANDLE file, std::string_view bytes)
{
    DWORD written = 0;
    if (!::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) {
        return ::GetLastError();
    }
    return written == bytes.size() ? ERROR_SUCCESS : ERROR_DISK_FULL;
}

// Now, but later than the file before: the stamp would pass for that one's otherwise. 0: it could
// not be set, and the next save looks into the file.
ULONGLONG SetWriteTime(HANDLE file, ULONGLONG previous)
{
    FILETIME now{};
    ::GetSystemTimeAsFileTime(&now);
    const ULONGLONG time = std::max(Join(now), previous + 1);
    const FILETIME written{static_cast<DWORD>(time), static_cast<DWORD>(time >> 32)};
    return ::SetFileTime(file, nullptr, nullptr, &written) ? time : 0;
}

// stamp: of the file before, then of this one.
DWORD WriteTemporaryFile(const std::wstring& path, std::string_view bytes, FileStamp& stamp)
{
    YUniqueFile file;
    DWORD code = Persist([&] {
        return OpenFile(path, GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                        file);
    });
    if (code == ERROR_SUCCESS) {
        code = WriteAll(file.Get(), bytes);
    }
    if (code != ERROR_SUCCESS) {
        return code;
    }
    stamp = {bytes.size(), SetWriteTime(file.Get(), stamp.writeTime)};
    // Else the new name might reach the disk before the new contents do.
    return GetCode(::FlushFileBuffers(file.Get()));
}

// isOldLost: the system has taken the old file away and could not put the new one in its place.
DWORD MoveIntoPlace(const std::wstring& from, const std::wstring& path, bool& isOldLost)
{
    // Looked at first: some systems leave files of their own behind where ReplaceFileW is refused.
    YUniqueFile old;
    DWORD code = OpenFile(path, DELETE, shareAll, OPEN_EXISTING, 0, old);
    old.Reset();
    if (IsHeldByOther(code)) {
        return code;
    }
    if (code == ERROR_SUCCESS) {
        // ReplaceFileW, because it keeps who may read the file; where that cannot be done, as
        // between some file systems, the contents count.
        constexpr DWORD ignored = REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS;
        code =
            GetCode(::ReplaceFileW(path.c_str(), from.c_str(), nullptr, ignored, nullptr, nullptr));
        isOldLost = code == ERROR_UNABLE_TO_MOVE_REPLACEMENT;
        if (!isOldLost) {
            return code;
        }
    }
    return GetCode(::MoveFileExW(from.c_str(), path.c_str(),
                                 MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

// Folders that share a name wait for each other: no harm.
std::wstring GetMutexName(const std::wstring& path)
{
    constexpr std::size_t maxLength = 200;
    std::wstring name = path.substr(path.size() - std::min(path.size(), maxLength));
    ::CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
    std::replace(name.begin(), name.end(), L'\\', L'/');
    return L"CommonUi " + name;
}

void MakeFolderOf(const std::wstring& path)
{
    const std::wstring folder = path.substr(0, path.find_last_of(L'\\'));
    ::CreateDirectoryW(folder.c_str(), nullptr);
}

}  // namespace

FileStamp GetFileStamp(const std::wstring& path)
{
    WIN32_FILE_ATTRIBUTE_DATA info{};
    if (!::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &info)) {
        return {};
    }
    return {Join(info.nFileSizeHigh, info.nFileSizeLow), Join(info.ftLastWriteTime)};
}

void FolderLockFile::Close()
{
    file.Reset();
    mutex.Reset();
}

HANDLE FolderLockFile::GetMutex()
{
    if (!mutex) {
        mutex.Reset(::CreateMutexW(nullptr, FALSE, GetMutexName(path).c_str()));
    }
    return mutex.Get();
}

DWORD FolderLockFile::Open(DWORD milliseconds)
{
    if (file) {
        return ERROR_SUCCESS;
    }
    const auto open = [&] {
        return OpenFile(path, GENERIC_WRITE, shareAll, OPEN_ALWAYS, FILE_ATTRIBUTE_HIDDEN, file);
    };
    const DWORD code = Persist(open, milliseconds);
    if (code != ERROR_PATH_NOT_FOUND) {
        return code;
    }
    MakeFolderOf(path);
    return Persist(open, milliseconds);
}

DWORD FolderLockFile::Lock(DWORD milliseconds)
{
    const DWORD code = Open(milliseconds);
    if (code != ERROR_SUCCESS) {
        return code;
    }
    return Persist(
        [&] {
            OVERLAPPED start{};
            return GetCode(::LockFileEx(
                file.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &start));
        },
        milliseconds);
}

void FolderLockFile::Unlock()
{
    OVERLAPPED start{};
    ::UnlockFileEx(file.Get(), 0, 1, 0, &start);
}

bool FolderLockFile::IsDeleted() const
{
    FILE_STANDARD_INFO info{};
    return ::GetFileInformationByHandleEx(file.Get(), FileStandardInfo, &info, sizeof info) &&
           (info.DeletePending || info.NumberOfLinks == 0);
}

FileLock::FileLock(FolderLockFile& file, DWORD milliseconds)
    : lockFile(file), error(AwaitTurn(milliseconds))
{
    if (error != ERROR_SUCCESS) {
        return;
    }
    error = lockFile.Lock(milliseconds);
    // Deleted, perhaps with the whole folder: others will lock the next one.
    if (error == ERROR_SUCCESS && lockFile.IsDeleted()) {
        lockFile.file.Reset();
        error = lockFile.Lock(milliseconds);
    }
}

FileLock::~FileLock()
{
    if (error == ERROR_SUCCESS) {
        lockFile.Unlock();
    }
    if (isMutexOwned) {
        ::ReleaseMutex(lockFile.mutex.Get());
    }
}

DWORD FileLock::AwaitTurn(DWORD milliseconds)
{
    const HANDLE mutex = lockFile.GetMutex();
    if (!mutex) {
        return ERROR_SUCCESS;
    }
    const DWORD result = ::WaitForSingleObject(mutex, milliseconds);
    isMutexOwned = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
    return isMutexOwned ? ERROR_SUCCESS : ERROR_SHARING_VIOLATION;
}

DWORD ReadWholeFile(const std::wstring& path, std::size_t maxBytes, std::string& bytes,
                    FileStamp& stamp)
{
    YUniqueFile file;
    const DWORD code = Persist([&] {
        return OpenFile(path, GENERIC_READ, shareAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN,
                        file);
    });
    if (code != ERROR_SUCCESS) {
        return code;
    }
    stamp = GetStamp(file.Get());
    if (stamp.size > maxBytes) {
        return ERROR_FILE_TOO_LARGE;
    }
    bytes.resize(static_cast<std::size_t>(stamp.size));
    return ReadAll(file.Get(), bytes);
}

DWORD ReplaceWholeFile(const std::wstring& path, std::string_view bytes, FileStamp& stamp)
{
    const std::wstring temporary = GetTemporaryPath(path);
    FileStamp written = stamp;
    bool isOldLost = false;
    DWORD code = WriteTemporaryFile(temporary, bytes, written);
    if (code == ERROR_SUCCESS) {
        code = Persist([&] { return MoveIntoPlace(temporary, path, isOldLost); });
    }
    if (code == ERROR_SUCCESS) {
        stamp = written;
    } else if (!isOldLost) {
        ::DeleteFileW(temporary.c_str());
    }  // else it is all that there is: the next load takes it
    return code;
}

bool HasTemporaryFile(const std::wstring& path)
{
    return ::GetFileAttributesW(GetTemporaryPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

void SettleTemporaryFile(const std::wstring& path,
                         const std::function<bool(std::string_view)>& isWhole)
{
    const std::wstring temporary = GetTemporaryPath(path);
    const bool isMissing = ::GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES &&
                           ::GetLastError() == ERROR_FILE_NOT_FOUND;
    std::string bytes;
    FileStamp stamp;
    if (isMissing && ReadWholeFile(temporary, MAXLONG, bytes, stamp) == ERROR_SUCCESS &&
        isWhole(bytes)) {
        ::MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH);
        return;
    }
    ::DeleteFileW(temporary.c_str());
}

DWORD KeepFileAside(const std::wstring& path, std::wstring& keptAs)
{
    for (unsigned number = 1; number <= maxKeptAside; ++number) {
        const std::wstring name =
            path + L".bad" + (number > 1 ? std::to_wstring(number) : std::wstring());
        const DWORD code =
            Persist([&] { return GetCode(::MoveFileExW(path.c_str(), name.c_str(), 0)); });
        if (code == ERROR_SUCCESS) {
            keptAs = name;
        }
        if (code != ERROR_ALREADY_EXISTS && code != ERROR_FILE_EXISTS) {
            return code;
        }
    }
    return ERROR_SUCCESS;
}

DWORD DeleteWholeFile(const std::wstring& path)
{
    ::DeleteFileW(GetTemporaryPath(path).c_str());
    return Persist([&] { return GetCode(::DeleteFileW(path.c_str())); });
}
