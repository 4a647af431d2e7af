// YProfileWindowPlacement.h: where a window was, for the next time it is opened.
#pragma once

#include "YProfileData.h"

// The normal place of a window in workspace coordinates, and whether it was maximised, kept as one
// text. A window that was minimised comes back in its normal place. User-interface thread.
class COMMONUI_API YProfileWindowPlacement : public YProfileSz
{
public:
    explicit YProfileWindowPlacement(const wchar_t* valueName);
    ~YProfileWindowPlacement() override;

    // Takes over where the window is; nothing where it cannot be asked.
    void Remember(HWND window);
    // Moves the window there and returns how to show it (SW_SHOWNORMAL or SW_SHOWMAXIMIZED). False:
    // nothing is remembered, the window stays as it is. What would lie outside every monitor, or
    // with no part of its caption to take hold of, is moved into the nearest one; a window larger
    // than that is made smaller. The window is not shown.
    bool Restore(HWND window, int& show) const;
};
