#include "LineDecoder.h"

#include "LineBatch.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>

namespace {

constexpr wchar_t replacement = 0xFFFD;
constexpr wchar_t harmless = 0x00B7;  // in every font, one cell wide
constexpr std::size_t blockSize = 16;

bool IsPlain(unsigned char byte)
{
    return byte >= 0x20 && byte < 0x7F;
}

// Shows nothing, or moves or hides other text.
bool IsHarmful(wchar_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F) || unit == 0x061C || unit == 0x200E ||
           unit == 0x200F || (unit >= 0x2028 && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069);
}

// Widens up to the first byte that is not plain text, and says how many those were. Writes whole
// blocks: behind the result lies rubbish, up to a block's length.
__attribute__((target("sse2"))) std::size_t WidenPlain(const unsigned char* bytes,
                                                       std::size_t count, wchar_t* out)
{
    std::size_t done = 0;
    for (; done + blockSize <= count; done += blockSize) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + done));
        const __m128i zero = _mm_setzero_si128();
        auto* const target = reinterpret_cast<__m128i*>(out + done);
        _mm_storeu_si128(target, _mm_unpacklo_epi8(block, zero));
        _mm_storeu_si128(target + 1, _mm_unpackhi_epi8(block, zero));
        // Signed: bytes from 0x80 on are below 0x20 as well.
        const __m128i special = _mm_or_si128(_mm_cmplt_epi8(block, _mm_set1_epi8(0x20)),
                                             _mm_cmpeq_epi8(block, _mm_set1_epi8(0x7F)));
        if (const int mask = _mm_movemask_epi8(special)) {
            return done + static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(mask)));
        }
    }
    for (; done < count && IsPlain(bytes[done]); ++done) {
        out[done] = bytes[done];
    }
    return done;
}

// For the detection: the whole, apart from a character cut by the end.
bool IsUtf8(const unsigned char* bytes, std::size_t count)
{
    const unsigned char* const end = bytes + count;
    while (bytes < end) {
        const unsigned char lead = *bytes++;
        if (lead < 0x80) {
            continue;
        }
        if (lead < 0xC2 || lead > 0xF4) {
            return false;
        }
        unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        for (int more = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3; more > 0 && bytes < end; --more) {
            if (*bytes < lowest || *bytes > highest) {
                return false;
            }
            ++bytes;
            lowest = 0x80;
            highest = 0xBF;
        }
    }
    return true;
}

bool StartsWith(const unsigned char* bytes, std::size_t count,
                std::initializer_list<unsigned char> mark)
{
    return count >= mark.size() && std::equal(mark.begin(), mark.end(), bytes);
}

// Text in UTF-16 has a zero in most units of Western writing, always on the same side; text in
// bytes has none.
bool HasZeros(const unsigned char* bytes, std::size_t count, std::size_t side)
{
    std::size_t zeros = 0;
    std::size_t others = 0;
    for (std::size_t i = 0; i + 1 < count; i += 2) {
        zeros += bytes[i + side] == 0;
        others += bytes[i + 1 - side] == 0;
    }
    return others == 0 && zeros * 4 > count / 2;
}

}  // namespace

DetectedEncoding DetectEncoding(const unsigned char* bytes, std::size_t count)
{
    if (StartsWith(bytes, count, {0xEF, 0xBB, 0xBF})) {
        return {TextEncoding::Utf8, 3};
    }
    if (StartsWith(bytes, count, {0xFF, 0xFE})) {
        return {TextEncoding::Utf16LittleEndian, 2};
    }
    if (StartsWith(bytes, count, {0xFE, 0xFF})) {
        return {TextEncoding::Utf16BigEndian, 2};
    }
    if (HasZeros(bytes, count, 1)) {
        return {TextEncoding::Utf16LittleEndian, 0};
    }
    if (HasZeros(bytes, count, 0)) {
        return {TextEncoding::Utf16BigEndian, 0};
    }
    return {IsUtf8(bytes, count) ? TextEncoding::Utf8 : TextEncoding::CodePage, 0};
}

LineDecoder::LineDecoder(TextEncoding textEncoding, UINT page, unsigned columnsPerTab)
    : encoding(textEncoding), codePage(page == CP_ACP ? ::GetACP() : page), tabWidth(columnsPerTab)
{
    if (encoding == TextEncoding::CodePage && codePage == CP_UTF8) {
        encoding = TextEncoding::Utf8;
    }
    if (encoding == TextEncoding::CodePage) {
        BuildCodePageTable();
    }
}

void LineDecoder::BuildCodePageTable()
{
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        const char character = static_cast<char>(byte);
        const bool first = ::IsDBCSLeadByteEx(codePage, static_cast<BYTE>(byte)) != FALSE;
        if (!first && ::MultiByteToWideChar(codePage, 0, &character, 1, &table[byte], 1) != 1) {
            table[byte] = replacement;
        }
    }
}

void LineDecoder::Decode(const unsigned char* bytes, std::size_t count, LineBatch& lines)
{
    const unsigned char* const end = bytes + count;
    switch (encoding) {
    case TextEncoding::Utf8: DecodeUtf8(bytes, end, lines); break;
    case TextEncoding::CodePage: DecodeCodePage(bytes, end, lines); break;
    case TextEncoding::Utf16LittleEndian:
    case TextEncoding::Utf16BigEndian: DecodeUtf16(bytes, end, lines); break;
    }
}

void LineDecoder::Finish(LineBatch& lines)
{
    if (missing > 0 || hasFirstByte) {
        missing = 0;
        hasFirstByte = false;
        PutText(replacement, lines);
    }
    if (length > 0) {
        EndLine(lines);
    }
}

void LineDecoder::DecodeUtf8(const unsigned char* bytes, const unsigned char* end, LineBatch& lines)
{
    while (bytes < end) {
        if (missing == 0) {
            bytes = TakePlain(bytes, end, lines);
        }
        if (bytes < end) {
            TakeUtf8Byte(*bytes++, lines);
        }
    }
}

// One byte of a character in the making. A byte that cannot continue it ends it (U+FFFD for the
// part that was there) and is looked at again as the start of the next.
void LineDecoder::TakeUtf8Byte(unsigned char byte, LineBatch& lines)
{
    if (missing == 0) {
        TakeUtf8Lead(byte, lines);
        return;
    }
    if (byte < lowest || byte > highest) {
        missing = 0;
        PutText(replacement, lines);
        TakeUtf8Lead(byte, lines);
        return;
    }
    lowest = 0x80;
    highest = 0xBF;
    codePoint = (codePoint << 6) | (byte & 0x3Fu);
    if (--missing == 0) {
        PutCodePoint(codePoint, lines);
    }
}

void LineDecoder::TakeUtf8Lead(unsigned char byte, LineBatch& lines)
{
    if (byte < 0x80) {
        PutUnit(byte, lines);
    } else if (byte < 0xC2 || byte > 0xF4) {
        PutText(replacement, lines);
    } else {
        missing = byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
        codePoint = byte & (0x3Fu >> missing);
        // No overlong forms, no surrogates, nothing past U+10FFFF.
        lowest = byte == 0xE0 ? 0xA0 : byte == 0xF0 ? 0x90 : 0x80;
        highest = byte == 0xED ? 0x9F : byte == 0xF4 ? 0x8F : 0xBF;
    }
}

void LineDecoder::DecodeUtf16(const unsigned char* bytes, const unsigned char* end,
                              LineBatch& lines)
{
    const unsigned high = encoding == TextEncoding::Utf16LittleEndian ? 1 : 0;
    for (; bytes < end; ++bytes) {
        if (!hasFirstByte) {
            firstByte = *bytes;
            hasFirstByte = true;
            continue;
        }
        hasFirstByte = false;
        const unsigned upper = high == 1 ? *bytes : firstByte;
        const unsigned lower = high == 1 ? firstByte : *bytes;
        PutUnit(static_cast<wchar_t>(upper << 8 | lower), lines);
    }
}

// Only ASCII-based code pages are a system's own, so plain bytes are plain text in each.
void LineDecoder::DecodeCodePage(const unsigned char* bytes, const unsigned char* end,
                                 LineBatch& lines)
{
    while (bytes < end) {
        if (!hasFirstByte) {
            bytes = TakePlain(bytes, end, lines);
        }
        if (bytes < end) {
            TakeCodePageByte(*bytes++, lines);
        }
    }
}

void LineDecoder::TakeCodePageByte(unsigned char byte, LineBatch& lines)
{
    if (hasFirstByte) {
        hasFirstByte = false;
        const char pair[] = {static_cast<char>(firstByte), static_cast<char>(byte)};
        wchar_t units[2] = {replacement, 0};
        const int count = ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, pair, 2, units, 2);
        PutText(units[0], lines);
        if (count == 2) {
            PutText(units[1], lines);
        }
        if (count == 0 && byte < 0x80) {
            PutUnit(byte, lines);  // a line break must not be lost to a stray first byte
        }
    } else if (table[byte] == 0 && byte != 0) {
        firstByte = byte;
        hasFirstByte = true;
    } else {
        PutUnit(table[byte], lines);
    }
}

const unsigned char* LineDecoder::TakePlain(const unsigned char* bytes, const unsigned char* end,
                                            LineBatch& lines)
{
    // No more than fits the line, and no more at a time than a cache holds.
    const std::size_t most = std::min<std::size_t>(
        {static_cast<std::size_t>(end - bytes), maxLineLength - length, 4096});
    Reserve(most + blockSize);
    const std::size_t taken = WidenPlain(bytes, most, line.data() + length);
    if (taken > 0) {
        afterReturn = false;
        length += taken;
        if (length == maxLineLength) {
            EndLine(lines);
        }
    }
    return bytes + taken;
}

void LineDecoder::PutCodePoint(char32_t character, LineBatch& lines)
{
    if (character < 0x10000) {
        PutUnit(static_cast<wchar_t>(character), lines);
        return;
    }
    const char32_t offset = character - 0x10000;
    PutText(static_cast<wchar_t>(0xD800 + (offset >> 10)), lines);
    PutText(static_cast<wchar_t>(0xDC00 + (offset & 0x3FF)), lines);
}

void LineDecoder::PutUnit(wchar_t unit, LineBatch& lines)
{
    switch (unit) {
    case L'\n':
        if (afterReturn) {
            afterReturn = false;
        } else {
            EndLine(lines);
        }
        break;
    case L'\r':
        EndLine(lines);
        afterReturn = true;
        break;
    case L'\t': PutTab(lines); break;
    default: PutText(IsHarmful(unit) ? harmless : unit, lines); break;
    }
}

void LineDecoder::PutText(wchar_t unit, LineBatch& lines)
{
    afterReturn = false;
    Reserve(1);
    line[length++] = unit;
    if (length == maxLineLength) {
        EndLine(lines);
    }
}

void LineDecoder::PutTab(LineBatch& lines)
{
    for (unsigned spaces = tabWidth - length % tabWidth; spaces > 0; --spaces) {
        PutText(L' ', lines);
    }
}

void LineDecoder::EndLine(LineBatch& lines)
{
    lines.Add(line.data(), length);
    length = 0;
}

void LineDecoder::Reserve(std::size_t units)
{
    if (line.size() - length < units) {
        line.resize(std::max(length + units, line.size() * 2));
    }
}
