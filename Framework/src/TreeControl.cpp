#include "afxcmn.h"

IMPLEMENT_DYNAMIC(CTreeCtrl, CWnd)

BOOL CTreeCtrl::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_TREEVIEW_CLASSES};
    ::InitCommonControlsEx(&classes);
    return CWnd::Create(WC_TREEVIEWW, nullptr, dwStyle, rect, pParentWnd, nID);
}

HTREEITEM CTreeCtrl::InsertItem(LPCTSTR lpszItem, HTREEITEM hParent, HTREEITEM hInsertAfter)
{
    TVINSERTSTRUCTW insertion{};
    insertion.hParent = hParent;
    insertion.hInsertAfter = hInsertAfter;
    insertion.item.mask = TVIF_TEXT;
    insertion.item.pszText = const_cast<LPTSTR>(lpszItem);
    return reinterpret_cast<HTREEITEM>(
        SendMessage(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
}

CString CTreeCtrl::GetItemText(HTREEITEM hItem) const
{
    // The control does not say how long a text is: more room until it no longer fills it.
    for (int capacity = 64;; capacity *= 2) {
        CString text;
        TVITEMW item{};
        item.mask = TVIF_HANDLE | TVIF_TEXT;
        item.hItem = hItem;
        item.pszText = text.GetBuffer(capacity);
        item.cchTextMax = capacity;
        item.pszText[0] = L'\0';
        const bool exists = SendMessage(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) != 0;
        text.ReleaseBuffer();
        if (!exists || text.GetLength() < capacity - 1) {
            return exists ? text : CString();
        }
    }
}

BOOL CTreeCtrl::SetItemText(HTREEITEM hItem, LPCTSTR lpszItem)
{
    TVITEMW item{};
    item.mask = TVIF_HANDLE | TVIF_TEXT;
    item.hItem = hItem;
    item.pszText = const_cast<LPTSTR>(lpszItem);
    return SendMessage(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item)) != 0;
}

DWORD_PTR CTreeCtrl::GetItemData(HTREEITEM hItem) const
{
    TVITEMW item{};
    item.mask = TVIF_HANDLE | TVIF_PARAM;
    item.hItem = hItem;
    SendMessage(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return static_cast<DWORD_PTR>(item.lParam);
}

BOOL CTreeCtrl::SetItemData(HTREEITEM hItem, DWORD_PTR dwData)
{
    TVITEMW item{};
    item.mask = TVIF_HANDLE | TVIF_PARAM;
    item.hItem = hItem;
    item.lParam = static_cast<LPARAM>(dwData);
    return SendMessage(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item)) != 0;
}

UINT CTreeCtrl::GetItemState(HTREEITEM hItem, UINT nStateMask) const
{
    return static_cast<UINT>(Send(TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(hItem),
                                  reinterpret_cast<HTREEITEM>(static_cast<UINT_PTR>(nStateMask))));
}

BOOL CTreeCtrl::GetItemRect(HTREEITEM hItem, LPRECT lpRect, BOOL bTextOnly) const
{
    *reinterpret_cast<HTREEITEM*>(lpRect) = hItem;  // the message takes the item in there
    return SendMessage(TVM_GETITEMRECT, static_cast<WPARAM>(bTextOnly),
                       reinterpret_cast<LPARAM>(lpRect)) != 0;
}
