#include "ConsoleChoices.h"

#include <YFormatMessage.h>
#include <afxwin.h>

#include <cstdlib>
#include <cwchar>

namespace {

constexpr int tenthsPerInch = 720;  // of points

int GetSystemResolution()
{
    const CClientDC screen(nullptr);
    return screen.GetDeviceCaps(LOGPIXELSY);
}

}  // namespace

bool ParseFont(const std::wstring& stored, LOGFONT& chosen)
{
    const wchar_t* text = stored.c_str();
    long numbers[3] = {};
    for (long& number : numbers) {
        wchar_t* end = nullptr;
        number = std::wcstol(text, &end, 10);
        if (end == text) {
            return false;
        }
        text = end;
    }
    const std::size_t length = *text == L' ' ? std::wcslen(++text) : 0;
    if (length == 0 || length >= LF_FACESIZE || numbers[0] < 10 || numbers[0] > 10'000 ||
        numbers[1] < 0 || numbers[1] > 1000) {
        return false;
    }
    chosen = {};
    chosen.lfHeight = -::MulDiv(numbers[0], GetSystemResolution(), tenthsPerInch);
    chosen.lfWeight = numbers[1];
    chosen.lfItalic = numbers[2] != 0;
    chosen.lfCharSet = DEFAULT_CHARSET;
    std::wcscpy(chosen.lfFaceName, text);
    return true;
}

std::wstring FormatFont(const LOGFONT& chosen)
{
    const int tenths = ::MulDiv(std::abs(chosen.lfHeight), tenthsPerInch, GetSystemResolution());
    return YFormatText(L"%1!d! %2!d! %3!d! %4", tenths, chosen.lfWeight, chosen.lfItalic ? 1 : 0,
                       chosen.lfFaceName);
}

LineColors GetShownColors(const ConsoleChoices& choices)
{
    LineColors shown = choices.colors;
    if (!choices.colorsLines) {
        shown[static_cast<std::size_t>(LineSeverity::Warning)] = CLR_INVALID;
        shown[static_cast<std::size_t>(LineSeverity::Error)] = CLR_INVALID;
    }
    return shown;
}
