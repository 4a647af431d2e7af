#include "YCertificateNameCapi.h"

#include "YUniqueHandle.h"

#include <cstring>
#include <string_view>

namespace {

// As OpenSSL writes them: everybody's readers know these.
DWORD GetValueType(YCertificateNameBase::Field field)
{
    switch (field) {
    case YCertificateNameBase::Country: return CERT_RDN_PRINTABLE_STRING;
    case YCertificateNameBase::Email: return CERT_RDN_IA5_STRING;
    default: return CERT_RDN_UTF8_STRING;
    }
}

const wchar_t* FindText(const CERT_NAME_INFO& name, const char* identifier)
{
    for (DWORD i = 0; i < name.cRDN; ++i) {
        for (DWORD j = 0; j < name.rgRDN[i].cRDNAttr; ++j) {
            const CERT_RDN_ATTR& attribute = name.rgRDN[i].rgRDNAttr[j];
            if (std::strcmp(attribute.pszObjId, identifier) == 0) {
                return reinterpret_cast<const wchar_t*>(attribute.Value.pbData);
            }
        }
    }
    return nullptr;
}

}  // namespace

YCertificateNameCapi::YCertificateNameCapi(const YCertificateNameBase& other)
    : YCertificateNameBase(other)
{}

YCertificateNameCapi::YCertificateNameCapi(const CERT_NAME_BLOB& encoded)
{
    CERT_NAME_INFO* name = nullptr;
    DWORD size = 0;
    if (!::CryptDecodeObjectEx(X509_ASN_ENCODING, X509_UNICODE_NAME, encoded.pbData, encoded.cbData,
                               CRYPT_DECODE_ALLOC_FLAG, nullptr, &name, &size)) {
        return;
    }
    const YUniqueLocalMemory owner(name);
    for (int number = 0; number < fieldCount; ++number) {
        const Field field = static_cast<Field>(number);
        SetField(field, FindText(*name, GetIdentifier(field)));
    }
}

bool YCertificateNameCapi::Encode(std::vector<BYTE>& encoded) const
{
    CERT_RDN_ATTR attributes[fieldCount] = {};
    CERT_RDN parts[fieldCount] = {};
    CERT_NAME_INFO name{0, parts};
    for (int number = 0; number < fieldCount; ++number) {
        const Field field = static_cast<Field>(number);
        const YUnicodeString& text = GetField(field);
        if (text.IsEmpty()) {
            continue;
        }
        CERT_RDN_ATTR& attribute = attributes[name.cRDN];
        attribute.pszObjId = const_cast<char*>(GetIdentifier(field));
        attribute.dwValueType = GetValueType(field);
        attribute.Value.cbData = text.GetLength() * sizeof(wchar_t);
        attribute.Value.pbData = reinterpret_cast<BYTE*>(const_cast<wchar_t*>(text.c_str()));
        parts[name.cRDN++] = {1, &attribute};
    }
    BYTE* bytes = nullptr;
    DWORD size = 0;
    if (!::CryptEncodeObjectEx(X509_ASN_ENCODING, X509_UNICODE_NAME, &name, CRYPT_ENCODE_ALLOC_FLAG,
                               nullptr, &bytes, &size)) {
        return false;
    }
    const YUniqueLocalMemory owner(bytes);
    encoded.assign(bytes, bytes + size);
    return true;
}
