#include "YPolicy.h"

#include "YRegistryKey.h"

#include <cwchar>
#include <string>
#include <string_view>

namespace {

constexpr wchar_t policyPath[] = L"Software\\Policies\\Orlith";
constexpr wchar_t globalPath[] = L"SOFTWARE\\Orlith\\Global";
constexpr std::wstring_view currentCompany = L"SOFTWARE\\Orlith\\";
constexpr std::wstring_view oldCompany = L"SOFTWARE\\Orlith Technologies\\";
constexpr std::wstring_view terminal = L"Brannock";
constexpr std::wstring_view oldTerminalVersion = L" 3.0";

bool IsGiven(const wchar_t* text)
{
    return text && *text != L'\0';
}

// Its editions have names that begin alike.
bool IsTerminal(const wchar_t* product)
{
    return ::_wcsnicmp(product, terminal.data(), terminal.size()) == 0;
}

std::wstring GetOldProductPath(const wchar_t* product)
{
    std::wstring path = std::wstring(oldCompany) + product;
    if (IsTerminal(product)) {
        path += oldTerminalVersion;
    }
    return path;
}

bool KeyExists(HKEY root, const std::wstring& path)
{
    const YRegistryKey key(root, path.c_str(), KEY_READ);
    return key.GetLastResult().GetMessageId() == ERROR_SUCCESS;
}

bool ReadFrom(HKEY root, const wchar_t* path, const wchar_t* name, DWORD& value)
{
    return YRegistryKey(root, path, KEY_QUERY_VALUE).ReadDWORD(name, value);
}

bool ReadProductDWORD(const wchar_t* name, const wchar_t* product, const wchar_t* subKey,
                      DWORD& value)
{
    const auto readBelow = [&](const std::wstring& path) {
        return ReadFrom(HKEY_LOCAL_MACHINE, (path + L"\\" + subKey).c_str(), name, value);
    };
    return readBelow(GetProductKeyPath(product).c_str()) ||
           (IsTerminal(product) && readBelow(GetOldProductPath(product)));
}

}  // namespace

bool ReadPolicyDWORD(const wchar_t* name, DWORD& value)
{
    return ReadFrom(HKEY_LOCAL_MACHINE, policyPath, name, value) ||
           ReadFrom(HKEY_CURRENT_USER, policyPath, name, value) ||
           ReadFrom(HKEY_LOCAL_MACHINE, globalPath, name, value);
}

DWORD GetPolicyDWORD(const wchar_t* name, const wchar_t* product, const wchar_t* subKey,
                     DWORD defaultValue)
{
    DWORD value = 0;
    const bool isDecided =
        ReadPolicyDWORD(name, value) ||
        (IsGiven(product) && IsGiven(subKey) && ReadProductDWORD(name, product, subKey, value));
    return isDecided ? value : defaultValue;
}

bool GetPolicyBool(const wchar_t* name, const wchar_t* product, const wchar_t* subKey,
                   bool defaultValue)
{
    return GetPolicyDWORD(name, product, subKey, defaultValue ? 1 : 0) != 0;
}

YUnicodeString GetProductKeyPath(const wchar_t* product)
{
    const std::wstring current = std::wstring(currentCompany) + product;
    const std::wstring old = GetOldProductPath(product);
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        for (const std::wstring& path : {current, old}) {
            if (KeyExists(root, path)) {
                return YUnicodeString(path);
            }
        }
    }
    return YUnicodeString(current);
}

bool YIsTlsLibraryAllowed()
{
    return !GetPolicyBool(L"Enable FIPS Mode", nullptr, nullptr, false) ||
           GetPolicyBool(L"Ignore FIPS Mode for TLS", nullptr, nullptr, false);
}
