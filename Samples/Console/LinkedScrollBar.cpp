#include "LinkedScrollBar.h"

#include "ConsoleView.h"

#include <YInput.h>

#include <algorithm>
#include <climits>

bool LinkedScrollBar::CreateHidden(CWnd* parent, UINT id)
{
    return Create(WS_CHILD | SBS_VERT, CRect(0, 0, 0, 0), parent, id) != FALSE;
}

int LinkedScrollBar::GetWidth()
{
    return ::GetSystemMetrics(SM_CXVSCROLL);
}

void LinkedScrollBar::AddView(ConsoleView& view)
{
    views.push_back(&view);
}

void LinkedScrollBar::RemoveViews()
{
    views.clear();
    totalLines = 0;
    pageLines = 0;
    position = 0;
}

void LinkedScrollBar::UpdateScrollSize(unsigned total, unsigned page)
{
    totalLines = total;
    pageLines = page;
    for (const ConsoleView* view : views) {
        pageLines = std::min(pageLines, view->GetPageLines());
    }
    MoveTo(position);
    Show();
}

void LinkedScrollBar::ScrollToPoint(unsigned line)
{
    MoveTo(line);
}

void LinkedScrollBar::SyncScrollPoint(unsigned line)
{
    MoveTo(line);
}

void LinkedScrollBar::MoveTo(long long line)
{
    const long long last = GetLastPosition();
    const unsigned next = static_cast<unsigned>(std::clamp(line, 0ll, last));
    if (next == position) {
        return;
    }
    position = next;
    Show();
    for (ConsoleView* view : views) {
        view->Update();
    }
}

// Even a scroll bar that does not change takes its time to be told so.
void LinkedScrollBar::Show()
{
    SCROLLINFO info{};
    GetScrollInfo(&info);
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    if (info.nMax == shown.nMax && info.nPage == shown.nPage && info.nPos == shown.nPos) {
        return;
    }
    shown = info;
    SetScrollInfo(&info);
}

void LinkedScrollBar::GetScrollInfo(SCROLLINFO* info)
{
    info->nMin = 0;
    info->nMax = static_cast<int>(std::min<unsigned>(totalLines, INT_MAX)) - 1;
    info->nPage = pageLines;
    info->nPos = static_cast<int>(std::min<unsigned>(position, INT_MAX));
}

// The message itself carries 16 bits.
unsigned LinkedScrollBar::GetTrackPosition()
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    CScrollBar::GetScrollInfo(&info, SIF_TRACKPOS);
    return static_cast<unsigned>(info.nTrackPos);
}

void LinkedScrollBar::OnVScroll(UINT code, UINT)
{
    const long long line = position;
    switch (code) {
    case SB_LINEUP: MoveTo(line - 1); break;
    case SB_LINEDOWN: MoveTo(line + 1); break;
    case SB_PAGEUP: MoveTo(line - pageLines); break;
    case SB_PAGEDOWN: MoveTo(line + pageLines); break;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK: MoveTo(GetTrackPosition()); break;
    case SB_TOP: MoveTo(0); break;
    case SB_BOTTOM: MoveTo(totalLines); break;
    default: break;
    }
}

// As the views do it on their own: less than a notch counts as one.
long LinkedScrollBar::OnMouseWheel(UINT wParam, long)
{
    const int delta = GET_WHEEL_DELTA_WPARAM(wParam);
    int notches = delta / WHEEL_DELTA;
    if (notches == 0 && delta != 0) {
        notches = delta > 0 ? 1 : -1;
    }
    const unsigned lines = GetWheelScrollLines();
    const long long step = lines == WHEEL_PAGESCROLL ? pageLines : lines;
    MoveTo(position - notches * step);
    return 0;
}
