#include "YReportMessageParams.h"

#include "MessageFormatter.h"
#include "YMessages.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <new>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t mostInserts = 99;  // %99 is the last
constexpr unsigned messageTableBit = 1u << 29;  // set in the ids of message tables
constexpr DWORD singleLine = FORMAT_MESSAGE_MAX_WIDTH_MASK;
constexpr std::wstring_view lineEnd = L"\r\n";
constexpr std::wstring_view singleLineEnd = L" ";

// May be null: then the step is left out.
HMODULE GetNtDll()
{
    static const HMODULE module = ::GetModuleHandleW(L"NTDLL.DLL");
    return module;
}

HMODULE GetHostModule()
{
    static const HMODULE module = ::GetModuleHandleW(nullptr);
    return module;
}

// The largest number behind a '%', 0 for none. "%0" ends a text and is no reference.
std::size_t FindLargestInsert(std::wstring_view text)
{
    const auto isDigit = [](wchar_t character) { return character >= L'0' && character <= L'9'; };
    std::size_t largest = 0;
    for (std::size_t i = text.find(L'%'); i < text.size(); i = text.find(L'%', i + 1)) {
        if (i + 1 == text.size() || !isDigit(text[i + 1]) || text[i + 1] == L'0') {
            continue;
        }
        std::size_t number = 0;
        while (i + 1 < text.size() && isDigit(text[i + 1])) {
            number = std::min<std::size_t>(number * 10 + (text[++i] - L'0'), 1'000'000);
        }
        largest = std::max(largest, number);
    }
    return largest;
}

// What one composition looks for and fills in.
struct Composition
{
    unsigned id;
    HMODULE module;
    const std::vector<YUnicodeString>& inserts;
    DWORD flags;
    DWORD error = ERROR_MR_MID_NOT_FOUND;  // of the last attempt
};

// A text that refers to more inserts than there are keeps its placeholders. Whatever the formatter
// refuses is no text; the next place may have one.
bool Attempt(Composition& composition, FormattedText& text, HMODULE module, DWORD source = 0)
{
    const DWORD flags = composition.flags | source;
    composition.error =
        FormatMessageText(module, composition.id, flags | FORMAT_MESSAGE_IGNORE_INSERTS, {}, text);
    if (composition.error == ERROR_SUCCESS && !(flags & FORMAT_MESSAGE_IGNORE_INSERTS) &&
        FindLargestInsert(text.View()) <= composition.inserts.size()) {
        DWORD_PTR arguments[mostInserts];
        const std::size_t count = std::min(composition.inserts.size(), mostInserts);
        std::transform(composition.inserts.begin(),
                       composition.inserts.begin() + static_cast<std::ptrdiff_t>(count), arguments,
                       [](const YUnicodeString& insert) {
                           return reinterpret_cast<DWORD_PTR>(insert.c_str());
                       });
        composition.error =
            FormatMessageText(module, composition.id, flags, {arguments, count}, text);
    }
    if (composition.error == ERROR_SUCCESS && text.length == 0) {
        composition.error = ERROR_MR_MID_NOT_FOUND;
    }
    return composition.error == ERROR_SUCCESS;
}

bool FindText(Composition& composition, FormattedText& text)
{
    if (!(composition.id & messageTableBit) &&
        (Attempt(composition, text, nullptr, FORMAT_MESSAGE_FROM_SYSTEM) ||
         (GetNtDll() && Attempt(composition, text, GetNtDll())))) {
        return true;
    }
    return Attempt(composition, text, composition.module) ||
           Attempt(composition, text, GetHostModule());
}

// The last words for a code of which nothing is known. They do without the message table, too.
std::wstring ComposeFallback(unsigned id)
{
    FormattedText text;
    const DWORD_PTR arguments[] = {id};
    if (FormatMessageText(YGetLibraryModule(), MSG_NO_ERROR_TEXT, 0, arguments, text) ==
        ERROR_SUCCESS) {
        return std::wstring(text.View());
    }
    wchar_t plain[80];
    std::swprintf(plain, std::size(plain),
                  L"Could not retrieve the error text for error code 0x%08x.\r\n", id);
    return plain;
}

bool MeansNoText(DWORD error)
{
    return error == ERROR_MR_MID_NOT_FOUND || error == ERROR_RESOURCE_TYPE_NOT_FOUND ||
           error == ERROR_MUI_FILE_NOT_FOUND;
}

// Where the search failed for a reason of its own, that reason is the text. A reason that is the
// code in question would lead back here for ever.
std::wstring ExplainFailure(const Composition& composition)
{
    if (MeansNoText(composition.error) || composition.error == composition.id) {
        return ComposeFallback(composition.id);
    }
    return YReportMessageParams(composition.error).GetTrimmedText() + std::wstring(lineEnd);
}

// As the formatter does it.
FormattedText Allocate(std::wstring_view text)
{
    FormattedText copy;
    copy.block.Reset(::LocalAlloc(LMEM_ZEROINIT, (text.size() + 1) * sizeof(wchar_t)));
    if (!copy.block) {
        throw std::bad_alloc();
    }
    std::copy(text.begin(), text.end(), static_cast<wchar_t*>(copy.block.Get()));
    copy.length = static_cast<DWORD>(text.size());
    return copy;
}

YUnicodeString Widen(std::string_view text)
{
    return YUnicodeString::FromBytes(text);
}

}  // namespace

YReportMessageParams::YReportMessageParams(unsigned id, HMODULE messages)
    : messageId(id), module(messages)
{}

YReportMessageParams::YReportMessageParams(const YReportMessageParams& other)
    : YUnknown(other), auxiliaryCode(other.auxiliaryCode), messageId(0), module(nullptr)
{
    CopyMessage(other);
}

YReportMessageParams::~YReportMessageParams() = default;

void YReportMessageParams::CopyMessage(const YReportMessageParams& other)
{
    inserts = other.inserts;  // may throw: first
    messageId = other.messageId;
    module = other.module;
    file = other.file;
    line = other.line;
    userValue = other.userValue;
}

void YReportMessageParams::Assign(const IReportMessageParams& other)
{
    const auto* const message = dynamic_cast<const YReportMessageParams*>(&other);
    if (message && message != this) {
        CopyMessage(*message);
        DropText();
    }
}

YReportMessageParams& YReportMessageParams::operator=(const YReportMessageParams& other)
{
    if (this != &other) {
        Assign(other);
    }
    return *this;
}

void YReportMessageParams::SetErrorCode(unsigned code)
{
    Assign(YReportMessageParams(code));
    auxiliaryCode = -1;
    locationText.clear();
}

void YReportMessageParams::SetLocation(const wchar_t* sourceFile, int sourceLine)
{
    file = sourceFile;
    line = sourceLine;
}

void YReportMessageParams::AddInsert(const wchar_t* insert)
{
    inserts.emplace_back(insert);
}

void YReportMessageParams::AddInsert(const std::wstring& insert)
{
    inserts.emplace_back(std::wstring_view(insert));
}

void YReportMessageParams::AddInsert(const char* insert)
{
    inserts.push_back(Widen(insert ? insert : ""));
}

void YReportMessageParams::AddInsert(const std::string& insert)
{
    inserts.push_back(Widen(insert));
}

const wchar_t* YReportMessageParams::GetText() const
{
    return Compose(0);
}

const wchar_t* YReportMessageParams::GetTextSingleLine() const
{
    return Compose(singleLine);
}

const wchar_t* YReportMessageParams::GetTrimmedText() const
{
    Compose(0);
    TrimStored(lineEnd);
    return GetStored();
}

const wchar_t* YReportMessageParams::GetTrimmedTextSingleLine() const
{
    Compose(singleLine);
    TrimStored(singleLineEnd);
    return GetStored();
}

const wchar_t* YReportMessageParams::GetTextWithLocation(unsigned formatId) const
{
    if (!file) {
        return GetText();
    }
    YReportMessageParams located(formatId);
    located.AddInsert(GetText());
    located.AddInsert(file);
    located.AddFormattedInsert(L"%1!d!", line);
    locationText = located.GetText();
    return locationText.c_str();
}

void YReportMessageParams::DropText()
{
    text.Reset();
    textLength = 0;
    isTrimmed = false;
}

const wchar_t* YReportMessageParams::Compose(DWORD flags) const
{
    if (!text) {
        Composition composition{messageId, module, inserts, flags};
        FormattedText composed;
        if (!FindText(composition, composed)) {
            composed = Allocate(ExplainFailure(composition));
        }
        text = std::move(composed.block);
        textLength = composed.length;
    }
    return GetStored();
}

// Once only: a text that ends in two line ends keeps one, however often it is asked for.
void YReportMessageParams::TrimStored(std::wstring_view end) const
{
    if (!isTrimmed && std::wstring_view(GetStored(), textLength).ends_with(end)) {
        textLength -= static_cast<unsigned>(end.size());
        GetStored()[textLength] = L'\0';
        isTrimmed = true;
    }
}

std::wstring YGetErrorText(unsigned code, HMODULE module)
{
    const std::vector<YUnicodeString> none;
    Composition composition{code, module, none, singleLine | FORMAT_MESSAGE_IGNORE_INSERTS};
    FormattedText found;
    std::wstring text =
        FindText(composition, found) ? std::wstring(found.View()) : ExplainFailure(composition);
    if (text.ends_with(singleLineEnd)) {
        text.resize(text.size() - singleLineEnd.size());
    }
    return text;
}
