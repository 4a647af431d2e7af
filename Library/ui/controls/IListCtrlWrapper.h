// IListCtrlWrapper.h: a list of any kind, as the buttons beside it see it.
#pragma once

#include "YUnicodeString.h"

#include <unknwn.h>

#include <vector>

// YDialogListCtrlButtonHelper calls; who has a list implements (YUnknown<IListCtrlWrapper>). Rows are
// numbered from 0. User-interface thread. The order is binary contract.
class IListCtrlWrapper : public IUnknown
{
public:
    virtual int GetItemCount() = 0;
    virtual unsigned GetSelectionCount() = 0;
    virtual int GetSelectionIndex() = 0;  // the first selected row, or -1
    virtual YUnicodeString GetItemText(int row) = 0;  // of column 0, as all texts here
    virtual void GetSelectedItemText(std::vector<YUnicodeString>& texts) = 0;  // appended
    virtual void SelectItem(int row, bool keepOtherSelections) = 0;
    virtual void UpdateItemText(int row, const YUnicodeString& text) = 0;
    virtual int FindItemByText(const YUnicodeString& text) = 0;  // the first equal one, or -1
    virtual void SetRedraw(bool redraw) = 0;
};
