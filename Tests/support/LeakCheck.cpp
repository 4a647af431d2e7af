#include "support/LeakCheck.h"

#include "support/ImportHook.h"
#include "support/ThreadBlock.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <winternl.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <list>
#include <ostream>
#include <stdexcept>
#include <vector>

namespace {

std::atomic<long> liveBlocks = 0;
std::atomic<long> liveHooks = 0;

// operator new and delete live in the C++ run-time DLL, which every module of ours shares: its
// calls of malloc and free are all of ours.
void* CountingMalloc(std::size_t size)
{
    void* block = std::malloc(size);
    liveBlocks += block != nullptr;
    return block;
}

void CountingFree(void* block)
{
    liveBlocks -= block != nullptr;
    std::free(block);
}

HHOOK WINAPI CountingSetHook(int id, HOOKPROC procedure, HINSTANCE module, DWORD thread)
{
    const HHOOK hook = ::SetWindowsHookExW(id, procedure, module, thread);
    liveHooks += hook != nullptr;
    return hook;
}

BOOL WINAPI CountingUnhook(HHOOK hook)
{
    const BOOL removed = ::UnhookWindowsHookEx(hook);
    liveHooks -= removed != FALSE;
    return removed;
}

// Where the module is not loaded or does not use the function there is nothing to count.
template <class Function>
void HookIfImported(const wchar_t* module, const char* library, const char* function,
                    Function* replacement)
{
    static std::list<ImportHook> hooks;  // for the life of the process
    try {
        hooks.emplace_back(module, library, function, replacement);
    } catch (const std::runtime_error&) {}
}

// GetGuiResources answers 0 under Wine; the table behind it is the same everywhere: 24 bytes an
// entry, its address in the process block.
long CountGdiObjects()
{
    constexpr unsigned entries = 0x4000;
    constexpr unsigned entrySize = 24;
    const auto* table = *reinterpret_cast<const std::uint8_t* const*>(GetProcessBlock() + 0x94);
    long count = 0;
    for (unsigned i = 0; i < entries; ++i) {
        count += (table[i * entrySize + 14] & 0xFF) != 0;
    }
    return count;
}

long CountKernelHandles()
{
    static std::vector<std::uint8_t> buffer(1 << 20);
    ULONG size = 0;
    while (::NtQuerySystemInformation(SystemHandleInformation, buffer.data(),
                                      static_cast<ULONG>(buffer.size()), &size) != 0) {
        buffer.resize(buffer.size() * 2);
    }
    const auto* list = reinterpret_cast<const SYSTEM_HANDLE_INFORMATION*>(buffer.data());
    return std::count_if(list->Handle, list->Handle + list->Count,
                         [process = ::GetCurrentProcessId()](const SYSTEM_HANDLE_ENTRY& entry) {
                             return entry.OwnerPid == process;
                         });
}

bool IsOurs(HWND window)
{
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    return process == ::GetCurrentProcessId();
}

BOOL CALLBACK CountTopLevel(HWND window, LPARAM count)
{
    *reinterpret_cast<long*>(count) += IsOurs(window);
    return TRUE;
}

long CountWindows()
{
    long count = 0;
    ::EnumWindows(CountTopLevel, reinterpret_cast<LPARAM>(&count));
    for (HWND window = nullptr;
         (window = ::FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;) {
        count += IsOurs(window);
    }
    return count;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const ResourceCounts& counts)
{
    return stream << counts.gdiObjects << " GDI objects, " << counts.kernelHandles
                  << " kernel handles, " << counts.windows << " windows, " << counts.windowHooks
                  << " hooks, " << counts.blocks << " blocks";
}

void InstallResourceCounters()
{
    HookIfImported(L"libstdc++-6.dll", "msvcrt.dll", "malloc", &CountingMalloc);
    HookIfImported(L"libstdc++-6.dll", "msvcrt.dll", "free", &CountingFree);
    for (const wchar_t* module : {L"CommonUi.dll", L"CommonFramework.dll"}) {
        HookIfImported(module, "USER32.dll", "SetWindowsHookExW", &CountingSetHook);
        HookIfImported(module, "USER32.dll", "UnhookWindowsHookEx", &CountingUnhook);
    }
}

ResourceCounts CountResources()
{
    ResourceCounts counts;
    counts.gdiObjects = CountGdiObjects();
    counts.kernelHandles = CountKernelHandles();
    counts.windows = CountWindows();
    counts.windowHooks = liveHooks;
    counts.blocks = liveBlocks;
    return counts;
}

LeakCheck::LeakCheck() : before(CountResources()) {}

LeakCheck::~LeakCheck()
{
    const ResourceCounts after = CountResources();
    EXPECT_EQ(after, before) << "left behind";
}
