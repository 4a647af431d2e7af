// LineRules.h: which lines of a log stand out.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

enum class LineSeverity { Plain, Warning, Error, Notice, Sent };

// What a line's attribute pointer points to; null: a plain line. There is one constant record for
// each severity.
struct LineAttributes
{
    LineSeverity severity;
};

// By LineSeverity; CLR_INVALID: as plain lines.
using LineColors = std::array<COLORREF, 5>;

inline constexpr LineColors defaultLineColors = {CLR_INVALID, RGB(0x9A, 0x5B, 0x00),
                                                 RGB(0xC0, 0x1C, 0x1C), RGB(0x70, 0x70, 0x70),
                                                 RGB(0x1A, 0x4F, 0xB4)};

// The record for lines of our own making, between those of the file.
const LineAttributes* GetNoticeAttributes();
// The record for lines that the user has sent.
const LineAttributes* GetSentAttributes();

// Judges a line by whole words in its first 200 characters, whatever their case: "error", "fatal",
// "failed" and their like make an error, "warning" and its like a warning; an error outweighs.
// Null for a plain line. Any thread, no allocation.
const LineAttributes* ClassifyLine(const wchar_t* text, std::size_t length);
