// Certificates, against the bare key generation and signing that they cost in any case.
#include "Report.h"
#include "Subjects.h"

#include <YCreateCertificate.h>
#include <YReportMessageParams.h>
#include <openssl/OpenSslLibrary.h>

#include <cstdint>
#include <memory>

#include <windows.h>

namespace {

using namespace OpenSSL;

constexpr unsigned keyBits = 2048;
constexpr int iterations = 3;

// Primes are found by trying: two searches differ by far more than what is measured here. So both
// sides get the same numbers, and search for the same primes.
class SameNumbers
{
public:
    SameNumbers() { SetMethod(&method); }
    SameNumbers(const SameNumbers&) = delete;
    SameNumbers& operator=(const SameNumbers&) = delete;
    ~SameNumbers() { SetMethod(nullptr); }

    static void Begin(std::uint64_t seed) { state = seed; }

private:
    struct Method
    {
        int(__cdecl* seed)(const void*, int);
        int(__cdecl* bytes)(unsigned char*, int);
        void(__cdecl* cleanup)();
        int(__cdecl* add)(const void*, int, double);
        int(__cdecl* pseudoBytes)(unsigned char*, int);
        int(__cdecl* status)();
    };

    static void SetMethod(const Method* next)
    {
        const FARPROC found =
            ::GetProcAddress(::GetModuleHandleW(L"libcrypto-3.dll"), "RAND_set_rand_method");
        reinterpret_cast<int(__cdecl*)(const Method*)>(reinterpret_cast<void*>(found))(next);
    }
    // The splitmix generator.
    static int __cdecl Fill(unsigned char* bytes, int count)
    {
        for (int i = 0; i < count; ++i) {
            state += 0x9E3779B97F4A7C15;
            std::uint64_t mixed = (state ^ state >> 30) * 0xBF58476D1CE4E5B9;
            mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
            bytes[i] = static_cast<unsigned char>(mixed >> 56);
        }
        return 1;
    }
    static int __cdecl IsReady() { return 1; }

    static inline std::uint64_t state = 0;
    static inline const Method method = {nullptr, &Fill, nullptr, nullptr, &Fill, &IsReady};
};

void CreateWhole(benchmark::State& state)
{
    YCertificateNameBase name;
    name.SetField(YCertificateNameBase::CommonName, L"host.example.org");
    name.SetField(YCertificateNameBase::Organization, L"Example");
    YReportMessageParams error;
    if (!FindFunctions(error)) {
        state.SkipWithError("OpenSSL is not there");
        return;
    }
    const SameNumbers numbers;
    std::uint64_t seed = 0;
    for (auto _ : state) {
        SameNumbers::Begin(++seed);
        YUnknownPointer<YCertificateBase> certificate;
        if (!CreateSelfSignedCertificate(&name, 2'840'140'800, YCertificateParameters::requestFlag,
                                         keyBits, YCertificateParameters::sha256WithRsa,
                                         certificate, error)) {
            state.SkipWithError("the certificate could not be created");
        }
    }
}

// Bare: a key, and the signatures of a certificate and of a request that hold nothing but the key.
bool GenerateAndSign(const Functions& openSsl)
{
    const KeyHandle key(openSsl.EVP_PKEY_new());
    const BigNumberHandle exponent(openSsl.BN_new());
    openSsl.BN_set_word(exponent.get(), 0x10001);
    RsaKey* const rsa = openSsl.RSA_new();
    openSsl.RSA_generate_key_ex(rsa, keyBits, exponent.get(), nullptr);
    openSsl.EVP_PKEY_assign(key.get(), 6, rsa);
    const CertificateHandle certificate(openSsl.X509_new());
    openSsl.X509_set_pubkey(certificate.get(), key.get());
    const RequestHandle request(openSsl.X509_REQ_new());
    openSsl.X509_REQ_set_pubkey(request.get(), key.get());
    return openSsl.X509_sign(certificate.get(), key.get(), openSsl.EVP_sha256()) > 0 &&
           openSsl.X509_REQ_sign(request.get(), key.get(), openSsl.EVP_sha256()) > 0;
}

void GenerateAndSignBare(benchmark::State& state)
{
    YReportMessageParams error;
    const Functions* const openSsl = FindFunctions(error);
    if (!openSsl) {
        state.SkipWithError("OpenSSL is not there");
        return;
    }
    const SameNumbers numbers;
    std::uint64_t seed = 0;
    for (auto _ : state) {
        SameNumbers::Begin(++seed);
        if (!GenerateAndSign(*openSsl)) {
            state.SkipWithError("nothing could be signed");
        }
    }
}

}  // namespace

void AddCertificateSubjects(Report& report)
{
    benchmark::RegisterBenchmark("CreateCertificate", CreateWhole)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(iterations);
    benchmark::RegisterBenchmark("GenerateAndSign", GenerateAndSignBare)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(iterations);
    report.CompareCost("create a certificate of 2048 bits, to its key and signatures",
                       "CreateCertificate", "GenerateAndSign", 1.05);
}
