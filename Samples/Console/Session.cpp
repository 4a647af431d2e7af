#include "Session.h"

#include <wincrypt.h>

#include <memory>

namespace {

// What CryptProtectData and its counterpart hand out; wiped, as it may be a password.
struct BlobDeleter
{
    void operator()(DATA_BLOB* blob) const
    {
        if (blob->pbData) {
            ::SecureZeroMemory(blob->pbData, blob->cbData);
            ::LocalFree(blob->pbData);
        }
    }
};

DATA_BLOB MakeBlob(const void* data, std::size_t bytes)
{
    return {static_cast<DWORD>(bytes), static_cast<BYTE*>(const_cast<void*>(data))};
}

}  // namespace

bool ProtectedPassword::Set(const YUnicodeString& clear)
{
    if (clear.IsEmpty()) {
        bytes.clear();
        return true;
    }
    DATA_BLOB in = MakeBlob(clear.c_str(), clear.GetLength() * sizeof(wchar_t));
    DATA_BLOB out{};
    if (!::CryptProtectData(&in, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN,
                            &out)) {
        return false;
    }
    const std::unique_ptr<DATA_BLOB, BlobDeleter> owner(&out);
    bytes.assign(out.pbData, out.pbData + out.cbData);
    return true;
}

YUnicodeString ProtectedPassword::Get() const
{
    DATA_BLOB in = MakeBlob(bytes.data(), bytes.size());
    DATA_BLOB out{};
    if (bytes.empty() || !::CryptUnprotectData(&in, nullptr, nullptr, nullptr, nullptr,
                                               CRYPTPROTECT_UI_FORBIDDEN, &out)) {
        return YUnicodeString(Str::Sensitive);
    }
    const std::unique_ptr<DATA_BLOB, BlobDeleter> owner(&out);
    return YUnicodeString(reinterpret_cast<const wchar_t*>(out.pbData),
                          out.cbData / sizeof(wchar_t), Str::Sensitive);
}

bool Session::operator==(const Session& other) const
{
    return name == other.name && peer.host == other.peer.host && peer.port == other.peer.port &&
           lineEnd == other.lineEnd && options == other.options && logsIn == other.logsIn &&
           user == other.user && password == other.password && lines == other.lines;
}
