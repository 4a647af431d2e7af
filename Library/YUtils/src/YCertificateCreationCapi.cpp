// The making of a certificate by the system, step by step.
#include "YCertificateCapi.h"
#include "YCertificateNameCapi.h"
#include "YMessages.h"
#include "YReportMessageParams.h"

#include <cstring>
#include <utility>

namespace CAPI {

namespace {

constexpr DWORD serialBytes = 20;
constexpr BYTE serialTopMask = 0x7F;  // 159 bits

bool ToFileTime(std::int64_t seconds, FILETIME& time)
{
    constexpr std::int64_t ticksPerSecond = 10'000'000;
    constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;
    constexpr std::int64_t endOf9999 = 253'402'300'799;  // the last that a certificate can say
    if (seconds < -secondsFrom1601To1970 || seconds > endOf9999) {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    const std::int64_t ticks = (seconds + secondsFrom1601To1970) * ticksPerSecond;
    time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    return true;
}

// An encoded structure or extension.
bool Encode(const char* type, const void* structure, std::vector<BYTE>& encoded)
{
    BYTE* bytes = nullptr;
    DWORD size = 0;
    if (!::CryptEncodeObjectEx(X509_ASN_ENCODING, type, structure, CRYPT_ENCODE_ALLOC_FLAG, nullptr,
                               &bytes, &size)) {
        return false;
    }
    const YUniqueLocalMemory owner(bytes);
    encoded.assign(bytes, bytes + size);
    return true;
}

CRYPT_DATA_BLOB ToBlob(std::vector<BYTE>& bytes)
{
    return {static_cast<DWORD>(bytes.size()), bytes.data()};
}

// One creation: each step keeps what it made, or says which step it was.
class Creation
{
public:
    explicit Creation(const YCertificateParameters& wanted) : parameters(wanted), name(*wanted.name)
    {
        ::GetSystemTimeAsFileTime(&info.NotBefore);
    }

    // 0, or the id of the step that failed; GetLastError() tells why, or nothing.
    unsigned Run()
    {
        if (!GenerateKey()) {
            return MSG_KEY_GENERATION_FAILED;
        }
        info.dwVersion = CERT_V3;
        if (!SetSerialNumber()) {
            return MSG_CERTIFICATE_SIGNING_FAILED;
        }
        if (!SetKeyAndNames() || !ToFileTime(parameters.expiration, info.NotAfter)) {
            return MSG_CERTIFICATE_CREATION_FAILED;
        }
        if (const unsigned failed = AddExtensions()) {
            return failed;
        }
        std::vector<BYTE> encoded;
        if (!IsAlgorithmKnown() || !Sign(X509_CERT_TO_BE_SIGNED, &info, encoded)) {
            return MSG_CERTIFICATE_SIGNING_FAILED;
        }
        const bool wantsRequest = parameters.flags & YCertificateParameters::requestFlag;
        if (wantsRequest && !MakeRequest()) {
            return MSG_CERTIFICATE_REQUEST_FAILED;
        }
        return Bind(encoded) ? 0 : MSG_CERTIFICATE_CREATION_FAILED;
    }

    YUnknownPointer<YCertificate> TakeCertificate()
    {
        return YUnknownPointer<YCertificate>::Make(
            YUnknownPointer<YCertificateContext>::Make(std::move(certificate)), true,
            std::move(request));
    }

private:
    // Made in the container and at once moved on, into a provider that writes nothing to the disk
    // and, unlike that of the container, knows SHA-256.
    bool GenerateKey()
    {
        YKeyBlob blob;
        {
            const YTemporaryKeyContainer container;
            HCRYPTKEY key = 0;
            if (!container.Get() || parameters.keyBits > 0xFFFF ||
                !::CryptGenKey(container.Get(), AT_KEYEXCHANGE,
                               parameters.keyBits << 16 | CRYPT_EXPORTABLE, &key)) {
                return false;
            }
            const YUniqueCryptKey owner(key);
            if (!blob.Export(key)) {
                return false;
            }
        }
        HCRYPTPROV made = 0;
        if (!::CryptAcquireContextW(&made, nullptr, MS_ENH_RSA_AES_PROV_W, PROV_RSA_AES,
                                    CRYPT_VERIFYCONTEXT | CRYPT_SILENT)) {
            return false;
        }
        provider.Reset(made);
        return blob.ImportInto(made);
    }

    bool SetSerialNumber()
    {
        serial.resize(serialBytes);
        if (!::CryptGenRandom(provider.Get(), serialBytes, serial.data())) {
            return false;
        }
        serial.back() &= serialTopMask;  // the last byte is the highest
        info.SerialNumber = ToBlob(serial);
        return true;
    }

    bool SetKeyAndNames()
    {
        YCertificateNameBase::Field failed{};
        YReportMessageParams ignored;
        if (!name.CheckLimits(failed, ignored)) {  // the system looks at none of them
            ::SetLastError(ERROR_INVALID_PARAMETER);
            return false;
        }
        DWORD size = 0;
        const auto exportKey = [&](CERT_PUBLIC_KEY_INFO* key) {
            return ::CryptExportPublicKeyInfo(provider.Get(), AT_KEYEXCHANGE, X509_ASN_ENCODING,
                                              key, &size);
        };
        if (!name.Encode(subject) || !exportKey(nullptr)) {
            return false;
        }
        publicKey.resize(size);
        auto* const key = reinterpret_cast<CERT_PUBLIC_KEY_INFO*>(publicKey.data());
        if (!exportKey(key)) {
            return false;
        }
        info.SubjectPublicKeyInfo = *key;
        info.Subject = info.Issuer = ToBlob(subject);
        return true;
    }

    // The same as OpenSSL's, in the same order.
    unsigned AddExtensions()
    {
        if (!AddBasicConstraints()) {
            return MSG_BASIC_CONSTRAINTS_FAILED;
        }
        if (!AddKeyUsage()) {
            return MSG_KEY_USAGE_FAILED;
        }
        if (!AddSubjectKeyIdentifier()) {
            return MSG_SUBJECT_KEY_IDENTIFIER_FAILED;
        }
        if (!AddAuthorityKeyIdentifier()) {
            return MSG_AUTHORITY_KEY_IDENTIFIER_FAILED;
        }
        if (!AddExtendedKeyUsage()) {
            return MSG_EXTENDED_KEY_USAGE_FAILED;
        }
        info.rgExtension = extensions;
        return 0;
    }

    bool AddExtension(const char* identifier, const char* type, const void* structure)
    {
        std::vector<BYTE>& encoded = encodedExtensions[info.cExtension];
        if (!Encode(type, structure, encoded)) {
            return false;
        }
        extensions[info.cExtension++] = {const_cast<char*>(identifier), FALSE, ToBlob(encoded)};
        return true;
    }

    bool AddBasicConstraints()
    {
        const CERT_BASIC_CONSTRAINTS2_INFO constraints{TRUE, TRUE, 1};
        return AddExtension(szOID_BASIC_CONSTRAINTS2, X509_BASIC_CONSTRAINTS2, &constraints);
    }

    bool AddKeyUsage()
    {
        BYTE usage = 0;
        if (parameters.keyUsageKind == YCertificateParameters::endEntityKey) {
            usage = CERT_DIGITAL_SIGNATURE_KEY_USAGE | CERT_KEY_AGREEMENT_KEY_USAGE |
                    CERT_KEY_ENCIPHERMENT_KEY_USAGE | CERT_DATA_ENCIPHERMENT_KEY_USAGE;
        } else if (parameters.keyUsageKind == YCertificateParameters::signingKey) {
            usage = CERT_DIGITAL_SIGNATURE_KEY_USAGE | CERT_NON_REPUDIATION_KEY_USAGE |
                    CERT_KEY_CERT_SIGN_KEY_USAGE | CERT_CRL_SIGN_KEY_USAGE;
        } else {
            ::SetLastError(ERROR_SUCCESS);
            return false;
        }
        DWORD unusedBits = 0;
        while (!(usage & 1u << unusedBits)) {
            ++unusedBits;
        }
        const CRYPT_BIT_BLOB bits{1, &usage, unusedBits};
        return AddExtension(szOID_KEY_USAGE, X509_KEY_USAGE, &bits);
    }

    bool AddSubjectKeyIdentifier()
    {
        const CRYPT_BIT_BLOB& bits = info.SubjectPublicKeyInfo.PublicKey;
        DWORD size = sizeof keyIdentifier;
        if (!::CryptHashCertificate(0, CALG_SHA1, 0, bits.pbData, bits.cbData, keyIdentifier,
                                    &size)) {
            return false;
        }
        const CRYPT_DATA_BLOB identifier{size, keyIdentifier};
        return AddExtension(szOID_SUBJECT_KEY_IDENTIFIER, X509_OCTET_STRING, &identifier);
    }

    bool AddAuthorityKeyIdentifier()
    {
        CERT_ALT_NAME_ENTRY issuer{};
        issuer.dwAltNameChoice = CERT_ALT_NAME_DIRECTORY_NAME;
        issuer.DirectoryName = info.Issuer;
        const CERT_AUTHORITY_KEY_ID2_INFO identifier{
            {sizeof keyIdentifier, keyIdentifier}, {1, &issuer}, info.SerialNumber};
        return AddExtension(szOID_AUTHORITY_KEY_IDENTIFIER2, X509_AUTHORITY_KEY_ID2, &identifier);
    }

    bool AddExtendedKeyUsage()
    {
        const bool isClient = parameters.flags & YCertificateParameters::clientFlag;
        const char* purpose = isClient ? szOID_PKIX_KP_CLIENT_AUTH : szOID_PKIX_KP_SERVER_AUTH;
        const CERT_ENHKEY_USAGE usage{1, const_cast<char**>(&purpose)};
        return AddExtension(szOID_ENHANCED_KEY_USAGE, X509_ENHANCED_KEY_USAGE, &usage);
    }

    bool IsAlgorithmKnown()
    {
        ::SetLastError(ERROR_SUCCESS);
        const char* const algorithm =
            parameters.signatureAlgorithm ? parameters.signatureAlgorithm : "";
        return std::strcmp(algorithm, YCertificateParameters::sha1WithRsa) == 0 ||
               std::strcmp(algorithm, YCertificateParameters::sha256WithRsa) == 0;
    }

    bool Sign(const char* type, const void* structure, std::vector<BYTE>& encoded)
    {
        CRYPT_ALGORITHM_IDENTIFIER algorithm{};
        algorithm.pszObjId = const_cast<char*>(parameters.signatureAlgorithm);
        info.SignatureAlgorithm = algorithm;
        DWORD size = 0;
        const auto sign = [&](BYTE* bytes) {
            return ::CryptSignAndEncodeCertificate(provider.Get(), AT_KEYEXCHANGE,
                                                   X509_ASN_ENCODING, type, structure, &algorithm,
                                                   nullptr, bytes, &size);
        };
        if (!sign(nullptr)) {
            return false;
        }
        encoded.resize(size);
        const bool isSigned = sign(encoded.data());
        encoded.resize(size);  // the first answer was an upper bound
        return isSigned;
    }

    bool MakeRequest()
    {
        CERT_REQUEST_INFO wanted{};
        wanted.dwVersion = CERT_REQUEST_V1;
        wanted.Subject = info.Subject;
        wanted.SubjectPublicKeyInfo = info.SubjectPublicKeyInfo;
        return Sign(X509_CERT_REQUEST_TO_BE_SIGNED, &wanted, request);
    }

    // The context owns the provider from here on.
    bool Bind(const std::vector<BYTE>& encoded)
    {
        certificate.Reset(::CertCreateCertificateContext(X509_ASN_ENCODING, encoded.data(),
                                                         static_cast<DWORD>(encoded.size())));
        CERT_KEY_CONTEXT key{};
        key.cbSize = sizeof key;
        key.hCryptProv = provider.Get();
        key.dwKeySpec = AT_KEYEXCHANGE;
        if (!certificate || !::CertSetCertificateContextProperty(
                                certificate.Get(), CERT_KEY_CONTEXT_PROP_ID, 0, &key)) {
            return false;
        }
        static_cast<void>(provider.Detach());
        return true;
    }

    const YCertificateParameters& parameters;
    const YCertificateNameCapi name;
    CERT_INFO info{};  // points into the vectors below
    YUniqueCryptProvider provider;
    YUniqueCertificateContext certificate;
    std::vector<BYTE> serial;
    std::vector<BYTE> subject;
    std::vector<BYTE> publicKey;  // a CERT_PUBLIC_KEY_INFO and what it points to
    BYTE keyIdentifier[20] = {};  // SHA-1
    std::vector<BYTE> encodedExtensions[5];
    CERT_EXTENSION extensions[5] = {};
    std::vector<BYTE> request;
};

}  // namespace

YUnknownPointer<YCertificate> YCertificate::Create(const YCertificateParameters& parameters,
                                                   YReportMessageParams& error)
{
    if (!parameters.name) {
        error.SetErrorCode(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    Creation creation(parameters);
    if (const unsigned failed = creation.Run()) {
        const DWORD code = ::GetLastError();
        error.SetErrorCode(failed);
        error.AddInsert(code != ERROR_SUCCESS ? YGetErrorText(code) : std::wstring());
        return nullptr;
    }
    return creation.TakeCertificate();
}

}  // namespace CAPI
