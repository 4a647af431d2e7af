// SystemText.h: what is said to the user.
#pragma once

#include <windows.h>

#include <string>

// The system's own words for an error, without a line break; its number where it has none.
std::wstring GetSystemText(DWORD error);

// With a comma between thousands.
std::wstring FormatNumber(unsigned number);
// "1 line", "2,000 lines".
std::wstring FormatCount(unsigned count, const wchar_t* one);
