// FrameTest.h: a window of files that is in front, and what a test sees of it.
#pragma once

#include "ConsoleOptions.h"
#include "ConsoleSettings.h"
#include "ConsoleView.h"
#include "MainFrame.h"
#include "autocomplete/PopupKit.h"
#include "support/Input.h"
#include "textview/Lines.h"

#include <autocomplete/YLineEdit.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

class FrameTest : public testing::Test
{
protected:
    void SetUp() override
    {
        int show = SW_SHOWNORMAL;
        frame = new MainFrame(settings);
        ASSERT_TRUE(frame->Load({}, show));
        frame->InitialUpdateFrame(nullptr, TRUE);
        frame->MoveWindow(0, 0, 800, 400);
        ASSERT_TRUE(Activate(*frame));
    }
    void TearDown() override
    {
        for (ConsoleFrame* const window : FindConsoleFrames()) {
            window->DestroyWindow();
        }
        PumpMessages();
    }

    ConsoleView& View() const { return frame->GetView(); }
    void ShowTexts(const std::vector<std::wstring>& texts)
    {
        const auto lines = Lines(texts);
        View().ShowLines(lines.data(), static_cast<unsigned>(lines.size()), false);
    }
    YLineEdit& Field(int id) const
    {
        CWnd* const bar = frame->GetDlgItem(AFX_IDW_TOOLBAR);
        return static_cast<YLineEdit&>(*bar->GetDlgItem(id));
    }
    bool HasFocus(const CWnd& window) const { return ::GetFocus() == window.GetSafeHwnd(); }
    std::wstring StatusText() const { return GetTextOf(::GetDlgItem(*frame, AFX_IDW_STATUS_BAR)); }
    // Of the selection, "line:column"; empty: none.
    std::wstring Found() const
    {
        const YTextViewHighlight* const hit = View().GetHighlight();
        return hit ? std::to_wstring(hit->GetBegin().line) + L":" +
                         std::to_wstring(hit->GetBegin().column)
                   : std::wstring();
    }

    ConsoleSettings settings;
    MainFrame* frame = nullptr;
};
