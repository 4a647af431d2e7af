// Kit.h: a window with controls that the keyboard walks through, as in a dialog.
#pragma once

#include "support/Input.h"

#include <afxwin.h>

#include <gtest/gtest.h>

#include <string>

inline std::wstring GetWholeText(HWND window)
{
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)), L' ');
    ::GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
    return text;
}

class ControlHost : public CWnd
{
public:
    BOOL PreTranslateMessage(MSG* message) override { return IsDialogMessage(message); }

    // In rows from the top, with its number as id; a window as a dialog template makes it.
    HWND Add(const wchar_t* windowClass, int row, DWORD style, const wchar_t* text = L"")
    {
        return ::CreateWindowExW(
            0, windowClass, text, WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, 10, 10 + row * 30,
            200, 24, m_hWnd, reinterpret_cast<HMENU>(static_cast<INT_PTR>(row)), nullptr, nullptr);
    }
};

// A host in front, with a field in the last row that has the focus at first: outside.
class ControlTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(host.CreateEx(0, nullptr, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100,
                                  400, 300, nullptr, nullptr));
        outside = host.Add(L"EDIT", 7, ES_AUTOHSCROLL);
        ASSERT_TRUE(Activate(outside));
        ASSERT_TRUE(StandsStill(host));
        MovePointer(host, {300, 200});
    }
    void TearDown() override
    {
        host.DestroyWindow();
        PumpMessages();
    }

    ControlHost host;
    HWND outside = nullptr;
};
