#include "BCGPInternalScrollBarWrapperWnd.h"

#include <algorithm>
#include <climits>

namespace {

// How far the values reach, in 64 bits: both ends of the range may be extreme.
long long GetExtent(int minimum, int maximum)
{
    return static_cast<long long>(maximum) - minimum;
}

bool IsOwnBar(int bar)
{
    return bar == SB_HORZ || bar == SB_VERT;
}

bool IsShown(HWND window, int bar)
{
    const LONG flag = bar == SB_VERT ? WS_VSCROLL : WS_HSCROLL;
    return (::GetWindowLongW(window, GWL_STYLE) & flag) != 0;
}

// Invalidates the bar's part of the frame, and no more: what the window shows has not changed.
void InvalidateBar(HWND window, int bar)
{
    SCROLLBARINFO info{};
    info.cbSize = sizeof(info);
    if (!::GetScrollBarInfo(window, bar == SB_VERT ? OBJID_VSCROLL : OBJID_HSCROLL, &info)) {
        return;
    }
    RECT& place = info.rcScrollBar;
    ::MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    ::RedrawWindow(window, &place, nullptr, RDW_INVALIDATE | RDW_FRAME);
}

}  // namespace

bool CBCGPInternalScrollBars::Bar::IsNeeded() const
{
    return maximum > minimum && page <= GetExtent(minimum, maximum);
}

// As the system does, so that equal values are recognised.
void CBCGPInternalScrollBars::Bar::Clamp()
{
    if (maximum < minimum || GetExtent(minimum, maximum) > INT_MAX) {
        minimum = 0;
        maximum = 0;
    }
    page = static_cast<UINT>(std::min<long long>(page, GetExtent(minimum, maximum) + 1));
    const int last = maximum - static_cast<int>(page == 0 ? 0 : page - 1);
    position = std::clamp(position, minimum, last);
}

void CBCGPInternalScrollBars::Bar::Merge(const SCROLLINFO& info)
{
    if ((info.fMask & SIF_RANGE) != 0) {
        minimum = info.nMin;
        maximum = info.nMax;
    }
    if ((info.fMask & SIF_PAGE) != 0) {
        page = info.nPage;
    }
    if ((info.fMask & SIF_POS) != 0) {
        position = info.nPos;
    }
    Clamp();
}

SCROLLINFO CBCGPInternalScrollBars::Bar::GetAll() const
{
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMin = minimum;
    info.nMax = maximum;
    info.nPage = page;
    info.nPos = position;
    return info;
}

// What the window came with counts until it is told something.
const CBCGPInternalScrollBars::Bar& CBCGPInternalScrollBars::Read(HWND window, int bar) const
{
    Bar& known = bars[bar];
    if (!known.isKnown) {
        SCROLLINFO info = Bar().GetAll();
        if (::GetScrollInfo(window, bar, &info)) {
            known.Merge(info);
        }
        known.isKnown = true;
    }
    return known;
}

BOOL CBCGPInternalScrollBars::SetInfo(CWnd& window, int bar, const SCROLLINFO& info, BOOL redraw)
{
    const HWND handle = window.GetSafeHwnd();
    if (handle == nullptr || !IsOwnBar(bar)) {
        return FALSE;
    }
    Bar next = Read(handle, bar);
    next.Merge(info);
    const bool isShown = IsShown(handle, bar);
    // The position alone neither shows nor hides.
    const bool setsExtent = (info.fMask & (SIF_RANGE | SIF_PAGE)) != 0;
    const bool flips = setsExtent && next.IsNeeded() != isShown;
    if (next == bars[bar] && !flips) {
        return TRUE;
    }
    // Before the system is told: a bar that comes or goes brings on a WM_SIZE, inside whose handler
    // the new values already hold.
    bars[bar] = next;
    SCROLLINFO all = next.GetAll();
    all.fMask |= info.fMask & SIF_DISABLENOSCROLL;
    if (flips || (info.fMask & SIF_DISABLENOSCROLL) != 0) {
        ::SetScrollInfo(handle, bar, &all, redraw);
        return TRUE;
    }
    if (!setsExtent) {
        all.fMask = SIF_POS;
    }
    ::SetScrollInfo(handle, bar, &all, FALSE);
    if (redraw && isShown) {
        MarkDirty(handle, bar);
    }
    return TRUE;
}

BOOL CBCGPInternalScrollBars::GetInfo(const CWnd& window, int bar, SCROLLINFO& info,
                                      UINT mask) const
{
    const HWND handle = window.GetSafeHwnd();
    if (handle == nullptr || !IsOwnBar(bar)) {
        return FALSE;
    }
    SCROLLINFO all = Read(handle, bar).GetAll();
    all.fMask = mask;
    if ((mask & SIF_TRACKPOS) != 0) {  // only the system follows the pointer
        SCROLLINFO track{};
        track.cbSize = sizeof(track);
        track.fMask = SIF_TRACKPOS;
        ::GetScrollInfo(handle, bar, &track);
        all.nTrackPos = track.nTrackPos;
    }
    info = all;
    return TRUE;
}

void CBCGPInternalScrollBars::MarkDirty(HWND window, int bar)
{
    if (!isDirty[bar] && ::IsWindowVisible(window)) {
        isDirty[bar] = true;
        InvalidateBar(window, bar);
    }
}

void CBCGPInternalScrollBars::BeforeMessage(UINT message)
{
    switch (message) {
    case WM_NCCREATE:
    case WM_NCDESTROY: *this = CBCGPInternalScrollBars(); break;
    case WM_NCPAINT:  // draws the bars with what the system knows: the newest values
    case WM_SHOWWINDOW:  // a mark that was left on a hidden window would block later ones
    case WM_SIZE:
        isDirty[SB_HORZ] = false;
        isDirty[SB_VERT] = false;
        break;
    default: break;
    }
}

void CBCGPInternalScrollBars::AfterMessage(HWND handle, const CWnd* window,
                                           CBCGPInternalScrollBars& scrollBars, UINT message)
{
    if (message == WM_PAINT && CWnd::FromHandlePermanent(handle) == window) {
        scrollBars.DrawDirty(handle);
    }
}

// A paint without WM_NCPAINT: somebody has validated the frame.
void CBCGPInternalScrollBars::DrawDirty(HWND window)
{
    for (int bar : {SB_HORZ, SB_VERT}) {
        if (isDirty[bar]) {
            isDirty[bar] = false;
            SCROLLINFO all = bars[bar].GetAll();
            ::SetScrollInfo(window, bar, &all, TRUE);
        }
    }
}
