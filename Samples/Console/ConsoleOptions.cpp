#include "ConsoleOptions.h"

#include "ConsoleChoices.h"
#include "ConsoleMessages.h"

#include <string_view>

namespace {

void Complain(ConsoleOptions& options, unsigned id, const wchar_t* about = nullptr)
{
    options.error = YReportMessageParams(id, ::GetModuleHandleW(nullptr));
    if (about) {
        options.error.AddInsert(about);
    }
}

// What follows an option; null where nothing does.
class Values
{
public:
    Values(int& index, int count, const wchar_t* const* arguments)
        : last(index), end(count), all(arguments)
    {}
    const wchar_t* Next() { return ++last < end ? all[last] : nullptr; }

private:
    int& last;
    const int end;
    const wchar_t* const* const all;
};

bool ParseLines(Values& values, ConsoleOptions& options)
{
    unsigned long lines = 0;
    if (!ParseNumber(values.Next(), 1, ConsoleChoices::mostLines, lines)) {
        return false;
    }
    options.lineLimit = lines;
    return true;
}

bool ParseLanguage(Values& values, ConsoleOptions& options)
{
    const wchar_t* const text = values.Next();
    const std::wstring_view name = text ? text : L"";
    if (name == L"en") {
        options.language = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
    } else if (name == L"fr") {
        options.language = MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH);
    }
    return options.language != 0;
}

bool ParseFolder(Values& values, ConsoleOptions& options)
{
    const wchar_t* const text = values.Next();
    options.settings = text ? text : L"";
    return !options.settings.empty();
}

bool ParsePeer(Values& values, ConsoleOptions& options)
{
    const wchar_t* const host = values.Next();
    options.peer.host = host ? host : L"";
    return !options.peer.host.empty() && ParsePort(values.Next(), options.peer.port);
}

struct ValuedOption
{
    std::wstring_view name;
    bool (*parse)(Values& values, ConsoleOptions& options);
    unsigned complaint;
};

constexpr ValuedOption valuedOptions[] = {
    {L"--buffer", &ParseLines, CONSOLE_WRONG_LINES},
    {L"--connect", &ParsePeer, CONSOLE_WRONG_PEER},
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
        Values values(i, count, arguments);
        if (!valued) {
            ParsePlain(arguments[i], options);
        } else if (!valued->parse(values, options)) {
            Complain(options, valued->complaint);
        }
    }
    return options;
}
