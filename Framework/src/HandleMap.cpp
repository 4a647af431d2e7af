#include "HandleMap.h"

#include <array>
#include <cstddef>
#include <new>
#include <utility>

namespace {

// The maps hang on a fiber-local slot, not on thread_local objects: its callback comes with the end
// of any thread, whoever started it, and once the maps are gone the slot reads empty, so that
// destructors that run still later find no map instead of a dead one.
struct ThreadMaps
{
    std::array<std::unique_ptr<HandleMapBase>, static_cast<std::size_t>(HandleKind::Count)> maps;
};

VOID WINAPI DeleteThreadMaps(void* maps)
{
    delete static_cast<ThreadMaps*>(maps);
}

class FiberSlot
{
public:
    FiberSlot() noexcept : index(::FlsAlloc(&DeleteThreadMaps)) {}
    ~FiberSlot();
    FiberSlot(const FiberSlot&) = delete;
    FiberSlot& operator=(const FiberSlot&) = delete;

    ThreadMaps* Find() const noexcept;
    ThreadMaps& FindOrAdd() const;

private:
    DWORD index;
};

FiberSlot::~FiberSlot()
{
    // Static objects destroyed later find no map: they have nothing to take out of it any more.
    const DWORD freed = std::exchange(index, FLS_OUT_OF_INDEXES);
    if (freed != FLS_OUT_OF_INDEXES) {
        ::FlsFree(freed);  // deletes the maps of every thread
    }
}

ThreadMaps* FiberSlot::Find() const noexcept
{
    if (index == FLS_OUT_OF_INDEXES) {
        return nullptr;
    }
    // A successful read sets the last error; handlers read theirs after asking for an object.
    const DWORD error = ::GetLastError();
    void* maps = ::FlsGetValue(index);
    ::SetLastError(error);
    return static_cast<ThreadMaps*>(maps);
}

ThreadMaps& FiberSlot::FindOrAdd() const
{
    if (ThreadMaps* maps = Find()) {
        return *maps;
    }
    auto maps = std::make_unique<ThreadMaps>();
    if (!::FlsSetValue(index, maps.get())) {
        throw std::bad_alloc();
    }
    return *maps.release();
}

// Constructed on first use: static objects of other sources may attach handles before ours are.
FiberSlot& Slot()
{
    static FiberSlot slot;
    return slot;
}

}  // namespace

HandleMapBase* FindHandleMap(HandleKind kind) noexcept
{
    const ThreadMaps* maps = Slot().Find();
    return maps == nullptr ? nullptr : maps->maps[static_cast<std::size_t>(kind)].get();
}

HandleMapBase& AddHandleMap(HandleKind kind, std::unique_ptr<HandleMapBase> map)
{
    std::unique_ptr<HandleMapBase>& held = Slot().FindOrAdd().maps[static_cast<std::size_t>(kind)];
    held = std::move(map);
    return *held;
}

void RemoveHandleMap(HandleKind kind) noexcept
{
    if (ThreadMaps* maps = Slot().Find()) {
        maps->maps[static_cast<std::size_t>(kind)].reset();
    }
}

void DeleteTemporaryObjects() noexcept
{
    ThreadMaps* maps = Slot().Find();
    if (maps == nullptr) {
        return;
    }
    for (const std::unique_ptr<HandleMapBase>& map : maps->maps) {
        if (map != nullptr) {
            map->DeleteTemporary();
        }
    }
}
