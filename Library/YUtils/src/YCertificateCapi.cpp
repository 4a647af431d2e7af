#include "YCertificateCapi.h"

#include "YCertificateFile.h"
#include "YCertificateNameCapi.h"
#include "YMessages.h"
#include "YReportMessageParams.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

namespace CAPI {

namespace {

constexpr wchar_t emptyPassword[] = L"";  // of zero length, which is another one than none

// The bytes of a PFX file, which the empty password does not hide: cleared at the end of the scope.
template <class Bytes>
class Cleared
{
public:
    explicit Cleared(Bytes& secret) : bytes(secret) {}
    Cleared(const Cleared&) = delete;
    Cleared& operator=(const Cleared&) = delete;
    ~Cleared()
    {
        if (!bytes.empty()) {
            ::SecureZeroMemory(bytes.data(), bytes.size());
        }
    }

private:
    Bytes& bytes;
};

void Report(unsigned messageId, YReportMessageParams& error)
{
    const DWORD code = ::GetLastError();
    error.SetErrorCode(messageId);
    error.AddInsert(code != ERROR_SUCCESS ? YGetErrorText(code) : std::wstring());
}

std::int64_t ToSeconds(const FILETIME& time)
{
    constexpr std::int64_t ticksPerSecond = 10'000'000;
    constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;
    const std::int64_t ticks =
        static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return ticks / ticksPerSecond - secondsFrom1601To1970;
}

// The certificate in a store of its own, its key, if it has one, in the container: what the export
// looks for.
bool PutInto(HCERTSTORE store, const YTemporaryKeyContainer& container,
             const YCertificateContext& context)
{
    const PCCERT_CONTEXT original = context.GetCertificate();
    PCCERT_CONTEXT copy = nullptr;
    if (!::CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING, original->pbCertEncoded,
                                            original->cbCertEncoded, CERT_STORE_ADD_ALWAYS,
                                            &copy)) {
        return false;
    }
    const YUniqueCertificateContext owner(copy);
    if (!context.HasPrivateKey()) {
        return true;
    }
    CERT_KEY_CONTEXT key{};
    DWORD size = sizeof key;
    HCRYPTKEY handle = 0;
    if (!::CertGetCertificateContextProperty(original, CERT_KEY_CONTEXT_PROP_ID, &key, &size) ||
        !::CryptGetUserKey(key.hCryptProv, key.dwKeySpec, &handle)) {
        return false;
    }
    const YUniqueCryptKey keyOwner(handle);
    YKeyBlob blob;
    return blob.Export(handle) && blob.ImportInto(container.Get()) && container.BindTo(copy);
}

// As PKCS#12, whose encryption with the empty password hides nothing: the caller's file does that.
bool Pack(const YCertificateContext& context, std::vector<BYTE>& bytes)
{
    const YTemporaryKeyContainer container;
    const YUniqueCertificateStore store(
        ::CertOpenStore(CERT_STORE_PROV_MEMORY, 0, 0, CERT_STORE_CREATE_NEW_FLAG, nullptr));
    if (!container.Get() || !store || !PutInto(store.Get(), container, context)) {
        return false;
    }
    constexpr DWORD flags = EXPORT_PRIVATE_KEYS | REPORT_NOT_ABLE_TO_EXPORT_PRIVATE_KEY;
    CRYPT_DATA_BLOB blob{};
    if (!::PFXExportCertStoreEx(store.Get(), &blob, emptyPassword, nullptr, flags)) {
        return false;
    }
    bytes.resize(blob.cbData);
    blob.pbData = bytes.data();
    return ::PFXExportCertStoreEx(store.Get(), &blob, emptyPassword, nullptr, flags);
}

// With the line "-----BEGIN NEW CERTIFICATE REQUEST-----". Empty: GetLastError() tells why.
std::string ToText(const std::vector<BYTE>& request)
{
    std::string text;
    DWORD length = 0;
    const auto convert = [&](char* buffer) {
        return ::CryptBinaryToStringA(request.data(), static_cast<DWORD>(request.size()),
                                      CRYPT_STRING_BASE64REQUESTHEADER, buffer, &length);
    };
    if (convert(nullptr)) {
        text.resize(length);
        text.resize(convert(text.data()) ? length : 0);
    }
    return text;
}

bool WriteFile(const wchar_t* path, YCertificateFile::Readers readers, const void* bytes,
               std::size_t count)
{
    YCertificateFile file(path, readers);
    return count > 0 && file.Create() && file.Write(bytes, count) && file.Commit();
}

YUnknownPointer<YCertificate> MakeLoaded(PCCERT_CONTEXT certificate)
{
    return YUnknownPointer<YCertificate>::Make(
        YUnknownPointer<YCertificateContext>::Make(YUniqueCertificateContext(certificate)), false);
}

bool HasKey(PCCERT_CONTEXT certificate)
{
    CERT_KEY_CONTEXT key{};
    DWORD size = sizeof key;
    return ::CertGetCertificateContextProperty(certificate, CERT_KEY_CONTEXT_PROP_ID, &key, &size);
}

// Null: another password, or no certificate with a key inside. The key stays in memory.
YUnknownPointer<YCertificate> Unpack(CRYPT_DATA_BLOB& blob)
{
    constexpr DWORD flags = CRYPT_EXPORTABLE | PKCS12_NO_PERSIST_KEY;
    const YUniqueCertificateStore store(::PFXImportCertStore(&blob, emptyPassword, flags));
    if (!store) {
        return nullptr;
    }
    PCCERT_CONTEXT found = nullptr;  // each step of the walk frees the one before
    do {
        found = ::CertEnumCertificatesInStore(store.Get(), found);
    } while (found && !HasKey(found));
    if (!found) {
        return nullptr;
    }
    return MakeLoaded(found);
}

YUnknownPointer<YCertificate> ReadFile(const wchar_t* path)
{
    std::ifstream stream(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    const Cleared clearing(bytes);
    CRYPT_DATA_BLOB blob{static_cast<DWORD>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data())};
    if (blob.cbData > 0 && ::PFXIsPFXBlob(&blob)) {
        return Unpack(blob);
    }
    const void* certificate = nullptr;
    if (!::CryptQueryObject(CERT_QUERY_OBJECT_BLOB, &blob, CERT_QUERY_CONTENT_FLAG_CERT,
                            CERT_QUERY_FORMAT_FLAG_ALL, 0, nullptr, nullptr, nullptr, nullptr,
                            nullptr, &certificate)) {
        return nullptr;
    }
    return MakeLoaded(static_cast<PCCERT_CONTEXT>(certificate));
}

}  // namespace

YCertificateContext::YCertificateContext(YUniqueCertificateContext newCertificate)
    : certificate(std::move(newCertificate))
{}

YCertificateContext::~YCertificateContext() = default;

YUnknownPointer<YCertificateNameBase> YCertificateContext::GetSubject() const
{
    return YUnknownPointer<YCertificateNameCapi>::Make(certificate.Get()->pCertInfo->Subject);
}

YUnknownPointer<YCertificateNameBase> YCertificateContext::GetIssuer() const
{
    return YUnknownPointer<YCertificateNameCapi>::Make(certificate.Get()->pCertInfo->Issuer);
}

std::string YCertificateContext::GetSerialNumber() const
{
    const CRYPT_INTEGER_BLOB& number = certificate.Get()->pCertInfo->SerialNumber;
    std::string text;
    for (DWORD place = number.cbData; place > 0; --place) {  // the last byte is the highest
        const BYTE byte = number.pbData[place - 1];
        if (byte != 0 || !text.empty() || place == 1) {
            text += "0123456789ABCDEF"[byte >> 4];
            text += "0123456789ABCDEF"[byte & 15];
        }
    }
    return text;
}

std::int64_t YCertificateContext::GetNotBefore() const
{
    return ToSeconds(certificate.Get()->pCertInfo->NotBefore);
}

std::int64_t YCertificateContext::GetNotAfter() const
{
    return ToSeconds(certificate.Get()->pCertInfo->NotAfter);
}

std::string YCertificateContext::GetPublicKeyAlgorithm() const
{
    return certificate.Get()->pCertInfo->SubjectPublicKeyInfo.Algorithm.pszObjId;
}

unsigned YCertificateContext::GetPublicKeyBits() const
{
    return ::CertGetPublicKeyLength(X509_ASN_ENCODING,
                                    &certificate.Get()->pCertInfo->SubjectPublicKeyInfo);
}

YCertificateContextBase::Fingerprint YCertificateContext::GetFingerprint() const
{
    Fingerprint fingerprint{};
    DWORD size = static_cast<DWORD>(fingerprint.size());
    ::CertGetCertificateContextProperty(certificate.Get(), CERT_SHA1_HASH_PROP_ID,
                                        fingerprint.data(), &size);
    return fingerprint;
}

bool YCertificateContext::HasPrivateKey() const
{
    return HasKey(certificate.Get());
}

YUnknownPointer<YCertificate> YCertificate::Load(const wchar_t* path, YReportMessageParams& error)
{
    ::SetLastError(ERROR_SUCCESS);
    YUnknownPointer<YCertificate> certificate;
    if (path) {
        certificate = ReadFile(path);
    }
    if (!certificate) {
        Report(MSG_CERTIFICATE_NOT_READABLE, error);
    }
    return certificate;
}

YCertificate::YCertificate(YUnknownPointer<YCertificateContext> certificate, bool isCreatedHere,
                           std::vector<BYTE> encodedRequest)
    : YCertificateBase(certificate, isCreatedHere),
      context(std::move(certificate)),
      request(std::move(encodedRequest))
{}

YCertificate::~YCertificate() = default;

bool YCertificate::Save(const wchar_t* path, YReportMessageParams& error) const
{
    if (!CheckPaths(path, error)) {
        return false;
    }
    std::vector<BYTE> container;
    const Cleared clearing(container);
    if (!Pack(*context, container) ||
        !WriteFile(path, YCertificateFile::Readers::Owner, container.data(), container.size())) {
        Report(MSG_PKCS12_FAILED, error);
        return false;
    }
    const std::string text = ToText(request);
    if (HasRequest() && !WriteFile(GetRequestPath(path).c_str(), YCertificateFile::Readers::Folder,
                                   text.data(), text.size())) {
        Report(MSG_CERTIFICATE_REQUEST_FAILED, error);
        return false;
    }
    return true;
}

}  // namespace CAPI
