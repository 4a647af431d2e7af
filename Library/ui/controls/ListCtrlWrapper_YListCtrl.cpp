#include "controls/ListCtrlWrapper_YListCtrl.h"

#include "controls/YListCtrl.h"

#include <map>

ListCtrlWrapper_YListCtrl::ListCtrlWrapper_YListCtrl(YListCtrl* wrapped) : list(wrapped) {}

ListCtrlWrapper_YListCtrl::~ListCtrlWrapper_YListCtrl() = default;

int ListCtrlWrapper_YListCtrl::GetItemCount()
{
    return list->GetItemCount();
}

unsigned ListCtrlWrapper_YListCtrl::GetSelectionCount()
{
    return list->GetSelectionCount();
}

int ListCtrlWrapper_YListCtrl::GetSelectionIndex()
{
    return list->GetCurrentItemIndex();
}

YUnicodeString ListCtrlWrapper_YListCtrl::GetItemText(int row)
{
    return list->GetItemText(row, 0);
}

void ListCtrlWrapper_YListCtrl::GetSelectedItemText(std::vector<YUnicodeString>& texts)
{
    std::map<int, unsigned long> selection;
    list->GetSelection(selection);
    for (const auto& [row, data] : selection) {
        texts.push_back(GetItemText(row));
    }
}

void ListCtrlWrapper_YListCtrl::SelectItem(int row, bool keepOtherSelections)
{
    list->SelectItem(row, keepOtherSelections);
}

void ListCtrlWrapper_YListCtrl::UpdateItemText(int row, const YUnicodeString& text)
{
    list->SetItemText(row, 0, text.c_str());
}

// The system's search takes upper and lower case for the same.
int ListCtrlWrapper_YListCtrl::FindItemByText(const YUnicodeString& text)
{
    LVFINDINFO search{};
    search.flags = LVFI_STRING;
    search.psz = text.c_str();
    int row = list->FindItem(&search);
    while (row >= 0 && GetItemText(row) != text) {
        row = list->FindItem(&search, row);
    }
    return row;
}

void ListCtrlWrapper_YListCtrl::SetRedraw(bool redraw)
{
    list->SetRedraw(redraw);
}
