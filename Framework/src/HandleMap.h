// HandleMap.h: which framework object stands for a system handle, per thread.
#pragma once

#include "afxver_.h"

#include <memory>
#include <unordered_map>

// One map of each kind lives in every thread that asks for it.
enum class HandleKind { Window, Menu, GdiObject, DeviceContext, Socket, Count };

// What the thread's list of maps knows of a map.
class HandleMapBase
{
public:
    virtual ~HandleMapBase() = default;
    virtual void DeleteTemporary() noexcept = 0;
};

// The calling thread's map; null: it has none (yet), or the DLL is going.
HandleMapBase* FindHandleMap(HandleKind kind) noexcept;
// Takes the map over until the thread ends.
HandleMapBase& AddHandleMap(HandleKind kind, std::unique_ptr<HandleMapBase> map);
// Deletes the calling thread's map before the thread ends.
void RemoveHandleMap(HandleKind kind) noexcept;

// Deletes what FromHandle made for this thread, in every map. For idle time: pointers that
// FromHandle gave end here.
void DeleteTemporaryObjects() noexcept;

// Permanent objects entered themselves with a handle and belong to their makers; temporary ones
// belong to the map, hold the handle and nothing else, and never close it. All operations speak of
// the calling thread's map. FindPermanent and RemoveHandle are safe at any time, in static
// destructors too; the others may throw std::bad_alloc.
//
// Traits: kind, a HandleKind; Object, a class with a virtual destructor; Handle, a pointer type;
// std::unique_ptr<Object> Make(Handle), an object of the right class, without handle;
// void SetHandle(Object&, Handle) noexcept, which only stores it.
template <class Traits>
class HandleMap final : public HandleMapBase
{
public:
    using Object = typename Traits::Object;
    using Handle = typename Traits::Handle;

    // Null: no object of this thread has entered itself.
    static Object* FindPermanent(Handle handle) noexcept;
    // The permanent object, else a temporary one that lives until idle time; null for null.
    static Object* FromHandle(Handle handle);
    // From now on FromHandle finds the object; temporary ones already handed out stay usable.
    static void SetPermanent(Handle handle, Object* object);
    // Only where the entry is this object's: a temporary one that detaches its handle leaves the
    // permanent one's entry alone.
    static void RemoveHandle(Handle handle, const Object* object) noexcept;

    ~HandleMap() override { DeleteTemporary(); }
    void DeleteTemporary() noexcept override;

private:
    static HandleMap* Find() noexcept;
    static HandleMap& FindOrAdd();

    std::unordered_map<Handle, Object*> permanent;
    std::unordered_map<Handle, std::unique_ptr<Object>> temporary;
};

template <class Traits>
typename Traits::Object* HandleMap<Traits>::FindPermanent(Handle handle) noexcept
{
    const HandleMap* map = Find();
    if (map == nullptr) {
        return nullptr;
    }
    const auto found = map->permanent.find(handle);
    return found == map->permanent.end() ? nullptr : found->second;
}

template <class Traits>
typename Traits::Object* HandleMap<Traits>::FromHandle(Handle handle)
{
    if (handle == nullptr) {
        return nullptr;
    }
    if (Object* object = FindPermanent(handle)) {
        return object;
    }
    std::unique_ptr<Object>& object = FindOrAdd().temporary[handle];
    if (object == nullptr) {
        object = Traits::Make(handle);
    }
    // Also for one that was there: its holder may have detached or closed the handle.
    Traits::SetHandle(*object, handle);
    return object.get();
}

template <class Traits>
void HandleMap<Traits>::SetPermanent(Handle handle, Object* object)
{
    FindOrAdd().permanent[handle] = object;
}

template <class Traits>
void HandleMap<Traits>::RemoveHandle(Handle handle, const Object* object) noexcept
{
    HandleMap* map = Find();
    if (map == nullptr) {
        return;
    }
    const auto found = map->permanent.find(handle);
    if (found != map->permanent.end() && found->second == object) {
        map->permanent.erase(found);
    }
}

template <class Traits>
void HandleMap<Traits>::DeleteTemporary() noexcept
{
    // Out of the map first: a destructor may ask the map for something.
    std::unordered_map<Handle, std::unique_ptr<Object>> leaving;
    leaving.swap(temporary);
    for (auto& entry : leaving) {
        if (entry.second != nullptr) {
            Traits::SetHandle(*entry.second, nullptr);
        }
    }
}

template <class Traits>
HandleMap<Traits>* HandleMap<Traits>::Find() noexcept
{
    return static_cast<HandleMap*>(FindHandleMap(Traits::kind));
}

template <class Traits>
HandleMap<Traits>& HandleMap<Traits>::FindOrAdd()
{
    if (HandleMap* map = Find()) {
        return *map;
    }
    return static_cast<HandleMap&>(AddHandleMap(Traits::kind, std::make_unique<HandleMap>()));
}
