// YCertificateNameCapi.h: a subject in the system's form.
#pragma once

#include "CommonUiApi.h"
#include "YCertificateNameBase.h"

#include <windows.h>

#include <vector>

#include <wincrypt.h>

class COMMONUI_API YCertificateNameCapi : public YCertificateNameBase
{
public:
    YCertificateNameCapi() = default;
    explicit YCertificateNameCapi(const YCertificateNameBase& other);
    // Reads an encoded name back. Of a field that is there more than once, the first.
    explicit YCertificateNameCapi(const CERT_NAME_BLOB& encoded);

    // The fields that are not empty, encoded. False: GetLastError() tells why.
    bool Encode(std::vector<BYTE>& encoded) const;
};
