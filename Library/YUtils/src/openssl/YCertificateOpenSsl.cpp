#include "YCertificateOpenSsl.h"

#include "YCertificateFile.h"
#include "YCertificateNameOpenSsl.h"
#include "YMessages.h"
#include "YReportMessageParams.h"

#include <chrono>
#include <utility>
#include <vector>

namespace OpenSSL {

namespace {

constexpr char emptyPassword[] = "";  // of zero length, which is another one than none
constexpr int flushCommand = 11;  // BIO_CTRL_FLUSH

// 0: not a time.
std::int64_t ReadTime(const Time* time)
{
    std::tm parts{};
    if (!time || GetFunctions().ASN1_TIME_to_tm(time, &parts) != 1) {
        return 0;
    }
    using namespace std::chrono;
    const sys_days day = year(parts.tm_year + 1900) /
                         month(static_cast<unsigned>(parts.tm_mon) + 1) /
                         std::chrono::day(static_cast<unsigned>(parts.tm_mday));
    return seconds(day.time_since_epoch() + hours(parts.tm_hour) + minutes(parts.tm_min) +
                   seconds(parts.tm_sec))
        .count();
}

std::string ToHexadecimal(const std::vector<unsigned char>& bytes)
{
    std::string text;
    for (const unsigned char byte : bytes) {
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    return text;
}

// The library opens files by UTF-8 names, whatever the system's code page.
BioHandle OpenFile(const std::wstring& path, const char* mode)
{
    return BioHandle(
        GetFunctions().BIO_new_file(YUnicodeString(path).ToBytes(CP_UTF8).c_str(), mode));
}

// Creates and writes it by the library, so that a failure is told in the library's words.
template <class Write>
bool WriteTemporaryFile(YCertificateFile& file, const char* mode, const Write& write)
{
    if (!file.Create()) {
        const DWORD error = ::GetLastError();
        // In the folder that refuses new files this fails as well.
        if (OpenFile(file.GetTemporaryPath(), mode)) {
            ::DeleteFileW(file.GetTemporaryPath().c_str());
        }
        ::SetLastError(error);
        return false;
    }
    const BioHandle bio = OpenFile(file.GetTemporaryPath(), mode);
    // The run time keeps what was written; whether the disk takes it shows when that is flushed.
    return bio && write(bio.get()) == 1 &&
           GetFunctions().BIO_ctrl(bio.get(), flushCommand, 0, nullptr) == 1;
}

template <class Write>
bool WriteFile(const wchar_t* path, YCertificateFile::Readers readers, const char* mode,
               const Write& write, unsigned messageId, YReportMessageParams& error)
{
    GetFunctions().ERR_clear_error();
    ::SetLastError(ERROR_SUCCESS);
    YCertificateFile file(path, readers);
    if (WriteTemporaryFile(file, mode, write) && file.Commit()) {
        return true;
    }
    ReportFailure(messageId, error, ::GetLastError());
    return false;
}

YUnknownPointer<YCertificate> MakeLoaded(CertificateHandle certificate, KeyHandle key)
{
    return YUnknownPointer<YCertificate>::Make(
        YUnknownPointer<YCertificateContext>::Make(std::move(certificate), std::move(key)), false);
}

// Null: another password, or no certificate inside.
YUnknownPointer<YCertificate> Unpack(Pkcs12* container)
{
    Key* key = nullptr;
    Certificate* certificate = nullptr;
    const int isParsed =
        GetFunctions().PKCS12_parse(container, emptyPassword, &key, &certificate, nullptr);
    KeyHandle keyOwner(key);
    CertificateHandle certificateOwner(certificate);
    if (isParsed != 1 || !certificate) {
        return nullptr;
    }
    return MakeLoaded(std::move(certificateOwner), std::move(keyOwner));
}

// Each form is tried on the file from its beginning.
YUnknownPointer<YCertificate> ReadFile(const std::wstring& path)
{
    const Functions& openSsl = GetFunctions();
    BioHandle bio = OpenFile(path, "rb");
    if (!bio) {
        return nullptr;
    }
    if (const Pkcs12Handle container{openSsl.d2i_PKCS12_bio(bio.get(), nullptr)}) {
        return Unpack(container.get());
    }
    bio = OpenFile(path, "rb");
    CertificateHandle certificate(bio ? openSsl.d2i_X509_bio(bio.get(), nullptr) : nullptr);
    if (!certificate) {
        bio = OpenFile(path, "rb");
        // With a password to try, the library asks nobody at a console for one.
        certificate.reset(bio ? openSsl.PEM_read_bio_X509(bio.get(), nullptr, nullptr,
                                                          const_cast<char*>(emptyPassword))
                              : nullptr);
    }
    if (!certificate) {
        return nullptr;
    }
    return MakeLoaded(std::move(certificate), nullptr);
}

}  // namespace

YCertificateContext::YCertificateContext(CertificateHandle newCertificate, KeyHandle newKey)
    : certificate(std::move(newCertificate)), key(std::move(newKey))
{}

YCertificateContext::~YCertificateContext() = default;

YUnknownPointer<YCertificateNameBase> YCertificateContext::GetSubject() const
{
    return YUnknownPointer<YCertificateNameOpenSsl>::Make(
        GetFunctions().X509_get_subject_name(certificate.get()));
}

YUnknownPointer<YCertificateNameBase> YCertificateContext::GetIssuer() const
{
    return YUnknownPointer<YCertificateNameOpenSsl>::Make(
        GetFunctions().X509_get_issuer_name(certificate.get()));
}

std::string YCertificateContext::GetSerialNumber() const
{
    const Functions& openSsl = GetFunctions();
    const BigNumberHandle number(
        openSsl.ASN1_INTEGER_to_BN(openSsl.X509_get_serialNumber(certificate.get()), nullptr));
    if (!number) {
        return {};
    }
    const int bytesNeeded = (openSsl.BN_num_bits(number.get()) + 7) / 8;
    std::vector<unsigned char> bytes(static_cast<std::size_t>(bytesNeeded));
    openSsl.BN_bn2bin(number.get(), bytes.data());
    return bytes.empty() ? "00" : ToHexadecimal(bytes);
}

std::int64_t YCertificateContext::GetNotBefore() const
{
    return ReadTime(GetFunctions().X509_getm_notBefore(certificate.get()));
}

std::int64_t YCertificateContext::GetNotAfter() const
{
    return ReadTime(GetFunctions().X509_getm_notAfter(certificate.get()));
}

std::string YCertificateContext::GetPublicKeyAlgorithm() const
{
    const Functions& openSsl = GetFunctions();
    ObjectIdentifier* identifier = nullptr;
    char text[80] = {};
    constexpr int asNumbers = 1;
    if (openSsl.X509_PUBKEY_get0_param(&identifier, nullptr, nullptr, nullptr,
                                       openSsl.X509_get_X509_PUBKEY(certificate.get())) == 1) {
        openSsl.OBJ_obj2txt(text, sizeof text, identifier, asNumbers);
    }
    return text;
}

unsigned YCertificateContext::GetPublicKeyBits() const
{
    const KeyHandle publicKey(GetFunctions().X509_get_pubkey(certificate.get()));
    return publicKey ? static_cast<unsigned>(GetFunctions().EVP_PKEY_get_bits(publicKey.get())) : 0;
}

YCertificateContextBase::Fingerprint YCertificateContext::GetFingerprint() const
{
    Fingerprint fingerprint{};
    const Functions& openSsl = GetFunctions();
    openSsl.X509_digest(certificate.get(), openSsl.EVP_sha1(), fingerprint.data(), nullptr);
    return fingerprint;
}

YUnknownPointer<YCertificate> YCertificate::Load(const wchar_t* path, YReportMessageParams& error)
{
    if (!path) {
        error.SetErrorCode(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const Functions* const openSsl = FindFunctions(error);
    if (!openSsl) {
        return nullptr;
    }
    openSsl->ERR_clear_error();
    YUnknownPointer<YCertificate> certificate = ReadFile(path);
    if (!certificate) {
        ReportFailure(MSG_CERTIFICATE_NOT_READABLE, error);
    }
    openSsl->ERR_clear_error();  // of the forms that it had not
    return certificate;
}

YCertificate::YCertificate(YUnknownPointer<YCertificateContext> certificate, bool isCreatedHere,
                           RequestHandle newRequest)
    : YCertificateBase(certificate, isCreatedHere),
      context(std::move(certificate)),
      request(std::move(newRequest))
{}

YCertificate::~YCertificate() = default;

bool YCertificate::Save(const wchar_t* path, YReportMessageParams& error) const
{
    if (!CheckPaths(path, error)) {
        return false;
    }
    const Functions& openSsl = GetFunctions();
    openSsl.ERR_clear_error();
    const Pkcs12Handle container(openSsl.PKCS12_create(emptyPassword, nullptr, context->GetKey(),
                                                       context->GetCertificate(), nullptr, 0, 0, 0,
                                                       0, 0));
    if (!container) {
        ReportFailure(MSG_PKCS12_FAILED, error);
        return false;
    }
    const auto writeCertificate = [&](Bio* bio) {
        return openSsl.i2d_PKCS12_bio(bio, container.get());
    };
    const auto writeRequest = [&](Bio* bio) {
        return openSsl.PEM_write_bio_X509_REQ_NEW(bio, request.get());
    };
    return WriteFile(path, YCertificateFile::Readers::Owner, "wb", writeCertificate,
                     MSG_PKCS12_FAILED, error) &&
           (!request || WriteFile(GetRequestPath(path).c_str(), YCertificateFile::Readers::Folder,
                                  "w", writeRequest, MSG_CERTIFICATE_REQUEST_FAILED, error));
}

}  // namespace OpenSSL
