// What is selected, also while the list is disabled.
#include "controls/YListCtrl.h"
#include "controls/YListCtrlScopes.h"

#include <algorithm>
#include <utility>

namespace {

constexpr UINT selectedAndFocused = LVIS_SELECTED | LVIS_FOCUSED;

}  // namespace

void YListCtrl::SelectItem(int index, bool keepOtherSelections)
{
    if (!keepOtherSelections) {
        inSelectItem = true;
        DeselectAll();
        inSelectItem = false;
    }
    SelectRow(index);
    EnsureVisible(index, FALSE);
}

unsigned YListCtrl::GetSelectionCount() const
{
    return GetSelectedCount();
}

void YListCtrl::GetSelection(std::map<int, unsigned long>& selection) const
{
    selection.clear();
    for (const int row : GetSelectedRows()) {
        selection.emplace_hint(selection.end(), row, GetItemData(row));
    }
}

int YListCtrl::GetCurrentItemIndex() const
{
    return FindSelected(-1);
}

void YListCtrl::EnsureSelectionIsVisible()
{
    const int row = GetCurrentItemIndex();
    if (row >= 0) {
        EnsureVisible(row, FALSE);
    }
}

void YListCtrl::SetSingleSelection(bool single)
{
    singleSelection = single;
    if (!allHighlighted) {
        ModifyStyle(single ? 0 : LVS_SINGLESEL, single ? LVS_SINGLESEL : 0);
    }
}

bool YListCtrl::DeleteSelectedItems()
{
    const TrueSelection selection(*this);
    int row = FindSelected(-1);
    if (row < 0) {
        return false;
    }
    const DrawingOff drawingOff(*this);
    ClearFocus();  // it would be moved with every row
    int last = row;
    for (; row >= 0; row = FindSelected(last - 1)) {  // nothing before it is selected
        last = row;
        RemoveItem(row);
    }
    const int left = GetItemCount();
    if (left > 0) {
        SelectItem(std::min(last, left - 1), false);
    }
    return true;
}

int YListCtrl::FindSelected(int after) const
{
    return GetNextItem(after, LVNI_SELECTED);
}

std::vector<int> YListCtrl::GetSelectedRows() const
{
    std::vector<int> rows;
    rows.reserve(GetSelectedCount());
    for (int row = FindSelected(-1); row >= 0; row = FindSelected(row)) {
        rows.push_back(row);
    }
    return rows;
}

void YListCtrl::SelectRow(int row)
{
    if (row >= 0) {
        SetItemState(row, selectedAndFocused, selectedAndFocused);
        return;
    }
    // Every row: only one can have the focus, and asked for both the system may do neither.
    const DrawingOff drawingOff(*this);
    SetItemState(-1, LVIS_SELECTED, LVIS_SELECTED);
    SetItemState(GetItemCount() - 1, LVIS_FOCUSED, LVIS_FOCUSED);
}

// One by one: a list of single selection does not take the state for all rows.
void YListCtrl::DeselectAll()
{
    const std::vector<int> rows = GetSelectedRows();
    std::optional<DrawingOff> drawingOff;
    if (rows.size() > 1) {
        drawingOff.emplace(*this);
    }
    for (const int row : rows) {
        SetItemState(row, 0, LVIS_SELECTED);
    }
}

void YListCtrl::ClearFocus()
{
    const int row = GetNextItem(-1, LVNI_FOCUSED);
    if (row >= 0) {
        SetItemState(row, 0, LVIS_FOCUSED);
    }
}

void YListCtrl::OnEnable(BOOL enable)
{
    CBCGPListCtrl::OnEnable(enable);
    if (enable) {
        RestoreSelection();
    } else {
        HighlightAll();
    }
}

void YListCtrl::HighlightAll()
{
    if (allHighlighted) {
        return;
    }
    const Rearrangement rearrangement(*this);
    disabledSelection = GetSelectedRows();
    ModifyStyle(LVS_SINGLESEL, 0);
    SelectRow(-1);
    allHighlighted = true;
}

void YListCtrl::RestoreSelection()
{
    if (!allHighlighted) {
        return;
    }
    const Rearrangement rearrangement(*this);
    allHighlighted = false;
    DeselectAll();
    ClearFocus();
    ModifyStyle(0, singleSelection ? LVS_SINGLESEL : 0);
    for (const int row : disabledSelection) {
        SelectRow(row);
    }
    disabledSelection.clear();
}

// A row that comes while the list is disabled looks like the others, and those that were selected
// before keep that.
void YListCtrl::HighlightAdded(int row)
{
    if (!allHighlighted) {
        return;
    }
    for (int& selected : disabledSelection) {
        selected += selected >= row ? 1 : 0;
    }
    const bool outer = std::exchange(rearranging, true);
    SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    rearranging = outer;
}

void YListCtrl::ForgetDisabled(int row)
{
    std::erase(disabledSelection, row);
    for (int& selected : disabledSelection) {
        selected -= selected > row ? 1 : 0;
    }
}
