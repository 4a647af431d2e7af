// afxcmn.h: the common controls.
#pragma once

#include "afxwin.h"

#include <commctrl.h>

// A window that shows a text beside the pointer when that rests on a tool: a window, or a part of
// one. It sees only the mouse messages that are relayed to it.
class COMMONFRAMEWORK_API CToolTipCtrl : public CWnd
{
    DECLARE_DYNAMIC(CToolTipCtrl)

    virtual BOOL Create(CWnd* pParentWnd, DWORD dwStyle = 0);
    using CWnd::Create;

    void Activate(BOOL bActivate) { SendMessage(TTM_ACTIVATE, static_cast<WPARAM>(bActivate)); }
    // Without a rectangle (of pWnd's client coordinates) and an id the tool is the whole window;
    // with one it needs both. FALSE: failed.
    BOOL AddTool(CWnd* pWnd, LPCTSTR lpszText = LPSTR_TEXTCALLBACK, LPCRECT lpRectTool = nullptr,
                 UINT_PTR nIDTool = 0);
    void SetToolRect(CWnd* pWnd, UINT_PTR nIDTool, LPCRECT lpRect);
    void RelayEvent(LPMSG lpMsg)
    {
        SendMessage(TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(lpMsg));
    }
};
