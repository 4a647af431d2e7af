// ConsoleChoices.h: what the user may choose.
#pragma once

#include "LineRules.h"

#include <YProfileTlsVersions.h>

#include <windows.h>

#include <string>

// The end of a line that is sent.
enum class LineEnd : unsigned { CrLf, Lf, Cr };

// A copy is what a dialog changes until it is accepted.
struct ConsoleChoices
{
    static constexpr unsigned mostLines = 1'000'000;
    static constexpr unsigned mostColumnsPerTab = 16;

    unsigned lineLimit = 100'000;  // lines that a window keeps, 1 to mostLines
    bool outlines = false;  // the selection of a new window, in the place of filling it
    bool splits = false;  // a new window of files

    bool colorsLines = true;  // warnings and errors
    LineColors colors = defaultLineColors;
    // See FormatFont: "100 400 0 Courier New" is size in tenths of points, weight, italic, face.
    std::wstring font;  // empty: the view's own

    bool wrapsAround = true;
    bool findsWhileTyping = true;
    bool matchesCase = false;
    bool matchesWords = false;

    unsigned lineEnd = static_cast<unsigned>(LineEnd::CrLf);
    bool showsSent = true;
    DWORD tlsVersions = YProfileTlsVersions::allVersions;
    std::wstring certificate;  // its file; empty: none
    bool logs = false;  // every connection from its start
    std::wstring logFolder;
    bool logsSent = false;  // beside what is received
    bool logsNotices = false;

    bool follows = true;  // a file that is opened
    unsigned codePage = CP_ACP;  // of files that are no Unicode
    unsigned tabWidth = 8;  // columns, 1 to mostColumnsPerTab
    bool remembers = true;  // files and hosts

    bool operator==(const ConsoleChoices&) const = default;
};

// As a choice of the font is kept. False: it is none, or makes no sense.
bool ParseFont(const std::wstring& text, LOGFONT& font);
std::wstring FormatFont(const LOGFONT& font);

// As the view is to show lines.
LineColors GetShownColors(const ConsoleChoices& choices);
