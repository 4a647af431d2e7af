// YMap.h: values found by their keys.
#pragma once

#include "YArray.h"

#include <iterator>
#include <map>
#include <utility>

// Keeps one value for each key, in the order of the keys. Values stay where they are until their key
// is removed. One thread, no locks.
template <class Key, class Value>
class YMap
{
public:
    using OutOfRange = YArrayOutOfRange;

    unsigned GetCount() const noexcept { return static_cast<unsigned>(entries.size()); }
    bool IsEmpty() const noexcept { return entries.empty(); }
    bool IsPresent(const Key& key) const { return FindEntry(key) != nullptr; }

    // False, value as it was: there is no such key.
    bool Lookup(const Key& key, Value& value) const
    {
        const Value* const found = FindEntry(key);
        if (found) {
            value = *found;
        }
        return found != nullptr;
    }

    void Set(const Key& key, Value value) { entries[key] = std::move(value); }
    Value& operator[](const Key& key) { return entries[key]; }  // made where it is not there

    // Of the index-th entry, at the cost of index steps; past the end: throws OutOfRange.
    const Key& GetKey(unsigned index) const
    {
        if (index >= GetCount()) {
            YArrayOutOfRange::Throw();
        }
        return std::next(entries.begin(), static_cast<std::ptrdiff_t>(index))->first;
    }

    bool RemoveKey(const Key& key) { return entries.erase(key) > 0; }
    void RemoveAll() noexcept { entries.clear(); }

protected:
    // Null: there is none.
    Value* FindEntry(const Key& key)
    {
        const auto found = entries.find(key);
        return found == entries.end() ? nullptr : &found->second;
    }
    const Value* FindEntry(const Key& key) const
    {
        const auto found = entries.find(key);
        return found == entries.end() ? nullptr : &found->second;
    }
    Value& CreateEntry(const Key& key, Value value)  // or replaces the one that is there
    {
        return entries[key] = std::move(value);
    }

private:
    std::map<Key, Value> entries;
};
