// BCGPListCtrl.h: a list in the control library's look. Part of BCGCBProInc.h.
#pragma once

#include "BCGPHeaderCtrl.h"
#include "afxcmn.h"

class COMMONFRAMEWORK_API CBCGPListCtrl : public CListCtrl
{
    DECLARE_DYNAMIC(CBCGPListCtrl)

    // Without a window while the list has no captions yet: it gets them with LVS_REPORT.
    virtual CBCGPHeaderCtrl& GetHeaderCtrl();

protected:
    // Plain: the system draws.
    afx_msg void OnCustomDraw(NMHDR* pNMHDR, LRESULT* pResult);
    DECLARE_MESSAGE_MAP()

    CBCGPHeaderCtrl m_wndHeader;
};
