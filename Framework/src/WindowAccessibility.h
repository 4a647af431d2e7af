// WindowAccessibility.h: what a window that speaks for itself gives to readers of the screen.
#pragma once

#include "afxwin.h"

#include <oleacc.h>

#include <memory>

class AccessibleWindow;

struct ReleaseReference
{
    template <class Interface>
    void operator()(Interface* object) const
    {
        object->Release();
    }
};

// Both objects are made when they are first asked for, one each for a window. Readers may hold
// theirs for longer than the window lives: after Disconnect its calls fail. The window's thread.
class WindowAccessibility
{
public:
    explicit WindowAccessibility(CWnd& spoken);
    ~WindowAccessibility();
    WindowAccessibility(const WindowAccessibility&) = delete;
    WindowAccessibility& operator=(const WindowAccessibility&) = delete;

    // The answer to WM_GETOBJECT for the client area; 0: the object cannot be handed out.
    LRESULT HandOut(WPARAM wParam);
    // What the system says of such a window; null: nothing. The caller's own reference.
    std::unique_ptr<IAccessible, ReleaseReference> GetStandard();
    // The window is going. A window that the object gets later is served anew.
    void Disconnect();

private:
    CWnd& window;
    std::unique_ptr<AccessibleWindow, ReleaseReference> object;
    std::unique_ptr<IAccessible, ReleaseReference> standard;
};
