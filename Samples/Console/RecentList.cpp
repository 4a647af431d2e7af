#include "RecentList.h"

#include <YProfileKey.h>
#include <YReportMessageParams.h>
#include <YUnicodeString.h>

#include <windows.h>

#include <algorithm>
#include <utility>

namespace {

auto Names(const std::wstring& item)
{
    return [&item](const std::wstring& other) {
        return ::CompareStringOrdinal(item.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL;
    };
}

}  // namespace

void RecentList::Add(std::wstring item)
{
    if (!items.empty() && items.front() == item) {
        return;
    }
    std::erase_if(items, Names(item));
    items.insert(items.begin(), std::move(item));
    items.resize(std::min(items.size(), most));
    modified = true;
}

void RecentList::Remove(const std::wstring& item)
{
    const auto place = std::find_if(items.begin(), items.end(), Names(item));
    if (place != items.end()) {
        items.erase(place);
        modified = true;
    }
}

void RecentList::Clear()
{
    modified = modified || !items.empty();
    items.clear();
}

void RecentList::Load(const YProfileKey& parent)
{
    items.clear();
    modified = false;
    const YProfileKey key(parent, keyName, YProfileKey::openExisting);
    YUnicodeString item;
    while (items.size() < most && key.ReadString(GetValueName(items.size()).c_str(), item) &&
           !item.IsEmpty()) {
        items.emplace_back(item);
    }
}

bool RecentList::Save(const YProfileKey& parent, YReportMessageParams& error)
{
    if (!modified) {
        return true;
    }
    const YProfileKey key(parent, keyName);
    for (std::size_t i = 0; i < most; ++i) {
        const std::wstring name = GetValueName(i);
        if (i >= items.size()) {
            key.DeleteValue(name.c_str());  // or it is not there anyway
        } else if (!key.WriteString(name.c_str(), YUnicodeString(items[i]))) {
            error = key.GetLastResult();
            return false;
        }
    }
    modified = false;
    return true;
}

std::wstring RecentList::GetValueName(std::size_t index) const
{
    return valueName + std::to_wstring(index + 1);
}
