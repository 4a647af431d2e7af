// Another program that reads the clipboard: ends with 0 when its text is the one argument, else with
// a number that says how far it came.

#include <windows.h>

#include <shellapi.h>

#include <cwchar>

int main()
{
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    const HWND window = ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                          nullptr, nullptr);
    if (count != 2 || !::OpenClipboard(window)) {
        return 1;
    }
    const HANDLE block = ::GetClipboardData(CF_UNICODETEXT);
    if (!block) {
        return 2;
    }
    return std::wcscmp(static_cast<const wchar_t*>(::GlobalLock(block)), arguments[1]) == 0 ? 0 : 3;
}
