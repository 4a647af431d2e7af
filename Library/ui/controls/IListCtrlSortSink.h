// IListCtrlSortSink.h: hears that the user has sorted a list.
#pragma once

// The list calls, the dialog implements. Borrowed, outlives the list's window. User-interface thread.
class IListCtrlSortSink
{
public:
    virtual void OnSortChanged() = 0;  // after a click on a caption; the rows are in order

protected:
    ~IListCtrlSortSink() = default;  // adds no slot; nobody deletes through it
};
