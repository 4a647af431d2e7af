// Toolbars: layout, clicks, updates, hosted edits.
#include "WindowTest.h"

#include "support/LeakCheck.h"

#include <BCGCBProInc.h>

#include <functional>

namespace {

constexpr UINT firstCommand = 500;
constexpr UINT secondCommand = 501;
constexpr UINT nobodysCommand = 502;
constexpr UINT editCommand = 503;

class BarFrame : public CFrameWnd
{
public:
    CBCGPToolBar bar;
    Log log;
    bool allowsSecond = true;
    std::function<void()> atFirst;

protected:
    afx_msg void OnFirst()
    {
        log.push_back("first");
        if (atFirst) {
            atFirst();
        }
    }
    afx_msg void OnSecond() { log.push_back("second"); }
    afx_msg void OnUpdateSecond(CCmdUI* button)
    {
        button->Enable(allowsSecond);
        button->SetCheck(allowsSecond ? 0 : 1);
    }
    afx_msg void OnEditChange() { log.push_back("change"); }
    afx_msg void OnEditUpdate() { log.push_back("update"); }
    afx_msg void OnEditCommand() {}
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(BarFrame, CFrameWnd)
    ON_COMMAND(firstCommand, &BarFrame::OnFirst)
    ON_COMMAND(secondCommand, &BarFrame::OnSecond)
    ON_UPDATE_COMMAND_UI(secondCommand, &BarFrame::OnUpdateSecond)
    ON_COMMAND(editCommand, &BarFrame::OnEditCommand)
    ON_EN_CHANGE(editCommand, &BarFrame::OnEditChange)
    ON_CONTROL(EN_UPDATE, editCommand, &BarFrame::OnEditUpdate)
END_MESSAGE_MAP()

class CBCGPToolBarTest : public testing::Test
{
protected:
    void SetUp() override
    {
        frame = new BarFrame;
        ASSERT_TRUE(frame->Create(nullptr, L"Bars", WS_OVERLAPPEDWINDOW, CRect(50, 50, 550, 250)));
        handle = *frame;
        CBCGPToolBar& bar = frame->bar;
        ASSERT_TRUE(bar.Create(frame));
        bar.InsertButton(CBCGPToolbarButton(firstCommand, -1, L"First"));
        bar.InsertButton(CBCGPToolbarButton(secondCommand, -1, L"Second"));
        bar.InsertSeparator();
        bar.InsertButton(CBCGPToolbarButton(nobodysCommand, -1, L"Nobody"));
        bar.InsertButton(CBCGPToolbarEditBoxButton(editCommand, -1));
        frame->RecalcLayout();
        frame->ShowWindow(SW_SHOWNORMAL);
        ASSERT_TRUE(Activate(*frame));
        MovePointer(*frame, {300, 150});
    }

    void TearDown() override
    {
        if (::IsWindow(handle)) {
            ::DestroyWindow(handle);
        }
        PumpMessages();
    }

    void Update()
    {
        CWinThread thread;
        thread.m_pMainWnd = frame;
        thread.OnIdle(0);
        thread.m_pMainWnd = nullptr;
    }
    CPoint At(int index) { return frame->bar.GetButton(index)->Rect().CenterPoint(); }
    bool IsOff(int index) { return (frame->bar.GetButtonStyle(index) & TBBS_DISABLED) != 0; }
    CBCGPToolbarEditBoxButton& EditButton()
    {
        const int index = frame->bar.CommandToIndex(editCommand);
        return static_cast<CBCGPToolbarEditBoxButton&>(*frame->bar.GetButton(index));
    }
    // The number of pixels in the button that have its frame's colour.
    int CountEdgePixels(int index, int color)
    {
        frame->bar.UpdateWindow();
        CClientDC dc(&frame->bar);
        const CRect rect = frame->bar.GetButton(index)->Rect();
        int count = 0;
        for (int x = rect.left; x < rect.right; ++x) {
            count += dc.GetPixel(x, rect.top) == ::GetSysColor(color);
        }
        return count;
    }

    BarFrame* frame = nullptr;  // deletes itself
    HWND handle = nullptr;
};

}  // namespace

TEST_F(CBCGPToolBarTest, DocksAtTheTopAsWideAsTheFrame)
{
    CRect bar;
    CRect client;
    frame->bar.GetWindowRect(&bar);
    frame->ScreenToClient(&bar);
    frame->GetClientRect(&client);
    EXPECT_EQ(bar.TopLeft(), CPoint(0, 0));
    EXPECT_EQ(bar.Width(), client.Width());
    CRect left;
    frame->RepositionBars(0, 0xFFFF, AFX_IDW_PANE_FIRST, CWnd::reposQuery, &left);
    EXPECT_EQ(left.top, bar.bottom);
    frame->bar.ShowWindow(SW_HIDE);
    frame->RepositionBars(0, 0xFFFF, AFX_IDW_PANE_FIRST, CWnd::reposQuery, &left);
    EXPECT_EQ(left.top, 0);
}

TEST_F(CBCGPToolBarTest, ButtonsStandInARowAndInside)
{
    CRect client;
    frame->bar.GetClientRect(&client);
    int edge = 0;
    for (int i = 0; i < frame->bar.GetCount(); ++i) {
        const CRect rect = frame->bar.GetButton(i)->Rect();
        EXPECT_GE(rect.left, edge);
        EXPECT_GE(rect.top, client.top);
        EXPECT_LE(rect.bottom, client.bottom);
        edge = rect.right;
    }
    CRect edit;
    EditButton().GetEditBox()->GetWindowRect(&edit);
    frame->bar.ScreenToClient(&edit);
    const CRect place = EditButton().Rect();
    EXPECT_TRUE(place.PtInRect(edit.TopLeft()) && place.PtInRect(edit.BottomRight()));
}

TEST_F(CBCGPToolBarTest, AClickSendsTheCommand)
{
    ClickLeft(frame->bar, At(0));
    EXPECT_EQ(frame->log, Log{"first"});
    PressLeft(frame->bar, At(0));
    EXPECT_TRUE(frame->bar.GetButtonStyle(0) & TBBS_PRESSED);
    EXPECT_GT(CountEdgePixels(0, COLOR_BTNSHADOW), 0);
    ReleaseLeft(frame->bar, At(1));  // slipped off: nothing
    ClickLeft(frame->bar, At(2));  // a separator
    EXPECT_EQ(frame->log, Log{"first"});
    EXPECT_FALSE(frame->bar.GetButtonStyle(0) & TBBS_PRESSED);
}

TEST_F(CBCGPToolBarTest, TheButtonUnderThePointerIsRaised)
{
    EXPECT_EQ(CountEdgePixels(1, COLOR_BTNHIGHLIGHT), 0);
    MovePointer(frame->bar, At(1));
    EXPECT_GT(CountEdgePixels(1, COLOR_BTNHIGHLIGHT), 0);
    MovePointer(*frame, {300, 150});
    EXPECT_TRUE(PumpUntil([&] { return CountEdgePixels(1, COLOR_BTNHIGHLIGHT) == 0; }));
}

TEST_F(CBCGPToolBarTest, IdleTimeEnablesAndChecks)
{
    Update();
    EXPECT_FALSE(IsOff(0));
    EXPECT_FALSE(IsOff(1));
    EXPECT_TRUE(IsOff(3));  // nobody handles it
    EXPECT_FALSE(IsOff(4));
    frame->allowsSecond = false;
    Update();
    EXPECT_TRUE(IsOff(1));
    EXPECT_TRUE(frame->bar.GetButtonStyle(1) & TBBS_CHECKED);
    PressLeft(frame->bar, At(1));
    EXPECT_FALSE(frame->bar.GetButtonStyle(1) & TBBS_PRESSED);
    ReleaseLeft(frame->bar, At(1));
    EXPECT_TRUE(frame->log.empty());
}

TEST_F(CBCGPToolBarTest, AHostedEditReportsToItsButtonAndTheFrame)
{
    CBCGPEdit* const edit = EditButton().GetEditBox();
    ClickLeft(*edit, {5, 5});
    ASSERT_EQ(::GetFocus(), edit->m_hWnd);
    TypeKey('A');
    EXPECT_EQ(frame->log, Log{"change"});  // the button keeps the update to itself
    EXPECT_EQ(CBCGPToolbarEditBoxButton::GetContentsAll(editCommand), L"a");
    EXPECT_EQ(CBCGPToolbarEditBoxButton::GetContentsAll(firstCommand), L"");
    EditButton().SetStyle(TBBS_DISABLED);
    EXPECT_FALSE(edit->IsWindowEnabled());
}

TEST_F(CBCGPToolBarTest, ReplacedAndRemovedButtonsTakeTheirEditsAlong)
{
    const HWND first = EditButton().GetHwnd();
    EditButton().SetContents(L"kept");
    const CBCGPToolbarEditBoxButton& old = EditButton();
    CBCGPToolbarEditBoxButton copy;
    copy.CopyFrom(old);
    EXPECT_EQ(frame->bar.ReplaceButton(editCommand, copy), 1);
    EXPECT_FALSE(::IsWindow(first));
    CString text;
    EditButton().GetEditBox()->GetWindowText(text);
    EXPECT_EQ(text, L"kept");
    EXPECT_EQ(frame->bar.ReplaceButton(999, copy), 0);
    EXPECT_EQ(frame->bar.InsertButton(copy, 99), -1);
    const HWND second = EditButton().GetHwnd();
    EXPECT_TRUE(frame->bar.RemoveButton(frame->bar.CommandToIndex(editCommand)));
    EXPECT_FALSE(::IsWindow(second));
    frame->bar.InsertButton(copy);
    frame->bar.DestroyWindow();
    EXPECT_EQ(EditButton().GetEditBox(), nullptr);
    frame->bar.RemoveAllButtons();
    EXPECT_EQ(frame->bar.GetCount(), 0);
}

TEST_F(CBCGPToolBarTest, ACommandMayEndTheFrame)
{
    frame->atFirst = [this] { ::DestroyWindow(handle); };
    ClickLeft(frame->bar, At(0));
    EXPECT_FALSE(::IsWindow(handle));
}

TEST_F(CBCGPToolBarTest, LeavesNothingBehind)
{
    const auto round = [this] {
        CBCGPToolBar other;
        ASSERT_TRUE(other.Create(frame, WS_CHILD | WS_VISIBLE | CBRS_TOP, 0xE810));
        other.InsertButton(CBCGPToolbarButton(firstCommand, -1, L"First"));
        other.InsertButton(CBCGPToolbarEditBoxButton(editCommand, -1));
        frame->RecalcLayout();
        PumpMessages();
        CWinThread().OnIdle(1);
    };
    round();
    const LeakCheck leaks;
    for (int i = 0; i < 20; ++i) {
        round();
    }
}
