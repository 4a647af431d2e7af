// The CryptoAPI variant. What this system does not implement is probed for, and skipped by name. The import of PFX files, which loses handles
// here, is tried by a program that counts none (CertificateSamples).
#include "CertificateKit.h"

#include "YCertificateCapi.h"

namespace {

using CAPI::YCertificate;

class CapiCertificateTest : public CertificateTest
{
protected:
    YUnknownPointer<YCertificate> Create()
    {
        auto certificate = YCertificate::Create(parameters, error);
        EXPECT_TRUE(certificate) << error.GetText();
        return certificate;
    }
    std::wstring WriteEncoded(const YCertificate& certificate)
    {
        const auto& context =
            static_cast<const CAPI::YCertificateContext&>(certificate.GetContext());
        const CERT_CONTEXT& encoded = *context.GetCertificate();
        folder.Write(L"host.cer",
                     {reinterpret_cast<const char*>(encoded.pbCertEncoded), encoded.cbCertEncoded});
        return folder.GetPath(L"host.cer");
    }
};

bool ContainerExists()
{
    HCRYPTPROV provider = 0;
    const bool exists = ::CryptAcquireContextW(&provider, L"OrxTmpKeyContainer",
                                               L"Microsoft RSA SChannel Cryptographic Provider",
                                               PROV_RSA_SCHANNEL, CRYPT_SILENT);
    if (exists) {
        ::CryptReleaseContext(provider, 0);
    }
    return exists;
}

void LeaveContainerBehind()
{
    HCRYPTPROV provider = 0;
    ASSERT_TRUE(::CryptAcquireContextW(&provider, L"OrxTmpKeyContainer",
                                       L"Microsoft RSA SChannel Cryptographic Provider",
                                       PROV_RSA_SCHANNEL, CRYPT_NEWKEYSET | CRYPT_SILENT));
    ::CryptReleaseContext(provider, 0);
}

bool CanExport()
{
    const YUniqueCertificateStore store(
        ::CertOpenStore(CERT_STORE_PROV_MEMORY, 0, 0, CERT_STORE_CREATE_NEW_FLAG, nullptr));
    CRYPT_DATA_BLOB blob{};
    return ::PFXExportCertStoreEx(store.Get(), &blob, L"", nullptr, EXPORT_PRIVATE_KEYS);
}

bool CanEncodeRequests()
{
    CERT_REQUEST_INFO request{};
    DWORD size = 0;
    return ::CryptEncodeObject(X509_ASN_ENCODING, X509_CERT_REQUEST_TO_BE_SIGNED, &request, nullptr,
                               &size);
}

}  // namespace

TEST_F(CapiCertificateTest, IsReadAlikeByBothLibraries)
{
    FillName();
    for (const char* algorithm : {Parameters::sha1WithRsa, Parameters::sha256WithRsa}) {
        parameters.signatureAlgorithm = algorithm;
        const auto made = Create();
        ASSERT_TRUE(made);
        EXPECT_TRUE(made->IsCreatedHere());
        EXPECT_TRUE(made->GetContext().HasPrivateKey());
        ExpectAsWished(made->GetContext());
        const std::wstring path = WriteEncoded(*made);
        const auto here = YCertificate::Load(path.c_str(), error);
        ASSERT_TRUE(here) << error.GetText();
        EXPECT_FALSE(here->IsCreatedHere());
        EXPECT_FALSE(here->GetContext().HasPrivateKey());
        const auto there = OpenSSL::YCertificate::Load(path.c_str(), error);
        ASSERT_TRUE(there) << error.GetText();
        for (const YCertificateContextBase* context : {&here->GetContext(), &there->GetContext()}) {
            ExpectAsWished(*context);
            EXPECT_EQ(context->GetFingerprint(), made->GetContext().GetFingerprint());
            EXPECT_EQ(context->GetSerialNumber(), made->GetContext().GetSerialNumber());
            EXPECT_EQ(context->GetNotBefore(), made->GetContext().GetNotBefore());
        }
    }
}

TEST_F(CapiCertificateTest, KeepsNoKeyOnTheDisk)
{
    LeaveContainerBehind();  // by a process that died
    const auto certificate = Create();
    EXPECT_FALSE(ContainerExists());
    LeaveContainerBehind();
    parameters.keyBits = 1;
    ExpectFailure(MSG_KEY_GENERATION_FAILED, SslLib::Capi);
    EXPECT_FALSE(ContainerExists());
    LeaveContainerBehind();
    certificate->Save(folder.GetPath(L"host.pfx").c_str(), error);  // whether the system can or not
    EXPECT_FALSE(ContainerExists());
}

TEST_F(CapiCertificateTest, EachWrongWishFailsWithItsOwnMessage)
{
    const struct
    {
        void (*change)(Parameters& parameters, Name& name);
        unsigned messageId;
    } cases[] = {
        {[](Parameters& p, Name&) { p.name = nullptr; }, ERROR_INVALID_PARAMETER},
        {[](Parameters& p, Name&) { p.keyUsageKind = 3; }, MSG_KEY_USAGE_FAILED},
        {[](Parameters& p, Name&) { p.signatureAlgorithm = "1.2.840.113549.1.1.4"; },
         MSG_CERTIFICATE_SIGNING_FAILED},
        {[](Parameters&, Name& n) { n.SetField(Name::Country, L"FRA"); },
         MSG_CERTIFICATE_CREATION_FAILED},
        {[](Parameters& p, Name&) { p.expiration = INT64_MAX; }, MSG_CERTIFICATE_CREATION_FAILED},
    };
    const Parameters right = parameters;
    const Name rightName = name;
    for (const auto& c : cases) {
        parameters = right;
        name = rightName;
        c.change(parameters, name);
        ExpectFailure(c.messageId, SslLib::Capi);
    }
}

TEST_F(CapiCertificateTest, MakesARequest)
{
    if (!CanEncodeRequests()) {
        GTEST_SKIP() << "this system cannot encode requests (X509_CERT_REQUEST_TO_BE_SIGNED)";
    }
    parameters.flags = Parameters::requestFlag;
    EXPECT_TRUE(Create()->HasRequest());
}

TEST_F(CapiCertificateTest, IsLoadedAgainByBothLibraries)
{
    if (!CanExport()) {
        GTEST_SKIP() << "this system cannot export PFX files (PFXExportCertStoreEx)";
    }
    const auto made = Create();
    ASSERT_TRUE(made->Save(folder.GetPath(L"host.pfx").c_str(), error)) << error.GetText();
    const auto here = YCertificate::Load(folder.GetPath(L"host.pfx").c_str(), error);
    const auto there = OpenSSL::YCertificate::Load(folder.GetPath(L"host.pfx").c_str(), error);
    ASSERT_TRUE(here && there) << error.GetText();
    EXPECT_TRUE(here->GetContext().HasPrivateKey());
    EXPECT_TRUE(there->GetContext().HasPrivateKey());
}
