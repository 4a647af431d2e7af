// YRegistryKey.h: one open key of the registry.
#pragma once

#include "CommonUiApi.h"
#include "YReportMessageParams.h"
#include "YUnicodeString.h"
#include "YUniqueHandle.h"

#include <string>
#include <vector>

class YSecurityDescriptor;

struct YRegistryHandleTraits
{
    using Handle = HKEY;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle key) noexcept { ::RegCloseKey(key); }
};
using YUniqueRegistryHandle = YUniqueHandle<YRegistryHandleTraits>;

// Reads and writes the values of one key. The operations return whether they succeeded and leave
// the system's code of that in GetLastResult(); outputs are written on success only. On a key that
// could not be opened all of them return false, and the last result stays that of the opening.
// Values come from anywhere: a string may lack its end or half of its last character, and another
// process may change a value between two looks; what is read is always that of one moment.
// No exception but for want of memory. One thread at a time. The order is binary contract.
class COMMONUI_API YRegistryKey
{
public:
    // path: below root, null for root itself. create: makes the key where there is none; options
    // and security are for that only.
    YRegistryKey(HKEY root, const wchar_t* path, REGSAM access,
                 DWORD options = REG_OPTION_NON_VOLATILE, SECURITY_ATTRIBUTES* security = nullptr,
                 bool create = false);
    YRegistryKey(const YRegistryKey&) = delete;
    YRegistryKey& operator=(const YRegistryKey&) = delete;
    virtual ~YRegistryKey();

    // A value of another type, and a DWORD of another size than 4, is ERROR_DATATYPE_MISMATCH.

    // From SDDL text, which may be spread over the strings of a REG_MULTI_SZ, or from the bytes of
    // a descriptor.
    virtual bool ReadSecurity(const wchar_t* name, YSecurityDescriptor& security);
    // An empty string ends such a list for most who read it, so it is none of its strings: left out
    // on reading and on writing, wherever it stands. The last string may lack its end.
    virtual bool ReadMultiString(const wchar_t* name, std::vector<YUnicodeString>& list);
    virtual bool ReadBinary(const wchar_t* name, std::vector<BYTE>& data);
    // Up to the first NUL. References of a REG_EXPAND_SZ to the environment are filled in.
    virtual bool ReadString(const wchar_t* name, YUnicodeString& text);
    virtual bool ReadDWORD(const wchar_t* name, DWORD& value);

    virtual bool WriteSecurity(const wchar_t* name, const YSecurityDescriptor& security);
    virtual bool WriteMultiString(const wchar_t* name, const std::vector<YUnicodeString>& list);
    virtual bool WriteBinary(const wchar_t* name, const void* data, DWORD size);  // bytes
    virtual bool WriteString(const wchar_t* name, const YUnicodeString& text);
    virtual bool WriteDWORD(const wchar_t* name, DWORD value);

    virtual bool DeleteValue(const wchar_t* name);
    // With all keys below it. A link goes itself, what it points to stays. After the first failure
    // nothing more is deleted. The key itself, an empty name, is not its own sub-key.
    virtual bool DeleteKey(const wchar_t* subKey);
    virtual bool SubKeyExists(const wchar_t* name);  // and may be read
    virtual bool IsWritable() const;  // was opened to set values and create sub-keys
    // Gives the key the descriptor's access list; null: nothing to do, a success.
    virtual bool SetKeySecurity(const YSecurityDescriptor* security);

    // The code of the last operation, to be shown or logged. Valid as long as the key.
    virtual const YReportMessageParams& GetLastResult() const;

private:
    bool SetResult(LSTATUS status);
    bool Write(const wchar_t* name, DWORD type, const void* data, std::size_t size);

    YUniqueRegistryHandle key;  // null: could not be opened
    HKEY root;
    std::wstring path;  // empty: root itself
    REGSAM access;
    DWORD disposition = REG_OPENED_EXISTING_KEY;
    YReportMessageParams lastResult;
};
