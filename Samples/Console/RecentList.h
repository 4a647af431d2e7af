// RecentList.h: what was used last, kept in the profile.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class YProfileKey;
class YReportMessageParams;

// Newest first, each text once; case is not told apart, as neither files nor hosts do. Stored as
// NAME1, NAME2, ... in a key of its own. User-interface thread.
class RecentList
{
public:
    // Borrowed texts, of static storage.
    RecentList(const wchar_t* storedIn, const wchar_t* storedAs, std::size_t longest)
        : keyName(storedIn), valueName(storedAs), most(longest)
    {}

    const std::vector<std::wstring>& Get() const { return items; }
    void Add(std::wstring item);
    void Remove(const std::wstring& item);
    void Clear();

    void Load(const YProfileKey& parent);
    bool IsModified() const { return modified; }
    // False: error says why.
    bool Save(const YProfileKey& parent, YReportMessageParams& error);

private:
    std::wstring GetValueName(std::size_t index) const;

    const wchar_t* keyName;
    const wchar_t* valueName;
    std::size_t most;
    std::vector<std::wstring> items;  // at most so many
    bool modified = false;
};
