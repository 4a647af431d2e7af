#include "ConsoleView.h"

#include "LineBatch.h"
#include "LineRules.h"
#include "resource.h"

#include <algorithm>
#include <chrono>
#include <cwchar>

namespace {

constexpr UINT_PTR searchTimer = 1;
constexpr UINT searchPause = 10;  // milliseconds for input and painting
constexpr std::chrono::milliseconds searchTurn{20};

}  // namespace

IMPLEMENT_DYNCREATE(ConsoleView, YTextView)

BEGIN_MESSAGE_MAP(ConsoleView, YTextView)
    ON_WM_VSCROLL()
    ON_WM_SIZE()
    ON_MESSAGE(WM_MOUSEWHEEL, &ConsoleView::OnMouseWheel)
    ON_WM_KEYDOWN()
    ON_WM_CONTEXTMENU()
    ON_WM_TIMER()
    ON_WM_PRINTCLIENT()
END_MESSAGE_MAP()

void ConsoleView::LinkTo(ConsoleView* other)
{
    partner = other;
    SetLinkedView(other);
}

void ConsoleView::TakeOver(const ConsoleView& other)
{
    constexpr unsigned linesAtOnce = 8192;
    if (other.lineLimit > 0) {
        Limit(other.lineLimit);
    }
    if (const YLogFont* chosen = other.GetLogFont()) {
        ChangeFont(chosen->Get());
    }
    LineBatch batch;
    for (unsigned line = 0; line < other.GetTotalVert(); ++line) {
        const LineInfo& info = other.GetBuffer().GetLineInfo(line);
        batch.Add(info.text.data(), info.text.size()).attributes = info.attributes;
        if (batch.GetCount() == linesAtOnce) {
            AppendLines(batch.GetLines(), batch.GetCount());
            batch.Clear();
        }
    }
    AppendLines(batch.GetLines(), batch.GetCount());
    unfinished = other.unfinished;
    colors = other.colors;
    SetCaretInternal(other.reading);
    UpdateHighlight(other.GetHighlight(), other.IsColumnSelect());
}

// Lines

void ConsoleView::ShowLines(const LineInfo* lines, unsigned count, bool endsUnfinished)
{
    const unsigned top = GetVScrollPoint();
    const unsigned dropped = Append(lines, count, endsUnfinished);
    if (partner) {
        partner->Append(lines, count, endsUnfinished);
    }
    search.OnLinesDropped(dropped);
    KeepStill(top, dropped);
}

// The number of lines that the full buffer dropped.
unsigned ConsoleView::Append(const LineInfo* lines, unsigned count, bool endsUnfinished)
{
    if (unfinished) {
        unfinished = false;
        ClearLastLine();
    }
    const unsigned before = GetTotalVert();
    AppendLines(lines, count);
    unfinished = endsUnfinished;
    return before + count - GetTotalVert();
}

// The base view leaves the scroll point where it is, which would let the text slide by.
void ConsoleView::KeepStill(unsigned top, unsigned dropped)
{
    if (reading && dropped > 0) {
        GoToLine(top > dropped ? top - dropped : 0);
    }
}

void ConsoleView::ShowNotice(const wchar_t* text)
{
    unfinished = false;
    if (partner) {
        partner->unfinished = false;
    }
    const LineInfo line{{text, text + std::wcslen(text)}, GetNoticeAttributes()};
    ShowLines(&line, 1, false);
}

void ConsoleView::SetLineLimit(unsigned lines)
{
    const unsigned top = GetVScrollPoint();
    const unsigned before = GetTotalVert();
    Limit(lines);
    if (partner) {
        partner->Limit(lines);
    }
    search.OnLinesDropped(before - GetTotalVert());
    KeepStill(top, before - GetTotalVert());
}

// A buffer that shrinks keeps the order of its lines for certain only when they fill the new size:
// it is first cut to the lines that it has.
void ConsoleView::Limit(unsigned lines)
{
    if (lines < lineLimit) {
        SetBufferSize(std::clamp(GetTotalVert(), 1u, lines));
    }
    SetBufferSize(lines);
    lineLimit = lines;
}

void ConsoleView::ClearInternal()
{
    unfinished = false;
    YTextView::ClearInternal();
}

// Looks

void ConsoleView::GetTextAttributes(const void* attributes, COLORREF& color) const
{
    if (!attributes) {
        return;
    }
    const LineSeverity severity = static_cast<const LineAttributes*>(attributes)->severity;
    const COLORREF chosen = colors[static_cast<std::size_t>(severity)];
    color = chosen == CLR_INVALID ? color : chosen;
}

void ConsoleView::ChangeColors(const LineColors& chosen)
{
    colors = chosen;
    InvalidateWindow();
    if (partner) {
        partner->colors = chosen;
        partner->InvalidateWindow();
    }
}

void ConsoleView::ChangeFont(const LOGFONT& chosen)
{
    UpdateFont(YLogFont(chosen));
    Refit();
    if (partner) {
        partner->Refit();
    }
}

void ConsoleView::ChangeSelectionStyle(SelectionDrawStyle style)
{
    SetSelectionDrawStyle(style);
    if (partner) {
        partner->SetSelectionDrawStyle(style);
    }
}

// The one that was chosen, else what the base view takes: Courier New of 10 points.
LOGFONT ConsoleView::GetShownFont() const
{
    const YLogFont* const chosen = GetLogFont();
    return chosen ? chosen->Get() : GetUsualFont();
}

LOGFONT ConsoleView::GetUsualFont()
{
    LOGFONT shown{};
    const CClientDC screen(nullptr);
    shown.lfHeight = -::MulDiv(10, screen.GetDeviceCaps(LOGPIXELSY), 72);
    shown.lfWeight = FW_NORMAL;
    shown.lfCharSet = DEFAULT_CHARSET;
    std::wcscpy(shown.lfFaceName, L"Courier New");
    return shown;
}

// The page holds another number of lines: measures it, and shows the end again where that is
// followed.
void ConsoleView::Refit()
{
    OnSizeChange();
    if (!reading && GetTotalVert() > GetPageHeight()) {
        GoToLine(GetTotalVert() - 1);
    }
    InvalidateWindow();
}

// The frame gives its view a border; here the window's own edge is enough.
BOOL ConsoleView::PreCreateWindow(CREATESTRUCT& create)
{
    create.style &= ~WS_BORDER;
    return YTextView::PreCreateWindow(create);
}

// Selection and place

void ConsoleView::OnNormalizeHighlightChange()
{
    if (partner) {
        partner->UpdateHighlight(GetHighlight(), IsColumnSelect());
    }
}

void ConsoleView::SetCaretInternal(bool on)
{
    reading = on;
    YTextView::SetCaretInternal(on);
}

void ConsoleView::DecideReading()
{
    SetCaret(GetVScrollPoint() + GetPageHeight() < GetTotalVert());
}

void ConsoleView::GoToStart()
{
    OnGoToStart();
    DecideReading();
}

void ConsoleView::OnVScroll(UINT code, UINT position, CScrollBar* bar)
{
    YTextView::OnVScroll(code, position, bar);
    DecideReading();
}

LRESULT ConsoleView::OnMouseWheel(UINT wParam, long lParam)
{
    const LRESULT result = YTextView::OnMouseWheel(wParam, lParam);
    DecideReading();
    return result;
}

void ConsoleView::OnSize(UINT type, int width, int height)
{
    YTextView::OnSize(type, width, height);
    Refit();
}

// Search

void ConsoleView::Find(const SearchQuery& query, bool onward)
{
    search.Start(GetBuffer(), query, GetSearchStart(query.isBackwards, onward));
    if (query.text.empty()) {
        search.Cancel();
    }
    GoOnSearching(true);
}

// With nothing selected: from what is to be seen.
YTextViewCharPosition ConsoleView::GetSearchStart(bool backwards, bool onward) const
{
    const YTextViewHighlight* const selection = GetHighlight();
    if (!selection) {
        return {0, GetTopLine() + (backwards ? GetPageLines() : 0)};
    }
    YTextViewCharPosition start = selection->GetBegin();
    start.column += onward && !backwards ? 1 : 0;
    return start;
}

void ConsoleView::GoOnSearching(bool isFirstTurn)
{
    KillTimer(searchTimer);
    const LineSearch::State state = search.Continue(GetBuffer(), searchTurn);
    if (state == LineSearch::State::Running) {
        SetTimer(searchTimer, searchPause);
    } else if (state == LineSearch::State::Found) {
        ShowHit();
    }
    if (state != LineSearch::State::Idle && (isFirstTurn || state != LineSearch::State::Running)) {
        GetParentFrame()->SendMessage(WM_COMMAND, ID_SEARCH_PROGRESS);
    }
}

void ConsoleView::OnTimer(UINT_PTR timer)
{
    if (timer == searchTimer) {
        GoOnSearching(false);
    } else {
        YTextView::OnTimer(timer);
    }
}

// In the middle of the window where it was not to be seen; the reader stays there.
void ConsoleView::ShowHit()
{
    const YTextViewCharPosition begin = search.GetHit();
    const auto length = static_cast<unsigned>(search.GetQuery().text.size());
    const YTextViewCharPosition end(begin.column + length - 1, begin.line);
    const auto hit = YUnknownPointer<YTextViewHighlight>::Make(nullptr, begin, end);
    UpdateHighlight(hit.Get(), false);
    OnNormalizeHighlightChange();
    SetCaret(true);
    if (begin.line < GetTopLine() || begin.line >= GetTopLine() + GetPageLines()) {
        const unsigned above = GetPageLines() / 2;
        GoToLine(begin.line > above ? begin.line - above : 0);
    }
    const unsigned left = GetHScrollPoint();
    if (begin.column < left || end.column >= left + GetPageWidth()) {
        const unsigned before = GetPageWidth() / 2;
        ScrollToHPoint(end.column > before ? end.column - before : 0);
    }
}

// As if the user had clicked there on the bar.
void ConsoleView::Scroll(UINT message, UINT code)
{
    SendMessage(message, code);
}

void ConsoleView::OnKeyDown(UINT key, UINT repeats, UINT flags)
{
    switch (key) {
    case VK_UP: Scroll(WM_VSCROLL, SB_LINEUP); break;
    case VK_DOWN: Scroll(WM_VSCROLL, SB_LINEDOWN); break;
    case VK_PRIOR: Scroll(WM_VSCROLL, SB_PAGEUP); break;
    case VK_NEXT: Scroll(WM_VSCROLL, SB_PAGEDOWN); break;
    case VK_LEFT: Scroll(WM_HSCROLL, SB_LINELEFT); break;
    case VK_RIGHT: Scroll(WM_HSCROLL, SB_LINERIGHT); break;
    case VK_HOME:
        if (::GetKeyState(VK_CONTROL) < 0) {
            GoToStart();
        } else {
            ScrollToHPoint(0);
        }
        break;
    case VK_END: ScrollToHPoint(GetTotalHorz()); break;  // with Ctrl it does not come here
    default: YTextView::OnKeyDown(key, repeats, flags); break;
    }
}

// The frame brings the commands up to date and gets the chosen one. (-1, -1): by the keyboard.
void ConsoleView::OnContextMenu(CWnd*, CPoint point)
{
    if (point == CPoint(-1, -1)) {
        point = CPoint(0, 0);
        ClientToScreen(&point);
    }
    CMenu menu;
    if (menu.LoadMenu(IDR_CONTEXT)) {
        menu.GetSubMenu(0)->TrackPopupMenu(TPM_RIGHTBUTTON, point.x, point.y, GetParentFrame());
    }
}

// For who asks for a picture of the window, such as a thumbnail.
LRESULT ConsoleView::OnPrintClient(CDC* dc, UINT)
{
    const int saved = dc->SaveDC();
    OnDraw(dc);
    dc->RestoreDC(saved);
    return 0;
}
