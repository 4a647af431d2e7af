#include "Dpi.h"

#include <algorithm>
#include <new>

IMPLEMENT_DYNAMIC(CCheckListBox, CListBox)

BEGIN_MESSAGE_MAP(CCheckListBox, CListBox)
    ON_WM_CREATE()
    ON_MESSAGE(LB_ADDSTRING, &CCheckListBox::OnAddString)
    ON_MESSAGE(LB_INSERTSTRING, &CCheckListBox::OnAddString)
    ON_MESSAGE(LB_DELETESTRING, &CCheckListBox::OnDeleteString)
    ON_MESSAGE(LB_RESETCONTENT, &CCheckListBox::OnResetContent)
    ON_MESSAGE(WM_SETFONT, &CCheckListBox::OnSetFont)
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONDBLCLK()
    ON_WM_KEYDOWN()
END_MESSAGE_MAP()

namespace {

// Pixels at 96 DPI.
constexpr int boxSize = 13;
constexpr int margin = 2;  // round the box, and between box and text

}  // namespace

// A control out of a dialog's template; one that is just being created has no lines to speak of,
// and OnCreate sees to the rest.
void CCheckListBox::PreSubclassWindow()
{
    CListBox::PreSubclassWindow();
    lines.assign(static_cast<std::size_t>(std::max(GetCount(), 0)), {});
    FitLineHeight();
}

int CCheckListBox::OnCreate(LPCREATESTRUCT lpcs)
{
    const int answer = CListBox::OnCreate(lpcs);
    FitLineHeight();
    return answer;
}

LRESULT CCheckListBox::OnSetFont(WPARAM, LPARAM)
{
    const LRESULT answer = Default();
    FitLineHeight();
    return answer;
}

void CCheckListBox::FitLineHeight()
{
    CClientDC dc(this);
    CFont* const font = GetFont();
    CFont* const before = font != nullptr ? dc.SelectObject(font) : nullptr;
    TEXTMETRIC metrics{};
    ::GetTextMetricsW(dc.GetSafeHdc(), &metrics);
    if (before != nullptr) {
        dc.SelectObject(before);
    }
    const int box = ScaleToScreen(boxSize) + 2 * ScaleToScreen(1);
    SetItemHeight(0, static_cast<UINT>(std::max(box, static_cast<int>(metrics.tmHeight))));
}

// The system says where the line went: its order may be sorted.
LRESULT CCheckListBox::OnAddString(WPARAM, LPARAM)
{
    try {
        lines.reserve(lines.size() + 1);  // nothing can fail once the line is there
    } catch (const std::bad_alloc&) {
        return LB_ERRSPACE;
    }
    const LRESULT index = Default();
    if (index >= 0) {
        lines.insert(lines.begin() + index, Line());
    }
    return index;
}

LRESULT CCheckListBox::OnDeleteString(WPARAM wParam, LPARAM)
{
    const LRESULT left = Default();
    if (left >= 0) {
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(wParam));
    }
    return left;
}

LRESULT CCheckListBox::OnResetContent(WPARAM, LPARAM)
{
    lines.clear();
    return Default();
}

const CCheckListBox::Line* CCheckListBox::FindLine(int index) const
{
    const bool exists = index >= 0 && static_cast<std::size_t>(index) < lines.size();
    return exists ? &lines[static_cast<std::size_t>(index)] : nullptr;
}

int CCheckListBox::GetCheck(int nIndex) const
{
    const Line* const line = FindLine(nIndex);
    return line != nullptr ? line->check : BST_UNCHECKED;
}

void CCheckListBox::SetCheck(int nIndex, int nCheck)
{
    if (FindLine(nIndex) != nullptr) {
        lines[static_cast<std::size_t>(nIndex)].check = nCheck;
        InvalidateLine(nIndex);
    }
}

BOOL CCheckListBox::IsEnabled(int nIndex) const
{
    const Line* const line = FindLine(nIndex);
    return line != nullptr && line->isEnabled;
}

void CCheckListBox::Enable(int nIndex, BOOL bEnabled)
{
    if (FindLine(nIndex) != nullptr) {
        lines[static_cast<std::size_t>(nIndex)].isEnabled = bEnabled;
        InvalidateLine(nIndex);
    }
}

void CCheckListBox::InvalidateLine(int index)
{
    CRect rect;
    GetItemRect(index, &rect);
    InvalidateRect(&rect);
}

CRect CCheckListBox::OnGetCheckPosition(CRect rectItem, CRect rectCheckBox)
{
    const int top = rectItem.top + (rectItem.Height() - rectCheckBox.Height()) / 2;
    return CRect(CPoint(rectItem.left + ScaleToScreen(margin), top), rectCheckBox.Size());
}

CRect CCheckListBox::GetBox(int index)
{
    CRect line;
    GetItemRect(index, &line);
    const int size = ScaleToScreen(boxSize);
    return OnGetCheckPosition(line, CRect(0, 0, size, size));
}

// The parent may do anything to the list, or end it.
void CCheckListBox::Toggle(int index)
{
    if (!IsEnabled(index)) {
        return;
    }
    SetCheck(index, GetCheck(index) == BST_CHECKED ? BST_UNCHECKED : BST_CHECKED);
    GetParent()->SendMessage(WM_COMMAND,
                             MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID()), CLBN_CHKCHANGE),
                             reinterpret_cast<LPARAM>(m_hWnd));
}

void CCheckListBox::OnLButtonDown(UINT nFlags, CPoint point)
{
    const HWND handle = m_hWnd;
    CListBox::OnLButtonDown(nFlags, point);  // selects, of which the parent hears
    if (FromHandlePermanent(handle) != this) {
        return;
    }
    BOOL isOutside = FALSE;
    const int index = static_cast<int>(ItemFromPoint(point, isOutside));
    if (!isOutside && GetBox(index).PtInRect(point)) {
        Toggle(index);
    }
}

// In the box: the second of two fast clicks, each of which counts.
void CCheckListBox::OnLButtonDblClk(UINT, CPoint point)
{
    BOOL isOutside = FALSE;
    const int index = static_cast<int>(ItemFromPoint(point, isOutside));
    const HWND handle = m_hWnd;
    Default();
    CRect line;
    if (FromHandlePermanent(handle) == this && GetItemRect(index, &line) != LB_ERR &&
        line.PtInRect(point)) {
        Toggle(index);
    }
}

void CCheckListBox::OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags)
{
    if (nChar == VK_SPACE) {  // also where nothing is selected yet
        Toggle(GetCaretIndex());
    } else {
        CListBox::OnKeyDown(nChar, nRepCnt, nFlags);
    }
}

COLORREF CCheckListBox::TextColor(const Line& line, bool isSelected) const
{
    if (isSelected) {
        return ::GetSysColor(COLOR_HIGHLIGHTTEXT);  // grey would not be seen there
    }
    const bool isGrey = !line.isEnabled || !IsWindowEnabled();
    return ::GetSysColor(isGrey ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT);
}

void CCheckListBox::DrawBox(CDC& dc, CRect box, const Line& line) const
{
    UINT state = DFCS_BUTTONCHECK | DFCS_FLAT;
    if (line.check == BST_CHECKED) {
        state |= DFCS_CHECKED;
    }
    if (!line.isEnabled || !IsWindowEnabled()) {
        state |= DFCS_INACTIVE;
    }
    ::DrawFrameControl(dc.GetSafeHdc(), &box, DFC_BUTTON, state);
}

// The text and what is behind it.
void CCheckListBox::DrawLabel(CDC& dc, CRect rect, int index, bool isSelected) const
{
    ::FillRect(dc, &rect, ::GetSysColorBrush(isSelected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    CString text;
    GetText(index, text);
    const COLORREF colorBefore = dc.SetTextColor(TextColor(*FindLine(index), isSelected));
    const int modeBefore = dc.SetBkMode(TRANSPARENT);
    rect.left += ScaleToScreen(margin);
    ::DrawTextW(dc, text, text.GetLength(), &rect,
                DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    dc.SetBkMode(modeBefore);
    dc.SetTextColor(colorBefore);
}

void CCheckListBox::DrawItem(LPDRAWITEMSTRUCT lpDrawItemStruct)
{
    CDC& dc = *CDC::FromHandle(lpDrawItemStruct->hDC);
    CRect rect = lpDrawItemStruct->rcItem;
    const int index = static_cast<int>(lpDrawItemStruct->itemID);
    const UINT state = lpDrawItemStruct->itemState;
    if (const Line* const line = FindLine(index)) {  // an empty list asks for its focus only
        const CRect box = GetBox(index);
        ::FillRect(dc, &rect, ::GetSysColorBrush(COLOR_WINDOW));
        DrawBox(dc, box, *line);
        rect.left = box.right + ScaleToScreen(margin);
        DrawLabel(dc, rect, index, (state & ODS_SELECTED) != 0);
    }
    if ((state & (ODS_FOCUS | ODS_NOFOCUSRECT)) == ODS_FOCUS) {
        ::DrawFocusRect(dc, &rect);
    }
}
