// YProfileData.h: values of a profile that know their name and whether they were changed.
#pragma once

#include "CommonUiApi.h"
#include "YProfileKey.h"
#include "YUnicodeString.h"

#include <utility>

// A value bound to a name. It is modified from the change on until it is read or written. Reading
// what is not there, or is of another kind, returns false and leaves the value at its default.
class COMMONUI_API YProfileData
{
public:
    virtual ~YProfileData();

    const YUnicodeString& GetName() const { return name; }
    bool IsModified() const { return modified; }
    void SetModified(bool isModified) { modified = isModified; }

    virtual bool Read(const YProfileKey& key) = 0;
    virtual bool Write(const YProfileKey& key) = 0;  // whether it is modified or not

protected:
    explicit YProfileData(const wchar_t* valueName);
    YProfileData(const YProfileData&) = default;
    YProfileData& operator=(const YProfileData&) = default;

private:
    YUnicodeString name;
    bool modified = false;
};

// A text.
class COMMONUI_API YProfileSz : public YProfileData
{
public:
    using Value = YUnicodeString;

    explicit YProfileSz(const wchar_t* valueName, Value defaultValue = {});
    ~YProfileSz() override;

    const Value& Get() const { return value; }
    void Set(Value next);  // modified when it differs
    bool Read(const YProfileKey& key) override;
    bool Write(const YProfileKey& key) override;

private:
    Value value;
    Value initial;
};

// A number.
class COMMONUI_API YProfileDword : public YProfileData
{
public:
    using Value = DWORD;

    explicit YProfileDword(const wchar_t* valueName, Value defaultValue = 0);
    ~YProfileDword() override;

    Value Get() const { return value; }
    void Set(Value next);  // modified when it differs
    bool Read(const YProfileKey& key) override;
    bool Write(const YProfileKey& key) override;

private:
    Value value;
    Value initial;
};

// What a dialog edits: the value of now beside the value that was read or written last. Modified
// means that they differ, so a change that is taken back is none. Stored: YProfileSz for texts,
// YProfileDword for what fits into its 4 bytes. Value converts to and from Stored's.
template <class Value, class Stored>
class YProfile2 : public Stored
{
public:
    explicit YProfile2(const wchar_t* valueName, Value defaultValue = {})
        : Stored(valueName, ToStored(defaultValue)), current(defaultValue), loaded(defaultValue)
    {}

    const Value& Get() const { return current; }
    const Value& GetLoaded() const { return loaded; }
    void Set(Value next)
    {
        current = std::move(next);
        this->SetModified(!(current == loaded));
    }
    void Revert() { Set(loaded); }

    bool Read(const YProfileKey& key) override
    {
        const bool isThere = Stored::Read(key);
        loaded = static_cast<Value>(Stored::Get());
        Set(loaded);
        return isThere;
    }
    bool Write(const YProfileKey& key) override
    {
        Stored::Set(ToStored(current));
        const bool written = Stored::Write(key);
        if (written) {
            loaded = current;
        }
        this->SetModified(!(current == loaded));
        return written;
    }

private:
    static typename Stored::Value ToStored(const Value& value)
    {
        return static_cast<typename Stored::Value>(value);
    }

    Value current;
    Value loaded;
};
