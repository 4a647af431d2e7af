#include "certificates/YCertificatePath.h"

#include "YMessageBox.h"
#include "YMessages.h"
#include "YReportMessageParams.h"

#include <afxdlgs.h>

#include <string>

namespace {

bool IsFile(const wchar_t* path)
{
    const DWORD attributes = ::GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// What follows the last dot of the name; empty: nothing, or there is none.
std::wstring GetExtension(const std::wstring& path)
{
    const std::size_t dot = path.find_last_of(L".\\/:");
    return dot == std::wstring::npos || path[dot] != L'.' ? std::wstring() : path.substr(dot + 1);
}

}  // namespace

YUnicodeString GetCertificateFileFilterDescription()
{
    return YUnicodeString(YReportMessageParams(MSG_CERTIFICATE_FILE_FILTER).GetTrimmedText());
}

// Whether an old file is to be overwritten is asked by whoever writes it.
bool BrowseForCertificateFile(CWnd* parent, const wchar_t* title, YUnicodeString& path)
{
    CFileDialog dialog(FALSE, L"pfx", path.c_str(), OFN_HIDEREADONLY | OFN_PATHMUSTEXIST,
                       GetCertificateFileFilterDescription().c_str(), parent);
    dialog.m_ofn.lpstrTitle = title;
    if (dialog.DoModal() != IDOK) {
        return false;
    }
    path = YUnicodeString(dialog.GetPathName().GetString());
    return true;
}

void YDDV_ValidateCertificatePath(CDataExchange* exchange, const CString& path)
{
    if (!exchange->m_bSaveAndValidate || path.IsEmpty() || IsFile(path)) {
        return;
    }
    YReportMessageParams message(MSG_CERTIFICATE_FILE_NOT_FOUND);
    message.AddInsert(path.GetString());
    YMessageBox(exchange->m_pDlgWnd, &message);
    exchange->Fail();
}

YUnicodeString YCompleteCertificatePath(const YUnicodeString& path)
{
    std::wstring complete = path.c_str();
    const std::wstring extension = GetExtension(complete);
    for (const wchar_t* const known : {L"pfx", L"p12"}) {
        if (::CompareStringOrdinal(extension.c_str(), -1, known, -1, TRUE) == CSTR_EQUAL) {
            return path;
        }
    }
    if (complete.empty() || complete.back() != L'.') {
        complete += L'.';
    }
    return YUnicodeString(complete + L"pfx");
}
