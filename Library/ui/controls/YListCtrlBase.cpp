#include "controls/YListCtrlBase.h"

#include "YMessageBox.h"
#include "YReportMessageParams.h"
#include "controls/IListCtrlHelper.h"
#include "controls/YDialogListCtrlButtonHelper.h"

YListCtrlBase::YListCtrlBase() = default;
YListCtrlBase::~YListCtrlBase() = default;

void YListCtrlBase::InitAssociatedButtons(CWnd* up, CWnd* down, CWnd* add, CWnd* edit, CWnd* remove,
                                          YDialogListCtrlButtonHelper* helper)
{
    ownButtonHelper.reset(helper ? nullptr : CreateDefaultButtonHelper());
    buttonHelper = helper ? helper : ownButtonHelper.get();
    if (useLargeUpDownIcons) {
        buttonHelper->UseLargeUpDownIcons();
    }
    buttonHelper->Initialize(up, down, add, edit, remove);
}

void YListCtrlBase::EnableButtons(bool enableMoves, bool enableEdits)
{
    if (buttonHelper && !inSelectItem) {
        buttonHelper->EnableButtons(enableMoves, enableEdits);
    }
}

bool YListCtrlBase::DoDelete()
{
    return DoDelete(nullptr);
}

bool YListCtrlBase::DoDelete(const YReportMessageParams& confirmation)
{
    return DoDelete(&confirmation);
}

bool YListCtrlBase::DoDelete(const IReportMessageParams* confirmation)
{
    if (GetSelectionCount() == 0) {
        return false;
    }
    if (confirmation && confirmation->GetMessageId() != 0 &&
        YMessageBox(confirmation, MB_YESNO | MB_ICONWARNING) != IDYES) {
        return false;
    }
    return DeleteSelectedItems();
}

void YListCtrlBase::RemoveItem(int item)
{
    ReleaseData(item);
    DeleteItemPrivate(item);
}

void YListCtrlBase::UpdateItem(int item)
{
    if (itemHelper) {
        UpdateItem(item, GetColumnsOf(GetItemDataPrivate(item)), false);
    }
}

void YListCtrlBase::UpdateItem(int item, const std::vector<YUnicodeString>& columns, bool resort)
{
    for (std::size_t i = 0; i < columns.size(); ++i) {
        SetItemTextPrivate(item, static_cast<int>(i), columns[i].c_str());
    }
    UpdateItemDrawing(item);
    if (resort && IsSortingEnabled()) {
        Sort();
    }
}

void YListCtrlBase::SelectAndShowFirstItem()
{
    if (GetItemCountPrivate() > 0) {
        SelectItem(0, false);
    }
}

unsigned long YListCtrlBase::GetCurrentItemData() const
{
    const int current = GetCurrentItemIndex();
    return current < 0 ? 0 : GetItemDataPrivate(current);
}

std::vector<YUnicodeString> YListCtrlBase::GetColumnsOf(unsigned long data) const
{
    std::vector<YUnicodeString> columns;
    if (itemHelper) {
        columns.reserve(4);  // most lists have no more: one allocation a row
        itemHelper->GetItemColumns(data, columns);
    }
    return columns;
}

void YListCtrlBase::ReleaseData(int item)
{
    if (itemHelper) {
        itemHelper->ReleaseItemData(GetItemDataPrivate(item));
    }
}
