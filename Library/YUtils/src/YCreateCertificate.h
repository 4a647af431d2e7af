// YCreateCertificate.h: a new certificate from the library of one's choice.
#pragma once

#include "CommonUiApi.h"
#include "YCertificateBase.h"
#include "YUnknownPointer.h"

#include <cstdint>

class YReportMessageParams;

enum class SslLib : std::uint32_t {
    OpenSsl = 0,  // and every other value
    Capi = 1,  // the system's CryptoAPI
};

// False: error says why, certificate is what it was, and nothing is left anywhere. 87: no name.
// 0xE10400CD: OpenSSL is not available, or a policy forbids it. Blocks while the key is generated.
COMMONUI_API bool CreateCertificate(SslLib library, const YCertificateParameters& parameters,
                                    YUnknownPointer<YCertificateBase>& certificate,
                                    YReportMessageParams& error);

// By OpenSSL, with the key of an end entity. The arguments are those of YCertificateParameters.
COMMONUI_API bool CreateSelfSignedCertificate(const YCertificateNameBase* name,
                                              std::int64_t expiration, std::uint8_t flags,
                                              unsigned keyBits, const char* signatureAlgorithm,
                                              YUnknownPointer<YCertificateBase>& certificate,
                                              YReportMessageParams& error);
