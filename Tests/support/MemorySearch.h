// MemorySearch.h: whether something that should be gone still stands in this process.
#pragma once

#include <windows.h>

#include <cstddef>

inline bool IsWritableMemory(const MEMORY_BASIC_INFORMATION& region)
{
    constexpr DWORD writable =
        PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    return region.State == MEM_COMMIT && (region.Protect & writable) != 0 &&
           (region.Protect & PAGE_GUARD) == 0;
}

// The sum of countAt(const volatile Unit*), which looks at `length` units, over all that this process
// can write: heaps, those of freed blocks too, stacks, data. What is searched for must not stand in
// the searcher: it is computed, or veiled.
template <class Unit, class CountAt>
unsigned CountInMemory(std::size_t length, const CountAt& countAt)
{
    unsigned found = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* place = nullptr; ::VirtualQuery(place, &region, sizeof region) != 0;
         place = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
        if (!IsWritableMemory(region)) {
            continue;
        }
        const auto* const units = static_cast<const volatile Unit*>(region.BaseAddress);
        for (std::size_t i = 0; i + length <= region.RegionSize / sizeof(Unit); ++i) {
            found += countAt(units + i);
        }
    }
    return found;
}
