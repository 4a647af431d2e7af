// Painting a page, against the bare calls that put the same page on the screen.
#include "Report.h"
#include "Subjects.h"
#include "ViewHost.h"

#include <algorithm>
#include <vector>

namespace {

constexpr unsigned columns = 200;
constexpr unsigned rows = 60;

enum class Selection { None, Part, All };

// A part: from the middle of one row to the middle of another, by a real drag of mouse messages.
void Select(MeasuredView& view, Selection selection)
{
    if (selection == Selection::None) {
        return;
    }
    const int half = columns * ViewHost::cellWidth / 2;
    const int right = columns * ViewHost::cellWidth - 1;
    const int first = selection == Selection::All ? 0 : 20 * ViewHost::cellHeight;
    const int last =
        selection == Selection::All ? (rows - 1) * ViewHost::cellHeight : 40 * ViewHost::cellHeight;
    const LPARAM from = MAKELPARAM(selection == Selection::All ? 0 : half, first + 1);
    const LPARAM to = MAKELPARAM(selection == Selection::All ? right : half, last + 1);
    view.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, from);
    view.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, to);
    view.SendMessage(WM_LBUTTONUP, 0, to);
}

void PaintView(benchmark::State& state, Selection selection)
{
    ViewHost host(columns, rows, rows);
    host.Fill(rows, columns);
    Select(host.GetView(), selection);
    for (auto _ : state) {
        host.Paint();
    }
    if (host.GetView().paints == 0) {
        state.SkipWithError("the view was not painted");
    }
}

// Bare: a window that puts the same runs out by the same calls: fill a bitmap, one text-out a run,
// copy it to the screen.
class BarePage : public CWnd
{
public:
    explicit BarePage(Selection chosen) : selection(chosen), text(columns, L'x')
    {
        LPCWSTR name = ::AfxRegisterWndClass(0, ::LoadCursorW(nullptr, IDC_ARROW));
        CreateEx(0, name, L"Bare", WS_POPUP | WS_VISIBLE, 0, 0,
                 static_cast<int>(columns) * ViewHost::cellWidth,
                 static_cast<int>(rows) * ViewHost::cellHeight, nullptr, nullptr);
        CClientDC dc(this);
        font.CreateFontW(-(10 * dc.GetDeviceCaps(LOGPIXELSY) / 72), 0, 0, 0, FW_NORMAL, FALSE,
                         FALSE, FALSE, DEFAULT_CHARSET, OUT_STRING_PRECIS, CLIP_CHARACTER_PRECIS,
                         DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Courier New");
    }
    ~BarePage() override { DestroyWindow(); }

    int paints = 0;

protected:
    afx_msg void OnPaint()
    {
        ++paints;
        CPaintDC dc(this);
        CRect page;
        GetClientRect(&page);
        CBitmap bitmap;
        bitmap.CreateCompatibleBitmap(&dc, page.Width(), page.Height());
        CDC memory;
        memory.CreateCompatibleDC(&dc);
        CBitmap* const oldBitmap = memory.SelectObject(&bitmap);
        ::FillRect(memory.GetSafeHdc(), &page, ::GetSysColorBrush(COLOR_WINDOW));
        CFont* const oldFont = memory.SelectObject(&font);
        for (unsigned row = 0; row < rows; ++row) {
            DrawRow(memory.GetSafeHdc(), row);
        }
        memory.SelectObject(oldFont);
        dc.BitBlt(0, 0, page.Width(), page.Height(), &memory, 0, 0, SRCCOPY);
        memory.SelectObject(oldBitmap);
    }
    DECLARE_MESSAGE_MAP()

private:
    void DrawRow(HDC dc, unsigned row)
    {
        const unsigned half = columns / 2;
        const bool inside = selection == Selection::All || (row > 20 && row < 40);
        if (selection == Selection::None || (!inside && row != 20 && row != 40)) {
            DrawRun(dc, row, 0, columns, false);
        } else if (inside) {
            DrawRun(dc, row, 0, columns, true);
        } else {
            DrawRun(dc, row, 0, half, row == 40);
            DrawRun(dc, row, half, columns - half, row == 20);
        }
    }

    void DrawRun(HDC dc, unsigned row, unsigned column, unsigned count, bool selected)
    {
        ::SetTextColor(dc, ::GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
        ::SetBkColor(dc, ::GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
        ::TextOutW(dc, static_cast<int>(column) * ViewHost::cellWidth,
                   static_cast<int>(row) * ViewHost::cellHeight, text.data(),
                   static_cast<int>(count));
    }

    Selection selection;
    std::vector<wchar_t> text;
    CFont font;
};

BEGIN_MESSAGE_MAP(BarePage, CWnd)
    ON_WM_PAINT()
END_MESSAGE_MAP()

void PaintBare(benchmark::State& state, Selection selection)
{
    BarePage page(selection);
    Pump();
    for (auto _ : state) {
        ::InvalidateRect(page.GetSafeHwnd(), nullptr, FALSE);
        ::UpdateWindow(page.GetSafeHwnd());
    }
    if (page.paints == 0) {
        state.SkipWithError("the page was not painted");
    }
}

// As many rows of text either way; only their lengths differ.
void PaintLines(benchmark::State& state, std::size_t length)
{
    constexpr unsigned filled = 20;  // of ten million characters: all that a 32-bit process holds
    ViewHost host(columns, rows, filled);
    host.Fill(1, length);
    for (unsigned line = 1; line < filled; ++line) {
        const YTextViewBuffer::LineInfo& first = host.GetView().GetBuffer().GetLineInfo(0);
        const YTextViewBuffer::LineInfo copy{first.text, nullptr};
        host.GetView().AppendLines(&copy, 1);
    }
    Pump();
    for (auto _ : state) {
        host.Paint();
    }
}

void ComparePages(Report& report, const char* name, Selection selection)
{
    const std::string ours = std::string("PaintView") + name;
    const std::string bare = std::string("PaintBare") + name;
    benchmark::RegisterBenchmark(ours.c_str(), PaintView, selection)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(bare.c_str(), PaintBare, selection)->Unit(benchmark::kMillisecond);
    report.CompareCost(std::string("paint 60 rows of 200 columns, selection: ") + name, ours, bare,
                       1.15);
}

}  // namespace

void AddPaintSubjects(Report& report)
{
    ComparePages(report, "none", Selection::None);
    ComparePages(report, "part", Selection::Part);
    ComparePages(report, "all", Selection::All);
    for (const char* name : {"PaintShortLines", "PaintLongLines"}) {
        const std::size_t length = name[5] == 'S' ? columns : 10'000'000;
        benchmark::RegisterBenchmark(name, PaintLines, length)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(20);
    }
    report.CompareCost("paint lines of 10,000,000 characters, to lines of 200", "PaintLongLines",
                       "PaintShortLines", 1.2);
}
