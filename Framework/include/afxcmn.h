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
