#include "YRect.h"

#include "YFormatMessage.h"

#include <cstdint>
#include <limits>

namespace {

constexpr bool IsDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

void SkipBlanks(const wchar_t*& text)
{
    while (*text == L' ' || *text == L'\t') {
        ++text;
    }
}

// A number with the blanks round it. False: there is none, or it does not fit.
bool TakeNumber(const wchar_t*& text, int& number)
{
    SkipBlanks(text);
    const bool isNegative = *text == L'-';
    text += isNegative ? 1 : 0;
    if (!IsDigit(*text)) {
        return false;
    }
    const std::int64_t most = std::int64_t{std::numeric_limits<int>::max()} + isNegative;
    std::int64_t value = 0;
    for (; IsDigit(*text); ++text) {
        value = value * 10 + (*text - L'0');
        if (value > most) {
            return false;
        }
    }
    number = static_cast<int>(isNegative ? -value : value);
    SkipBlanks(text);
    return true;
}

}  // namespace

YRect::YRect(const wchar_t* text)
{
    Parse(text, *this);
}

bool YRect::Parse(const wchar_t* text, YRect& rect)
{
    if (!text) {
        return false;
    }
    YRect parsed;
    for (int* const side : {&parsed.bottom, &parsed.right, &parsed.top, &parsed.left}) {
        if (!TakeNumber(text, *side) || *text != (side == &parsed.left ? L'\0' : L',')) {
            return false;
        }
        ++text;  // past the end only after the last side
    }
    rect = parsed;
    return true;
}

YUnicodeString YRect::ToString() const
{
    return YUnicodeString(YFormatText(L"%1!d!, %2!d!, %3!d!, %4!d!", bottom, right, top, left));
}
