// afxver_.h: what every header of the framework stands on: the platform, linkage, conventions.
#pragma once

#include <windows.h>

#include <tchar.h>

#ifdef COMMONFRAMEWORK_EXPORTS
#define COMMONFRAMEWORK_API __declspec(dllexport)
#else
#define COMMONFRAMEWORK_API __declspec(dllimport)
#endif

#define AFXAPI __stdcall
#define AFX_CDECL __cdecl
#define AFX_MSG_CALL  // message handlers keep the compiler's convention for members
#define afx_msg  // marks a message handler for the reader
