#include "YProfileKey.h"

YProfileKey::YProfileKey(IProfileKey* key) : backend(key) {}

YProfileKey::YProfileKey(const YReportMessageParams& failure) : lastResult(failure) {}

YProfileKey::YProfileKey(const YProfileKey& parent, const wchar_t* name, unsigned flags)
{
    if (!parent.backend) {
        lastResult.SetErrorCode(ERROR_INVALID_HANDLE);
        return;
    }
    IProfileKey* child = nullptr;
    if (parent.backend->OpenKey(name, (flags & createMissing) != 0, &child, lastResult)) {
        backend = YUnknownPointer<IProfileKey>::Adopt(child);
    }
}

YProfileKey::YProfileKey(const YProfileKey&) = default;

YProfileKey& YProfileKey::operator=(const YProfileKey&) = default;

YProfileKey::~YProfileKey() = default;

// The result of a success is made only where a failure stands: reading and writing thousands of
// values allocates nothing for it.
template <class Operation>
bool YProfileKey::Forward(Operation operation) const
{
    if (!backend) {
        lastResult.SetErrorCode(ERROR_INVALID_HANDLE);
        return false;
    }
    if (lastResult.GetMessageId() != ERROR_SUCCESS) {
        lastResult.SetErrorCode(ERROR_SUCCESS);
    }
    return operation(*backend);
}

bool YProfileKey::ReadDWORD(const wchar_t* name, DWORD& value) const
{
    return Forward([&](IProfileKey& key) { return key.ReadDWORD(name, value, lastResult); });
}

bool YProfileKey::ReadString(const wchar_t* name, YUnicodeString& value) const
{
    return Forward([&](IProfileKey& key) { return key.ReadString(name, value, lastResult); });
}

bool YProfileKey::ReadBinary(const wchar_t* name, std::vector<BYTE>& value) const
{
    return Forward([&](IProfileKey& key) { return key.ReadBinary(name, value, lastResult); });
}

bool YProfileKey::WriteDWORD(const wchar_t* name, DWORD value) const
{
    return Forward([&](IProfileKey& key) { return key.WriteDWORD(name, value, lastResult); });
}

bool YProfileKey::WriteString(const wchar_t* name, const YUnicodeString& value) const
{
    return Forward([&](IProfileKey& key) { return key.WriteString(name, value, lastResult); });
}

bool YProfileKey::WriteBinary(const wchar_t* name, const BYTE* data, unsigned size) const
{
    return Forward([&](IProfileKey& key) { return key.WriteBinary(name, data, size, lastResult); });
}

bool YProfileKey::DeleteValue(const wchar_t* name) const
{
    return Forward([&](IProfileKey& key) { return key.DeleteValue(name, lastResult); });
}

bool YProfileKey::DeleteKey(const wchar_t* name) const
{
    return Forward([&](IProfileKey& key) { return key.DeleteKey(name, lastResult); });
}

bool YProfileKey::Flush() const
{
    return Forward([&](IProfileKey& key) { return key.Flush(lastResult); });
}

std::vector<YProfileValueName> YProfileKey::GetValueNames() const
{
    std::vector<YProfileValueName> names;
    if (backend) {
        backend->GetValueNames(names);
    }
    return names;
}

bool YProfileKey::CopyValuesTo(const YProfileKey& target) const
{
    if (!backend) {
        lastResult.SetErrorCode(ERROR_INVALID_HANDLE);
        return false;
    }
    for (const YProfileValueName& value : GetValueNames()) {
        if (!CopyValue(value, target)) {
            return false;
        }
    }
    return true;
}

bool YProfileKey::CopyValue(const YProfileValueName& value, const YProfileKey& target) const
{
    const wchar_t* const name = value.name.c_str();
    DWORD number = 0;
    YUnicodeString text;
    std::vector<BYTE> bytes;
    bool written = false;
    switch (value.kind) {
    case YProfileValueKind::Dword:
        if (!ReadDWORD(name, number)) {
            return false;
        }
        written = target.WriteDWORD(name, number);
        break;
    case YProfileValueKind::String:
        if (!ReadString(name, text)) {
            return false;
        }
        written = target.WriteString(name, text);
        break;
    case YProfileValueKind::Binary:
        if (!ReadBinary(name, bytes)) {
            return false;
        }
        written = target.WriteBinary(name, bytes.data(), static_cast<unsigned>(bytes.size()));
        break;
    }
    if (!written) {
        lastResult = target.lastResult;
    }
    return written;
}

YProfileKeyIterator::YProfileKeyIterator(const YProfileKey& key)
{
    if (key.backend) {
        key.backend->GetKeyNames(names);
    }
}

YProfileKeyIterator::~YProfileKeyIterator() = default;
