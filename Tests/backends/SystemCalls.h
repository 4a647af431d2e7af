// SystemCalls.h: the functions that our hooks stand in front of, and then call.
#pragma once

#include <windows.h>

// Past the import table of this program, in which the hook is.
template <class Function>
Function* FindSystemCall(Function*, const char* name)
{
    void* const address =
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), name));
    return reinterpret_cast<Function*>(address);
}

struct SystemCalls
{
#define SYSTEM_CALL(name) decltype(&::name) name = FindSystemCall(&::name, #name)
    SYSTEM_CALL(CreateFileW);
    SYSTEM_CALL(WriteFile);
    SYSTEM_CALL(FlushFileBuffers);
    SYSTEM_CALL(GetFileAttributesExW);
    SYSTEM_CALL(SetFileTime);
    SYSTEM_CALL(LockFileEx);
    SYSTEM_CALL(ReplaceFileW);
    SYSTEM_CALL(MoveFileExW);
    SYSTEM_CALL(DeleteFileW);
    SYSTEM_CALL(CloseHandle);
#undef SYSTEM_CALL
};

inline const SystemCalls systemCalls;
