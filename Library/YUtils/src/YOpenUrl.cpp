#include "YOpenUrl.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <string_view>

namespace {

constexpr std::wstring_view openedSchemes[] = {L"http:", L"https:", L"ftp:", L"mailto:"};

bool HasScheme(std::wstring_view url, std::wstring_view scheme)
{
    const int length = static_cast<int>(scheme.size());
    return url.size() > scheme.size() &&
           ::CompareStringOrdinal(url.data(), length, scheme.data(), length, TRUE) == CSTR_EQUAL;
}

bool IsOpened(std::wstring_view url)
{
    return std::any_of(std::begin(openedSchemes), std::end(openedSchemes),
                       [url](std::wstring_view scheme) { return HasScheme(url, scheme); }) &&
           std::none_of(url.begin(), url.end(), [](wchar_t character) {
               return character <= L' ' || character == L'"' || character == 0x7F;
           });
}

}  // namespace

bool OpenURLWithoutConfig(const YUnicodeString& url)
{
    if (!IsOpened(url)) {
        return false;
    }
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    info.hwnd = ::GetActiveWindow();  // what the system has to say, it says over this one
    info.lpVerb = L"open";
    info.lpFile = url.c_str();
    info.nShow = SW_SHOWNORMAL;
    return ::ShellExecuteExW(&info) != FALSE;
}
