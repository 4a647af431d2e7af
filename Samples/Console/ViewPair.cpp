#include "ViewPair.h"

#include "ConsoleView.h"
#include "resource.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int minimumWidth = 40;  // pixels of a pane

}  // namespace

bool ViewPair::Create()
{
    CCreateContext context;
    context.m_pNewViewClass = RUNTIME_CLASS(ConsoleView);
    first = static_cast<ConsoleView*>(frame.CreateView(&context, AFX_IDW_PANE_FIRST));
    return first && bar.CreateHidden(&frame, IDC_LINKED_BAR);
}

// The first view moves into the splitter as it is. Until the second is complete, it can go back.
void ViewPair::Split(SelectionDrawStyle style)
{
    if (IsSplit()) {
        return;
    }
    CRect client;
    frame.GetClientRect(&client);
    const unsigned top = first->GetTopLine();
    share = 0.5;
    firstWidth = 0;
    splitter = std::make_unique<CSplitterWnd>();
    try {
        if (!splitter->CreateStatic(&frame, 1, 2)) {
            splitter.reset();
            return;
        }
        ::SetParent(first->GetSafeHwnd(), splitter->GetSafeHwnd());
        const int half = client.Width() / 2;
        if (!splitter->CreateView(0, 1, RUNTIME_CLASS(ConsoleView), CSize(half, 0), nullptr)) {
            Unsplit();
            return;
        }
        splitter->SetColumnInfo(0, half, minimumWidth);
        splitter->SetColumnInfo(1, half, minimumWidth);
        second = static_cast<ConsoleView*>(splitter->GetPane(0, 1));
        second->TakeOver(*first);
        second->SetSelectionDrawStyle(style);
    } catch (...) {
        Unsplit();
        throw;
    }
    Link();
    frame.RecalcLayout();
    if (first->IsReading()) {
        bar.ScrollToPoint(top);
    }
    bar.ShowWindow(SW_SHOW);
}

void ViewPair::Link()
{
    first->LinkTo(second);
    second->LinkTo(first);
    for (ConsoleView* view : {first, second}) {
        bar.AddView(*view);
        view->SetLinkedVerticalScrollbar(&bar);
        view->ShowVertScrollbarIfNeeded(false);
    }
}

void ViewPair::Unsplit()
{
    if (!IsSplit()) {
        return;
    }
    frame.SetActiveView(first);
    const unsigned top = first->GetTopLine();
    first->LinkTo(nullptr);
    first->ShowVertScrollbarIfNeeded(true);
    first->SetLinkedVerticalScrollbar(nullptr);
    ::SetParent(first->GetSafeHwnd(), frame.GetSafeHwnd());
    bar.ShowWindow(SW_HIDE);
    bar.RemoveViews();
    second = nullptr;
    splitter->DestroyWindow();
    splitter.reset();
    frame.RecalcLayout();
    if (first->IsReading()) {
        first->GoToLine(top);
    }
}

void ViewPair::LayOut(const CRect& rest)
{
    CRect panes = rest;
    panes.right -= LinkedScrollBar::GetWidth();
    bar.MoveWindow(panes.right, rest.top, LinkedScrollBar::GetWidth(), rest.Height());
    ShareWidth(panes.Width());
    splitter->MoveWindow(&panes);
    firstWidth = GetFirstWidth();
}

int ViewPair::GetFirstWidth() const
{
    int current = 0;
    int minimum = 0;
    splitter->GetColumnInfo(0, current, minimum);
    return current;
}

// By itself the splitter would give all that is gained or lost to the second pane. The share is
// read anew only where the user has moved the bar: rounding would add up while a window is sized.
void ViewPair::ShareWidth(int width)
{
    CRect before;
    splitter->GetClientRect(&before);
    const int current = GetFirstWidth();
    if (firstWidth > 0 && current > 0 && current != firstWidth) {
        share = static_cast<double>(current) / before.Width();
    }
    const int ideal = static_cast<int>(std::lround(share * width));
    splitter->SetColumnInfo(0, std::max(ideal, minimumWidth), minimumWidth);
}

void ViewPair::ScrollByBar(UINT code, UINT position)
{
    bar.OnVScroll(code, position);
    first->DecideReading();
}
