#include "textview/YTextView.h"

#include "YDpi.h"
#include "YInput.h"
#include "textview/ITextViewLinkedScrollbar.h"
#include "textview/YTextViewPixels.h"

#include <algorithm>
#include <climits>

namespace {

constexpr int defaultPointSize = 10;
constexpr wchar_t defaultFace[] = L"Courier New";

// Selects an object into a device context for the life of a scope.
template <class Object>
class SelectScope
{
public:
    SelectScope(CDC& context, Object* object) : dc(context), previous(dc.SelectObject(object)) {}
    ~SelectScope()
    {
        if (previous) {
            dc.SelectObject(previous);
        }
    }
    SelectScope(const SelectScope&) = delete;
    SelectScope& operator=(const SelectScope&) = delete;

private:
    CDC& dc;
    Object* previous;
};

// The system's scroll positions are signed: a saturated position would land at the top.
int ToBarPosition(unsigned position)
{
    return static_cast<int>(std::min(position, static_cast<unsigned>(INT_MAX)));
}

// Hebrew, Arabic and their neighbours: a text-out of several reorders them, which would leave the
// grid; one at a time each stays in its cell.
bool IsRightToLeft(wchar_t character)
{
    return (character >= 0x0590 && character <= 0x08FF) || character == 0x200F ||
           (character >= 0xFB1D && character <= 0xFDFF) ||
           (character >= 0xFE70 && character <= 0xFEFC);
}

}  // namespace

IMPLEMENT_DYNCREATE(YTextView, CView)

BEGIN_MESSAGE_MAP(YTextView, TBCGPInternalScrollBarWrapperWnd<CView>)
    ON_WM_VSCROLL()
    ON_WM_HSCROLL()
    ON_WM_SIZE()
    ON_WM_CREATE()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
    ON_WM_ERASEBKGND()
    ON_WM_SETCURSOR()
    ON_MESSAGE(WM_MOUSEWHEEL, &YTextView::OnMouseWheel)
END_MESSAGE_MAP()

YTextView::YTextView()
{
    EnableActiveAccessibility();
}

YTextView::~YTextView() = default;

// Creation and font

int YTextView::OnCreate(CREATESTRUCT* create)
{
    if (CView::OnCreate(create) == -1) {
        return -1;
    }
    UpdateFontInternal();
    YTextViewBase::OnCreate();
    return 0;
}

std::unique_ptr<CFont> YTextView::MakeFont(CClientDC& dc) const
{
    if (const YLogFont* given = GetLogFont()) {
        return YCreateFont(dc, YFontData(given->Get()), true);
    }
    const int height = -(defaultPointSize * dc.GetDeviceCaps(LOGPIXELSY) / 72);
    auto made = std::make_unique<CFont>();
    if (!made->CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                           OUT_STRING_PRECIS, CLIP_CHARACTER_PRECIS, DEFAULT_QUALITY,
                           DEFAULT_PITCH | FF_DONTCARE, defaultFace)) {
        return nullptr;
    }
    return made;
}

void YTextView::UpdateFontInternal()
{
    if (!GetSafeHwnd()) {
        return;
    }
    font.reset();
    CClientDC dc(this);
    font = MakeFont(dc);
    // Without a font of ours the device context's own is measured: still a usable view.
    const SelectScope<CFont> selected(dc, font.get());
    MeasureFont(dc);
}

void YTextView::MeasureFont(CDC& dc)
{
    TEXTMETRICW metrics{};
    dc.GetTextMetrics(&metrics);
    opaqueCells = metrics.tmExternalLeading != 0;
    oneCellCharacters.reset();
    int widths[firstUnmeasured - L' '] = {};
    if (::GetCharWidth32W(dc.GetSafeHdc(), L' ', firstUnmeasured - 1, widths)) {
        for (wchar_t character = L' '; character < firstUnmeasured; ++character) {
            // The soft hyphen is drawn by some fonts and swallowed by others.
            oneCellCharacters[character] =
                widths[character - L' '] == metrics.tmAveCharWidth && character != 0xAD;
        }
    }
    UpdateSize(metrics.tmAveCharWidth, metrics.tmHeight + metrics.tmExternalLeading);
}

// Scroll bars

YTextView::ScrollBarId YTextView::ToScrollbarId(int bar)
{
    return bar != SB_HORZ ? vertical : horizontal;
}

bool YTextView::LinkedScrollBar(int bar) const
{
    return bar == SB_VERT && GetLinkedVerticalScrollbar();
}

bool YTextView::DeferToLinkedScrollBar(int bar) const
{
    return LinkedScrollBar(bar) && !IsVertScrollbarShown();
}

// Marks first: showing or hiding a bar changes the client area, and WM_SIZE comes back here from
// inside the call.
void YTextView::UpdateScrollbarRange(int bar, bool show, unsigned total, unsigned page)
{
    if (!show || total <= page) {
        visibleScrollBars &= ~ToScrollbarId(bar);
        SetScrollRange(bar, 0, 0, TRUE);
        return;
    }
    visibleScrollBars |= ToScrollbarId(bar);
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE;
    info.nMax = ToBarPosition(total - 1);
    info.nPage = page;
    if (!SetScrollInfo(bar, &info, TRUE)) {
        SetScrollRange(bar, 0, ToBarPosition(total), TRUE);
    }
}

void YTextView::UpdateVScrollSize(unsigned total, unsigned page)
{
    UpdateScrollbarRange(SB_VERT, IsVertScrollbarShown(), total, page);
}

void YTextView::UpdateHScrollSize(unsigned total, unsigned page)
{
    UpdateScrollbarRange(SB_HORZ, IsHorzScrollbarShown(), total, page);
}

unsigned YTextView::GetScrollPoint(int bar) const
{
    return IsScrollBarVisible(bar) ? static_cast<unsigned>(GetScrollPos(bar)) : 0;
}

unsigned YTextView::GetVScrollPointInternal() const
{
    return GetScrollPoint(SB_VERT);
}

unsigned YTextView::GetHScrollPointInternal() const
{
    return GetScrollPoint(SB_HORZ);
}

void YTextView::SetScrollPosition(int bar, unsigned position)
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_POS;
    info.nPos = ToBarPosition(position);
    SetScrollInfo(bar, &info, TRUE);
}

void YTextView::ScrollToVPoint(unsigned line)
{
    DoScrollAbs(SB_VERT, line);
}

void YTextView::ScrollToHPoint(unsigned column)
{
    DoScrollAbs(SB_HORZ, column);
}

void YTextView::DoScroll(int bar, long long delta)
{
    const long long target = static_cast<long long>(GetScrollPoint(bar)) + delta;
    DoScrollAbs(bar, static_cast<unsigned>(std::clamp<long long>(target, 0, npos)));
}

void YTextView::DoScrollAbs(int bar, unsigned position)
{
    DoScrollAbsInternal(bar, position);
    if (LinkedScrollBar(bar)) {
        GetLinkedVerticalScrollbar()->SyncScrollPoint(position);
    }
}

void YTextView::DoScrollAbsInternal(int bar, unsigned position)
{
    SetScrollPosition(bar, position);
    InvalidateWindow();
}

unsigned YTextView::GetTrackPosition(int bar)
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    GetScrollInfo(bar, &info, SIF_TRACKPOS);
    return static_cast<unsigned>(info.nTrackPos);
}

// Where a scroll message leads. The bars differ at both ends: only the vertical one jumps there.
unsigned YTextView::GetScrollTarget(int bar, UINT code, UINT position)
{
    const unsigned current = GetScrollPoint(bar);
    const unsigned page = bar == SB_VERT ? GetPageHeight() : GetPageWidth();
    switch (code) {
    case SB_LINEUP: return SubtractDownTo0(current, 1);
    case SB_LINEDOWN: return AddSaturated(current, 1);
    case SB_PAGEUP: return SubtractDownTo0(current, page);
    case SB_PAGEDOWN: return AddSaturated(current, page);
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK: return GetTrackPosition(bar);  // the message itself carries 16 bits
    case SB_TOP: return bar == SB_VERT ? 0 : current;
    case SB_BOTTOM: return bar == SB_VERT ? SubtractDownTo0(GetTotalVert(), 1) : current;
    case SB_ENDSCROLL: return current;
    default: return position;
    }
}

void YTextView::OnVScroll(UINT code, UINT position, CScrollBar* bar)
{
    if (DeferToLinkedScrollBar(SB_VERT)) {
        GetLinkedVerticalScrollbar()->OnVScroll(code, position);
        return;
    }
    DoScrollAbs(SB_VERT, GetScrollTarget(SB_VERT, code, position));
    TBCGPInternalScrollBarWrapperWnd<CView>::OnVScroll(code, position, bar);
}

void YTextView::OnHScroll(UINT code, UINT position, CScrollBar* bar)
{
    DoScrollAbs(SB_HORZ, GetScrollTarget(SB_HORZ, code, position));
    TBCGPInternalScrollBarWrapperWnd<CView>::OnHScroll(code, position, bar);
}

// A movement below one notch, as high-resolution wheels and touch pads send it, counts as a whole
// one: the view then always moves when the user does.
LRESULT YTextView::OnMouseWheel(UINT wParam, long lParam)
{
    if (DeferToLinkedScrollBar(SB_VERT)) {
        return GetLinkedVerticalScrollbar()->OnMouseWheel(wParam, lParam);
    }
    const int delta = GET_WHEEL_DELTA_WPARAM(wParam);
    int notches = delta / WHEEL_DELTA;
    if (notches == 0 && delta != 0) {
        notches = delta > 0 ? 1 : -1;
    }
    unsigned lines = GetWheelScrollLines();
    if (lines == WHEEL_PAGESCROLL) {
        lines = GetPageHeight();
    }
    DoScroll(SB_VERT, -static_cast<long long>(notches) * lines);
    return 0;
}

void YTextView::ShowVertScrollbarIfNeeded(bool show)
{
    const bool changed = show != IsVertScrollbarShown();
    YTextViewBase::ShowVertScrollbarIfNeeded(show);
    if (!changed || !GetLinkedVerticalScrollbar()) {
        return;
    }
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    GetLinkedVerticalScrollbar()->GetScrollInfo(&info);
    UpdateVScrollSize(static_cast<unsigned>(info.nMax) + 1, info.nPage);
    if (show) {
        DoScrollAbsInternal(SB_VERT, static_cast<unsigned>(info.nPos));
    }
}

void YTextView::Update()
{
    InvalidateWindow();
}

// Painting

BOOL YTextView::OnEraseBkgnd(CDC*)
{
    return TRUE;  // OnDraw clears what it paints, unseen
}

bool YTextView::GetBackgroundBrush(CBrush& brush) const
{
    brush.Attach(::GetSysColorBrush(COLOR_WINDOW));
    return true;
}

void YTextView::OnDraw(CDC* dc)
{
    repaintPending = false;
    if (!dc->IsPrinting()) {
        AnnounceChange();
    }
    CRect clip;
    dc->GetClipBox(&clip);
    CBrush background;
    if (clip.IsRectEmpty() || !GetBackgroundBrush(background)) {
        return;
    }
    CBitmap bitmap;  // outlives the device context that holds it
    CDC memory;
    if (dc->IsPrinting() || !memory.CreateCompatibleDC(dc) ||
        !bitmap.CreateCompatibleBitmap(dc, clip.Width(), clip.Height())) {
        DrawView(*dc, clip, background);
        return;
    }
    const SelectScope<CBitmap> selected(memory, &bitmap);
    memory.SetViewportOrg(-clip.left, -clip.top);
    memory.SetBrushOrg(clip.left % 8, clip.top % 8);
    DrawView(memory, clip, background);
    dc->BitBlt(clip.left, clip.top, clip.Width(), clip.Height(), &memory, clip.left, clip.top,
               SRCCOPY);
}

void YTextView::DrawView(CDC& dc, const CRect& clip, CBrush& background)
{
    dc.FillRect(&clip, &background);
    const SelectScope<CFont> selected(dc, font.get());
    YTextViewBase::OnDraw(&dc, clip);
}

// Whether a plain text-out puts each character into its own cell and nothing beside it.
bool YTextView::FillsOneCell(const wchar_t* text, unsigned count) const
{
    return std::all_of(text, text + count, [this](wchar_t character) {
        return character < firstUnmeasured && oneCellCharacters[character];
    });
}

void YTextView::DrawText(CDC* dc, const DrawTextInfo& run)
{
    dc->SetTextColor(run.foreground);
    dc->SetBkColor(run.background);
    if (!opaqueCells && FillsOneCell(run.text, run.count)) {
        dc->TextOut(run.x, run.y, run.text, static_cast<int>(run.count));
        return;
    }
    const CRect cells(run.x, run.y, run.x + static_cast<int>(run.count * GetCharacterWidth()),
                      run.y + GetCharacterHeight());
    dc->ExtTextOut(run.x, run.y, ETO_OPAQUE, &cells, L"", 0, nullptr);
    const int mode = dc->SetBkMode(TRANSPARENT);
    DrawCells(*dc, run.x, run.y, run.text, run.count);
    dc->SetBkMode(mode);
}

// Explicit advances keep wide, combining and unknown characters in their cells. They cost five
// times a plain text-out, so only runs that need them come here.
void YTextView::DrawCells(CDC& dc, int x, int y, const wchar_t* text, unsigned count) const
{
    constexpr unsigned most = 256;  // characters a call: the advances need no allocation
    const int width = static_cast<int>(GetCharacterWidth());
    int advances[most];
    std::fill_n(advances, std::min(count, most), width);
    for (unsigned done = 0; done < count;) {
        unsigned length = 1;
        if (!IsRightToLeft(text[done])) {
            const wchar_t* const end = text + std::min(count, done + most);
            length = static_cast<unsigned>(std::find_if(text + done, end, IsRightToLeft) -
                                           (text + done));
        }
        dc.ExtTextOut(x + static_cast<int>(done) * width, y, 0, nullptr, text + done, length,
                      advances);
        done += length;
    }
}

void YTextView::DrawLine(CDC* dc, COLORREF color,
                         const std::vector<YTextViewLineDrawInfo>& segments)
{
    if (segments.empty()) {
        return;
    }
    CPen pen(PS_SOLID, AdjustForDpiX(dc, 1), color);
    const SelectScope<CPen> selected(*dc, &pen);
    for (const YTextViewLineDrawInfo& segment : segments) {
        dc->MoveTo(ToPixels(segment.startX), segment.startY);
        dc->LineTo(ToPixels(segment.endX), segment.endY);
    }
}

void YTextView::GetTextAttributes(const void*, COLORREF&) const {}

void YTextView::GetTextColor(COLORREF& foreground, COLORREF& background) const
{
    foreground = ::GetSysColor(COLOR_WINDOWTEXT);
    background = ::GetSysColor(COLOR_WINDOW);
}

void YTextView::GetHighlightColor(COLORREF& foreground, COLORREF& background) const
{
    foreground = ::GetSysColor(COLOR_HIGHLIGHTTEXT);
    background = ::GetSysColor(COLOR_HIGHLIGHT);
}

// The window

void YTextView::GetClientRect(RECT* rect) const
{
    ::GetClientRect(m_hWnd, rect);
}

// A burst of output asks for one repaint a line, and each is dear: while one is outstanding the
// next is already granted. Should somebody validate the window without painting it, the promise
// is void after a short while; a window that is not visible gets no paint and makes no promise.
void YTextView::InvalidateWindow()
{
    constexpr DWORD trustMilliseconds = 50;
    const DWORD now = ::GetTickCount();
    if (!GetSafeHwnd() || (repaintPending && now - repaintTick < trustMilliseconds)) {
        return;
    }
    InvalidateRect(nullptr, TRUE);
    repaintPending = IsWindowVisible() != FALSE;
    repaintTick = now;
}

void YTextView::RepaintWindow()
{
    UpdateWindow();
}

void YTextView::CaptureMouse()
{
    SetCapture();
}

bool YTextView::ReleaseMouse()
{
    return ::ReleaseCapture() != FALSE;
}

// Input

void YTextView::OnLButtonDown(UINT, CPoint point)
{
    YTextViewBase::OnLButtonDown(point);
}

void YTextView::OnLButtonUp(UINT, CPoint point)
{
    YTextViewBase::OnLButtonUp(point);
}

void YTextView::OnMouseMove(UINT, CPoint point)
{
    YTextViewBase::OnMouseMove(point);
}

void YTextView::OnSize(UINT type, int width, int height)
{
    TBCGPInternalScrollBarWrapperWnd<CView>::OnSize(type, width, height);
    OnSizeChange();
}

BOOL YTextView::OnSetCursor(CWnd* window, UINT hitTest, UINT message)
{
    if (hitTest == HTCLIENT) {
        ::SetCursor(::LoadCursorW(nullptr, IDC_IBEAM));
        return TRUE;
    }
    return TBCGPInternalScrollBarWrapperWnd<CView>::OnSetCursor(window, hitTest, message);
}

// Any keyboard message of the End key counts, its release too: a second jump to the end is not
// seen, and the end is reached however the key's messages were translated.
BOOL YTextView::PreTranslateMessage(MSG* message)
{
    const bool fromKeyboard =
        message->message >= WM_KEYFIRST && message->message <= WM_KEYFIRST + 9;
    if (fromKeyboard && message->wParam == VK_END && ::GetKeyState(VK_CONTROL) < 0) {
        OnCtrlEnd();
        ::TranslateMessage(message);
        ::DispatchMessageW(message);
        return TRUE;
    }
    return TBCGPInternalScrollBarWrapperWnd<CView>::PreTranslateMessage(message);
}

// The host has switched drawing off or on, and the system has dropped what was to be repainted: no
// promise is outstanding (test: TheNewestLineIsOnScreenInTheEnd).
LRESULT YTextView::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_SETREDRAW) {
        repaintPending = false;
    }
    return TBCGPInternalScrollBarWrapperWnd<CView>::WindowProc(message, wParam, lParam);
}
