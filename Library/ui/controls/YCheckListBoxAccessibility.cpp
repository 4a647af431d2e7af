// What the boxes say to screen readers. Their numbers go from 1, row by row.

#include "YAccessibleAnswer.h"
#include "YMessages.h"
#include "YReportMessageParams.h"
#include "controls/YCheckListBox.h"

#include <string>

// The window text is no name for anybody; a label beside the control is the host's.
HRESULT YCheckListBox::get_accName(VARIANT child, BSTR* name)
{
    if (YIsAccessibleSelf(child)) {
        return YAnswerText({}, name);
    }
    const Box box = ToBox(child);
    if (!box) {
        return E_INVALIDARG;
    }
    std::wstring text(rows[static_cast<unsigned>(box.row)].text);
    text += L", ";
    text += FindCaption(box.column);
    return YAnswerText(text, name);
}

HRESULT YCheckListBox::get_accChildCount(long* count)
{
    *count = 0;
    for (const Item& item : rows) {
        *count += static_cast<long>(item.states.GetSize());
    }
    return S_OK;
}

// The boxes are no objects: the window speaks for them.
HRESULT YCheckListBox::get_accChild(VARIANT child, IDispatch** object)
{
    *object = nullptr;
    return ToBox(child) ? S_FALSE : E_INVALIDARG;
}

HRESULT YCheckListBox::get_accRole(VARIANT child, VARIANT* role)
{
    if (YIsAccessibleSelf(child)) {
        return YAnswerNumber(ROLE_SYSTEM_GROUPING, role);
    }
    return ToBox(child) ? YAnswerNumber(ROLE_SYSTEM_CHECKBUTTON, role) : E_INVALIDARG;
}

HRESULT YCheckListBox::get_accState(VARIANT child, VARIANT* state)
{
    if (YIsAccessibleSelf(child)) {
        return CWnd::get_accState(child, state);
    }
    const Box box = ToBox(child);
    if (!box) {
        return E_INVALIDARG;
    }
    CRect seen;
    GetClientRect(&seen);
    const bool isSeen = seen.IntersectRect(seen, GetBoxRect(box)) != FALSE;
    return YAnswerNumber((GetCheckState(box.row, box.column) > 0 ? STATE_SYSTEM_CHECKED : 0) |
                             (IsBoxUnavailable() ? STATE_SYSTEM_UNAVAILABLE : 0) |
                             (isSeen ? 0 : STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN),
                         state);
}

HRESULT YCheckListBox::get_accDefaultAction(VARIANT child, BSTR* action)
{
    *action = nullptr;
    const Box box = ToBox(child);
    if (!box || IsBoxUnavailable()) {
        return DISP_E_MEMBERNOTFOUND;
    }
    const bool clears = GetCheckState(box.row, box.column) != 0;
    const YReportMessageParams text(clears ? MSG_UNCHECK_BOX : MSG_CHECK_BOX);
    return YAnswerText(text.GetTrimmedText(), action);
}

HRESULT YCheckListBox::accDoDefaultAction(VARIANT child)
{
    const Box box = ToBox(child);
    if (!box || IsBoxUnavailable()) {
        return DISP_E_MEMBERNOTFOUND;
    }
    Toggle(box);
    return S_OK;
}

HRESULT YCheckListBox::accLocation(long* left, long* top, long* width, long* height, VARIANT child)
{
    if (YIsAccessibleSelf(child)) {
        return CWnd::accLocation(left, top, width, height, child);
    }
    const Box box = ToBox(child);
    if (!box) {
        return E_INVALIDARG;
    }
    CRect place = GetBoxRect(box);
    ClientToScreen(&place);
    *left = place.left;
    *top = place.top;
    *width = place.Width();
    *height = place.Height();
    return S_OK;
}

HRESULT YCheckListBox::accHitTest(long x, long y, VARIANT* child)
{
    CPoint point(x, y);
    ScreenToClient(&point);
    CRect client;
    GetClientRect(&client);
    if (!client.PtInRect(point)) {
        *child = VARIANT{};
        return S_FALSE;
    }
    const Box box = FindBox(point);
    return YAnswerNumber(box ? ToChild(box) : CHILDID_SELF, child);
}

YCheckListBox::Box YCheckListBox::ToBox(const VARIANT& child) const
{
    long before = child.vt == VT_I4 ? child.lVal - 1 : -1;
    for (int row = 0; before >= 0 && row < GetCount(); ++row) {
        const long boxes = static_cast<long>(rows[static_cast<unsigned>(row)].states.GetSize());
        if (before < boxes) {
            return {row, static_cast<int>(before)};
        }
        before -= boxes;
    }
    return {};
}

long YCheckListBox::ToChild(const Box& box) const
{
    long child = box.column + 1;
    for (int row = 0; row < box.row; ++row) {
        child += static_cast<long>(rows[static_cast<unsigned>(row)].states.GetSize());
    }
    return child;
}

// The text of the dialog that stands over the column, nearest to the list; its number where there is
// none.
std::wstring YCheckListBox::FindCaption(int column) const
{
    CRect list;
    GetWindowRect(&list);
    CPoint boxes(checkColumns[static_cast<unsigned>(column)], 0);
    ClientToScreen(&boxes);
    CString caption;
    LONG nearest = LONG_MIN;
    for (HWND control = ::GetTopWindow(::GetParent(m_hWnd)); control;
         control = ::GetWindow(control, GW_HWNDNEXT)) {
        CRect place;
        ::GetWindowRect(control, &place);
        const bool isAbove = place.left <= boxes.x && boxes.x < place.right &&
                             place.bottom <= list.top && place.bottom > nearest;
        CString text;
        if (isAbove && ::IsWindowVisible(control)) {
            CWnd::FromHandle(control)->GetWindowText(text);
        }
        if (!text.IsEmpty()) {
            caption = text;
            nearest = place.bottom;
        }
    }
    return caption.IsEmpty() ? std::to_wstring(column + 1) : caption.GetString();
}

void YCheckListBox::AnnounceState(const Box& box) const
{
    if (m_hWnd) {
        ::NotifyWinEvent(EVENT_OBJECT_STATECHANGE, m_hWnd, OBJID_CLIENT, ToChild(box));
    }
}
