// BCGPToolBar.h: toolbars. Part of BCGCBProInc.h.
#pragma once

#include "BCGPToolbarButton.h"
#include "afxext.h"

#include <memory>
#include <vector>

// The control library's kind of control bar.
class COMMONFRAMEWORK_API CBCGPControlBar : public CControlBar
{
    DECLARE_DYNAMIC(CBCGPControlBar)
};

// A row of buttons at one side of a frame. A click sends the button's command to the frame above,
// and so do the windows that buttons host; update handlers enable and check the buttons in idle
// time. User-interface thread.
class COMMONFRAMEWORK_API CBCGPToolBar : public CBCGPControlBar
{
    DECLARE_DYNAMIC(CBCGPToolBar)

    CBCGPToolBar();
    ~CBCGPToolBar() override;

    virtual BOOL Create(CWnd* pParentWnd, DWORD dwStyle = WS_CHILD | WS_VISIBLE | CBRS_TOP,
                        UINT nID = AFX_IDW_TOOLBAR);
    using CControlBar::Create;

    // The first form copies the button, the second takes it over. Before iInsertAt; -1: at the
    // end. The place that it got; -1: there is no such place, and it is deleted.
    virtual int InsertButton(const CBCGPToolbarButton& button, int iInsertAt = -1);
    virtual int InsertButton(CBCGPToolbarButton* pButton, int iInsertAt = -1);
    int InsertSeparator(int iInsertAt = -1);
    // A copy in place of the first button with the command, or of all; how many there were.
    int ReplaceButton(UINT uiCmd, const CBCGPToolbarButton& button, BOOL bAll = FALSE);
    BOOL RemoveButton(int iIndex);
    void RemoveAllButtons();

    int GetCount() const { return static_cast<int>(buttons.size()); }
    CBCGPToolbarButton* GetButton(int iIndex) const;  // null: there is none
    int CommandToIndex(UINT uiCmd, int iIndexFrom = 0) const;  // -1: none
    int HitTest(CPoint point);  // -1: no button there
    UINT GetButtonStyle(int nIndex) const;
    void SetButtonStyle(int nIndex, UINT nStyle);
    virtual void AdjustLayout();  // places the buttons anew

    CSize CalcFixedLayout(BOOL bStretch, BOOL bHorz) override;
    void OnUpdateCmdUI(CFrameWnd* pTarget, BOOL bDisableIfNoHndler) override;

protected:
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    afx_msg void OnDestroy();
    afx_msg void OnSize(UINT nType, int cx, int cy);
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* pDC);
    afx_msg HBRUSH OnCtlColor(CDC* pDC, CWnd* pWnd, UINT nCtlColor);
    afx_msg void OnMouseMove(UINT nFlags, CPoint point);
    afx_msg LRESULT OnMouseLeave(WPARAM wParam, LPARAM lParam);
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnCaptureChanged(CWnd* pWnd);
    afx_msg LRESULT OnGetFont(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    using Button = std::unique_ptr<CBCGPToolbarButton>;

    bool HasButton(int index) const { return index >= 0 && index < GetCount(); }
    CBCGPToolbarButton* FindByWindow(HWND window) const;
    CSize GetDefaultSize(CDC& dc) const;
    CSize MeasureButtons();
    bool IsClickable(int index) const;
    void ShowStates(int hot, int pressed);
    void InvalidateButton(int index);

    std::vector<Button> buttons;
    CFont font;
    // Indices, or -1. While the mouse is captured: the button it went down on is the armed one.
    int hotButton = -1;
    int pressedButton = -1;
    int armedButton = -1;
};
