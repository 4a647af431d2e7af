// SessionLog.h: what a connection received, kept in a file.
#pragma once

#include <YUniqueHandle.h>

#include <string>

struct Peer;
class YReportMessageParams;

// Appends bytes as they are to a file that others may read meanwhile. What fails ends the log; the
// error then is what to tell the user.
class SessionLog
{
public:
    // Ends the log that there is. The file is made where it is missing.
    bool Start(const std::wstring& file, YReportMessageParams& error);
    void Stop() { handle.Reset(); }
    bool IsRunning() const { return static_cast<bool>(handle); }

    // True where there is no log.
    bool Write(const void* bytes, DWORD count, YReportMessageParams& error);

private:
    YUniqueFile handle;
    std::wstring path;
};

// A file of its own for what a peer says from now on: "host 23 2026-03-01 140509.log".
std::wstring MakeLogPath(const std::wstring& folder, const Peer& peer);
