// YListCtrlScopes.h: what a list keeps to while it moves its rows about.
#pragma once

#include "controls/YListCtrl.h"

#include <utility>

// Drawing is off, by the list's own count.
class YListCtrl::DrawingOff
{
public:
    explicit DrawingOff(YListCtrl& changed) : list(changed) { list.DisableDraw(); }
    DrawingOff(const DrawingOff&) = delete;
    DrawingOff& operator=(const DrawingOff&) = delete;
    ~DrawingOff() { list.EnableDraw(); }

private:
    YListCtrl& list;
};

// The list itself changes rows and their states, without drawing each.
class YListCtrl::Rearrangement
{
public:
    explicit Rearrangement(YListCtrl& changed)
        : list(changed), outer(std::exchange(list.rearranging, true)), drawingOff(list)
    {}
    Rearrangement(const Rearrangement&) = delete;
    Rearrangement& operator=(const Rearrangement&) = delete;
    ~Rearrangement() { list.rearranging = outer; }

private:
    YListCtrl& list;
    bool outer;
    DrawingOff drawingOff;
};

// A disabled list, which shows every row selected, has its own selection back.
class YListCtrl::TrueSelection
{
public:
    explicit TrueSelection(YListCtrl& changed) : list(changed), isDisabled(list.allHighlighted)
    {
        if (isDisabled) {
            list.RestoreSelection();
        }
    }
    TrueSelection(const TrueSelection&) = delete;
    TrueSelection& operator=(const TrueSelection&) = delete;
    // Whoever is called meanwhile may have enabled the list.
    ~TrueSelection()
    {
        if (isDisabled && !list.IsWindowEnabled()) {
            list.HighlightAll();
        }
    }

private:
    YListCtrl& list;
    bool isDisabled;
};
