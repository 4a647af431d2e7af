#include "LineRules.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::size_t judgedLength = 200;  // characters: a log says early how bad it is

constexpr LineAttributes warning{LineSeverity::Warning, RGB(0x9A, 0x5B, 0x00)};
constexpr LineAttributes error{LineSeverity::Error, RGB(0xC0, 0x1C, 0x1C)};
constexpr LineAttributes notice{LineSeverity::Notice, RGB(0x70, 0x70, 0x70)};

struct Word
{
    std::wstring_view text;  // small letters
    const LineAttributes* attributes;
};

// Sorted by first letter for nobody but the reader.
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

// What a character can be at a glance: most words of a log begin with a letter that none of ours
// begins with.
enum Class : unsigned char { between, inside, begins };

constexpr std::array<unsigned char, 128> MakeClasses()
{
    std::array<unsigned char, 128> classes{};
    for (unsigned character = 0; character < classes.size(); ++character) {
        classes[character] = IsWordCharacter(static_cast<wchar_t>(character)) ? inside : between;
    }
    for (const Word& word : words) {
        const wchar_t first = word.text.front();
        classes[first] = begins;
        classes[first - 32] = begins;
    }
    return classes;
}

constexpr std::array<unsigned char, 128> classes = MakeClasses();

unsigned char ClassOf(wchar_t character)
{
    return character < classes.size() ? classes[character] : static_cast<unsigned char>(inside);
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

}  // namespace

const LineAttributes* GetNoticeAttributes()
{
    return &notice;
}

const LineAttributes* ClassifyLine(const wchar_t* text, std::size_t length)
{
    const wchar_t* const end = text + std::min(length, judgedLength);
    const LineAttributes* found = nullptr;
    while (text < end) {
        const unsigned char first = ClassOf(*text);
        const wchar_t* const start = text++;
        if (first == between) {
            continue;
        }
        while (text < end && ClassOf(*text) != between) {
            ++text;
        }
        if (first != begins) {
            continue;
        }
        const LineAttributes* const judged = Judge({start, static_cast<std::size_t>(text - start)});
        if (judged == &error) {
            return judged;
        }
        found = judged ? judged : found;
    }
    return found;
}
