// Where the private key is while a certificate lives, and that it is nowhere afterwards.
#include "CertificateKit.h"
#include "OpenSslWatch.h"
#include "support/MemorySearch.h"

#include <array>
#include <cstring>
#include <vector>

namespace {

using OpenSSL::YCertificate;

// A piece of one of the key's primes, veiled so that the searcher does not find itself.
class Marker
{
public:
    static constexpr std::size_t bytes = 16;
    static constexpr unsigned char veil = 0x5A;

    explicit Marker(const unsigned char* piece, bool isReversed)
    {
        for (std::size_t i = 0; i < bytes; ++i) {
            veiled[i] = piece[isReversed ? bytes - 1 - i : i] ^ veil;
        }
    }

    bool IsAt(const volatile unsigned char* memory) const
    {
        for (std::size_t i = 0; i < bytes; ++i) {
            if ((memory[i] ^ veil) != veiled[i]) {
                return false;
            }
        }
        return true;
    }

private:
    std::array<unsigned char, bytes> veiled{};
};

// Pieces of a prime in both orders of bytes: as numbers compute with it, and as files hold it.
std::vector<Marker> MakeMarkers(const OpenSSL::Key* key)
{
    using GetNumber = int __cdecl(const OpenSSL::Key*, const char*, OpenSSL::BigNumber**);
    using ClearNumber = void __cdecl(OpenSSL::BigNumber*);
    OpenSSL::BigNumber* prime = nullptr;
    if (FindInOpenSsl<GetNumber>("EVP_PKEY_get_bn_param")(key, "rsa-factor1", &prime) != 1) {
        return {};
    }
    unsigned char plain[64] = {};  // of a key of 1024 bits
    OpenSSL::GetFunctions().BN_bn2bin(prime, plain);
    std::vector<Marker> markers;
    for (const std::size_t place : {0U, 24U, 48U}) {
        markers.emplace_back(plain + place, false);
        markers.emplace_back(plain + place, true);
    }
    ::SecureZeroMemory(plain, sizeof plain);
    FindInOpenSsl<ClearNumber>("BN_clear_free")(prime);
    return markers;
}

unsigned CountMarkers(const std::vector<Marker>& markers)
{
    return CountInMemory<unsigned char>(Marker::bytes, [&](const volatile unsigned char* memory) {
        unsigned found = 0;
        for (const Marker& marker : markers) {
            found += marker.IsAt(memory) ? 1 : 0;
        }
        return found;
    });
}

}  // namespace

TEST_F(CertificateTest, KeyIsInMemoryOnlyWhileTheCertificateLives)
{
    auto certificate = Create();
    ASSERT_TRUE(certificate->Save(folder.GetPath(L"host.pfx").c_str(), error)) << error.GetText();
    auto loaded = YCertificate::Load(folder.GetPath(L"host.pfx").c_str(), error);
    ASSERT_TRUE(loaded) << error.GetText();
    const auto markers = MakeMarkers(certificate->GetOpenSslContext().GetKey());
    ASSERT_FALSE(markers.empty());
    EXPECT_GE(CountMarkers(markers), 2 * markers.size() / 2);  // the numbers' order, of two keys
    certificate.Reset();
    loaded.Reset();
    EXPECT_EQ(CountMarkers(markers), 0U);
}

TEST_F(CertificateTest, KeyOfAFailedCreationIsNowhere)
{
    // Taken when the last step fails, which is after the key was made.
    static std::vector<Marker> markers;
    struct Spy
    {
        static int __cdecl Sign(OpenSSL::Request*, OpenSSL::Key* key, const OpenSSL::Digest*)
        {
            markers = MakeMarkers(key);
            return 0;
        }
    };
    auto& place = const_cast<OpenSSL::Functions&>(OpenSSL::GetFunctions()).X509_REQ_sign;
    parameters.flags = Parameters::requestFlag;
    ASSERT_TRUE(Create());
    const auto original = std::exchange(place, &Spy::Sign);
    ExpectFailure(MSG_CERTIFICATE_REQUEST_FAILED);
    place = original;
    ASSERT_FALSE(markers.empty());
    EXPECT_EQ(CountMarkers(markers), 0U);
    std::vector<Marker>().swap(markers);
}
