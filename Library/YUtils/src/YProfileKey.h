// YProfileKey.h: one key of the host's settings, wherever they are kept.
#pragma once

#include "CommonUiApi.h"
#include "IProfileKey.h"
#include "YReportMessageParams.h"
#include "YUnicodeString.h"
#include "YUnknownPointer.h"

#include <vector>

// Forwards every operation to the key object of the host's storage, which it shares. An operation
// that fails returns false, leaves its outputs as they are, and says why in GetLastResult(); all of
// them fail with ERROR_INVALID_HANDLE when the key could not be opened. Reading through a constant
// object is reading; writing through one is writing, too: it is a handle. One thread at a time.
class COMMONUI_API YProfileKey
{
public:
    // Bits for opening a child.
    static constexpr unsigned openExisting = 0;
    static constexpr unsigned createMissing = 1;

    explicit YProfileKey(IProfileKey* key);  // null: not open
    explicit YProfileKey(const YReportMessageParams& failure);  // not open, for that reason
    YProfileKey(const YProfileKey& parent, const wchar_t* name, unsigned flags = createMissing);
    YProfileKey(const YProfileKey& other);
    YProfileKey& operator=(const YProfileKey& other);
    ~YProfileKey();

    bool IsOpen() const { return static_cast<bool>(backend); }
    const YReportMessageParams& GetLastResult() const { return lastResult; }

    bool ReadDWORD(const wchar_t* name, DWORD& value) const;
    bool ReadString(const wchar_t* name, YUnicodeString& value) const;
    bool ReadBinary(const wchar_t* name, std::vector<BYTE>& value) const;
    bool WriteDWORD(const wchar_t* name, DWORD value) const;
    bool WriteString(const wchar_t* name, const YUnicodeString& value) const;
    bool WriteBinary(const wchar_t* name, const BYTE* data, unsigned size) const;  // bytes
    bool DeleteValue(const wchar_t* name) const;
    bool DeleteKey(const wchar_t* name) const;  // a child, with all below it

    std::vector<YProfileValueName> GetValueNames() const;
    // Every value of this key, not its children, into another; the others there stay. Ends at the
    // first failure.
    bool CopyValuesTo(const YProfileKey& target) const;
    // What was written outlives a crash.
    bool Flush() const;

private:
    friend class YProfileKeyIterator;

    template <class Operation>
    bool Forward(Operation operation) const;
    bool CopyValue(const YProfileValueName& value, const YProfileKey& target) const;

    YUnknownPointer<IProfileKey> backend;  // null: not open
    mutable YReportMessageParams lastResult;
};

// Walks the names of a key's children as they were when it was made:
// for (YProfileKeyIterator child(key); child.IsValid(); child.Next()) ... child.GetName().
class COMMONUI_API YProfileKeyIterator
{
public:
    explicit YProfileKeyIterator(const YProfileKey& key);
    ~YProfileKeyIterator();

    bool IsValid() const { return position < names.size(); }
    void Next() { ++position; }
    const YUnicodeString& GetName() const { return names[position]; }

private:
    std::vector<YUnicodeString> names;
    std::size_t position = 0;
};
