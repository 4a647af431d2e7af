// afxlist_.h: lists of lines. Part of afxwin.h.
#pragma once

#include "afxwnd_.h"

#include <vector>

// Notification of a check list to its parent: the user has checked or unchecked a line.
#define CLBN_CHKCHANGE 40

// Lines are counted from 0; LB_ERR: there is no such line.
class COMMONFRAMEWORK_API CListBox : public CWnd
{
    DECLARE_DYNAMIC(CListBox)

    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    using CWnd::Create;

    // The text is copied. The line's index, or LB_ERR, LB_ERRSPACE.
    int AddString(LPCTSTR lpszItem) { return Send(LB_ADDSTRING, 0, lpszItem); }
    int InsertString(int nIndex, LPCTSTR lpszItem)
    {
        return Send(LB_INSERTSTRING, nIndex, lpszItem);
    }
    int DeleteString(UINT nIndex) { return Send(LB_DELETESTRING, static_cast<int>(nIndex)); }
    void ResetContent() { SendMessage(LB_RESETCONTENT); }
    int GetCount() const { return Send(LB_GETCOUNT, 0); }
    int GetCaretIndex() const { return Send(LB_GETCARETINDEX, 0); }  // of the line with the focus
    int GetCurSel() const { return Send(LB_GETCURSEL, 0); }  // of a single-selection list
    int SetCurSel(int nSelect) { return Send(LB_SETCURSEL, nSelect); }
    void GetText(int nIndex, CString& rString) const;  // no such line: empty
    DWORD_PTR GetItemData(int nIndex) const
    {
        return static_cast<DWORD_PTR>(Send(LB_GETITEMDATA, nIndex));
    }
    int SetItemData(int nIndex, DWORD_PTR dwItemData)
    {
        return static_cast<int>(SendMessage(LB_SETITEMDATA, static_cast<WPARAM>(nIndex),
                                            static_cast<LPARAM>(dwItemData)));
    }
    int GetItemRect(int nIndex, LPRECT lpRect) const;
    int SetItemHeight(int nIndex, UINT cyItemHeight)
    {
        return static_cast<int>(SendMessage(LB_SETITEMHEIGHT, static_cast<WPARAM>(nIndex),
                                            static_cast<LPARAM>(cyItemHeight)));
    }
    UINT ItemFromPoint(CPoint pt, BOOL& bOutside) const;

    // For owner-drawn lists: the parent hands back the request.
    virtual void DrawItem(LPDRAWITEMSTRUCT lpDrawItemStruct);

protected:
    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult) override;

private:
    int Send(UINT message, int index, LPCTSTR text = nullptr) const
    {
        return static_cast<int>(
            SendMessage(message, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text)));
    }
};

class COMMONFRAMEWORK_API CComboBox : public CWnd
{
    DECLARE_DYNAMIC(CComboBox)

    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    using CWnd::Create;

    int AddString(LPCTSTR lpszString)
    {
        return static_cast<int>(SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(lpszString)));
    }
    void ResetContent() { SendMessage(CB_RESETCONTENT); }
    int GetCount() const { return static_cast<int>(SendMessage(CB_GETCOUNT)); }
    int GetCurSel() const { return static_cast<int>(SendMessage(CB_GETCURSEL)); }
    int SetCurSel(int nSelect)
    {
        return static_cast<int>(SendMessage(CB_SETCURSEL, static_cast<WPARAM>(nSelect)));
    }
    void GetLBText(int nIndex, CString& rString) const;  // no such line: empty
    DWORD_PTR GetItemData(int nIndex) const
    {
        return static_cast<DWORD_PTR>(SendMessage(CB_GETITEMDATA, static_cast<WPARAM>(nIndex)));
    }
    int SetItemData(int nIndex, DWORD_PTR dwItemData)
    {
        return static_cast<int>(SendMessage(CB_SETITEMDATA, static_cast<WPARAM>(nIndex),
                                            static_cast<LPARAM>(dwItemData)));
    }
};

// Lines with a box that a click into it, a double click or Space checks and unchecks; the parent
// hears CLBN_CHKCHANGE. Its style needs LBS_OWNERDRAWFIXED and LBS_HASSTRINGS; one line at a time is
// selected. Item data are the caller's, as in any list.
class COMMONFRAMEWORK_API CCheckListBox : public CListBox
{
    DECLARE_DYNAMIC(CCheckListBox)

    // BST_CHECKED or BST_UNCHECKED; sends no notification.
    void SetCheck(int nIndex, int nCheck);
    int GetCheck(int nIndex) const;
    // The user cannot check a disabled line; it is drawn grey.
    void Enable(int nIndex, BOOL bEnabled = TRUE);
    BOOL IsEnabled(int nIndex) const;
    // Where in the line's rectangle its box stands.
    virtual CRect OnGetCheckPosition(CRect rectItem, CRect rectCheckBox);

    void DrawItem(LPDRAWITEMSTRUCT lpDrawItemStruct) override;
    void PreSubclassWindow() override;

protected:
    afx_msg int OnCreate(LPCREATESTRUCT lpcs);
    afx_msg LRESULT OnAddString(WPARAM wParam, LPARAM lParam);  // also for LB_INSERTSTRING
    afx_msg LRESULT OnDeleteString(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnResetContent(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnSetFont(WPARAM wParam, LPARAM lParam);
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point);
    afx_msg void OnLButtonDblClk(UINT nFlags, CPoint point);
    afx_msg void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags);
    DECLARE_MESSAGE_MAP()

private:
    struct Line
    {
        int check = BST_UNCHECKED;
        BOOL isEnabled = TRUE;
    };

    const Line* FindLine(int index) const;
    CRect GetBox(int index);
    void FitLineHeight();
    void InvalidateLine(int index);
    void Toggle(int index);
    COLORREF TextColor(const Line& line, bool isSelected) const;
    void DrawBox(CDC& dc, CRect box, const Line& line) const;
    void DrawLabel(CDC& dc, CRect rect, int index, bool isSelected) const;

    std::vector<Line> lines;  // one for each of the system's
};
