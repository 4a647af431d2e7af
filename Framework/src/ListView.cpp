// Lists with columns, and their captions.
#include "BCGPListCtrl.h"

IMPLEMENT_DYNAMIC(CHeaderCtrl, CWnd)
IMPLEMENT_DYNAMIC(CListCtrl, CWnd)
IMPLEMENT_DYNAMIC(CBCGPHeaderCtrl, CHeaderCtrl)
IMPLEMENT_DYNAMIC(CBCGPListCtrl, CListCtrl)

namespace {

constexpr UINT uncheckedImage = 1;  // number of the state image
constexpr UINT checkedImage = 2;

}  // namespace

BOOL CListCtrl::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_LISTVIEW_CLASSES};
    ::InitCommonControlsEx(&classes);
    return CWnd::Create(WC_LISTVIEWW, nullptr, dwStyle, rect, pParentWnd, nID);
}

int CListCtrl::InsertColumn(int nCol, LPCTSTR lpszColumnHeading, int nFormat, int nWidth,
                            int nSubItem)
{
    LVCOLUMN column{};
    column.mask = LVCF_TEXT | LVCF_FMT;
    column.pszText = const_cast<LPTSTR>(lpszColumnHeading);
    column.fmt = nFormat;
    if (nWidth != -1) {
        column.mask |= LVCF_WIDTH;
        column.cx = nWidth;
    }
    if (nSubItem != -1) {
        column.mask |= LVCF_SUBITEM;
        column.iSubItem = nSubItem;
    }
    return Send(LVM_INSERTCOLUMN, nCol, &column);
}

DWORD_PTR CListCtrl::GetItemData(int nItem) const
{
    LVITEM item{};
    item.mask = LVIF_PARAM;
    item.iItem = nItem;
    return GetItem(&item) ? static_cast<DWORD_PTR>(item.lParam) : 0;
}

BOOL CListCtrl::SetItemData(int nItem, DWORD_PTR dwData)
{
    LVITEM item{};
    item.mask = LVIF_PARAM;
    item.iItem = nItem;
    item.lParam = static_cast<LPARAM>(dwData);
    return SetItem(&item);
}

CString CListCtrl::GetItemText(int nItem, int nSubItem) const
{
    // The control does not say how long a text is: more room until it no longer fills it.
    for (int capacity = 128;; capacity *= 2) {
        CString text;
        LVITEM item{};
        item.iSubItem = nSubItem;
        item.pszText = text.GetBuffer(capacity);
        item.cchTextMax = capacity;
        item.pszText[0] = L'\0';
        const int length = Send(LVM_GETITEMTEXT, nItem, &item);
        text.ReleaseBuffer();
        if (length < capacity - 1) {
            return text;
        }
    }
}

BOOL CListCtrl::SetItemText(int nItem, int nSubItem, LPCTSTR lpszText)
{
    LVITEM item{};
    item.iSubItem = nSubItem;
    item.pszText = const_cast<LPTSTR>(lpszText);
    return Send(LVM_SETITEMTEXT, nItem, &item);
}

BOOL CListCtrl::SetItemState(int nItem, UINT nState, UINT nMask)
{
    LVITEM item{};
    item.state = nState;
    item.stateMask = nMask;
    return Send(LVM_SETITEMSTATE, nItem, &item);
}

BOOL CListCtrl::GetCheck(int nItem) const
{
    return GetItemState(nItem, LVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(checkedImage);
}

BOOL CListCtrl::SetCheck(int nItem, BOOL fCheck)
{
    return SetItemState(nItem, INDEXTOSTATEIMAGEMASK(fCheck ? checkedImage : uncheckedImage),
                        LVIS_STATEIMAGEMASK);
}

BOOL CListCtrl::GetItemRect(int nItem, LPRECT lpRect, UINT nCode) const
{
    lpRect->left = static_cast<LONG>(nCode);  // in: which part
    return Send(LVM_GETITEMRECT, nItem, lpRect);
}

void CBCGPHeaderCtrl::SetSortColumn(int iColumn, BOOL bAscending, BOOL bAdd)
{
    constexpr int arrows = HDF_SORTUP | HDF_SORTDOWN;
    const int count = GetItemCount();
    for (int i = 0; i < count; ++i) {
        HDITEM item{};
        item.mask = HDI_FORMAT;
        if ((bAdd && i != iColumn) || !GetItem(i, &item)) {
            continue;
        }
        const int before = item.fmt;
        item.fmt &= ~arrows;
        if (i == iColumn) {
            item.fmt |= bAscending ? HDF_SORTUP : HDF_SORTDOWN;
        }
        if (item.fmt != before) {
            SetItem(i, &item);
        }
    }
}

BEGIN_MESSAGE_MAP(CBCGPListCtrl, CListCtrl)
    ON_NOTIFY_REFLECT(NM_CUSTOMDRAW, &CBCGPListCtrl::OnCustomDraw)
END_MESSAGE_MAP()

CBCGPHeaderCtrl& CBCGPListCtrl::GetHeaderCtrl()
{
    const auto header = reinterpret_cast<HWND>(SendMessage(LVM_GETHEADER));
    if (!m_wndHeader.m_hWnd && header) {
        m_wndHeader.SubclassWindow(header);
    }
    return m_wndHeader;
}

void CBCGPListCtrl::OnCustomDraw(NMHDR*, LRESULT* pResult)
{
    *pResult = CDRF_DODEFAULT;
}
