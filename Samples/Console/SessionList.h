// SessionList.h: the hosts that the user has saved, kept in the profile.
#pragma once

#include "Session.h"

#include <cstddef>
#include <memory>
#include <vector>

class YProfileKey;
class YReportMessageParams;

// In the user's order. A session stays at its address until it is removed, so that a row of a list can
// stand for it. Stored in the key "Sessions", each in a key of its own: "1", "2", ...
// User-interface thread.
class SessionList
{
public:
    std::size_t GetCount() const { return sessions.size(); }
    Session& Get(std::size_t index) const { return *sessions[index]; }
    std::size_t FindIndex(const Session& session) const;  // GetCount(): it is none of these
    const Session* FindByName(const std::wstring& name) const;  // regardless of case; null: none

    Session& Add(Session session);  // at the end
    void Replace(Session& session, Session next);
    void Remove(const Session& session);
    void Exchange(std::size_t index, std::size_t other);

    // What has no name, or nobody to connect to, is left out.
    void Load(const YProfileKey& parent);
    bool IsModified() const { return modified; }
    // Leaves nothing of what is no longer there. False: error says why.
    bool Save(const YProfileKey& parent, YReportMessageParams& error);

private:
    std::vector<std::unique_ptr<Session>> sessions;
    bool modified = false;
};
