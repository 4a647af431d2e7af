// YUnicodeString.h: UTF-16 text, and how text that must not linger is kept.
#pragma once

#include "CommonUiApi.h"

#include <atlstr.h>

#include <compare>
#include <exception>
#include <string>
#include <string_view>

namespace Str {

// Sensitive: a password or the like, wiped from memory as soon as it is not needed.
enum SensitiveState { NotSensitive, Sensitive };

}  // namespace Str

// Bytes that are not UTF-8.
class COMMONUI_API IllegalSequence : public std::exception
{
public:
    IllegalSequence() = default;
    IllegalSequence(const IllegalSequence&) = default;
    IllegalSequence& operator=(const IllegalSequence&) = default;
    ~IllegalSequence() override;
};

// A UTF-16 string; it may hold NUL characters. Sensitive text is overwritten before its memory is
// given back: on destruction, on assignment and when it moves to a larger block. Whatever gets a
// copy by assignment or construction is sensitive as well; what is made of it in another type
// (CString, bytes) is not. Comparison is by UTF-16 unit. One thread at a time.
class COMMONUI_API YUnicodeString
{
public:
    YUnicodeString() = default;
    YUnicodeString(const wchar_t* initial,  // null: empty
                   Str::SensitiveState state = Str::NotSensitive);
    YUnicodeString(const wchar_t* initial, unsigned length,  // UTF-16 units
                   Str::SensitiveState state = Str::NotSensitive);
    YUnicodeString(const CString& initial, Str::SensitiveState state = Str::NotSensitive);
    explicit YUnicodeString(std::wstring_view initial,
                            Str::SensitiveState state = Str::NotSensitive);
    explicit YUnicodeString(Str::SensitiveState state) noexcept;
    YUnicodeString(const YUnicodeString& other);
    YUnicodeString(YUnicodeString&& other) noexcept;  // other: empty
    ~YUnicodeString();

    // The state follows the text, except that text assigned to a sensitive string stays sensitive.
    YUnicodeString& operator=(const YUnicodeString& other);
    YUnicodeString& operator=(YUnicodeString&& other) noexcept;
    YUnicodeString& operator=(const wchar_t* next);

    // 8-bit text of a code page (the system's unless told). Bytes that the code page does not know
    // become its replacement character.
    static YUnicodeString FromBytes(std::string_view bytes, unsigned codePage = CP_ACP,
                                    Str::SensitiveState state = Str::NotSensitive);
    std::string ToBytes(unsigned codePage = CP_ACP) const;
    // UTF-8, strictly. Throws IllegalSequence for a bad lead byte, a bad or missing continuation
    // byte (one that makes a longer form than needed or half of a pair, too) and for what lies past
    // 0x10FFFF.
    static YUnicodeString FromUtf8(std::string_view bytes,
                                   Str::SensitiveState state = Str::NotSensitive);

    const wchar_t* c_str() const noexcept { return text.c_str(); }  // until the next change
    unsigned GetLength() const noexcept { return static_cast<unsigned>(text.size()); }  // units
    bool IsEmpty() const noexcept { return text.empty(); }
    bool IsSensitive() const noexcept { return sensitive; }
    wchar_t operator[](unsigned index) const { return text[index]; }  // index GetLength(): NUL
    operator std::wstring_view() const noexcept { return text; }
    operator CString() const;

    void Clear() noexcept;
    void Append(std::wstring_view more);
    YUnicodeString& operator+=(const YUnicodeString& more);  // sensitive when either is
    YUnicodeString& operator+=(const wchar_t* more);
    YUnicodeString& operator+=(wchar_t more);

    friend bool operator==(const YUnicodeString& left, const YUnicodeString& right) noexcept
    {
        return left.text == right.text;
    }
    friend std::strong_ordering operator<=>(const YUnicodeString& left,
                                            const YUnicodeString& right) noexcept
    {
        return left.text <=> right.text;
    }
    // Literals have their own: CString, to which text converts, takes them as well.
    friend bool operator==(const YUnicodeString& left, const wchar_t* right) noexcept
    {
        return left.text == right;
    }
    friend std::strong_ordering operator<=>(const YUnicodeString& left,
                                            const wchar_t* right) noexcept
    {
        return left.text <=> right;
    }
    friend YUnicodeString operator+(YUnicodeString left, const YUnicodeString& right)
    {
        left += right;
        return left;
    }
    friend YUnicodeString operator+(YUnicodeString left, const wchar_t* right)
    {
        left += right;
        return left;
    }

private:
    void Assign(std::wstring_view next);
    void Wipe() noexcept;  // overwrites the whole block and leaves the string empty

    std::wstring text;  // while sensitive its block is left only through Wipe
    bool sensitive = false;
};
