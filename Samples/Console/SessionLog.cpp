#include "SessionLog.h"

#include "ConsoleMessages.h"
#include "ConsoleText.h"
#include "Peer.h"

#include <YReportMessageParams.h>

#include <algorithm>
#include <cwchar>

namespace {

YReportMessageParams MakeMessage(unsigned id, const std::wstring& path, DWORD code)
{
    YReportMessageParams message(id, ::GetModuleHandleW(nullptr));
    message.AddInsert(path);
    message.AddInsert(GetErrorWords(code));
    return message;
}

}  // namespace

bool SessionLog::Start(const std::wstring& file, YReportMessageParams& error)
{
    Stop();
    path = file;
    handle.Reset(::CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr,
                               OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle) {
        error = MakeMessage(CONSOLE_LOG_NOT_STARTED, path, ::GetLastError());
    }
    return IsRunning();
}

bool SessionLog::Write(const void* bytes, DWORD count, YReportMessageParams& error)
{
    DWORD written = 0;
    if (!handle) {
        return true;
    }
    const bool isDone = ::WriteFile(handle.Get(), bytes, count, &written, nullptr) != FALSE;
    if (isDone && written == count) {
        return true;
    }
    const DWORD code = isDone ? ERROR_DISK_FULL : ::GetLastError();
    Stop();
    error = MakeMessage(CONSOLE_LOG_STOPPED, path, code);
    return false;
}

std::wstring MakeLogPath(const std::wstring& folder, const Peer& peer)
{
    std::wstring host = peer.host;
    std::replace_if(
        host.begin(), host.end(),
        [](wchar_t character) { return std::wcschr(L"\\/:*?\"<>|", character) != nullptr; }, L'_');
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    const std::wstring name = YFormatText(
        L"%1 %2!u! %3!04u!-%4!02u!-%5!02u! %6!02u!%7!02u!%8!02u!.log", host.c_str(), peer.port,
        now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond);
    return folder.empty() ? name : folder + L'\\' + name;
}
