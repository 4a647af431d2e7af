#include "YProfileData.h"

YProfileData::YProfileData(const wchar_t* valueName) : name(valueName) {}

YProfileData::~YProfileData() = default;

YProfileSz::YProfileSz(const wchar_t* valueName, Value defaultValue)
    : YProfileData(valueName), value(defaultValue), initial(std::move(defaultValue))
{}

YProfileSz::~YProfileSz() = default;

void YProfileSz::Set(Value next)
{
    if (!(value == next)) {
        value = std::move(next);
        SetModified(true);
    }
}

bool YProfileSz::Read(const YProfileKey& key)
{
    value = initial;
    SetModified(false);
    return key.ReadString(GetName().c_str(), value);
}

bool YProfileSz::Write(const YProfileKey& key)
{
    const bool written = key.WriteString(GetName().c_str(), value);
    SetModified(IsModified() && !written);
    return written;
}

YProfileDword::YProfileDword(const wchar_t* valueName, Value defaultValue)
    : YProfileData(valueName), value(defaultValue), initial(defaultValue)
{}

YProfileDword::~YProfileDword() = default;

void YProfileDword::Set(Value next)
{
    if (value != next) {
        value = next;
        SetModified(true);
    }
}

bool YProfileDword::Read(const YProfileKey& key)
{
    value = initial;
    SetModified(false);
    return key.ReadDWORD(GetName().c_str(), value);
}

bool YProfileDword::Write(const YProfileKey& key)
{
    const bool written = key.WriteDWORD(GetName().c_str(), value);
    SetModified(IsModified() && !written);
    return written;
}
