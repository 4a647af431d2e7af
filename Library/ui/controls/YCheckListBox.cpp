#include "controls/YCheckListBox.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr int leastRowHeight = 16;  // pixels
constexpr int edges = 4;  // pixels, of the sunken edge above and below together

// What is selected into a device context goes out again at the end of the scope.
class SavedContext
{
public:
    explicit SavedContext(CDC& saved) : dc(saved), state(saved.SaveDC()) {}
    ~SavedContext() { dc.RestoreDC(state); }
    SavedContext(const SavedContext&) = delete;
    SavedContext& operator=(const SavedContext&) = delete;

private:
    CDC& dc;
    int state;
};

}  // namespace

IMPLEMENT_DYNAMIC(YCheckListBox, CWnd)

BEGIN_MESSAGE_MAP(YCheckListBox, CWnd)
    ON_WM_CREATE()
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_LBUTTONUP()
    ON_WM_VSCROLL()
END_MESSAGE_MAP()

YCheckListBox::YCheckListBox()
{
    EnableActiveAccessibility();
}

YCheckListBox::~YCheckListBox() = default;

// Creation

BOOL YCheckListBox::Create(unsigned long style, CWnd* dialog, unsigned controlId,
                           void (*onChange)())
{
    CWnd* const placeholder = dialog->GetDlgItem(static_cast<int>(controlId));
    if (!placeholder) {
        return FALSE;
    }
    changeCallback = onChange;
    CRect place;
    placeholder->GetWindowRect(&place);
    dialog->ScreenToClient(&place);
    const HWND before = ::GetWindow(*placeholder, GW_HWNDPREV);
    placeholder->DestroyWindow();
    // Without a class style for double clicks, the second of two fast clicks toggles as well.
    const wchar_t* const windowClass = ::AfxRegisterWndClass(0, ::LoadCursorW(nullptr, IDC_ARROW));
    if (!CreateEx(WS_EX_CLIENTEDGE, windowClass, L"CheckList_Control",
                  style | WS_CHILD | WS_CLIPSIBLINGS | WS_VSCROLL, place, dialog, controlId)) {
        return FALSE;
    }
    ::SetWindowPos(m_hWnd, before ? before : HWND_TOP, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return TRUE;
}

int YCheckListBox::OnCreate(CREATESTRUCT* create)
{
    if (CWnd::OnCreate(create) == -1) {
        return -1;
    }
    CClientDC dc(this);
    const SavedContext saved(dc);
    dc.SelectObject(GetDialogFont());
    TEXTMETRICW metrics{};
    dc.GetTextMetrics(&metrics);
    rowHeight = std::max(static_cast<int>(metrics.tmHeight), leastRowHeight);
    FitToRows(create->cy);
    ShowScrollBar(SB_VERT, FALSE);
    return 0;
}

// Pages and the bar count the rows that the dialog was drawn for. Where the edges leave no room for
// the last of them, the window is lower by it, and the last row of the list comes into view by a page
// down only: a dialog gives whole rows and 4 pixels (test: WholeRowsAreSeen).
void YCheckListBox::FitToRows(int height)
{
    visibleRows = height / rowHeight;
    int fitted = visibleRows * rowHeight + edges;
    if (fitted > height) {
        fitted = std::max(fitted - rowHeight, 0);
    }
    CRect place;
    GetWindowRect(&place);
    SetWindowPos(nullptr, 0, 0, place.Width(), fitted, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// The dialog's own, which lives as long as it. A dialog without one writes in the system's.
CFont* YCheckListBox::GetDialogFont() const
{
    CFont* const font = GetParent()->GetFont();
    return font ? font : CFont::FromHandle(static_cast<HFONT>(::GetStockObject(SYSTEM_FONT)));
}

// Contents

void YCheckListBox::AddCheckColumn(int screenX)
{
    CPoint point(screenX, 0);
    ScreenToClient(&point);
    checkColumns.Add(point.x);
    Invalidate();
}

int YCheckListBox::AddItem(const wchar_t* text)
{
    rows.Add({text, YArray<int>(checkColumns.GetSize())});
    const int row = GetCount() - 1;
    if (GetCount() > visibleRows) {
        // Drawing the bar is dear, and at the top nothing of it changes.
        SetScrollRange(SB_VERT, 0, GetCount() - visibleRows, topRow > 0);
        ShowScrollBar(SB_VERT);
    }
    RepaintRow(row);
    return row;
}

int YCheckListBox::GetCheckState(int row, int column)
{
    return rows[static_cast<unsigned>(row)].states[static_cast<unsigned>(column)];
}

void YCheckListBox::SetCheckState(int row, int column, int state)
{
    YArray<int>& states = rows[static_cast<unsigned>(row)].states;
    const unsigned changed = static_cast<unsigned>(column);
    const bool isOther = std::exchange(states[changed], state) != state;
    std::vector<int> cleared;
    for (unsigned other = 0; radioStyle && state != 0 && other < states.GetSize(); ++other) {
        if (other != changed && std::exchange(states[other], 0) != 0) {
            cleared.push_back(static_cast<int>(other));
        }
    }
    if (row < topRow || row > topRow + visibleRows) {
        return;
    }
    RepaintRow(row);
    for (const int other : cleared) {
        AnnounceState({row, other});
    }
    if (isOther) {
        AnnounceState({row, column});
    }
}

void YCheckListBox::SetReadOnly(bool on)
{
    readOnly = on;
    if (m_hWnd) {
        Invalidate();
    }
}

// Places

CRect YCheckListBox::GetRowRect(int row) const
{
    CRect client;
    GetClientRect(&client);
    const int top = (row - topRow) * rowHeight;
    return {0, top, client.right, top + rowHeight};
}

// The host may ask and set states when the dialog is closed; a rectangle of no window would be one of
// the screen.
void YCheckListBox::RepaintRow(int row)
{
    if (m_hWnd) {
        const CRect place = GetRowRect(row);
        InvalidateRect(&place);
    }
}

CRect YCheckListBox::GetBoxRect(const Box& box) const
{
    const int left = checkColumns[static_cast<unsigned>(box.column)];
    const int top = (box.row - topRow) * rowHeight;
    return {left, top, left + GetCheckWidth(), top + GetCheckWidth()};
}

// A row that is older than a column has no box there.
YCheckListBox::Box YCheckListBox::FindBox(CPoint point) const
{
    const int row = point.y / rowHeight + topRow;
    const int boxes =
        IsRow(row) ? static_cast<int>(rows[static_cast<unsigned>(row)].states.GetSize()) : 0;
    for (int column = 0; column < boxes; ++column) {
        if (GetBoxRect({row, column}).PtInRect(point)) {
            return {row, column};
        }
    }
    return {};
}

// Input

void YCheckListBox::OnLButtonUp(UINT, CPoint point)
{
    const Box box = FindBox(point);
    if (!readOnly && box) {
        Toggle(box);
    }
}

// The host may destroy the control: nothing follows its call.
void YCheckListBox::Toggle(const Box& box)
{
    SetCheckState(box.row, box.column, GetCheckState(box.row, box.column) == 0 ? 1 : 0);
    if (changeCallback) {
        changeCallback();
    }
}

// A page down is as long from everywhere, and near the end leads past the last full page: there the
// last rows come to the top.
void YCheckListBox::OnVScroll(UINT code, UINT position, CScrollBar*)
{
    const int last = GetCount() - visibleRows;  // the top row of the last full page
    const bool isMoreBelow = topRow < last;
    switch (code) {
    case SB_LINEUP:
        if (topRow > 0) {
            ScrollTo(topRow - 1);
        }
        break;
    case SB_LINEDOWN: ScrollTo(isMoreBelow ? topRow + 1 : topRow); break;
    case SB_PAGEUP: ScrollTo(topRow > 0 ? topRow - visibleRows + 1 : topRow); break;
    case SB_PAGEDOWN:
        ScrollTo(isMoreBelow ? topRow + std::min(last, visibleRows - 1) : topRow);
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: ScrollTo(GetTrackPosition(position)); break;
    case SB_TOP: ScrollTo(0); break;
    case SB_BOTTOM: ScrollTo(last); break;
    default: break;
    }
}

void YCheckListBox::ScrollTo(int row)
{
    topRow = std::max(row, 0);  // a list that is all seen has no last page
    SetScrollPos(SB_VERT, topRow);
    Invalidate();
}

// The message carries 16 bits of the position; the bar knows the rest while its thumb is dragged.
int YCheckListBox::GetTrackPosition(UINT position)
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    const bool isKnown =
        GetScrollInfo(SB_VERT, &info, SIF_TRACKPOS) != FALSE && LOWORD(info.nTrackPos) == position;
    return isKnown ? info.nTrackPos : static_cast<int>(position);
}

// Painting

BOOL YCheckListBox::OnEraseBkgnd(CDC*)
{
    return TRUE;  // OnPaint clears what it paints, unseen
}

void YCheckListBox::OnPaint()
{
    CPaintDC dc(this);
    const CRect clip(dc.m_ps.rcPaint);
    CBitmap bitmap;  // outlives the device context that holds it
    CDC memory;
    if (clip.IsRectEmpty() || !memory.CreateCompatibleDC(&dc) ||
        !bitmap.CreateCompatibleBitmap(&dc, clip.Width(), clip.Height())) {
        Draw(dc, clip);
        return;
    }
    const SavedContext saved(memory);
    memory.SelectObject(&bitmap);
    memory.SetViewportOrg(-clip.left, -clip.top);
    Draw(memory, clip);
    dc.BitBlt(clip.left, clip.top, clip.Width(), clip.Height(), &memory, clip.left, clip.top,
              SRCCOPY);
}

void YCheckListBox::Draw(CDC& dc, const CRect& clip)
{
    const SavedContext saved(dc);
    dc.FillSolidRect(&clip, ::GetSysColor(COLOR_WINDOW));
    dc.SelectObject(GetDialogFont());
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(::GetSysColor(readOnly ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT));
    const CRect textColumn = FindTextColumn();
    const int first = std::max(topRow + static_cast<int>(clip.top) / rowHeight, 0);
    const int end =
        std::min(topRow + static_cast<int>(clip.bottom - 1) / rowHeight + 1, GetCount());
    for (int row = first; row < end; ++row) {
        DrawRow(dc, row, textColumn);
    }
}

void YCheckListBox::DrawRow(CDC& dc, int row, const CRect& textColumn)
{
    const Item& item = rows[static_cast<unsigned>(row)];
    CRect place = GetRowRect(row);
    place.left = textColumn.left;
    place.right = textColumn.right;
    dc.DrawText(item.text.c_str(), static_cast<int>(item.text.GetLength()), &place,
                DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    int column = 0;
    for (const int state : item.states) {
        CRect box = GetBoxRect({row, column++});
        dc.DrawFrameControl(&box, DFC_BUTTON,
                            DFCS_BUTTONCHECK | (state > 0 ? DFCS_CHECKED : 0U) |
                                (readOnly ? DFCS_INACTIVE : 0U));
    }
}

// The widest space between the boxes or beside them, less a margin: the texts of all rows begin in
// one line, and no box hides them.
CRect YCheckListBox::FindTextColumn() const
{
    CRect client;
    GetClientRect(&client);
    std::vector<int> lefts(checkColumns.begin(), checkColumns.end());
    std::sort(lefts.begin(), lefts.end());
    lefts.push_back(client.right);
    CRect widest;
    int left = 0;
    for (const int next : lefts) {
        const int right = std::min(next, static_cast<int>(client.right));
        if (right - left > widest.Width()) {
            widest = CRect(left, client.top, right, client.bottom);
        }
        left = std::max(left, next + GetCheckWidth());
    }
    const int margin = rowHeight / 4;
    widest.DeflateRect(std::min(margin, widest.Width() / 2), 0);
    return widest;
}
