// Session.h: a host that the user keeps, and how to talk to it.
#pragma once

#include "Peer.h"

#include <YUnicodeString.h>

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

class YProfileKey;
class YReportMessageParams;

// A password that only this user's login can read. Empty: there is none.
class ProtectedPassword
{
public:
    // False: the system could not; the password is as it was.
    bool Set(const YUnicodeString& password);
    // Sensitive. Empty also where it was kept by another user, or has been damaged.
    YUnicodeString Get() const;
    bool IsEmpty() const { return bytes.empty(); }
    void Clear() { bytes.clear(); }

    // As it is stored: encrypted.
    const std::vector<BYTE>& GetBytes() const { return bytes; }
    void SetBytes(std::vector<BYTE> stored) { bytes = std::move(stored); }

private:
    std::vector<BYTE> bytes;
};

struct Session
{
    static constexpr unsigned lineEndAsInOptions = 3;  // else a LineEnd

    std::wstring name;  // never empty
    Peer peer;
    std::wstring note;
    unsigned lineEnd = lineEndAsInOptions;
    bool logsIn = false;  // user and password are the first two lines that are sent
    std::wstring user;
    ProtectedPassword password;
    std::wstring firstLines;  // sent after that, divided by CR LF
    bool logs = false;  // all that is received goes to a file
    bool showsSent = true;
    bool connectsAtStart = false;
    unsigned number = 0;  // from 1: its place in the list
};

// The sessions in the order that the user gave them. Each keeps its address until it is removed.
// User-interface thread.
class SessionList
{
public:
    using Sessions = std::vector<std::unique_ptr<Session>>;

    const Sessions& Get() const { return sessions; }
    Session& Add(const Session& session);  // at the end
    void Change(Session& session, const Session& next);
    void Remove(const Session& session);
    void Exchange(const Session& session, const Session& other);

    // What makes no sense in the profile is left out, or is the default.
    void Load(const YProfileKey& parent);
    bool IsModified() const { return modified; }
    // False: error says why.
    bool Save(const YProfileKey& parent, YReportMessageParams& error);

private:
    void Number();

    Sessions sessions;
    bool modified = false;
};
