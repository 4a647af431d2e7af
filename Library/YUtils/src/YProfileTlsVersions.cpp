#include "YProfileTlsVersions.h"

#include <algorithm>

namespace {

constexpr YProfileTlsVersions::Version versions[] = {
    {L"1.0", YProfileTlsVersions::version10},
    {L"1.1", YProfileTlsVersions::version11},
    {L"1.2", YProfileTlsVersions::version12},
    {L"1.3", YProfileTlsVersions::version13},
    {nullptr, 0},
};

// Up to the separator, which goes as well; all of it where there is none.
std::wstring_view TakePiece(std::wstring_view& text, wchar_t separator)
{
    const std::wstring_view piece = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(piece.size() + 1, text.size()));
    return piece;
}

}  // namespace

const YProfileTlsVersions::Version* YProfileTlsVersions::GetVersions()
{
    return versions;
}

YProfileTlsVersions::YProfileTlsVersions(const wchar_t* valueName) : YProfileSz(valueName) {}

YProfileTlsVersions::~YProfileTlsVersions() = default;

void YProfileTlsVersions::SetMask(DWORD next)
{
    mask = next;
    Set(ToText(mask));
}

bool YProfileTlsVersions::Read(const YProfileKey& key)
{
    const bool isThere = YProfileSz::Read(key);
    mask = Parse(Get(), mask);
    return isThere;
}

bool YProfileTlsVersions::Write(const YProfileKey& key)
{
    Set(ToText(mask));
    return YProfileSz::Write(key);
}

YUnicodeString YProfileTlsVersions::ToText(DWORD mask)
{
    YUnicodeString text;
    for (const Version* version = versions; version->name; ++version) {
        text += text.IsEmpty() ? L"" : L",";
        text += version->name;
        text += mask & version->bit ? L"=1" : L"=0";
    }
    return text;
}

DWORD YProfileTlsVersions::Parse(std::wstring_view text, DWORD mask)
{
    mask = (mask & ~versionBits) | allVersions;
    while (!text.empty()) {
        std::wstring_view value = TakePiece(text, L',');
        const std::wstring_view name = TakePiece(value, L'=');
        for (const Version* version = versions; version->name; ++version) {
            if (name == version->name) {
                mask = value == L"1" ? mask | version->bit : mask & ~version->bit;
            }
        }
    }
    return mask;
}
