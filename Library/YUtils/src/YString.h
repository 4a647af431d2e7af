// YString.h: 8-bit text.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <atlstr.h>

#include <compare>
#include <string>
#include <string_view>

// A string of bytes, any of which may be NUL. The library gives them no code page; the framework's
// string is converted from and to the system's, where characters that it lacks become its
// replacement character. Sensitive text is kept as YUnicodeString keeps it: overwritten before its
// memory is given back, copies included, but not what is made of it in another type. Comparison is
// by byte. One thread at a time.
class COMMONUI_API YString
{
public:
    YString() = default;
    YString(const char* initial,  // null: empty
            Str::SensitiveState state = Str::NotSensitive);
    YString(const char* initial, unsigned length,  // bytes
            Str::SensitiveState state = Str::NotSensitive);
    YString(const CString& initial, Str::SensitiveState state = Str::NotSensitive);
    explicit YString(std::string_view initial, Str::SensitiveState state = Str::NotSensitive);
    explicit YString(Str::SensitiveState state) noexcept;
    YString(const YString& other);
    YString(YString&& other) noexcept;  // other: empty
    ~YString();

    // The state follows the text, except that text assigned to a sensitive string stays sensitive.
    YString& operator=(const YString& other);
    YString& operator=(YString&& other) noexcept;
    YString& operator=(const char* next);

    const char* c_str() const noexcept { return text.c_str(); }  // until the next change
    unsigned GetLength() const noexcept { return static_cast<unsigned>(text.size()); }  // bytes
    bool IsEmpty() const noexcept { return text.empty(); }
    bool IsSensitive() const noexcept { return sensitive; }
    char operator[](unsigned index) const { return text[index]; }  // index GetLength(): NUL
    operator std::string_view() const noexcept { return text; }
    operator CString() const;

    void Clear() noexcept;
    void Append(std::string_view more);
    YString& operator+=(const YString& more);  // sensitive when either is
    YString& operator+=(const char* more);
    YString& operator+=(char more);

    friend bool operator==(const YString& left, const YString& right) noexcept
    {
        return left.text == right.text;
    }
    friend std::strong_ordering operator<=>(const YString& left, const YString& right) noexcept
    {
        return left.text <=> right.text;
    }
    // Literals have their own: CString, to which text converts, takes them as well.
    friend bool operator==(const YString& left, const char* right) noexcept
    {
        return left.text == right;
    }
    friend std::strong_ordering operator<=>(const YString& left, const char* right) noexcept
    {
        return left.text <=> right;
    }
    friend YString operator+(YString left, const YString& right)
    {
        left += right;
        return left;
    }
    friend YString operator+(YString left, const char* right)
    {
        left += right;
        return left;
    }

private:
    void Assign(std::string_view next);

    std::string text;  // while sensitive its block is left only through WipeText
    bool sensitive = false;
};
