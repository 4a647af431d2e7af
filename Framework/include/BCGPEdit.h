// BCGPEdit.h: an edit with a button inside its right edge. Part of BCGCBProInc.h.
#pragma once

#include "afxwin.h"

// The button is part of the window's frame: the text never runs under it. It takes the focus to the
// edit and acts when the mouse is released over it. User-interface thread.
class COMMONFRAMEWORK_API CBCGPEdit : public CEdit
{
    DECLARE_DYNAMIC(CBCGPEdit)

    CBCGPEdit();
    ~CBCGPEdit() override;

    // The label is shown while there is no image.
    void EnableBrowseButton(BOOL bEnable = TRUE, LPCTSTR szLabel = _T("..."));
    // The button gets as wide as the image, which is copied; its alpha, if it has 32 bits, is not
    // multiplied into its colours. bAutoDestroy: the bitmap is the control's to delete. Null: the
    // label again.
    void SetBrowseButtonImage(HBITMAP hBitmap, BOOL bAutoDestroy = TRUE);
    void SetBrowseButtonImage(UINT uiBmpResId);

    virtual void OnBrowse() {}  // the button was clicked; may destroy the window
    virtual void OnDrawBrowseButton(CDC* pDC, CRect rect, BOOL bIsButtonPressed, BOOL bIsButtonHot);
    virtual void OnChangeLayout();

protected:
    afx_msg HBRUSH CtlColor(CDC* pDC, UINT nCtlColor);
    afx_msg void OnNcCalcSize(BOOL bCalcValidRects, NCCALCSIZE_PARAMS* lpncsp);
    afx_msg LRESULT OnNcHitTest(CPoint point);
    afx_msg void OnNcPaint();
    afx_msg void OnNcLButtonDown(UINT nHitTest, CPoint point);
    afx_msg void OnNcLButtonDblClk(UINT nHitTest, CPoint point);
    afx_msg void OnNcMouseMove(UINT nHitTest, CPoint point);
    afx_msg LRESULT OnNcMouseLeave(WPARAM wParam, LPARAM lParam);
    afx_msg void OnMouseMove(UINT nFlags, CPoint point);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnCaptureChanged(CWnd* pWnd);
    afx_msg void OnEnable(BOOL bEnable);
    DECLARE_MESSAGE_MAP()

    CRect m_rectBtn;  // client coordinates, right of the client area; empty: no button

private:
    int GetButtonWidth() const;
    bool IsOnButton(CPoint screenPoint) const;
    void ShowButtonState(bool pressed, bool hot);
    bool TakesText() const;
    HBRUSH AskForGround(CDC& dc) const;
    void DrawLabel(CDC& dc, CRect rect);

    bool hasButton = false;
    bool isPressed = false;
    bool isHot = false;
    bool isCaptured = false;  // the mouse went down on the button and is not released yet
    CString label;
    CBitmap image;  // 32 bits, colours multiplied by alpha; no handle: the label is shown
};
