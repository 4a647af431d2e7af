#include "YCreateCertificate.h"

#include "YCertificateCapi.h"
#include "openssl/YCertificateOpenSsl.h"

#include <utility>

namespace {

YUnknownPointer<YCertificateBase> Create(SslLib library, const YCertificateParameters& parameters,
                                         YReportMessageParams& error)
{
    if (library == SslLib::Capi) {
        return CAPI::YCertificate::Create(parameters, error);
    }
    return OpenSSL::YCertificate::Create(parameters, error);
}

}  // namespace

bool CreateCertificate(SslLib library, const YCertificateParameters& parameters,
                       YUnknownPointer<YCertificateBase>& certificate, YReportMessageParams& error)
{
    YUnknownPointer<YCertificateBase> created = Create(library, parameters, error);
    if (!created) {
        return false;
    }
    certificate = std::move(created);
    return true;
}

bool CreateSelfSignedCertificate(const YCertificateNameBase* name, std::int64_t expiration,
                                 std::uint8_t flags, unsigned keyBits,
                                 const char* signatureAlgorithm,
                                 YUnknownPointer<YCertificateBase>& certificate,
                                 YReportMessageParams& error)
{
    return CreateCertificate(SslLib::OpenSsl,
                             {name, expiration, flags, YCertificateParameters::endEntityKey,
                              keyBits, signatureAlgorithm},
                             certificate, error);
}
