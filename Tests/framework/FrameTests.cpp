// Frames and views: the route of commands, the active view, menus, layout, the end.
#include "WindowTest.h"

#include <afxext.h>

namespace {

constexpr UINT viewCommand = 200;
constexpr UINT frameCommand = 201;
constexpr UINT programCommand = 202;
constexpr UINT everybodysCommand = 203;
constexpr UINT nobodysCommand = 204;

Log* sharedLog = nullptr;

class TestView : public CView
{
    DECLARE_DYNCREATE(TestView)

    static bool refusesCreation;

    ~TestView() override { sharedLog->push_back("view deleted"); }

protected:
    void OnDraw(CDC*) override {}
    void OnInitialUpdate() override
    {
        sharedLog->push_back("initial update");
        CView::OnInitialUpdate();
    }
    void OnActivateView(BOOL activate, CView* active, CView* previous) override
    {
        const std::string id = std::to_string(GetDlgCtrlID() - AFX_IDW_PANE_FIRST);
        sharedLog->push_back((activate ? "active " : "passive ") + id);
        CView::OnActivateView(activate, active, previous);
    }
    afx_msg int OnCreate(CREATESTRUCT* create)
    {
        return refusesCreation ? -1 : CView::OnCreate(create);
    }
    afx_msg void OnViewCommand() { sharedLog->push_back("view"); }
    afx_msg void OnUpdate(CCmdUI* item)
    {
        item->SetCheck();
        item->SetText(L"Checked");
    }
    using CView::OnUpdate;
    DECLARE_MESSAGE_MAP()
};

bool TestView::refusesCreation = false;

IMPLEMENT_DYNCREATE(TestView, CView)

BEGIN_MESSAGE_MAP(TestView, CView)
    ON_WM_CREATE()
    ON_COMMAND(viewCommand, &TestView::OnViewCommand)
    ON_COMMAND(everybodysCommand, &TestView::OnViewCommand)
    ON_UPDATE_COMMAND_UI(everybodysCommand, &TestView::OnUpdate)
END_MESSAGE_MAP()

class TestFrame : public CFrameWnd
{
public:
    ~TestFrame() override { sharedLog->push_back("frame deleted"); }
    using CFrameWnd::m_hAccelTable;

protected:
    afx_msg void OnFrameCommand() { sharedLog->push_back("frame"); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(TestFrame, CFrameWnd)
    ON_COMMAND(frameCommand, &TestFrame::OnFrameCommand)
    ON_COMMAND(everybodysCommand, &TestFrame::OnFrameCommand)
END_MESSAGE_MAP()

class TestProgram : public CWinApp
{
protected:
    afx_msg void OnProgramCommand() { sharedLog->push_back("program"); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(TestProgram, CWinApp)
    ON_COMMAND(programCommand, &TestProgram::OnProgramCommand)
    ON_COMMAND(everybodysCommand, &TestProgram::OnProgramCommand)
    ON_COMMAND(ID_APP_EXIT, &TestProgram::OnAppExit)
END_MESSAGE_MAP()

class CFrameWndTest : public testing::Test
{
protected:
    void SetUp() override
    {
        sharedLog = &log;
        frame = new TestFrame;
        CCreateContext context;
        context.m_pNewViewClass = RUNTIME_CLASS(TestView);
        ASSERT_TRUE(frame->Create(nullptr, L"Frame", WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 300),
                                  nullptr, nullptr, 0, &context));
        handle = *frame;
        frame->InitialUpdateFrame(nullptr, TRUE);
        ASSERT_TRUE(Activate(handle));
        log.clear();
    }

    void TearDown() override
    {
        if (::IsWindow(handle)) {
            ::DestroyWindow(handle);
        }
        PumpMessages();
        CWinThread().OnIdle(1);
        TestView::refusesCreation = false;
    }

    CView* AddView(UINT id)
    {
        CCreateContext context;
        context.m_pNewViewClass = RUNTIME_CLASS(TestView);
        return static_cast<CView*>(frame->CreateView(&context, id));
    }

    Log log;
    TestFrame* frame = nullptr;  // deletes itself
    HWND handle = nullptr;
};

}  // namespace

TEST_F(CFrameWndTest, CommandsGoToTheViewThenTheFrameThenTheProgram)
{
    TestProgram program;
    for (UINT id : {everybodysCommand, viewCommand, frameCommand, programCommand, nobodysCommand}) {
        frame->SendMessage(WM_COMMAND, id);
    }
    EXPECT_EQ(log, (Log{"view", "view", "frame", "program"}));
    log.clear();
    frame->SetActiveView(nullptr);
    frame->SendMessage(WM_COMMAND, everybodysCommand);
    EXPECT_EQ(log, (Log{"passive 0", "frame"}));
}

TEST_F(CFrameWndTest, MenuItemsShowWhatTheirCommandsCanDo)
{
    CMenu menu;
    menu.CreatePopupMenu();
    for (UINT id : {viewCommand, frameCommand, nobodysCommand, everybodysCommand}) {
        menu.AppendMenu(MF_STRING, id, L"Item");
    }
    const auto open = [&] {
        frame->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu.GetSafeHmenu()), 0);
    };
    const auto isGrey = [&](UINT id) {
        return (menu.GetMenuState(id, MF_BYCOMMAND) & MF_GRAYED) != 0;
    };
    open();
    EXPECT_FALSE(isGrey(viewCommand));
    EXPECT_FALSE(isGrey(frameCommand));
    EXPECT_TRUE(isGrey(nobodysCommand));
    EXPECT_TRUE(menu.GetMenuState(everybodysCommand, MF_BYCOMMAND) & MF_CHECKED);
    CString text;
    menu.GetMenuString(everybodysCommand, text, MF_BYCOMMAND);
    EXPECT_EQ(text, L"Checked");

    menu.EnableMenuItem(nobodysCommand, MF_BYCOMMAND | MF_ENABLED);
    frame->m_bAutoMenuEnable = FALSE;
    open();
    EXPECT_FALSE(isGrey(nobodysCommand));
}

TEST_F(CFrameWndTest, AcceleratorsWorkWhereverTheFocusIsInTheFrame)
{
    ACCEL key{FVIRTKEY, VK_F9, static_cast<WORD>(frameCommand)};
    frame->m_hAccelTable = ::CreateAcceleratorTableW(&key, 1);
    EXPECT_EQ(::GetFocus(), frame->GetActiveView()->GetSafeHwnd());
    TypeKey(VK_F9);
    EXPECT_EQ(log, (Log{"frame"}));
    ::DestroyAcceleratorTable(frame->m_hAccelTable);
}

TEST_F(CFrameWndTest, ClickedViewBecomesActiveAndGoesWithoutTrace)
{
    CView* const first = frame->GetActiveView();
    CView* const second = AddView(AFX_IDW_PANE_FIRST + 1);
    ASSERT_NE(second, nullptr);
    first->MoveWindow(0, 0, 100, 100);
    second->MoveWindow(100, 0, 100, 100);
    ClickLeft(*second, {20, 20});
    EXPECT_EQ(frame->GetActiveView(), second);
    EXPECT_EQ(::GetFocus(), second->GetSafeHwnd());
    EXPECT_EQ(log, (Log{"passive 0", "active 1"}));
    log.clear();
    second->DestroyWindow();
    EXPECT_EQ(frame->GetActiveView(), nullptr);
    EXPECT_EQ(log, (Log{"passive 1", "view deleted"}));
}

TEST_F(CFrameWndTest, ViewThatCannotBeMadeLeavesNothing)
{
    TestView::refusesCreation = true;
    EXPECT_EQ(AddView(AFX_IDW_PANE_FIRST + 1), nullptr);
    EXPECT_EQ(log, (Log{"view deleted"}));
    EXPECT_EQ(frame->GetDlgItem(AFX_IDW_PANE_FIRST + 1), nullptr);

    log.clear();
    CCreateContext context;
    context.m_pNewViewClass = RUNTIME_CLASS(TestView);
    auto* const refused = new TestFrame;  // whose view refuses: deletes itself
    EXPECT_FALSE(refused->Create(nullptr, L"Refused", WS_OVERLAPPEDWINDOW, CRect(0, 0, 50, 50),
                                 nullptr, nullptr, 0, &context));
    EXPECT_EQ(log, (Log{"view deleted", "frame deleted"}));
}

TEST_F(CFrameWndTest, StatusBarTakesTheBottomAndTheViewTheRest)
{
    CStatusBar bar;
    ASSERT_TRUE(bar.Create(frame));
    frame->RecalcLayout();
    CRect client;
    CRect view;
    CRect bottom;
    frame->GetClientRect(&client);
    frame->GetActiveView()->GetWindowRect(&view);
    bar.GetWindowRect(&bottom);
    frame->ScreenToClient(&view);
    frame->ScreenToClient(&bottom);
    EXPECT_GT(bottom.Height(), 10);
    EXPECT_EQ(bottom, CRect(0, client.bottom - bottom.Height(), client.right, client.bottom));
    EXPECT_EQ(view, CRect(0, 0, client.right, bottom.top));

    bar.ShowWindow(SW_HIDE);
    frame->RecalcLayout();
    frame->GetActiveView()->GetWindowRect(&view);
    EXPECT_EQ(view.Height(), client.Height());
    bar.DestroyWindow();
}

TEST_F(CFrameWndTest, EndOfTheMainFrameEndsTheProgram)
{
    TestProgram program;
    program.m_pMainWnd = frame;
    frame->SendMessage(WM_COMMAND, ID_APP_EXIT);
    EXPECT_FALSE(::IsWindow(handle));
    EXPECT_EQ(program.m_pMainWnd, nullptr);
    EXPECT_EQ(log, (Log{"passive 0", "view deleted", "frame deleted"}));
    EXPECT_EQ(program.Run(), 0);  // the request to end is already in the queue
}
