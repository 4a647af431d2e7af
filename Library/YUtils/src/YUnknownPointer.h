// YUnknownPointer.h: owns one reference to a reference-counted object.
#pragma once

#include <cstddef>
#include <utility>

// Adds a reference to what is copied in, releases it on reset and destruction. Adopt takes over a
// reference that the caller holds: the first one of a new object, or one handed out by a callee.
// The object may outlive the pointer and the pointer may be null. Not itself safe across threads.
template <class T>
class YUnknownPointer
{
public:
    YUnknownPointer() noexcept = default;
    YUnknownPointer(std::nullptr_t) noexcept {}
    YUnknownPointer(T* shared) : pointer(shared)
    {
        if (pointer) {
            pointer->AddRef();
        }
    }
    YUnknownPointer(const YUnknownPointer& other) : YUnknownPointer(other.pointer) {}
    YUnknownPointer(YUnknownPointer&& other) noexcept : pointer(other.Detach()) {}
    template <class U>
    YUnknownPointer(const YUnknownPointer<U>& other) : YUnknownPointer(other.Get())
    {}
    ~YUnknownPointer() { Reset(); }

    // By value: a self-assignment, or one whose old object owns the new, cannot free it too early.
    YUnknownPointer& operator=(YUnknownPointer other) noexcept
    {
        std::swap(pointer, other.pointer);
        return *this;
    }

    [[nodiscard]] static YUnknownPointer Adopt(T* owned) noexcept
    {
        YUnknownPointer result;
        result.pointer = owned;
        return result;
    }
    // A new object, owned by its first reference.
    template <class... Arguments>
    [[nodiscard]] static YUnknownPointer Make(Arguments&&... arguments)
    {
        return Adopt(new T(std::forward<Arguments>(arguments)...));
    }

    // Cleared before the release: a destructor that comes back here finds null.
    void Reset()
    {
        if (T* const last = Detach()) {
            last->Release();
        }
    }
    // Hands the reference to the caller.
    [[nodiscard]] T* Detach() noexcept { return std::exchange(pointer, nullptr); }

    T* Get() const noexcept { return pointer; }
    T* operator->() const noexcept { return pointer; }
    T& operator*() const noexcept { return *pointer; }
    explicit operator bool() const noexcept { return pointer != nullptr; }

    friend bool operator==(const YUnknownPointer& left, const YUnknownPointer& right) noexcept
    {
        return left.pointer == right.pointer;
    }
    friend bool operator==(const YUnknownPointer& left, const T* right) noexcept
    {
        return left.pointer == right;
    }
    friend bool operator==(const YUnknownPointer& left, std::nullptr_t) noexcept
    {
        return left.pointer == nullptr;
    }

private:
    T* pointer = nullptr;  // one reference, or null
};
