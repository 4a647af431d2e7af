// YArray.h: a growable array whose every index is checked.
#pragma once

#include "CommonUiApi.h"

#include <cstddef>
#include <stdexcept>
#include <utility>
#include <vector>

// An index past the end of a YArray. One type for all arrays, so that a handler in any module
// catches it by name, by std::out_of_range or as YArray<T>::OutOfRange.
class COMMONUI_API YArrayOutOfRange : public std::out_of_range
{
public:
    YArrayOutOfRange();
    YArrayOutOfRange(const YArrayOutOfRange&) = default;
    YArrayOutOfRange& operator=(const YArrayOutOfRange&) = default;
    ~YArrayOutOfRange() override;

    // Out of line: the check stays one compare and one jump where it is inlined.
    [[noreturn]] static void Throw();
};

// Holds its elements in one block. A wrong index raises OutOfRange and changes nothing; a length
// that no block can have raises std::length_error. One thread, no locks.
template <class T>
class YArray
{
public:
    using OutOfRange = YArrayOutOfRange;
    using iterator = typename std::vector<T>::iterator;
    using const_iterator = typename std::vector<T>::const_iterator;

    YArray() = default;
    explicit YArray(unsigned size) : items(size) {}

    unsigned GetSize() const noexcept { return static_cast<unsigned>(items.size()); }
    bool IsEmpty() const noexcept { return items.empty(); }

    T& operator[](unsigned index)
    {
        Check(index, items.size());
        return items[index];
    }
    const T& operator[](unsigned index) const
    {
        Check(index, items.size());
        return items[index];
    }

    // New elements are value-initialised. The block grows to exactly size, without headroom, and
    // does not shrink. Strong guarantee: out of memory changes nothing.
    void Resize(unsigned size)
    {
        items.reserve(size);
        items.resize(size);
    }

    void Add(T item) { items.push_back(std::move(item)); }
    void InsertAt(unsigned index, T item)  // index GetSize() appends
    {
        Check(index, items.size() + 1);
        items.insert(items.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
    }
    void RemoveAt(unsigned index)
    {
        Check(index, items.size());
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
    }
    void RemoveAll() noexcept { items.clear(); }

    iterator begin() noexcept { return items.begin(); }
    iterator end() noexcept { return items.end(); }
    const_iterator begin() const noexcept { return items.begin(); }
    const_iterator end() const noexcept { return items.end(); }

private:
    static void Check(unsigned index, std::size_t limit)
    {
        if (index >= limit) {
            OutOfRange::Throw();
        }
    }

    std::vector<T> items;
};
