// Creating, saving and reading back; what fails on the way, and what is left then.
#include "backends/ScratchFolder.h"
#include "support/ImportHook.h"

#include "YCreateCertificate.h"
#include "YMessages.h"
#include "YReportMessageParams.h"
#include "openssl/YCertificateOpenSsl.h"

#include <gtest/gtest.h>

#include <ctime>
#include <set>
#include <string>

namespace {

using Name = YCertificateNameBase;
using Parameters = YCertificateParameters;
using OpenSSL::YCertificate;

constexpr std::int64_t in2060 = 2'840'140'800;
constexpr char pemStart[] = "-----BEGIN NEW CERTIFICATE REQUEST-----\r\n";

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

    YUnknownPointer<YCertificate> Create()
    {
        auto certificate = YCertificate::Create(parameters, error);
        EXPECT_TRUE(certificate) << error.GetText();
        return certificate;
    }
    // Nothing is made, and the message says so.
    void ExpectFailure(unsigned messageId)
    {
        YUnknownPointer<YCertificateBase> certificate;
        EXPECT_FALSE(CreateCertificate(SslLib::OpenSsl, parameters, certificate, error));
        EXPECT_FALSE(certificate);
        EXPECT_EQ(error.GetMessageId(), messageId);
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

}  // namespace

TEST_F(CertificateTest, IsReadBackAsItWasMade)
{
    name.SetField(Name::Organization, L"Soci\xE9t\xE9 \x682A\x5F0F");
    name.SetField(Name::Country, L"FR");
    const std::int64_t before = std::time(nullptr);
    const auto made = Create();
    const std::int64_t after = std::time(nullptr);
    ASSERT_TRUE(made->Save(folder.GetPath(L"h\xF4te \x5F0F.pfx").c_str(), error))
        << error.GetText();
    const auto loaded = YCertificate::Load(folder.GetPath(L"h\xF4te \x5F0F.pfx").c_str(), error);
    ASSERT_TRUE(loaded) << error.GetText();
    EXPECT_TRUE(made->IsCreatedHere());
    EXPECT_FALSE(loaded->IsCreatedHere());
    std::set<std::string> serials;
    for (const auto& certificate : {made, loaded}) {
        const YCertificateContextBase& context = certificate->GetContext();
        for (int field = 0; field < Name::fieldCount; ++field) {
            const auto wanted = name.GetField(static_cast<Name::Field>(field));
            EXPECT_EQ(context.GetSubject()->GetField(static_cast<Name::Field>(field)), wanted);
            EXPECT_EQ(context.GetIssuer()->GetField(static_cast<Name::Field>(field)), wanted);
        }
        EXPECT_GE(context.GetNotBefore(), before);
        EXPECT_LE(context.GetNotBefore(), after);
        EXPECT_EQ(context.GetNotAfter(), in2060);
        EXPECT_STREQ(context.GetPublicKeyAlgorithm().c_str(),
                     YCertificateContextBase::rsaIdentifier);
        EXPECT_EQ(context.GetPublicKeyBits(), 1024U);
        EXPECT_TRUE(context.HasPrivateKey());
        EXPECT_EQ(context.GetFingerprint(), made->GetContext().GetFingerprint());
        serials.insert(context.GetSerialNumber());
    }
    EXPECT_EQ(serials.size(), 1U);
    serials.insert(Create()->GetContext().GetSerialNumber());
    EXPECT_EQ(serials.size(), 2U) << "two certificates have one serial number";
}

TEST_F(CertificateTest, EachWrongWishFailsWithItsOwnMessage)
{
    const struct
    {
        void (*change)(Parameters& parameters, Name& name);
        unsigned messageId;
        bool hasReason;  // the library's
    } cases[] = {
        {[](Parameters& p, Name&) { p.name = nullptr; }, ERROR_INVALID_PARAMETER, false},
        {[](Parameters& p, Name&) { p.keyBits = 16; }, MSG_KEY_GENERATION_FAILED, true},
        {[](Parameters& p, Name&) { p.keyUsageKind = 3; }, MSG_KEY_USAGE_FAILED, false},
        {[](Parameters& p, Name&) { p.signatureAlgorithm = "1.2.840.113549.1.1.4"; },
         MSG_CERTIFICATE_SIGNING_FAILED, false},
        {[](Parameters& p, Name&) { p.signatureAlgorithm = nullptr; },
         MSG_CERTIFICATE_SIGNING_FAILED, false},
        {[](Parameters&, Name& n) { n.SetField(Name::Country, L"FRA"); },
         MSG_CERTIFICATE_CREATION_FAILED, true},
        {[](Parameters&, Name& n) { n.SetField(Name::Email, L"ren\xE9@example.org"); },
         MSG_CERTIFICATE_CREATION_FAILED, true},
        {[](Parameters&, Name& n) { n.SetField(Name::CommonName, std::wstring(65, L'x').c_str()); },
         MSG_CERTIFICATE_CREATION_FAILED, true},
    };
    const Parameters right = parameters;
    const Name rightName = name;
    for (const auto& c : cases) {
        parameters = right;
        name = rightName;
        c.change(parameters, name);
        ExpectFailure(c.messageId);
        EXPECT_EQ(HasDetail(), c.hasReason) << error.GetText();
    }
}

TEST_F(CertificateTest, RequestLiesBesideTheCertificateOnlyWhenWanted)
{
    ASSERT_TRUE(Create()->Save(folder.GetPath(L"plain.pfx").c_str(), error)) << error.GetText();
    EXPECT_EQ(folder.GetFiles(), std::set<std::wstring>{L"plain.pfx"});
    parameters.flags = Parameters::requestFlag;
    ASSERT_TRUE(Create()->Save(folder.GetPath(L"host.v1.p12").c_str(), error)) << error.GetText();
    EXPECT_EQ(folder.GetFiles(),
              (std::set<std::wstring>{L"host.v1.csr", L"host.v1.p12", L"plain.pfx"}));
    EXPECT_TRUE(folder.Read(L"host.v1.csr").starts_with(pemStart));

    const struct
    {
        const wchar_t* path;
        const wchar_t* request;
    } cases[] = {{L"C:\\certs\\host.pfx", L"C:\\certs\\host.csr"},
                 {L"C:\\certs.d\\host", L"C:\\certs.d\\host.csr"},
                 {L"host", L"host.csr"},
                 {L".pfx", L".csr"}};
    for (const auto& c : cases) {
        EXPECT_EQ(YCertificate::GetRequestPath(c.path), c.request);
    }
}

TEST_F(CertificateTest, RequestNeverTakesThePlaceOfTheKey)
{
    parameters.flags = Parameters::requestFlag;
    const auto certificate = Create();
    EXPECT_FALSE(certificate->Save(folder.GetPath(L"host.CSR").c_str(), error));
    EXPECT_EQ(error.GetMessageId(), unsigned{ERROR_INVALID_PARAMETER});
    EXPECT_TRUE(folder.GetFiles().empty());
}

TEST_F(CertificateTest, FailedSaveLeavesWhatStoodThere)
{
    parameters.flags = Parameters::requestFlag;
    const auto certificate = Create();
    EXPECT_FALSE(certificate->Save(folder.GetPath(L"none\\host.pfx").c_str(), error));
    EXPECT_EQ(error.GetMessageId(), unsigned{MSG_PKCS12_FAILED});
    EXPECT_TRUE(HasDetail()) << error.GetText();
    EXPECT_TRUE(folder.GetFiles().empty());

    // A file that cannot be replaced.
    folder.Write(L"host.pfx", "old");
    {
        const YUniqueFile held(::CreateFileW(folder.GetPath(L"host.pfx").c_str(), GENERIC_READ,
                                             FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(held);
        EXPECT_FALSE(certificate->Save(folder.GetPath(L"host.pfx").c_str(), error));
        EXPECT_TRUE(HasDetail()) << error.GetText();
    }
    EXPECT_EQ(folder.Read(L"host.pfx"), "old");
    EXPECT_EQ(folder.GetFiles(), std::set<std::wstring>{L"host.pfx"});

    // Of the request: the certificate is there by then.
    ASSERT_TRUE(::CreateDirectoryW(folder.GetPath(L"host.csr").c_str(), nullptr));
    EXPECT_FALSE(certificate->Save(folder.GetPath(L"host.pfx").c_str(), error));
    EXPECT_EQ(error.GetMessageId(), unsigned{MSG_CERTIFICATE_REQUEST_FAILED});
    EXPECT_TRUE(HasDetail()) << error.GetText();
    EXPECT_EQ(folder.GetFiles(), (std::set<std::wstring>{L"host.csr", L"host.pfx"}));
    EXPECT_TRUE(YCertificate::Load(folder.GetPath(L"host.pfx").c_str(), error));
}

TEST_F(CertificateTest, LoadTellsWhatIsNoCertificate)
{
    folder.Write(L"text.pfx", "This is no certificate.");
    folder.Write(L"empty.pfx", "");
    for (const wchar_t* file : {L"text.pfx", L"empty.pfx", L"none.pfx"}) {
        EXPECT_FALSE(YCertificate::Load(folder.GetPath(file).c_str(), error)) << file;
        EXPECT_EQ(error.GetMessageId(), unsigned{MSG_CERTIFICATE_NOT_READABLE});
        EXPECT_TRUE(HasDetail()) << error.GetText();
    }
}
