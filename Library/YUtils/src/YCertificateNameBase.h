// YCertificateNameBase.h: whom a certificate is about.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"
#include "YUnknown.h"

#include <array>

class YReportMessageParams;

// The seven text fields of a subject, in the order in which they are written; an empty one is left
// out. Knows no library: the derived classes write it into a name of theirs and read it back.
// Reference counted, or used as a value. One thread at a time.
class COMMONUI_API YCertificateNameBase : public YUnknown<>
{
public:
    enum Field {
        CommonName,
        Organization,
        OrganizationalUnit,
        Country,
        Locality,
        StateOrProvince,
        Email,
        fieldCount
    };

    YCertificateNameBase() = default;
    YCertificateNameBase(const YCertificateNameBase& other) = default;
    YCertificateNameBase& operator=(const YCertificateNameBase& other) = default;
    ~YCertificateNameBase() override;

    const YUnicodeString& GetField(Field field) const { return fields[field]; }
    void SetField(Field field, const YUnicodeString& text) { fields[field] = text; }

    static const char* GetShortName(Field field);  // "CN", ...
    static const char* GetIdentifier(Field field);  // "2.5.4.3", ...

    // Whether a certificate can carry the fields: within the limits of their types. False: failed is
    // the first that is not, error says why.
    bool CheckLimits(Field& failed, YReportMessageParams& error) const;
    // The same, and that the certificate serves anybody: a common name is wanted, as nothing else
    // tells a client whose certificate it sees.
    bool Validate(Field& failed, YReportMessageParams& error) const;

private:
    std::array<YUnicodeString, fieldCount> fields;
};
