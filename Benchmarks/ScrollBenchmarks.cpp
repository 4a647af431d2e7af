// Output and scrolling in a visible view.
#include "Report.h"
#include "Subjects.h"
#include "ViewHost.h"

#include <richedit.h>

#include <algorithm>

namespace {

constexpr unsigned columns = 120;
constexpr unsigned rows = 50;
constexpr unsigned burst = 10'000;

void BurstOfLines(benchmark::State& state)
{
    ViewHost host(columns, rows, 1000);
    host.Fill(1000, 80);
    const YTextViewBuffer::LineInfo line{std::vector<wchar_t>(80, L'x'), nullptr};
    int most = 0;
    for (auto _ : state) {
        host.GetView().paints = 0;
        for (unsigned i = 0; i < burst; ++i) {
            host.GetView().AppendLines(&line, 1);
        }
        Pump();
        most = std::max(most, host.GetView().paints);
    }
    state.counters["paints"] = most;
    if (most == 0) {
        state.SkipWithError("the view was not painted");
    }
}

// A plain window with a bar of its own.
class BareBar
{
public:
    BareBar()
        : window(::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE | WS_VSCROLL, 0, 0, 600,
                                   400, nullptr, nullptr, nullptr, nullptr))
    {
        Pump();
    }
    ~BareBar() { ::DestroyWindow(window); }
    BareBar(const BareBar&) = delete;
    BareBar& operator=(const BareBar&) = delete;

    void Scroll(int position)
    {
        SCROLLINFO info{};
        info.cbSize = sizeof info;
        info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
        info.nMax = static_cast<int>(burst) + 100;
        info.nPage = 50;
        info.nPos = position;
        ::SetScrollInfo(window, SB_VERT, &info, TRUE);
    }

private:
    HWND window;
};

// Bare: what a view without our bars calls for each line.
void RedrawingScrolls(benchmark::State& state)
{
    BareBar bar;
    for (auto _ : state) {
        for (unsigned i = 0; i < burst; ++i) {
            bar.Scroll(static_cast<int>(i));
        }
        Pump();
    }
}

constexpr unsigned viewLines = 100'000;
constexpr unsigned richLines = 1'000;

void AppendToView(benchmark::State& state)
{
    ViewHost host(columns, rows, viewLines);
    const YTextViewBuffer::LineInfo line{std::vector<wchar_t>(80, L'x'), nullptr};
    for (auto _ : state) {
        state.PauseTiming();
        host.GetView().Clear();
        state.ResumeTiming();
        for (unsigned i = 0; i < viewLines; ++i) {
            host.GetView().AppendLines(&line, 1);
        }
        Pump();
    }
}

// What a user would take instead: the system's RichEdit control, read-only, a line at a time. A
// hundredth of the lines, since it takes that long.
void AppendToRichEdit(benchmark::State& state)
{
    const HMODULE library = ::LoadLibraryW(L"riched20.dll");
    const HWND edit = ::CreateWindowExW(
        0, RICHEDIT_CLASSW, L"", WS_POPUP | WS_VISIBLE | WS_VSCROLL | ES_MULTILINE | ES_READONLY, 0,
        0, 960, 750, nullptr, nullptr, nullptr, nullptr);
    if (!edit) {
        state.SkipWithError("no RichEdit control");
        return;
    }
    ::SendMessageW(edit, EM_EXLIMITTEXT, 0, 100'000'000);
    const std::wstring line = std::wstring(80, L'x') + L"\r\n";
    for (auto _ : state) {
        state.PauseTiming();
        ::SetWindowTextW(edit, L"");
        state.ResumeTiming();
        for (unsigned i = 0; i < richLines; ++i) {
            ::SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(-1), -1);
            ::SendMessageW(edit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(line.c_str()));
        }
        Pump();
    }
    ::DestroyWindow(edit);
    ::FreeLibrary(library);
}

void PaintPage(benchmark::State& state, unsigned lines)
{
    ViewHost host(columns, rows, lines);
    host.Fill(lines, 80);
    for (auto _ : state) {
        host.Paint();
    }
}

// Down by pages, from the top again where the lines end.
void Page(benchmark::State& state, unsigned lines)
{
    ViewHost host(columns, rows, lines);
    host.Fill(lines, 80);
    host.GetView().ScrollToPoint(0, 0);
    unsigned page = 0;
    for (auto _ : state) {
        host.GetView().SendMessage(WM_VSCROLL, ++page % 15 == 0 ? SB_TOP : SB_PAGEDOWN);
        host.GetView().UpdateWindow();
    }
}

// One move of the mouse within a selection, and what it paints.
void Drag(benchmark::State& state, unsigned lines)
{
    ViewHost host(columns, rows, lines);
    host.Fill(lines, 80);
    host.GetView().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
    int step = 0;
    for (auto _ : state) {
        const int y = 100 + ++step % 30 * ViewHost::cellHeight;
        host.GetView().SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(300, y));
        host.GetView().UpdateWindow();
    }
    host.GetView().SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(300, 100));
}

void CompareSizes(Report& report, const char* name, void (*measured)(benchmark::State&, unsigned))
{
    const std::string few = std::string(name) + "Of1000";
    const std::string many = std::string(name) + "Of1000000";
    benchmark::RegisterBenchmark(few.c_str(), measured, 1'000)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(30);
    benchmark::RegisterBenchmark(many.c_str(), measured, 1'000'000)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(30);
    report.CompareCost(std::string(name) + " with 1,000,000 lines, to 1,000", many, few, 1.2);
}

}  // namespace

void AddScrollSubjects(Report& report)
{
    constexpr auto milliseconds = benchmark::kMillisecond;
    benchmark::RegisterBenchmark("BurstOfLines", BurstOfLines)->Unit(milliseconds)->Iterations(1);
    benchmark::RegisterBenchmark("RedrawingScrolls", RedrawingScrolls)
        ->Unit(milliseconds)
        ->Iterations(1);
    report.CompareCost("burst of 10,000 lines, to as many redrawing SetScrollInfo", "BurstOfLines",
                       "RedrawingScrolls", 0.1);
    report.CheckCounter("  paints of that burst", "BurstOfLines", "paints", 2);

    benchmark::RegisterBenchmark("AppendToView", AppendToView)->Unit(milliseconds)->Iterations(1);
    benchmark::RegisterBenchmark("AppendToRichEdit", AppendToRichEdit)
        ->Unit(milliseconds)
        ->Iterations(1);
    report.CompareRate("append 100,000 lines, to RichEdit (1,000 lines, scaled)", "AppendToView",
                       "AppendToRichEdit", 50, 1.0 * viewLines / richLines);

    CompareSizes(report, "Paint", PaintPage);
    CompareSizes(report, "Page", Page);
    CompareSizes(report, "Drag", Drag);
}
