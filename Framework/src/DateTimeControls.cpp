// Fields of dates, and bars of progress.
#include "afxcmn.h"
#include "afxdtctl.h"

IMPLEMENT_DYNAMIC(CDateTimeCtrl, CWnd)
IMPLEMENT_DYNAMIC(CProgressCtrl, CWnd)

namespace {

void RegisterClasses(DWORD classes)
{
    const INITCOMMONCONTROLSEX wanted{sizeof(wanted), classes};
    ::InitCommonControlsEx(&wanted);
}

}  // namespace

BOOL CDateTimeCtrl::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    RegisterClasses(ICC_DATE_CLASSES);
    return CWnd::Create(DATETIMEPICK_CLASSW, nullptr, dwStyle, rect, pParentWnd, nID);
}

BOOL CProgressCtrl::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    RegisterClasses(ICC_PROGRESS_CLASS);
    return CWnd::Create(PROGRESS_CLASSW, nullptr, dwStyle, rect, pParentWnd, nID);
}
