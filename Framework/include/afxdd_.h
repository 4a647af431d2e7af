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

// Move one value. DDX_Control gives a control that no object has yet to rControl, for good; the
// others work with or without it. Numbers are decimal. CNotSupportedException: no such control.
COMMONFRAMEWORK_API void AFXAPI DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl);
COMMONFRAMEWORK_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, CString& value);
COMMONFRAMEWORK_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, int& value);
COMMONFRAMEWORK_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, UINT& value);
COMMONFRAMEWORK_API void AFXAPI DDX_Check(CDataExchange* pDX, int nIDC, int& value);
// The group's first button has nIDC and WS_GROUP; value counts its buttons. -1: none is checked.
COMMONFRAMEWORK_API void AFXAPI DDX_Radio(CDataExchange* pDX, int nIDC, int& value);
// -1: no line is selected.
COMMONFRAMEWORK_API void AFXAPI DDX_LBIndex(CDataExchange* pDX, int nIDC, int& index);
COMMONFRAMEWORK_API void AFXAPI DDX_CBIndex(CDataExchange* pDX, int nIDC, int& index);

// Check the value that was exchanged just before; both limits are allowed.
COMMONFRAMEWORK_API void AFXAPI DDV_MinMaxInt(CDataExchange* pDX, int value, int minVal,
                                              int maxVal);
COMMONFRAMEWORK_API void AFXAPI DDV_MinMaxUInt(CDataExchange* pDX, UINT value, UINT minVal,
                                               UINT maxVal);
// An edit also takes no more while the user types.
COMMONFRAMEWORK_API void AFXAPI DDV_MaxChars(CDataExchange* pDX, const CString& value, int nChars);
