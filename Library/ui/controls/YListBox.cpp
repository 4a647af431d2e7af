#include "controls/YListBox.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(YListBox, CBCGPListCtrl)

namespace {

constexpr int padding = 10;  // pixels that the column is wider than its longest line

}  // namespace

void YListBox::Init()
{
    ModifyStyle(LVS_SMALLICON, LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOCOLUMNHEADER);
    CRect window;
    GetClientRect(&window);
    InsertColumn(0, L"Hidden Column", LVCFMT_LEFT, window.Width());
}

int YListBox::AddString(const wchar_t* text)
{
    LVITEM item{};
    item.mask = LVIF_TEXT;
    item.iItem = GetItemCount();
    item.pszText = const_cast<wchar_t*>(text);
    const int line = InsertItem(&item);
    const int width = GetStringWidth(text);
    if (line >= 0 && width > widest) {
        widest = width;
        SetColumnWidth(0, widest + padding);
    }
    return line;
}

void YListBox::DeleteString(int line)
{
    DeleteItem(line);
    widest = 0;
    const int count = GetItemCount();
    for (int i = 0; i < count; ++i) {
        widest = std::max(widest, GetStringWidth(GetItemText(i, 0)));
    }
    SetColumnWidth(0, widest + padding);
}

int YListBox::FindStringExact(int start, const wchar_t* text)
{
    LVFINDINFO search{};
    search.flags = LVFI_STRING;
    search.psz = text;
    return FindItem(&search, start);
}

int YListBox::GetCount() const
{
    return GetItemCount();
}

int YListBox::GetCurSel() const
{
    return GetNextItem(-1, LVNI_SELECTED);
}

void YListBox::SetCurSel(int line)
{
    SetItemState(line, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
}

CString YListBox::GetText(int line) const
{
    return GetItemText(line, 0);
}
