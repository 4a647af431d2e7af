#include "YRegistryKey.h"

#include "YSecurityDescriptor.h"

#include <algorithm>
#include <cwchar>
#include <initializer_list>
#include <string_view>

#include <winternl.h>

// The system has it, its headers do not.
extern "C" NTSTATUS NTAPI NtDeleteKey(HANDLE KeyHandle);

namespace {

constexpr DWORD firstNameLength = 32;  // UTF-16 units; few keys have longer names

// What a value held at one moment.
struct Value
{
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
};

LSTATUS Open(HKEY parent, const wchar_t* path, DWORD options, REGSAM access,
             YUniqueRegistryHandle& key)
{
    HKEY opened = nullptr;
    const LSTATUS status = ::RegOpenKeyExW(parent, path, options, access, &opened);
    key.Reset(status == ERROR_SUCCESS ? opened : nullptr);
    return status;
}

LSTATUS CheckType(DWORD type, std::initializer_list<DWORD> accepted)
{
    const bool isAccepted = std::find(accepted.begin(), accepted.end(), type) != accepted.end();
    return isAccepted ? ERROR_SUCCESS : ERROR_DATATYPE_MISMATCH;
}

// Another process may make the value longer, or another type, between two looks at it.
LSTATUS ReadValue(HKEY key, const wchar_t* name, std::initializer_list<DWORD> accepted,
                  Value& value)
{
    DWORD size = 0;
    LSTATUS status = ::RegQueryValueExW(key, name, nullptr, &value.type, nullptr, &size);
    if (status == ERROR_SUCCESS) {
        status = CheckType(value.type, accepted);
    }
    while (status == ERROR_SUCCESS) {
        value.bytes.resize(std::max<DWORD>(size, 1));  // without room the size is asked for
        size = static_cast<DWORD>(value.bytes.size());
        status = ::RegQueryValueExW(key, name, nullptr, &value.type, value.bytes.data(), &size);
        if (status == ERROR_SUCCESS) {
            value.bytes.resize(size);
            return CheckType(value.type, accepted);
        }
        if (status == ERROR_MORE_DATA) {
            status = CheckType(value.type, accepted);
        }
    }
    return status;
}

// Half a character at the end is none.
std::wstring_view GetCharacters(const std::vector<BYTE>& bytes)
{
    return {reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t)};
}

std::vector<YUnicodeString> SplitStrings(std::wstring_view characters)
{
    std::vector<YUnicodeString> list;
    while (!characters.empty()) {
        const std::wstring_view string = characters.substr(0, characters.find(L'\0'));
        if (!string.empty()) {
            list.emplace_back(string);
        }
        characters.remove_prefix(std::min(string.size() + 1, characters.size()));
    }
    return list;
}

// The environment may grow between two calls, too.
LSTATUS Expand(std::wstring& text)
{
    std::wstring expanded;
    DWORD length = ::ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);  // with the terminator
    while (length > expanded.size()) {
        expanded.resize(length);
        length = ::ExpandEnvironmentStringsW(text.c_str(), expanded.data(), length);
    }
    if (length == 0) {
        return static_cast<LSTATUS>(::GetLastError());
    }
    expanded.resize(length - 1);
    text = std::move(expanded);
    return ERROR_SUCCESS;
}

bool IsNumber(DWORD type, DWORD size)
{
    return type == REG_DWORD && size == sizeof(DWORD);
}

// Without a name, the key itself would be meant.
bool NamesKey(const wchar_t* path)
{
    return path && path[std::wcsspn(path, L"\\")] != L'\0';
}

LSTATUS GetSubKeyName(HKEY key, DWORD index, std::wstring& name)
{
    LSTATUS status = ERROR_MORE_DATA;
    for (DWORD room = firstNameLength; status == ERROR_MORE_DATA; room *= 2) {
        DWORD length = room;
        name.resize(room);
        status =
            ::RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_SUCCESS) {
            name.resize(length);
        }
    }
    return status;
}

LSTATUS DeleteTree(HKEY parent, const wchar_t* name);

// From the last on, so that those still to come keep their index. After a failure the rest is only
// walked over: the first failure is the one that is told.
LSTATUS DeleteSubKeys(HKEY key)
{
    DWORD count = 0;
    LSTATUS result = ::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &count, nullptr, nullptr,
                                        nullptr, nullptr, nullptr, nullptr, nullptr);
    std::wstring name;
    while (count-- > 0) {
        const LSTATUS status = GetSubKeyName(key, count, name);
        if (result == ERROR_SUCCESS) {
            result = status == ERROR_SUCCESS ? DeleteTree(key, name.c_str()) : status;
        }
    }
    return result;
}

bool IsLink(HKEY key)
{
    DWORD type = REG_NONE;
    return ::RegQueryValueExW(key, L"SymbolicLinkValue", nullptr, &type, nullptr, nullptr) ==
               ERROR_SUCCESS &&
           type == REG_LINK;
}

// RegDeleteKeyW would delete what the link points to.
LSTATUS DeleteLink(HKEY parent, const wchar_t* name)
{
    YUniqueRegistryHandle link;
    const LSTATUS status = Open(parent, name, REG_OPTION_OPEN_LINK, DELETE, link);
    return status == ERROR_SUCCESS
               ? static_cast<LSTATUS>(::RtlNtStatusToDosError(::NtDeleteKey(link.Get())))
               : status;
}

// Opened as a link, so that nothing outside the tree is searched.
LSTATUS DeleteTree(HKEY parent, const wchar_t* name)
{
    YUniqueRegistryHandle key;
    LSTATUS status =
        Open(parent, name, REG_OPTION_OPEN_LINK, KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS, key);
    if (status == ERROR_SUCCESS) {
        status = DeleteSubKeys(key.Get());
    }
    if (status != ERROR_SUCCESS) {
        return status;
    }
    const bool isLink = IsLink(key.Get());
    key.Reset();
    return isLink ? DeleteLink(parent, name) : ::RegDeleteKeyW(parent, name);
}

}  // namespace

YRegistryKey::YRegistryKey(HKEY rootKey, const wchar_t* keyPath, REGSAM requested, DWORD options,
                           SECURITY_ATTRIBUTES* security, bool create)
    : root(rootKey), path(keyPath ? keyPath : L""), access(requested)
{
    if (!create) {
        SetResult(Open(root, path.c_str(), 0, access, key));
        return;
    }
    HKEY created = nullptr;
    if (SetResult(::RegCreateKeyExW(root, path.c_str(), 0, nullptr, options, access, security,
                                    &created, &disposition))) {
        key.Reset(created);
    }
}

YRegistryKey::~YRegistryKey() = default;

bool YRegistryKey::ReadSecurity(const wchar_t* name, YSecurityDescriptor& security)
{
    std::vector<YUnicodeString> strings;
    if (ReadMultiString(name, strings) && security.SetStrings(strings)) {
        return true;
    }
    std::vector<BYTE> bytes;
    return ReadBinary(name, bytes) && (security.SetBytes(bytes.data(), bytes.size()) ||
                                       SetResult(static_cast<LSTATUS>(::GetLastError())));
}

bool YRegistryKey::ReadMultiString(const wchar_t* name, std::vector<YUnicodeString>& list)
{
    Value value;
    if (!key || !SetResult(ReadValue(key.Get(), name, {REG_MULTI_SZ}, value))) {
        return false;
    }
    list = SplitStrings(GetCharacters(value.bytes));
    return true;
}

bool YRegistryKey::ReadBinary(const wchar_t* name, std::vector<BYTE>& data)
{
    Value value;
    if (!key || !SetResult(ReadValue(key.Get(), name, {REG_BINARY}, value))) {
        return false;
    }
    data = std::move(value.bytes);
    return true;
}

bool YRegistryKey::ReadString(const wchar_t* name, YUnicodeString& text)
{
    Value value;
    if (!key || !SetResult(ReadValue(key.Get(), name, {REG_SZ, REG_EXPAND_SZ}, value))) {
        return false;
    }
    const std::wstring_view characters = GetCharacters(value.bytes);
    std::wstring read(characters.substr(0, characters.find(L'\0')));
    if (value.type == REG_EXPAND_SZ && !SetResult(Expand(read))) {
        return false;
    }
    text = YUnicodeString(read);
    return true;
}

// Read often, hence without a block of memory: two calls into the registry and no more.
bool YRegistryKey::ReadDWORD(const wchar_t* name, DWORD& value)
{
    if (!key) {
        return false;
    }
    DWORD type = REG_NONE;
    DWORD size = 0;
    DWORD read = 0;
    LSTATUS status = ::RegQueryValueExW(key.Get(), name, nullptr, &type, nullptr, &size);
    if (status == ERROR_SUCCESS && IsNumber(type, size)) {
        status = ::RegQueryValueExW(key.Get(), name, nullptr, &type, reinterpret_cast<BYTE*>(&read),
                                    &size);
    }
    if (status == ERROR_MORE_DATA || (status == ERROR_SUCCESS && !IsNumber(type, size))) {
        status = ERROR_DATATYPE_MISMATCH;
    }
    if (!SetResult(status)) {
        return false;
    }
    value = read;
    return true;
}

bool YRegistryKey::WriteSecurity(const wchar_t* name, const YSecurityDescriptor& security)
{
    if (!key) {
        return false;
    }
    const YUniqueLocalMemory copy(security.Copy());
    if (!copy) {
        return SetResult(static_cast<LSTATUS>(::GetLastError()));
    }
    return WriteBinary(name, copy.Get(), ::GetSecurityDescriptorLength(copy.Get()));
}

bool YRegistryKey::WriteMultiString(const wchar_t* name, const std::vector<YUnicodeString>& list)
{
    std::wstring strings;
    for (const YUnicodeString& string : list) {
        if (*string.c_str() != L'\0') {
            strings.append(string.c_str()).push_back(L'\0');
        }
    }
    strings.push_back(L'\0');
    return Write(name, REG_MULTI_SZ, strings.data(), strings.size() * sizeof(wchar_t));
}

bool YRegistryKey::WriteBinary(const wchar_t* name, const void* data, DWORD size)
{
    return Write(name, REG_BINARY, data, size);
}

bool YRegistryKey::WriteString(const wchar_t* name, const YUnicodeString& text)
{
    return Write(name, REG_SZ, text.c_str(), (text.GetLength() + 1) * sizeof(wchar_t));
}

bool YRegistryKey::WriteDWORD(const wchar_t* name, DWORD value)
{
    return Write(name, REG_DWORD, &value, sizeof(value));
}

bool YRegistryKey::DeleteValue(const wchar_t* name)
{
    return key && SetResult(::RegDeleteValueW(key.Get(), name));
}

bool YRegistryKey::DeleteKey(const wchar_t* subKey)
{
    return key && SetResult(NamesKey(subKey) ? DeleteTree(key.Get(), subKey)
                                             : static_cast<LSTATUS>(ERROR_INVALID_PARAMETER));
}

// By the path from the root: this key may have been opened without the right to look below it.
bool YRegistryKey::SubKeyExists(const wchar_t* name)
{
    if (!key) {
        return false;
    }
    const std::wstring below = name ? name : L"";
    const std::wstring subKey = path.empty() ? below : path + L"\\" + below;
    YUniqueRegistryHandle opened;
    return SetResult(Open(root, subKey.c_str(), 0, KEY_READ, opened));
}

bool YRegistryKey::IsWritable() const
{
    constexpr REGSAM writing = KEY_SET_VALUE | KEY_CREATE_SUB_KEY;
    return key && (access & writing) == writing;
}

bool YRegistryKey::SetKeySecurity(const YSecurityDescriptor* security)
{
    if (!key || !security) {
        return key && SetResult(ERROR_SUCCESS);
    }
    if (!security->IsValid()) {
        return SetResult(ERROR_INVALID_SECURITY_DESCR);
    }
    YUniqueRegistryHandle own;
    return SetResult(Open(root, path.c_str(), 0, WRITE_DAC, own)) &&
           SetResult(::RegSetKeySecurity(own.Get(), DACL_SECURITY_INFORMATION, security->Get()));
}

const YReportMessageParams& YRegistryKey::GetLastResult() const
{
    return lastResult;
}

bool YRegistryKey::SetResult(LSTATUS status)
{
    lastResult.SetErrorCode(static_cast<unsigned>(status));
    return status == ERROR_SUCCESS;
}

bool YRegistryKey::Write(const wchar_t* name, DWORD type, const void* data, std::size_t size)
{
    return key &&
           SetResult(::RegSetValueExW(key.Get(), name, 0, type, static_cast<const BYTE*>(data),
                                      static_cast<DWORD>(size)));
}
