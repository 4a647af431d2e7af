// YCapiHandles.h: what the system's cryptography hands out, and keys that leave no trace.
#pragma once

#include "YUniqueHandle.h"

#include <windows.h>

#include <vector>

#include <wincrypt.h>

struct YCryptProviderTraits
{
    using Handle = HCRYPTPROV;
    static Handle Invalid() noexcept { return 0; }
    static void Close(Handle provider) noexcept { ::CryptReleaseContext(provider, 0); }
};
using YUniqueCryptProvider = YUniqueHandle<YCryptProviderTraits>;

struct YCryptKeyTraits
{
    using Handle = HCRYPTKEY;
    static Handle Invalid() noexcept { return 0; }
    static void Close(Handle key) noexcept { ::CryptDestroyKey(key); }
};
using YUniqueCryptKey = YUniqueHandle<YCryptKeyTraits>;

struct YCertificateStoreTraits
{
    using Handle = HCERTSTORE;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle store) noexcept { ::CertCloseStore(store, 0); }
};
using YUniqueCertificateStore = YUniqueHandle<YCertificateStoreTraits>;

struct YCertificateContextTraits
{
    using Handle = PCCERT_CONTEXT;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle context) noexcept { ::CertFreeCertificateContext(context); }
};
using YUniqueCertificateContext = YUniqueHandle<YCertificateContextTraits>;

// An exported private key. Sized once; cleared before its memory is given back.
class YKeyBlob
{
public:
    YKeyBlob() = default;
    YKeyBlob(const YKeyBlob&) = delete;
    YKeyBlob& operator=(const YKeyBlob&) = delete;
    ~YKeyBlob()
    {
        if (!bytes.empty()) {
            ::SecureZeroMemory(bytes.data(), bytes.size());
        }
    }

    // False, here and below: GetLastError() tells why.
    bool Export(HCRYPTKEY key);
    // A key of the provider's that can be exported again.
    bool ImportInto(HCRYPTPROV provider) const;

private:
    std::vector<BYTE> bytes;
};

// The key container in which the SChannel provider makes keys. Only one thread of a process at a
// time has it; it is deleted at the beginning, whoever left it behind, and at the end, so that no
// key stays on the disk.
class YTemporaryKeyContainer
{
public:
    YTemporaryKeyContainer();
    YTemporaryKeyContainer(const YTemporaryKeyContainer&) = delete;
    YTemporaryKeyContainer& operator=(const YTemporaryKeyContainer&) = delete;
    ~YTemporaryKeyContainer();

    HCRYPTPROV Get() const { return provider.Get(); }  // 0: GetLastError() tells why
    // Tells a certificate's context that its key is here.
    bool BindTo(PCCERT_CONTEXT context) const;

private:
    YUniqueCryptProvider provider;
};
