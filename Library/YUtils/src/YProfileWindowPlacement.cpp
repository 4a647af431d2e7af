#include "YProfileWindowPlacement.h"

#include "YFormatMessage.h"

#include <algorithm>
#include <cwchar>

namespace {

constexpr wchar_t format[] = L"%1!d! %2!d! %3!d! %4!d! %5!d!";  // show, left, top, right, bottom
constexpr LONG reachable = 40;  // pixels of the top edge that must be on a monitor

struct Placement
{
    int show = SW_SHOWNORMAL;
    RECT normal{};
};

bool Parse(const wchar_t* text, Placement& placement)
{
    long numbers[5] = {};
    for (long& number : numbers) {
        wchar_t* end = nullptr;
        number = std::wcstol(text, &end, 10);
        if (end == text || number < -0x7FFF || number > 0x7FFF) {
            return false;
        }
        text = end;
    }
    placement.show = numbers[0] == SW_SHOWMAXIMIZED ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL;
    placement.normal = {numbers[1], numbers[2], numbers[3], numbers[4]};
    return *text == L'\0' && numbers[1] < numbers[3] && numbers[2] < numbers[4];
}

// Into the nearest monitor, but only where the user could not take hold of the window otherwise.
void MoveIntoView(RECT& place)
{
    const RECT grip = {place.left, place.top, place.right, std::min(place.top + 1, place.bottom)};
    const HMONITOR monitor = ::MonitorFromRect(&grip, MONITOR_DEFAULTTONEAREST);
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    RECT seen;
    if (!::GetMonitorInfoW(monitor, &info) ||
        (::IntersectRect(&seen, &grip, &info.rcWork) && seen.right - seen.left >= reachable)) {
        return;
    }
    const RECT& work = info.rcWork;
    const LONG width = std::min(place.right - place.left, work.right - work.left);
    const LONG height = std::min(place.bottom - place.top, work.bottom - work.top);
    place.left = std::clamp(place.left, work.left, work.right - width);
    place.top = std::clamp(place.top, work.top, work.bottom - height);
    place.right = place.left + width;
    place.bottom = place.top + height;
}

}  // namespace

YProfileWindowPlacement::YProfileWindowPlacement(const wchar_t* valueName) : YProfileSz(valueName)
{}

YProfileWindowPlacement::~YProfileWindowPlacement() = default;

void YProfileWindowPlacement::Remember(HWND window)
{
    WINDOWPLACEMENT placement{};
    placement.length = sizeof(placement);
    if (!::GetWindowPlacement(window, &placement)) {
        return;
    }
    const bool isMaximised =
        placement.showCmd == SW_SHOWMAXIMIZED ||
        (placement.showCmd == SW_SHOWMINIMIZED && placement.flags & WPF_RESTORETOMAXIMIZED);
    const RECT& normal = placement.rcNormalPosition;
    Set(YUnicodeString(YFormatText(format, isMaximised ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL,
                                   normal.left, normal.top, normal.right, normal.bottom)));
}

bool YProfileWindowPlacement::Restore(HWND window, int& show) const
{
    Placement remembered;
    WINDOWPLACEMENT placement{};
    placement.length = sizeof(placement);
    if (!Parse(Get().c_str(), remembered) || !::GetWindowPlacement(window, &placement)) {
        return false;
    }
    MoveIntoView(remembered.normal);
    placement.rcNormalPosition = remembered.normal;
    placement.showCmd = SW_HIDE;
    placement.flags = 0;
    if (!::SetWindowPlacement(window, &placement)) {
        return false;
    }
    show = remembered.show;
    return true;
}
