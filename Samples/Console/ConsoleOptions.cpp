#include "ConsoleOptions.h"

#include <cwchar>
#include <string_view>

const wchar_t consoleUsage[] = L"Console [FILE] [--buffer LINES] [--split] [--outline] "
                               L"[--follow=off]\n\n"
                               L"Shows a text file and what is added to it. The newest LINES are "
                               L"kept, 1 to 1,000,000.";

namespace {

bool ParseLines(const wchar_t* text, unsigned& lines)
{
    wchar_t* end = nullptr;
    const unsigned long value = std::wcstoul(text, &end, 10);
    if (*text < L'0' || *text > L'9' || *end != L'\0' || value < 1 ||
        value > ConsoleOptions::mostLines) {
        return false;
    }
    lines = value;
    return true;
}

}  // namespace

ConsoleOptions ParseConsoleOptions(int count, const wchar_t* const* arguments)
{
    ConsoleOptions options;
    for (int i = 1; i < count; ++i) {
        const std::wstring_view argument = arguments[i];
        if (argument == L"--split") {
            options.split = true;
        } else if (argument == L"--outline") {
            options.outline = true;
        } else if (argument == L"--follow=off") {
            options.follow = false;
        } else if (argument == L"--help") {
            options.help = true;
        } else if (argument == L"--buffer") {
            if (++i >= count || !ParseLines(arguments[i], options.lineLimit)) {
                options.error = L"--buffer needs a number of lines, 1 to 1,000,000.";
            }
        } else if (argument.starts_with(L"--")) {
            options.error = L"There is no option " + std::wstring(argument) + L".";
        } else if (options.file.empty()) {
            options.file = argument;
        } else {
            options.error = L"One file at a time, please.";
        }
    }
    return options;
}
