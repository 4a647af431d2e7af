// OpenSslFunctions.h: what is called of OpenSSL 3, declared here, so that nothing of it is needed to
// build or to link.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

namespace OpenSSL {

// Its objects, seen from outside only. The names are ours: the system's cryptography headers make
// macros of some of the library's.
struct BigNumber;
struct Bio;
struct Certificate;
struct CertificateChain;
struct CertificateStore;
struct Digest;
struct Extension;
struct Integer;
struct Key;
struct Name;
struct NameEntry;
struct ObjectIdentifier;
struct Pkcs12;
struct PublicKey;
struct Request;
struct RsaKey;
struct String;
struct Time;
struct TlsConnection;
struct TlsContext;
struct TlsMethod;

// One that callers make themselves and must zero. Its eight members grew from seven; there is room.
struct ExtensionContext
{
    void* members[16];
};

// A place for each function, under its own name and with its exact C type. The library's time is of
// 64 bits in every build for Windows; its `long` is of 32.
struct Functions
{
    // Keys and numbers
    Key*(__cdecl* EVP_PKEY_new)();
    int(__cdecl* EVP_PKEY_assign)(Key*, int type, void* key);
    void(__cdecl* EVP_PKEY_free)(Key*);
    int(__cdecl* EVP_PKEY_get_bits)(const Key*);
    BigNumber*(__cdecl* BN_new)();
    int(__cdecl* BN_set_word)(BigNumber*, unsigned long word);
    int(__cdecl* BN_rand)(BigNumber*, int bits, int top, int bottom);
    Integer*(__cdecl* BN_to_ASN1_INTEGER)(const BigNumber*, Integer*);
    int(__cdecl* BN_num_bits)(const BigNumber*);
    int(__cdecl* BN_bn2bin)(const BigNumber*, unsigned char* bytes);
    void(__cdecl* BN_free)(BigNumber*);
    BigNumber*(__cdecl* ASN1_INTEGER_to_BN)(const Integer*, BigNumber*);
    RsaKey*(__cdecl* RSA_new)();
    int(__cdecl* RSA_generate_key_ex)(RsaKey*, int bits, BigNumber* exponent, void* progress);
    void(__cdecl* RSA_free)(RsaKey*);

    // Certificates
    Certificate*(__cdecl* X509_new)();
    void(__cdecl* X509_free)(Certificate*);
    int(__cdecl* X509_set_version)(Certificate*, long version);
    Integer*(__cdecl* X509_get_serialNumber)(Certificate*);
    Time*(__cdecl* ASN1_TIME_set)(Time*, std::int64_t time);
    void(__cdecl* ASN1_TIME_free)(Time*);
    int(__cdecl* ASN1_TIME_to_tm)(const Time*, std::tm*);
    int(__cdecl* X509_set1_notBefore)(Certificate*, const Time*);
    int(__cdecl* X509_set1_notAfter)(Certificate*, const Time*);
    Time*(__cdecl* X509_getm_notBefore)(const Certificate*);
    Time*(__cdecl* X509_getm_notAfter)(const Certificate*);
    int(__cdecl* X509_set_pubkey)(Certificate*, Key*);
    Key*(__cdecl* X509_get_pubkey)(Certificate*);
    PublicKey*(__cdecl* X509_get_X509_PUBKEY)(const Certificate*);
    int(__cdecl* X509_PUBKEY_get0_param)(ObjectIdentifier**, const unsigned char** bytes,
                                         int* length, void** algorithm, const PublicKey*);
    int(__cdecl* OBJ_obj2txt)(char* text, int size, const ObjectIdentifier*, int asNumbers);
    Name*(__cdecl* X509_get_subject_name)(const Certificate*);
    Name*(__cdecl* X509_get_issuer_name)(const Certificate*);
    int(__cdecl* X509_set_issuer_name)(Certificate*, const Name*);
    int(__cdecl* X509_NAME_add_entry_by_txt)(Name*, const char* field, int type,
                                             const unsigned char* bytes, int length, int location,
                                             int set);
    int(__cdecl* X509_NAME_get_index_by_NID)(const Name*, int nid, int last);
    NameEntry*(__cdecl* X509_NAME_get_entry)(const Name*, int location);
    String*(__cdecl* X509_NAME_ENTRY_get_data)(const NameEntry*);
    int(__cdecl* ASN1_STRING_to_UTF8)(unsigned char** bytes, const String*);
    void(__cdecl* X509V3_set_ctx)(ExtensionContext*, Certificate* issuer, Certificate* subject,
                                  Request*, void* revocations, int flags);
    Extension*(__cdecl* X509V3_EXT_conf_nid)(void* values, ExtensionContext*, int nid,
                                             const char* text);
    int(__cdecl* X509_add_ext)(Certificate*, const Extension*, int location);
    void(__cdecl* X509_EXTENSION_free)(Extension*);
    const Digest*(__cdecl* EVP_sha1)();
    const Digest*(__cdecl* EVP_sha256)();
    int(__cdecl* X509_sign)(Certificate*, Key*, const Digest*);
    int(__cdecl* X509_digest)(const Certificate*, const Digest*, unsigned char* bytes,
                              unsigned* length);

    // Requests
    Request*(__cdecl* X509_REQ_new)();
    int(__cdecl* X509_REQ_set_version)(Request*, long version);
    Name*(__cdecl* X509_REQ_get_subject_name)(const Request*);
    int(__cdecl* X509_REQ_set_pubkey)(Request*, Key*);
    int(__cdecl* X509_REQ_sign)(Request*, Key*, const Digest*);
    void(__cdecl* X509_REQ_free)(Request*);

    // Files
    Pkcs12*(__cdecl* PKCS12_create)(const char* password, const char* friendlyName, Key*,
                                    Certificate*, CertificateChain*, int keyAlgorithm,
                                    int certificateAlgorithm, int iterations, int macIterations,
                                    int keyType);
    int(__cdecl* PKCS12_parse)(Pkcs12*, const char* password, Key**, Certificate**,
                               CertificateChain**);
    void(__cdecl* PKCS12_free)(Pkcs12*);
    int(__cdecl* i2d_PKCS12_bio)(Bio*, const Pkcs12*);
    Pkcs12*(__cdecl* d2i_PKCS12_bio)(Bio*, Pkcs12**);
    Certificate*(__cdecl* d2i_X509_bio)(Bio*, Certificate**);
    Certificate*(__cdecl* PEM_read_bio_X509)(Bio*, Certificate**, void* getPassword, void* context);
    // The writer with _NEW begins with "-----BEGIN NEW CERTIFICATE REQUEST-----".
    int(__cdecl* PEM_write_bio_X509_REQ_NEW)(Bio*, const Request*);
    Bio*(__cdecl* BIO_new_file)(const char* path, const char* mode);  // path in UTF-8
    long(__cdecl* BIO_ctrl)(Bio*, int command, long number, void* pointer);
    int(__cdecl* BIO_free)(Bio*);

    // Errors and memory
    int(__cdecl* CRYPTO_set_mem_functions)(void*(__cdecl* allocate)(std::size_t, const char*, int),
                                           void*(__cdecl* reallocate)(void*, std::size_t,
                                                                      const char*, int),
                                           void(__cdecl* free)(void*, const char*, int));
    unsigned long(__cdecl* ERR_get_error)();
    void(__cdecl* ERR_error_string_n)(unsigned long code, char* text, std::size_t size);
    void(__cdecl* ERR_clear_error)();
    void(__cdecl* CRYPTO_free)(void*, const char* file, int line);

    // TLS, of libssl
    const TlsMethod*(__cdecl* TLS_method)();
    TlsContext*(__cdecl* SSL_CTX_new)(const TlsMethod*);
    void(__cdecl* SSL_CTX_free)(TlsContext*);
    int(__cdecl* SSL_CTX_use_certificate)(TlsContext*, Certificate*);
    int(__cdecl* SSL_CTX_use_PrivateKey)(TlsContext*, Key*);
    CertificateStore*(__cdecl* SSL_CTX_get_cert_store)(const TlsContext*);
    int(__cdecl* X509_STORE_add_cert)(CertificateStore*, Certificate*);
    TlsConnection*(__cdecl* SSL_new)(TlsContext*);
    void(__cdecl* SSL_free)(TlsConnection*);
    int(__cdecl* SSL_set_fd)(TlsConnection*, int socket);
    int(__cdecl* SSL_connect)(TlsConnection*);
    int(__cdecl* SSL_accept)(TlsConnection*);
    long(__cdecl* SSL_get_verify_result)(const TlsConnection*);
    int(__cdecl* SSL_read)(TlsConnection*, void* bytes, int size);
    int(__cdecl* SSL_write)(TlsConnection*, const void* bytes, int size);
    int(__cdecl* SSL_shutdown)(TlsConnection*);
};

}  // namespace OpenSSL
