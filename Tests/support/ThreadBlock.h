// ThreadBlock.h: the system's own records of this thread and process.
#pragma once

#include <windows.h>

#include <cstdint>

// A word of the thread block; it lies at the start of a segment, which looks like address 0 to the
// compiler.
inline std::uintptr_t ReadThreadWord(std::uintptr_t offset)
{
    std::uintptr_t value;
    __asm__ volatile("movl %%fs:(%1), %0" : "=r"(value) : "r"(offset));
    return value;
}

inline const NT_TIB* GetThreadBlock()
{
    return reinterpret_cast<const NT_TIB*>(ReadThreadWord(0x18));
}

inline const std::uint8_t* GetProcessBlock()
{
    return reinterpret_cast<const std::uint8_t*>(ReadThreadWord(0x30));
}
