// Message maps: which handler gets a message, with which `this`, and where commands go.
#include "WindowTest.h"

#include <commctrl.h>

namespace {

constexpr UINT firstCommand = 100;
constexpr UINT lastCommand = 109;
const UINT registeredMessage = ::RegisterWindowMessageW(L"CommonUi message map test");

class BaseWindow : public CWnd
{
public:
    Log log;

protected:
    afx_msg void OnTimer(UINT_PTR id) { log.push_back("base timer " + std::to_string(id)); }
    afx_msg void OnShared() { log.push_back("base command"); }
    afx_msg LRESULT OnUser(WPARAM wParam, LPARAM lParam)
    {
        log.push_back("base user");
        return static_cast<LRESULT>(wParam) + lParam;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(BaseWindow, CWnd)
    ON_WM_TIMER()
    ON_MESSAGE(WM_USER, &BaseWindow::OnUser)
    ON_REGISTERED_MESSAGE(registeredMessage, &BaseWindow::OnUser)
    ON_COMMAND(1, &BaseWindow::OnShared)
END_MESSAGE_MAP()

// Adds one level as a template, as the control library does.
template <class Base>
class Layer : public Base
{
protected:
    afx_msg void OnMove(int x, int y)
    {
        this->log.push_back("move " + std::to_string(x) + " " + std::to_string(y));
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_TEMPLATE_MESSAGE_MAP(Layer, Base, Base)
    ON_WM_MOVE()
END_MESSAGE_MAP()

// A second base with state and a virtual operation of its own, which a wrong `this` would garble.
class Core
{
public:
    virtual ~Core() = default;
    virtual void OnSizeChange() { ++changes; }
    int OnCreate() { return 7; }  // not a handler: hidden by the one of the window

    int changes = 0;
    int marker = 0x5A5A5A5A;
};

class DerivedWindow : public Layer<BaseWindow>, public Core
{
public:
    int derivedMarker = 0x3C3C3C3C;

protected:
    afx_msg int OnCreate(CREATESTRUCT*)
    {
        const bool isIntact = marker == 0x5A5A5A5A && derivedMarker == 0x3C3C3C3C;
        log.push_back(isIntact ? "create" : "wrong this");
        return 0;
    }
    afx_msg void OnSize(UINT, int width, int height)
    {
        log.push_back("size " + std::to_string(width) + " " + std::to_string(height));
        OnSizeChange();
    }
    afx_msg void OnRange(UINT id) { log.push_back("range " + std::to_string(id)); }
    afx_msg void OnUpdateRange(CCmdUI* item) { item->Enable(item->m_nID != lastCommand); }
    afx_msg void OnChanged() { log.push_back("edit changed"); }
    afx_msg void OnListNotify(NMHDR* header, LRESULT* result)
    {
        log.push_back("notify " + std::to_string(header->idFrom));
        *result = 42;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(DerivedWindow, Layer<BaseWindow>)
    ON_WM_CREATE()
    ON_WM_SIZE()
    ON_COMMAND_RANGE(firstCommand, lastCommand, &DerivedWindow::OnRange)
    ON_UPDATE_COMMAND_UI_RANGE(firstCommand, lastCommand, &DerivedWindow::OnUpdateRange)
    ON_EN_CHANGE(5, &DerivedWindow::OnChanged)
    ON_NOTIFY(NM_CLICK, 6, &DerivedWindow::OnListNotify)
END_MESSAGE_MAP()

class MessageMapTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        ASSERT_TRUE(window.Create(nullptr, nullptr, WS_CHILD, CRect(0, 0, 50, 40), &top, 1));
        createLog = std::exchange(window.log, {});
    }

    DerivedWindow window;
    Log createLog;
};

}  // namespace

TEST_F(MessageMapTest, HandlersOfAllBasesGetTheirOwnThis)
{
    // The system's own first messages already passed through the whole chain.
    EXPECT_EQ(createLog, (Log{"create", "size 50 40", "move 0 0"}));
    EXPECT_EQ(window.changes, 1);
    window.SendMessage(WM_TIMER, 3);
    EXPECT_EQ(window.SendMessage(WM_USER, 40, 2), 42);
    EXPECT_EQ(window.SendMessage(registeredMessage, 1, 2), 3);
    EXPECT_EQ(window.log, (Log{"base timer 3", "base user", "base user"}));
}

TEST_F(MessageMapTest, CommandRangesCallWithTheIdAndDisabledCommandsDoNotRun)
{
    for (UINT id :
         {firstCommand - 1, firstCommand, lastCommand - 1, lastCommand, lastCommand + 1}) {
        window.SendMessage(WM_COMMAND, id);
    }
    // The last one is disabled by its update handler, whichever way the command came.
    EXPECT_EQ(window.log, (Log{"range 100", "range 108"}));
}

TEST_F(MessageMapTest, ControlsNotifyByIdAndCode)
{
    CEdit edit;
    ASSERT_TRUE(edit.Create(WS_CHILD, CRect(0, 0, 10, 10), &window, 5));
    edit.SetWindowText(L"x");
    NMHDR header{edit, 6, NM_CLICK};
    EXPECT_EQ(window.SendMessage(WM_NOTIFY, 6, reinterpret_cast<LPARAM>(&header)), 42);
    header.code = NM_DBLCLK;
    EXPECT_EQ(window.SendMessage(WM_NOTIFY, 6, reinterpret_cast<LPARAM>(&header)), 0);
    EXPECT_EQ(window.log, (Log{"edit changed", "notify 6"}));
}

// Reflection: a parent hands a control's notifications back before it looks itself.

namespace {

class SelfReliantEdit : public CEdit
{
public:
    explicit SelfReliantEdit(Log& shared) : log(shared) {}

    Log& log;
    CBrush brush;

protected:
    afx_msg void OnChange() { log.push_back("edit itself"); }
    afx_msg HBRUSH CtlColor(CDC* dc, UINT type)
    {
        log.push_back(type == CTLCOLOR_EDIT && dc != nullptr ? "colour" : "wrong colour");
        return brush;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(SelfReliantEdit, CEdit)
    ON_CONTROL_REFLECT(EN_CHANGE, &SelfReliantEdit::OnChange)
    ON_WM_CTLCOLOR_REFLECT()
END_MESSAGE_MAP()

// A scroll bar that tells whether it is asked itself, or its parent by the bar.
class RecordingBar : public CScrollBar
{
public:
    Log log;

protected:
    afx_msg void VScroll(UINT code, UINT position)
    {
        log.push_back("itself " + std::to_string(code) + " " + std::to_string(position));
    }
    afx_msg void OnVScroll(UINT code, UINT position, CScrollBar* bar)
    {
        log.push_back(bar == nullptr ? "own" : "bar " + std::to_string(bar->GetDlgCtrlID()));
        CScrollBar::OnVScroll(code, position, bar);
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(RecordingBar, CScrollBar)
    ON_WM_VSCROLL_REFLECT()
    ON_WM_VSCROLL()
END_MESSAGE_MAP()

}  // namespace

TEST_F(MessageMapTest, ReflectedMessagesAreSettledByTheControl)
{
    SelfReliantEdit edit(window.log);
    ASSERT_TRUE(edit.Create(WS_CHILD, CRect(0, 0, 10, 10), &window, 5));
    edit.SetWindowText(L"x");
    CClientDC dc(&edit);
    const auto ask = [&] {
        return reinterpret_cast<HBRUSH>(
            window.SendMessage(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc.GetSafeHdc()),
                               reinterpret_cast<LPARAM>(edit.GetSafeHwnd())));
    };
    EXPECT_NE(ask(), nullptr);  // the system's, through the parent
    ASSERT_TRUE(edit.brush.CreateSolidBrush(RGB(1, 2, 3)));
    EXPECT_EQ(ask(), static_cast<HBRUSH>(edit.brush));
    EXPECT_EQ(window.log, (Log{"edit itself", "colour", "colour"}));  // not "edit changed", too
}

TEST_F(MessageMapTest, ScrollBarControlGetsItsMessagesThroughTheParent)
{
    RecordingBar parent;
    ASSERT_TRUE(parent.Create(WS_CHILD, CRect(0, 0, 50, 50), &top, 2));
    RecordingBar bar;
    ASSERT_TRUE(bar.Create(WS_CHILD | SBS_VERT, CRect(0, 0, 17, 50), &parent, 3));
    parent.SendMessage(WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 12),
                       reinterpret_cast<LPARAM>(bar.GetSafeHwnd()));
    parent.SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);
    EXPECT_EQ(parent.log, (Log{"bar 3", "own"}));
    EXPECT_EQ(bar.log, (Log{"itself 4 12"}));
}
