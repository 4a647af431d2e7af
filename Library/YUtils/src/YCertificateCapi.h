// YCertificateCapi.h: certificates on the system's CryptoAPI.
#pragma once

#include "CommonUiApi.h"
#include "YCapiHandles.h"
#include "YCertificateBase.h"
#include "YCertificateContextBase.h"

#include <vector>

namespace CAPI {

// The private key, if there is one, lives in a provider that keeps it in memory and belongs to the
// context.
class COMMONUI_API YCertificateContext : public YCertificateContextBase
{
public:
    explicit YCertificateContext(YUniqueCertificateContext certificate);
    ~YCertificateContext() override;

    PCCERT_CONTEXT GetCertificate() const { return certificate.Get(); }  // borrowed

    YUnknownPointer<YCertificateNameBase> GetSubject() const override;
    YUnknownPointer<YCertificateNameBase> GetIssuer() const override;
    std::string GetSerialNumber() const override;
    std::int64_t GetNotBefore() const override;
    std::int64_t GetNotAfter() const override;
    std::string GetPublicKeyAlgorithm() const override;
    unsigned GetPublicKeyBits() const override;
    Fingerprint GetFingerprint() const override;
    bool HasPrivateKey() const override;

private:
    YUniqueCertificateContext certificate;
};

class COMMONUI_API YCertificate : public YCertificateBase
{
public:
    // As OpenSSL::YCertificate's; the details of failures are the system's.
    static YUnknownPointer<YCertificate> Create(const YCertificateParameters& parameters,
                                                YReportMessageParams& error);
    static YUnknownPointer<YCertificate> Load(const wchar_t* path, YReportMessageParams& error);

    YCertificate(YUnknownPointer<YCertificateContext> certificate, bool isCreatedHere,
                 std::vector<BYTE> encodedRequest = {});
    ~YCertificate() override;

    bool HasRequest() const override { return !request.empty(); }
    bool Save(const wchar_t* path, YReportMessageParams& error) const override;

private:
    YUnknownPointer<YCertificateContext> context;
    std::vector<BYTE> request;  // DER; empty: none
};

}  // namespace CAPI
