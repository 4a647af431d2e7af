#include "YLongPath.h"

namespace {

constexpr std::wstring_view longPrefix = L"\\\\?\\";
constexpr std::wstring_view networkPrefix = L"\\\\?\\UNC\\";
constexpr std::wstring_view devicePrefix = L"\\\\.\\";
constexpr std::wstring_view twoBackslashes = L"\\\\";
constexpr std::size_t shortest = 4;  // a drive's root has three characters

YUnicodeString Join(std::wstring_view prefix, std::wstring_view path)
{
    YUnicodeString joined(prefix);
    joined.Append(path);
    return joined;
}

}  // namespace

YUnicodeString YAddLongPathPrefix(const wchar_t* given)
{
    const std::wstring_view path = given;
    if (path.size() < shortest || path.starts_with(longPrefix) || path.starts_with(devicePrefix)) {
        return {};
    }
    if (path.starts_with(twoBackslashes)) {
        return Join(networkPrefix, path.substr(twoBackslashes.size()));
    }
    return YStartsWithDrive(path) && path[2] == L'\\' ? Join(longPrefix, path) : YUnicodeString();
}

std::wstring YGetFullPath(const wchar_t* path)
{
    std::wstring full;
    DWORD length = ::GetFullPathNameW(path, 0, nullptr, nullptr);
    while (length > full.size()) {  // with the terminator then, else without
        full.resize(length);
        length = ::GetFullPathNameW(path, length, full.data(), nullptr);
    }
    full.resize(length);
    return full;
}
