// Another program that puts a text on the clipboard and ends: ClipboardWriter FORMAT TEXT. In CF_TEXT
// it is in the system's code page, in every other format UTF-16. Ends with 0 when it is there.

#include <windows.h>

#include <shellapi.h>

#include <cstring>
#include <cwchar>

int main()
{
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    const HWND window = ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                          nullptr, nullptr);
    if (count != 3 || !::OpenClipboard(window)) {
        return 1;
    }
    const UINT format = static_cast<UINT>(std::wcstoul(arguments[1], nullptr, 10));
    const int units = static_cast<int>(std::wcslen(arguments[2])) + 1;
    const HGLOBAL block =
        ::GlobalAlloc(GMEM_MOVEABLE, static_cast<SIZE_T>(units) * sizeof(wchar_t));
    void* const bytes = ::GlobalLock(block);
    if (format == CF_TEXT) {
        ::WideCharToMultiByte(CP_ACP, 0, arguments[2], units, static_cast<char*>(bytes), units,
                              nullptr, nullptr);
    } else {
        std::wmemcpy(static_cast<wchar_t*>(bytes), arguments[2], static_cast<std::size_t>(units));
    }
    ::GlobalUnlock(block);
    ::EmptyClipboard();
    const bool isThere = ::SetClipboardData(format, block) != nullptr;
    return ::CloseClipboard() && isThere ? 0 : 2;
}
