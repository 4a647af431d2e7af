#include "YSecurityDescriptor.h"

#include <windows.h>

#include <sddl.h>

#include <cstring>

namespace {

// Reads the parts of a self-relative descriptor without reading past its bytes.
class DescriptorParts
{
public:
    DescriptorParts(const void* descriptor, std::size_t bytes)
        : first(static_cast<const BYTE*>(descriptor)), size(bytes)
    {}

    // The same descriptor in absolute form; its parts stay where they are. False: one of them does
    // not end within the bytes.
    bool GetAbsolute(SECURITY_DESCRIPTOR& absolute) const
    {
        SECURITY_DESCRIPTOR_RELATIVE header{};
        if (!Read(0, header) || !(header.Control & SE_SELF_RELATIVE) || !HasSid(header.Owner) ||
            !HasSid(header.Group) || !HasAcl(header.Sacl) || !HasAcl(header.Dacl)) {
            return false;
        }
        const DWORD control = header.Control;
        absolute.Revision = header.Revision;
        absolute.Sbz1 = header.Sbz1;
        absolute.Control = static_cast<SECURITY_DESCRIPTOR_CONTROL>(control & ~SE_SELF_RELATIVE);
        absolute.Owner = At(header.Owner);
        absolute.Group = At(header.Group);
        // A list that the flags do not announce counts for nothing, but would be copied.
        absolute.Sacl = control & SE_SACL_PRESENT ? static_cast<PACL>(At(header.Sacl)) : nullptr;
        absolute.Dacl = control & SE_DACL_PRESENT ? static_cast<PACL>(At(header.Dacl)) : nullptr;
        return true;
    }

private:
    template <class Part>
    bool Read(std::size_t offset, Part& part) const
    {
        if (size < sizeof(part) || offset > size - sizeof(part)) {
            return false;
        }
        std::memcpy(&part, first + offset, sizeof(part));
        return true;
    }
    // An offset of 0 stands for a part that is absent.
    bool HasSid(DWORD offset) const
    {
        struct
        {
            BYTE revision, authorities, identifier[6];
        } head{};
        return offset == 0 || (Read(offset, head) &&
                               sizeof(head) + head.authorities * sizeof(DWORD) <= size - offset);
    }
    bool HasAcl(DWORD offset) const
    {
        ACL head{};
        return offset == 0 || (Read(offset, head) && head.AclSize <= size - offset);
    }
    void* At(DWORD offset) const
    {
        return offset == 0 ? nullptr : const_cast<BYTE*>(first) + offset;
    }

    const BYTE* first;
    std::size_t size;
};

// Packed anew, so that its length can be told from itself: a descriptor from elsewhere may have
// gaps between its parts, or two parts in one place.
YUniqueLocalMemory MakeSelfRelative(SECURITY_DESCRIPTOR& absolute)
{
    DWORD size = 0;
    ::MakeSelfRelativeSD(&absolute, nullptr, &size);
    YUniqueLocalMemory packed(::LocalAlloc(LMEM_FIXED, size));
    if (packed && !::MakeSelfRelativeSD(&absolute, packed.Get(), &size)) {
        packed.Reset();
    }
    return packed;
}

}  // namespace

unsigned YSecurityDescriptor::GetSize() const
{
    return descriptor ? ::GetSecurityDescriptorLength(descriptor.Get()) : 0;
}

// An empty text would make a descriptor without an access list, which lets everyone in.
bool YSecurityDescriptor::SetText(const wchar_t* text)
{
    if (!text || *text == L'\0') {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    PSECURITY_DESCRIPTOR converted = nullptr;
    if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, &converted,
                                                                nullptr)) {
        return false;
    }
    descriptor.Reset(converted);
    return true;
}

bool YSecurityDescriptor::SetStrings(const std::vector<YUnicodeString>& strings)
{
    YUnicodeString text;
    for (const YUnicodeString& string : strings) {
        text += string;
    }
    return SetText(text.c_str());
}

bool YSecurityDescriptor::SetBytes(const void* bytes, std::size_t size)
{
    SECURITY_DESCRIPTOR absolute{};
    if (!DescriptorParts(bytes, size).GetAbsolute(absolute) ||
        !::IsValidSecurityDescriptor(&absolute)) {
        ::SetLastError(ERROR_INVALID_SECURITY_DESCR);
        return false;
    }
    YUniqueLocalMemory packed = MakeSelfRelative(absolute);
    if (!packed) {
        return false;
    }
    descriptor = std::move(packed);
    return true;
}

PSECURITY_DESCRIPTOR YSecurityDescriptor::Copy() const
{
    const unsigned size = GetSize();
    if (size == 0) {
        ::SetLastError(ERROR_INVALID_SECURITY_DESCR);
        return nullptr;
    }
    const PSECURITY_DESCRIPTOR copy = ::LocalAlloc(LMEM_FIXED, size);
    if (copy) {
        std::memcpy(copy, descriptor.Get(), size);
    }
    return copy;
}
