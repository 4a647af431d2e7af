// The smallest host: shows lines in the view of the README, selects them, and looks at the result.
#include "LogView.h"

#include <cstdio>
#include <string>

namespace {

bool ShowLines(LogView& view)
{
    static const COLORREF red = RGB(192, 0, 0);
    view.SetBufferSize(10);
    for (int i = 1; i <= 100; ++i) {
        view.Show(L"line " + std::to_wstring(i), i % 10 == 0 ? &red : nullptr);
    }
    view.SelectAll();
    return view.GetBuffer().GetLineCount() == 10 && view.CanCopy() &&
           view.GetHighlight()->GetEnd() == YTextViewCharPosition(7, 9);
}

}  // namespace

int main()
{
    if (!AfxWinInit(::GetModuleHandleW(nullptr), nullptr, ::GetCommandLineW(), SW_SHOW)) {
        return 2;
    }
    auto* frame = new CFrameWnd;  // deletes itself with its window, as the view does
    frame->Create(nullptr, L"Consumer", WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 300));
    auto* view = new LogView;
    if (!view->Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, CRect(0, 0, 380, 260), frame, 100)) {
        return 3;
    }
    const bool shown = ShowLines(*view);
    frame->DestroyWindow();
    std::puts(shown ? "consumer: shown" : "consumer: wrong content");
    return shown ? 0 : 1;
}
