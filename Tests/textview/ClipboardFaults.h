// ClipboardFaults.h: the clipboard as a test sees it, and failures on the way to it.
#pragma once

#include "support/ImportHook.h"
#include "support/LeakCheck.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

// The text that other programs see; nothing: there is none, or the clipboard cannot be opened.
inline std::optional<std::wstring> ClipboardText()
{
    std::optional<std::wstring> text;
    if (!::OpenClipboard(nullptr)) {
        return text;
    }
    if (const HANDLE block = ::GetClipboardData(CF_UNICODETEXT)) {
        text = static_cast<const wchar_t*>(::GlobalLock(block));
        ::GlobalUnlock(block);
    }
    ::CloseClipboard();
    return text;
}

// While it lives, all that our DLLs ask the system for on the way to the clipboard can be made to
// fail: global blocks, their locks, and operator new. Keeps count of the library's own blocks.
class ClipboardFaults
{
public:
    ClipboardFaults()
    {
        Stop();
        realMalloc = hooks[6].Original<void*(std::size_t)>();
        blocks.clear();
        blocks.reserve(64);  // the hooks themselves ask for nothing
    }

    // The call with that number from here on fails, and no other.
    static void FailAt(int number)
    {
        untilFailure = number;
        failed = false;
    }
    static void Stop() { untilFailure = 0; }
    // Whether FailAt's call has been reached.
    static bool HasFailed() { return failed; }
    // Blocks of the library that neither it nor the framework has freed yet.
    static std::size_t CountBlocks() { return blocks.size(); }

private:
    static bool IsFailing()
    {
        if (untilFailure == 0 || --untilFailure > 0) {
            return false;
        }
        failed = true;
        return true;
    }

    static HGLOBAL WINAPI AllocLibraryBlock(UINT flags, SIZE_T bytes)
    {
        const HGLOBAL block = AllocBlock(flags, bytes);
        if (block) {
            blocks.push_back(block);
        }
        return block;
    }
    static HGLOBAL WINAPI AllocBlock(UINT flags, SIZE_T bytes)
    {
        return IsFailing() ? nullptr : ::GlobalAlloc(flags, bytes);
    }
    static LPVOID WINAPI LockBlock(HGLOBAL block)
    {
        return IsFailing() ? nullptr : ::GlobalLock(block);
    }
    static HGLOBAL WINAPI FreeBlock(HGLOBAL block)
    {
        blocks.erase(std::remove(blocks.begin(), blocks.end(), block), blocks.end());
        return ::GlobalFree(block);
    }
    static void* AllocMemory(std::size_t size) { return IsFailing() ? nullptr : realMalloc(size); }

    static inline int untilFailure = 0;  // calls; 0: none fails
    static inline bool failed = false;
    static inline std::vector<HGLOBAL> blocks;
    static inline void* (*realMalloc)(std::size_t) = nullptr;

    ImportHook hooks[7] = {
        {L"CommonUi.dll", "KERNEL32.dll", "GlobalAlloc", &AllocLibraryBlock},
        {L"CommonUi.dll", "KERNEL32.dll", "GlobalLock", &LockBlock},
        {L"CommonUi.dll", "KERNEL32.dll", "GlobalFree", &FreeBlock},
        {L"CommonFramework.dll", "KERNEL32.dll", "GlobalAlloc", &AllocBlock},
        {L"CommonFramework.dll", "KERNEL32.dll", "GlobalLock", &LockBlock},
        {L"CommonFramework.dll", "KERNEL32.dll", "GlobalFree", &FreeBlock},
        {L"libstdc++-6.dll", "msvcrt.dll", "malloc", &AllocMemory},
    };
};

// Runs the step with each of its calls failing in turn; the step gets the number of the call and
// brackets what may fail with FailAt and Stop. All of it twice: what the second round leaves behind
// leaks. Returns how many calls there were.
template <class Step>
int FailEachCall(Step step)
{
    const ClipboardFaults faults;
    const auto failAll = [&step] {
        int call = 0;
        do {
            SCOPED_TRACE("call " + std::to_string(++call));
            step(call);
            EXPECT_EQ(ClipboardFaults::CountBlocks(), 0u);
        } while (ClipboardFaults::HasFailed());
        return call - 1;
    };
    failAll();
    const LeakCheck leaks;
    return failAll();
}
