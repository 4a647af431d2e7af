// FileFaults.h: failures of the file system under a save, and processes that end amid one.
#pragma once

#include "SystemCalls.h"

#include "support/ImportHook.h"

#include <windows.h>

#include <vector>

// While it lives, the calls that a save makes of the system are counted, and from a given one on
// can be made to fail.
class FileFaults
{
public:
    enum class Kind {
        Fails,  // that call, as on a full disk, and no other
        WritesHalf,  // that call, if it is a write: half of the bytes, and success
        EndsProcess,  // from that call on nothing happens any more
    };

    FileFaults() { Stop(); }
    // What the system does with the handles of a process that has ended.
    ~FileFaults() { Stop(); }

    void FailAt(int call, Kind faultKind)
    {
        untilFault = call;
        kind = faultKind;
    }
    void Stop()
    {
        untilFault = 0;
        reached = false;
        for (const HANDLE file : orphans) {
            systemCalls.CloseHandle(file);
        }
        orphans.clear();
    }
    // Whether FailAt's call has been made.
    bool IsReached() const { return reached; }

private:
    static bool IsFailing()
    {
        const bool isItsTurn = untilFault > 0 && --untilFault == 0;
        const bool isOver = reached && kind == Kind::EndsProcess;
        reached = reached || isItsTurn;
        if (isItsTurn || isOver) {
            ::SetLastError(kind == Kind::EndsProcess ? ERROR_GEN_FAILURE : ERROR_DISK_FULL);
        }
        return isItsTurn || isOver;
    }

    static HANDLE WINAPI Create(LPCWSTR path, DWORD access, DWORD sharing,
                                SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                                HANDLE pattern)
    {
        return IsFailing() ? INVALID_HANDLE_VALUE
                           : systemCalls.CreateFileW(path, access, sharing, security, disposition,
                                                     flags, pattern);
    }
    static BOOL WINAPI Write(HANDLE file, LPCVOID bytes, DWORD size, DWORD* written,
                             OVERLAPPED* overlapped)
    {
        if (!IsFailing()) {
            return systemCalls.WriteFile(file, bytes, size, written, overlapped);
        }
        if (kind == Kind::Fails) {
            return FALSE;
        }
        const BOOL done = systemCalls.WriteFile(file, bytes, size / 2, written, overlapped);
        return kind == Kind::WritesHalf ? done : FALSE;
    }
    // Any other one.
    template <auto call, class... Arguments>
    static BOOL WINAPI Make(Arguments... arguments)
    {
        return !IsFailing() && (systemCalls.*call)(arguments...);
    }
    // Closing does not fail; but a process may end before it.
    static BOOL WINAPI Close(HANDLE file)
    {
        if (kind != Kind::EndsProcess || !IsFailing()) {
            return systemCalls.CloseHandle(file);
        }
        orphans.push_back(file);
        return TRUE;
    }

    static inline int untilFault = 0;  // calls; 0: none fails
    static inline Kind kind = Kind::Fails;
    static inline bool reached = false;
    static inline std::vector<HANDLE> orphans;

    ImportHook hooks[10] = {
        {nullptr, "KERNEL32.dll", "CreateFileW", &Create},
        {nullptr, "KERNEL32.dll", "WriteFile", &Write},
        {nullptr, "KERNEL32.dll", "CloseHandle", &Close},
        {nullptr, "KERNEL32.dll", "FlushFileBuffers",
         &Make<&SystemCalls::FlushFileBuffers, HANDLE>},
        {nullptr, "KERNEL32.dll", "GetFileAttributesExW",
         &Make<&SystemCalls::GetFileAttributesExW, LPCWSTR, GET_FILEEX_INFO_LEVELS, LPVOID>},
        {nullptr, "KERNEL32.dll", "SetFileTime",
         &Make<&SystemCalls::SetFileTime, HANDLE, const FILETIME*, const FILETIME*,
               const FILETIME*>},
        {nullptr, "KERNEL32.dll", "LockFileEx",
         &Make<&SystemCalls::LockFileEx, HANDLE, DWORD, DWORD, DWORD, DWORD, OVERLAPPED*>},
        {nullptr, "KERNEL32.dll", "ReplaceFileW",
         &Make<&SystemCalls::ReplaceFileW, LPCWSTR, LPCWSTR, LPCWSTR, DWORD, LPVOID, LPVOID>},
        {nullptr, "KERNEL32.dll", "MoveFileExW",
         &Make<&SystemCalls::MoveFileExW, LPCWSTR, LPCWSTR, DWORD>},
        {nullptr, "KERNEL32.dll", "DeleteFileW", &Make<&SystemCalls::DeleteFileW, LPCWSTR>},
    };
};
