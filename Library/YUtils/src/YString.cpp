#include "YString.h"

#include "SensitiveText.h"

#include <windows.h>

namespace {

std::string_view ViewOf(const char* text)
{
    return text ? std::string_view(text) : std::string_view();
}

}  // namespace

YString::YString(const char* initial, Str::SensitiveState state) : YString(ViewOf(initial), state)
{}

YString::YString(const char* initial, unsigned length, Str::SensitiveState state)
    : YString(std::string_view(initial, length), state)
{}

YString::YString(const CString& initial, Str::SensitiveState state) : YString(state)
{
    const wchar_t* const characters = initial;
    const int length = initial.GetLength();
    const int bytes =
        ::WideCharToMultiByte(CP_ACP, 0, characters, length, nullptr, 0, nullptr, nullptr);
    text.resize(static_cast<std::size_t>(bytes));
    ::WideCharToMultiByte(CP_ACP, 0, characters, length, text.data(), bytes, nullptr, nullptr);
}

YString::YString(std::string_view initial, Str::SensitiveState state)
    : text(initial), sensitive(state == Str::Sensitive)
{}

YString::YString(Str::SensitiveState state) noexcept : sensitive(state == Str::Sensitive) {}

YString::YString(const YString& other) = default;

// A short text lives inside the string object, where the move leaves it behind: wiped there, too.
YString::YString(YString&& other) noexcept : text(std::move(other.text)), sensitive(other.sensitive)
{
    other.Clear();
}

YString::~YString()
{
    Clear();
}

YString& YString::operator=(const YString& other)
{
    if (this != &other) {
        sensitive = sensitive || other.sensitive;
        Assign(other.text);
    }
    return *this;
}

YString& YString::operator=(YString&& other) noexcept
{
    if (this != &other) {
        Clear();
        sensitive = sensitive || other.sensitive;
        text = std::move(other.text);
        other.Clear();
    }
    return *this;
}

YString& YString::operator=(const char* next)
{
    Assign(ViewOf(next));
    return *this;
}

YString::operator CString() const
{
    return CString(text.data(), static_cast<int>(text.size()));
}

void YString::Clear() noexcept
{
    if (sensitive) {
        WipeText(text);
    } else {
        text.clear();
    }
}

void YString::Append(std::string_view more)
{
    if (sensitive) {
        AppendSensitiveText(text, more);
    } else {
        text.append(more);
    }
}

YString& YString::operator+=(const YString& more)
{
    sensitive = sensitive || more.sensitive;
    Append(more.text);
    return *this;
}

YString& YString::operator+=(const char* more)
{
    Append(ViewOf(more));
    return *this;
}

YString& YString::operator+=(char more)
{
    Append(std::string_view(&more, 1));
    return *this;
}

void YString::Assign(std::string_view next)
{
    if (sensitive) {
        AssignSensitiveText(text, next);
    } else {
        text.assign(next);
    }
}
