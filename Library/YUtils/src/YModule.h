// YModule.h: the library as a loaded module.
#pragma once

#include "CommonUiApi.h"

#include <windows.h>

// The module that holds the library's resources. Right from the first static constructor on.
COMMONUI_API HMODULE YGetLibraryModule() noexcept;
