// ICheckBoxListCtrlHelper.h: what a list with boxes asks about its rows.
#pragma once

#include "controls/IListCtrlHelper.h"

// As IListCtrlHelper. The order is binary contract.
class ICheckBoxListCtrlHelper : public IListCtrlHelper
{
public:
    virtual bool IsItemChecked(unsigned long data) = 0;
    // A row has changed: the user may have clicked its box, or only have selected it.
    virtual void OnItemCheckChanged(unsigned long data, bool checked) = 0;

protected:
    ~ICheckBoxListCtrlHelper() = default;
};
