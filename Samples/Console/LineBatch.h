// LineBatch.h: lines on their way from a decoder to a view.
#pragma once

#include <textview/YTextViewBuffer.h>

#include <cstddef>
#include <vector>

// Filled by one thread, shown by another, then cleared and filled again: cleared lines keep their
// allocations, so a batch that goes round allocates nothing once it is warm. No locks.
class LineBatch
{
public:
    using LineInfo = YTextViewBuffer::LineInfo;

    const LineInfo* GetLines() const { return lines.data(); }
    LineInfo* GetLines() { return lines.data(); }
    unsigned GetCount() const { return count; }
    std::size_t GetCharacters() const { return characters; }
    bool IsEmpty() const { return count == 0; }

    // Copies the text in. The attributes are the caller's to set.
    LineInfo& Add(const wchar_t* text, std::size_t length)
    {
        if (count == lines.size()) {
            lines.emplace_back();
        }
        LineInfo& line = lines[count];
        line.text.assign(text, text + length);
        line.attributes = nullptr;
        ++count;
        characters += length;
        return line;
    }

    void Clear()
    {
        count = 0;
        characters = 0;
    }

private:
    std::vector<LineInfo> lines;  // the first `count` are filled
    unsigned count = 0;
    std::size_t characters = 0;
};
