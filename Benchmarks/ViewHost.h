// ViewHost.h: real windows to measure.
#pragma once

#include <textview/YTextView.h>

#include <memory>

// A view whose operations can be called from outside, which counts its paints.
class MeasuredView : public YTextView
{
public:
    using YTextViewBase::Clear;
    using YTextViewBase::ScrollToPoint;
    using YTextViewBase::SelectAll;
    using YTextViewBase::SetCaret;

    int paints = 0;

protected:
    void OnDraw(CDC* dc) override
    {
        ++paints;
        YTextView::OnDraw(dc);
    }
    void PostNcDestroy() override {}  // owned by the host
};

// A visible frame with one view on a page of the given size. Destroys both.
class ViewHost
{
public:
    static constexpr int cellWidth = 8;  // of the default font on the desktop of the benchmarks
    static constexpr int cellHeight = 15;

    ViewHost(unsigned columns, unsigned rows, unsigned bufferSize);
    ~ViewHost();
    ViewHost(const ViewHost&) = delete;
    ViewHost& operator=(const ViewHost&) = delete;

    MeasuredView& GetView() { return view; }
    // Appends lines of `length` characters, a hundred a call.
    void Fill(unsigned lines, std::size_t length);
    void Paint();  // all of it, now

private:
    CFrameWnd* frame;  // deletes itself with its window
    MeasuredView view;
};

// Handles messages until none is left.
void Pump();
