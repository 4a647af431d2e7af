// ProfileTree.h: the keys and values of one settings file in memory, and what was changed in them.
#pragma once

#include <IProfileKey.h>
#include <YUnicodeString.h>

#include <windows.h>

#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

// As the system compares the names of files and registry keys.
struct NameLess
{
    using is_transparent = void;
    bool operator()(std::wstring_view left, std::wstring_view right) const;
};

// Items with a member `name`, found by it in logarithmic time, walked in the order of their making.
// An item stays where it is until it is removed.
template <class Item>
class NamedList
{
public:
    using Iterator = typename std::list<Item>::iterator;

    Iterator begin() { return items.begin(); }
    Iterator end() { return items.end(); }
    auto begin() const { return items.begin(); }
    auto end() const { return items.end(); }
    bool IsEmpty() const { return items.empty(); }

    // Null: there is none of that name.
    Item* Find(std::wstring_view name) const
    {
        const auto found = index.find(name);
        return found == index.end() ? nullptr : &*found->second;
    }
    // There must be none of that name yet.
    Item& Add(Item item)
    {
        items.push_back(std::move(item));
        const Iterator added = std::prev(items.end());
        index.emplace(added->name, added);
        return *added;
    }
    // What follows the item.
    Iterator Remove(Iterator item)
    {
        index.erase(static_cast<std::wstring_view>(item->name));
        return items.erase(item);
    }
    bool Remove(std::wstring_view name)
    {
        const auto found = index.find(name);
        if (found == index.end()) {
            return false;
        }
        const Iterator item = found->second;
        index.erase(found);
        items.erase(item);
        return true;
    }

private:
    std::list<Item> items;
    std::map<std::wstring_view, Iterator, NameLess> index;  // the names are the items' own
};

// In the order of YProfileValueKind.
using ProfileData = std::variant<DWORD, YUnicodeString, std::vector<BYTE>>;

struct ProfileValue
{
    YUnicodeString name;
    ProfileData data;
    unsigned changedIn = 0;  // the period of its key in which it was written, 0: as loaded
    // As FormatProfile writes it, made while the value is set: a save, for which the user waits, only
    // copies. Empty: not made yet.
    mutable std::string line = {};

    void SetData(ProfileData next)
    {
        line.clear();
        data = std::move(next);
    }
    YProfileValueKind GetKind() const { return static_cast<YProfileValueKind>(data.index()); }
};

class ProfileNode;

struct ProfileChild
{
    YUnicodeString name;
    std::shared_ptr<ProfileNode> node;  // shared with the open key objects
};

// A key. It remembers what was changed since the last load or save, so that the file may have been
// changed by another program in the meantime: Merge brings both together. No locks.
class ProfileNode
{
public:
    // Deeper keys are refused: every walk over the tree is a recursion.
    static constexpr unsigned maxDepth = 64;

    const NamedList<ProfileValue>& GetValues() const { return values; }
    const NamedList<ProfileChild>& GetChildren() const { return children; }
    // Deleted, or below a deleted key: nothing of it is ever saved.
    bool IsDetached() const { return isDetached; }

    // True: the value was another one before.
    bool Write(std::wstring_view name, ProfileData data);
    void Load(std::wstring_view name, ProfileData data);  // as the file has it; the last one counts
    bool DeleteValue(std::wstring_view name);
    std::shared_ptr<ProfileNode> FindChild(std::wstring_view name) const;
    std::shared_ptr<ProfileNode> MakeChild(std::wstring_view name);  // there must be none
    bool DeleteChild(std::wstring_view name);
    void Detach();

    // What the file holds now, except where it was changed here. Takes the other tree to pieces.
    void Merge(ProfileNode& file);
    // All changes are in the file.
    void ForgetChanges();

private:
    bool HasChanges() const;
    bool IsChanged(const ProfileValue& value) const { return value.changedIn == period; }
    void MergeValues(ProfileNode& file);
    void MergeChildren(ProfileNode& file);

    NamedList<ProfileValue> values;
    NamedList<ProfileChild> children;
    // Since the last load or save. A deleted key that was made again stays among the deleted: what
    // the file has of it must not come back.
    std::set<std::wstring, NameLess> deletedValues;
    std::set<std::wstring, NameLess> deletedChildren;
    unsigned period = 1;  // counts loads and saves, each of which ends one
    bool isNew = false;
    bool isDetached = false;
};
