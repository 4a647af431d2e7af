// ViewPair.h: one view, or the same text twice side by side.
#pragma once

#include "LinkedScrollBar.h"

#include <afxext.h>
#include <textview/YTextViewBase.h>

#include <memory>

class ConsoleView;

// The client area of a frame. The first view is always there; the second comes with a splitter and
// with one scroll bar for both at the right edge, and goes again. What is done to the first view's
// lines, selection, place and look is done to both.
class ViewPair
{
public:
    explicit ViewPair(CFrameWnd& owner) : frame(owner) {}

    bool Create();  // in the frame's OnCreateClient
    ConsoleView& GetFirst() const { return *first; }
    bool IsSplit() const { return splitter != nullptr; }

    // Throws std::bad_alloc where the second view's lines do not fit; then nothing is split.
    void Split(SelectionDrawStyle style);
    void Unsplit();  // the first view stays as it is: place, selection, lines

    // The room left by the frame's bars.
    void LayOut(const CRect& rest);
    // The user moves the bar.
    void ScrollByBar(UINT code, UINT position);

private:
    void Link();
    int GetFirstWidth() const;
    void ShareWidth(int width);

    CFrameWnd& frame;
    ConsoleView* first = nullptr;  // windows delete themselves
    ConsoleView* second = nullptr;  // null: not split
    std::unique_ptr<CSplitterWnd> splitter;
    double share = 0.5;  // of the first pane in the width of both
    int firstWidth = 0;  // pixels that LayOut gave the first pane; 0: none yet
    LinkedScrollBar bar;
};
