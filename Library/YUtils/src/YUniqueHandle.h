// YUniqueHandle.h: one owner for every kind of system handle.
#pragma once

#include <windows.h>

#include <utility>

// Owns one system handle. Closing keeps GetLastError(), so the failure can still be told.
template <class Traits>
class YUniqueHandle
{
public:
    using Handle = typename Traits::Handle;

    explicit YUniqueHandle(Handle owned = Traits::Invalid()) noexcept : handle(owned) {}
    YUniqueHandle(YUniqueHandle&& other) noexcept : handle(other.Detach()) {}
    YUniqueHandle& operator=(YUniqueHandle&& other) noexcept
    {
        Reset(other.Detach());
        return *this;
    }
    ~YUniqueHandle() { Reset(); }

    Handle Get() const noexcept { return handle; }
    explicit operator bool() const noexcept { return handle != Traits::Invalid(); }

    // Hands the handle to the caller.
    [[nodiscard]] Handle Detach() noexcept { return std::exchange(handle, Traits::Invalid()); }

    void Reset(Handle next = Traits::Invalid()) noexcept
    {
        const Handle last = std::exchange(handle, next);
        if (last != Traits::Invalid()) {
            const DWORD error = ::GetLastError();
            Traits::Close(last);
            ::SetLastError(error);
        }
    }

private:
    Handle handle;
};

// A block of global memory, the currency of the clipboard.
struct YGlobalMemoryTraits
{
    using Handle = HGLOBAL;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle block) noexcept { ::GlobalFree(block); }
};
using YUniqueGlobalMemory = YUniqueHandle<YGlobalMemoryTraits>;

// A block that the system allocated for its caller.
struct YLocalMemoryTraits
{
    using Handle = HLOCAL;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle block) noexcept { ::LocalFree(block); }
};
using YUniqueLocalMemory = YUniqueHandle<YLocalMemoryTraits>;

struct YFileTraits
{
    using Handle = HANDLE;
    static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Handle file) noexcept { ::CloseHandle(file); }
};
using YUniqueFile = YUniqueHandle<YFileTraits>;

// The reading of a folder.
struct YFindTraits
{
    using Handle = HANDLE;
    static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Handle search) noexcept { ::FindClose(search); }
};
using YUniqueFind = YUniqueHandle<YFindTraits>;

// An event, a thread: whatever CloseHandle ends and null is none of.
struct YKernelHandleTraits
{
    using Handle = HANDLE;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle object) noexcept { ::CloseHandle(object); }
};
using YUniqueKernelHandle = YUniqueHandle<YKernelHandleTraits>;

// Holds a block of global memory locked. Get() is null when locking failed. A failed unlock is
// ignored, as there is nothing to do about it; the last-error code survives the unlocking.
class YGlobalLock
{
public:
    explicit YGlobalLock(HGLOBAL memory) noexcept : block(memory), bytes(::GlobalLock(memory)) {}
    YGlobalLock(const YGlobalLock&) = delete;
    YGlobalLock& operator=(const YGlobalLock&) = delete;
    ~YGlobalLock()
    {
        if (bytes) {
            const DWORD error = ::GetLastError();
            ::GlobalUnlock(block);
            ::SetLastError(error);
        }
    }

    void* Get() const noexcept { return bytes; }
    explicit operator bool() const noexcept { return bytes != nullptr; }

private:
    HGLOBAL block;  // borrowed
    void* bytes;
};
