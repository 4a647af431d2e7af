#include "RegistryProfile.h"

#include "KeyNames.h"

#include <IProfile.h>
#include <IProfileKey.h>
#include <YRegistryKey.h>
#include <YReportMessageParams.h>
#include <YUnknown.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr DWORD maxKeyName = 255;  // the registry's own limits, in UTF-16 units
constexpr DWORD maxValueName = 16383;

bool Tell(YReportMessageParams& error, LSTATUS status)
{
    if (status != ERROR_SUCCESS) {
        error.SetErrorCode(static_cast<unsigned>(status));
    }
    return status == ERROR_SUCCESS;
}

LSTATUS Open(HKEY parent, const std::wstring& name, bool create, YUniqueRegistryHandle& key)
{
    HKEY opened = nullptr;
    constexpr REGSAM all = KEY_READ | KEY_WRITE;
    LSTATUS status = create ? ::RegCreateKeyExW(parent, name.c_str(), 0, nullptr, 0, all, nullptr,
                                                &opened, nullptr)
                            : ::RegOpenKeyExW(parent, name.c_str(), 0, all, &opened);
    if (status == ERROR_ACCESS_DENIED) {
        status = ::RegOpenKeyExW(parent, name.c_str(), 0, KEY_READ, &opened);
        // That it is missing is not what stands in the way of a caller who wants it made.
        status = create && status == ERROR_FILE_NOT_FOUND ? ERROR_ACCESS_DENIED : status;
    }
    if (status == ERROR_SUCCESS) {
        key.Reset(opened);
    }
    return status;
}

// Another process may write a longer value between two calls.
LSTATUS ReadBytes(HKEY key, const wchar_t* name, DWORD type, std::vector<BYTE>& bytes)
{
    LSTATUS status = ERROR_MORE_DATA;
    DWORD found = REG_NONE;
    DWORD size = 256;  // most values fit: one call
    while (status == ERROR_MORE_DATA) {
        bytes.resize(size);
        status = ::RegQueryValueExW(key, name, nullptr, &found, bytes.data(), &size);
    }
    if (status != ERROR_SUCCESS) {
        return status;
    }
    bytes.resize(size);
    return found == type ? ERROR_SUCCESS : ERROR_DATATYPE_MISMATCH;
}

bool GetKind(DWORD type, YProfileValueKind& kind)
{
    switch (type) {
    case REG_DWORD: kind = YProfileValueKind::Dword; return true;
    case REG_SZ: kind = YProfileValueKind::String; return true;
    case REG_BINARY: kind = YProfileValueKind::Binary; return true;
    default: return false;
    }
}

class RegistryProfileKey : public YUnknown<IProfileKey>
{
public:
    explicit RegistryProfileKey(YUniqueRegistryHandle owned) : key(std::move(owned)) {}

    bool OpenKey(const wchar_t* name, bool create, IProfileKey** child,
                 YReportMessageParams& error) override;
    void GetKeyNames(std::vector<YUnicodeString>& names) override;
    void GetValueNames(std::vector<YProfileValueName>& names) override;
    bool ReadDWORD(const wchar_t* name, DWORD& value, YReportMessageParams& error) override;
    bool ReadString(const wchar_t* name, YUnicodeString& value,
                    YReportMessageParams& error) override;
    bool ReadBinary(const wchar_t* name, std::vector<BYTE>& value,
                    YReportMessageParams& error) override;
    bool WriteDWORD(const wchar_t* name, DWORD value, YReportMessageParams& error) override;
    bool WriteString(const wchar_t* name, const YUnicodeString& value,
                     YReportMessageParams& error) override;
    bool WriteBinary(const wchar_t* name, const BYTE* data, unsigned size,
                     YReportMessageParams& error) override;
    bool DeleteValue(const wchar_t* name, YReportMessageParams& error) override;
    bool DeleteKey(const wchar_t* name, YReportMessageParams& error) override;
    bool Flush(YReportMessageParams& error) override;

private:
    const YUniqueRegistryHandle key;
};

// The empty name would be the key itself.
bool RegistryProfileKey::OpenKey(const wchar_t* name, bool create, IProfileKey** child,
                                 YReportMessageParams& error)
{
    *child = nullptr;
    if (!name || !*name) {
        return Tell(error, ERROR_INVALID_PARAMETER);
    }
    YUniqueRegistryHandle opened;
    if (!Tell(error, Open(key.Get(), GetRegistryName(name), create, opened))) {
        return false;
    }
    *child = new RegistryProfileKey(std::move(opened));
    return true;
}

void RegistryProfileKey::GetKeyNames(std::vector<YUnicodeString>& names)
{
    names.clear();
    wchar_t name[maxKeyName + 1];
    for (DWORD index = 0;; ++index) {
        DWORD length = maxKeyName + 1;
        if (::RegEnumKeyExW(key.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            break;
        }
        names.emplace_back(GetKeyName({name, length}));
    }
}

void RegistryProfileKey::GetValueNames(std::vector<YProfileValueName>& names)
{
    names.clear();
    std::vector<wchar_t> name(maxValueName + 1);
    for (DWORD index = 0;; ++index) {
        DWORD length = maxValueName + 1;
        DWORD type = REG_NONE;
        if (::RegEnumValueW(key.Get(), index, name.data(), &length, nullptr, &type, nullptr,
                            nullptr) != ERROR_SUCCESS) {
            break;
        }
        YProfileValueKind kind{};
        if (GetKind(type, kind)) {
            names.push_back({YUnicodeString(name.data(), length), kind});
        }
    }
}

bool RegistryProfileKey::ReadDWORD(const wchar_t* name, DWORD& value, YReportMessageParams& error)
{
    DWORD found = 0;
    DWORD type = REG_NONE;
    DWORD size = sizeof found;
    LSTATUS status =
        ::RegQueryValueExW(key.Get(), name, nullptr, &type, reinterpret_cast<BYTE*>(&found), &size);
    if (status == ERROR_MORE_DATA ||
        (status == ERROR_SUCCESS && (type != REG_DWORD || size != sizeof found))) {
        status = ERROR_DATATYPE_MISMATCH;
    }
    if (!Tell(error, status)) {
        return false;
    }
    value = found;
    return true;
}

// Without the one terminator that belongs to the type; other programs may have left it out, or half
// a character at the end.
bool RegistryProfileKey::ReadString(const wchar_t* name, YUnicodeString& value,
                                    YReportMessageParams& error)
{
    std::vector<BYTE> bytes;
    if (!Tell(error, ReadBytes(key.Get(), name, REG_SZ, bytes))) {
        return false;
    }
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::copy_n(bytes.data(), text.size() * sizeof(wchar_t), reinterpret_cast<BYTE*>(text.data()));
    if (text.ends_with(L'\0')) {
        text.pop_back();
    }
    value = YUnicodeString(text);
    return true;
}

bool RegistryProfileKey::ReadBinary(const wchar_t* name, std::vector<BYTE>& value,
                                    YReportMessageParams& error)
{
    std::vector<BYTE> bytes;
    if (!Tell(error, ReadBytes(key.Get(), name, REG_BINARY, bytes))) {
        return false;
    }
    value = std::move(bytes);
    return true;
}

bool RegistryProfileKey::WriteDWORD(const wchar_t* name, DWORD value, YReportMessageParams& error)
{
    return Tell(error, ::RegSetValueExW(key.Get(), name, 0, REG_DWORD,
                                        reinterpret_cast<const BYTE*>(&value), sizeof value));
}

bool RegistryProfileKey::WriteString(const wchar_t* name, const YUnicodeString& value,
                                     YReportMessageParams& error)
{
    const DWORD size = (value.GetLength() + 1) * sizeof(wchar_t);
    return Tell(error, ::RegSetValueExW(key.Get(), name, 0, REG_SZ,
                                        reinterpret_cast<const BYTE*>(value.c_str()), size));
}

bool RegistryProfileKey::WriteBinary(const wchar_t* name, const BYTE* data, unsigned size,
                                     YReportMessageParams& error)
{
    return Tell(error, ::RegSetValueExW(key.Get(), name, 0, REG_BINARY, data, size));
}

bool RegistryProfileKey::DeleteValue(const wchar_t* name, YReportMessageParams& error)
{
    return Tell(error, ::RegDeleteValueW(key.Get(), name));
}

// The empty name would be all that the key itself holds.
bool RegistryProfileKey::DeleteKey(const wchar_t* name, YReportMessageParams& error)
{
    if (!name || !*name) {
        return Tell(error, ERROR_INVALID_PARAMETER);
    }
    return Tell(error, ::RegDeleteTreeW(key.Get(), GetRegistryName(name).c_str()));
}

bool RegistryProfileKey::Flush(YReportMessageParams& error)
{
    return Tell(error, ::RegFlushKey(key.Get()));
}

class RegistryProfile : public YUnknown<IProfile>
{
public:
    RegistryProfile(HKEY parent, std::wstring rootPath) : rootKey(parent), path(std::move(rootPath))
    {}

    bool OpenRoot(IProfileKey** root, YReportMessageParams& error) override
    {
        *root = nullptr;
        YUniqueRegistryHandle opened;
        if (!Tell(error, Open(rootKey, path, true, opened))) {
            return false;
        }
        *root = new RegistryProfileKey(std::move(opened));
        return true;
    }

private:
    const HKEY rootKey;  // borrowed
    const std::wstring path;
};

}  // namespace

RegistryProfileFactory::RegistryProfileFactory(HKEY parent, std::wstring rootPath)
    : rootKey(parent), path(std::move(rootPath))
{}

RegistryProfileFactory::~RegistryProfileFactory() = default;

bool RegistryProfileFactory::CreateProfile(IProfile** profile, YReportMessageParams&)
{
    *profile = new RegistryProfile(rootKey, path);
    return true;
}
