// OthersDisabled.h: a dialog has the program to itself.
#pragma once

#include <afxwin.h>

#include <vector>

// While one lives, the program's other windows wait: they use what the dialog changes, and would close
// its owner by their Exit.
class OthersDisabled
{
public:
    explicit OthersDisabled(const CWnd* owner) : ownerWindow(owner->GetSafeHwnd())
    {
        ::EnumThreadWindows(::GetCurrentThreadId(), &Disable, reinterpret_cast<LPARAM>(this));
    }
    OthersDisabled(const OthersDisabled&) = delete;
    OthersDisabled& operator=(const OthersDisabled&) = delete;
    ~OthersDisabled()
    {
        for (const HWND window : disabled) {
            ::EnableWindow(window, TRUE);
        }
    }

private:
    static BOOL CALLBACK Disable(HWND window, LPARAM self)
    {
        auto& others = *reinterpret_cast<OthersDisabled*>(self);
        if (window != others.ownerWindow && ::IsWindowVisible(window) &&
            ::IsWindowEnabled(window)) {
            others.disabled.push_back(window);
            ::EnableWindow(window, FALSE);
        }
        return TRUE;
    }

    HWND ownerWindow;
    std::vector<HWND> disabled;
};
