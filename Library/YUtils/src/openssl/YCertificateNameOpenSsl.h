// YCertificateNameOpenSsl.h: a subject in OpenSSL's form.
#pragma once

#include "CommonUiApi.h"
#include "OpenSslFunctions.h"
#include "YCertificateNameBase.h"

// Needs the library to be bound (OpenSslLibrary.h), except for holding the fields.
class COMMONUI_API YCertificateNameOpenSsl : public YCertificateNameBase
{
public:
    YCertificateNameOpenSsl() = default;
    explicit YCertificateNameOpenSsl(const YCertificateNameBase& other);
    // Reads a name back. Of a field that is there more than once, the first.
    explicit YCertificateNameOpenSsl(const OpenSSL::Name* name);

    // Adds the fields that are not empty, as UTF-8; the library makes of it what each one's type
    // allows. False: one exceeds its limit, or there was no memory; the error queue tells.
    bool AddTo(OpenSSL::Name* name) const;
};
