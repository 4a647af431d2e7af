// SafeFile.h: files that several programs read and replace, and that no crash leaves half-written.
#pragma once

#include <YUniqueHandle.h>

#include <windows.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

// The functions return Win32 codes. Where another program holds a file they try again for as long
// as a virus scanner or an indexer usually takes, patienceMilliseconds in all, and then give up.
constexpr DWORD patienceMilliseconds = 1500;

// Tells one state of a file from another. All 0: there is no file. No save here leaves the write
// time as it was: two of the same size within a tick of the clock differ too. The file's index on
// its volume would tell as much, but can cost ten times the look.
struct FileStamp
{
    ULONGLONG size = 0;  // bytes
    ULONGLONG writeTime = 0;

    bool operator==(const FileStamp&) const = default;
    explicit operator bool() const { return *this != FileStamp(); }
};

FileStamp GetFileStamp(const std::wstring& path);

// The file by which processes that change the files of a folder keep out of each other's way. It is
// made and opened for the first lock and stays: making and deleting one for each would cost more.
// Opened by all, locked by one: that holds on a network share and for other sessions too, and the
// system unlocks it however the process ends. But whoever waits for it can only try again and again,
// and might never have the luck against one that saves all the time; so the processes of a session
// queue up at a mutex first. One thread at a time.
class FolderLockFile
{
public:
    explicit FolderLockFile(std::wstring filePath) : path(std::move(filePath)) {}
    FolderLockFile(const FolderLockFile&) = delete;
    FolderLockFile& operator=(const FolderLockFile&) = delete;

    // Its folder can be deleted then. The next lock opens it again.
    void Close();

private:
    friend class FileLock;

    HANDLE GetMutex();
    DWORD Open(DWORD milliseconds);
    DWORD Lock(DWORD milliseconds);
    void Unlock();
    bool IsDeleted() const;

    const std::wstring path;
    YUniqueFile file;
    YUniqueKernelHandle mutex;  // null: does without
};

// Keeps other processes from changing the files of the lock file's folder. Makes that folder where
// it is missing.
class FileLock
{
public:
    explicit FileLock(FolderLockFile& file, DWORD milliseconds = patienceMilliseconds);
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock();

    DWORD GetError() const { return error; }  // ERROR_SUCCESS: held

private:
    DWORD AwaitTurn(DWORD milliseconds);

    FolderLockFile& lockFile;
    bool isMutexOwned = false;
    DWORD error;
};

// ERROR_FILE_TOO_LARGE: more than maxBytes, nothing was read.
DWORD ReadWholeFile(const std::wstring& path, std::size_t maxBytes, std::string& bytes,
                    FileStamp& stamp);

// The caller holds the lock for the three below. Whatever happens on the way, the file is the whole
// old one or the whole new one. stamp: the old one's, then the new one's.
DWORD ReplaceWholeFile(const std::wstring& path, std::string_view bytes, FileStamp& stamp);

// Ends what a dead process has begun: its temporary file takes the place of a missing file where it
// is whole, else it goes.
void SettleTemporaryFile(const std::wstring& path,
                         const std::function<bool(std::string_view)>& isWhole);
bool HasTemporaryFile(const std::wstring& path);

// A file that is of no use as it is gets the first free name of path.bad, path.bad2, ...
// path.bad9. keptAs stays empty, and the file where it is, when there is none.
DWORD KeepFileAside(const std::wstring& path, std::wstring& keptAs);

// With its temporary file. ERROR_FILE_NOT_FOUND: there is none.
DWORD DeleteWholeFile(const std::wstring& path);
