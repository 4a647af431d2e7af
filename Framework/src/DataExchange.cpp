#include "afxwin.h"

HWND CDataExchange::PrepareCtrl(int nIDC)
{
    ASSERT(nIDC != 0 && nIDC != -1);  // a control that exchanges data has an id of its own
    const HWND control = ::GetDlgItem(m_pDlgWnd->GetSafeHwnd(), nIDC);
    if (control == nullptr) {
        ::AfxThrowNotSupportedException();
    }
    m_idLastControl = nIDC;
    m_bEditLastControl = FALSE;
    return control;
}

HWND CDataExchange::PrepareEditCtrl(int nIDC)
{
    const HWND control = PrepareCtrl(nIDC);
    m_bEditLastControl = TRUE;
    return control;
}

void CDataExchange::Fail()
{
    if (m_bSaveAndValidate && m_idLastControl != 0) {
        const HWND control = ::GetDlgItem(m_pDlgWnd->GetSafeHwnd(), m_idLastControl);
        ::SetFocus(control);
        if (m_bEditLastControl) {
            ::SendMessageW(control, EM_SETSEL, 0, -1);
        }
    }
    ::AfxThrowUserException();
}
