#include "YCertificateNameBase.h"

#include "YMessages.h"
#include "YReportMessageParams.h"

#include <algorithm>
#include <string_view>

namespace {

struct FieldRule
{
    const char* shortName;
    const char* identifier;
    unsigned maxCharacters;  // the upper bound of X.520
};

constexpr FieldRule rules[YCertificateNameBase::fieldCount] = {
    {"CN", "2.5.4.3", 64},
    {"O", "2.5.4.10", 64},
    {"OU", "2.5.4.11", 64},
    {"C", "2.5.4.6", 2},
    {"L", "2.5.4.7", 128},
    {"ST", "2.5.4.8", 128},
    {"emailAddress", "1.2.840.113549.1.9.1", 128},
};

bool IsLetter(wchar_t unit)
{
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

// A surrogate pair is one.
unsigned CountCharacters(std::wstring_view text)
{
    return static_cast<unsigned>(std::count_if(
        text.begin(), text.end(), [](wchar_t unit) { return unit < 0xDC00 || unit > 0xDFFF; }));
}

bool IsCountry(std::wstring_view text)
{
    return text.size() == 2 && IsLetter(text[0]) && IsLetter(text[1]);
}

bool IsAscii(std::wstring_view text)
{
    return std::all_of(text.begin(), text.end(), [](wchar_t unit) { return unit < 0x80; });
}

// 0: nothing is wrong.
unsigned FindFault(YCertificateNameBase::Field field, std::wstring_view text)
{
    if (text.empty()) {
        return 0;
    }
    if (field == YCertificateNameBase::Country) {
        return IsCountry(text) ? 0 : MSG_COUNTRY_NOT_VALID;
    }
    if (field == YCertificateNameBase::Email && !IsAscii(text)) {
        return MSG_EMAIL_NOT_VALID;
    }
    return CountCharacters(text) > rules[field].maxCharacters ? MSG_FIELD_TOO_LONG : 0;
}

}  // namespace

YCertificateNameBase::~YCertificateNameBase() = default;

const char* YCertificateNameBase::GetShortName(Field field)
{
    return rules[field].shortName;
}

const char* YCertificateNameBase::GetIdentifier(Field field)
{
    return rules[field].identifier;
}

bool YCertificateNameBase::CheckLimits(Field& failed, YReportMessageParams& error) const
{
    for (int number = 0; number < fieldCount; ++number) {
        const Field field = static_cast<Field>(number);
        const unsigned fault = FindFault(field, GetField(field));
        if (fault == 0) {
            continue;
        }
        failed = field;
        error.SetErrorCode(fault);
        if (fault == MSG_FIELD_TOO_LONG) {
            error.AddFormattedInsert(L"%1!u!", rules[field].maxCharacters);
        }
        return false;
    }
    return true;
}

bool YCertificateNameBase::Validate(Field& failed, YReportMessageParams& error) const
{
    if (!GetField(CommonName).IsEmpty()) {
        return CheckLimits(failed, error);
    }
    failed = CommonName;
    error.SetErrorCode(MSG_COMMON_NAME_MISSING);
    return false;
}
