// YCertificateContextBase.h: a certificate as it can be read.
#pragma once

#include "CommonUiApi.h"
#include "YCertificateNameBase.h"
#include "YUnknown.h"
#include "YUnknownPointer.h"

#include <array>
#include <cstdint>
#include <string>

// Owns a library's handles of one certificate and of its private key, if there is one. Reference
// counted; reading changes nothing. Times are seconds since 1970, UTC. What cannot be read is empty
// or 0.
class COMMONUI_API YCertificateContextBase : public YUnknown<>
{
public:
    using Fingerprint = std::array<std::uint8_t, 20>;  // SHA-1

    static constexpr const char* rsaIdentifier = "1.2.840.113549.1.1.1";
    static constexpr const char* dsaIdentifier = "1.2.840.10040.4.1";
    static constexpr const char* ecIdentifier = "1.2.840.10045.2.1";

    virtual YUnknownPointer<YCertificateNameBase> GetSubject() const = 0;
    virtual YUnknownPointer<YCertificateNameBase> GetIssuer() const = 0;
    virtual std::string GetSerialNumber() const = 0;  // hexadecimal, capitals, whole bytes
    virtual std::int64_t GetNotBefore() const = 0;
    virtual std::int64_t GetNotAfter() const = 0;
    virtual std::string GetPublicKeyAlgorithm() const = 0;  // an identifier as above
    virtual unsigned GetPublicKeyBits() const = 0;
    virtual Fingerprint GetFingerprint() const = 0;
    virtual bool HasPrivateKey() const = 0;

protected:
    ~YCertificateContextBase() override;
};
