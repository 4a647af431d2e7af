// YLongPath.h: paths longer than the system takes in their usual form.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <windows.h>

#include <string>
#include <string_view>

// A letter and a colon.
constexpr bool YStartsWithDrive(std::wstring_view path)
{
    return path.size() >= 2 && path[1] == L':' &&
           ((path[0] >= L'A' && path[0] <= L'Z') || (path[0] >= L'a' && path[0] <= L'z'));
}

// The form of a path that may have any length: "\\?\C:\folder", "\\?\UNC\server\share". Empty for
// what has none or has it already: relative paths, roots, devices, drive paths with a slash.
COMMONUI_API YUnicodeString YAddLongPathPrefix(const wchar_t* path);

// With the current folder before what is relative. Empty: the system knows none.
COMMONUI_API std::wstring YGetFullPath(const wchar_t* path);

// Runs a file operation that takes a path, returns a bool and tells the reason in GetLastError().
// Where the path may have been too long for it, it runs once more with the path's long form.
template <class Operation>
bool YRunWithLongPath(const wchar_t* path, Operation operation)
{
    if (operation(path)) {
        return true;
    }
    const DWORD error = ::GetLastError();
    if (error != ERROR_FILENAME_EXCED_RANGE && error != ERROR_PATH_NOT_FOUND) {
        return false;
    }
    const YUnicodeString prefixed = YAddLongPathPrefix(path);
    ::SetLastError(error);
    return !prefixed.IsEmpty() && operation(prefixed.c_str());
}
