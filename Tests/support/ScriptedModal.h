// ScriptedModal.h: a modal dialog that lets a test act inside DoModal.
#pragma once

#include "support/Input.h"

#include <afxwin.h>
#include <gtest/gtest.h>

#include <functional>

// Runs its script once it is open and in front; then it ends by Cancel, if the script has not ended
// it.
template <class Dialog>
class ScriptedModal : public Dialog
{
public:
    using Dialog::Dialog;

    std::function<void()> script;

protected:
    BOOL OnInitDialog() override
    {
        const BOOL setsFocus = Dialog::OnInitDialog();
        this->PostMessage(scriptMessage);
        return setsFocus;
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != scriptMessage) {
            return Dialog::WindowProc(message, wParam, lParam);
        }
        const HWND handle = this->m_hWnd;
        ::SetForegroundWindow(handle);
        EXPECT_TRUE(PumpUntil(
            [handle] { return ::GetForegroundWindow() == handle && ::IsWindowVisible(handle); }));
        script();
        ::PostMessageW(handle, WM_COMMAND, IDCANCEL, 0);  // to nobody, where it has ended
        return 0;
    }

private:
    static constexpr UINT scriptMessage = WM_APP + 1;
};
