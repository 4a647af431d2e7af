// The smallest host: shows lines in a text view, selects them and reads back what it would copy.
#include <textview/YTextView.h>

#include <cstdio>
#include <string>

namespace {

class HostView : public YTextView
{
public:
    using YTextViewBase::SelectAll;
};

bool ShowLines(HostView& view)
{
    std::vector<YTextViewBuffer::LineInfo> lines(100);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::wstring text = L"line " + std::to_wstring(i + 1);
        lines[i].text.assign(text.begin(), text.end());
    }
    view.SetBufferSize(10);
    view.AppendLines(lines.data(), static_cast<unsigned>(lines.size()));
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
    auto* view = new HostView;
    if (!view->Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, CRect(0, 0, 380, 260), frame, 100)) {
        return 3;
    }
    const bool shown = ShowLines(*view);
    frame->DestroyWindow();
    std::puts(shown ? "consumer: shown" : "consumer: wrong content");
    return shown ? 0 : 1;
}
