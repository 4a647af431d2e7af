// DialogText.h: what dialogs read from their fields, and say where it will not do.
#pragma once

#include <windows.h>

#include <string>

// Of a field, without blanks around it.
std::wstring GetTrimmedText(HWND dialog, int id);

// Says it, and brings the user to the control that it is about.
void Complain(HWND dialog, unsigned messageId, int controlId, const wchar_t* insert = nullptr);
