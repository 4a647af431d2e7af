// Writes certificates for the judges and says what they are to find; talks TLS with them.
//   CertificateSamples write FOLDER      the files, and FOLDER/claims.json
//   CertificateSamples client PORT PFX   trusts PFX, says "hello", expects "olleh"
//   CertificateSamples server PORT PFX   is PFX, to one client, whose line it says backwards
// Status 0: all went well; else standard error says what did not.
#include "YCertificateCapi.h"
#include "YCreateCertificate.h"
#include "YReportMessageParams.h"
#include "openssl/YCertificateOpenSsl.h"

#include <winsock2.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using Name = YCertificateNameBase;
using Parameters = YCertificateParameters;

struct Sample
{
    const char* file;  // without its extension
    const wchar_t* fields[Name::fieldCount];
    std::int64_t expiration;
    std::uint8_t flags;
    std::uint32_t kind;
    unsigned bits;
    const char* algorithm;
    SslLib library = SslLib::OpenSsl;
};

constexpr std::int64_t in2045 = 2'366'841'600;
constexpr std::int64_t in2060 = 2'840'140'800;
constexpr std::int64_t in2001 = 1'000'000'000;

const Sample samples[] = {
    {"all-fields",
     {L"h\xF4te.example.org", L"Soci\xE9t\xE9 \x682A\x5F0F\x4F1A\x793E", L"R&D, \"Unit\" #1", L"FR",
      L"\xC9vry", L"\xCEle-de-France", L"rene@example.org"},
     in2045,
     Parameters::requestFlag,
     Parameters::endEntityKey,
     2048,
     Parameters::sha256WithRsa},
    {"client",
     {L"user"},
     in2045,
     Parameters::clientFlag,
     Parameters::endEntityKey,
     1024,
     Parameters::sha1WithRsa},
    {"signing",
     {L"root", nullptr, nullptr, L"US"},
     in2060,
     Parameters::requestFlag,
     Parameters::signingKey,
     1024,
     Parameters::sha256WithRsa},
    {"nobody", {}, in2060, 0, Parameters::endEntityKey, 1024, Parameters::sha256WithRsa},
    {"expired", {L"old"}, in2001, 0, Parameters::endEntityKey, 1024, Parameters::sha256WithRsa},
    {"system",
     {L"h\xF4te", L"\x682A\x5F0F\x4F1A\x793E", nullptr, L"FR", nullptr, nullptr,
      L"rene@example.org"},
     in2060,
     0,
     Parameters::endEntityKey,
     2048,
     Parameters::sha256WithRsa,
     SslLib::Capi},
    {"strong",
     {L"strong"},
     in2045,
     Parameters::clientFlag | Parameters::requestFlag,
     Parameters::endEntityKey,
     4096,
     Parameters::sha1WithRsa},
};

[[noreturn]] void Fail(const YReportMessageParams& error)
{
    throw std::runtime_error(YUnicodeString(error.GetText()).ToBytes(CP_UTF8));
}

std::string Quote(const std::string& text)
{
    std::string quoted = "\"";
    for (const char unit : text) {
        if (unit == '"' || unit == '\\') {
            quoted += '\\';
        }
        quoted += unit;
    }
    return quoted + '"';
}

std::string DescribeName(const Name& name)
{
    std::string text;
    for (int field = 0; field < Name::fieldCount; ++field) {
        const std::string value = name.GetField(static_cast<Name::Field>(field)).ToBytes(CP_UTF8);
        if (!value.empty()) {
            text += (text.empty() ? "" : ", ") +
                    Quote(Name::GetIdentifier(static_cast<Name::Field>(field))) + ": " +
                    Quote(value);
        }
    }
    return "{" + text + "}";
}

std::string DescribeFingerprint(const YCertificateContextBase& context)
{
    std::string text;
    for (const unsigned byte : context.GetFingerprint()) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", byte);
        text += digits;
    }
    return text;
}

YUnknownPointer<YCertificateBase> Load(SslLib library, const std::wstring& path)
{
    YReportMessageParams error;
    YUnknownPointer<YCertificateBase> loaded;
    if (library == SslLib::Capi) {
        loaded = CAPI::YCertificate::Load(path.c_str(), error);
    } else {
        loaded = OpenSSL::YCertificate::Load(path.c_str(), error);
    }
    if (!loaded) {
        Fail(error);
    }
    return loaded;
}

// Whether it imports the key with the certificate. It has not always known today's encryption.
bool CanSystemImport(const std::wstring& path)
{
    std::ifstream stream(path.c_str(), std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    CRYPT_DATA_BLOB blob{static_cast<DWORD>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data())};
    const YUniqueCertificateStore store(
        ::PFXImportCertStore(&blob, L"", CRYPT_EXPORTABLE | PKCS12_NO_PERSIST_KEY));
    return static_cast<bool>(store);
}

// What one of the two implementations finds in the file.
std::string DescribeReading(SslLib library, const std::wstring& path)
{
    const auto loaded = Load(library, path);
    const YCertificateContextBase& context = loaded->GetContext();
    return "{\"subject\": " + DescribeName(*context.GetSubject()) +
           ", \"issuer\": " + DescribeName(*context.GetIssuer()) +
           ", \"serial\": " + Quote(context.GetSerialNumber()) +
           ", \"not before\": " + std::to_string(context.GetNotBefore()) +
           ", \"not after\": " + std::to_string(context.GetNotAfter()) +
           ", \"key algorithm\": " + Quote(context.GetPublicKeyAlgorithm()) +
           ", \"bits\": " + std::to_string(context.GetPublicKeyBits()) +
           ", \"fingerprint\": " + Quote(DescribeFingerprint(context)) +
           ", \"has key\": " + (context.HasPrivateKey() ? "true" : "false") + "}";
}

std::string Describe(const Sample& sample, const Name& name, const std::wstring& path)
{
    const auto flag = [&](std::uint8_t bit) { return sample.flags & bit ? "true" : "false"; };
    const bool isSystems = sample.library == SslLib::Capi;
    return "{\"file\": " + Quote(sample.file) + ", \"subject\": " + DescribeName(name) +
           ", \"not after\": " + std::to_string(sample.expiration) +
           ", \"bits\": " + std::to_string(sample.bits) +
           ", \"client\": " + flag(Parameters::clientFlag) +
           ", \"request\": " + flag(Parameters::requestFlag) +
           ", \"kind\": " + std::to_string(sample.kind) +
           ", \"algorithm\": " + Quote(sample.algorithm) +
           ", \"is the system's\": " + (isSystems ? "true" : "false") +
           ",\n  \"read by OpenSSL\": " + DescribeReading(SslLib::OpenSsl, path) +
           ",\n  \"read by the system\": " +
           (isSystems || CanSystemImport(path) ? DescribeReading(SslLib::Capi, path) : "null") +
           "}";
}

// The system's certificates without their key, which not every system can export.
void WriteEncoded(const YCertificateBase& certificate, const std::wstring& path)
{
    const CERT_CONTEXT& encoded =
        *static_cast<const CAPI::YCertificateContext&>(certificate.GetContext()).GetCertificate();
    std::ofstream(path.c_str(), std::ios::binary)
        .write(reinterpret_cast<const char*>(encoded.pbCertEncoded), encoded.cbCertEncoded);
}

void WriteSamples(const std::wstring& folder)
{
    std::string claims;
    for (const Sample& sample : samples) {
        Name name;
        for (int field = 0; field < Name::fieldCount; ++field) {
            name.SetField(static_cast<Name::Field>(field), sample.fields[field]);
        }
        const std::string_view file = sample.file;
        const std::wstring stem = folder + L"\\" + std::wstring(file.begin(), file.end());
        const std::wstring path = stem + (sample.library == SslLib::Capi ? L".der" : L".pfx");
        YUnknownPointer<YCertificateBase> certificate;
        YReportMessageParams error;
        if (!CreateCertificate(sample.library,
                               {&name, sample.expiration, sample.flags, sample.kind, sample.bits,
                                sample.algorithm},
                               certificate, error)) {
            Fail(error);
        }
        if (sample.library == SslLib::Capi) {
            WriteEncoded(*certificate, path);
        } else if (!certificate->Save(path.c_str(), error)) {
            Fail(error);
        }
        claims += (claims.empty() ? "" : ",\n ") + Describe(sample, name, path);
    }
    std::ofstream((folder + L"\\claims.json").c_str(), std::ios::binary) << "[" << claims << "]\n";
}

void Check(bool succeeded, const char* what)
{
    if (!succeeded) {
        throw std::runtime_error(what);
    }
}

// One conversation over a blocking socket, by the functions that the library bound.
class Conversation
{
public:
    explicit Conversation(const std::wstring& path)
    {
        YReportMessageParams error;
        certificate = OpenSSL::YCertificate::Load(path.c_str(), error);
        if (!certificate) {
            Fail(error);
        }
        const OpenSSL::YCertificateContext& own = certificate->GetOpenSslContext();
        context.reset(openSsl.SSL_CTX_new(openSsl.TLS_method()));
        Check(openSsl.SSL_CTX_use_certificate(context.get(), own.GetCertificate()) == 1 &&
                  openSsl.SSL_CTX_use_PrivateKey(context.get(), own.GetKey()) == 1 &&
                  openSsl.X509_STORE_add_cert(openSsl.SSL_CTX_get_cert_store(context.get()),
                                              own.GetCertificate()) == 1,
              "TLS did not take the certificate");
        connection.reset(openSsl.SSL_new(context.get()));
    }

    void BeClient(SOCKET socket)
    {
        openSsl.SSL_set_fd(connection.get(), static_cast<int>(socket));
        Check(openSsl.SSL_connect(connection.get()) == 1, "the handshake as a client failed");
        Check(openSsl.SSL_get_verify_result(connection.get()) == 0,
              "the server's certificate is not the trusted one");
        Say("hello\n");
        Check(Hear() == "olleh\n", "the server did not answer as it should");
    }
    void BeServer(SOCKET socket)
    {
        openSsl.SSL_set_fd(connection.get(), static_cast<int>(socket));
        Check(openSsl.SSL_accept(connection.get()) == 1, "the handshake as a server failed");
        std::string line = Hear();
        std::reverse(line.begin(), line.end() - 1);
        Say(line);
        Check(Hear().empty(), "the client went on");
    }

private:
    void Say(const std::string& text)
    {
        Check(openSsl.SSL_write(connection.get(), text.data(), static_cast<int>(text.size())) ==
                  static_cast<int>(text.size()),
              "nothing could be said");
    }
    // To the end of the line or of the conversation.
    std::string Hear()
    {
        std::string line;
        char unit = 0;
        while (!line.ends_with('\n') && openSsl.SSL_read(connection.get(), &unit, 1) == 1) {
            line += unit;
        }
        return line;
    }

    const OpenSSL::Functions& openSsl = OpenSSL::GetFunctions();
    YUnknownPointer<OpenSSL::YCertificate> certificate;
    OpenSSL::Handle<OpenSSL::TlsContext, &OpenSSL::Functions::SSL_CTX_free> context;
    OpenSSL::Handle<OpenSSL::TlsConnection, &OpenSSL::Functions::SSL_free> connection;
};

void Talk(bool isServer, const char* port, const std::wstring& path)
{
    WSADATA data{};
    ::WSAStartup(MAKEWORD(2, 2), &data);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = ::htons(static_cast<u_short>(std::atoi(port)));
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    SOCKET socket = ::WSASocketW(AF_INET, SOCK_STREAM, 0, nullptr, 0, 0);
    Conversation conversation(path);
    if (!isServer) {
        Check(::connect(socket, generic, sizeof address) == 0, "no connection");
        conversation.BeClient(socket);
        return;
    }
    Check(::bind(socket, generic, sizeof address) == 0 && ::listen(socket, 1) == 0,
          "the port is taken");
    int length = sizeof address;
    ::getsockname(socket, generic, &length);
    std::cout << "listening on " << ::ntohs(address.sin_port) << std::endl;
    conversation.BeServer(::accept(socket, nullptr, nullptr));
}

}  // namespace

int wmain(int argumentCount, wchar_t** arguments)
{
    try {
        const std::wstring verb = argumentCount > 2 ? arguments[1] : L"";
        if (verb == L"write") {
            WriteSamples(arguments[2]);
        } else if (argumentCount > 3) {
            Talk(verb == L"server", YUnicodeString(arguments[2]).ToBytes().c_str(), arguments[3]);
        } else {
            throw std::runtime_error("see the head of CertificateSamples.cpp");
        }
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << std::endl;
        return 1;
    }
}
