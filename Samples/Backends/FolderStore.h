// FolderStore.h: the open settings files of a folder, and the one lock for them.
#pragma once

#include "ProfileReport.h"
#include "ProfileTree.h"
#include "SafeFile.h"

#include <YUnicodeString.h>

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class SettingsFile;

// The system's own lock, which owns nothing: a std::mutex of this tool chain's run time leaves an
// event behind when two threads have met at it. Named for std::lock_guard.
class FolderLock
{
public:
    FolderLock() = default;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    void lock() { ::AcquireSRWLockExclusive(&handle); }
    void unlock() { ::ReleaseSRWLockExclusive(&handle); }

private:
    SRWLOCK handle = SRWLOCK_INIT;
};

// One lock for all, held over loading and saving too: a file that is being saved by its last key
// must not be opened again before that is done. Every operation needs a visit, which is proof of
// the lock.
class FolderStore
{
public:
    // Holds the lock while it lives, and tells the host afterwards what there was to report.
    class Visit
    {
    public:
        explicit Visit(FolderStore& visited);
        ~Visit();
        Visit(const Visit&) = delete;
        Visit& operator=(const Visit&) = delete;

    private:
        friend class FolderStore;

        FolderStore& store;
        std::vector<ProfileReport> reports;
    };

    // What becomes of a file that is missing.
    enum class Missing { Fails, IsMade, IsEmpty };

    FolderStore(const std::wstring& folderPath, ProfileReportSink reportSink);
    FolderStore(const FolderStore&) = delete;
    FolderStore& operator=(const FolderStore&) = delete;
    ~FolderStore();

    // The functions return Win32 codes. The caller has one of the file's references then.
    DWORD Open(Visit& visit, const std::wstring& fileName, Missing missing,
               std::shared_ptr<SettingsFile>& file);
    DWORD Save(Visit& visit, SettingsFile& file);
    DWORD SaveAll(Visit& visit);
    DWORD Delete(Visit& visit, const std::wstring& fileName);
    std::vector<YUnicodeString> GetKeyNames(Visit& visit) const;
    // The last reference saves the file.
    void Release(const std::shared_ptr<SettingsFile>& file) noexcept;

private:
    void Close(Visit& visit, const std::shared_ptr<SettingsFile>& file);

    const std::wstring folder;  // full path, with a separator at its end
    const ProfileReportSink sink;
    FolderLock lock;
    FolderLockFile lockFile;  // open while one of the files is
    // By name. A deleted file leaves at once, the others with their last reference.
    std::map<std::wstring, std::shared_ptr<SettingsFile>, NameLess> files;
};
