// LineDecoder.h: bytes of a text file in, lines for a view out.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <vector>

class LineBatch;

enum class TextEncoding { Utf8, Utf16LittleEndian, Utf16BigEndian, CodePage };

struct DetectedEncoding
{
    TextEncoding encoding;
    std::size_t markLength;  // bytes of a byte order mark at the start, not part of the text
};

// Judges the start of a file: by its mark, by the zero bytes of UTF-16, by being valid UTF-8 (a
// character cut by the end counts as valid); what is none of these is in the system's code page.
DetectedEncoding DetectEncoding(const unsigned char* bytes, std::size_t count);

// Lines end with LF, CR LF or CR, and after maxLineLength units. Tabs become spaces up to the next
// multiple of tabWidth. What would not show, or would move other text (control and bidirectional
// formatting characters), becomes a middle dot; bytes that are no text become U+FFFD.
// Everything may be cut anywhere between two calls: characters, pairs, CR LF, tabs, lines.
// One thread, no locks.
class LineDecoder
{
public:
    static constexpr std::size_t maxLineLength = 16u << 20;  // UTF-16 units
    static constexpr unsigned usualTabWidth = 8;

    // codePage: for TextEncoding::CodePage; of one or two bytes a character, or CP_UTF8.
    explicit LineDecoder(TextEncoding encoding, UINT codePage = CP_ACP,
                         unsigned tabWidth = usualTabWidth);

    // Adds the lines that are complete now.
    void Decode(const unsigned char* bytes, std::size_t count, LineBatch& lines);
    // The text ends here: a character that was cut becomes U+FFFD, an unfinished line is added.
    void Finish(LineBatch& lines);

    // What has come of the line that is not complete yet.
    const wchar_t* GetUnfinishedText() const { return line.data(); }
    std::size_t GetUnfinishedLength() const { return length; }

private:
    void DecodeUtf8(const unsigned char* bytes, const unsigned char* end, LineBatch& lines);
    void DecodeUtf16(const unsigned char* bytes, const unsigned char* end, LineBatch& lines);
    void DecodeCodePage(const unsigned char* bytes, const unsigned char* end, LineBatch& lines);
    // Takes the plain characters at the start; the result is the first byte that is none.
    const unsigned char* TakePlain(const unsigned char* bytes, const unsigned char* end,
                                   LineBatch& lines);
    void TakeUtf8Byte(unsigned char byte, LineBatch& lines);
    void TakeUtf8Lead(unsigned char byte, LineBatch& lines);
    void TakeCodePageByte(unsigned char byte, LineBatch& lines);
    void BuildCodePageTable();

    void PutCodePoint(char32_t codePoint, LineBatch& lines);
    void PutUnit(wchar_t unit, LineBatch& lines);  // any
    void PutText(wchar_t unit, LineBatch& lines);  // no control character
    void PutTab(LineBatch& lines);
    void EndLine(LineBatch& lines);
    void Reserve(std::size_t units);

    TextEncoding encoding;
    UINT codePage;
    unsigned tabWidth;
    std::array<wchar_t, 256> table{};  // of the code page; 0 for a first byte of two
    std::vector<wchar_t> line;  // scratch; the first `length` units are the unfinished line
    std::size_t length = 0;
    bool afterReturn = false;  // an LF that follows belongs to the CR before it
    // A UTF-8 character in the making: bytes still missing and what the next one may be.
    unsigned missing = 0;
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
    char32_t codePoint = 0;
    // The first byte of a UTF-16 unit or of a double-byte character.
    bool hasFirstByte = false;
    unsigned char firstByte = 0;
};
