#include "YFormatMessage.h"

#include "MessageFormatter.h"

#include <algorithm>
#include <atomic>
#include <iterator>

InvalidParameter::~InvalidParameter() = default;

MessageNotFound::~MessageNotFound() = default;

namespace {

class FormatterFailure : public std::exception
{
public:
    const char* what() const noexcept override { return "FormatMessage"; }
};

constexpr LANGID usersLanguage = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);
std::atomic<LANGID> chosenLanguage{usersLanguage};

[[noreturn]] void ThrowFailure(DWORD error)
{
    ::SetLastError(error);
    switch (error) {
    case ERROR_INVALID_PARAMETER: throw InvalidParameter();
    case ERROR_MR_MID_NOT_FOUND:
    case ERROR_RESOURCE_TYPE_NOT_FOUND:
    case ERROR_MUI_FILE_NOT_FOUND: throw MessageNotFound();
    default: throw FormatterFailure();
    }
}

// A reference is at most %99, and each may take two more arguments for a width and a precision
// given by '*'.
constexpr std::size_t mostArguments = 99 + 2;

DWORD Format(DWORD flags, const void* source, unsigned id, LANGID language, DWORD_PTR* arguments,
             FormattedText& text) noexcept
{
    wchar_t* formatted = nullptr;
    text.length = ::FormatMessageW(
        flags | FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_ARGUMENT_ARRAY, source, id,
        language, reinterpret_cast<wchar_t*>(&formatted), 0, reinterpret_cast<va_list*>(arguments));
    const DWORD error = ::GetLastError();
    text.block.Reset(formatted);
    return formatted ? ERROR_SUCCESS : error;
}

DWORD Format(DWORD flags, const void* source, unsigned id, std::span<const DWORD_PTR> arguments,
             FormattedText& text) noexcept
{
    DWORD_PTR padded[mostArguments];
    if (!(flags & FORMAT_MESSAGE_IGNORE_INSERTS)) {
        const std::size_t count = std::min(arguments.size(), mostArguments);
        std::copy_n(arguments.begin(), count, padded);
        std::fill(padded + count, std::end(padded), reinterpret_cast<DWORD_PTR>(L""));
    }
    const LANGID language = chosenLanguage;
    DWORD error = Format(flags, source, id, language, padded, text);
    if (error != ERROR_SUCCESS && language != usersLanguage) {
        error = Format(flags, source, id, usersLanguage, padded, text);
    }
    return error;
}

}  // namespace

void YSetMessageLanguage(LANGID language)
{
    chosenLanguage = language;
}

DWORD FormatMessageText(HMODULE module, unsigned id, DWORD flags,
                        std::span<const DWORD_PTR> arguments, FormattedText& text) noexcept
{
    if (module || !(flags & FORMAT_MESSAGE_FROM_SYSTEM)) {
        flags |= FORMAT_MESSAGE_FROM_HMODULE;
    }
    return Format(flags, module, id, arguments, text);
}

DWORD FormatPatternText(const wchar_t* pattern, std::span<const DWORD_PTR> arguments,
                        FormattedText& text) noexcept
{
    if (!pattern || *pattern == L'\0') {
        text = FormattedText();  // the formatter calls an empty text a failure
        return ERROR_SUCCESS;
    }
    return Format(FORMAT_MESSAGE_FROM_STRING, pattern, 0, arguments, text);
}

std::wstring YFormatMessage(HMODULE module, unsigned id, DWORD flags,
                            std::span<const DWORD_PTR> arguments)
{
    FormattedText text;
    if (const DWORD error = FormatMessageText(module, id, flags, arguments, text)) {
        ThrowFailure(error);
    }
    return std::wstring(text.View());
}

std::wstring YFormatPattern(const wchar_t* pattern, std::span<const DWORD_PTR> arguments)
{
    FormattedText text;
    if (const DWORD error = FormatPatternText(pattern, arguments, text)) {
        ThrowFailure(error);
    }
    return std::wstring(text.View());
}
