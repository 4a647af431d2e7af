// IListCtrlColumnWidthSink.h: where a list keeps the widths of its columns between runs.
#pragma once

#include "YUnicodeString.h"

#include <vector>

// The list calls, the host implements. Widths are pixels of the screen as it is now: a host that
// wants them to follow the resolution keeps that beside them. Borrowed, outlives the list's window.
// User-interface thread. The order is binary contract.
class IListCtrlColumnWidthSink
{
public:
    // widths: empty, and left so where none are known.
    virtual void GetColumnWidths(const YUnicodeString& name, std::vector<int>& widths) = 0;
    virtual void SetColumnWidths(const YUnicodeString& name, const std::vector<int>& widths) = 0;

protected:
    ~IListCtrlColumnWidthSink() = default;  // adds no slot; nobody deletes through it
};
