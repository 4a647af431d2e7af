#include "SystemErrorText.h"
#include "afxwin.h"

#include <iterator>

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CSimpleException, CException)
IMPLEMENT_DYNAMIC(CMemoryException, CSimpleException)
IMPLEMENT_DYNAMIC(CResourceException, CSimpleException)
IMPLEMENT_DYNAMIC(CUserException, CSimpleException)
IMPLEMENT_DYNAMIC(CNotSupportedException, CSimpleException)
IMPLEMENT_DYNAMIC(CInvalidArgException, CSimpleException)

bool DescribeSystemError(DWORD error, LPTSTR text, UINT capacity)
{
    if (text == nullptr || capacity == 0) {
        return false;
    }
    // On the stack: there may be no memory.
    wchar_t whole[512];
    DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                         0, whole, static_cast<DWORD>(std::size(whole)), nullptr);
    while (length > 0 && whole[length - 1] <= L' ') {
        --length;
    }
    whole[length] = L'\0';
    ::lstrcpynW(text, whole, static_cast<int>(capacity));
    return length > 0;
}

void CException::Delete()
{
    if (m_bAutoDelete) {
        delete this;
    }
}

BOOL CException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext) const
{
    if (pnHelpContext != nullptr) {
        *pnHelpContext = 0;
    }
    if (lpszError != nullptr && nMaxError != 0) {
        lpszError[0] = L'\0';
    }
    return FALSE;
}

CSimpleException::CSimpleException(BOOL bAutoDelete, UINT nResourceID, DWORD error)
    : CException(bAutoDelete), resourceId(nResourceID), systemError(error)
{}

BOOL CSimpleException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext) const
{
    CException::GetErrorMessage(lpszError, nMaxError, pnHelpContext);
    if (lpszError == nullptr || nMaxError == 0) {
        return FALSE;
    }
    if (resourceId != 0 &&
        ::LoadStringW(::AfxFindResourceHandle(MAKEINTRESOURCEW(resourceId / 16 + 1), RT_STRING),
                      resourceId, lpszError, static_cast<int>(nMaxError)) > 0) {
        return TRUE;
    }
    return DescribeSystemError(systemError, lpszError, nMaxError);
}

CMemoryException::CMemoryException(BOOL bAutoDelete, UINT nResourceID)
    : CSimpleException(bAutoDelete, nResourceID, ERROR_OUTOFMEMORY)
{}

CResourceException::CResourceException(BOOL bAutoDelete, UINT nResourceID)
    : CSimpleException(bAutoDelete, nResourceID, ERROR_NO_SYSTEM_RESOURCES)
{}

CUserException::CUserException(BOOL bAutoDelete, UINT nResourceID)
    : CSimpleException(bAutoDelete, nResourceID, ERROR_CANCELLED)
{}

CNotSupportedException::CNotSupportedException(BOOL bAutoDelete, UINT nResourceID)
    : CSimpleException(bAutoDelete, nResourceID, ERROR_NOT_SUPPORTED)
{}

CInvalidArgException::CInvalidArgException(BOOL bAutoDelete, UINT nResourceID)
    : CSimpleException(bAutoDelete, nResourceID, ERROR_INVALID_PARAMETER)
{}

void AFXAPI AfxThrowMemoryException()
{
    static CMemoryException exception(FALSE);
    throw &exception;
}

void AFXAPI AfxThrowResourceException()
{
    static CResourceException exception(FALSE);
    throw &exception;
}

void AFXAPI AfxThrowUserException()
{
    static CUserException exception(FALSE);
    throw &exception;
}

void AFXAPI AfxThrowNotSupportedException()
{
    static CNotSupportedException exception(FALSE);
    throw &exception;
}

void AFXAPI AfxThrowInvalidArgException()
{
    static CInvalidArgException exception(FALSE);
    throw &exception;
}
