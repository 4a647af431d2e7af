// Frames and views: the route of commands, the active view, menus, layout, the end.
#include "WindowTest.h"

#include <afxext.h>

namespace {

constexpr UINT viewCommand = 200;
constexpr UINT frameCommand = 201;
constexpr UINT programCommand = 202;
constexpr UINT everybodysCommand = 203;
constexpr UINT nobodysCommand = 204;
constexpr UINT secondView = AFX_IDW_PANE_FIRST + 1;

Log* sharedLog = nullptr;

class TestView : public CView
{
    DECLARE_DYNCREATE(TestView)

    static inline bool refusesCreation = false;

    ~TestView() override { sharedLog->push_back("view deleted"); }

protected:
    void OnDraw(CDC*) override {}
    void OnActivateView(BOOL activate, CView* active, CView* previous) override
    {
        const std::string id = std::to_string(GetDlgCtrlID() - AFX_IDW_PANE_FIRST);
        sharedLog->push_back((activate ? "active " : "passive ") + id);
        CView::OnActivateView(activate, active, previous);
    }
    BOOL PreCreateWindow(CREATESTRUCT& create) override
    {
        return !refusesCreation && CView::PreCreateWindow(create);
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

IMPLEMENT_DYNCREATE(TestView, CView)

BEGIN_MESSAGE_MAP(TestView, CView)
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
        context.m_pNewViewClass = RUNTIME_CLASS(TestView);
        frame = new TestFrame;
        ASSERT_TRUE(CreateFrame(frame));
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
        TestView::refusesCreation = false;
    }

    BOOL CreateFrame(TestFrame* window)
    {
        return window->Create(nullptr, L"Frame", WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 300),
                              nullptr, nullptr, 0, &context);
    }

    CView* AddView() { return static_cast<CView*>(frame->CreateView(&context, secondView)); }

    CRect PlaceOf(CWnd& child)
    {
        CRect place;
        child.GetWindowRect(&place);
        frame->ScreenToClient(&place);
        return place;
    }

    Log log;
    CCreateContext context;
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
    for (UINT id : {viewCommand, nobodysCommand, everybodysCommand}) {
        menu.AppendMenu(MF_STRING, id, L"Item");
    }
    const auto open = [&] {
        frame->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu.GetSafeHmenu()), 0);
    };
    const auto stateOf = [&](UINT id) { return menu.GetMenuState(id, MF_BYCOMMAND); };
    open();
    EXPECT_EQ(stateOf(viewCommand), MF_ENABLED);
    EXPECT_EQ(stateOf(nobodysCommand) & MF_GRAYED, MF_GRAYED);
    EXPECT_EQ(stateOf(everybodysCommand), MF_CHECKED);
    CString text;
    menu.GetMenuString(everybodysCommand, text, MF_BYCOMMAND);
    EXPECT_EQ(text, L"Checked");

    menu.EnableMenuItem(nobodysCommand, MF_BYCOMMAND | MF_ENABLED);
    frame->m_bAutoMenuEnable = FALSE;
    open();
    EXPECT_EQ(stateOf(nobodysCommand), MF_ENABLED);
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
    CView* const second = AddView();
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
    EXPECT_EQ(AddView(), nullptr);
    EXPECT_EQ(log, (Log{"view deleted"}));
    EXPECT_EQ(frame->GetDlgItem(secondView), nullptr);

    log.clear();
    EXPECT_FALSE(CreateFrame(new TestFrame));  // deletes itself
    EXPECT_EQ(log, (Log{"view deleted", "frame deleted"}));
}

TEST_F(CFrameWndTest, StatusBarTakesTheBottomAndTheViewTheRest)
{
    CStatusBar bar;
    ASSERT_TRUE(bar.Create(frame));
    frame->RecalcLayout();
    CRect client;
    frame->GetClientRect(&client);
    const CRect bottom = PlaceOf(bar);
    EXPECT_GT(bottom.Height(), 10);
    EXPECT_EQ(bottom, CRect(0, client.bottom - bottom.Height(), client.right, client.bottom));
    EXPECT_EQ(PlaceOf(*frame->GetActiveView()), CRect(0, 0, client.right, bottom.top));

    bar.ShowWindow(SW_HIDE);
    frame->RecalcLayout();
    EXPECT_EQ(PlaceOf(*frame->GetActiveView()), client);
    bar.DestroyWindow();
}
