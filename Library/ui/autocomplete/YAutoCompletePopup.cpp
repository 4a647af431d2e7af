#include "autocomplete/PopupMessages.h"
#include "autocomplete/WindowGuard.h"
#include "autocomplete/YAutoComplete.h"

#include <windowsx.h>

#include <algorithm>

namespace {

constexpr wchar_t popupClass[] = L"YAutoCompleteListViewParentWindowClass";
constexpr wchar_t listProperty[] = L"YAutoCompleteListViewObjectPointerProperty";

// The list is far wider than the pop-up: its own scroll bar lies beyond the right edge, and the one
// that the user sees is beside the size box.
int GetListWidth()
{
    return ::GetSystemMetrics(SM_CXMAXTRACK);
}

int GetBarWidth()
{
    return ::GetSystemMetrics(SM_CXVSCROLL);
}

HWND CreateControl(HWND parent, const wchar_t* className, DWORD style)
{
    return ::CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent,
                             nullptr, ::GetModuleHandleW(nullptr), nullptr);
}

bool IsButtonDown(UINT message)
{
    return message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN || message == WM_MBUTTONDOWN ||
           message == WM_XBUTTONDOWN;
}

bool IsDoubleClick(UINT message)
{
    return message == WM_LBUTTONDBLCLK || message == WM_RBUTTONDBLCLK ||
           message == WM_MBUTTONDBLCLK || message == WM_XBUTTONDBLCLK;
}

// The block of memory that the list carries: it tells the list's procedure whose it is.
YAutoComplete** GetOwnerBlock(HWND list)
{
    return static_cast<YAutoComplete**>(::GetPropW(list, listProperty));
}

bool HasScrollInfo(HWND bar, const SCROLLINFO& wanted)
{
    SCROLLINFO has{};
    has.cbSize = sizeof has;
    has.fMask = SIF_ALL;
    return ::GetScrollInfo(bar, SB_CTL, &has) && has.nMin == wanted.nMin &&
           has.nMax == wanted.nMax && has.nPage == wanted.nPage && has.nPos == wanted.nPos;
}

// Whether its parent is shown or not.
bool IsMadeVisible(HWND window)
{
    return (::GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE) != 0;
}

// size: null for any.
bool IsAt(HWND window, POINT corner, const SIZE* size)
{
    RECT place{};
    ::GetWindowRect(window, &place);
    return place.left == corner.x && place.top == corner.y &&
           (size == nullptr ||
            (place.right - place.left == size->cx && place.bottom - place.top == size->cy));
}

}  // namespace

// The class lives as long as the library: it belongs to the program, whose end would not remove it
// in time if the library were unloaded before.
class YAutoComplete::ClassRegistration
{
public:
    ClassRegistration()
    {
        WNDCLASSW description{};
        description.style = CS_DROPSHADOW | CS_HREDRAW | CS_VREDRAW;
        description.lpfnWndProc = &PopupProcedure;
        description.hInstance = ::GetModuleHandleW(nullptr);
        description.lpszClassName = popupClass;
        m_bIsListViewParentWindowClassRegistered = ::RegisterClassW(&description) != 0;
    }
    ~ClassRegistration()
    {
        if (m_bIsListViewParentWindowClassRegistered) {
            ::UnregisterClassW(popupClass, ::GetModuleHandleW(nullptr));
        }
    }
    ClassRegistration(const ClassRegistration&) = delete;
    ClassRegistration& operator=(const ClassRegistration&) = delete;

    static const ClassRegistration once;
};

bool YAutoComplete::m_bIsListViewParentWindowClassRegistered = false;
const YAutoComplete::ClassRegistration YAutoComplete::ClassRegistration::once;

// While it lives, the list or the size box is handling a press, and takes the focus on some systems:
// that loss does not count, and the edit gets the focus back at the end.
class YAutoComplete::KeepingFocus
{
public:
    explicit KeepingFocus(YAutoComplete& keeper) : object(keeper)
    {
        object.keepsFocus = object.editHasFocus;
    }
    ~KeepingFocus() { object.GiveFocusBack(); }
    KeepingFocus(const KeepingFocus&) = delete;
    KeepingFocus& operator=(const KeepingFocus&) = delete;

private:
    YAutoComplete& object;
};

void YAutoComplete::GiveFocusBack()
{
    if (keepsFocus && edit != nullptr && ::GetFocus() != edit) {
        ::SetFocus(edit);
    }
    keepsFocus = false;
}

void YAutoComplete::CreatePopupOf(YAutoComplete& object)
{
    constexpr DWORD extendedStyle =
        WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW | WS_EX_TOPMOST | WS_EX_NOPARENTNOTIFY;
    constexpr DWORD style = WS_POPUP | WS_BORDER | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
    ::CreateWindowExW(extendedStyle, popupClass, L"", style, 0, 0, 0, 0, nullptr, nullptr,
                      ::GetModuleHandleW(nullptr), &object);
    if (object.sizeBox != nullptr) {
        ::SetWindowSubclass(object.sizeBox,
                            &SubclassProcedure<YAutoComplete, &YAutoComplete::OnSizeBoxMessage>, 0,
                            reinterpret_cast<DWORD_PTR>(&object));
    }
}

// The window's reference is taken with WM_NCCREATE, where its user data begins, and released with
// WM_NCDESTROY; a message before or after has no object to go to.
LRESULT CALLBACK YAutoComplete::PopupProcedure(HWND window, UINT message, WPARAM wParam,
                                               LPARAM lParam) noexcept
{
    if (message == WM_NCCREATE) {
        const auto* const create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* const created = static_cast<YAutoComplete*>(create->lpCreateParams);
        created->AddRef();
        ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
    }
    const LONG_PTR object = ::GetWindowLongPtrW(window, GWLP_USERDATA);
    if (object == 0) {
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
    return HandleGuarded<YAutoComplete>(static_cast<DWORD_PTR>(object),
                                        &YAutoComplete::OnPopupMessage, window, message, wParam,
                                        lParam);
}

LRESULT CALLBACK YAutoComplete::ListProcedure(HWND window, UINT message, WPARAM wParam,
                                              LPARAM lParam) noexcept
{
    YAutoComplete** const owner = GetOwnerBlock(window);
    if (owner == nullptr) {
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
    return HandleGuarded<YAutoComplete>(reinterpret_cast<DWORD_PTR>(*owner),
                                        &YAutoComplete::OnListMessage, window, message, wParam,
                                        lParam);
}

LRESULT YAutoComplete::OnPopupMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_NCCREATE:
        popup = window;
        return CreateControls(window) ? ::DefWindowProcW(window, message, wParam, lParam) : FALSE;
    case WM_NCDESTROY: OnPopupGone(); return ::DefWindowProcW(window, message, wParam, lParam);
    case WM_SIZE: LayOut(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)); return 0;
    case WM_SIZING: userSized = true; break;
    case WM_VSCROLL: return OnScroll(wParam, lParam);
    case WM_NOTIFY: return OnListNotification(*reinterpret_cast<const NMHDR*>(lParam), lParam);
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;  // the edit keeps the focus, its window the activation
    case WM_SETCURSOR:
        ::SetCursor(::LoadCursorW(nullptr, reinterpret_cast<HWND>(wParam) == sizeBox ? IDC_SIZENWSE
                                                                                     : IDC_ARROW));
        return TRUE;
    case WM_GETMINMAXINFO: SetMinMaxInfo(*reinterpret_cast<MINMAXINFO*>(lParam)); return 0;
    case newListMessage: ShowNewList(); return 0;
    case showMessage: Show(); return 0;
    case hideMessage: Hide(); return 0;
    default: break;
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
}

LRESULT YAutoComplete::OnListMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (IsButtonDown(message) || IsDoubleClick(message)) {
        return PressOnList(window, message, wParam, lParam);
    }
    switch (message) {
    case WM_MOUSEMOVE: OnPointerMove({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}); break;
    case LVM_APPROXIMATEVIEWRECT: return EstimateListSize(window, wParam, lParam);
    case WM_NCDESTROY: OnListGone(); break;
    default: break;
    }
    return ::CallWindowProcW(previousListProcedure, window, message, wParam, lParam);
}

// Not every system's size box sizes its window; this way they all do.
LRESULT YAutoComplete::OnSizeBoxMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (IsDoubleClick(message)) {
        return 0;
    }
    if (message == WM_NCDESTROY) {
        ::RemoveWindowSubclass(
            window, &SubclassProcedure<YAutoComplete, &YAutoComplete::OnSizeBoxMessage>, 0);
    }
    if (message == WM_LBUTTONDOWN) {
        const KeepingFocus keeping(*this);
        POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        ::ClientToScreen(window, &point);
        ::SendMessageW(popup, WM_SYSCOMMAND, SC_SIZE | WMSZ_BOTTOMRIGHT,
                       MAKELPARAM(point.x, point.y));
        return 0;
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
}

bool YAutoComplete::CreateControls(HWND window)
{
    auto** const owner = static_cast<YAutoComplete**>(::GlobalAlloc(GPTR, sizeof(void*)));
    if (owner == nullptr) {
        return false;
    }
    *owner = this;
    listView = CreateControl(window, WC_LISTVIEWW,
                             WS_CLIPSIBLINGS | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS |
                                 LVS_OWNERDATA | LVS_NOCOLUMNHEADER);
    if (listView == nullptr || !::SetPropW(listView, listProperty, owner)) {
        ::GlobalFree(owner);
        return false;
    }
    previousListProcedure = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(listView, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ListProcedure)));
    CallList(LVM_SETHOTCURSOR, 0, reinterpret_cast<LPARAM>(::LoadCursorW(nullptr, IDC_ARROW)));
    CallList(LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
             LVS_EX_TRACKSELECT | LVS_EX_FULLROWSELECT | LVS_EX_ONECLICKACTIVATE |
                 LVS_EX_DOUBLEBUFFER);
    LVCOLUMNW column{};
    column.mask = LVCF_FMT;
    column.fmt = LVCFMT_LEFT;
    CallList(LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    CallList(LVM_SETCOLUMNWIDTH, 0,
             static_cast<short>(static_cast<unsigned short>(GetListWidth() - GetBarWidth())));
    scrollBar = CreateControl(window, L"SCROLLBAR", SBS_VERT | SBS_RIGHTALIGN);
    sizeBox = CreateControl(window, L"SCROLLBAR", SBS_SIZEBOX | SBS_SIZEBOXBOTTOMRIGHTALIGN);
    return true;
}

void YAutoComplete::OnPopupGone()
{
    StopWatching();
    selectedIndex = npos;
    const HWND window = popup.exchange(nullptr);
    scrollBar = sizeBox = nullptr;
    ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    Release();
}

void YAutoComplete::OnListGone()
{
    ::GlobalFree(::RemovePropW(listView, listProperty));
    listView = nullptr;
}

void YAutoComplete::LayOut(int width, int height)
{
    const int bar = GetBarWidth();
    ::SetWindowPos(listView, HWND_BOTTOM, 0, 0, GetListWidth(), height, SWP_NOACTIVATE);
    ::MoveWindow(scrollBar, width - bar, 0, bar, height - bar, TRUE);
    ::MoveWindow(sizeBox, width - bar, height - bar, bar, bar, TRUE);
    UpdateScrollBar();
}

void YAutoComplete::UpdateScrollBar()
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    const bool isNeeded = (::GetWindowLongW(listView, GWL_STYLE) & WS_VSCROLL) != 0 &&
                          ::GetScrollInfo(listView, SB_VERT, &info) && info.nMin != info.nMax;
    // Either would draw the bar again, which takes as long as ten rows.
    if (isNeeded && !HasScrollInfo(scrollBar, info)) {
        ::SetScrollInfo(scrollBar, SB_CTL, &info, TRUE);
    }
    if (isNeeded != IsMadeVisible(scrollBar)) {
        ::ShowWindow(scrollBar, isNeeded ? SW_SHOWNA : SW_HIDE);
    }
}

LRESULT YAutoComplete::OnScroll(WPARAM wParam, LPARAM lParam)
{
    const UINT code = LOWORD(wParam);
    if (code != SB_THUMBTRACK && code != SB_THUMBPOSITION) {
        CallList(WM_VSCROLL, wParam);
        UpdateScrollBar();
        return 0;
    }
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    if (!::GetScrollInfo(scrollBar, SB_CTL, &info)) {
        UpdateScrollBar();
        return ::DefWindowProcW(popup, WM_VSCROLL, wParam, lParam);
    }
    const bool isDownwards = info.nTrackPos > info.nPos;
    const int target =
        isDownwards ? info.nTrackPos - 1 + static_cast<int>(info.nPage) : info.nTrackPos;
    CallList(LVM_ENSUREVISIBLE, static_cast<WPARAM>(target), FALSE);
    UpdateScrollBar();
    return 0;
}

void YAutoComplete::SetMinMaxInfo(MINMAXINFO& info) const
{
    RECT place{};
    ::GetWindowRect(edit, &place);
    info.ptMaxPosition = {place.left, place.bottom};
    info.ptMinTrackSize = {GetBarWidth(), GetBarWidth()};
}

LRESULT YAutoComplete::OnListNotification(const NMHDR& header, LPARAM lParam)
{
    if (header.hwndFrom != listView) {
        return 0;
    }
    switch (header.code) {
    case LVN_HOTTRACK: OnItemTracked(reinterpret_cast<const NMLISTVIEW*>(lParam)->iItem); return 0;
    case NM_HOVER:
        return 1;  // no selection, and no focus, by resting on a row: some systems' lists do that
    case NM_CLICK: OnItemClicked(reinterpret_cast<const NMITEMACTIVATE*>(lParam)->iItem); return 0;
    case NM_CUSTOMDRAW: return OnCustomDraw(*reinterpret_cast<const NMCUSTOMDRAW*>(lParam));
    case LVN_GETDISPINFOW: GetDisplayInfo(reinterpret_cast<NMLVDISPINFOW*>(lParam)->item); return 0;
    default: return 0;
    }
}

void YAutoComplete::OnItemTracked(int item)
{
    const auto index = static_cast<unsigned>(item);  // -1, beside every row, is past the end
    if (index != selectedIndex) {
        SelectItem(index, false, false);
    }
}

// Not every system's list tells of the row under the pointer. A pointer that has not moved since
// the list came up under it chooses nothing.
void YAutoComplete::OnPointerMove(POINT point)
{
    POINT onScreen = point;
    ::ClientToScreen(listView, &onScreen);
    if (onScreen.x == restingPointer.x && onScreen.y == restingPointer.y) {
        return;
    }
    restingPointer = {MAXLONG, MAXLONG};  // nowhere: it rests no longer
    LVHITTESTINFO hit{};
    hit.pt = point;
    OnItemTracked(static_cast<int>(CallList(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit))));
}

void YAutoComplete::OnItemClicked(int item)
{
    const auto index = static_cast<unsigned>(item);
    if (index < GetItemCount()) {
        // As it was when it was highlighted: another list may be on its way to the screen.
        AcceptText(index == selectedIndex ? selectedText : GetCompletionAtIndex(index), true);
    }
}

LRESULT YAutoComplete::OnCustomDraw(const NMCUSTOMDRAW& drawing)
{
    switch (drawing.dwDrawStage) {
    case CDDS_PREPAINT:
        editMargin = LOWORD(::SendMessageW(edit, EM_GETMARGINS, 0, 0));
        return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
        DrawItem(drawing.hdc, static_cast<int>(drawing.dwItemSpec));
        return CDRF_SKIPDEFAULT;
    default: return CDRF_DODEFAULT;
    }
}

// The text begins where it does in the edit.
void YAutoComplete::DrawItem(HDC dc, int item)
{
    const auto row = static_cast<WPARAM>(item);
    RECT bounds{};
    bounds.left = LVIR_BOUNDS;
    CallList(LVM_GETITEMRECT, row, reinterpret_cast<LPARAM>(&bounds));
    RECT seen{};
    ::GetClientRect(popup, &seen);
    bounds.right = std::min(bounds.right, seen.right);  // the rest of the list is never seen
    // Asked of the list: what the notification says of the state is not to be relied on.
    const bool isSelected = CallList(LVM_GETITEMSTATE, row, LVIS_SELECTED) != 0;
    const std::wstring text = GetCompletionAtIndex(static_cast<unsigned>(item));
    ::SetTextColor(dc, ::GetSysColor(isSelected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    ::SetBkColor(dc, ::GetSysColor(isSelected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    ::ExtTextOutW(dc, bounds.left + editMargin, bounds.top, ETO_OPAQUE | ETO_CLIPPED, &bounds,
                  text.data(), static_cast<UINT>(text.size()), nullptr);
}

void YAutoComplete::GetDisplayInfo(LVITEMW& item)
{
    if ((item.mask & LVIF_INDENT) != 0) {
        item.iIndent = 0;
    }
    if ((item.mask & LVIF_TEXT) != 0 && item.pszText != nullptr && item.cchTextMax >= 1) {
        const std::wstring text = GetCompletionAtIndex(static_cast<unsigned>(item.iItem));
        const std::size_t room = static_cast<std::size_t>(item.cchTextMax) - 1;
        item.pszText[text.copy(item.pszText, room)] = L'\0';
    }
}

// On some systems the list takes the focus when it is pressed. A row is highlighted at once, so that
// ours is the row that the list itself selects. A press beside the rows does nothing.
LRESULT YAutoComplete::PressOnList(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    LVHITTESTINFO hit{};
    hit.pt = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    const int item = static_cast<int>(CallList(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    if (item == -1) {
        return 0;
    }
    OnItemTracked(item);
    const KeepingFocus keeping(*this);
    return ::CallWindowProcW(previousListProcedure, window, message, wParam, lParam);
}

// Past our own procedure: its look at the property of the window is dearer than most answers.
LRESULT YAutoComplete::CallList(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return listView != nullptr
               ? ::CallWindowProcW(previousListProcedure, listView, message, wParam, lParam)
               : 0;
}

// The list's answer has 16 bits for a height: it is asked for no more rows than the screen can show,
// where it would start again at 0. The frame of the pop-up is part of what the rows need: without
// it the last of three would already have to be scrolled to.
LRESULT YAutoComplete::EstimateListSize(HWND window, WPARAM wParam, LPARAM lParam) const
{
    const auto estimate = [&](WPARAM rows) {
        return ::CallWindowProcW(previousListProcedure, window, LVM_APPROXIMATEVIEWRECT, rows,
                                 lParam);
    };
    const unsigned rowHeight = HIWORD(estimate(2)) - HIWORD(estimate(1));
    const auto all = std::min(static_cast<unsigned>(wParam), GetItemCount());  // -1: all
    const unsigned shown =
        static_cast<unsigned>(::GetSystemMetrics(SM_CYVIRTUALSCREEN)) / std::max(rowHeight, 1U) + 1;
    const LRESULT size = estimate(std::min(all, shown));
    return MAKELONG(LOWORD(size), HIWORD(size) + 2 * ::GetSystemMetrics(SM_CYBORDER));
}

unsigned YAutoComplete::GetItemCount() const
{
    return static_cast<unsigned>(CallList(LVM_GETITEMCOUNT));
}

void YAutoComplete::OnAutoComplete()
{
    PostToPopup(newListMessage);
}

void YAutoComplete::ShowNewList()
{
    ClearSelection(false);
    const unsigned count = GetCompletionCount();
    CallList(LVM_SETITEMCOUNT, count);
    if (count > 0) {
        // All rows in one step; LVM_REDRAWITEMS would take its time for each.
        ::InvalidateRect(listView, nullptr, TRUE);
    }
    PostToPopup(count > 0 ? showMessage : hideMessage);
    UpdateScrollBar();
}

void YAutoComplete::Show()
{
    if (!editHasFocus || GetItemCount() == 0) {
        return;
    }
    const auto font = ::SendMessageW(edit, WM_GETFONT, 0, 0);
    if (font != CallList(WM_GETFONT)) {
        CallList(WM_SETFONT, static_cast<WPARAM>(font), FALSE);
    }
    RECT place{};
    ::GetWindowRect(edit, &place);
    const SIZE size = userSized ? SIZE{} : GetSizeToShow(place);
    if (!IsPopupVisible()) {
        ::GetCursorPos(&restingPointer);
    }
    if (!IsPopupVisible() ||
        !IsAt(popup, {place.left, place.bottom}, userSized ? nullptr : &size)) {
        ::SetWindowPos(popup, HWND_TOPMOST, place.left, place.bottom, size.cx, size.cy,
                       SWP_NOACTIVATE | SWP_SHOWWINDOW | (userSized ? SWP_NOSIZE : 0U));
    }
    StartWatching();
}

SIZE YAutoComplete::GetSizeToShow(const RECT& editPlace) const
{
    RECT root{};
    ::GetWindowRect(::GetAncestor(edit, GA_ROOT), &root);
    const LRESULT needed = EstimateListSize(listView, static_cast<WPARAM>(-1), MAKELPARAM(-1, -1));
    const int width = editPlace.right - editPlace.left;
    return {fitEditWidth ? width : 2 * width,
            std::min<LONG>((root.bottom - root.top) / 2, HIWORD(needed))};
}

void YAutoComplete::Hide()
{
    ::ShowWindow(popup, SW_HIDE);
    ClearSelection(true);
    StopWatching();
}

void YAutoComplete::StartWatching()
{
    if (mouseHook != nullptr) {
        return;
    }
    StopWatching();  // what was left when the hook could not be had
    rootWindow = ::GetAncestor(edit, GA_ROOT);
    ::SetWindowSubclass(rootWindow,
                        &SubclassProcedure<YAutoComplete, &YAutoComplete::OnRootMessage>,
                        GetSubclassId(), reinterpret_cast<DWORD_PTR>(this));
    BecomeShown();
    mouseHook = ::SetWindowsHookExW(WH_MOUSE, &MouseHook, nullptr, ::GetCurrentThreadId());
}

void YAutoComplete::StopWatching()
{
    if (rootWindow == nullptr) {
        return;
    }
    ::RemoveWindowSubclass(std::exchange(rootWindow, nullptr),
                           &SubclassProcedure<YAutoComplete, &YAutoComplete::OnRootMessage>,
                           GetSubclassId());
    if (mouseHook != nullptr) {
        ::UnhookWindowsHookEx(std::exchange(mouseHook, nullptr));
    }
    StopBeingShown();
}

// Without a window the message would go to the thread, and be anybody's.
void YAutoComplete::PostToPopup(UINT message) const
{
    if (const HWND window = popup) {
        ::PostMessageW(window, message, 0, 0);
    }
}

bool YAutoComplete::IsPopupVisible() const
{
    return ::IsWindowVisible(popup);
}
