// YCheckBoxListCtrl.h: a list whose rows each have a box.
#pragma once

#include "controls/YListSavedWidthsCtrl.h"

class ICheckBoxListCtrlHelper;

// What the boxes say belongs to the program: the list asks when it shows a row, and tells of what the
// user does. The dialog hands the row of every LVN_ITEMCHANGED to OnItemChanged.
class COMMONUI_API YCheckBoxListCtrl : public YListSavedWidthsCtrl
{
    DECLARE_DYNAMIC(YCheckBoxListCtrl)

    YCheckBoxListCtrl(const YUnicodeString& widthName, IListCtrlColumnWidthSink* widths);
    ~YCheckBoxListCtrl() override;

    void SetSink(ICheckBoxListCtrlHelper* sink);  // borrowed; the item helper, too
    // Tells the sink, unless the list itself is adding, removing or moving rows. Other rows than there
    // are: nothing.
    void OnItemChanged(int row);
    void UpdateItem(int row);  // box and texts as they are now
    using YListCtrlBase::UpdateItem;

    bool DeleteSelectedItems() override;
    void OnAddItem(int row) override;

protected:
    int AddItemPrivate(const std::vector<YUnicodeString>& columns, int image, int index,
                       unsigned long data) override;

private:
    enum Operation { None = 0, Adding = 1, Deleting = 2 };
    class OperationScope;

    bool IsCheckedBySink(int row) const;

    Operation operation = None;
    ICheckBoxListCtrlHelper* checkSink = nullptr;
};
