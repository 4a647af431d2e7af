// Every call of OpenSSL's fails once; the disk is full; what is left then, in memory and on the disk.
#include "CertificateKit.h"
#include "OpenSslWatch.h"

#include "support/CaseName.h"
#include "support/ImportHook.h"

#include <set>
#include <thread>
#include <vector>

namespace {

using OpenSSL::Functions;
using OpenSSL::YCertificate;

struct FaultCase
{
    const char* name;
    std::unique_ptr<OpenSslFault> (*failAt)(int call);
    std::vector<unsigned> messageIds;  // of the first call's failure, the second's, ...
};

#define FAULT(function, ...)                                                \
    FaultCase                                                               \
    {                                                                       \
#function, &FailAt < &Functions::function>, std::vector < unsigned> \
        {                                                                   \
            __VA_ARGS__                                                     \
        }                                                                   \
    }

class CertificateFault : public CertificateTest, public testing::WithParamInterface<FaultCase>
{
protected:
    CertificateFault()
    {
        parameters.keyBits = 512;
        parameters.flags = Parameters::requestFlag;
    }

    // 0: nothing failed.
    unsigned CreateAndSave()
    {
        const auto certificate = YCertificate::Create(parameters, error);
        const bool isSaved =
            certificate && certificate->Save(folder.GetPath(L"host.pfx").c_str(), error);
        return isSaved ? 0 : error.GetMessageId();
    }
    void DeleteFiles()
    {
        ::DeleteFileW(folder.GetPath(L"host.pfx").c_str());
        ::DeleteFileW(folder.GetPath(L"host.csr").c_str());
    }
};

BOOL WINAPI WriteNothing(HANDLE, const void*, DWORD, DWORD* written, OVERLAPPED*)
{
    *written = 0;
    ::SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

}  // namespace

TEST_P(CertificateFault, IsToldAndLeavesNothing)
{
    const FaultCase& c = GetParam();
    const OpenSslMemory memory;
    ASSERT_EQ(CreateAndSave(), 0U) << error.GetText();  // makes what is made once and kept
    DeleteFiles();
    const long blocks = memory.CountBlocks();
    {
        const auto held = Create();
        EXPECT_GT(memory.CountBlocks(), blocks);
    }
    for (std::size_t call = 1; call <= c.messageIds.size() + 1; ++call) {
        const auto fault = c.failAt(static_cast<int>(call));
        const bool isPastLast = call > c.messageIds.size();
        const unsigned wanted = isPastLast ? 0 : c.messageIds[call - 1];
        EXPECT_EQ(CreateAndSave(), wanted) << "call " << call;
        EXPECT_EQ(fault->IsReached(), !isPastLast) << "call " << call;
        // No half of a file, and no file under another name.
        for (const std::wstring& file : folder.GetFiles()) {
            EXPECT_TRUE(file == L"host.pfx" || (isPastLast && file == L"host.csr")) << file;
        }
        EXPECT_TRUE(wanted == 0 || wanted == MSG_CERTIFICATE_REQUEST_FAILED ||
                    folder.GetFiles().empty());
        DeleteFiles();
    }
    EXPECT_EQ(memory.CountBlocks(), blocks) << "blocks of OpenSSL's";
}

// Those that only free or tell errors are no steps; X509V3_set_ctx cannot fail.
INSTANTIATE_TEST_SUITE_P(
    Functions, CertificateFault,
    testing::Values(
        FAULT(EVP_PKEY_new, MSG_KEY_GENERATION_FAILED),
        FAULT(EVP_PKEY_assign, MSG_KEY_GENERATION_FAILED),
        FAULT(BN_new, MSG_KEY_GENERATION_FAILED, MSG_CERTIFICATE_SIGNING_FAILED),
        FAULT(BN_set_word, MSG_KEY_GENERATION_FAILED), FAULT(RSA_new, MSG_KEY_GENERATION_FAILED),
        FAULT(RSA_generate_key_ex, MSG_KEY_GENERATION_FAILED),
        FAULT(X509_new, MSG_CERTIFICATE_CREATION_FAILED),
        FAULT(X509_set_version, MSG_CERTIFICATE_CREATION_FAILED),
        FAULT(X509_get_serialNumber, MSG_CERTIFICATE_SIGNING_FAILED),
        FAULT(BN_rand, MSG_CERTIFICATE_SIGNING_FAILED),
        FAULT(BN_to_ASN1_INTEGER, MSG_CERTIFICATE_SIGNING_FAILED),
        FAULT(ASN1_TIME_set, MSG_CERTIFICATE_CREATION_FAILED, MSG_CERTIFICATE_CREATION_FAILED),
        FAULT(X509_set1_notBefore, MSG_CERTIFICATE_CREATION_FAILED),
        FAULT(X509_set1_notAfter, MSG_CERTIFICATE_CREATION_FAILED),
        FAULT(X509_set_pubkey, MSG_CERTIFICATE_CREATION_FAILED),
        FAULT(X509_get_subject_name, MSG_CERTIFICATE_CREATION_FAILED),
        FAULT(X509_NAME_add_entry_by_txt, MSG_CERTIFICATE_CREATION_FAILED,
              MSG_CERTIFICATE_REQUEST_FAILED),
        FAULT(X509_set_issuer_name, MSG_CERTIFICATE_CREATION_FAILED),
        FAULT(X509V3_EXT_conf_nid, MSG_BASIC_CONSTRAINTS_FAILED, MSG_KEY_USAGE_FAILED,
              MSG_SUBJECT_KEY_IDENTIFIER_FAILED, MSG_AUTHORITY_KEY_IDENTIFIER_FAILED,
              MSG_EXTENDED_KEY_USAGE_FAILED),
        FAULT(X509_add_ext, MSG_BASIC_CONSTRAINTS_FAILED, MSG_KEY_USAGE_FAILED,
              MSG_SUBJECT_KEY_IDENTIFIER_FAILED, MSG_AUTHORITY_KEY_IDENTIFIER_FAILED,
              MSG_EXTENDED_KEY_USAGE_FAILED),
        FAULT(EVP_sha256, MSG_CERTIFICATE_SIGNING_FAILED),
        FAULT(X509_sign, MSG_CERTIFICATE_SIGNING_FAILED),
        FAULT(X509_REQ_new, MSG_CERTIFICATE_REQUEST_FAILED),
        FAULT(X509_REQ_set_version, MSG_CERTIFICATE_REQUEST_FAILED),
        FAULT(X509_REQ_get_subject_name, MSG_CERTIFICATE_REQUEST_FAILED),
        FAULT(X509_REQ_set_pubkey, MSG_CERTIFICATE_REQUEST_FAILED),
        FAULT(X509_REQ_sign, MSG_CERTIFICATE_REQUEST_FAILED),
        FAULT(PKCS12_create, MSG_PKCS12_FAILED), FAULT(i2d_PKCS12_bio, MSG_PKCS12_FAILED),
        FAULT(PEM_write_bio_X509_REQ_NEW, MSG_CERTIFICATE_REQUEST_FAILED),
        FAULT(BIO_new_file, MSG_PKCS12_FAILED, MSG_CERTIFICATE_REQUEST_FAILED),
        FAULT(BIO_ctrl, MSG_PKCS12_FAILED, MSG_CERTIFICATE_REQUEST_FAILED)),
    CaseName());

// Long fields make a file that the run time does not hold back as a whole. The writing itself fails
// then, and of that the library keeps no record: the system's text is the whole detail.
TEST_F(CertificateFault, FullDiskIsToldByTheLibraryAndTheOldFilesStay)
{
    folder.Write(L"host.pfx", "old");
    folder.Write(L"host.csr", "old");
    for (const unsigned characters : {1U, 64U}) {
        for (const auto field : {Name::CommonName, Name::Organization, Name::OrganizationalUnit,
                                 Name::Locality, Name::StateOrProvince}) {
            name.SetField(field, std::wstring(characters, L'\x5F0F').c_str());
        }
        const auto certificate = Create();
        {
            const ImportHook write(L"msvcrt.dll", "kernel32.dll", "WriteFile", &WriteNothing);
            EXPECT_FALSE(certificate->Save(folder.GetPath(L"host.pfx").c_str(), error));
        }
        EXPECT_EQ(error.GetMessageId(), unsigned{MSG_PKCS12_FAILED});
        const std::wstring text = error.GetText();
        EXPECT_EQ(text.find(L"error:") != text.npos, characters == 1) << text;
        EXPECT_NE(text.find(YGetErrorText(ERROR_DISK_FULL)), text.npos) << text;
        EXPECT_EQ(folder.GetFiles(), (std::set<std::wstring>{L"host.csr", L"host.pfx"}));
        EXPECT_EQ(folder.Read(L"host.pfx"), "old");
        EXPECT_EQ(folder.Read(L"host.csr"), "old");
    }
}

TEST_F(CertificateFault, ThreadsCreateAtTheSameTime)
{
    std::vector<std::string> serials(4);
    std::vector<std::thread> threads;
    for (std::string& serial : serials) {
        threads.emplace_back([&] {
            YReportMessageParams own;
            const auto certificate = YCertificate::Create(parameters, own);
            serial = certificate ? certificate->GetContext().GetSerialNumber() : "";
            OpenSSL::GetFunctions().ERR_clear_error();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::set<std::string>(serials.begin(), serials.end()).size(), 4U);
    EXPECT_FALSE(serials[0].empty());
}
