// The making of a certificate, step by step.
#include "YCertificateNameOpenSsl.h"
#include "YCertificateOpenSsl.h"
#include "YMessages.h"
#include "YReportMessageParams.h"

#include <cstring>
#include <utility>

namespace OpenSSL {

namespace {

constexpr int rsaKeyType = 6;  // EVP_PKEY_RSA
constexpr unsigned long publicExponent = 0x10001;
constexpr long version3 = 2;
constexpr long requestVersion = 1;
constexpr int serialBits = 159;  // 20 bytes at most, and never negative
constexpr int anyTopBit = -1;
constexpr int anyBottomBit = 0;

enum ExtensionNid {
    subjectKeyIdentifier = 82,
    keyUsage = 83,
    basicConstraints = 87,
    authorityKeyIdentifier = 90,
    extendedKeyUsage = 126,
};

std::int64_t GetTime()
{
    FILETIME now{};
    ::GetSystemTimeAsFileTime(&now);
    constexpr std::int64_t ticksPerSecond = 10'000'000;
    constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;
    const std::int64_t ticks =
        static_cast<std::int64_t>(now.dwHighDateTime) << 32 | now.dwLowDateTime;
    return ticks / ticksPerSecond - secondsFrom1601To1970;
}

// Null: no such kind.
const char* GetKeyUsage(std::uint32_t kind)
{
    switch (kind) {
    case YCertificateParameters::endEntityKey:
        return "digitalSignature,keyAgreement,keyEncipherment,dataEncipherment";
    case YCertificateParameters::signingKey:
        return "digitalSignature,nonRepudiation,keyCertSign,cRLSign";
    default: return nullptr;
    }
}

// One creation: each step keeps what it made, or says which step it was.
class Creation
{
public:
    Creation(const YCertificateParameters& wanted, const Functions& functions)
        : parameters(wanted), name(*wanted.name), openSsl(functions), notBefore(GetTime())
    {}

    // 0, or the id of the step that failed.
    unsigned Run()
    {
        if (!GenerateKey()) {
            return MSG_KEY_GENERATION_FAILED;
        }
        certificate.reset(openSsl.X509_new());
        if (!certificate || openSsl.X509_set_version(certificate.get(), version3) != 1) {
            return MSG_CERTIFICATE_CREATION_FAILED;
        }
        if (!SetSerialNumber()) {
            return MSG_CERTIFICATE_SIGNING_FAILED;
        }
        if (!SetValidity() || !SetKeyAndNames()) {
            return MSG_CERTIFICATE_CREATION_FAILED;
        }
        if (const unsigned failed = AddExtensions()) {
            return failed;
        }
        const Digest* const digest = FindDigest();
        if (!digest || openSsl.X509_sign(certificate.get(), key.get(), digest) <= 0) {
            return MSG_CERTIFICATE_SIGNING_FAILED;
        }
        const bool wantsRequest = parameters.flags & YCertificateParameters::requestFlag;
        return wantsRequest && !MakeRequest(digest) ? MSG_CERTIFICATE_REQUEST_FAILED : 0;
    }

    YUnknownPointer<YCertificate> TakeCertificate()
    {
        return YUnknownPointer<YCertificate>::Make(
            YUnknownPointer<YCertificateContext>::Make(std::move(certificate), std::move(key)),
            true, std::move(request));
    }

private:
    bool GenerateKey()
    {
        key.reset(openSsl.EVP_PKEY_new());
        const BigNumberHandle exponent(openSsl.BN_new());
        RsaKeyHandle rsa(openSsl.RSA_new());
        if (!key || !exponent || !rsa || openSsl.BN_set_word(exponent.get(), publicExponent) != 1 ||
            openSsl.RSA_generate_key_ex(rsa.get(), static_cast<int>(parameters.keyBits),
                                        exponent.get(), nullptr) != 1 ||
            openSsl.EVP_PKEY_assign(key.get(), rsaKeyType, rsa.get()) != 1) {
            return false;
        }
        static_cast<void>(rsa.release());  // the key's now
        return true;
    }

    bool SetSerialNumber()
    {
        const BigNumberHandle number(openSsl.BN_new());
        Integer* const serial = openSsl.X509_get_serialNumber(certificate.get());
        return number && serial &&
               openSsl.BN_rand(number.get(), serialBits, anyTopBit, anyBottomBit) == 1 &&
               openSsl.BN_to_ASN1_INTEGER(number.get(), serial);
    }

    bool SetValidity()
    {
        const TimeHandle begin(openSsl.ASN1_TIME_set(nullptr, notBefore));
        const TimeHandle end(openSsl.ASN1_TIME_set(nullptr, parameters.expiration));
        return begin && end && openSsl.X509_set1_notBefore(certificate.get(), begin.get()) == 1 &&
               openSsl.X509_set1_notAfter(certificate.get(), end.get()) == 1;
    }

    bool SetKeyAndNames()
    {
        Name* const subject = openSsl.X509_get_subject_name(certificate.get());
        return openSsl.X509_set_pubkey(certificate.get(), key.get()) == 1 && subject &&
               name.AddTo(subject) && openSsl.X509_set_issuer_name(certificate.get(), subject) == 1;
    }

    // An authority's, and without the right to sign where the key is an end's: what is made here
    // serves as its own root and is imported as such by clients. Which verifiers take it is told in
    // docs/certificates.md, and tested by each of them.
    unsigned AddExtensions()
    {
        const bool isClient = parameters.flags & YCertificateParameters::clientFlag;
        const struct
        {
            ExtensionNid nid;
            const char* text;
            unsigned messageId;
        } extensions[] = {
            {basicConstraints, "CA:TRUE,pathlen:1", MSG_BASIC_CONSTRAINTS_FAILED},
            {keyUsage, GetKeyUsage(parameters.keyUsageKind), MSG_KEY_USAGE_FAILED},
            {subjectKeyIdentifier, "hash", MSG_SUBJECT_KEY_IDENTIFIER_FAILED},
            {authorityKeyIdentifier, "keyid:always,issuer:always",
             MSG_AUTHORITY_KEY_IDENTIFIER_FAILED},
            {extendedKeyUsage, isClient ? "clientAuth" : "serverAuth",
             MSG_EXTENDED_KEY_USAGE_FAILED},
        };
        for (const auto& extension : extensions) {
            if (!extension.text || !AddExtension(extension.nid, extension.text)) {
                return extension.messageId;
            }
        }
        return 0;
    }

    bool AddExtension(ExtensionNid nid, const char* text)
    {
        ExtensionContext context{};
        openSsl.X509V3_set_ctx(&context, certificate.get(), certificate.get(), nullptr, nullptr, 0);
        const ExtensionHandle extension(openSsl.X509V3_EXT_conf_nid(nullptr, &context, nid, text));
        return extension && openSsl.X509_add_ext(certificate.get(), extension.get(), -1) == 1;
    }

    // Null: an algorithm that is not ours, or that the library does without.
    const Digest* FindDigest() const
    {
        const char* const algorithm =
            parameters.signatureAlgorithm ? parameters.signatureAlgorithm : "";
        if (std::strcmp(algorithm, YCertificateParameters::sha1WithRsa) == 0) {
            return openSsl.EVP_sha1();
        }
        return std::strcmp(algorithm, YCertificateParameters::sha256WithRsa) == 0
                   ? openSsl.EVP_sha256()
                   : nullptr;
    }

    // The version is one more than the standard's only one. Authorities do not look at it, and those
    // that know our requests know them so; verifiers accept it (test: the judges of requests).
    bool MakeRequest(const Digest* digest)
    {
        request.reset(openSsl.X509_REQ_new());
        return request && openSsl.X509_REQ_set_version(request.get(), requestVersion) == 1 &&
               name.AddTo(openSsl.X509_REQ_get_subject_name(request.get())) &&
               openSsl.X509_REQ_set_pubkey(request.get(), key.get()) == 1 &&
               openSsl.X509_REQ_sign(request.get(), key.get(), digest) > 0;
    }

    const YCertificateParameters& parameters;
    const YCertificateNameOpenSsl name;
    const Functions& openSsl;
    const std::int64_t notBefore;
    KeyHandle key;
    CertificateHandle certificate;
    RequestHandle request;
};

}  // namespace

YUnknownPointer<YCertificate> YCertificate::Create(const YCertificateParameters& parameters,
                                                   YReportMessageParams& error)
{
    if (!parameters.name) {
        error.SetErrorCode(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const Functions* const openSsl = FindFunctions(error);
    if (!openSsl) {
        return nullptr;
    }
    openSsl->ERR_clear_error();
    Creation creation(parameters, *openSsl);
    if (const unsigned failed = creation.Run()) {
        ReportFailure(failed, error);
        return nullptr;
    }
    return creation.TakeCertificate();
}

}  // namespace OpenSSL
