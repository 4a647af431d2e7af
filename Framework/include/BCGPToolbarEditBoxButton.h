// BCGPToolbarEditBoxButton.h: an edit in a toolbar. Part of BCGCBProInc.h.
#pragma once

#include "BCGPToolbarButton.h"

class CBCGPEdit;

// Makes its edit when it comes into a toolbar and destroys it when it leaves. What the user types is
// kept as the button's contents, which outlive the edit. The edit's id is the command's.
class COMMONFRAMEWORK_API CBCGPToolbarEditBoxButton : public CBCGPToolbarButton
{
    DECLARE_SERIAL(CBCGPToolbarEditBoxButton)

    CBCGPToolbarEditBoxButton() = default;
    // iWidth: pixels; 0: wide enough for a word or two. dwStyle: of the edit.
    CBCGPToolbarEditBoxButton(UINT uiID, int iImage,
                              DWORD dwStyle = WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL,
                              int iWidth = 0);
    ~CBCGPToolbarEditBoxButton() override;

    // Of the first such button with the command in any toolbar of the program; empty: none.
    static CString GetContentsAll(UINT uiCmd);
    CBCGPEdit* GetEditBox() const { return m_pWndEdit; }  // null: in no toolbar
    virtual void SetContents(const CString& sContents);

    // A new edit that the button will own. Null: failed.
    virtual CBCGPEdit* CreateEdit(CWnd* pWndParent, const CRect& rect);

    void CopyFrom(const CBCGPToolbarButton& src) override;
    void SetStyle(UINT nStyle) override;
    SIZE OnCalculateSize(CDC* pDC, const CSize& sizeDefault, BOOL bHorz) override;
    void OnDraw(CDC* pDC, const CRect& rect, CBCGPToolBarImages* pImages, BOOL bHorz,
                BOOL bCustomizeMode, BOOL bHighlight, BOOL bDrawBorder,
                BOOL bGrayDisabledButtons) override;
    void OnChangeParentWnd(CWnd* pWndParent) override;
    void OnMove() override;
    HWND GetHwnd() override;
    BOOL NotifyCommand(int iNotifyCode) override;

protected:
    CBCGPEdit* m_pWndEdit = nullptr;  // owned
    CString m_strContents;
    DWORD m_dwStyle = WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL;
    int m_iWidth = 0;

private:
    void DestroyEdit();
    CRect GetField() const;  // what the frame goes round
};
