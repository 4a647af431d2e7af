#include "LineRules.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <string_view>

namespace {

constexpr std::size_t judgedLength = 200;  // characters: a log says early how bad it is

constexpr LineAttributes warning{LineSeverity::Warning};
constexpr LineAttributes error{LineSeverity::Error};
constexpr LineAttributes notice{LineSeverity::Notice};
constexpr LineAttributes sent{LineSeverity::Sent};

struct Word
{
    std::wstring_view text;  // small letters
    const LineAttributes* attributes;
};

// FindBeginnings knows how they begin.
constexpr Word words[] = {
    {L"abort", &error},     {L"aborted", &error},    {L"alert", &error},
    {L"crit", &error},      {L"critical", &error},   {L"deprecated", &warning},
    {L"emerg", &error},     {L"err", &error},        {L"error", &error},
    {L"errors", &error},    {L"exception", &error},  {L"fail", &error},
    {L"failed", &error},    {L"failure", &error},    {L"fatal", &error},
    {L"panic", &error},     {L"segfault", &error},   {L"warn", &warning},
    {L"warning", &warning}, {L"warnings", &warning},
};

constexpr bool IsWordCharacter(wchar_t character)
{
    return (character >= L'a' && character <= L'z') || (character >= L'A' && character <= L'Z') ||
           (character >= L'0' && character <= L'9') || character == L'_' || character >= 0x80;
}

constexpr wchar_t ToSmall(wchar_t character)
{
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + 32)
                                                  : character;
}

// Windows of our time needs this instruction set; the toolchain's default does not use it.
#define SSE2 __attribute__((target("sse2")))

constexpr std::size_t step = 16;  // characters tried at once

// Sixteen characters as bytes, their letters made small; what fits no byte becomes no letter.
SSE2 inline __m128i LoadSmall(const wchar_t* text)
{
    const auto* const block = reinterpret_cast<const __m128i*>(text);
    const __m128i bytes = _mm_packus_epi16(_mm_loadu_si128(block), _mm_loadu_si128(block + 1));
    return _mm_or_si128(bytes, _mm_set1_epi8(0x20));
}

SSE2 inline __m128i Is(__m128i characters, char letter)
{
    return _mm_cmpeq_epi8(characters, _mm_set1_epi8(letter));
}

SSE2 inline __m128i IsEither(__m128i characters, char letter, char other)
{
    return _mm_or_si128(Is(characters, letter), Is(characters, other));
}

// The first two letters of each of the words, tried at sixteen places at once, a bit for each: most
// lines of a log hold none of them at the start of a word, and every line goes through here.
SSE2 unsigned FindBeginnings(const wchar_t* text)
{
    const __m128i first = LoadSmall(text);
    const __m128i second = LoadSmall(text + 1);
    const __m128i fa_pa_wa =
        _mm_and_si128(Is(second, 'a'), _mm_or_si128(IsEither(first, 'f', 'p'), Is(first, 'w')));
    const __m128i de_se = _mm_and_si128(Is(second, 'e'), IsEither(first, 'd', 's'));
    const __m128i cr_er = _mm_and_si128(Is(second, 'r'), IsEither(first, 'c', 'e'));
    const __m128i em_ex = _mm_and_si128(Is(first, 'e'), IsEither(second, 'm', 'x'));
    const __m128i ab_al = _mm_and_si128(Is(first, 'a'), IsEither(second, 'b', 'l'));
    const __m128i any = _mm_or_si128(_mm_or_si128(fa_pa_wa, de_se),
                                     _mm_or_si128(cr_er, _mm_or_si128(em_ex, ab_al)));
    return static_cast<unsigned>(_mm_movemask_epi8(any));
}

bool EqualsIgnoringCase(std::wstring_view text, std::wstring_view small)
{
    return text.size() == small.size() &&
           std::equal(text.begin(), text.end(), small.begin(),
                      [](wchar_t left, wchar_t right) { return ToSmall(left) == right; });
}

const LineAttributes* Judge(std::wstring_view text)
{
    for (const Word& word : words) {
        if (EqualsIgnoringCase(text, word.text)) {
            return word.attributes;
        }
    }
    return nullptr;
}

// Null where no word of ours begins.
const LineAttributes* JudgeAt(const wchar_t* text, std::size_t place, std::size_t length)
{
    if (place >= length || (place > 0 && IsWordCharacter(text[place - 1]))) {
        return nullptr;
    }
    std::size_t end = place;
    while (end < length && IsWordCharacter(text[end])) {
        ++end;
    }
    return Judge({text + place, end - place});
}

}  // namespace

const LineAttributes* GetNoticeAttributes()
{
    return &notice;
}

const LineAttributes* GetSentAttributes()
{
    return &sent;
}

const LineAttributes* ClassifyLine(const wchar_t* text, std::size_t length)
{
    const std::size_t judged = std::min(length, judgedLength);
    const LineAttributes* found = nullptr;
    for (std::size_t next = 0; next < judged; next += step) {
        // The last places are tried with some before them, for the sake of the look ahead.
        const bool isLong = length > step;
        const std::size_t at = isLong ? std::min(next, length - step - 1) : 0;
        unsigned beginnings = isLong ? FindBeginnings(text + at) : (1u << step) - 1;
        for (; beginnings != 0; beginnings &= beginnings - 1) {
            const std::size_t place = at + static_cast<unsigned>(std::countr_zero(beginnings));
            const LineAttributes* const word = JudgeAt(text, place, judged);
            if (word == &error) {
                return word;
            }
            found = word ? word : found;
        }
    }
    return found;
}
