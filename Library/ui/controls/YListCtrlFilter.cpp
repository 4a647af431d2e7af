// Rows that come and go with what the user types.
#include "controls/IListCtrlFilterHelper.h"
#include "controls/YListCtrl.h"
#include "controls/YListCtrlScopes.h"

#include <algorithm>
#include <cwctype>
#include <string>

namespace {

constexpr UINT_PTR filterTimerId = 5;

YUnicodeString ToLower(const YUnicodeString& text)
{
    std::wstring lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](wchar_t unit) { return static_cast<wchar_t>(std::towlower(unit)); });
    return YUnicodeString(lower);
}

}  // namespace

void YListCtrl::SetFilterText(const YUnicodeString& text)
{
    if (!filterHelper) {
        return;
    }
    YUnicodeString lower = ToLower(text);
    if (filterQuiescent != 0 && lower == appliedFilter) {
        pendingFilter.Clear();
        StopFilterTimer();
        return;
    }
    pendingFilter = std::move(lower);
    filterTimer = filterQuiescent != 0 ? SetTimer(filterTimerId, filterQuiescent) : 0;
    if (filterTimer == 0) {  // also where the system has no timer left
        ApplyFilter();
    }
}

void YListCtrl::CancelFilter()
{
    StopFilterTimer();
    pendingFilter.Clear();
    ApplyFilter();
}

void YListCtrl::OnTimer(UINT_PTR timer)
{
    if (timer == filterTimer) {
        ApplyFilter();
    } else {
        CBCGPListCtrl::OnTimer(timer);
    }
}

void YListCtrl::StopFilterTimer()
{
    if (filterTimer != 0) {
        KillTimer(filterTimer);
        filterTimer = 0;
    }
}

void YListCtrl::ApplyFilter()
{
    StopFilterTimer();
    if (!filterHelper || pendingFilter == appliedFilter) {
        return;
    }
    appliedFilter = std::move(pendingFilter);
    pendingFilter.Clear();
    Refill();
}

void YListCtrl::Refill()
{
    // Emptied on every way out: a later row of the same value is another row.
    struct SavedSelection
    {
        ~SavedSelection() { values.clear(); }
        std::unordered_map<unsigned long, unsigned>& values;
    };
    const TrueSelection selection(*this);
    const SavedSelection saved{savedSelection};
    for (const int row : GetSelectedRows()) {
        ++savedSelection[GetItemData(row)];
    }
    {
        const Rearrangement rearrangement(*this);
        filterHelper->OnFilterRefill(true);
        RemoveEach();
        lastReselected = -1;
        filterHelper->RefillItems();
        if (lastReselected >= 0) {
            SetItemState(lastReselected, LVIS_FOCUSED, LVIS_FOCUSED);
        }
        filterHelper->OnFilterRefill(false);
    }
    EnsureSelectionIsVisible();
}

// Removing costs the more the more rows are selected; a list that is scrolled down moves its bar, and
// one with a focus that, with every row that goes.
void YListCtrl::RemoveEach()
{
    DeselectAll();
    ClearFocus();
    EnsureVisible(0, FALSE);
    for (int left = GetItemCount(); left > 0; --left) {
        RemoveItem(0);
    }
}

// The focus, to which the list scrolls, goes to the last one when all are there.
void YListCtrl::ReselectSaved(int row, unsigned long data)
{
    if (savedSelection.empty()) {
        return;
    }
    const auto saved = savedSelection.find(data);
    if (saved == savedSelection.end()) {
        return;
    }
    if (--saved->second == 0) {
        savedSelection.erase(saved);
    }
    SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    lastReselected = row;
}
