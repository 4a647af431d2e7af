// YTextViewBuffer.h: the bounded line store behind the scrollback view.
#pragma once

#include "CommonUiApi.h"
#include "YArray.h"
#include "YNpos.h"

#include <vector>

// Keeps the newest lines in a ring of reused slots; an append to a full buffer drops the oldest.
// Counts lines (0 = oldest held) and columns (UTF-16 units); knows no pixels and no window.
// npos as an argument: none, all, or to the end. One thread, no locks.
class COMMONUI_API YTextViewBuffer
{
public:
    // What callers append and what a slot stores.
    struct LineInfo
    {
        std::vector<wchar_t> text;  // no terminator
        const void* attributes = nullptr;  // borrowed, never read here; outlives the line
    };

    explicit YTextViewBuffer(unsigned bufferSize);  // lines, at least 1
    ~YTextViewBuffer();
    YTextViewBuffer(const YTextViewBuffer&) = delete;
    YTextViewBuffer& operator=(const YTextViewBuffer&) = delete;

    unsigned GetLineCount() const { return lineCount; }
    unsigned GetMaxLineLength() const { return maxLineLength; }
    // Valid until the next change. Past the last line: whatever the slot holds.
    const LineInfo& GetLineInfo(unsigned line) const { return slots[SlotOf(line)]; }

    // Copies lines[0, count) in; they are not the buffer's own. removed: lines lost at the top; the
    // caller moves its selections up by it, whatever the result. True: line count or longest length
    // changed. Out of memory: throws std::bad_alloc, the lines before the failing one are in.
    bool AppendLines(const LineInfo* lines, unsigned count, unsigned& removed);

    // True: lines were dropped. Out of memory: throws std::bad_alloc with the old size; lines that
    // had to go are gone.
    bool SetBufferSize(unsigned size);

    void Clear();

    // For a caller that replaces the newest line by appending it again: the longest length stands,
    // even if this line set it. Only while a line is held; nothing checks that.
    void ClearLastLine();

    // NUL-terminated UTF-16 in a movable global block that the caller owns; length counts the
    // terminator, endColumn is exclusive. False, memory null: there was no memory, the text does
    // not fit a 32-bit size, or the columns run backwards.
    // Lines are divided by CR LF; the last has one too unless it is the only one. A start at the
    // very end of a line leaves that line out whole. A columnar copy throws YArrayOutOfRange when
    // its lines cross the end of the ring; memory is null then.
    bool CopyTextToBuffer(void*& memory, unsigned& length);
    bool CopyTextToBuffer(void*& memory, unsigned& length, unsigned startLine, unsigned startColumn,
                          unsigned endLine, unsigned endColumn, bool columnar);
    void CopyTextToClipboard();
    void CopyTextToClipboard(unsigned startLine, unsigned startColumn, unsigned endLine,
                             unsigned endColumn, bool columnar);

private:
    struct CopyRange;

    // Once round the ring at most for every line that is held; the division is for other numbers.
    unsigned SlotOf(unsigned line) const
    {
        const unsigned slot = head + line;
        if (slot < capacity) {
            return slot;
        }
        return slot - capacity < capacity ? slot - capacity : slot % capacity;
    }
    unsigned NextSlot(unsigned slot) const { return slot + 1 == capacity ? 0 : slot + 1; }
    unsigned LengthOf(unsigned line) const
    {
        return static_cast<unsigned>(GetLineInfo(line).text.size());
    }

    void RemoveLines(unsigned count);
    void DropLines(unsigned count);
    void EmptySlots(unsigned line, unsigned count);
    bool CalculateMaxLength();
    unsigned MakeRoom(unsigned count);
    void AppendLine(const LineInfo& line);

    void Relay(unsigned size);
    void MoveSlots(unsigned from, unsigned to, unsigned count);

    CopyRange ClampRange(unsigned startLine, unsigned startColumn, unsigned endLine,
                         unsigned endColumn, bool columnar) const;
    bool MeasureCopy(const CopyRange& range, unsigned& characters) const;
    bool MeasureStream(const CopyRange& range, unsigned long long& characters) const;
    bool FillCopy(const CopyRange& range, void* memory) const;
    wchar_t* CopyStream(const CopyRange& range, wchar_t* out) const;
    wchar_t* CopyColumns(const CopyRange& range, wchar_t* out) const;

    // Line i lives in slot (head + i) % capacity. A slot that holds no line is empty, but for the
    // copies that a change of the buffer size leaves behind.
    unsigned capacity;
    unsigned longestLine = npos;  // a slot; npos: not known
    unsigned maxLineLength = 0;
    unsigned lineCount = 0;
    YArray<LineInfo> slots;  // capacity of them
    unsigned head = 0;  // slot of line 0
};
