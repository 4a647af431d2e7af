// afxdtctl.h: controls of dates and times.
#pragma once

#include "afxwin.h"

#include <commctrl.h>

// A field with a date or a time. User-interface thread.
class COMMONFRAMEWORK_API CDateTimeCtrl : public CWnd
{
    DECLARE_DYNAMIC(CDateTimeCtrl)

    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    using CWnd::Create;

    // Local time. GDT_VALID; GDT_NONE: the field is of those that may be empty, and is.
    DWORD GetTime(LPSYSTEMTIME pTimeDest) const
    {
        return static_cast<DWORD>(
            SendMessage(DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(pTimeDest)));
    }
    // Null: empty. FALSE: it cannot be shown.
    BOOL SetTime(LPSYSTEMTIME pTimeNew = nullptr)
    {
        return static_cast<BOOL>(SendMessage(DTM_SETSYSTEMTIME, pTimeNew ? GDT_VALID : GDT_NONE,
                                             reinterpret_cast<LPARAM>(pTimeNew)));
    }
};
