// YProfileTlsVersions.h: which TLS versions a connection may negotiate.
#pragma once

#include "YProfileData.h"

#include <string_view>

// A mask of versions, kept as text: "1.0=0,1.1=0,1.2=1,1.3=1". A version that the text does not
// name, or a text that is not there, allows the version: settings from before a version existed do
// not forbid it.
class COMMONUI_API YProfileTlsVersions : public YProfileSz
{
public:
    static constexpr DWORD version10 = 0x20;
    static constexpr DWORD version11 = 0x40;
    static constexpr DWORD version12 = 0x80;
    static constexpr DWORD version13 = 0x100;
    static constexpr DWORD versionBits = 0x1F0;  // other bits are not ours and stay as they are
    static constexpr DWORD allVersions = version10 | version11 | version12 | version13;

    struct Version
    {
        const wchar_t* name;
        DWORD bit;
    };
    // In the order of the text and of dialogs; ends with a null name.
    static const Version* GetVersions();

    explicit YProfileTlsVersions(const wchar_t* valueName);
    ~YProfileTlsVersions() override;

    DWORD GetMask() const { return mask; }
    void SetMask(DWORD next);  // modified when the text changes
    bool Read(const YProfileKey& key) override;
    bool Write(const YProfileKey& key) override;

    static YUnicodeString ToText(DWORD mask);
    // The versions as the text says; the other bits as they are in mask. Pieces with unknown names
    // are ignored, any value but "1" forbids.
    static DWORD Parse(std::wstring_view text, DWORD mask = 0);

private:
    DWORD mask = allVersions;
};
