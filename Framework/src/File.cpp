#include "SystemErrorText.h"

IMPLEMENT_DYNAMIC(CFileException, CException)
IMPLEMENT_DYNAMIC(CFile, CObject)

namespace {

DWORD GetAccess(UINT openFlags)
{
    switch (openFlags & (CFile::modeWrite | CFile::modeReadWrite)) {
    case CFile::modeWrite: return GENERIC_WRITE;
    case CFile::modeReadWrite: return GENERIC_READ | GENERIC_WRITE;
    default: return GENERIC_READ;
    }
}

DWORD GetSharing(UINT openFlags)
{
    switch (openFlags & 0x70) {
    case CFile::shareDenyWrite: return FILE_SHARE_READ;
    case CFile::shareDenyRead: return FILE_SHARE_WRITE;
    case CFile::shareDenyNone: return FILE_SHARE_READ | FILE_SHARE_WRITE;
    default: return 0;
    }
}

DWORD GetDisposition(UINT openFlags)
{
    if ((openFlags & CFile::modeCreate) == 0) {
        return OPEN_EXISTING;
    }
    return (openFlags & CFile::modeNoTruncate) != 0 ? OPEN_ALWAYS : CREATE_ALWAYS;
}

}  // namespace

CFileException::CFileException(int cause, LONG lOsError, LPCTSTR lpszFileName)
    : m_cause(cause), m_lOsError(lOsError), m_strFileName(lpszFileName)
{}

BOOL CFileException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext) const
{
    CException::GetErrorMessage(lpszError, nMaxError, pnHelpContext);
    return m_lOsError != -1 &&
           DescribeSystemError(static_cast<DWORD>(m_lOsError), lpszError, nMaxError);
}

int AFXAPI CFileException::OsErrorToException(LONG lOsError)
{
    switch (lOsError) {
    case ERROR_SUCCESS: return none;
    case ERROR_FILE_NOT_FOUND: return fileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_PATHNAME:
    case ERROR_INVALID_NAME: return badPath;
    case ERROR_TOO_MANY_OPEN_FILES: return tooManyOpenFiles;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT: return accessDenied;
    case ERROR_INVALID_HANDLE: return invalidFile;
    case ERROR_NEGATIVE_SEEK:
    case ERROR_SEEK: return badSeek;
    case ERROR_SHARING_VIOLATION: return sharingViolation;
    case ERROR_LOCK_VIOLATION: return lockViolation;
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_DISK_FULL: return diskFull;
    case ERROR_HANDLE_EOF: return endOfFile;
    case ERROR_CRC:
    case ERROR_READ_FAULT:
    case ERROR_WRITE_FAULT:
    case ERROR_GEN_FAILURE: return hardIO;
    default: return genericException;
    }
}

void AFXAPI CFileException::ThrowOsError(LONG lOsError, LPCTSTR lpszFileName)
{
    ::AfxThrowFileException(OsErrorToException(lOsError), lOsError, lpszFileName);
}

void AFXAPI AfxThrowFileException(int cause, LONG lOsError, LPCTSTR lpszFileName)
{
    throw new CFileException(cause, lOsError, lpszFileName);
}

CFile::CFile(LPCTSTR lpszFileName, UINT nOpenFlags)
{
    CFileException error;
    if (!CFile::Open(lpszFileName, nOpenFlags, &error)) {
        ::AfxThrowFileException(error.m_cause, error.m_lOsError, lpszFileName);
    }
}

CFile::~CFile()
{
    CFile::Abort();
}

BOOL CFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError)
{
    ASSERT(m_hFile == INVALID_HANDLE_VALUE);
    SECURITY_ATTRIBUTES security{sizeof(security), nullptr, (nOpenFlags & modeNoInherit) == 0};
    m_hFile = ::CreateFileW(lpszFileName, GetAccess(nOpenFlags), GetSharing(nOpenFlags), &security,
                            GetDisposition(nOpenFlags), FILE_ATTRIBUTE_NORMAL, nullptr);
    if (m_hFile != INVALID_HANDLE_VALUE) {
        m_strFileName = lpszFileName;
        return TRUE;
    }
    if (pError != nullptr) {
        pError->m_lOsError = static_cast<LONG>(::GetLastError());
        pError->m_cause = CFileException::OsErrorToException(pError->m_lOsError);
        pError->m_strFileName = lpszFileName;
    }
    return FALSE;
}

ULONGLONG CFile::GetPosition() const
{
    LARGE_INTEGER position{};
    Require(::SetFilePointerEx(m_hFile, {}, &position, FILE_CURRENT));
    return static_cast<ULONGLONG>(position.QuadPart);
}

ULONGLONG CFile::Seek(LONGLONG lOff, UINT nFrom)
{
    LARGE_INTEGER distance{};
    distance.QuadPart = lOff;
    LARGE_INTEGER position{};
    Require(::SetFilePointerEx(m_hFile, distance, &position, nFrom));
    return static_cast<ULONGLONG>(position.QuadPart);
}

void CFile::SetLength(ULONGLONG dwNewLen)
{
    Seek(static_cast<LONGLONG>(dwNewLen), begin);
    Require(::SetEndOfFile(m_hFile));
}

ULONGLONG CFile::GetLength() const
{
    LARGE_INTEGER length{};
    Require(::GetFileSizeEx(m_hFile, &length));
    return static_cast<ULONGLONG>(length.QuadPart);
}

UINT CFile::Read(void* lpBuf, UINT nCount)
{
    DWORD count = 0;
    Require(::ReadFile(m_hFile, lpBuf, nCount, &count, nullptr));
    return count;
}

void CFile::Write(const void* lpBuf, UINT nCount)
{
    DWORD count = 0;
    Require(::WriteFile(m_hFile, lpBuf, nCount, &count, nullptr));
    if (count != nCount) {
        ::AfxThrowFileException(CFileException::diskFull, ERROR_DISK_FULL, m_strFileName);
    }
}

void CFile::Flush()
{
    if (m_hFile != INVALID_HANDLE_VALUE) {
        Require(::FlushFileBuffers(m_hFile));
    }
}

void CFile::Close()
{
    const HANDLE closed = m_hFile;
    m_hFile = INVALID_HANDLE_VALUE;
    Require(closed == INVALID_HANDLE_VALUE || ::CloseHandle(closed));
    m_strFileName.Empty();
}

void CFile::Abort()
{
    if (m_hFile != INVALID_HANDLE_VALUE) {
        ::CloseHandle(m_hFile);
        m_hFile = INVALID_HANDLE_VALUE;
    }
    m_strFileName.Empty();
}

void CFile::Require(BOOL success) const
{
    if (!success) {
        CFileException::ThrowOsError(static_cast<LONG>(::GetLastError()), m_strFileName);
    }
}
