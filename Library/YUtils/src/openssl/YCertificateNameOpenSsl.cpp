#include "YCertificateNameOpenSsl.h"

#include "OpenSslLibrary.h"

#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr int utf8Type = 0x1000;  // MBSTRING_UTF8

// The library's numbers, in the order of the fields.
constexpr int fieldNids[YCertificateNameBase::fieldCount] = {13, 17, 18, 14, 15, 16, 48};

struct MemoryFreer
{
    void operator()(unsigned char* bytes) const noexcept
    {
        OpenSSL::GetFunctions().CRYPTO_free(bytes, "", 0);
    }
};

// Empty: the name has no such field, or one that is not text.
YUnicodeString ReadField(const OpenSSL::Name* name, int nid)
{
    const OpenSSL::Functions& openSsl = OpenSSL::GetFunctions();
    const int location = openSsl.X509_NAME_get_index_by_NID(name, nid, -1);
    if (location < 0) {
        return {};
    }
    unsigned char* bytes = nullptr;
    const int length = openSsl.ASN1_STRING_to_UTF8(
        &bytes, openSsl.X509_NAME_ENTRY_get_data(openSsl.X509_NAME_get_entry(name, location)));
    if (length < 0) {
        return {};
    }
    const std::unique_ptr<unsigned char, MemoryFreer> owner(bytes);
    return YUnicodeString::FromBytes(
        std::string_view(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)),
        CP_UTF8);
}

}  // namespace

YCertificateNameOpenSsl::YCertificateNameOpenSsl(const YCertificateNameBase& other)
    : YCertificateNameBase(other)
{}

YCertificateNameOpenSsl::YCertificateNameOpenSsl(const OpenSSL::Name* name)
{
    for (int field = 0; field < fieldCount; ++field) {
        SetField(static_cast<Field>(field), ReadField(name, fieldNids[field]));
    }
}

bool YCertificateNameOpenSsl::AddTo(OpenSSL::Name* name) const
{
    for (int number = 0; number < fieldCount; ++number) {
        const Field field = static_cast<Field>(number);
        const std::string text = GetField(field).ToBytes(CP_UTF8);
        if (!text.empty() && OpenSSL::GetFunctions().X509_NAME_add_entry_by_txt(
                                 name, GetShortName(field), utf8Type,
                                 reinterpret_cast<const unsigned char*>(text.data()),
                                 static_cast<int>(text.size()), -1, 0) != 1) {
            return false;
        }
    }
    return true;
}
