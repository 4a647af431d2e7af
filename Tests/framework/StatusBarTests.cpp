// Status bars: panes over the system's own control.
#include "WindowTest.h"

#include <afxext.h>

namespace {

// Brings the pane of its id up to date.
class UpdatingFrame : public CFrameWnd
{
public:
    BOOL isEnabled = TRUE;
    CString text = L"updated";
    CStatusBar bar;

protected:
    afx_msg void OnUpdatePane(CCmdUI* pane)
    {
        pane->Enable(isEnabled);
        pane->SetText(text);
    }
    DECLARE_MESSAGE_MAP()
};

constexpr UINT updatedPane = 300;

BEGIN_MESSAGE_MAP(UpdatingFrame, CFrameWnd)
    ON_UPDATE_COMMAND_UI(updatedPane, &UpdatingFrame::OnUpdatePane)
END_MESSAGE_MAP()

class CStatusBarTest : public testing::Test
{
protected:
    void SetUp() override
    {
        frame = new UpdatingFrame;
        ASSERT_TRUE(frame->Create(nullptr, L"Status", WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 200)));
        ASSERT_TRUE(frame->bar.Create(frame));
        ASSERT_TRUE(frame->bar.SetIndicators(nullptr, 2));
        frame->bar.SetPaneInfo(1, updatedPane, SBPS_NORMAL, 60);
        frame->RecalcLayout();
        frame->ShowWindow(SW_SHOWNORMAL);
        PumpMessages();
    }

    void TearDown() override
    {
        frame->DestroyWindow();
        PumpMessages();
    }

    // What the control really shows.
    CString ShownText(int pane)
    {
        wchar_t text[64] = {};
        frame->bar.SendMessage(SB_GETTEXTW, static_cast<WPARAM>(pane),
                               reinterpret_cast<LPARAM>(text));
        return text;
    }

    UpdatingFrame* frame = nullptr;  // deletes itself
};

}  // namespace

TEST_F(CStatusBarTest, IdleTimeBringsPanesUpToDate)
{
    CWinThread thread;
    thread.m_pMainWnd = frame;
    frame->SetMessageText(L"Ready");  // the first pane, as the bar's own text
    thread.OnIdle(0);
    EXPECT_EQ(ShownText(0), L"Ready");
    EXPECT_EQ(ShownText(1), L"updated");
    frame->isEnabled = FALSE;
    frame->text = L"hidden";
    thread.OnIdle(0);
    EXPECT_EQ(ShownText(1), L"");  // off: the text is kept, not shown
    EXPECT_EQ(frame->bar.GetPaneText(1), L"hidden");
    frame->isEnabled = TRUE;
    thread.OnIdle(0);
    EXPECT_EQ(ShownText(1), L"hidden");
    thread.m_pMainWnd = nullptr;
}
