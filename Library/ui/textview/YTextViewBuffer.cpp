#include "textview/YTextViewBuffer.h"

#include "YUniqueHandle.h"
#include "textview/YClipboard.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

// A range of text after its defaults were filled in. width is the one asked for: that of every line
// of a columnar copy but the last.
struct YTextViewBuffer::CopyRange
{
    unsigned startLine;
    unsigned startColumn;
    unsigned endLine;
    unsigned endColumn;
    unsigned width;
    bool columnar;

    bool IsOneLine() const { return startLine == endLine; }
};

namespace {

using LineInfo = YTextViewBuffer::LineInfo;

constexpr UINT copyFlags = GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_SHARE;
constexpr unsigned lineBreakLength = 2;  // CR LF

// So many characters fit a 32-bit count of bytes.
constexpr unsigned long long maxCharacters = 0xFFFFFFFFu / sizeof(wchar_t);

// Emptied, not destroyed: the next line that lands here reuses the allocation.
void EmptySlot(LineInfo& slot)
{
    slot.text.clear();
    slot.attributes = nullptr;
}

wchar_t* CopyCharacters(const LineInfo& line, unsigned column, unsigned count, wchar_t* out)
{
    if (count > 0) {
        std::memcpy(out, line.text.data() + column, count * sizeof(wchar_t));
    }
    return out + count;
}

// A field of a columnar copy: as much of it as the line has, up to a NUL. The rest stays NUL, which
// the block was filled with.
wchar_t* CopyField(const LineInfo& line, unsigned column, unsigned width, wchar_t* out)
{
    const unsigned length = static_cast<unsigned>(line.text.size());
    if (column < length) {
        const wchar_t* const text = line.text.data() + column;
        const unsigned available = std::min(width, length - column);
        const wchar_t* const nul = std::wmemchr(text, L'\0', available);
        const unsigned count = nul ? static_cast<unsigned>(nul - text) : available;
        std::memcpy(out, text, count * sizeof(wchar_t));
    }
    return out + width;
}

wchar_t* BreakLine(wchar_t* out)
{
    *out++ = L'\r';
    *out++ = L'\n';
    return out;
}

}  // namespace

YTextViewBuffer::YTextViewBuffer(unsigned bufferSize)
    : capacity(std::max(bufferSize, 1u)), slots(capacity)
{}

YTextViewBuffer::~YTextViewBuffer() = default;

// Flattened: for a caller that appends line by line the calls would cost as much as the copying.
[[gnu::flatten]] bool YTextViewBuffer::AppendLines(const LineInfo* lines, unsigned count,
                                                   unsigned& removed)
{
    removed = 0;
    if (count == 0) {
        return false;
    }
    const unsigned oldLineCount = lineCount;
    const unsigned oldMaxLength = maxLineLength;
    if (lineCount + count > capacity) {
        removed = MakeRoom(count);
    }
    try {
        for (unsigned i = count - std::min(count, capacity); i < count; ++i) {
            AppendLine(lines[i]);
        }
    } catch (...) {
        EmptySlots(lineCount, capacity - lineCount);
        throw;
    }
    return lineCount != oldLineCount || maxLineLength != oldMaxLength;
}

bool YTextViewBuffer::SetBufferSize(unsigned size)
{
    size = std::max(size, 1u);
    if (size == capacity) {
        return false;
    }
    const bool dropped = size < lineCount;
    if (dropped) {
        RemoveLines(lineCount - size);
        CalculateMaxLength();
    }
    if (size > capacity) {
        slots.Resize(size);
    }
    try {
        Relay(size);
    } catch (...) {
        slots.Resize(capacity);
        throw;
    }
    slots.Resize(size);
    capacity = size;
    return dropped;
}

void YTextViewBuffer::Clear()
{
    RemoveLines(lineCount);
}

void YTextViewBuffer::ClearLastLine()
{
    EmptySlot(slots[SlotOf(lineCount - 1)]);
    --lineCount;
}

bool YTextViewBuffer::CopyTextToBuffer(void*& memory, unsigned& length)
{
    return CopyTextToBuffer(memory, length, npos, npos, npos, npos, false);
}

bool YTextViewBuffer::CopyTextToBuffer(void*& memory, unsigned& length, unsigned startLine,
                                       unsigned startColumn, unsigned endLine, unsigned endColumn,
                                       bool columnar)
{
    memory = nullptr;
    length = 0;
    const CopyRange range = ClampRange(startLine, startColumn, endLine, endColumn, columnar);
    unsigned characters = 0;
    if (!MeasureCopy(range, characters)) {
        return false;
    }
    YUniqueGlobalMemory block(::GlobalAlloc(copyFlags, (characters + 1) * sizeof(wchar_t)));
    if (!block || !FillCopy(range, block.Get())) {
        return false;
    }
    memory = block.Detach();
    length = characters + 1;
    return true;
}

void YTextViewBuffer::CopyTextToClipboard()
{
    CopyTextToClipboard(npos, npos, npos, npos, false);
}

void YTextViewBuffer::CopyTextToClipboard(unsigned startLine, unsigned startColumn,
                                          unsigned endLine, unsigned endColumn, bool columnar)
{
    void* memory = nullptr;
    unsigned length = 0;
    if (CopyTextToBuffer(memory, length, startLine, startColumn, endLine, endColumn, columnar)) {
        YCopyBufferToClipboard(memory);
    }
}

void YTextViewBuffer::RemoveLines(unsigned count)
{
    EmptySlots(0, count);
    DropLines(count);
}

// Forgets the oldest lines; their slots still hold them. A longest line that was cleared and lay
// beyond the end of a ring that has shrunk is not among them.
void YTextViewBuffer::DropLines(unsigned count)
{
    if (longestLine < capacity) {
        const unsigned distance =
            longestLine >= head ? longestLine - head : longestLine + capacity - head;
        if (distance < count) {
            longestLine = npos;
            maxLineLength = 0;
        }
    }
    head = SlotOf(count);
    lineCount -= count;
}

// More than the ring has (see ClearLastLine) is each slot once.
void YTextViewBuffer::EmptySlots(unsigned line, unsigned count)
{
    unsigned slot = SlotOf(line);
    for (unsigned i = std::min(count, capacity); i > 0; --i) {
        EmptySlot(slots[slot]);
        slot = NextSlot(slot);
    }
}

// Finds the longest line when it is not known; of equally long ones the newest, which stays longest.
bool YTextViewBuffer::CalculateMaxLength()
{
    if (longestLine != npos) {
        return false;
    }
    unsigned greatest = 0;
    unsigned where = npos;
    unsigned slot = head;
    for (unsigned i = std::min(lineCount, capacity); i > 0; --i) {
        const unsigned length = static_cast<unsigned>(slots[slot].text.size());
        if (length >= greatest) {
            greatest = length;
            where = slot;
        }
        slot = NextSlot(slot);
    }
    if (greatest == maxLineLength) {
        return false;
    }
    maxLineLength = greatest;
    longestLine = where;
    return true;
}

// Drops what does not fit beside count new lines, and says how many went. Their slots are not
// emptied: every one of them gets a new line at once.
unsigned YTextViewBuffer::MakeRoom(unsigned count)
{
    const unsigned dropped = count >= capacity ? lineCount : lineCount + count - capacity;
    DropLines(dropped);
    CalculateMaxLength();
    return dropped;
}

void YTextViewBuffer::AppendLine(const LineInfo& line)
{
    const unsigned index = SlotOf(lineCount);
    LineInfo& slot = slots[index];
    slot.text.assign(line.text.begin(), line.text.end());
    slot.attributes = line.attributes;
    ++lineCount;
    const unsigned length = static_cast<unsigned>(slot.text.size());
    if (length >= maxLineLength) {
        maxLineLength = length;
        longestLine = index;
    }
}

// Moves the lines to where the ring of the new size expects them. Until it is done the slot array
// has the larger of both sizes.
void YTextViewBuffer::Relay(unsigned size)
{
    if (head == 0) {
        return;
    }
    if (head + lineCount < capacity) {
        MoveSlots(head, 0, lineCount);
        head = 0;
    } else if (size >= capacity) {
        // The run at the end moves to the new end; what wraps to the front stays.
        MoveSlots(head, head + size - capacity, capacity - head);
        head += size - capacity;
    } else {
        // The run at the end moves behind what wraps to the front. That is in order when the lines
        // fill the new size. With room to spare we keep this simple layout as well: the lines that
        // had wrapped are then read at the wrong place, behind slots that hold none of the lines.
        const unsigned wrapped = SlotOf(lineCount);
        MoveSlots(head, wrapped, capacity - head);
        head = wrapped;
    }
}

// Copies: a source that is not overwritten keeps its line. All memory is had before the first slot
// changes, so that a failure leaves the old layout whole.
void YTextViewBuffer::MoveSlots(unsigned from, unsigned to, unsigned count)
{
    for (unsigned i = 0; i < count; ++i) {
        slots[to + i].text.reserve(slots[from + i].text.size());
    }
    for (unsigned i = 0; i < count; ++i) {
        const unsigned step = to < from ? i : count - 1 - i;  // never onto a slot still to be read
        slots[to + step] = slots[from + step];
    }
    if (longestLine >= from && longestLine - from < count) {
        longestLine = longestLine - from + to;
    }
}

YTextViewBuffer::CopyRange YTextViewBuffer::ClampRange(unsigned startLine, unsigned startColumn,
                                                       unsigned endLine, unsigned endColumn,
                                                       bool columnar) const
{
    const unsigned width = endColumn - startColumn;
    startLine = startLine == npos ? 0 : startLine;
    startColumn = startColumn > LengthOf(startLine) ? 0 : startColumn;
    endLine = endLine >= lineCount ? lineCount - 1 : endLine;
    endColumn = std::min(endColumn, LengthOf(endLine));
    return {startLine, startColumn, endLine, endColumn, width, columnar};
}

// The length of the text without its terminator. False: a rectangle upside down, or a text too large
// for a block. 64 bits hold every sum; columns that run backwards wrap and come out as too large.
bool YTextViewBuffer::MeasureCopy(const CopyRange& range, unsigned& characters) const
{
    const unsigned lastWidth = range.endColumn - range.startColumn;
    unsigned long long total = lastWidth;
    if (range.columnar && !range.IsOneLine()) {
        if (range.endLine < range.startLine) {
            return false;
        }
        const unsigned lines = range.endLine - range.startLine;
        total += (1ull * range.width + lineBreakLength) * lines + lineBreakLength;
    } else if (!range.IsOneLine() && !MeasureStream(range, total)) {
        return false;
    }
    characters = static_cast<unsigned>(total);
    return total < maxCharacters;
}

bool YTextViewBuffer::MeasureStream(const CopyRange& range, unsigned long long& characters) const
{
    characters = 0;
    if (const unsigned first = LengthOf(range.startLine) - range.startColumn) {
        characters += first + lineBreakLength;
    }
    characters += range.endColumn + lineBreakLength;
    if (range.endLine < range.startLine) {
        return true;
    }
    // An empty buffer has line npos - 1 for its last: too large by its line breaks alone.
    const unsigned between = range.endLine - range.startLine - 1;
    if (1ull * between * lineBreakLength >= maxCharacters) {
        return false;
    }
    unsigned slot = SlotOf(range.startLine);
    for (unsigned i = 0; i < between; ++i) {
        slot = NextSlot(slot);
        characters += slots[slot].text.size() + lineBreakLength;
    }
    return true;
}

bool YTextViewBuffer::FillCopy(const CopyRange& range, void* memory) const
{
    const YGlobalLock lock(memory);
    if (!lock) {
        return false;
    }
    wchar_t* const out = static_cast<wchar_t*>(lock.Get());
    const bool columns = range.columnar && !range.IsOneLine();
    wchar_t* const end = columns ? CopyColumns(range, out) : CopyStream(range, out);
    *end = L'\0';
    return true;
}

wchar_t* YTextViewBuffer::CopyStream(const CopyRange& range, wchar_t* out) const
{
    unsigned slot = SlotOf(range.startLine);
    const LineInfo& first = slots[slot];
    if (range.IsOneLine()) {
        return CopyCharacters(first, range.startColumn, range.endColumn - range.startColumn, out);
    }
    const unsigned length = static_cast<unsigned>(first.text.size());
    if (range.startColumn < length) {
        out = BreakLine(CopyCharacters(first, range.startColumn, length - range.startColumn, out));
    }
    for (unsigned line = range.startLine + 1; line < range.endLine; ++line) {
        slot = NextSlot(slot);
        const LineInfo& between = slots[slot];
        out =
            BreakLine(CopyCharacters(between, 0, static_cast<unsigned>(between.text.size()), out));
    }
    return BreakLine(CopyCharacters(GetLineInfo(range.endLine), 0, range.endColumn, out));
}

// Counts slots on from the start line's without wrapping: rectangles are meant for the text in
// view, and one that crosses the end of the ring raises the array's exception rather than mixing
// the oldest lines with the newest.
wchar_t* YTextViewBuffer::CopyColumns(const CopyRange& range, wchar_t* out) const
{
    unsigned slot = SlotOf(range.startLine);
    for (unsigned line = range.startLine; line < range.endLine; ++line) {
        out = BreakLine(CopyField(slots[slot++], range.startColumn, range.width, out));
    }
    return BreakLine(
        CopyField(slots[slot], range.startColumn, range.endColumn - range.startColumn, out));
}
