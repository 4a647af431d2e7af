// IListCtrlCustomDrawSink.h: draws the rows of a list.
#pragma once

#include <windows.h>

// The list calls, the dialog implements. Borrowed, outlives the list's window. User-interface thread.
class IListCtrlCustomDrawSink
{
public:
    // NM_CUSTOMDRAW as the system sends it (NMLVCUSTOMDRAW); result: CDRF_..., 0 at first.
    virtual void OnCustomDraw(NMHDR* header, LRESULT* result) = 0;

protected:
    ~IListCtrlCustomDrawSink() = default;  // adds no slot; nobody deletes through it
};
