#include "WindowLayout.h"

#include "afxext.h"

#include <algorithm>
#include <utility>

IMPLEMENT_DYNCREATE(CSplitterWnd, CWnd)

BEGIN_MESSAGE_MAP(CSplitterWnd, CWnd)
    ON_WM_SIZE()
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_SETCURSOR()
    ON_WM_LBUTTONDOWN()
    ON_WM_MOUSEMOVE()
    ON_WM_LBUTTONUP()
    ON_WM_KEYDOWN()
    ON_WM_CAPTURECHANGED()
END_MESSAGE_MAP()

namespace {

constexpr int barSize = 6;  // pixels
constexpr int maxTracks = 16;

}  // namespace

BOOL CSplitterWnd::CreateStatic(CWnd* pParentWnd, int nRows, int nCols, DWORD dwStyle, UINT nID)
{
    ASSERT(nRows >= 1 && nRows <= maxTracks && nCols >= 1 && nCols <= maxTracks);
    rows.assign(static_cast<std::size_t>(nRows), Track());
    columns.assign(static_cast<std::size_t>(nCols), Track());
    return CWnd::Create(nullptr, nullptr, dwStyle, CRect(0, 0, 0, 0), pParentWnd, nID);
}

BOOL CSplitterWnd::CreateView(int row, int col, CRuntimeClass* pViewClass, SIZE sizeInit,
                              CCreateContext* pContext)
{
    if (GetPane(row, col) != nullptr) {
        return FALSE;
    }
    CObject* const object = pViewClass->CreateObject();
    CWnd* const view = DYNAMIC_DOWNCAST(CWnd, object);
    if (view == nullptr) {
        delete object;
        return FALSE;
    }
    CCreateContext context;
    context.m_pNewViewClass = pViewClass;
    const UINT id = static_cast<UINT>(IdFromRowCol(row, col));
    if (!view->Create(nullptr, nullptr, AFX_WS_DEFAULT_VIEW & ~WS_BORDER,
                      CRect(CPoint(0, 0), sizeInit), this, id,
                      pContext != nullptr ? pContext : &context)) {
        return FALSE;
    }
    columns[static_cast<std::size_t>(col)].ideal = sizeInit.cx;
    rows[static_cast<std::size_t>(row)].ideal = sizeInit.cy;
    CFrameWnd* const frame = GetParentFrame();
    CView* const asView = DYNAMIC_DOWNCAST(CView, view);
    if (asView != nullptr && frame != nullptr && frame->GetActiveView() == nullptr) {
        frame->SetActiveView(asView, FALSE);
    }
    return TRUE;
}

void CSplitterWnd::DeleteView(int row, int col)
{
    if (CWnd* const pane = GetPane(row, col)) {
        pane->DestroyWindow();  // an active view steps down by itself
    }
}

CWnd* CSplitterWnd::GetPane(int row, int col) const
{
    return GetDlgItem(IdFromRowCol(row, col));
}

BOOL CSplitterWnd::IsChildPane(CWnd* pWnd, int* pRow, int* pCol)
{
    for (int row = 0; row < GetRowCount(); ++row) {
        for (int column = 0; column < GetColumnCount(); ++column) {
            const CWnd* const pane = GetPane(row, column);
            if (pane != nullptr && (*pane == *pWnd || pane->IsChild(pWnd))) {
                *pRow = row;
                *pCol = column;
                return TRUE;
            }
        }
    }
    return FALSE;
}

CWnd* CSplitterWnd::GetActivePane(int* pRow, int* pCol)
{
    const CFrameWnd* const frame = GetParentFrame();
    CWnd* active = frame != nullptr ? frame->GetActiveView() : nullptr;
    int row = 0;
    int column = 0;
    if (active == nullptr || !IsChildPane(active, &row, &column)) {
        active = GetFocus();
        if (active == nullptr || !IsChildPane(active, &row, &column)) {
            return nullptr;
        }
    }
    if (pRow != nullptr) {
        *pRow = row;
    }
    if (pCol != nullptr) {
        *pCol = column;
    }
    return GetPane(row, column);
}

void CSplitterWnd::SetActivePane(int row, int col, CWnd* pWnd)
{
    CWnd* const pane = pWnd != nullptr ? pWnd : GetPane(row, col);
    CFrameWnd* const frame = GetParentFrame();
    CView* const view = DYNAMIC_DOWNCAST(CView, pane);
    if (view != nullptr && frame != nullptr) {
        frame->SetActiveView(view);
    } else if (pane != nullptr) {
        pane->SetFocus();
    }
}

void CSplitterWnd::SetRowInfo(int row, int cyIdeal, int cyMin)
{
    Track& track = rows.at(static_cast<std::size_t>(row));
    track.ideal = cyIdeal;
    track.minimum = cyMin;
}

void CSplitterWnd::SetColumnInfo(int col, int cxIdeal, int cxMin)
{
    Track& track = columns.at(static_cast<std::size_t>(col));
    track.ideal = cxIdeal;
    track.minimum = cxMin;
}

void CSplitterWnd::GetRowInfo(int row, int& cyCur, int& cyMin) const
{
    const Track& track = rows.at(static_cast<std::size_t>(row));
    cyCur = track.current;
    cyMin = track.minimum;
}

void CSplitterWnd::GetColumnInfo(int col, int& cxCur, int& cxMin) const
{
    const Track& track = columns.at(static_cast<std::size_t>(col));
    cxCur = track.current;
    cxMin = track.minimum;
}

void CSplitterWnd::RecalcLayout()
{
    CRect client;
    GetClientRect(&client);
    LayOut(rows, client.Height());
    LayOut(columns, client.Width());
    MovePanes();
    Invalidate(FALSE);
}

// From the first track on each gets what it wants while there is room; one with less than its
// minimum is not shown. The last one gets the rest.
void CSplitterWnd::LayOut(Tracks& tracks, int available)
{
    for (Track& track : tracks) {
        const bool isLast = &track == &tracks.back();
        const int room = std::max(available, 0);
        track.current = isLast ? room : std::clamp(track.ideal, 0, room);
        if (track.current < track.minimum) {
            track.current = 0;
        }
        available -= track.current + barSize;
    }
}

int CSplitterWnd::GetStart(const Tracks& tracks, int index)
{
    int start = 0;
    for (int i = 0; i < index; ++i) {
        start += tracks[static_cast<std::size_t>(i)].current + barSize;
    }
    return start;
}

// The track whose bar is there, or -1. The last track has none.
int CSplitterWnd::FindBar(const Tracks& tracks, int at)
{
    int end = 0;
    for (int i = 0; i + 1 < static_cast<int>(tracks.size()); ++i) {
        end += tracks[static_cast<std::size_t>(i)].current;
        if (at >= end && at < end + barSize) {
            return i;
        }
        end += barSize;
    }
    return -1;
}

// Both neighbours keep their minimum, where there is room for both; the first one goes before.
int CSplitterWnd::LimitBar(const Tracks& tracks, int index, int at)
{
    const Track& before = tracks[static_cast<std::size_t>(index)];
    const Track& after = tracks[static_cast<std::size_t>(index) + 1];
    const int start = GetStart(tracks, index);
    const int lowest = start + before.minimum;
    const int highest = start + before.current + after.current - after.minimum;
    return std::clamp(at, lowest, std::max(lowest, highest));
}

// The two neighbours share what they have in another way; all others stay as they are.
void CSplitterWnd::MoveBar(Tracks& tracks, int index, int at)
{
    Track& before = tracks[static_cast<std::size_t>(index)];
    Track& after = tracks[static_cast<std::size_t>(index) + 1];
    const int sum = before.current + after.current;
    before.ideal = at - GetStart(tracks, index);
    after.ideal = std::max(sum - before.ideal, 0);
}

void CSplitterWnd::MovePanes()
{
    HDWP moves = ::BeginDeferWindowPos(GetRowCount() * GetColumnCount());
    for (int row = 0; row < GetRowCount(); ++row) {
        for (int column = 0; column < GetColumnCount(); ++column) {
            if (const HWND pane = ::GetDlgItem(m_hWnd, IdFromRowCol(row, column))) {
                RepositionWindow(moves, pane, GetPaneRect(row, column));
            }
        }
    }
    if (moves != nullptr) {
        ::EndDeferWindowPos(moves);
    }
}

CRect CSplitterWnd::GetPaneRect(int row, int column) const
{
    const CPoint corner(GetStart(columns, column), GetStart(rows, row));
    return CRect(corner, CSize(columns[static_cast<std::size_t>(column)].current,
                               rows[static_cast<std::size_t>(row)].current));
}

// Where the bar begins: x for a column's bar, y for a row's.
CPoint CSplitterWnd::GetPosition(const Bar& bar) const
{
    return CPoint(bar.column < 0 ? 0 : GetStart(columns, bar.column + 1) - barSize,
                  bar.row < 0 ? 0 : GetStart(rows, bar.row + 1) - barSize);
}

// The bar's rectangle if it began there.
CRect CSplitterWnd::GetBarRect(const Bar& bar, CPoint at) const
{
    CRect rect;
    GetClientRect(&rect);
    if (bar.column >= 0) {
        rect.left = at.x;
        rect.right = at.x + barSize;
    }
    if (bar.row >= 0) {
        rect.top = at.y;
        rect.bottom = at.y + barSize;
    }
    return rect;
}

CSplitterWnd::Bar CSplitterWnd::HitTest(CPoint point) const
{
    return {FindBar(rows, point.y), FindBar(columns, point.x)};
}

void CSplitterWnd::OnDrawSplitter(CDC* pDC, ESplitType, const CRect& rect)
{
    pDC->FillSolidRect(rect, ::GetSysColor(COLOR_3DFACE));
    CRect edge(rect);
    const UINT sides = rect.Width() > rect.Height() ? BF_TOP | BF_BOTTOM : BF_LEFT | BF_RIGHT;
    pDC->DrawEdge(edge, BDR_RAISEDINNER, sides);
}

void CSplitterWnd::OnInvertTracker(const CRect& rect)
{
    // Over the panes, whatever the window's style says of clipping.
    const HDC dc = ::GetDCEx(m_hWnd, nullptr, DCX_CACHE | DCX_CLIPSIBLINGS);
    ::PatBlt(dc, rect.left, rect.top, rect.Width(), rect.Height(), DSTINVERT);
    ::ReleaseDC(m_hWnd, dc);
}

BOOL CSplitterWnd::OnCommand(WPARAM wParam, LPARAM lParam)
{
    if (CWnd::OnCommand(wParam, lParam)) {
        return TRUE;
    }
    CFrameWnd* const frame = GetParentFrame();
    return frame != nullptr && frame->SendMessage(WM_COMMAND, wParam, lParam) != 0;
}

BOOL CSplitterWnd::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* pResult)
{
    if (CWnd::OnNotify(wParam, lParam, pResult)) {
        return TRUE;
    }
    CFrameWnd* const frame = GetParentFrame();
    if (frame == nullptr) {
        return FALSE;
    }
    *pResult = frame->SendMessage(WM_NOTIFY, wParam, lParam);
    return TRUE;
}

void CSplitterWnd::OnSize(UINT nType, int cx, int cy)
{
    CWnd::OnSize(nType, cx, cy);
    if (nType != SIZE_MINIMIZED && cx > 0 && cy > 0) {
        RecalcLayout();
    }
}

void CSplitterWnd::OnPaint()
{
    CPaintDC dc(this);
    for (int row = 0; row + 1 < GetRowCount(); ++row) {
        const Bar bar{row, -1};
        OnDrawSplitter(&dc, splitBar, GetBarRect(bar, GetPosition(bar)));
    }
    for (int column = 0; column + 1 < GetColumnCount(); ++column) {
        const Bar bar{-1, column};
        OnDrawSplitter(&dc, splitBar, GetBarRect(bar, GetPosition(bar)));
    }
}

// Panes and bars cover everything.
BOOL CSplitterWnd::OnEraseBkgnd(CDC*)
{
    return TRUE;
}

BOOL CSplitterWnd::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message)
{
    CPoint pointer;
    ::GetCursorPos(&pointer);
    ScreenToClient(&pointer);
    const Bar bar = HitTest(pointer);
    if (nHitTest != HTCLIENT || *pWnd != *this || bar.IsNone()) {
        return CWnd::OnSetCursor(pWnd, nHitTest, message);
    }
    const LPCWSTR shape = bar.row < 0 ? IDC_SIZEWE : bar.column < 0 ? IDC_SIZENS : IDC_SIZEALL;
    ::SetCursor(::LoadCursorW(nullptr, shape));
    return TRUE;
}

void CSplitterWnd::OnLButtonDown(UINT, CPoint point)
{
    dragged = HitTest(point);
    if (dragged.IsNone()) {
        return;
    }
    position = GetPosition(dragged);
    grip = CPoint(point.x - position.x, point.y - position.y);
    SetCapture();
    focusBeforeDrag = ::SetFocus(m_hWnd);  // for the Escape key
    OnInvertTracker(GetBarRect(dragged, position));
}

void CSplitterWnd::OnMouseMove(UINT, CPoint point)
{
    if (dragged.IsNone()) {
        return;
    }
    CPoint next = position;
    if (dragged.column >= 0) {
        next.x = LimitBar(columns, dragged.column, point.x - grip.x);
    }
    if (dragged.row >= 0) {
        next.y = LimitBar(rows, dragged.row, point.y - grip.y);
    }
    if (next != position) {
        HideTracker();
        position = next;
        OnInvertTracker(GetBarRect(dragged, position));
    }
}

void CSplitterWnd::OnLButtonUp(UINT nFlags, CPoint point)
{
    OnMouseMove(nFlags, point);
    StopTracking(true);
}

void CSplitterWnd::OnKeyDown(UINT nChar, UINT, UINT)
{
    if (nChar == VK_ESCAPE) {
        StopTracking(false);
    }
}

void CSplitterWnd::OnCaptureChanged(CWnd*)
{
    StopTracking(false);  // somebody else took the mouse; after our own release nothing is dragged
}

// Painted over, not inverted back: the panes may have painted in the meantime.
void CSplitterWnd::HideTracker()
{
    const CRect rect = GetBarRect(dragged, position);
    RedrawWindow(rect, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

void CSplitterWnd::StopTracking(bool accept)
{
    if (dragged.IsNone()) {
        return;
    }
    HideTracker();
    const Bar bar = std::exchange(dragged, Bar());
    ::ReleaseCapture();
    if (::GetFocus() == m_hWnd && ::IsWindow(focusBeforeDrag)) {
        ::SetFocus(focusBeforeDrag);
    }
    if (!accept) {
        return;
    }
    if (bar.column >= 0) {
        MoveBar(columns, bar.column, position.x);
    }
    if (bar.row >= 0) {
        MoveBar(rows, bar.row, position.y);
    }
    RecalcLayout();
}
