// ScriptedDialog.h: a dialog that lets a test act inside DoModal.
#pragma once

#include "Dialogs.h"
#include "WindowTest.h"

#include <functional>

constexpr UINT scriptMessage = WM_APP + 1;
constexpr UINT scriptOverMessage = WM_APP + 2;

// Runs its script once it is open, from its own message loop; then it ends by itself, if the script
// has not ended it.
class ScriptedDialog : public CDialog
{
public:
    static constexpr int notEnded = 99;

    using CDialog::CDialog;

    std::function<BOOL()> atInit;  // the answer of OnInitDialog
    std::function<void()> script;
    bool endsAfterScript = true;

    int FocusId() const { return ::GetDlgCtrlID(::GetFocus()); }
    void ClickControl(int id)
    {
        const HWND control = ::GetDlgItem(m_hWnd, id);
        CRect rect;
        // The window manager may still be placing the dialog.
        EXPECT_TRUE(PumpUntil([&] {
            ::GetWindowRect(control, &rect);
            return ::WindowFromPoint(rect.CenterPoint()) == control;
        }));
        ClickLeft(control, {rect.Width() / 2, rect.Height() / 2});
    }

protected:
    BOOL OnInitDialog() override
    {
        const BOOL answer = CDialog::OnInitDialog();
        if (script) {
            PostMessage(scriptMessage);
        }
        return atInit ? atInit() : answer;
    }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == scriptMessage) {
            RunScript();
            return 0;
        }
        if (message == scriptOverMessage) {
            EndDialog(notEnded);
            return 0;
        }
        return CDialog::WindowProc(message, wParam, lParam);
    }

private:
    void RunScript()
    {
        const HWND handle = m_hWnd;
        ::SetForegroundWindow(handle);  // leaves the focus to the dialog
        PumpUntil([handle] { return ::GetForegroundWindow() == handle; });
        script();
        if (endsAfterScript && ::IsWindow(handle)) {
            ::PostMessageW(handle, scriptOverMessage, 0, 0);  // behind what the script has caused
        }
    }
};
