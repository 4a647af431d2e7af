#include "SystemText.h"

std::wstring GetSystemText(DWORD error)
{
    wchar_t text[512] = L"";
    DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                         0, text, static_cast<DWORD>(std::size(text)), nullptr);
    while (length > 0 && text[length - 1] <= L' ') {
        --length;
    }
    return length > 0 ? std::wstring(text, length) : L"Error " + std::to_wstring(error);
}

std::wstring FormatNumber(unsigned number)
{
    std::wstring text = std::to_wstring(number);
    for (std::size_t i = text.size(); i > 3; i -= 3) {
        text.insert(i - 3, 1, L',');
    }
    return text;
}

std::wstring FormatCount(unsigned count, const wchar_t* one)
{
    return FormatNumber(count) + L" " + one + (count == 1 ? L"" : L"s");
}
