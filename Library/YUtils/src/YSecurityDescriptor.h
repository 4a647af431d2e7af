// YSecurityDescriptor.h: who may do what with an object of the system.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"
#include "YUniqueHandle.h"

#include <cstddef>
#include <vector>

// Owns one security descriptor in self-relative form, or none. The setters return false for what
// makes no descriptor, with the reason in GetLastError(); the object is then what it was.
class COMMONUI_API YSecurityDescriptor
{
public:
    bool IsValid() const { return static_cast<bool>(descriptor); }
    PSECURITY_DESCRIPTOR Get() const { return descriptor.Get(); }  // null: none
    unsigned GetSize() const;  // bytes, 0: none

    bool SetText(const wchar_t* text);  // in the definition language (SDDL)
    // One text in several pieces: access lists grow longer than an administrator likes to read.
    bool SetStrings(const std::vector<YUnicodeString>& strings);
    // A self-relative descriptor from elsewhere, believed in nothing: each of its parts must lie
    // within the bytes.
    bool SetBytes(const void* bytes, std::size_t size);

    // A self-relative copy that the caller frees with LocalFree. Null: there is none, or no memory.
    PSECURITY_DESCRIPTOR Copy() const;

private:
    YUniqueLocalMemory descriptor;
};
