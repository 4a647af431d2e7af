// windows.h: the few types and calls of the system that the portable classes name, for building
// them natively, where sanitizers and fuzzers run. Nothing here behaves like the system beyond that.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

#define STDMETHODCALLTYPE
#define WINAPI
#define MAXINT INT_MAX
#define CP_ACP 0
#define FAILED(result) ((result) < 0)

using BYTE = unsigned char;
using DWORD = std::uint32_t;
using ULONG = std::uint32_t;
using LONG = std::int32_t;
using HRESULT = std::int32_t;
using BOOL = int;
using LANGID = unsigned short;
using DWORD_PTR = std::uintptr_t;
using HANDLE = void*;
using HMODULE = void*;
using HGLOBAL = void*;
using HLOCAL = void*;

constexpr HRESULT S_OK = 0;
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(-1))

// The owners of handles only have to compile.
inline DWORD GetLastError()
{
    return 0;
}
inline void SetLastError(DWORD) {}
inline void CloseHandle(HANDLE) {}
inline void FindClose(HANDLE) {}
inline void GlobalFree(HGLOBAL) {}
inline void LocalFree(HLOCAL) {}
inline void* GlobalLock(HGLOBAL block)
{
    return block;
}
inline void GlobalUnlock(HGLOBAL) {}

inline void SecureZeroMemory(void* memory, std::size_t bytes)
{
    std::memset(memory, 0, bytes);
    __asm__ __volatile__("" : : "r"(memory) : "memory");
}

// Every code page is Latin-1.
inline int MultiByteToWideChar(unsigned, DWORD, const char* bytes, int size, wchar_t* text,
                               int length)
{
    for (int i = 0; i < size && i < length; ++i) {
        text[i] = static_cast<unsigned char>(bytes[i]);
    }
    return size;
}

inline int WideCharToMultiByte(unsigned, DWORD, const wchar_t* text, int length, char* bytes,
                               int size, const char*, int*)
{
    for (int i = 0; i < length && i < size; ++i) {
        bytes[i] = static_cast<char>(text[i]);
    }
    return length;
}
