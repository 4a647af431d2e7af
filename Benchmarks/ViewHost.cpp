#include "ViewHost.h"

#include <algorithm>
#include <stdexcept>

ViewHost::ViewHost(unsigned columns, unsigned rows, unsigned bufferSize) : frame(new CFrameWnd)
{
    const CRect page(0, 0, static_cast<int>(columns) * cellWidth,
                     static_cast<int>(rows) * cellHeight);
    CRect outer(page);
    ::AdjustWindowRect(&outer, WS_OVERLAPPEDWINDOW, FALSE);
    outer.OffsetRect(-outer.left, -outer.top);
    if (!frame->Create(nullptr, L"Benchmark", WS_OVERLAPPEDWINDOW | WS_VISIBLE, outer) ||
        !view.Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, page, frame, AFX_IDW_PANE_FIRST)) {
        throw std::runtime_error("no window to measure");
    }
    // Bars would come and go with the lines; the page is to stay the same.
    view.ShowVertScrollbarIfNeeded(true);
    view.ShowHorzScrollbarIfNeeded(false);
    view.SetBufferSize(bufferSize);
    if (view.GetCharacterWidth() != cellWidth || view.GetCharacterHeight() != cellHeight) {
        throw std::runtime_error("the default font has other cells than the page was made for");
    }
    Pump();
}

ViewHost::~ViewHost()
{
    frame->DestroyWindow();
    Pump();
}

void ViewHost::Fill(unsigned lines, std::size_t length)
{
    std::vector<YTextViewBuffer::LineInfo> batch(std::min(lines, 100u));
    for (std::size_t i = 0; i < batch.size(); ++i) {
        batch[i].text.assign(length, static_cast<wchar_t>(L'a' + i % 26));
    }
    for (unsigned done = 0; done < lines;) {
        const unsigned count = std::min(lines - done, static_cast<unsigned>(batch.size()));
        view.AppendLines(batch.data(), count);
        done += count;
    }
    Pump();
}

void ViewHost::Paint()
{
    ::InvalidateRect(view.GetSafeHwnd(), nullptr, TRUE);
    ::UpdateWindow(view.GetSafeHwnd());
}

void Pump()
{
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
}
