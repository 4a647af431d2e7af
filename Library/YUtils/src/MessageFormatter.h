// MessageFormatter.h: the formatter's own block, for those who copy it only once.
#pragma once

#include "YUniqueHandle.h"

#include <windows.h>

#include <span>
#include <string_view>

// A text that the system allocated.
struct FormattedText
{
    YUniqueLocalMemory block = YUniqueLocalMemory();
    DWORD length = 0;  // UTF-16 units

    std::wstring_view View() const { return {static_cast<const wchar_t*>(block.Get()), length}; }
};

// As YFormatMessage and YFormatPattern, which see for the parameters, but throws nothing: the code of
// the failure, or ERROR_SUCCESS.
DWORD FormatMessageText(HMODULE module, unsigned id, DWORD flags,
                        std::span<const DWORD_PTR> arguments, FormattedText& text) noexcept;
DWORD FormatPatternText(const wchar_t* pattern, std::span<const DWORD_PTR> arguments,
                        FormattedText& text) noexcept;
