// YCertificateOpenSsl.h: certificates on OpenSSL 3.
#pragma once

#include "CommonUiApi.h"
#include "OpenSslLibrary.h"
#include "YCertificateBase.h"
#include "YCertificateContextBase.h"

namespace OpenSSL {

class COMMONUI_API YCertificateContext : public YCertificateContextBase
{
public:
    explicit YCertificateContext(CertificateHandle certificate, KeyHandle key = nullptr);
    ~YCertificateContext() override;

    // Borrowed; the key may be null.
    Certificate* GetCertificate() const { return certificate.get(); }
    Key* GetKey() const { return key.get(); }

    YUnknownPointer<YCertificateNameBase> GetSubject() const override;
    YUnknownPointer<YCertificateNameBase> GetIssuer() const override;
    std::string GetSerialNumber() const override;
    std::int64_t GetNotBefore() const override;
    std::int64_t GetNotAfter() const override;
    std::string GetPublicKeyAlgorithm() const override;
    unsigned GetPublicKeyBits() const override;
    Fingerprint GetFingerprint() const override;
    bool HasPrivateKey() const override { return key != nullptr; }

private:
    CertificateHandle certificate;
    KeyHandle key;
};

class COMMONUI_API YCertificate : public YCertificateBase
{
public:
    // A new self-signed RSA certificate. Blocks while the key is generated: seconds with 4096 bits.
    // Null: error says which step failed, with the library's reason as its detail.
    static YUnknownPointer<YCertificate> Create(const YCertificateParameters& parameters,
                                                YReportMessageParams& error);
    // A PKCS#12 file with the empty password, or a certificate in DER or PEM. Null: error says why.
    static YUnknownPointer<YCertificate> Load(const wchar_t* path, YReportMessageParams& error);

    YCertificate(YUnknownPointer<YCertificateContext> certificate, bool isCreatedHere,
                 RequestHandle request = nullptr);
    ~YCertificate() override;

    const YCertificateContext& GetOpenSslContext() const { return *context; }
    const Request* GetRequest() const { return request.get(); }  // borrowed; null: none
    bool HasRequest() const override { return request != nullptr; }
    bool Save(const wchar_t* path, YReportMessageParams& error) const override;

private:
    YUnknownPointer<YCertificateContext> context;
    RequestHandle request;
};

}  // namespace OpenSSL
