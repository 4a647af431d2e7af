#include "YModule.h"

// The linker's name for the start of this module. The entry point is told the same address, but
// only after the static constructors have run.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier)

HMODULE YGetLibraryModule() noexcept
{
    return reinterpret_cast<HMODULE>(&__ImageBase);
}
