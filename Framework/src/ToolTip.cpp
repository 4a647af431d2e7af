#include "afxcmn.h"

IMPLEMENT_DYNAMIC(CToolTipCtrl, CWnd)

namespace {

// The older size, which the system's tooltip takes with and without a manifest; what the newer one
// has more is not used.
TOOLINFOW MakeTool(const CWnd& window, UINT_PTR id)
{
    TOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = window.GetSafeHwnd();
    tool.uId = id;
    return tool;
}

LPARAM ToParameter(TOOLINFOW& tool)
{
    return reinterpret_cast<LPARAM>(&tool);
}

}  // namespace

BOOL CToolTipCtrl::Create(CWnd* pParentWnd, DWORD dwStyle)
{
    INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_BAR_CLASSES};
    ::InitCommonControlsEx(&classes);
    return CreateEx(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | dwStyle, CW_USEDEFAULT,
                    CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, pParentWnd->GetSafeHwnd(),
                    nullptr);
}

BOOL CToolTipCtrl::AddTool(CWnd* pWnd, LPCTSTR lpszText, LPCRECT lpRectTool, UINT_PTR nIDTool)
{
    ASSERT((lpRectTool != nullptr) == (nIDTool != 0));
    TOOLINFOW tool = MakeTool(*pWnd, nIDTool);
    if (lpRectTool != nullptr) {
        tool.rect = *lpRectTool;
    } else {
        tool.uFlags = TTF_IDISHWND;
        tool.uId = reinterpret_cast<UINT_PTR>(pWnd->GetSafeHwnd());
    }
    tool.lpszText = const_cast<LPTSTR>(lpszText);
    return static_cast<BOOL>(SendMessage(TTM_ADDTOOLW, 0, ToParameter(tool)));
}

void CToolTipCtrl::SetToolRect(CWnd* pWnd, UINT_PTR nIDTool, LPCRECT lpRect)
{
    TOOLINFOW tool = MakeTool(*pWnd, nIDTool);
    tool.rect = *lpRect;
    SendMessage(TTM_NEWTOOLRECT, 0, ToParameter(tool));
}
