#include "YUnicodeString.h"

#include "SensitiveText.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>

namespace {

int CheckedLength(std::size_t length)
{
    if (length > static_cast<std::size_t>(MAXINT)) {
        throw std::length_error("YUnicodeString: text too long to convert");
    }
    return static_cast<int>(length);
}

// The length of a sequence and the range of its second byte, by its lead byte. The range is what
// keeps out longer forms than needed, halves of pairs, and what lies past the last code point.
struct Lead
{
    unsigned last;  // lead bytes up to this one, from the row above on
    unsigned continuations;
    unsigned char low;
    unsigned char high;
};
constexpr Lead leads[] = {
    {0xDF, 1, 0x80, 0xBF}, {0xE0, 2, 0xA0, 0xBF}, {0xEC, 2, 0x80, 0xBF}, {0xED, 2, 0x80, 0x9F},
    {0xEF, 2, 0x80, 0xBF}, {0xF0, 3, 0x90, 0xBF}, {0xF3, 3, 0x80, 0xBF}, {0xF4, 3, 0x80, 0x8F},
};

// Takes one character from the front of the bytes.
char32_t TakeCharacter(std::string_view& bytes)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned first = byteAt(0);
    if (first < 0x80) {
        bytes.remove_prefix(1);
        return first;
    }
    const Lead* const lead =
        std::find_if(std::begin(leads), std::end(leads),
                     [&](const Lead& candidate) { return first <= candidate.last; });
    if (first < 0xC2 || lead == std::end(leads) || bytes.size() <= lead->continuations ||
        byteAt(1) < lead->low || byteAt(1) > lead->high) {
        throw IllegalSequence();
    }
    char32_t character = first & (0x3Fu >> lead->continuations);
    for (std::size_t i = 1; i <= lead->continuations; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) {
            throw IllegalSequence();
        }
        character = character << 6 | (byteAt(i) & 0x3F);
    }
    bytes.remove_prefix(lead->continuations + 1);
    return character;
}

std::wstring_view ViewOf(const wchar_t* text)
{
    return text ? std::wstring_view(text) : std::wstring_view();
}

}  // namespace

IllegalSequence::~IllegalSequence() = default;

YUnicodeString::YUnicodeString(const wchar_t* initial, Str::SensitiveState state)
    : YUnicodeString(ViewOf(initial), state)
{}

YUnicodeString::YUnicodeString(const wchar_t* initial, unsigned length, Str::SensitiveState state)
    : YUnicodeString(std::wstring_view(initial, length), state)
{}

YUnicodeString::YUnicodeString(const CString& initial, Str::SensitiveState state)
    : YUnicodeString(std::wstring_view(static_cast<const wchar_t*>(initial),
                                       static_cast<std::size_t>(initial.GetLength())),
                     state)
{}

YUnicodeString::YUnicodeString(std::wstring_view initial, Str::SensitiveState state)
    : text(initial), sensitive(state == Str::Sensitive)
{}

YUnicodeString::YUnicodeString(Str::SensitiveState state) noexcept
    : sensitive(state == Str::Sensitive)
{}

YUnicodeString::YUnicodeString(const YUnicodeString& other) = default;

// A short text lives inside the string object, where the move leaves it behind: wiped there, too.
YUnicodeString::YUnicodeString(YUnicodeString&& other) noexcept
    : text(std::move(other.text)), sensitive(other.sensitive)
{
    other.Clear();
}

YUnicodeString::~YUnicodeString()
{
    Clear();
}

YUnicodeString& YUnicodeString::operator=(const YUnicodeString& other)
{
    if (this != &other) {
        sensitive = sensitive || other.sensitive;
        Assign(other.text);
    }
    return *this;
}

YUnicodeString& YUnicodeString::operator=(YUnicodeString&& other) noexcept
{
    if (this != &other) {
        Clear();
        sensitive = sensitive || other.sensitive;
        text = std::move(other.text);
        other.Clear();
    }
    return *this;
}

YUnicodeString& YUnicodeString::operator=(const wchar_t* next)
{
    Assign(ViewOf(next));
    return *this;
}

YUnicodeString YUnicodeString::FromBytes(std::string_view bytes, unsigned codePage,
                                         Str::SensitiveState state)
{
    YUnicodeString result(state);
    if (bytes.empty()) {
        return result;
    }
    const int size = CheckedLength(bytes.size());
    const int length = ::MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
    result.text.resize(static_cast<std::size_t>(length));
    ::MultiByteToWideChar(codePage, 0, bytes.data(), size, result.text.data(), length);
    return result;
}

YUnicodeString YUnicodeString::FromUtf8(std::string_view bytes, Str::SensitiveState state)
{
    YUnicodeString result(state);
    result.text.reserve(bytes.size());  // never too little: nothing is left behind by growing
    while (!bytes.empty()) {
        const char32_t character = TakeCharacter(bytes);
        if (character < 0x10000) {
            result.text.push_back(static_cast<wchar_t>(character));
        } else {
            result.text.push_back(static_cast<wchar_t>(0xD7C0 + (character >> 10)));
            result.text.push_back(static_cast<wchar_t>(0xDC00 + (character & 0x3FF)));
        }
    }
    return result;
}

std::string YUnicodeString::ToBytes(unsigned codePage) const
{
    std::string bytes;
    if (text.empty()) {
        return bytes;
    }
    const int length = CheckedLength(text.size());
    const int size =
        ::WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(size));
    ::WideCharToMultiByte(codePage, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

YUnicodeString::operator CString() const
{
    return CString(text.data(), CheckedLength(text.size()));
}

void YUnicodeString::Clear() noexcept
{
    if (sensitive) {
        Wipe();
    } else {
        text.clear();
    }
}

void YUnicodeString::Append(std::wstring_view more)
{
    if (sensitive) {
        AppendSensitiveText(text, more);
    } else {
        text.append(more);
    }
}

YUnicodeString& YUnicodeString::operator+=(const YUnicodeString& more)
{
    sensitive = sensitive || more.sensitive;
    Append(more.text);
    return *this;
}

YUnicodeString& YUnicodeString::operator+=(const wchar_t* more)
{
    Append(ViewOf(more));
    return *this;
}

YUnicodeString& YUnicodeString::operator+=(wchar_t more)
{
    Append(std::wstring_view(&more, 1));
    return *this;
}

void YUnicodeString::Assign(std::wstring_view next)
{
    if (sensitive) {
        AssignSensitiveText(text, next);
    } else {
        text.assign(next);
    }
}

void YUnicodeString::Wipe() noexcept
{
    WipeText(text);
}
