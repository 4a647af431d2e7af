// IListCtrlFilterHelper.h: what a list shows of its rows while it is filtered.
#pragma once

#include "YUnicodeString.h"

// The list calls, whoever fills it implements. Borrowed, outlives the list's window. User-interface
// thread. The order is binary contract.
class IListCtrlFilterHelper
{
public:
    // filterLowerCase: never empty.
    virtual bool ItemMatchesFilter(unsigned long data, const YUnicodeString& filterLowerCase) = 0;
    // Before the rows are removed, and after they have been added again.
    virtual void OnFilterRefill(bool starting) = 0;
    // Adds all rows again by AddItem, which leaves out those that do not match. What the values of
    // the rows stand for was released before: the helper keeps what it adds.
    virtual void RefillItems() = 0;

protected:
    ~IListCtrlFilterHelper() = default;  // adds no slot; nobody deletes through it
};
