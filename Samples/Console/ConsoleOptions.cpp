#include "ConsoleOptions.h"

#include "ConsoleMessages.h"

#include <cwchar>
#include <string_view>

namespace {

void Complain(ConsoleOptions& options, unsigned id, const wchar_t* about = nullptr)
{
    options.error = YReportMessageParams(id, ::GetModuleHandleW(nullptr));
    if (about) {
        options.error.AddInsert(about);
    }
}

// The value of the option before it; null: there is none.
bool ParseLines(const wchar_t* text, ConsoleOptions& options)
{
    wchar_t* end = nullptr;
    const unsigned long value = text ? std::wcstoul(text, &end, 10) : 0;
    if (!text || *text < L'0' || *text > L'9' || *end != L'\0' || value < 1 ||
        value > ConsoleOptions::mostLines) {
        return false;
    }
    options.lineLimit = value;
    return true;
}

bool ParseLanguage(const wchar_t* text, ConsoleOptions& options)
{
    const std::wstring_view name = text ? text : L"";
    if (name == L"en") {
        options.language = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
    } else if (name == L"fr") {
        options.language = MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH);
    }
    return options.language != 0;
}

bool ParseFolder(const wchar_t* text, ConsoleOptions& options)
{
    options.settings = text ? text : L"";
    return !options.settings.empty();
}

struct ValuedOption
{
    std::wstring_view name;
    bool (*parse)(const wchar_t* text, ConsoleOptions& options);
    unsigned complaint;
};

constexpr ValuedOption valuedOptions[] = {
    {L"--buffer", &ParseLines, CONSOLE_WRONG_LINES},
    {L"--language", &ParseLanguage, CONSOLE_WRONG_LANGUAGE},
    {L"--settings", &ParseFolder, CONSOLE_NO_FOLDER},
};

const ValuedOption* FindValued(std::wstring_view name)
{
    for (const ValuedOption& option : valuedOptions) {
        if (option.name == name) {
            return &option;
        }
    }
    return nullptr;
}

void ParsePlain(const wchar_t* argument, ConsoleOptions& options)
{
    const std::wstring_view text = argument;
    if (text == L"--split") {
        options.split = true;
    } else if (text == L"--outline") {
        options.outline = true;
    } else if (text == L"--follow=off") {
        options.follow = false;
    } else if (text == L"--help") {
        options.help = true;
    } else if (text.starts_with(L"--")) {
        Complain(options, CONSOLE_UNKNOWN_OPTION, argument);
    } else if (options.file.empty()) {
        options.file = text;
    } else {
        Complain(options, CONSOLE_ONE_FILE);
    }
}

}  // namespace

ConsoleOptions ParseConsoleOptions(int count, const wchar_t* const* arguments)
{
    ConsoleOptions options;
    for (int i = 1; i < count; ++i) {
        const ValuedOption* const valued = FindValued(arguments[i]);
        if (!valued) {
            ParsePlain(arguments[i], options);
        } else if (!valued->parse(++i < count ? arguments[i] : nullptr, options)) {
            Complain(options, valued->complaint);
        }
    }
    return options;
}
