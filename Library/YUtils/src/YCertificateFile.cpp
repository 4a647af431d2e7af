#include "YCertificateFile.h"

#include "YLongPath.h"
#include "YSecurityDescriptor.h"

#include <memory>
#include <vector>

#include <sddl.h>
#include <wincrypt.h>

namespace {

// The system's own limit is 260 characters; the temporary name needs some of them.
constexpr std::size_t longPathLength = 200;

std::wstring GetFullPath(const wchar_t* path)
{
    std::wstring full = YGetFullPath(path);
    if (full.size() >= longPathLength) {
        const YUnicodeString prefixed = YAddLongPathPrefix(full.c_str());
        return prefixed.IsEmpty() ? full : prefixed.c_str();
    }
    return full;
}

// Hexadecimal digits that nobody can guess. Empty: the system has no randomness to give.
std::wstring MakeRandomName()
{
    BYTE bytes[16] = {};
    HCRYPTPROV provider = 0;
    if (!::CryptAcquireContextW(&provider, nullptr, nullptr, PROV_RSA_FULL,
                                CRYPT_VERIFYCONTEXT | CRYPT_SILENT)) {
        return {};
    }
    const bool isFilled = ::CryptGenRandom(provider, sizeof bytes, bytes);
    ::CryptReleaseContext(provider, 0);
    std::wstring name;
    for (const BYTE byte : bytes) {
        name += L"0123456789abcdef"[byte >> 4];
        name += L"0123456789abcdef"[byte & 15];
    }
    return isFilled ? name : std::wstring();
}

// Of the account that the program runs as, in text form. Empty: not told.
std::wstring GetUserIdentifier()
{
    HANDLE token = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token)) {
        return {};
    }
    const YUniqueKernelHandle owner(token);
    DWORD size = 0;
    ::GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    const std::unique_ptr<BYTE[]> bytes(new BYTE[size]);
    if (!::GetTokenInformation(token, TokenUser, bytes.get(), size, &size)) {
        return {};
    }
    wchar_t* text = nullptr;
    ::ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(bytes.get())->User.Sid, &text);
    const YUniqueLocalMemory textOwner(text);
    return text ? text : L"";
}

// The account, the system and the administrators; nothing from the folder.
YSecurityDescriptor MakeOwnersDescriptor()
{
    YSecurityDescriptor descriptor;
    descriptor.SetText(
        (L"D:P(A;;FA;;;SY)(A;;FA;;;BA)(A;;FA;;;" + GetUserIdentifier() + L")").c_str());
    return descriptor;
}

// ERROR_FILE_NOT_FOUND: there is no old file. Keeps who may read the old one, which may be more than
// a new one's owner: the account of a service.
DWORD Replace(const std::wstring& path, const std::wstring& by)
{
    // Looked at first: where it refuses, ReplaceFileW leaves files of its own behind on some systems,
    // and takes a folder for a file.
    YUniqueFile old(::CreateFileW(path.c_str(), DELETE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, 0, nullptr));
    if (!old) {
        return ::GetLastError();
    }
    old.Reset();
    constexpr DWORD ignored = REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS;
    return ::ReplaceFileW(path.c_str(), by.c_str(), nullptr, ignored, nullptr, nullptr)
               ? ERROR_SUCCESS
               : ::GetLastError();
}

}  // namespace

YCertificateFile::YCertificateFile(const wchar_t* filePath, Readers newReaders)
    : path(GetFullPath(filePath)), readers(newReaders)
{}

YCertificateFile::~YCertificateFile()
{
    if (exists) {
        file.Reset();
        const DWORD error = ::GetLastError();
        ::DeleteFileW(temporaryPath.c_str());
        ::SetLastError(error);
    }
}

bool YCertificateFile::Create()
{
    const std::wstring name = MakeRandomName();
    const YSecurityDescriptor descriptor =
        readers == Readers::Owner ? MakeOwnersDescriptor() : YSecurityDescriptor();
    // A key that everybody could read is none.
    if (name.empty() || (readers == Readers::Owner && !descriptor.IsValid())) {
        return false;
    }
    SECURITY_ATTRIBUTES security{sizeof security, descriptor.Get(), FALSE};
    temporaryPath = path.substr(0, path.find_last_of(L"\\/") + 1) + name + L".tmp";
    file.Reset(::CreateFileW(temporaryPath.c_str(), GENERIC_WRITE,
                             FILE_SHARE_READ | FILE_SHARE_WRITE, &security, CREATE_NEW,
                             FILE_ATTRIBUTE_NORMAL, nullptr));
    exists = static_cast<bool>(file);
    return exists;
}

bool YCertificateFile::Write(const void* bytes, std::size_t count)
{
    DWORD written = 0;
    return ::WriteFile(file.Get(), bytes, static_cast<DWORD>(count), &written, nullptr) &&
           written == count;
}

bool YCertificateFile::Commit()
{
    if (!::FlushFileBuffers(file.Get())) {
        return false;
    }
    file.Reset();
    const DWORD error = Replace(path, temporaryPath);
    const bool isOldLost = error == ERROR_UNABLE_TO_MOVE_REPLACEMENT;
    exists = error != ERROR_SUCCESS;
    if (isOldLost || error == ERROR_FILE_NOT_FOUND) {
        exists = !::MoveFileExW(temporaryPath.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH);
    } else {
        ::SetLastError(error);
    }
    const bool isCommitted = !exists;
    exists = exists && !isOldLost;  // else it is all that there is, and stays
    return isCommitted;
}
