// Another program that reads the clipboard: prints its Unicode text as UTF-8, without a terminator.

#include <windows.h>

#include <string>

int main()
{
    const HWND window = ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                          nullptr, nullptr);
    if (!::OpenClipboard(window)) {
        return 1;
    }
    const HANDLE block = ::GetClipboardData(CF_UNICODETEXT);
    const auto* text = block ? static_cast<const wchar_t*>(::GlobalLock(block)) : nullptr;
    std::string bytes;
    if (text) {
        // The size counts the terminator, which string writes itself.
        const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
        bytes.resize(static_cast<std::size_t>(size) - 1);
        ::WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
        ::GlobalUnlock(block);
    }
    ::CloseClipboard();
    DWORD written = 0;
    ::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), static_cast<DWORD>(bytes.size()),
                &written, nullptr);
    return text ? 0 : 2;
}
