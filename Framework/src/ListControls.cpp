#include "BCGCBProInc.h"

IMPLEMENT_DYNAMIC(CListBox, CWnd)
IMPLEMENT_DYNAMIC(CComboBox, CWnd)
IMPLEMENT_DYNAMIC(CBCGPCheckListBox, CCheckListBox)

namespace {

// Empty: no such line.
CString GetLine(const CWnd& list, UINT lengthMessage, UINT textMessage, int index)
{
    CString text;
    const auto length =
        static_cast<int>(list.SendMessage(lengthMessage, static_cast<WPARAM>(index)));
    if (length > 0) {
        list.SendMessage(textMessage, static_cast<WPARAM>(index),
                         reinterpret_cast<LPARAM>(text.GetBuffer(length)));
        text.ReleaseBuffer();
    }
    return text;
}

}  // namespace

BOOL CListBox::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    return CWnd::Create(L"LISTBOX", nullptr, dwStyle, rect, pParentWnd, nID);
}

void CListBox::GetText(int nIndex, CString& rString) const
{
    rString = GetLine(*this, LB_GETTEXTLEN, LB_GETTEXT, nIndex);
}

int CListBox::GetItemRect(int nIndex, LPRECT lpRect) const
{
    return static_cast<int>(
        SendMessage(LB_GETITEMRECT, static_cast<WPARAM>(nIndex), reinterpret_cast<LPARAM>(lpRect)));
}

UINT CListBox::ItemFromPoint(CPoint pt, BOOL& bOutside) const
{
    const LRESULT answer = SendMessage(LB_ITEMFROMPOINT, 0, MAKELPARAM(pt.x, pt.y));
    bOutside = HIWORD(answer) != 0;
    return LOWORD(answer);
}

void CListBox::DrawItem(LPDRAWITEMSTRUCT)
{
    ASSERT(false);  // an owner-drawn list draws its lines itself
}

BOOL CListBox::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult)
{
    if (message != WM_DRAWITEM) {
        return CWnd::OnChildNotify(message, wParam, lParam, pResult);
    }
    DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lParam));
    return TRUE;
}

BOOL CComboBox::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    return CWnd::Create(L"COMBOBOX", nullptr, dwStyle, rect, pParentWnd, nID);
}

void CComboBox::GetLBText(int nIndex, CString& rString) const
{
    rString = GetLine(*this, CB_GETLBTEXTLEN, CB_GETLBTEXT, nIndex);
}
