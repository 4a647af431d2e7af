// LinkedScrollBar.h: one vertical scroll bar for two views.
#pragma once

#include <afxwin.h>
#include <textview/ITextViewLinkedScrollbar.h>

#include <vector>

class ConsoleView;

// Both views show the same first line: the bar's position, which is kept here and is exact for any
// number of lines. The bar is drawn only where something changes. A view's horizontal bar may leave
// it a line less than the other: the smaller page counts, else the last line would be out of reach.
class LinkedScrollBar : public CScrollBar, public ITextViewLinkedScrollbar
{
public:
    bool CreateHidden(CWnd* parent, UINT id);
    static int GetWidth();  // pixels

    void AddView(ConsoleView& view);  // borrowed until RemoveViews
    void RemoveViews();  // starts again at the top

    void UpdateScrollSize(unsigned total, unsigned page) override;
    void ScrollToPoint(unsigned line) override;
    unsigned GetScrollPoint() const override { return position; }
    void OnVScroll(UINT code, UINT thumb) override;
    long OnMouseWheel(UINT wParam, long lParam) override;
    void SyncScrollPoint(unsigned line) override;
    void GetScrollInfo(SCROLLINFO* info) override;

private:
    unsigned GetLastPosition() const { return totalLines > pageLines ? totalLines - pageLines : 0; }
    unsigned GetTrackPosition();
    void MoveTo(long long line);
    void Show();

    std::vector<ConsoleView*> views;
    unsigned totalLines = 0;
    unsigned pageLines = 0;
    unsigned position = 0;  // at most GetLastPosition()
    SCROLLINFO shown{};  // what the control was told last
};
