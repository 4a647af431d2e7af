#include "support/ImportHook.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

namespace {

template <class T>
T* At(HMODULE module, std::size_t offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<std::uint8_t*>(module) + offset);
}

// Null when the module does not import the function by name.
void** FindImport(HMODULE module, const char* library, const char* function)
{
    const auto* dos = At<IMAGE_DOS_HEADER>(module, 0);
    const auto* headers = At<IMAGE_NT_HEADERS>(module, static_cast<std::size_t>(dos->e_lfanew));
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* entry = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
         entry->Name != 0; ++entry) {
        if (::lstrcmpiA(At<char>(module, entry->Name), library) != 0) {
            continue;
        }
        const auto* names = At<IMAGE_THUNK_DATA>(module, entry->OriginalFirstThunk);
        auto* slots = At<IMAGE_THUNK_DATA>(module, entry->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++slots) {
            if (!IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal) &&
                std::strcmp(At<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData)->Name,
                            function) == 0) {
                return reinterpret_cast<void**>(&slots->u1.Function);
            }
        }
    }
    return nullptr;
}

void WriteSlot(void** slot, void* value)
{
    DWORD before = 0;
    ::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = value;
    ::VirtualProtect(slot, sizeof *slot, before, &before);
}

}  // namespace

ImportHook::ImportHook(const wchar_t* module, const char* library, const char* function,
                       void* replacement, void*)
{
    const HMODULE handle = ::GetModuleHandleW(module);
    slot = handle ? FindImport(handle, library, function) : nullptr;
    if (!slot) {
        throw std::runtime_error(std::string("not imported: ") + library + "!" + function);
    }
    original = *slot;
    WriteSlot(slot, replacement);
}

ImportHook::~ImportHook()
{
    WriteSlot(slot, original);
}
