// YCertificateBase.h: a certificate, with the key and the request that were made with it.
#pragma once

#include "CommonUiApi.h"
#include "YCertificateContextBase.h"
#include "YUnknown.h"
#include "YUnknownPointer.h"

#include <cstdint>
#include <string>

class YReportMessageParams;

// What a new certificate is to be.
struct YCertificateParameters
{
    static constexpr std::uint8_t clientFlag = 1 << 0;  // clear: of a server
    static constexpr std::uint8_t requestFlag = 1 << 2;  // a signing request as well
    static constexpr std::uint32_t endEntityKey = 1;
    static constexpr std::uint32_t signingKey = 2;  // signs certificates
    static constexpr const char* sha1WithRsa = "1.2.840.113549.1.1.5";
    static constexpr const char* sha256WithRsa = "1.2.840.113549.1.1.11";

    const YCertificateNameBase* name = nullptr;  // borrowed
    std::int64_t expiration = 0;  // seconds since 1970, UTC; may have passed
    std::uint8_t flags = 0;
    std::uint32_t keyUsageKind = endEntityKey;
    unsigned keyBits = 2048;
    const char* signatureAlgorithm = sha256WithRsa;  // one of the two above
};

// Reference counted. One thread at a time.
class COMMONUI_API YCertificateBase : public YUnknown<>
{
public:
    const YCertificateContextBase& GetContext() const { return *context; }
    bool IsCreatedHere() const { return createdHere; }
    virtual bool HasRequest() const = 0;

    // Writes certificate and key as PKCS#12 with the empty password to path, then the request, if
    // there is one, beside it with the extension ".csr". Each file takes the place of the old one in
    // one step once it is whole. False: error says why, and the file in question is what it was; the
    // other may have been written. A path that itself ends in ".csr" is refused with a request.
    // A new PFX file is for its owner and administrators only; one that is replaced keeps who may
    // read it.
    virtual bool Save(const wchar_t* path, YReportMessageParams& error) const = 0;

    // The path with its extension, if it has one, changed to ".csr".
    static std::wstring GetRequestPath(const wchar_t* path);

protected:
    YCertificateBase(YUnknownPointer<YCertificateContextBase> certificate, bool isCreatedHere);
    ~YCertificateBase() override;

    // 87 when the request would take the place of the certificate.
    bool CheckPaths(const wchar_t* path, YReportMessageParams& error) const;

private:
    YUnknownPointer<YCertificateContextBase> context;
    bool createdHere;
};
