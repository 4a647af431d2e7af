#include "KeyNames.h"

#include "ProfileTree.h"

#include <windows.h>

#include <cstdio>

namespace {

constexpr std::wstring_view extension = L".ini";
// 255 is the most that file systems take; our other files have longer extensions.
constexpr std::size_t maxFileName = 240;

bool IsSame(std::wstring_view left, std::wstring_view right)
{
    return !NameLess()(left, right) && !NameLess()(right, left);
}

void AppendEncoded(std::wstring& out, wchar_t unit)
{
    wchar_t code[8];
    std::swprintf(code, std::size(code), unit < 0x100 ? L"%%%02x" : L"%%u%04x", unit);
    out += code;
}

bool IsFileCharacter(wchar_t unit)
{
    return unit >= L' ' && !IS_HIGH_SURROGATE(unit) && !IS_LOW_SURROGATE(unit) &&
           std::wstring_view(L"<>:\"/\\|?*%~").find(unit) == std::wstring_view::npos;
}

// Device names stay device names with whatever follows a dot.
bool IsDevice(std::wstring_view name)
{
    name = name.substr(0, name.find(L'.'));
    name = name.substr(0, name.find_last_not_of(L' ') + 1);
    for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"}) {
        if (IsSame(name, device)) {
            return true;
        }
    }
    constexpr std::wstring_view numbers = L"0123456789\u00B9\u00B2\u00B3";
    return name.size() == 4 && numbers.find(name[3]) != std::wstring_view::npos &&
           (IsSame(name.substr(0, 3), L"COM") || IsSame(name.substr(0, 3), L"LPT"));
}

// unit: of the encoded form of a character, at a percent sign; left behind it.
std::optional<wchar_t> Decode(std::wstring_view text, std::size_t& at)
{
    const bool isWide = text.substr(at).starts_with(L"%u");
    const std::size_t start = at + (isWide ? 2 : 1);
    const std::size_t digits = isWide ? 4 : 2;
    const std::wstring code(text.substr(std::min(start, text.size()), digits));
    wchar_t* end = nullptr;
    const unsigned long unit = std::wcstoul(code.c_str(), &end, 16);
    if (code.size() != digits || *end || unit == 0) {
        return {};
    }
    at = start + digits;
    return static_cast<wchar_t>(unit);
}

std::optional<std::wstring> DecodeAll(std::wstring_view text)
{
    std::wstring name;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] != L'%') {
            name += text[i++];
        } else if (const std::optional<wchar_t> unit = Decode(text, i)) {
            name += *unit;
        } else {
            return {};
        }
    }
    return name;
}

}  // namespace

std::optional<std::wstring> GetKeyFileName(std::wstring_view key)
{
    const bool isTaken = IsDevice(key) || IsSame(std::wstring(key).append(extension), rootFileName);
    std::wstring name;
    for (std::size_t i = 0; i < key.size(); ++i) {
        const bool isFirst = i == 0;
        const bool isLast = i + 1 == key.size();
        const bool isEdge = (isLast && (key[i] == L'.' || key[i] == L' ')) ||
                            (isFirst && (key[i] == L' ' || isTaken));
        if (isEdge || !IsFileCharacter(key[i])) {
            AppendEncoded(name, key[i]);
        } else {
            name += key[i];
        }
    }
    name += extension;
    return name.size() <= maxFileName ? std::optional(name) : std::nullopt;
}

// What is not encoded as we would do it was not made by us: two files would be one key.
std::optional<std::wstring> GetFileKeyName(std::wstring_view file)
{
    if (file.size() <= extension.size() ||
        !IsSame(file.substr(file.size() - extension.size()), extension)) {
        return {};
    }
    std::optional<std::wstring> key = DecodeAll(file.substr(0, file.size() - extension.size()));
    const std::optional<std::wstring> own = key ? GetKeyFileName(*key) : key;
    return own && IsSame(*own, file) ? key : std::nullopt;
}

std::wstring GetRegistryName(std::wstring_view key)
{
    std::wstring name;
    for (const wchar_t unit : key) {
        if (unit == L'\\' || unit == L'%') {
            AppendEncoded(name, unit);
        } else {
            name += unit;
        }
    }
    return name;
}

std::wstring GetKeyName(std::wstring_view registryName)
{
    return DecodeAll(registryName).value_or(std::wstring(registryName));
}
