// CertificateKit.h: what the tests of both libraries' certificates share.
#pragma once

#include "backends/ScratchFolder.h"

#include "YCreateCertificate.h"
#include "YMessages.h"
#include "YReportMessageParams.h"
#include "openssl/YCertificateOpenSsl.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

using Name = YCertificateNameBase;
using Parameters = YCertificateParameters;

inline constexpr std::int64_t in2060 = 2'840'140'800;
inline constexpr char pemStart[] = "-----BEGIN NEW CERTIFICATE REQUEST-----\r\n";

class CertificateTest : public testing::Test
{
protected:
    CertificateTest()
    {
        name.SetField(Name::CommonName, L"host.example.org");
        parameters.name = &name;
        parameters.expiration = in2060;
        parameters.keyBits = 1024;
    }

    YUnknownPointer<OpenSSL::YCertificate> Create()
    {
        auto certificate = OpenSSL::YCertificate::Create(parameters, error);
        EXPECT_TRUE(certificate) << error.GetText();
        return certificate;
    }
    // Nothing is made, and the message says so.
    void ExpectFailure(unsigned messageId, SslLib library = SslLib::OpenSsl)
    {
        YUnknownPointer<YCertificateBase> certificate;
        EXPECT_FALSE(CreateCertificate(library, parameters, certificate, error));
        EXPECT_FALSE(certificate);
        EXPECT_EQ(error.GetMessageId(), messageId);
    }
    // Accents, other scripts, and fields that are left out.
    void FillName()
    {
        name.SetField(Name::Organization, L"Soci\xE9t\xE9 \x682A\x5F0F");
        name.SetField(Name::Country, L"FR");
        name.SetField(Name::Email, L"rene@example.org");
    }
    // What the parameters decide.
    void ExpectAsWished(const YCertificateContextBase& context) const
    {
        for (int number = 0; number < Name::fieldCount; ++number) {
            const auto field = static_cast<Name::Field>(number);
            EXPECT_EQ(context.GetSubject()->GetField(field), name.GetField(field));
            EXPECT_EQ(context.GetIssuer()->GetField(field), name.GetField(field));
        }
        EXPECT_EQ(context.GetNotAfter(), parameters.expiration);
        EXPECT_STREQ(context.GetPublicKeyAlgorithm().c_str(),
                     YCertificateContextBase::rsaIdentifier);
        EXPECT_EQ(context.GetPublicKeyBits(), parameters.keyBits);
    }
    bool HasDetail() const
    {
        return error.GetInserts().size() == 1 && !error.GetInserts()[0].IsEmpty() &&
               std::wstring(error.GetText()).find(error.GetInserts()[0].c_str()) !=
                   std::wstring::npos;
    }

    Name name;
    Parameters parameters;
    YReportMessageParams error;
    ScratchFolder folder;
};
