// What keeps OpenSSL from being bound, each before anything has bound it in this process.
#include "foundation/ScratchRegistry.h"
#include "support/ImportHook.h"

#include "YCreateCertificate.h"
#include "YMessages.h"
#include "YReportMessageParams.h"
#include "openssl/OpenSslLibrary.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>

namespace {

std::wstring_view missingLibrary;  // the end of its path
std::string_view missingFunction;
unsigned loads = 0;

HMODULE WINAPI LoadAllButOne(const wchar_t* path, HANDLE reserved, DWORD flags)
{
    // By its full path: no folder can be put in front of it.
    EXPECT_TRUE(std::wstring_view(path).substr(1).starts_with(L":\\")) << path;
    ++loads;
    if (!missingLibrary.empty() && std::wstring_view(path).ends_with(missingLibrary)) {
        ::SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return ::LoadLibraryExW(path, reserved, flags);
}

FARPROC WINAPI FindAllButOne(HMODULE module, const char* name)
{
    return name == missingFunction ? nullptr : ::GetProcAddress(module, name);
}

class OpenSslBinding : public testing::Test
{
protected:
    // What is made once and kept is made before anything is counted: a test of here that is run a
    // second time would find the libraries bound by the last one.
    static void SetUpTestSuite()
    {
        const ScratchRegistry registry;
        const ImportHook load(L"CommonUi.dll", "KERNEL32.dll", "LoadLibraryExW", &LoadAllButOne);
        missingLibrary = L"libssl-3.dll";
        ExpectUnavailable(L"libssl-3.dll");
    }

    OpenSslBinding()
    {
        missingLibrary = {};
        missingFunction = {};
        loads = 0;
    }

    static bool IsLoaded()
    {
        return ::GetModuleHandleW(L"libcrypto-3.dll") || ::GetModuleHandleW(L"libssl-3.dll");
    }

    // Creation fails at once and tells what is missing; the process is as it was.
    static void ExpectUnavailable(const wchar_t* missing)
    {
        ASSERT_FALSE(IsLoaded());
        const YCertificateNameBase name;
        YUnknownPointer<YCertificateBase> certificate;
        YReportMessageParams error;
        EXPECT_FALSE(CreateSelfSignedCertificate(&name, 4'000'000'000, 0, 1024,
                                                 YCertificateParameters::sha256WithRsa, certificate,
                                                 error));
        EXPECT_FALSE(certificate);
        EXPECT_EQ(error.GetMessageId(), 0xE10400CD);
        EXPECT_NE(std::wstring(error.GetText()).find(missing), std::wstring::npos)
            << error.GetText();
        EXPECT_FALSE(IsLoaded());
    }

    ScratchRegistry registry;
    ImportHook load{L"CommonUi.dll", "KERNEL32.dll", "LoadLibraryExW", &LoadAllButOne};
    ImportHook find{L"CommonUi.dll", "KERNEL32.dll", "GetProcAddress", &FindAllButOne};
};

}  // namespace

TEST_F(OpenSslBinding, NeedsBothLibraries)
{
    for (const wchar_t* name : {L"libcrypto-3.dll", L"libssl-3.dll"}) {
        missingLibrary = name;
        ExpectUnavailable(name);
    }
}

TEST_F(OpenSslBinding, NeedsEveryFunction)
{
    for (const char* name : {"EVP_PKEY_new", "PEM_write_bio_X509_REQ_NEW", "SSL_shutdown"}) {
        missingFunction = name;
        ExpectUnavailable(std::wstring(name, name + std::strlen(name)).c_str());
    }
}

TEST_F(OpenSslBinding, LoadsNothingWhereValidatedCryptographyIsDemanded)
{
    ScratchRegistry::SetNumber(HKEY_LOCAL_MACHINE, L"Software\\Policies\\Orlith",
                               L"Enable FIPS Mode", 1);
    ExpectUnavailable(L"Enable FIPS Mode");
    EXPECT_EQ(loads, 0U);
}

// Last: afterwards this process has the libraries.
TEST_F(OpenSslBinding, SucceedsOnceNothingIsMissingAndObeysALaterPolicy)
{
    YReportMessageParams error;
    const OpenSSL::Functions* const functions = OpenSSL::FindFunctions(error);
    ASSERT_TRUE(functions) << error.GetText();
    EXPECT_EQ(functions, &OpenSSL::GetFunctions());
    EXPECT_TRUE(IsLoaded());
    const unsigned loadsForFirst = loads;
    EXPECT_TRUE(OpenSSL::FindFunctions(error));
    EXPECT_EQ(loads, loadsForFirst);

    ScratchRegistry::SetNumber(HKEY_LOCAL_MACHINE, L"Software\\Policies\\Orlith",
                               L"Enable FIPS Mode", 1);
    EXPECT_FALSE(OpenSSL::FindFunctions(error));
    EXPECT_EQ(error.GetMessageId(), unsigned{MSG_CERTIFICATE_LIBRARY_NOT_AVAILABLE});
    ScratchRegistry::SetNumber(HKEY_LOCAL_MACHINE, L"Software\\Policies\\Orlith",
                               L"Ignore FIPS Mode for TLS", 1);
    EXPECT_TRUE(OpenSSL::FindFunctions(error));
}
