// BCGPToolbarButton.h: what a toolbar is made of. Part of BCGCBProInc.h.
#pragma once

#include "afxwin.h"

#include <commctrl.h>

class CBCGPToolBarImages;

// Styles: the kind in the low word, the state in the high one.
#define TBBS_BUTTON MAKELONG(BTNS_BUTTON, 0)
#define TBBS_SEPARATOR MAKELONG(BTNS_SEP, 0)
#define TBBS_CHECKED MAKELONG(0, TBSTATE_CHECKED)
#define TBBS_PRESSED MAKELONG(0, TBSTATE_PRESSED)
#define TBBS_DISABLED MAKELONG(0, TBSTATE_ENABLED)

// An item of a toolbar, without a window of its own; derived classes may host one. It shows its
// text. Toolbars copy it by its run-time class and CopyFrom, so a derived class overrides both.
class COMMONFRAMEWORK_API CBCGPToolbarButton : public CObject
{
    DECLARE_SERIAL(CBCGPToolbarButton)

    CBCGPToolbarButton() = default;
    // The image is kept for copies; toolbars here show texts.
    CBCGPToolbarButton(UINT uiID, int iImage, LPCTSTR lpszText = nullptr, BOOL bUserButton = FALSE,
                       BOOL bLocked = FALSE);

    virtual void CopyFrom(const CBCGPToolbarButton& src);

    int GetImage() const { return m_iImage; }
    BOOL IsLocked() const { return m_bLocked; }
    CRect Rect() const { return m_rect; }  // in the toolbar's client area
    void SetRect(const CRect& rect);
    virtual void SetStyle(UINT nStyle) { m_nStyle = nStyle; }

    // The size that the button wants; sizeDefault: what a plain one has at least.
    virtual SIZE OnCalculateSize(CDC* pDC, const CSize& sizeDefault, BOOL bHorz);
    virtual void OnDraw(CDC* pDC, const CRect& rect, CBCGPToolBarImages* pImages, BOOL bHorz = TRUE,
                        BOOL bCustomizeMode = FALSE, BOOL bHighlight = FALSE,
                        BOOL bDrawBorder = TRUE, BOOL bGrayDisabledButtons = TRUE);

    // For buttons with a window. The toolbar is told: null when it goes.
    virtual void OnChangeParentWnd(CWnd* pWndParent) { m_pWndParent = pWndParent; }
    virtual void OnMove() {}  // the rectangle has changed
    virtual HWND GetHwnd() { return nullptr; }
    // A notification of the window. TRUE: settled, the toolbar's owner does not hear of it.
    virtual BOOL NotifyCommand(int) { return FALSE; }
    virtual HBRUSH OnCtlColor(CDC*, UINT) { return nullptr; }  // null: the toolbar decides

    UINT m_nID = 0;
    UINT m_nStyle = TBBS_BUTTON;
    CString m_strText;
    BOOL m_bUserButton = FALSE;

protected:
    int m_iImage = -1;
    BOOL m_bLocked = FALSE;
    CRect m_rect;
    CWnd* m_pWndParent = nullptr;
};
