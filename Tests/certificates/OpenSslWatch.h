// OpenSslWatch.h: what OpenSSL holds in memory, and functions of it that fail.
#pragma once

#include "support/ImportHook.h"

#include "openssl/OpenSslLibrary.h"

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <utility>

// Any other function of the DLL's, by its C type.
template <class Function>
Function* FindInOpenSsl(const char* name)
{
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"libcrypto-3.dll"), name)));
}

// Counts the blocks that OpenSSL holds, which are those that our library gets for it.
class OpenSslMemory
{
public:
    // Without what the thread's error queue holds.
    static long CountBlocks()
    {
        OpenSSL::GetFunctions().ERR_clear_error();
        return blocks;
    }

private:
    static void* __cdecl Allocate(std::size_t size)
    {
        void* const block = std::malloc(size);
        blocks += block ? 1 : 0;
        return block;
    }
    static void __cdecl Free(void* block)
    {
        blocks -= block ? 1 : 0;
        std::free(block);
    }

    static inline std::atomic<long> blocks = 0;

    ImportHook allocate{L"CommonUi.dll", "msvcrt.dll", "malloc", &Allocate};
    ImportHook free{L"CommonUi.dll", "msvcrt.dll", "free", &Free};
};

// While it lives, the n-th call of one bound function fails; the others are the real thing's.
class OpenSslFault
{
public:
    virtual ~OpenSslFault() = default;
    virtual bool IsReached() const = 0;
};

template <auto place, class Result, class... Arguments>
class FunctionFault : public OpenSslFault
{
public:
    explicit FunctionFault(int call)
    {
        untilFault = call;
        original = std::exchange(Place(), &Call);
    }
    FunctionFault(const FunctionFault&) = delete;
    FunctionFault& operator=(const FunctionFault&) = delete;
    ~FunctionFault() override { Place() = original; }

    bool IsReached() const override { return untilFault <= 0; }

private:
    using Function = Result(__cdecl*)(Arguments...);

    static Function& Place()
    {
        return const_cast<OpenSSL::Functions&>(OpenSSL::GetFunctions()).*place;
    }
    static Result __cdecl Call(Arguments... arguments)
    {
        return --untilFault == 0 ? Result() : original(arguments...);
    }

    static inline int untilFault = 0;
    static inline Function original = nullptr;
};

template <auto place, class Result, class... Arguments>
std::unique_ptr<OpenSslFault> MakeFault(int call,
                                        Result (__cdecl* OpenSSL::Functions::*)(Arguments...))
{
    return std::make_unique<FunctionFault<place, Result, Arguments...>>(call);
}

template <auto place>
std::unique_ptr<OpenSslFault> FailAt(int call)
{
    return MakeFault<place>(call, place);
}
