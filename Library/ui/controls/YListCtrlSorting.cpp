// The order of the rows, and the arrow that shows it.
#include "CallGuarded.h"
#include "controls/IListCtrlSortSink.h"
#include "controls/YListCtrl.h"
#include "controls/YListCtrlScopes.h"

#include <algorithm>
#include <numeric>

void YListCtrl::UseDefaultSortingFunction()
{
    compareByIndex = &YListCtrl::CompareTexts;
}

void YListCtrl::SetSorting(int column, SortOrder order)
{
    sortColumn = column;
    sortOrder = order;
    if (m_hWnd) {
        ShowSortArrow();
    }
}

void YListCtrl::GetSorting(int& column, SortOrder& order) const
{
    column = sortColumn;
    order = sortOrder;
}

bool YListCtrl::IsSortingEnabled() const
{
    return compareByIndex || compareItems;
}

void YListCtrl::Sort()
{
    if (!IsSortingEnabled()) {
        return;
    }
    {
        const TrueSelection selection(*this);
        if (compareByIndex) {
            SortByRow();
        } else {
            SortByData();
        }
    }
    EnsureSelectionIsVisible();
}

void YListCtrl::ShowSortArrow()
{
    if ((GetStyle() & LVS_NOSORTHEADER) == 0) {
        GetHeaderCtrl().SetSortColumn(sortColumn, sortOrder == SortAscending);
    }
}

BOOL YListCtrl::OnColumnClick(NMHDR* header, LRESULT* result)
{
    if (!IsSortingEnabled()) {
        return FALSE;
    }
    *result = 0;
    const int column = reinterpret_cast<const NMLISTVIEW*>(header)->iSubItem;
    const bool again = column == sortColumn;
    SetSorting(column, again && sortOrder == SortAscending ? SortDescending : SortAscending);
    Sort();
    if (sortSink) {
        sortSink->OnSortChanged();
    }
    return TRUE;
}

// The system asks for pairs of rows while it is moving them: what is read of a row then may be
// another's. Here the order is found first, from rows that stand still, and carried out afterwards.
void YListCtrl::SortByRow()
{
    struct SortTexts
    {
        ~SortTexts() { texts.clear(); }
        std::vector<std::optional<CString>>& texts;
    };
    const SortTexts texts{sortTexts};
    sortTexts.resize(static_cast<std::size_t>(GetItemCount()));
    ListSortContext context{this, sortColumn, sortOrder, sortCompareHelper, compareItems};
    std::vector<int> order(sortTexts.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int row1, int row2) {
        return compareByIndex(row1, row2, reinterpret_cast<LPARAM>(&context)) < 0;
    });
    if (!std::is_sorted(order.begin(), order.end())) {
        ApplyOrder(order);
    }
}

// order: by new row, the old one. The system sorts by values: meanwhile each is its row's number.
void YListCtrl::ApplyOrder(const std::vector<int>& order)
{
    std::vector<unsigned long> values(order.size());
    std::vector<int> ranks(order.size());
    const Rearrangement rearrangement(*this);
    applyingOrder = true;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const int row = static_cast<int>(i);
        ranks[static_cast<std::size_t>(order[i])] = row;
        values[i] = GetItemData(row);
        CBCGPListCtrl::SetItemData(row, i);
    }
    const bool sorted = SortItems(&YListCtrl::CompareRanks, reinterpret_cast<DWORD_PTR>(&ranks));
    for (std::size_t i = 0; i < order.size(); ++i) {
        const auto from = sorted ? static_cast<std::size_t>(order[i]) : i;
        CBCGPListCtrl::SetItemData(static_cast<int>(i), values[from]);
    }
    applyingOrder = false;
}

BOOL YListCtrl::OnItemChange(NMHDR*, LRESULT* result)
{
    *result = 0;
    return applyingOrder;
}

void YListCtrl::SortByData()
{
    ListSortContext context{this, sortColumn, sortOrder, sortCompareHelper, compareItems};
    SortItems(&YListCtrl::CompareData, reinterpret_cast<DWORD_PTR>(&context));
}

const CString& YListCtrl::GetSortText(int row)
{
    std::optional<CString>& text = sortTexts[static_cast<std::size_t>(row)];
    if (!text) {
        text = GetItemText(row, sortColumn);
    }
    return *text;
}

int CALLBACK YListCtrl::CompareTexts(LPARAM row1, LPARAM row2, LPARAM context)
{
    const auto& sort = *reinterpret_cast<const ListSortContext*>(context);
    const CString& text1 = sort.list->GetSortText(row1);
    const CString& text2 = sort.list->GetSortText(row2);
    const int difference = ::_wcsicmp(text1, text2);
    return sort.order == SortDescending ? -difference : difference;
}

int CALLBACK YListCtrl::CompareData(LPARAM data1, LPARAM data2, LPARAM context)
{
    const auto& sort = *reinterpret_cast<const ListSortContext*>(context);
    return CallGuarded([&] {
        return sort.compareItems(static_cast<unsigned long>(data1),
                                 static_cast<unsigned long>(data2), sort.column, sort.order);
    });
}

int CALLBACK YListCtrl::CompareRanks(LPARAM row1, LPARAM row2, LPARAM context)
{
    const auto& ranks = *reinterpret_cast<const std::vector<int>*>(context);
    return ranks[static_cast<std::size_t>(row1)] - ranks[static_cast<std::size_t>(row2)];
}
