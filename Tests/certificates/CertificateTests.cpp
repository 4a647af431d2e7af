// Creating, saving and reading back by OpenSSL; what fails on the way, and what is left then.
#include "CertificateKit.h"

#include "support/ImportHook.h"

#include <ctime>
#include <set>

using OpenSSL::YCertificate;

TEST_F(CertificateTest, IsReadBackAsItWasMade)
{
    FillName();
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
        ExpectAsWished(context);
        EXPECT_GE(context.GetNotBefore(), before);
        EXPECT_LE(context.GetNotBefore(), after);
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
