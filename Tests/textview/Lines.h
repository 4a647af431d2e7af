// Lines.h: lines of text for the tests of the text view.
#pragma once

#include "textview/YTextViewBuffer.h"

#include <windows.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

inline YTextViewBuffer::LineInfo Line(const std::wstring& text, const void* attributes = nullptr)
{
    return {{text.begin(), text.end()}, attributes};
}

inline std::vector<YTextViewBuffer::LineInfo> Lines(const std::vector<std::wstring>& texts)
{
    std::vector<YTextViewBuffer::LineInfo> lines;
    for (const std::wstring& text : texts) {
        lines.push_back(Line(text));
    }
    return lines;
}

// Returns how many lines were lost.
inline unsigned Append(YTextViewBuffer& buffer, const std::vector<std::wstring>& texts)
{
    const auto lines = Lines(texts);
    unsigned removed = npos;
    buffer.AppendLines(lines.data(), static_cast<unsigned>(lines.size()), removed);
    return removed;
}

inline std::wstring TextOf(const YTextViewBuffer& buffer, unsigned line)
{
    const auto& text = buffer.GetLineInfo(line).text;
    return {text.begin(), text.end()};
}

inline std::vector<std::wstring> TextsOf(const YTextViewBuffer& buffer)
{
    std::vector<std::wstring> texts;
    for (unsigned line = 0; line < buffer.GetLineCount(); ++line) {
        texts.push_back(TextOf(buffer, line));
    }
    return texts;
}

struct Range
{
    unsigned startLine = npos;
    unsigned startColumn = npos;
    unsigned endLine = npos;
    unsigned endColumn = npos;
    bool columnar = false;
};

// The copied text with all its NUL characters but the terminator; nothing when the copy was refused.
inline std::optional<std::wstring> Copy(YTextViewBuffer& buffer, const Range& range = {})
{
    void* memory = nullptr;
    unsigned length = 0;
    if (!buffer.CopyTextToBuffer(memory, length, range.startLine, range.startColumn, range.endLine,
                                 range.endColumn, range.columnar)) {
        return std::nullopt;
    }
    std::wstring text(static_cast<const wchar_t*>(::GlobalLock(memory)), length);
    ::GlobalUnlock(memory);
    ::GlobalFree(memory);
    if (text.back() != L'\0') {
        return L"not terminated: " + text;
    }
    text.pop_back();
    return text;
}
