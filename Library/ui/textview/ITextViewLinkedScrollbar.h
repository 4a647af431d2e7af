// ITextViewLinkedScrollbar.h: a vertical scroll bar outside the view.
#pragma once

#include <windows.h>

// Lent to a view: the view calls, the host implements. Used while the view does not show a bar of
// its own. Borrowed, outlives the view. User-interface thread. The order is binary contract.
class ITextViewLinkedScrollbar
{
public:
    virtual void UpdateScrollSize(unsigned total, unsigned page) = 0;  // lines
    virtual void ScrollToPoint(unsigned line) = 0;
    virtual unsigned GetScrollPoint() const = 0;
    virtual void OnVScroll(UINT code, UINT position) = 0;  // handed on by the view
    virtual long OnMouseWheel(UINT wParam, long lParam) = 0;  // handed on by the view
    virtual void SyncScrollPoint(unsigned line) = 0;  // the view has moved
    virtual void GetScrollInfo(SCROLLINFO* info) = 0;  // range, page and position

protected:
    ~ITextViewLinkedScrollbar() = default;  // adds no slot; nobody deletes through it
};
