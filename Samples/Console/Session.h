// Session.h: a host that the user has saved, and how to talk to it.
#pragma once

#include "ConsoleChoices.h"
#include "Peer.h"

#include <YUnicodeString.h>

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

// A password as the system keeps it for this user: nobody else can read the bytes. In clear it exists
// only in what Get returns, which is sensitive.
class ProtectedPassword
{
public:
    // False, the password as it was: the system would not protect it; GetLastError() says why.
    bool Set(const YUnicodeString& clear);
    // Empty as well where the bytes are damaged, or another user's.
    YUnicodeString Get() const;

    bool IsEmpty() const { return bytes.empty(); }
    const std::vector<BYTE>& GetBytes() const { return bytes; }
    void SetBytes(std::vector<BYTE> stored) { bytes = std::move(stored); }

    bool operator==(const ProtectedPassword&) const = default;

private:
    std::vector<BYTE> bytes;  // none: there is no password
};

struct Session
{
    // Bits of the options.
    static constexpr unsigned logs = 1;  // to a file, from the start
    static constexpr unsigned showsSent = 2;
    static constexpr unsigned atStart = 4;  // connected to when the program starts
    static constexpr unsigned allOptions = logs | showsSent | atStart;

    std::wstring name;
    Peer peer;
    std::optional<LineEnd> lineEnd;  // none: as in the program's options
    unsigned options = showsSent;
    bool logsIn = false;  // sends user and password once it is connected
    std::wstring user;
    ProtectedPassword password;
    std::vector<std::wstring> lines;  // sent after that, without their ends

    bool operator==(const Session& other) const;
};
