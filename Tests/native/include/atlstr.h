// atlstr.h: what the library's text asks of the framework's string, for building natively.
#pragma once

#include <windows.h>

#include <string>

class CString
{
public:
    CString() = default;
    CString(const wchar_t* initial, int length) : text(initial, static_cast<std::size_t>(length)) {}

    int GetLength() const { return static_cast<int>(text.size()); }
    operator const wchar_t*() const { return text.c_str(); }

private:
    std::wstring text;
};
