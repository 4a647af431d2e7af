#include "YFormatMessage.h"

#include "YUniqueHandle.h"

#include <algorithm>
#include <atomic>

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
// given by '*'. A null text would be read, so it is an empty one too.
std::vector<DWORD_PTR> Pad(const std::vector<DWORD_PTR>& arguments)
{
    constexpr std::size_t most = 99 * 3;
    std::vector<DWORD_PTR> padded = arguments;
    padded.resize(std::max(arguments.size(), most), reinterpret_cast<DWORD_PTR>(L""));
    return padded;
}

wchar_t* Allocate(DWORD flags, const void* source, unsigned id, LANGID language,
                  std::vector<DWORD_PTR>& arguments, DWORD& length)
{
    wchar_t* formatted = nullptr;
    length =
        ::FormatMessageW(flags | FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_ARGUMENT_ARRAY,
                         source, id, language, reinterpret_cast<wchar_t*>(&formatted), 0,
                         reinterpret_cast<va_list*>(arguments.data()));
    return formatted;
}

std::wstring Format(DWORD flags, const void* source, unsigned id,
                    const std::vector<DWORD_PTR>& arguments)
{
    std::vector<DWORD_PTR> padded = Pad(arguments);
    const LANGID language = chosenLanguage;
    DWORD length = 0;
    wchar_t* formatted = Allocate(flags, source, id, language, padded, length);
    if (!formatted && language != usersLanguage) {
        formatted = Allocate(flags, source, id, usersLanguage, padded, length);
    }
    const DWORD error = ::GetLastError();
    const YUniqueLocalMemory owner(formatted);
    if (!formatted) {
        ThrowFailure(error);
    }
    return std::wstring(formatted, length);
}

}  // namespace

void YSetMessageLanguage(LANGID language)
{
    chosenLanguage = language;
}

std::wstring YFormatMessage(HMODULE module, unsigned id, DWORD flags,
                            const std::vector<DWORD_PTR>& arguments)
{
    if (module || !(flags & FORMAT_MESSAGE_FROM_SYSTEM)) {
        flags |= FORMAT_MESSAGE_FROM_HMODULE;
    }
    return Format(flags, module, id, arguments);
}

std::wstring YFormatPattern(const wchar_t* pattern, const std::vector<DWORD_PTR>& arguments)
{
    if (!pattern || *pattern == L'\0') {
        return {};  // the formatter calls an empty text a failure
    }
    return Format(FORMAT_MESSAGE_FROM_STRING, pattern, 0, arguments);
}
