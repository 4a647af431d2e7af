// Which fields a certificate can carry, and what the user is told about one that it cannot.
#include "support/CaseName.h"

#include "YCertificateNameBase.h"
#include "YMessages.h"
#include "YReportMessageParams.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Name = YCertificateNameBase;

struct FieldCase
{
    const char* name;
    Name::Field field;
    std::wstring text;
    unsigned fault;  // 0: none
};

class YCertificateNameField : public testing::TestWithParam<FieldCase>
{};

std::wstring Repeat(unsigned count, const wchar_t* character)
{
    std::wstring text;
    while (count-- > 0) {
        text += character;
    }
    return text;
}

constexpr wchar_t ideographOfTwoUnits[] = L"\xD840\xDC0B";

}  // namespace

TEST_P(YCertificateNameField, IsJudgedByItsOwnRule)
{
    const FieldCase& c = GetParam();
    Name name;
    name.SetField(Name::CommonName, L"host");
    name.SetField(c.field, c.text.c_str());
    Name::Field failed = Name::fieldCount;
    YReportMessageParams error;
    EXPECT_EQ(name.Validate(failed, error), c.fault == 0);
    EXPECT_EQ(failed, c.fault == 0 ? Name::fieldCount : c.field);
    EXPECT_EQ(error.GetMessageId(), c.fault);
    EXPECT_EQ(std::wstring(error.GetText()).find(L'%'), std::wstring::npos) << error.GetText();
}

INSTANTIATE_TEST_SUITE_P(
    Fields, YCertificateNameField,
    testing::Values(
        FieldCase{"NoCommonName", Name::CommonName, L"", MSG_COMMON_NAME_MISSING},
        FieldCase{"LongestCommonName", Name::CommonName, Repeat(64, L"\xE9"), 0},
        FieldCase{"PairsAreOneCharacter", Name::CommonName, Repeat(64, ideographOfTwoUnits), 0},
        FieldCase{"TooLongCommonName", Name::CommonName, Repeat(65, L"x"), MSG_FIELD_TOO_LONG},
        FieldCase{"TooLongOrganization", Name::Organization, Repeat(65, L"x"), MSG_FIELD_TOO_LONG},
        FieldCase{"TooLongUnit", Name::OrganizationalUnit, Repeat(65, L"x"), MSG_FIELD_TOO_LONG},
        FieldCase{"LongestLocality", Name::Locality, Repeat(128, L"x"), 0},
        FieldCase{"TooLongLocality", Name::Locality, Repeat(129, L"x"), MSG_FIELD_TOO_LONG},
        FieldCase{"TooLongState", Name::StateOrProvince, Repeat(129, L"x"), MSG_FIELD_TOO_LONG},
        FieldCase{"NoCountry", Name::Country, L"", 0},
        FieldCase{"Country", Name::Country, L"FR", 0},
        FieldCase{"CountryOfOneLetter", Name::Country, L"F", MSG_COUNTRY_NOT_VALID},
        FieldCase{"CountryWithDigit", Name::Country, L"F1", MSG_COUNTRY_NOT_VALID},
        FieldCase{"CountryWithAccent", Name::Country, L"F\xC9", MSG_COUNTRY_NOT_VALID},
        FieldCase{"LongestEmail", Name::Email, Repeat(122, L"x") + L"@a.org", 0},
        FieldCase{"TooLongEmail", Name::Email, Repeat(123, L"x") + L"@a.org", MSG_FIELD_TOO_LONG},
        FieldCase{"EmailWithAccent", Name::Email, L"ren\xE9@a.org", MSG_EMAIL_NOT_VALID}),
    CaseName());
