// BackendWriter.cpp: a process that saves settings, for tests of several and of dying ones.
// BackendWriter FOLDER PREFIX COUNT [FUNCTION]: writes COUNT values, each with a flush; with
// FUNCTION it ends itself without a word in the first call of that function. Its status is the code
// of the first failure.
#include "FolderProfile.h"
#include "OpenProfile.h"
#include "SystemCalls.h"

#include "support/ImportHook.h"

#include <windows.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace {

constexpr UINT killedStatus = 77;

// Half of the file's bytes have reached the disk.
BOOL WINAPI WriteHalfAndDie(HANDLE file, LPCVOID bytes, DWORD size, DWORD* written, OVERLAPPED*)
{
    systemCalls.WriteFile(file, bytes, size / 2, written, nullptr);
    return ::TerminateProcess(::GetCurrentProcess(), killedStatus);
}

BOOL WINAPI DieBeforeReplacing(LPCWSTR, LPCWSTR, LPCWSTR, DWORD, LPVOID, LPVOID)
{
    return ::TerminateProcess(::GetCurrentProcess(), killedStatus);
}

// As where the system has taken the old file away before it came to the new one.
BOOL WINAPI DieAmidReplacing(LPCWSTR, LPCWSTR path, DWORD)
{
    ::DeleteFileW(path);
    return ::TerminateProcess(::GetCurrentProcess(), killedStatus);
}

BOOL WINAPI LoseOldFile(LPCWSTR, LPCWSTR, LPCWSTR, DWORD, LPVOID, LPVOID)
{
    ::SetLastError(ERROR_UNABLE_TO_MOVE_REPLACEMENT);
    return FALSE;
}

}  // namespace

int main(int count, char** arguments)
{
    if (count < 4) {
        return 2;
    }
    const std::string folder = arguments[1];
    const std::string prefix = arguments[2];
    const std::string function = count > 4 ? arguments[4] : "";
    std::optional<ImportHook> hook;
    std::optional<ImportHook> second;
    if (function == "WriteFile") {
        hook.emplace(nullptr, "KERNEL32.dll", "WriteFile", &WriteHalfAndDie);
    } else if (function == "ReplaceFileW") {
        hook.emplace(nullptr, "KERNEL32.dll", "ReplaceFileW", &DieBeforeReplacing);
    } else if (function == "MoveFileExW") {
        hook.emplace(nullptr, "KERNEL32.dll", "ReplaceFileW", &LoseOldFile);
        second.emplace(nullptr, "KERNEL32.dll", "MoveFileExW", &DieAmidReplacing);
    }
    FolderProfileFactory factory(std::wstring(folder.begin(), folder.end()), {});
    const YProfileKey key(OpenRoot(factory), L"Key");
    for (int i = 1; i <= std::atoi(arguments[3]); ++i) {
        const std::wstring name = std::wstring(prefix.begin(), prefix.end()) + std::to_wstring(i);
        if (!key.WriteDWORD(name.c_str(), static_cast<DWORD>(i)) || !key.Flush()) {
            return static_cast<int>(key.GetLastResult().GetMessageId());
        }
    }
    return 0;
}
