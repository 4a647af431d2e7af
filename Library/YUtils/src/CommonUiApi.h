// CommonUiApi.h: marks what the library's DLL exports.
#pragma once

#ifdef COMMONUI_EXPORTS  // given by the build to the library's own sources only
#define COMMONUI_API __declspec(dllexport)
#else
#define COMMONUI_API __declspec(dllimport)
#endif
