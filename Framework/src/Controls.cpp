#include "afxwin.h"

IMPLEMENT_DYNAMIC(CStatic, CWnd)
IMPLEMENT_DYNAMIC(CButton, CWnd)
IMPLEMENT_DYNAMIC(CEdit, CWnd)

BOOL CStatic::Create(LPCTSTR lpszText, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    return CWnd::Create(L"STATIC", lpszText, dwStyle, rect, pParentWnd, nID);
}

BOOL CButton::Create(LPCTSTR lpszCaption, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                     UINT nID)
{
    return CWnd::Create(L"BUTTON", lpszCaption, dwStyle, rect, pParentWnd, nID);
}

BOOL CEdit::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    return CWnd::Create(L"EDIT", nullptr, dwStyle, rect, pParentWnd, nID);
}
