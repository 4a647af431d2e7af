#include "YFormatMessage.h"

#include "YUniqueHandle.h"

#include <algorithm>

InvalidParameter::~InvalidParameter() = default;

MessageNotFound::~MessageNotFound() = default;

namespace {

struct LocalMemoryTraits
{
    using Handle = HLOCAL;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle block) noexcept { ::LocalFree(block); }
};

class FormatterFailure : public std::exception
{
public:
    const char* what() const noexcept override { return "FormatMessage"; }
};

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

// The language of the user: number 0 would let the formatter choose a neutral text first.
std::wstring Format(DWORD flags, const void* source, unsigned id,
                    const std::vector<DWORD_PTR>& arguments)
{
    std::vector<DWORD_PTR> padded = Pad(arguments);
    wchar_t* formatted = nullptr;
    const DWORD length = ::FormatMessageW(
        flags | FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_ARGUMENT_ARRAY, source, id,
        MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<wchar_t*>(&formatted), 0,
        reinterpret_cast<va_list*>(padded.data()));
    const DWORD error = ::GetLastError();
    const YUniqueHandle<LocalMemoryTraits> owner(formatted);
    if (!formatted) {
        ThrowFailure(error);
    }
    return std::wstring(formatted, length);
}

}  // namespace

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
