// ConsoleOptions.h: what the command line asks for.
#pragma once

#include <string>

struct ConsoleOptions
{
    static constexpr unsigned mostLines = 1'000'000;

    std::wstring file;  // empty: none
    unsigned lineLimit = 100'000;  // lines kept, 1 to mostLines
    bool split = false;
    bool outline = false;
    bool follow = true;
    bool help = false;
    std::wstring error;  // what is wrong with the command line; empty: nothing
};

// The usage, for the user.
extern const wchar_t consoleUsage[];

// [FILE] and options in any order; arguments[0] is the program.
ConsoleOptions ParseConsoleOptions(int count, const wchar_t* const* arguments);
