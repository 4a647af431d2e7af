#include "YCertificateBase.h"

#include "YReportMessageParams.h"

#include <cwchar>
#include <string_view>
#include <utility>

YCertificateContextBase::~YCertificateContextBase() = default;

YCertificateBase::YCertificateBase(YUnknownPointer<YCertificateContextBase> certificate,
                                   bool isCreatedHere)
    : context(std::move(certificate)), createdHere(isCreatedHere)
{}

YCertificateBase::~YCertificateBase() = default;

std::wstring YCertificateBase::GetRequestPath(const wchar_t* path)
{
    std::wstring_view stem = path;
    const std::size_t end = stem.find_last_of(L"\\/:.");
    if (end != stem.npos && stem[end] == L'.') {
        stem = stem.substr(0, end);
    }
    return std::wstring(stem) + L".csr";
}

bool YCertificateBase::CheckPaths(const wchar_t* path, YReportMessageParams& error) const
{
    if (path && *path && !(HasRequest() && ::_wcsicmp(GetRequestPath(path).c_str(), path) == 0)) {
        return true;
    }
    error.SetErrorCode(ERROR_INVALID_PARAMETER);
    return false;
}
