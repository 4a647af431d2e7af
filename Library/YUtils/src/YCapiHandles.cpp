#include "YCapiHandles.h"

#include "YCriticalSection.h"

namespace {

constexpr wchar_t containerName[] = L"OrxTmpKeyContainer";
constexpr wchar_t providerName[] = L"Microsoft RSA SChannel Cryptographic Provider";

constinit YCriticalSection containerMutex;

void DeleteContainer()
{
    const DWORD error = ::GetLastError();
    HCRYPTPROV none = 0;
    ::CryptAcquireContextW(&none, containerName, providerName, PROV_RSA_SCHANNEL,
                           CRYPT_DELETEKEYSET | CRYPT_SILENT);
    ::SetLastError(error);
}

}  // namespace

bool YKeyBlob::Export(HCRYPTKEY key)
{
    DWORD size = 0;
    if (!::CryptExportKey(key, 0, PRIVATEKEYBLOB, 0, nullptr, &size)) {
        return false;
    }
    bytes.resize(size);
    return ::CryptExportKey(key, 0, PRIVATEKEYBLOB, 0, bytes.data(), &size);
}

bool YKeyBlob::ImportInto(HCRYPTPROV provider) const
{
    HCRYPTKEY key = 0;
    if (!::CryptImportKey(provider, bytes.data(), static_cast<DWORD>(bytes.size()), 0,
                          CRYPT_EXPORTABLE, &key)) {
        return false;
    }
    ::CryptDestroyKey(key);  // the handle; the provider has the key
    return true;
}

YTemporaryKeyContainer::YTemporaryKeyContainer()
{
    containerMutex.lock();
    DeleteContainer();
    HCRYPTPROV made = 0;
    if (::CryptAcquireContextW(&made, containerName, providerName, PROV_RSA_SCHANNEL,
                               CRYPT_NEWKEYSET | CRYPT_SILENT)) {
        provider.Reset(made);
    }
}

YTemporaryKeyContainer::~YTemporaryKeyContainer()
{
    provider.Reset();
    DeleteContainer();
    containerMutex.unlock();
}

bool YTemporaryKeyContainer::BindTo(PCCERT_CONTEXT context) const
{
    CRYPT_KEY_PROV_INFO info{};
    info.pwszContainerName = const_cast<wchar_t*>(containerName);
    info.pwszProvName = const_cast<wchar_t*>(providerName);
    info.dwProvType = PROV_RSA_SCHANNEL;
    info.dwKeySpec = AT_KEYEXCHANGE;
    return ::CertSetCertificateContextProperty(context, CERT_KEY_PROV_INFO_PROP_ID, 0, &info);
}
