// LineEditKit.h: what the tests of line edits do as a user.
#pragma once

#include "support/Input.h"

#include <windows.h>

#include <algorithm>
#include <string>

constexpr wchar_t hint[] = L"hint";

// A key while another one is held.
inline void Press(WORD modifier, WORD key)
{
    INPUT inputs[4]{};
    const WORD keys[] = {modifier, key, key, modifier};
    for (int i = 0; i < 4; ++i) {
        inputs[i].type = INPUT_KEYBOARD;
        inputs[i].ki.wVk = keys[i];
        inputs[i].ki.dwFlags = i >= 2 ? KEYEVENTF_KEYUP : 0U;
    }
    ::SendInput(4, inputs, sizeof(INPUT));
    PumpMessages();
}

// Keys by their capital letters.
inline void Type(const char* keys)
{
    for (; *keys != 0; ++keys) {
        TypeKey(static_cast<WORD>(*keys));
    }
}

inline void SetClipboard(const std::wstring& text)
{
    PumpUntil([] { return ::OpenClipboard(::GetActiveWindow()) != FALSE; });
    ::EmptyClipboard();
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, bytes);
    std::copy_n(text.c_str(), text.size() + 1, static_cast<wchar_t*>(::GlobalLock(memory)));
    ::GlobalUnlock(memory);
    ::SetClipboardData(CF_UNICODETEXT, memory);
    ::CloseClipboard();
}

inline std::wstring GetClipboard()
{
    ::OpenClipboard(nullptr);
    const HANDLE memory = ::GetClipboardData(CF_UNICODETEXT);
    const std::wstring text =
        memory != nullptr ? static_cast<const wchar_t*>(::GlobalLock(memory)) : L"";
    ::GlobalUnlock(memory);
    ::CloseClipboard();
    return text;
}
