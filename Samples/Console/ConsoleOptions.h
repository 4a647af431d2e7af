// ConsoleOptions.h: what the command line asks for.
#pragma once

#include "Peer.h"

#include <YReportMessageParams.h>

#include <string>

struct ConsoleOptions
{
    std::wstring file;  // empty: none
    Peer peer;  // to connect to
    unsigned lineLimit = 0;  // lines kept, 1 to ConsoleChoices::mostLines; 0: as the settings say
    bool split = false;
    bool outline = false;
    bool follow = true;
    bool help = false;
    LANGID language = 0;  // 0: the user's
    std::wstring settings;  // the folder; empty: the user's own
    // What is wrong with the command line; id 0: nothing.
    YReportMessageParams error{0, ::GetModuleHandleW(nullptr)};
};

// [FILE] and options in any order; arguments[0] is the program.
ConsoleOptions ParseConsoleOptions(int count, const wchar_t* const* arguments);
