// afxdd_.h: between the members of a dialog and its controls. Part of afxwin.h.
#pragma once

#include "afxwnd_.h"

// One pass over the controls of a dialog, made by UpdateData and handed to DoDataExchange: members
// to controls, or controls to members with their validation. Lives for that pass only.
class COMMONFRAMEWORK_API CDataExchange
{
public:
    CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate)
        : m_bSaveAndValidate(bSaveAndValidate), m_pDlgWnd(pDlgWnd)
    {}

    // Each names the control that Fail gives the focus to. CNotSupportedException: no such control.
    HWND PrepareCtrl(int nIDC);
    HWND PrepareEditCtrl(int nIDC);  // whose text Fail selects as well
    // Throws CUserException, after the user has been told. Does not return.
    [[noreturn]] void Fail();

    BOOL m_bSaveAndValidate;  // TRUE: from the controls to the members
    CWnd* m_pDlgWnd;
    int m_idLastControl = 0;  // 0: none yet
    BOOL m_bEditLastControl = FALSE;
};
