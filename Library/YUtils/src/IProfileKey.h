// IProfileKey.h: one key of a profile, as the host's storage keeps it.
#pragma once

#include "YUnicodeString.h"

#include <windows.h>

#include <unknwn.h>

#include <vector>

class YReportMessageParams;

// How a value is kept.
enum class YProfileValueKind { Dword, String, Binary };

struct YProfileValueName
{
    YUnicodeString name;
    YProfileValueKind kind = YProfileValueKind::String;
};

// A named set of values and of further keys. The library calls, a host's storage implements; all
// objects for one key see the same values. Names are compared without case; they may hold any
// character but NUL. Where an operation fails it says why in error and changes neither its outputs
// nor, as far as it can, what is stored; what is not there is ERROR_FILE_NOT_FOUND, a value of
// another kind ERROR_DATATYPE_MISMATCH. Any thread, one at a time. The order is binary contract.
class IProfileKey : public IUnknown
{
public:
    // The child; with create made where it is missing. The caller owns the reference.
    virtual bool OpenKey(const wchar_t* name, bool create, IProfileKey** key,
                         YReportMessageParams& error) = 0;
    // In the order of their making, as far as the storage knows it.
    virtual void GetKeyNames(std::vector<YUnicodeString>& names) = 0;
    virtual void GetValueNames(std::vector<YProfileValueName>& names) = 0;

    virtual bool ReadDWORD(const wchar_t* name, DWORD& value, YReportMessageParams& error) = 0;
    virtual bool ReadString(const wchar_t* name, YUnicodeString& value,
                            YReportMessageParams& error) = 0;
    virtual bool ReadBinary(const wchar_t* name, std::vector<BYTE>& value,
                            YReportMessageParams& error) = 0;
    // A value of another kind is replaced.
    virtual bool WriteDWORD(const wchar_t* name, DWORD value, YReportMessageParams& error) = 0;
    virtual bool WriteString(const wchar_t* name, const YUnicodeString& value,
                             YReportMessageParams& error) = 0;
    virtual bool WriteBinary(const wchar_t* name, const BYTE* data, unsigned size,  // bytes
                             YReportMessageParams& error) = 0;

    virtual bool DeleteValue(const wchar_t* name, YReportMessageParams& error) = 0;
    // With everything below it. Open objects for it stay usable and lead nowhere.
    virtual bool DeleteKey(const wchar_t* name, YReportMessageParams& error) = 0;

    // What was written to this key, and to the keys below it, outlives a crash when this returns
    // true. A storage that keeps changes back writes them at the latest when the last reference to
    // the profile goes; then nobody is told of a failure.
    virtual bool Flush(YReportMessageParams& error) = 0;
};
