// SensitiveText.h: how text that must not linger is kept in a string.
#pragma once

#include <windows.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

// Overwrites the whole block, not just the characters in use: the rest holds what stood there
// before. Growing to the capacity does not reallocate. The string is empty then.
template <class Character>
void WipeText(std::basic_string<Character>& text) noexcept
{
    text.resize(text.capacity());
    ::SecureZeroMemory(text.data(), text.size() * sizeof(Character));
    text.clear();
}

// The new text may be part of the old: it is copied before the old is wiped.
template <class Character>
void AssignSensitiveText(std::basic_string<Character>& text,
                         std::type_identity_t<std::basic_string_view<Character>> next)
{
    std::basic_string<Character> replaced(next);
    WipeText(text);
    text.swap(replaced);
    WipeText(replaced);
}

// Growing in place would leave the old block behind unwiped.
template <class Character>
void AppendSensitiveText(std::basic_string<Character>& text,
                         std::type_identity_t<std::basic_string_view<Character>> more)
{
    if (more.size() <= text.capacity() - text.size()) {
        text.append(more);
        return;
    }
    std::basic_string<Character> grown;
    grown.reserve(std::max(text.size() + more.size(), text.capacity() * 2));
    grown.append(text).append(more);
    WipeText(text);
    text = std::move(grown);
}
