// YFormatMessage.h: the system's message formatter, safe to use.
#pragma once

#include "CommonUiApi.h"

#include <windows.h>

#include <exception>
#include <span>
#include <string>
#include <type_traits>

// The formatter refused its arguments.
class COMMONUI_API InvalidParameter : public std::exception
{
public:
    InvalidParameter() = default;
    InvalidParameter(const InvalidParameter&) = default;
    InvalidParameter& operator=(const InvalidParameter&) = default;
    ~InvalidParameter() override;
};

// No message table, none in the language, or no such message in it.
class COMMONUI_API MessageNotFound : public std::exception
{
public:
    MessageNotFound() = default;
    MessageNotFound(const MessageNotFound&) = default;
    MessageNotFound& operator=(const MessageNotFound&) = default;
    ~MessageNotFound() override;
};

// Both formatters throw InvalidParameter, MessageNotFound, or for any other failure a
// std::exception whose what() is "FormatMessage"; GetLastError() tells the code. Missing arguments
// are empty: a text never reads past what it was given.

// The language of texts from message tables, for a host that lets its user choose one; any thread.
// At first, and with MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), it is the user's, which also serves
// where a text does not exist in the chosen one.
COMMONUI_API void YSetMessageLanguage(LANGID language);

// Message id of the module, or of the system with FORMAT_MESSAGE_FROM_SYSTEM in flags. Flags may hold a width (255: one line) and FORMAT_MESSAGE_IGNORE_INSERTS.
COMMONUI_API std::wstring YFormatMessage(HMODULE module, unsigned id, DWORD flags,
                                         std::span<const DWORD_PTR> arguments = {});

COMMONUI_API std::wstring YFormatPattern(const wchar_t* pattern,
                                         std::span<const DWORD_PTR> arguments);

// Fills %1, %2, ... of the pattern with texts (const wchar_t*) and numbers of up to 32 bits.
template <class... Arguments>
std::wstring YFormatText(const wchar_t* pattern, Arguments... arguments)
{
    static_assert(((std::is_convertible_v<Arguments, const wchar_t*> ||
                    (std::is_integral_v<Arguments> && sizeof(Arguments) <= sizeof(DWORD_PTR))) &&
                   ...),
                  "an argument is a text or a whole number of up to 32 bits");
    const auto erase = [](auto argument) {
        if constexpr (std::is_integral_v<decltype(argument)>) {
            return static_cast<DWORD_PTR>(argument);
        } else {
            return reinterpret_cast<DWORD_PTR>(static_cast<const wchar_t*>(argument));
        }
    };
    const DWORD_PTR erased[] = {erase(arguments)..., 0};
    return YFormatPattern(pattern, {erased, sizeof...(arguments)});
}
