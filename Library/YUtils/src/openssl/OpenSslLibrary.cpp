#include "OpenSslLibrary.h"

#include "YCriticalSection.h"
#include "YMessages.h"
#include "YModule.h"
#include "YPolicy.h"
#include "YReportMessageParams.h"
#include "YUniqueHandle.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <vector>

#include <malloc.h>
#include <windows.h>

namespace OpenSSL {

namespace {

enum Library { crypto, tls, libraryCount };

constexpr const wchar_t* libraryNames[libraryCount] = {L"libcrypto-3.dll", L"libssl-3.dll"};

struct Binding
{
    const char* name;
    Library library;
    std::size_t place;  // in Functions
};

#define BIND(library, function)                           \
    Binding                                               \
    {                                                     \
#function, library, offsetof(Functions, function) \
    }

constexpr Binding bindings[] = {
    BIND(crypto, EVP_PKEY_new),
    BIND(crypto, EVP_PKEY_assign),
    BIND(crypto, EVP_PKEY_free),
    BIND(crypto, EVP_PKEY_get_bits),
    BIND(crypto, BN_new),
    BIND(crypto, BN_set_word),
    BIND(crypto, BN_rand),
    BIND(crypto, BN_to_ASN1_INTEGER),
    BIND(crypto, BN_num_bits),
    BIND(crypto, BN_bn2bin),
    BIND(crypto, BN_free),
    BIND(crypto, ASN1_INTEGER_to_BN),
    BIND(crypto, RSA_new),
    BIND(crypto, RSA_generate_key_ex),
    BIND(crypto, RSA_free),
    BIND(crypto, X509_new),
    BIND(crypto, X509_free),
    BIND(crypto, X509_set_version),
    BIND(crypto, X509_get_serialNumber),
    BIND(crypto, ASN1_TIME_set),
    BIND(crypto, ASN1_TIME_free),
    BIND(crypto, ASN1_TIME_to_tm),
    BIND(crypto, X509_set1_notBefore),
    BIND(crypto, X509_set1_notAfter),
    BIND(crypto, X509_getm_notBefore),
    BIND(crypto, X509_getm_notAfter),
    BIND(crypto, X509_set_pubkey),
    BIND(crypto, X509_get_pubkey),
    BIND(crypto, X509_get_X509_PUBKEY),
    BIND(crypto, X509_PUBKEY_get0_param),
    BIND(crypto, OBJ_obj2txt),
    BIND(crypto, X509_get_subject_name),
    BIND(crypto, X509_get_issuer_name),
    BIND(crypto, X509_set_issuer_name),
    BIND(crypto, X509_NAME_add_entry_by_txt),
    BIND(crypto, X509_NAME_get_index_by_NID),
    BIND(crypto, X509_NAME_get_entry),
    BIND(crypto, X509_NAME_ENTRY_get_data),
    BIND(crypto, ASN1_STRING_to_UTF8),
    BIND(crypto, X509V3_set_ctx),
    BIND(crypto, X509V3_EXT_conf_nid),
    BIND(crypto, X509_add_ext),
    BIND(crypto, X509_EXTENSION_free),
    BIND(crypto, EVP_sha1),
    BIND(crypto, EVP_sha256),
    BIND(crypto, X509_sign),
    BIND(crypto, X509_digest),
    BIND(crypto, X509_REQ_new),
    BIND(crypto, X509_REQ_set_version),
    BIND(crypto, X509_REQ_get_subject_name),
    BIND(crypto, X509_REQ_set_pubkey),
    BIND(crypto, X509_REQ_sign),
    BIND(crypto, X509_REQ_free),
    BIND(crypto, PKCS12_create),
    BIND(crypto, PKCS12_parse),
    BIND(crypto, PKCS12_free),
    BIND(crypto, i2d_PKCS12_bio),
    BIND(crypto, d2i_PKCS12_bio),
    BIND(crypto, d2i_X509_bio),
    BIND(crypto, PEM_read_bio_X509),
    BIND(crypto, PEM_write_bio_X509_REQ_NEW),
    BIND(crypto, BIO_new_file),
    BIND(crypto, BIO_ctrl),
    BIND(crypto, BIO_free),
    BIND(crypto, CRYPTO_set_mem_functions),
    BIND(crypto, ERR_get_error),
    BIND(crypto, ERR_error_string_n),
    BIND(crypto, ERR_clear_error),
    BIND(crypto, CRYPTO_free),
    BIND(tls, TLS_method),
    BIND(tls, SSL_CTX_new),
    BIND(tls, SSL_CTX_free),
    BIND(tls, SSL_CTX_use_certificate),
    BIND(tls, SSL_CTX_use_PrivateKey),
    BIND(tls, SSL_CTX_get_cert_store),
    BIND(crypto, X509_STORE_add_cert),
    BIND(tls, SSL_new),
    BIND(tls, SSL_free),
    BIND(tls, SSL_set_fd),
    BIND(tls, SSL_connect),
    BIND(tls, SSL_accept),
    BIND(tls, SSL_get_verify_result),
    BIND(tls, SSL_read),
    BIND(tls, SSL_write),
    BIND(tls, SSL_shutdown),
};

#undef BIND

// In the order of the structure, so that one that is left out or bound twice does not compile.
constexpr bool BindsEveryPlace()
{
    std::size_t place = 0;
    for (const Binding& binding : bindings) {
        if (binding.place != place) {
            return false;
        }
        place += sizeof(void*);
    }
    return place == sizeof(Functions);
}
static_assert(BindsEveryPlace());

struct ModuleTraits
{
    using Handle = HMODULE;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle module) noexcept { ::FreeLibrary(module); }
};
using UniqueModule = YUniqueHandle<ModuleTraits>;

// The library clears most of what held a key, but not all: when it reads one, a copy of the whole key
// stays in memory that it has given back. So every block of its is cleared when it is. Null for no
// bytes, as from its own allocator.
void* __cdecl Allocate(std::size_t size, const char*, int)
{
    return size > 0 ? std::malloc(size) : nullptr;
}

void __cdecl Free(void* block, const char*, int)
{
    if (block) {
        ::SecureZeroMemory(block, ::_msize(block));
        std::free(block);
    }
}

void* __cdecl Reallocate(void* block, std::size_t size, const char* file, int line)
{
    void* const next = Allocate(size, file, line);
    if (next && block) {
        std::memcpy(next, block, std::min(size, ::_msize(block)));
    }
    if (next || size == 0) {  // else there was no memory, and the old block stays
        Free(block, file, line);
    }
    return next;
}

constinit YCriticalSection mutex;
bool isBound = false;  // under the mutex
Functions functions{};  // written once, before anybody is told that they are bound

// With the separator at its end. Empty: the system does not tell.
std::wstring GetFolderOf(HMODULE module)
{
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = 0;
    while ((length = ::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()))) ==
           path.size()) {
        path.resize(path.size() * 2);
    }
    path.resize(length);
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

// Both from one folder. False: missing is the name of the first that is not there.
bool LoadFrom(const std::wstring& folder, UniqueModule (&modules)[libraryCount],
              std::wstring& missing)
{
    // Their own imports as well come from their folder or the system's.
    constexpr DWORD flags = LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32;
    for (int library = crypto; library < libraryCount; ++library) {
        const std::wstring path = folder + libraryNames[library];
        modules[library].Reset(folder.empty() ? nullptr
                                              : ::LoadLibraryExW(path.c_str(), nullptr, flags));
        if (!modules[library]) {
            missing = libraryNames[library];
            return false;
        }
    }
    return true;
}

bool Load(UniqueModule (&modules)[libraryCount], std::wstring& missing)
{
    return LoadFrom(GetFolderOf(YGetLibraryModule()), modules, missing) ||
           LoadFrom(GetFolderOf(nullptr), modules, missing);
}

bool Bind(const UniqueModule (&modules)[libraryCount], std::wstring& missing)
{
    Functions found{};
    for (const Binding& binding : bindings) {
        const FARPROC function = ::GetProcAddress(modules[binding.library].Get(), binding.name);
        if (!function) {
            missing.assign(binding.name, binding.name + std::strlen(binding.name));
            return false;
        }
        std::memcpy(reinterpret_cast<char*>(&found) + binding.place, &function, sizeof function);
    }
    functions = found;
    return true;
}

// Refused where the program has used the library already; it clears its keys as it can then.
void UseClearingMemory()
{
    if (functions.CRYPTO_set_mem_functions(&Allocate, &Reallocate, &Free) == 1) {
        // They are called to the end of the process, so our module stays as well.
        HMODULE self = nullptr;
        ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                             reinterpret_cast<const wchar_t*>(reinterpret_cast<void*>(&Allocate)),
                             &self);
    }
}

bool LoadAndBind(std::wstring& missing)
{
    const std::lock_guard lock(mutex);
    if (isBound) {
        return true;
    }
    UniqueModule modules[libraryCount];  // freed from the end: the one that needs the other first
    if (!Load(modules, missing) || !Bind(modules, missing)) {
        return false;
    }
    for (UniqueModule& module : modules) {
        static_cast<void>(module.Detach());  // for good
    }
    UseClearingMemory();
    isBound = true;
    return true;
}

// The newest entry of the error queue, and the last that tells a code of the system.
struct QueuedErrors
{
    unsigned long newest = 0;  // 0: the queue was empty
    unsigned systemError = 0;
};

QueuedErrors TakeErrors()
{
    constexpr unsigned long systemFlag = 0x80000000;
    QueuedErrors errors;
    while (const unsigned long code = functions.ERR_get_error()) {
        errors.newest = code;
        if (code & systemFlag) {
            errors.systemError = static_cast<unsigned>(code & ~systemFlag);
        }
    }
    return errors;
}

}  // namespace

const Functions* FindFunctions(YReportMessageParams& error)
{
    std::wstring missing = L"Enable FIPS Mode";
    if (YIsTlsLibraryAllowed() && LoadAndBind(missing)) {
        return &functions;
    }
    error.SetErrorCode(MSG_CERTIFICATE_LIBRARY_NOT_AVAILABLE);
    error.AddInsert(missing);
    return nullptr;
}

const Functions& GetFunctions() noexcept
{
    return functions;
}

void ReportFailure(unsigned messageId, YReportMessageParams& error, unsigned systemError)
{
    const QueuedErrors errors = TakeErrors();
    std::wstring detail;
    if (errors.newest != 0) {
        char text[256] = {};
        functions.ERR_error_string_n(errors.newest, text, sizeof text);
        detail.assign(text, text + std::strlen(text));  // ASCII
    }
    // The queue's own text for a code of the system is that of another system's code.
    if (const unsigned code = errors.systemError != 0 ? errors.systemError : systemError) {
        detail += (detail.empty() ? L"" : L"\r\n") + YGetErrorText(code);
    }
    error.SetErrorCode(messageId);
    error.AddInsert(detail);
}

}  // namespace OpenSSL
