// IListCtrlHelper.h: what a list asks about its rows.
#pragma once

#include "YUnicodeString.h"

#include <vector>

// The list calls, whoever fills it implements. A row is known by the 32-bit value that was added.
// Borrowed, outlives the list's window. User-interface thread. The order is binary contract.
class IListCtrlHelper
{
public:
    // The texts of a row, one for each column. columns: empty.
    virtual void GetItemColumns(unsigned long data, std::vector<YUnicodeString>& columns) = 0;
    // The row is being removed: what the value stands for is no longer needed by it. Once for each
    // row, however it goes.
    virtual void ReleaseItemData(unsigned long data) = 0;

protected:
    ~IListCtrlHelper() = default;  // adds no slot; nobody deletes through it
};
