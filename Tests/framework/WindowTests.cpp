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

    enum class Fault { None, Unwanted, NoClass, ThrowInHook, Refuse, ThrowInCreate };
    Fault fault = Fault::None;

    void PreSubclassWindow() override
    {
        if (fault == Fault::ThrowInHook) {
            throw std::runtime_error("PreSubclassWindow");
        }
    }

    BOOL PreCreateWindow(CREATESTRUCT& cs) override
    {
        if (fault == Fault::NoClass) {
            cs.lpszClass = L"No such class";
        }
        return fault != Fault::Unwanted && CWnd::PreCreateWindow(cs);
    }

    afx_msg int OnCreate(CREATESTRUCT*)
    {
        if (fault == Fault::ThrowInCreate) {
            AfxThrowResourceException();
        }
        return fault == Fault::Refuse ? -1 : 0;
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
    ON_WM_CREATE()
    ON_WM_DESTROY()
END_MESSAGE_MAP()

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

    HWND MakeRawEdit()
    {
        return ::CreateWindowW(L"EDIT", L"", WS_CHILD, 0, 0, 50, 20, top,
                               reinterpret_cast<HMENU>(7), nullptr, nullptr);
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
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_CREATE) {
            raw = ::CreateWindowW(L"STATIC", L"", WS_CHILD, 0, 0, 5, 5, m_hWnd, nullptr, nullptr,
                                  nullptr);
            edit.Create(WS_CHILD, CRect(0, 0, 5, 5), this, 2);
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

class CountingEdit : public CEdit
{
public:
    int creates = 0;
    int characters = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        creates += message == WM_CREATE ? 1 : 0;
        characters += message == WM_CHAR ? 1 : 0;
        return CEdit::WindowProc(message, wParam, lParam);
    }
};

CString TextOf(const CWnd& window)
{
    CString text;
    window.GetWindowText(text);
    return text;
}

}  // namespace

TEST_F(WindowLife, FailedCreationLeavesNoWindowAndTellsTheObjectOnce)
{
    using Fault = MortalWindow::Fault;
    const auto create = [&](Fault fault) {
        auto* const window = new MortalWindow(log);
        window->fault = fault;
        return window->CreateEx(0, nullptr, nullptr, WS_CHILD, CRect(0, 0, 9, 9), &top, 1);
    };
    for (const Fault fault : {Fault::Unwanted, Fault::NoClass, Fault::ThrowInHook, Fault::Refuse,
                              Fault::ThrowInCreate}) {
        SCOPED_TRACE(static_cast<int>(fault));
        create(fault);  // what the system makes once
        log.clear();
        LeakCheck leaks;
        EXPECT_FALSE(create(fault));
        std::erase(log, "destroy");  // some systems send WM_DESTROY after a failed WM_CREATE
        EXPECT_EQ(log, (Log{"post destroy", "deleted"}));
        EXPECT_EQ(::GetWindow(top, GW_CHILD), nullptr);
    }
}

TEST_F(WindowLife, ObjectLetsGoOfItsWindowBeforeItDeletesItself)
{
    const HWND handle = *MakeMortal();
    top.DestroyWindow();  // children go with the parent
    EXPECT_EQ(log, (Log{"destroy", "post destroy", "deleted"}));
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
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
}

TEST_F(WindowLife, SubclassingAddsTheObjectAndUnsubclassingTakesItAway)
{
    const HWND handle = MakeRawEdit();
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
    const HWND handle = MakeRawEdit();
    CountingEdit edit;
    ASSERT_TRUE(edit.SubclassWindow(handle));
    procedureBelow = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OnTop)));
    edit.UnsubclassWindow();
    ::SendMessageW(handle, WM_CHAR, L'a', 1);
    EXPECT_EQ(std::exchange(charactersOnTop, 0), 1);
    EXPECT_EQ(edit.characters, 0);
    EXPECT_EQ(TextOf(*CWnd::FromHandle(handle)), L"a");
    ::DestroyWindow(handle);
}

TEST_F(WindowLife, SubclassedWindowThatDiesLeavesItsObjectFree)
{
    const HWND handle = MakeRawEdit();
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
    const HWND handle = MakeRawEdit();
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

namespace {

class ThrowingWindow : public CWnd
{
public:
    int paints = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        switch (message) {
        case WM_PAINT: ++paints; throw std::runtime_error("paint");
        case WM_COMMAND: AfxThrowUserException();
        case WM_USER: throw 5;
        default: return CWnd::WindowProc(message, wParam, lParam);
        }
    }
};

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
