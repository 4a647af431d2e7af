// ListCtrlWrapper_YListCtrl.h: the library's own list for the buttons beside it.
#pragma once

#include "CommonUiApi.h"
#include "YUnknown.h"
#include "controls/IListCtrlWrapper.h"

class YListCtrl;

class COMMONUI_API ListCtrlWrapper_YListCtrl : public YUnknown<IListCtrlWrapper>
{
public:
    explicit ListCtrlWrapper_YListCtrl(YListCtrl* list);  // borrowed; outlives every call

    int GetItemCount() override;
    unsigned GetSelectionCount() override;
    int GetSelectionIndex() override;
    YUnicodeString GetItemText(int row) override;
    void GetSelectedItemText(std::vector<YUnicodeString>& texts) override;
    void SelectItem(int row, bool keepOtherSelections) override;
    void UpdateItemText(int row, const YUnicodeString& text) override;
    int FindItemByText(const YUnicodeString& text) override;
    void SetRedraw(bool redraw) override;

protected:
    ~ListCtrlWrapper_YListCtrl() override;

private:
    YListCtrl* list;
};
