#include "YUnicodeString.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>

namespace {

// Overwrites the whole block, not just the characters in use: the rest holds what stood there
// before. Growing to the capacity does not reallocate.
void WipeBlock(std::wstring& text) noexcept
{
    text.resize(text.capacity());
    ::SecureZeroMemory(text.data(), text.size() * sizeof(wchar_t));
    text.clear();
}

int CheckedLength(std::size_t length)
{
    if (length > static_cast<std::size_t>(MAXINT)) {
        throw std::length_error("YUnicodeString: text too long to convert");
    }
    return static_cast<int>(length);
}

std::wstring_view ViewOf(const wchar_t* text)
{
    return text ? std::wstring_view(text) : std::wstring_view();
}

}  // namespace

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
    if (!sensitive || more.size() <= text.capacity() - text.size()) {
        text.append(more);
        return;
    }
    // Growing in place would leave the old block behind unwiped.
    std::wstring grown;
    grown.reserve(std::max(text.size() + more.size(), text.capacity() * 2));
    grown.append(text).append(more);
    Wipe();
    text = std::move(grown);
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

// The new text may be part of the old: it is copied before the old is wiped.
void YUnicodeString::Assign(std::wstring_view next)
{
    if (!sensitive) {
        text.assign(next);
        return;
    }
    std::wstring replaced(next);
    Wipe();
    text.swap(replaced);
    WipeBlock(replaced);
}

void YUnicodeString::Wipe() noexcept
{
    WipeBlock(text);
}
