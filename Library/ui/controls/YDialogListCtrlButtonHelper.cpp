#include "controls/YDialogListCtrlButtonHelper.h"

#include "controls/ListCtrlWrapper_YListCtrl.h"
#include "controls/YListButtons.h"

YDialogListCtrlButtonHelper::YDialogListCtrlButtonHelper(YListCtrl* list)
    : wrapper(YUnknownPointer<IListCtrlWrapper>::Adopt(new ListCtrlWrapper_YListCtrl(list)))
{}

YDialogListCtrlButtonHelper::~YDialogListCtrlButtonHelper() = default;

void YDialogListCtrlButtonHelper::Initialize(CWnd* up, CWnd* down, CWnd* add, CWnd* edit,
                                             CWnd* remove)
{
    upButton = up;
    downButton = down;
    addButton = add;
    editButton = edit;
    removeButton = remove;
    InitializeUpDownButtons(up, down, useLargeIcons);
}

void YDialogListCtrlButtonHelper::EnableButtons(bool enableMoves, bool enableEdits)
{
    const int count = GetItemCount();
    const auto selected = static_cast<int>(GetSelectionCount());
    const int index = GetSelectionIndex();
    EnableUpDownButtons(upButton, downButton, enableMoves && selected == 1, index, count);
    EnableButton(addButton, enableEdits);
    EnableButton(editButton, enableEdits && index >= 0 && selected == 1);
    EnableButton(removeButton, enableEdits && ShouldDeleteBeEnabled(selected, index));
}

bool YDialogListCtrlButtonHelper::ShouldDeleteBeEnabled(int selectionCount, int selectionIndex)
{
    return selectionCount != 0 && selectionIndex >= 0;
}

void YDialogListCtrlButtonHelper::SelectItemByText(const YUnicodeString& text,
                                                   bool keepOtherSelections)
{
    SelectItem(FindItemByText(text), keepOtherSelections);
}
