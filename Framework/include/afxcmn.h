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

// A bar that shows how far something has come, or that something goes on.
class COMMONFRAMEWORK_API CProgressCtrl : public CWnd
{
    DECLARE_DYNAMIC(CProgressCtrl)

    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    using CWnd::Create;

    // A control with PBS_MARQUEE moves while it is on. nInterval: milliseconds between two steps.
    BOOL SetMarquee(BOOL fMarqueeMode, int nInterval)
    {
        return static_cast<BOOL>(SendMessage(PBM_SETMARQUEE, static_cast<WPARAM>(fMarqueeMode),
                                             static_cast<LPARAM>(nInterval)));
    }
};

// A tree of labels. Items are the control's; an item that is deleted takes its children along.
class COMMONFRAMEWORK_API CTreeCtrl : public CWnd
{
    DECLARE_DYNAMIC(CTreeCtrl)

    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    using CWnd::Create;

    // The text is copied. Null: failed.
    HTREEITEM InsertItem(LPCTSTR lpszItem, HTREEITEM hParent = TVI_ROOT,
                         HTREEITEM hInsertAfter = TVI_LAST);
    BOOL DeleteItem(HTREEITEM hItem) { return Send(TVM_DELETEITEM, 0, hItem) != 0; }
    BOOL DeleteAllItems() { return DeleteItem(TVI_ROOT); }
    UINT GetCount() const { return static_cast<UINT>(SendMessage(TVM_GETCOUNT)); }
    // Items that fit into the window as a whole.
    UINT GetVisibleCount() const { return static_cast<UINT>(SendMessage(TVM_GETVISIBLECOUNT)); }

    // Visible items are those whose parents are all expanded, scrolled to or not. Null: none.
    HTREEITEM GetNextItem(HTREEITEM hItem, UINT nCode) const
    {
        return reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, nCode, hItem));
    }
    HTREEITEM GetRootItem() const { return GetNextItem(nullptr, TVGN_ROOT); }
    HTREEITEM GetChildItem(HTREEITEM hItem) const { return GetNextItem(hItem, TVGN_CHILD); }
    HTREEITEM GetParentItem(HTREEITEM hItem) const { return GetNextItem(hItem, TVGN_PARENT); }
    HTREEITEM GetNextSiblingItem(HTREEITEM hItem) const { return GetNextItem(hItem, TVGN_NEXT); }
    HTREEITEM GetPrevSiblingItem(HTREEITEM hItem) const
    {
        return GetNextItem(hItem, TVGN_PREVIOUS);
    }
    HTREEITEM GetNextVisibleItem(HTREEITEM hItem) const
    {
        return GetNextItem(hItem, TVGN_NEXTVISIBLE);
    }
    HTREEITEM GetPrevVisibleItem(HTREEITEM hItem) const
    {
        return GetNextItem(hItem, TVGN_PREVIOUSVISIBLE);
    }
    HTREEITEM GetLastVisibleItem() const { return GetNextItem(nullptr, TVGN_LASTVISIBLE); }
    HTREEITEM GetSelectedItem() const { return GetNextItem(nullptr, TVGN_CARET); }
    BOOL ItemHasChildren(HTREEITEM hItem) const { return GetChildItem(hItem) != nullptr; }

    // Null: selects nothing. FALSE: the parent has refused (TVN_SELCHANGING).
    BOOL SelectItem(HTREEITEM hItem) { return Send(TVM_SELECTITEM, TVGN_CARET, hItem) != 0; }
    BOOL Expand(HTREEITEM hItem, UINT nCode) { return Send(TVM_EXPAND, nCode, hItem) != 0; }
    BOOL EnsureVisible(HTREEITEM hItem) { return Send(TVM_ENSUREVISIBLE, 0, hItem) != 0; }

    CString GetItemText(HTREEITEM hItem) const;
    BOOL SetItemText(HTREEITEM hItem, LPCTSTR lpszItem);
    DWORD_PTR GetItemData(HTREEITEM hItem) const;
    BOOL SetItemData(HTREEITEM hItem, DWORD_PTR dwData);
    UINT GetItemState(HTREEITEM hItem, UINT nStateMask) const;
    BOOL GetItemRect(HTREEITEM hItem, LPRECT lpRect, BOOL bTextOnly) const;

private:
    LRESULT Send(UINT message, WPARAM wParam, HTREEITEM item) const
    {
        return SendMessage(message, wParam, reinterpret_cast<LPARAM>(item));
    }
};

// The row of captions over the columns of a list.
class COMMONFRAMEWORK_API CHeaderCtrl : public CWnd
{
    DECLARE_DYNAMIC(CHeaderCtrl)

    int GetItemCount() const { return static_cast<int>(SendMessage(HDM_GETITEMCOUNT)); }
    BOOL GetItem(int nPos, HDITEM* pHeaderItem) const
    {
        return Send(HDM_GETITEM, nPos, pHeaderItem) != 0;
    }
    BOOL SetItem(int nPos, HDITEM* pHeaderItem)
    {
        return Send(HDM_SETITEM, nPos, pHeaderItem) != 0;
    }
    BOOL GetItemRect(int nIndex, LPRECT lpRect) const
    {
        return Send(HDM_GETITEMRECT, nIndex, lpRect) != 0;
    }

private:
    LRESULT Send(UINT message, int item, void* data) const
    {
        return SendMessage(message, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(data));
    }
};

// A list of items with an image, a text for each column and a value of the program's. Items are
// numbered from 0 in the order that is shown.
class COMMONFRAMEWORK_API CListCtrl : public CWnd
{
    DECLARE_DYNAMIC(CListCtrl)

    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    using CWnd::Create;

    DWORD GetExtendedStyle() const
    {
        return static_cast<DWORD>(SendMessage(LVM_GETEXTENDEDLISTVIEWSTYLE));
    }
    DWORD SetExtendedStyle(DWORD dwNewStyle)  // the one before
    {
        return static_cast<DWORD>(
            SendMessage(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, static_cast<LPARAM>(dwNewStyle)));
    }

    // Columns. The index, or -1.
    int InsertColumn(int nCol, const LVCOLUMN* pColumn)
    {
        return Send(LVM_INSERTCOLUMN, nCol, pColumn);
    }
    int InsertColumn(int nCol, LPCTSTR lpszColumnHeading, int nFormat = LVCFMT_LEFT,
                     int nWidth = -1, int nSubItem = -1);
    int GetColumnWidth(int nCol) const { return Send(LVM_GETCOLUMNWIDTH, nCol); }
    BOOL SetColumnWidth(int nCol, int cx)  // pixels, or LVSCW_...
    {
        return Send(LVM_SETCOLUMNWIDTH, nCol, MAKELPARAM(cx, 0));
    }

    // Items. The index, or -1.
    int InsertItem(const LVITEM* pItem) { return Send(LVM_INSERTITEM, 0, pItem); }
    BOOL DeleteItem(int nItem) { return Send(LVM_DELETEITEM, nItem); }
    BOOL DeleteAllItems() { return Send(LVM_DELETEALLITEMS, 0); }
    int GetItemCount() const { return Send(LVM_GETITEMCOUNT, 0); }
    BOOL GetItem(LVITEM* pItem) const { return Send(LVM_GETITEM, 0, pItem); }
    BOOL SetItem(const LVITEM* pItem) { return Send(LVM_SETITEM, 0, pItem); }
    DWORD_PTR GetItemData(int nItem) const;
    BOOL SetItemData(int nItem, DWORD_PTR dwData);
    CString GetItemText(int nItem, int nSubItem) const;
    BOOL SetItemText(int nItem, int nSubItem, LPCTSTR lpszText);
    // The first item after nItem (-1: from the start) that is all of nFlags (LVNI_...), or -1.
    int GetNextItem(int nItem, int nFlags) const { return Send(LVM_GETNEXTITEM, nItem, nFlags); }
    int FindItem(LVFINDINFO* pFindInfo, int nStart = -1) const
    {
        return Send(LVM_FINDITEM, nStart, pFindInfo);
    }
    UINT GetItemState(int nItem, UINT nMask) const
    {
        return static_cast<UINT>(Send(LVM_GETITEMSTATE, nItem, static_cast<LPARAM>(nMask)));
    }
    BOOL SetItemState(int nItem, UINT nState, UINT nMask);  // nItem -1: all items
    BOOL GetCheck(int nItem) const;  // of the box that LVS_EX_CHECKBOXES gives
    BOOL SetCheck(int nItem, BOOL fCheck = TRUE);
    UINT GetSelectedCount() const { return static_cast<UINT>(Send(LVM_GETSELECTEDCOUNT, 0)); }

    BOOL EnsureVisible(int nItem, BOOL bPartialOK)
    {
        return Send(LVM_ENSUREVISIBLE, nItem, static_cast<LPARAM>(bPartialOK));
    }
    BOOL GetItemRect(int nItem, LPRECT lpRect, UINT nCode) const;
    int GetStringWidth(LPCTSTR lpsz) const { return Send(LVM_GETSTRINGWIDTH, 0, lpsz); }
    BOOL RedrawItems(int nFirst, int nLast) { return Send(LVM_REDRAWITEMS, nFirst, nLast); }

    // The order changes only meanwhile; the comparison must keep to one.
    BOOL SortItems(PFNLVCOMPARE pfnCompare, DWORD_PTR dwData)
    {
        return static_cast<BOOL>(
            SendMessage(LVM_SORTITEMS, dwData, reinterpret_cast<LPARAM>(pfnCompare)));
    }

private:
    int Send(UINT message, int item, LPARAM lParam = 0) const
    {
        return static_cast<int>(SendMessage(message, static_cast<WPARAM>(item), lParam));
    }
    int Send(UINT message, int item, const void* data) const
    {
        return Send(message, item, reinterpret_cast<LPARAM>(data));
    }
};
