#include "support/CrashTrace.h"

#include "support/ThreadBlock.h"

#include <windows.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <exception>
#include <typeinfo>

namespace {

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

// Follows the saved frame pointers; our modules keep them in every build.
void PrintFrames(unsigned number, std::uintptr_t frame)
{
    const auto end = reinterpret_cast<std::uintptr_t>(GetThreadBlock()->StackBase);
    while (number < 64 && frame % 4 == 0 && frame + 8 <= end && frame > 0x10000) {
        const auto* words = reinterpret_cast<const std::uintptr_t*>(frame);
        if (words[1] == 0) {
            return;
        }
        PrintFrame(number++, words[1]);
        if (words[0] <= frame) {
            return;
        }
        frame = words[0];
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
    PrintFrame(0,
               reinterpret_cast<std::uintptr_t>(exception->ExceptionRecord->ExceptionAddress) + 1);
    unsigned number = 1;
    if (exception->ContextRecord->Eip < 0x10000) {  // called through null: the caller is on top
        PrintFrame(number++,
                   *reinterpret_cast<const std::uintptr_t*>(exception->ContextRecord->Esp));
    }
    PrintFrames(number, exception->ContextRecord->Ebp);
    End();
}

// abort() was called from code of the C or C++ run time that keeps no frame pointers: the words
// between here and the first frame of ours hold the missing callers.
void OnAbort(int)
{
    Write("crash: abort\n");
    const auto frame = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    PrintFrames(0, frame);
    End();
}

[[noreturn]] void OnTerminate()
{
    char line[1024] = "crash: std::terminate\n";
    if (const std::type_info* type = abi::__cxa_current_exception_type()) {
        const char* text = "";
        try {
            throw;
        } catch (const std::exception& exception) {
            text = exception.what();
        } catch (...) {
            text = "not a std::exception";
        }
        std::snprintf(line, sizeof line, "crash: uncaught %s: %s\n", type->name(), text);
    }
    Write(line);
    PrintFrames(0, reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)));
    End();
}

}  // namespace

void InstallCrashTrace()
{
    ::SetErrorMode(SEM_NOGPFAULTERRORBOX | SEM_FAILCRITICALERRORS);
    ::AddVectoredExceptionHandler(1, OnException);
    std::signal(SIGABRT, OnAbort);
    std::set_terminate(OnTerminate);
}
