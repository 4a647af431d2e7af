// ConsoleText.h: the program's words, in its user's language.
#pragma once

#include <YFormatMessage.h>

#include <windows.h>

#include <string>

class CWnd;

// Of the two that the program speaks, the one for a user of a language.
LANGID GetOwnLanguage(LANGID language);
// Speaks one of the two; before any window is made.
void UseLanguage(LANGID language);

// A string of the program's resources. User-interface thread.
const std::wstring& LoadText(UINT id);
// With %1, %2, ... filled.
template <class... Arguments>
std::wstring FormatText(UINT id, Arguments... arguments)
{
    return YFormatText(LoadText(id).c_str(), arguments...);
}

// With a separator between thousands.
std::wstring FormatNumber(ULONGLONG number);
// "1 line", "2,000 lines": oneId is whole, manyId has %1 for the number.
std::wstring FormatCount(ULONGLONG count, UINT oneId, UINT manyId);

// The words for an error of the system's, in one line.
std::wstring GetErrorWords(DWORD error);
// Says it, over a window.
void ShowError(CWnd* parent, DWORD error);
