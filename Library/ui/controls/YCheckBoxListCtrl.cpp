#include "controls/YCheckBoxListCtrl.h"

#include "controls/ICheckBoxListCtrlHelper.h"

#include <utility>

IMPLEMENT_DYNAMIC(YCheckBoxListCtrl, YListSavedWidthsCtrl)

// What the list is doing, and again what it was doing before.
class YCheckBoxListCtrl::OperationScope
{
public:
    OperationScope(YCheckBoxListCtrl& changed, Operation operation)
        : list(changed), outer(std::exchange(list.operation, operation))
    {}
    OperationScope(const OperationScope&) = delete;
    OperationScope& operator=(const OperationScope&) = delete;
    ~OperationScope() { list.operation = outer; }

private:
    YCheckBoxListCtrl& list;
    Operation outer;
};

YCheckBoxListCtrl::YCheckBoxListCtrl(const YUnicodeString& name, IListCtrlColumnWidthSink* widths)
    : YListSavedWidthsCtrl(name, widths)
{
    extraExtendedStyles |= LVS_EX_CHECKBOXES;
}

YCheckBoxListCtrl::~YCheckBoxListCtrl() = default;

void YCheckBoxListCtrl::SetSink(ICheckBoxListCtrlHelper* sink)
{
    checkSink = sink;
    SetItemHelper(sink);
}

void YCheckBoxListCtrl::OnItemChanged(int row)
{
    const bool isOwnChange = destroying || operation != None || IsRearranging();
    if (checkSink && !isOwnChange && row >= 0 && row < GetItemCount()) {
        checkSink->OnItemCheckChanged(GetItemData(row), GetCheck(row));
    }
}

void YCheckBoxListCtrl::UpdateItem(int row)
{
    SetCheck(row, IsCheckedBySink(row));
    YListSavedWidthsCtrl::UpdateItem(row);
}

bool YCheckBoxListCtrl::DeleteSelectedItems()
{
    const OperationScope scope(*this, Deleting);
    return YListSavedWidthsCtrl::DeleteSelectedItems();
}

void YCheckBoxListCtrl::OnAddItem(int row)
{
    SetCheck(row, IsCheckedBySink(row));
}

int YCheckBoxListCtrl::AddItemPrivate(const std::vector<YUnicodeString>& columns, int image,
                                      int index, unsigned long data)
{
    const OperationScope scope(*this, Adding);
    return YListSavedWidthsCtrl::AddItemPrivate(columns, image, index, data);
}

bool YCheckBoxListCtrl::IsCheckedBySink(int row) const
{
    return checkSink && checkSink->IsItemChecked(GetItemData(row));
}
