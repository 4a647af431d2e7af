#include "controls/YListCtrl.h"

#include "YDpi.h"
#include "controls/IListCtrlCustomDrawSink.h"
#include "controls/IListCtrlFilterHelper.h"
#include "controls/YDialogListCtrlButtonHelper.h"
#include "controls/YListCtrlScopes.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>

IMPLEMENT_DYNAMIC(YListCtrl, CBCGPListCtrl)

BEGIN_MESSAGE_MAP(YListCtrl, CBCGPListCtrl)
    ON_WM_DESTROY()
    ON_WM_ENABLE()
    ON_WM_TIMER()
    ON_NOTIFY_REFLECT_EX(LVN_COLUMNCLICK, &YListCtrl::OnColumnClick)
    ON_NOTIFY_REFLECT_EX(LVN_ITEMCHANGING, &YListCtrl::OnItemChange)
    ON_NOTIFY_REFLECT_EX(LVN_ITEMCHANGED, &YListCtrl::OnItemChange)
    ON_NOTIFY_REFLECT(NM_CUSTOMDRAW, &YListCtrl::OnCustomDraw)
END_MESSAGE_MAP()

namespace {

constexpr int takesTheRest = -1;  // a width in a table

// What the columns before and after the one at index say of their widths, whatever the resolution:
// at 144 DPI the last column gets more than is left, and the list can be scrolled sideways.
int SumOfOthers(const std::vector<ColumnInfoExact>& columns, std::size_t index)
{
    int sum = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        sum += i == index ? 0 : columns[i].width;
    }
    return sum;
}

}  // namespace

YListCtrl::~YListCtrl()
{
    CWnd::DestroyWindow();
}

void YListCtrl::Init(const std::vector<ColumnInfoExact>& columns, unsigned long extendedStyle)
{
    InitStyle(extendedStyle);
    CClientDC dc(this);
    std::size_t last = columns.size();  // of the columns that take the rest, the one that gets it
    defaultWidths.clear();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const int width = columns[i].width;
        defaultWidths.push_back(adjustForDpi ? AdjustForDpiX(&dc, width) : width);
        last = width == takesTheRest ? i : last;
    }
    if (last < columns.size()) {
        defaultWidths[last] = std::max(GetAvailableWidth(true) - SumOfOthers(columns, last), 0);
    }
    InitColumns(columns);
}

void YListCtrl::Init(const std::vector<ColumnInfoRatio>& columns, unsigned long extendedStyle,
                     bool reserveScrollBar)
{
    InitStyle(extendedStyle);
    const int available = GetAvailableWidth(reserveScrollBar);
    defaultWidths.clear();
    for (const ColumnInfoRatio& column : columns) {
        defaultWidths.push_back(static_cast<int>(std::floor(available * column.ratio)));
    }
    InitColumns(columns);
}

void YListCtrl::InitStyle(unsigned long extendedStyle)
{
    ModifyStyle(0, LVS_SHOWSELALWAYS);
    SetExtendedStyle(GetExtendedStyle() | extraExtendedStyles | extendedStyle);
    singleSelection = (GetStyle() & LVS_SINGLESEL) != 0;
}

int YListCtrl::GetAvailableWidth(bool reserveScrollBar) const
{
    CRect client;
    GetClientRect(&client);
    return client.Width() - (reserveScrollBar ? ::GetSystemMetrics(SM_CXVSCROLL) : 0);
}

template <class Column>
void YListCtrl::InitColumns(const std::vector<Column>& columns)
{
    std::vector<int> widths;
    GetSavedColumnWidths(widths);
    if (widths.size() != columns.size()) {
        widths = defaultWidths;
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        LVCOLUMN column{};
        column.mask = LVCF_TEXT | LVCF_FMT | LVCF_WIDTH | LVCF_SUBITEM;
        column.pszText = const_cast<wchar_t*>(columns[i].title.c_str());
        column.fmt = columns[i].format;
        column.cx = widths[i];
        column.iSubItem = static_cast<int>(i);
        InsertColumn(column.iSubItem, &column);
    }
    ShowSortArrow();
}

void YListCtrl::SaveGuiSettings()
{
    std::vector<int> widths;
    const int count = GetHeaderCtrl().GetItemCount();
    widths.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        widths.push_back(GetColumnWidth(i));
    }
    // Widths that are back to what Init makes do not replace what was saved: they may be so only
    // because another, narrower screen cannot show more.
    if (!std::equal(widths.begin(), widths.end(), defaultWidths.begin(), defaultWidths.end())) {
        SaveColumnWidths(widths);
    }
}

int YListCtrl::AddItem(unsigned long data)
{
    return AddItemAt(-1, data, noImage);
}

int YListCtrl::AddItem(unsigned long data, int image)
{
    return AddItemAt(-1, data, image);
}

int YListCtrl::AddItem(const std::vector<YUnicodeString>& columns, int image)
{
    return AddItemAt(-1, columns, image);
}

int YListCtrl::AddItemAt(int index, unsigned long data, int image)
{
    if (filterHelper && !appliedFilter.IsEmpty() &&
        !filterHelper->ItemMatchesFilter(data, appliedFilter)) {
        return -1;
    }
    return AddItemPrivate(GetColumnsOf(data), image, index, data);
}

int YListCtrl::AddItemAt(int index, const std::vector<YUnicodeString>& columns, int image)
{
    return AddItemPrivate(columns, image, index, 0);
}

int YListCtrl::AddItemPrivate(const std::vector<YUnicodeString>& columns, int image, int index,
                              unsigned long data)
{
    LVITEM item{};
    item.mask = LVIF_TEXT | (data != 0 ? LVIF_PARAM : 0) | (image != noImage ? LVIF_IMAGE : 0);
    item.iItem = index < 0 ? INT_MAX : index;  // past the end is at the end
    item.pszText = const_cast<wchar_t*>(columns.empty() ? L"" : columns[0].c_str());
    item.lParam = static_cast<LPARAM>(data);
    item.iImage = image;
    const int row = InsertItem(&item);
    if (row < 0) {
        return -1;
    }
    for (std::size_t i = 1; i < columns.size(); ++i) {
        SetItemText(row, static_cast<int>(i), columns[i].c_str());
    }
    HighlightAdded(row);
    OnAddItem(row);
    ReselectSaved(row, data);
    return row;
}

void YListCtrl::RemoveAll()
{
    const DrawingOff drawingOff(*this);
    const int count = GetItemCount();
    for (int i = 0; i < count; ++i) {
        ReleaseData(i);
    }
    DeleteAllItems();
    disabledSelection.clear();
}

void YListCtrl::SetItemData(int item, unsigned long data)
{
    SetItemDataPrivate(item, data);
}

int YListCtrl::GetItemCountPrivate() const
{
    return GetItemCount();
}

void YListCtrl::SetItemTextPrivate(int item, int column, const wchar_t* text)
{
    SetItemText(item, column, text);
}

unsigned long YListCtrl::GetItemDataPrivate(int item) const
{
    return GetItemData(item);
}

void YListCtrl::SetItemDataPrivate(int item, unsigned long data)
{
    CBCGPListCtrl::SetItemData(item, data);
}

void YListCtrl::DeleteItemPrivate(int item)
{
    if (DeleteItem(item)) {
        ForgetDisabled(item);
    }
}

void YListCtrl::UpdateItemDrawing(int item)
{
    RedrawItems(item, item);
}

void YListCtrl::DoItemDblClick(NMHDR* header, LRESULT* result)
{
    *result = 0;
    const int row = reinterpret_cast<const NMITEMACTIVATE*>(header)->iItem;
    const CWnd* const edit = GetButtonHelper() ? GetButtonHelper()->GetEditButton() : nullptr;
    if (row >= 0 && edit && edit->IsWindowEnabled()) {
        edit->GetParent()->SendMessage(
            WM_COMMAND, MAKEWPARAM(static_cast<WORD>(edit->GetDlgCtrlID()), BN_CLICKED),
            reinterpret_cast<LPARAM>(edit->m_hWnd));
    }
}

bool YListCtrl::DoMoveSelected(MoveDirection direction)
{
    const TrueSelection selection(*this);
    const int row = GetCurrentItemIndex();
    const int other = direction == MoveUp ? row - 1 : row + 1;
    if (row < 0 || other < 0 || other >= GetItemCount()) {
        return false;
    }
    {
        const Rearrangement rearrangement(*this);
        ExchangeRows(row, other);
    }
    SelectItem(other, false);
    return true;
}

void YListCtrl::ExchangeRows(int row, int other)
{
    const auto exchangeTexts = [&](int column) {
        const CString text = GetItemText(row, column);
        SetItemText(row, column, GetItemText(other, column));
        SetItemText(other, column, text);
    };
    LVITEM first{};
    first.mask = LVIF_IMAGE | LVIF_INDENT | LVIF_PARAM | LVIF_STATE;
    first.stateMask = LVIS_OVERLAYMASK | LVIS_STATEIMAGEMASK;  // the selection stays where it is
    LVITEM second = first;
    first.iItem = row;
    second.iItem = other;
    GetItem(&first);
    GetItem(&second);
    std::swap(first.iItem, second.iItem);
    SetItem(&first);
    SetItem(&second);
    if (itemHelper) {
        UpdateItem(row);
        UpdateItem(other);
        return;
    }
    const int columns = std::max(GetHeaderCtrl().GetItemCount(), 1);
    for (int i = 0; i < columns; ++i) {
        exchangeTexts(i);
    }
}

void YListCtrl::DisableDraw()
{
    if (--redrawCount == 0) {
        SetRedraw(FALSE);
    }
}

void YListCtrl::EnableDraw()
{
    if (++redrawCount == 1) {
        SetRedraw(TRUE);
    }
}

YDialogListCtrlButtonHelper* YListCtrl::CreateDefaultButtonHelper()
{
    return new YDialogListCtrlButtonHelper(this);
}

void YListCtrl::OnDestroy()
{
    destroying = true;
    StopFilterTimer();
    const int count = GetItemCount();
    for (int i = 0; i < count; ++i) {
        ReleaseData(i);
    }
    CBCGPListCtrl::OnDestroy();
}

void YListCtrl::OnCustomDraw(NMHDR* header, LRESULT* result)
{
    if (customDrawSink) {
        customDrawSink->OnCustomDraw(header, result);
    } else {
        CBCGPListCtrl::OnCustomDraw(header, result);
    }
}
