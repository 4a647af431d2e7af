#include "YCreateCertificate.h"

#include "openssl/YCertificateOpenSsl.h"

#include <utility>

bool CreateCertificate(SslLib, const YCertificateParameters& parameters,
                       YUnknownPointer<YCertificateBase>& certificate, YReportMessageParams& error)
{
    YUnknownPointer<YCertificateBase> created = OpenSSL::YCertificate::Create(parameters, error);
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
