#include "support/CrashTrace.h"

#include "support/ThreadBlock.h"

#include <windows.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr unsigned maxFrames = 64;

// The process may be in any state: no allocation, no C run-time streams.
void Write(const char* text)
{
    DWORD written = 0;
    ::WriteFile(::GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(std::strlen(text)),
                &written, nullptr);
}

void PrintFrame(unsigned number, std::uintptr_t address)
{
    HMODULE module = nullptr;
    char path[MAX_PATH] = "?";
    ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                             GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         reinterpret_cast<LPCSTR>(address), &module);
    ::GetModuleFileNameA(module, path, sizeof path);
    char line[MAX_PATH + 40];
    std::snprintf(line, sizeof line, "#%u %s!0x%zx\n", number, path,
                  static_cast<std::size_t>(address - reinterpret_cast<std::uintptr_t>(module)));
    Write(line);
}

// Whether code of a module of ours called something there: call rel32, or call through a register
// or memory in one of its lengths.
bool IsReturnAddress(std::uintptr_t address)
{
    HMODULE module = nullptr;
    char path[MAX_PATH] = "";
    if (address < 0x10000 ||
        !::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                  GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                              reinterpret_cast<LPCSTR>(address), &module) ||
        address - reinterpret_cast<std::uintptr_t>(module) < 0x1000) {
        return false;
    }
    ::GetModuleFileNameA(module, path, sizeof path);
    const auto* code = reinterpret_cast<const std::uint8_t*>(address);
    const auto isIndirect = [code](int length) {
        return code[-length] == 0xFF && (code[1 - length] & 0x38) == 0x10;
    };
    return !std::strstr(path, "\\windows\\") &&
           (code[-5] == 0xE8 || isIndirect(2) || isIndirect(3) || isIndirect(6));
}

// Every word of the stack that looks like a return address of ours: code of the run time and of the
// system keeps no frame pointers that could be followed. May name a call that is over.
void PrintCalls(unsigned number, std::uintptr_t stack)
{
    const auto end = reinterpret_cast<std::uintptr_t>(GetThreadBlock()->StackBase);
    for (; number < maxFrames && stack + 4 <= end; stack += 4) {
        const std::uintptr_t word = *reinterpret_cast<const std::uintptr_t*>(stack);
        if (IsReturnAddress(word)) {
            PrintFrame(number++, word);
        }
    }
}

[[noreturn]] void End()
{
    ::TerminateProcess(::GetCurrentProcess(), 3);
    std::abort();
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* exception)
{
    const DWORD code = exception->ExceptionRecord->ExceptionCode;
    if (code != EXCEPTION_ACCESS_VIOLATION && code != EXCEPTION_ILLEGAL_INSTRUCTION &&
        code != EXCEPTION_INT_DIVIDE_BY_ZERO && code != EXCEPTION_STACK_OVERFLOW &&
        code != STATUS_HEAP_CORRUPTION) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    char line[80];
    std::snprintf(line, sizeof line, "crash: exception %08lx\n", code);
    Write(line);
    // One past the instruction, as a return address would be: readers subtract one.
    PrintFrame(0, exception->ContextRecord->Eip + 1);
    PrintCalls(1, exception->ContextRecord->Esp);
    End();
}

// Also the end of an exception that nobody catches: the run time has said what it was, and nothing
// has been unwound, so that the throw is among the calls.
void OnAbort(int)
{
    Write("crash: abort\n");
    PrintCalls(0, reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)));
    End();
}

}  // namespace

void InstallCrashTrace()
{
    ::SetErrorMode(SEM_NOGPFAULTERRORBOX | SEM_FAILCRITICALERRORS);
    ::AddVectoredExceptionHandler(1, OnException);
    std::signal(SIGABRT, OnAbort);
}
