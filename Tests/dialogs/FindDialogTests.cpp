// The find dialog at places of the host's, typed into.
#include "TreeKit.h"

#include <YReportMessageParams.h>
#include <dialogs/IFindDialogSink.h>
#include <dialogs/YFindDialog.h>
#include <dlgs.h>
#include <gtest/gtest.h>

namespace {

class FindSink : public IFindDialogSink
{
public:
    void OnFindNext() override { log += L"next "; }
    void OnFindDialogClosed(bool wrapAround) override
    {
        log += wrapAround ? L"closed wrapping " : L"closed ";
    }
    void OnFindDialogActivated() override { ++activations; }
    void OnFindDialogMoved() override { ++moves; }

    std::wstring log;
    int activations = 0;
    int moves = 0;
};

int deleted = 0;

class TestFind : public YFindDialog
{
public:
    using YFindDialog::YFindDialog;
    ~TestFind() override { ++deleted; }

    int changes = 0;

protected:
    LRESULT OnFindEnChanged(WPARAM, LPARAM) override
    {
        ++changes;
        return 0;
    }
};

HMONITOR WINAPI OnlyTheLeftHalf(POINT point, DWORD)
{
    return point.x < 640 ? reinterpret_cast<HMONITOR>(1) : nullptr;
}

class FindDialogTest : public testing::Test
{
protected:
    void SetUp() override
    {
        deleted = 0;
        Open(owner, 100);
        PumpMessages();
    }
    void TearDown() override
    {
        owner.DestroyWindow();
        PumpMessages();
    }
    TestFind* OpenAt(YPoint place, unsigned long flags = FR_DOWN, bool wraps = false)
    {
        auto* const dialog = new TestFind(L"word", flags, &sink, &owner, wraps);
        EXPECT_TRUE(dialog->Create(place));
        dialog->ShowWindow(SW_SHOW);
        EXPECT_TRUE(PumpUntil([&] { return ::GetForegroundWindow() == dialog->m_hWnd; }));
        EXPECT_TRUE(StandsStill(*dialog));
        return dialog;
    }

    CWnd owner;
    FindSink sink;
    const YPoint none{-1, -1};
};

TEST_F(FindDialogTest, TellsWhatIsTypedAndPressed)
{
    TestFind* const dialog = OpenAt({200, 150}, FR_DOWN | FR_MATCHCASE | FR_NOUPDOWN, true);
    EXPECT_EQ(dialog->GetPosition(), YPoint(200, 150));
    EXPECT_TRUE(dialog->GetNotFound());
    EXPECT_EQ(dialog->GetFlags() & 0x140000, 0x140000u);
    EXPECT_EQ(dialog->GetFlags() & FR_NOUPDOWN, 0u) << "not the caller's";
    const HWND edit = ::GetDlgItem(*dialog, edt1);
    EXPECT_EQ(GetTextOf(edit), L"word");
    ::SetFocus(edit);
    const int before = dialog->changes;
    TypeKey(VK_END);
    TypeText(L"s");
    EXPECT_EQ(dialog->changes, before + 1);
    EXPECT_EQ(dialog->GetString(), L"words");
    EXPECT_EQ(sink.log, L"");
    TypeKey(VK_RETURN);
    EXPECT_EQ(sink.log, L"next ");
    EXPECT_TRUE(dialog->MatchCase());
    dialog->EndOfFindBufferReached();
    EXPECT_EQ(sink.log, L"next next ");
    EXPECT_GT(sink.activations, 0);
    TypeKey(VK_ESCAPE);
    PumpMessages();
    EXPECT_EQ(sink.log, L"next next closed wrapping ");
    EXPECT_EQ(deleted, 1);
}

TEST_F(FindDialogTest, APlaceThatNoMonitorShowsIsTheSystems)
{
    TestFind* const anywhere = OpenAt(none);
    const YPoint systems = anywhere->GetPosition();
    anywhere->BringToTop({210, 160}, true);
    EXPECT_EQ(anywhere->GetPosition(), YPoint(210, 160));
    EXPECT_GT(sink.moves, 0);
    anywhere->Hide();
    EXPECT_FALSE(anywhere->IsWindowVisible());
    anywhere->BringToTop(none, false);
    EXPECT_TRUE(anywhere->IsWindowVisible());
    anywhere->DestroyWindow();

    const ImportHook half(L"CommonUi.dll", "user32.dll", "MonitorFromPoint", &OnlyTheLeftHalf);
    for (const YPoint gone : {YPoint(5000, 100), YPoint(500, 100), YPoint(700, 100)}) {
        TestFind* const dialog = OpenAt(gone);
        EXPECT_EQ(dialog->GetPosition(), systems);
        dialog->BringToTop(gone, true);
        EXPECT_EQ(dialog->GetPosition(), systems);
        dialog->DestroyWindow();
    }
    EXPECT_EQ(deleted, 4);
}

TEST_F(FindDialogTest, TwentyRoundsMoveItByNoPixel)
{
    YPoint place(220, 170);
    for (int round = 0; round < 20; ++round) {
        TestFind* const dialog = OpenAt(place);
        place = dialog->GetPosition();
        dialog->SendMessage(WM_COMMAND, IDCANCEL);
        PumpMessages();
    }
    EXPECT_EQ(place, YPoint(220, 170));
    EXPECT_EQ(deleted, 20);
}

TEST_F(FindDialogTest, GoesWithItsOwner)
{
    OpenAt(none);
    owner.DestroyWindow();
    PumpMessages();
    EXPECT_EQ(deleted, 1);
}

}  // namespace
