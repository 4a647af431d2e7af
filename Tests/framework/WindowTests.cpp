// The life of windows and of the objects that stand for them.
#include "WindowTest.h"

#include "support/LeakCheck.h"

#include <stdexcept>

namespace {

// Says when it goes, in which state, and may refuse to live or throw.
class MortalWindow : public CWnd
{
public:
    explicit MortalWindow(Log& shared) : log(shared) {}
    ~MortalWindow() override { log.push_back("deleted"); }

    enum class Fault {
        None,
        RefuseBefore,
        UnknownClass,
        RefuseNcCreate,
        RefuseCreate,
        ThrowInCreate,
        ThrowBeforeMessages
    };
    Fault fault = Fault::None;

    void PreSubclassWindow() override
    {
        if (fault == Fault::ThrowBeforeMessages) {
            throw std::runtime_error("PreSubclassWindow");
        }
    }

    BOOL PreCreateWindow(CREATESTRUCT& cs) override
    {
        if (fault == Fault::UnknownClass) {
            cs.lpszClass = L"No such class";
        }
        return fault != Fault::RefuseBefore && CWnd::PreCreateWindow(cs);
    }

    afx_msg BOOL OnNcCreate(CREATESTRUCT* create)
    {
        return fault != Fault::RefuseNcCreate && CWnd::OnNcCreate(create);
    }

    afx_msg int OnCreate(CREATESTRUCT*)
    {
        if (fault == Fault::ThrowInCreate) {
            AfxThrowResourceException();
        }
        return fault == Fault::RefuseCreate ? -1 : 0;
    }

    afx_msg void OnDestroy()
    {
        log.push_back("destroy");
        CWnd::OnDestroy();
    }

    void PostNcDestroy() override
    {
        log.push_back(m_hWnd == nullptr ? "post destroy" : "post destroy with window");
        delete this;
    }

protected:
    Log& log;
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(MortalWindow, CWnd)
    ON_WM_NCCREATE()
    ON_WM_CREATE()
    ON_WM_DESTROY()
END_MESSAGE_MAP()

struct CreationFault
{
    const char* name;
    MortalWindow::Fault fault;
};

class CreationFailure : public WindowTest, public testing::WithParamInterface<CreationFault>
{};

}  // namespace

TEST_P(CreationFailure, LeavesNoWindowAndTellsTheObjectOnce)
{
    const auto create = [&](Log& log) {
        auto* const window = new MortalWindow(log);
        window->fault = GetParam().fault;
        return window->CreateEx(0, nullptr, nullptr, WS_CHILD, CRect(0, 0, 9, 9), &top, 1);
    };
    Log log;
    create(log);  // what the system makes once
    log.clear();
    LeakCheck leaks;
    EXPECT_FALSE(create(log));
    std::erase(log, "destroy");  // some systems send WM_DESTROY after a failed WM_CREATE
    EXPECT_EQ(log, (Log{"post destroy", "deleted"}));
    EXPECT_EQ(::GetWindow(top, GW_CHILD), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, CreationFailure,
    testing::Values(CreationFault{"Refused", MortalWindow::Fault::RefuseBefore},
                    CreationFault{"ClassUnknown", MortalWindow::Fault::UnknownClass},
                    CreationFault{"NcCreateFalse", MortalWindow::Fault::RefuseNcCreate},
                    CreationFault{"CreateMinusOne", MortalWindow::Fault::RefuseCreate},
                    CreationFault{"CreateThrows", MortalWindow::Fault::ThrowInCreate},
                    CreationFault{"ThrowsInTheHook", MortalWindow::Fault::ThrowBeforeMessages}),
    CaseName());

namespace {

class WindowLife : public WindowTest
{
protected:
    // A child that deletes itself.
    MortalWindow* MakeMortal()
    {
        auto* const window = new MortalWindow(log);
        EXPECT_TRUE(window->CreateEx(0, nullptr, nullptr, WS_CHILD, CRect(0, 0, 9, 9), &top, 1));
        return window;
    }

    Log log;
};

// Makes a plain window of the system while it is created itself.
class BusyCreator : public CWnd
{
public:
    HWND raw = nullptr;
    CEdit edit;

protected:
    afx_msg int OnCreate(CREATESTRUCT*)
    {
        raw = ::CreateWindowW(L"STATIC", L"", WS_CHILD, 0, 0, 5, 5, m_hWnd, nullptr, nullptr,
                              nullptr);
        return edit.Create(WS_CHILD, CRect(0, 0, 5, 5), this, 2) ? 0 : -1;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(BusyCreator, CWnd)
    ON_WM_CREATE()
END_MESSAGE_MAP()

class CountingEdit : public CEdit
{
public:
    int characters = 0;
    int creates = 0;

protected:
    afx_msg int OnCreate(CREATESTRUCT* create)
    {
        ++creates;
        return CEdit::OnCreate(create);
    }
    afx_msg void OnChar(UINT character, UINT repeat, UINT flags)
    {
        ++characters;
        CEdit::OnChar(character, repeat, flags);
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CountingEdit, CEdit)
    ON_WM_CREATE()
    ON_WM_CHAR()
END_MESSAGE_MAP()

CString TextOf(const CWnd& window)
{
    CString text;
    window.GetWindowText(text);
    return text;
}

}  // namespace

TEST_F(WindowLife, ObjectLetsGoOfItsWindowBeforeItDeletesItself)
{
    MortalWindow* const window = MakeMortal();
    const HWND handle = *window;
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), window);
    EXPECT_TRUE(window->DestroyWindow());
    EXPECT_EQ(log, (Log{"destroy", "post destroy", "deleted"}));
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
}

TEST_F(WindowLife, ChildrenGoWithTheParent)
{
    MakeMortal();
    top.DestroyWindow();
    EXPECT_EQ(log, (Log{"destroy", "post destroy", "deleted"}));
}

TEST_F(WindowLife, OnlyTheAwaitedWindowIsTakenDuringCreation)
{
    BusyCreator window;
    ASSERT_TRUE(window.Create(nullptr, nullptr, WS_CHILD, CRect(0, 0, 9, 9), &top, 1));
    EXPECT_NE(window.raw, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(window.raw), nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(window.edit), &window.edit);
}

TEST_F(WindowLife, CreatedSystemControlReachesItsObjectFromTheFirstMessageOn)
{
    CountingEdit edit;
    ASSERT_TRUE(edit.Create(WS_CHILD, CRect(0, 0, 50, 20), &top, 1));
    EXPECT_EQ(edit.creates, 1);
    edit.SendMessage(WM_CHAR, L'a', 1);
    EXPECT_EQ(edit.characters, 1);
    EXPECT_EQ(TextOf(edit), L"a");  // the control's own procedure got it, too
}

TEST_F(WindowLife, SubclassingAddsTheObjectAndUnsubclassingTakesItAway)
{
    const HWND handle = ::CreateWindowW(L"EDIT", L"", WS_CHILD, 0, 0, 50, 20, top,
                                        reinterpret_cast<HMENU>(7), nullptr, nullptr);
    const LONG_PTR before = ::GetWindowLongPtrW(handle, GWLP_WNDPROC);
    CountingEdit edit;
    ASSERT_TRUE(edit.SubclassDlgItem(7, &top));
    EXPECT_FALSE(CWnd().SubclassWindow(handle));  // it has an object
    ::SendMessageW(handle, WM_CHAR, L'a', 1);
    EXPECT_EQ(edit.UnsubclassWindow(), handle);
    ::SendMessageW(handle, WM_CHAR, L'b', 1);
    EXPECT_EQ(edit.characters, 1);
    EXPECT_EQ(edit.GetSafeHwnd(), nullptr);
    EXPECT_EQ(TextOf(*CWnd::FromHandle(handle)), L"ab");
    EXPECT_EQ(::GetWindowLongPtrW(handle, GWLP_WNDPROC), before);
}

namespace {

WNDPROC procedureBelow = nullptr;
int charactersOnTop = 0;

LRESULT CALLBACK OnTop(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    charactersOnTop += message == WM_CHAR ? 1 : 0;
    return ::CallWindowProcW(procedureBelow, window, message, wParam, lParam);
}

}  // namespace

TEST_F(WindowLife, ObjectGoesFromUnderALaterSubclassWithoutBreakingIt)
{
    const HWND handle =
        ::CreateWindowW(L"EDIT", L"", WS_CHILD, 0, 0, 50, 20, top, nullptr, nullptr, nullptr);
    CountingEdit edit;
    ASSERT_TRUE(edit.SubclassWindow(handle));
    procedureBelow = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OnTop)));
    edit.UnsubclassWindow();
    charactersOnTop = 0;
    ::SendMessageW(handle, WM_CHAR, L'a', 1);
    EXPECT_EQ(charactersOnTop, 1);
    EXPECT_EQ(edit.characters, 0);
    EXPECT_EQ(TextOf(*CWnd::FromHandle(handle)), L"a");
    ::DestroyWindow(handle);
}

TEST_F(WindowLife, SubclassedWindowThatDiesLeavesItsObjectFree)
{
    const HWND handle =
        ::CreateWindowW(L"EDIT", L"", WS_CHILD, 0, 0, 50, 20, top, nullptr, nullptr, nullptr);
    CountingEdit edit;
    ASSERT_TRUE(edit.SubclassWindow(handle));
    ::DestroyWindow(handle);
    EXPECT_EQ(edit.GetSafeHwnd(), nullptr);
    EXPECT_FALSE(edit.SubclassWindow(handle));
    EXPECT_FALSE(edit.SubclassWindow(::GetDesktopWindow()));
    EXPECT_EQ(edit.GetSafeHwnd(), nullptr);
}

TEST_F(WindowLife, TemporaryObjectsHoldUntilIdleTimeAndNeverOwn)
{
    const HWND handle =
        ::CreateWindowW(L"EDIT", L"", WS_CHILD, 0, 0, 50, 20, top, nullptr, nullptr, nullptr);
    CWnd* const temporary = CWnd::FromHandle(handle);
    EXPECT_EQ(CWnd::FromHandle(handle), temporary);
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
    {
        CWnd attached;
        ASSERT_TRUE(attached.Attach(handle));
        EXPECT_EQ(CWnd::FromHandle(handle), &attached);
        EXPECT_EQ(temporary->GetSafeHwnd(), handle);  // still usable
        EXPECT_EQ(attached.Detach(), handle);
    }
    EXPECT_NE(CWnd::FromHandle(handle), nullptr);
    CWinThread().OnIdle(1);
    EXPECT_TRUE(::IsWindow(handle));
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
}

TEST_F(WindowLife, DescendantsGetMessagesThoughOneOfThemGoes)
{
    MakeMortal();
    MakeMortal();
    top.SendMessageToDescendants(WM_CLOSE);
    EXPECT_EQ(::GetWindow(top, GW_CHILD), nullptr);
    EXPECT_EQ(log.size(), 6U);
}

// Exceptions in handlers end at the window procedure; the window lives on.

namespace {

class ThrowingWindow : public CWnd
{
public:
    int paints = 0;

protected:
    afx_msg void OnPaint()
    {
        ++paints;
        throw std::runtime_error("paint");
    }
    afx_msg void OnCommandThatThrows() { AfxThrowUserException(); }
    afx_msg LRESULT OnUser(WPARAM, LPARAM) { throw 5; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(ThrowingWindow, CWnd)
    ON_WM_PAINT()
    ON_COMMAND(1, &ThrowingWindow::OnCommandThatThrows)
    ON_MESSAGE(WM_USER, &ThrowingWindow::OnUser)
END_MESSAGE_MAP()

}  // namespace

TEST_F(WindowLife, NoExceptionLeavesTheWindowProcedure)
{
    ThrowingWindow window;
    ASSERT_TRUE(
        window.Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, CRect(0, 0, 50, 50), &top, 1));
    EXPECT_EQ(window.SendMessage(WM_COMMAND, 1), 0);
    EXPECT_EQ(window.SendMessage(WM_USER), 0);
    ShowTop();
    EXPECT_EQ(window.paints, 1);  // and not again and again: what was to be painted is valid
    EXPECT_FALSE(::GetUpdateRect(window, nullptr, FALSE));
    EXPECT_TRUE(::IsWindow(window));
}
