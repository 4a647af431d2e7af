#include "afxlayout.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CMFCDynamicLayout, CObject)

namespace {

struct Placement
{
    HWND window;
    CRect place;
};

constexpr UINT placementFlags = SWP_NOZORDER | SWP_NOACTIVATE;

CRect PlaceOf(HWND child, HWND host)
{
    CRect place;
    ::GetWindowRect(child, &place);
    ::MapWindowPoints(nullptr, host, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

int Share(int change, int ratio)
{
    return ::MulDiv(change, ratio, 100);
}

// All at once, so that no child is drawn over another's old place. False: the system has given the
// list up, and nothing has moved.
bool PlaceTogether(const std::vector<Placement>& placements)
{
    HDWP moves = ::BeginDeferWindowPos(static_cast<int>(placements.size()));
    for (const auto& [window, place] : placements) {
        if (moves == nullptr) {
            return false;
        }
        moves = ::DeferWindowPos(moves, window, nullptr, place.left, place.top, place.Width(),
                                 place.Height(), placementFlags);
    }
    return moves != nullptr && ::EndDeferWindowPos(moves);
}

void PlaceOneByOne(const std::vector<Placement>& placements)
{
    for (const auto& [window, place] : placements) {
        ::SetWindowPos(window, nullptr, place.left, place.top, place.Width(), place.Height(),
                       placementFlags);
    }
}

}  // namespace

BOOL CMFCDynamicLayout::Create(CWnd* pHostWnd)
{
    host = pHostWnd;
    return host != nullptr && host->GetSafeHwnd() != nullptr;
}

bool CMFCDynamicLayout::IsChildOfHost(HWND window) const
{
    return ::IsWindow(window) && ::GetAncestor(window, GA_PARENT) == host->GetSafeHwnd();
}

CSize CMFCDynamicLayout::GetHostSize() const
{
    CRect client;
    host->GetClientRect(&client);
    return CSize(std::max(client.Width(), static_cast<int>(minSize.cx)),
                 std::max(client.Height(), static_cast<int>(minSize.cy)));
}

BOOL CMFCDynamicLayout::AddItem(HWND hwnd, MoveSettings moveSettings, SizeSettings sizeSettings)
{
    if (!IsChildOfHost(hwnd) || HasItem(hwnd)) {
        return FALSE;
    }
    items.push_back({hwnd, moveSettings, sizeSettings, PlaceOf(hwnd, *host), GetHostSize()});
    return TRUE;
}

BOOL CMFCDynamicLayout::AddItem(UINT nID, MoveSettings moveSettings, SizeSettings sizeSettings)
{
    return AddItem(::GetDlgItem(*host, static_cast<int>(nID)), moveSettings, sizeSettings);
}

BOOL CMFCDynamicLayout::HasItem(HWND hwnd) const
{
    return std::any_of(items.begin(), items.end(),
                       [hwnd](const Item& item) { return item.window == hwnd; });
}

void CMFCDynamicLayout::Adjust()
{
    std::erase_if(items, [this](const Item& item) { return !IsChildOfHost(item.window); });
    const CSize now = GetHostSize();
    std::vector<Placement> placements;  // a child that is moved may change the list of items
    placements.reserve(items.size());
    for (const auto& [window, move, size, original, hostSize] : items) {
        const CSize change = now - hostSize;
        const CPoint corner(original.left + Share(change.cx, move.m_nXRatio),
                            original.top + Share(change.cy, move.m_nYRatio));
        const CSize extent(std::max(0, original.Width() + Share(change.cx, size.m_nXRatio)),
                           std::max(0, original.Height() + Share(change.cy, size.m_nYRatio)));
        const CRect place(corner, extent);
        if (place != PlaceOf(window, *host)) {
            placements.push_back({window, place});
        }
    }
    if (!placements.empty() && !PlaceTogether(placements)) {
        PlaceOneByOne(placements);
    }
}

BOOL CWnd::EnableDynamicLayout(BOOL bEnable)
{
    dynamicLayout.reset();
    if (bEnable) {
        dynamicLayout = std::make_unique<CMFCDynamicLayout>();
        if (!dynamicLayout->Create(this)) {
            dynamicLayout.reset();
        }
    }
    return !bEnable || dynamicLayout != nullptr;
}

void CWnd::ResizeDynamicLayout()
{
    if (dynamicLayout != nullptr) {
        dynamicLayout->Adjust();
    }
}

// The frame of the window, which the least size says nothing of, comes on top.
void CWnd::OnGetMinMaxInfo(MINMAXINFO* lpMMI)
{
    Default();
    if (dynamicLayout == nullptr || (GetStyle() & WS_CHILD) != 0) {
        return;
    }
    const CSize least = dynamicLayout->GetMinSize();
    CRect rect(CPoint(0, 0), least);
    ::AdjustWindowRectEx(&rect, GetStyle(), ::GetMenu(m_hWnd) != nullptr, GetExStyle());
    if (least.cx > 0) {
        lpMMI->ptMinTrackSize.x = rect.Width();
    }
    if (least.cy > 0) {
        lpMMI->ptMinTrackSize.y = rect.Height();
    }
}
