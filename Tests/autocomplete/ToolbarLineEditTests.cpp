// The line edit in a toolbar.
#include "autocomplete/LineEditKit.h"
#include "autocomplete/YToolbarEditBoxButton.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

class BarFrame : public CFrameWnd
{
public:
    using CFrameWnd::m_hAccelTable;
    CBCGPToolBar bar;
    int accelerated = 0;

protected:
    afx_msg void OnAccelerated() { ++accelerated; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(BarFrame, CFrameWnd)
    ON_COMMAND(300, &BarFrame::OnAccelerated)
END_MESSAGE_MAP()

class ToolbarLineEditTest : public testing::Test
{
protected:
    void SetUp() override
    {
        frame = new BarFrame;
        ASSERT_TRUE(frame->Create(nullptr, L"Bar", WS_OVERLAPPEDWINDOW, CRect(50, 50, 450, 250)));
        for (const WORD key : {L'C', L'V', L'X', L'Z', L'A', L'F'}) {
            keys.push_back({FVIRTKEY | FCONTROL, key, 300});
        }
        frame->m_hAccelTable =
            ::CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
        ASSERT_TRUE(frame->bar.Create(frame));
        YToolbarEditBoxButton prototype(301, -1, ES_AUTOHSCROLL, 150);
        prototype.SetPlaceholderText(hint);
        frame->bar.InsertButton(prototype);
        button = static_cast<YToolbarEditBoxButton*>(frame->bar.GetButton(0));
        edit = static_cast<YLineEdit*>(button->GetEditBox());
        frame->RecalcLayout();
        frame->ShowWindow(SW_SHOWNORMAL);
        ASSERT_TRUE(Activate(*frame));
        edit->SetFocus();
        PumpMessages();
    }
    void TearDown() override
    {
        ::DestroyAcceleratorTable(std::exchange(frame->m_hAccelTable, nullptr));
        frame->DestroyWindow();
        PumpMessages();
    }

    std::vector<ACCEL> keys;
    BarFrame* frame = nullptr;  // deletes itself
    YToolbarEditBoxButton* button = nullptr;
    YLineEdit* edit = nullptr;
};

TEST_F(ToolbarLineEditTest, TheKeysOfAnEditAreNotTheFrames)
{
    SetClipboard(L"one");
    EXPECT_TRUE(button->IsTextEmpty());
    Press(VK_CONTROL, 'A');  // the hint is no text
    EXPECT_EQ(edit->SendMessage(EM_GETSEL), 0);
    Press(VK_CONTROL, 'C');
    EXPECT_EQ(GetClipboard(), L"one");
    Press(VK_CONTROL, 'V');
    EXPECT_EQ(edit->GetText(), L"one");
    EXPECT_FALSE(button->IsTextEmpty());
    Press(VK_SHIFT, VK_INSERT);
    EXPECT_EQ(edit->GetText(), L"oneone");
    Press(VK_CONTROL, 'A');
    EXPECT_EQ(edit->SendMessage(EM_GETSEL), MAKELONG(0, 6));
    Press(VK_CONTROL, VK_INSERT);
    EXPECT_EQ(GetClipboard(), L"oneone");
    Type("B");
    Press(VK_CONTROL, 'Z');
    EXPECT_EQ(edit->GetText(), L"oneone");
    edit->SetSel(0, 3);
    Press(VK_CONTROL, 'X');
    EXPECT_EQ(edit->GetText(), L"one");
    edit->SetSel(0, -1);
    Press(VK_SHIFT, VK_DELETE);
    EXPECT_TRUE(button->IsTextEmpty());
    EXPECT_EQ(frame->accelerated, 0);
    Press(VK_CONTROL, 'F');  // another key is the frame's
    EXPECT_EQ(frame->accelerated, 1);
}

// The right Alt key of many keyboards, which the system reports as both: a third character of the key.
TEST_F(ToolbarLineEditTest, ControlWithAltIsACharacter)
{
    BYTE released[256]{};
    BYTE state[256]{};
    state[VK_CONTROL] = 0x80;
    MSG key{*edit, WM_KEYDOWN, 'A', 1, 0, {}};
    ::SetKeyboardState(state);
    EXPECT_TRUE(edit->PreTranslateMessage(&key));
    state[VK_MENU] = 0x80;
    ::SetKeyboardState(state);
    EXPECT_FALSE(edit->PreTranslateMessage(&key));
    ::SetKeyboardState(released);
}

TEST_F(ToolbarLineEditTest, AHintKeepsTheBarsBackground)
{
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    edit->EnableWindow(FALSE);
    const auto brush = frame->bar.SendMessage(WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc.m_hDC),
                                              reinterpret_cast<LPARAM>(edit->m_hWnd));
    EXPECT_EQ(reinterpret_cast<HBRUSH>(brush), ::GetSysColorBrush(COLOR_BTNFACE));
    EXPECT_EQ(dc.GetTextColor(), RGB(128, 128, 128));
}

TEST_F(ToolbarLineEditTest, ACopyKeepsItsLabelAndTakesTheHint)
{
    YToolbarEditBoxButton copy;
    copy.SetPlaceholderText(L"own");
    copy.m_strText = L"label";
    copy.CopyFrom(*button);
    EXPECT_EQ(copy.m_strText, L"label");
    button->m_strText = L"other";
    copy.CopyFrom(*button);
    EXPECT_EQ(copy.m_strText, L"other");
    EXPECT_TRUE(copy.IsTextEmpty());
    button->SetPlaceholderText(L"new");
    EXPECT_EQ(edit->GetText(), hint);  // shown, and text from now on
    frame->bar.InsertButton(copy);
    PumpMessages();
    CString text;
    static_cast<YToolbarEditBoxButton*>(frame->bar.GetButton(1))->GetEditBox()->GetWindowText(text);
    EXPECT_EQ(text, hint);
}

}  // namespace
