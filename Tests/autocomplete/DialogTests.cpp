// The list in the windows of real hosts: dialogs, menus, boxes, windows that move and lose the user.
#include "autocomplete/DialogIds.h"
#include "autocomplete/PopupKit.h"
#include "support/TestThread.h"

#include <afxwin.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>

namespace {

WNDPROC editProcedure = nullptr;

LRESULT CALLBACK AllKeysProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const LRESULT result = ::CallWindowProcW(editProcedure, window, message, wParam, lParam);
    return message == WM_GETDLGCODE ? result | DLGC_WANTALLKEYS : result;
}

INT_PTR CALLBACK KeepDefaultFocus(HWND, UINT message, WPARAM, LPARAM)
{
    return message == WM_INITDIALOG;
}

// Keeps which of its buttons were pressed; Cancel closes it.
class Dialog : public CWnd
{
public:
    void Open()
    {
        const HMODULE program = ::GetModuleHandleW(nullptr);
        ASSERT_TRUE(SubclassWindow(::CreateDialogParamW(program, MAKEINTRESOURCEW(IDD_COMPLETION),
                                                        nullptr, &KeepDefaultFocus, 0)));
    }
    BOOL PreTranslateMessage(MSG* message) override { return IsDialogMessage(message); }

    std::vector<int> pressed;

protected:
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override
    {
        const int id = LOWORD(wParam);
        if (id != IDOK && id != IDCANCEL && id != IDC_OTHER) {
            return CWnd::OnCommand(wParam, lParam);
        }
        pressed.push_back(id);
        if (id == IDCANCEL) {
            DestroyWindow();
        }
        return TRUE;
    }
};

class DialogTest : public CompletionTest
{
protected:
    static void SetUpTestSuite()
    {
        WNDCLASSW description{};
        ::GetClassInfoW(nullptr, L"EDIT", &description);
        editProcedure = std::exchange(description.lpfnWndProc, &AllKeysProcedure);
        description.hInstance = ::GetModuleHandleW(nullptr);
        description.lpszClassName = L"" ALL_KEYS_EDIT;
        ASSERT_TRUE(::RegisterClassW(&description));
    }
    static void TearDownTestSuite()
    {
        ::UnregisterClassW(L"" ALL_KEYS_EDIT, ::GetModuleHandleW(nullptr));
    }
    void SetUp() override
    {
        dialog.Open();
        Attach(GetControl(IDC_COMPLETED));
        Attach(GetControl(IDC_ALL_KEYS));
    }
    void TearDown() override
    {
        dialog.DestroyWindow();
        CompletionTest::TearDown();
    }
    HWND GetControl(int id) const { return ::GetDlgItem(dialog, id); }
    std::wstring GetText(int id) const { return GetTextOf(GetControl(id)); }
    int GetFocusId() const { return ::GetDlgCtrlID(::GetFocus()); }

    Dialog dialog;
};

TEST_F(DialogTest, TabWalksTheListAndNeverTheDialog)
{
    ASSERT_TRUE(Activate(GetControl(IDC_COMPLETED)));
    const auto expectAfter = [this](std::initializer_list<WORD> keys, const wchar_t* text) {
        TypeChord(keys);
        EXPECT_EQ(GetFocusId(), IDC_COMPLETED);
        EXPECT_EQ(GetText(IDC_COMPLETED), text);
    };
    expectAfter({VK_TAB}, L"");  // there is no list yet
    expectAfter({VK_SHIFT, VK_TAB}, L"");
    TypeAndAwaitList('A');
    expectAfter({VK_TAB}, L"a1");
    expectAfter({VK_TAB}, L"a2");
    expectAfter({VK_SHIFT, VK_TAB}, L"a1");
    expectAfter({VK_SHIFT, VK_TAB}, L"a");
    expectAfter({VK_SHIFT, VK_TAB}, L"a3");
    expectAfter({VK_TAB}, L"a");
    EXPECT_TRUE(dialog.pressed.empty());
}

TEST_F(DialogTest, EscapeEmptiesTheEditAndTheDialogStays)
{
    ASSERT_TRUE(Activate(GetControl(IDC_COMPLETED)));
    TypeAndAwaitList('A');
    TypeKey(VK_ESCAPE);
    EXPECT_EQ(GetText(IDC_COMPLETED), L"");
    EXPECT_EQ(source->requests.back(), L"");
    EXPECT_FALSE(IsShown());
    TypeKey(VK_ESCAPE);  // nothing to empty, nothing to hide
    EXPECT_TRUE(dialog.IsWindowVisible());
    EXPECT_TRUE(dialog.pressed.empty());
}

TEST_F(DialogTest, AnEditWithoutCompletionIsLeftAlone)
{
    ASSERT_TRUE(Activate(GetControl(IDC_PLAIN)));
    TypeKey('X');
    EXPECT_FALSE(IsShown());
    TypeKey(VK_TAB);
    EXPECT_EQ(GetFocusId(), IDC_COMPLETED);
    ::SetFocus(GetControl(IDC_PLAIN));
    TypeChord({VK_SHIFT, VK_TAB});
    EXPECT_EQ(GetFocusId(), IDCANCEL);
    ::SetFocus(GetControl(IDC_PLAIN));
    TypeKey(VK_ESCAPE);
    EXPECT_EQ(dialog.pressed, std::vector<int>{IDCANCEL});
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

// The dialog takes Return before an edit sees it, unless the edit's class wants all keys.
TEST_F(DialogTest, ReturnIsTheDefaultButtonsUnlessTheEditWantsAllKeys)
{
    ASSERT_TRUE(Activate(GetControl(IDC_COMPLETED)));
    TypeAndAwaitList('A');
    TypeKey(VK_DOWN);
    TypeKey(VK_RETURN);
    EXPECT_EQ(dialog.pressed, std::vector<int>{IDOK});
    EXPECT_TRUE(sink.accepted.empty());

    ASSERT_TRUE(Activate(GetControl(IDC_ALL_KEYS)));
    EXPECT_TRUE(PumpUntil([] { return !IsShown(); }));
    TypeAndAwaitList('B');
    TypeKey(VK_DOWN);
    TypeChord({VK_CONTROL, VK_RETURN});
    TypeKey(VK_RETURN);  // the hidden list has no row: what was typed
    EXPECT_EQ(sink.accepted, (Texts{L"b1 list ctrl", L"b"}));
    EXPECT_EQ(dialog.pressed.size(), 1u);
}

TEST_F(DialogTest, TheSinkMayDestroyTheDialog)
{
    const std::function<void()> acceptances[] = {
        [] { TypeKey(VK_RETURN); },
        [] { ClickLeft(GetList(), GetRow(0)); },
    };
    const LiveHooks hooks;
    sink.atAccept = [this] { dialog.DestroyWindow(); };
    for (const auto& accept : acceptances) {
        if (dialog.m_hWnd == nullptr) {
            dialog.Open();
            Attach(GetControl(IDC_ALL_KEYS));
        }
        ASSERT_TRUE(Activate(GetControl(IDC_ALL_KEYS)));
        TypeAndAwaitList('A');
        TypeKey(VK_DOWN);
        accept();
        EXPECT_EQ(dialog.m_hWnd, nullptr);
        EXPECT_FALSE(IsShown());
    }
    EXPECT_EQ(sink.accepted, (Texts{L"a1 list", L"a1 list"}));
    EXPECT_EQ(LiveHooks::Count(WH_GETMESSAGE) + LiveHooks::Count(WH_MOUSE), 0);
}

TEST_F(DialogTest, TheSinkMayShowABox)
{
    constexpr wchar_t caption[] = L"Accepted?";
    sink.atAccept = [&] { ::MessageBoxW(dialog, L"", caption, MB_OK); };
    ASSERT_TRUE(Activate(GetControl(IDC_ALL_KEYS)));
    TypeAndAwaitList('A');
    TypeKey(VK_DOWN);
    const HWND list = GetPopup();
    std::atomic<bool> wasHidden = false;
    TestThread user([&] {
        HWND box = nullptr;
        PumpUntil([&] {
            box = ::FindWindowW(L"#32770", caption);
            return ::IsWindowVisible(box);
        });
        wasHidden = PumpUntil([list] { return !::IsWindowVisible(list); });
        ::PostMessageW(box, WM_COMMAND, IDOK, 0);
    });
    TypeKey(VK_RETURN);
    user.Join();
    EXPECT_TRUE(wasHidden);
    EXPECT_EQ(sink.accepted, Texts{L"a1 list"});
    EXPECT_EQ(GetText(IDC_ALL_KEYS), L"a");
    EXPECT_TRUE(PumpUntil([this] { return GetFocusId() == IDC_ALL_KEYS; }));
    TypeAndAwaitList('B');
}

// The click that brings the dialog to the front again falls on the place of a row that is gone.
TEST_F(DialogTest, AClickWhereTheListWasOnlyActivates)
{
    ASSERT_TRUE(Activate(GetControl(IDC_ALL_KEYS)));
    TypeAndAwaitList('A');
    POINT point = GetRow(0);
    ::MapWindowPoints(GetList(), dialog, &point, 1);
    CWnd other;
    Open(other, 600);
    EXPECT_TRUE(PumpUntil([] { return !IsShown(); }));
    EXPECT_TRUE(PumpUntil([&] {
        ClickLeft(dialog, point);
        return GetFocusId() == IDC_ALL_KEYS;
    }));
    EXPECT_FALSE(IsShown());
    EXPECT_TRUE(sink.accepted.empty());
    EXPECT_EQ(GetText(IDC_ALL_KEYS), L"a");
    other.DestroyWindow();
}

class RootTest : public PopupTest
{};

TEST_F(RootTest, HidesWhenItsWindowChangesOrIsMinimised)
{
    const std::function<void()> changes[] = {
        [&] { ::SetWindowPos(edit, nullptr, 10, 20, 0, 0, SWP_NOSIZE | SWP_NOZORDER); },
        [&] { top.SetWindowPos(nullptr, 0, 0, 420, 300, SWP_NOMOVE | SWP_NOZORDER); },
        [&] { top.ShowWindow(SW_MINIMIZE); },
    };
    for (const auto& change : changes) {
        TypeAndAwaitList('A');
        change();
        EXPECT_TRUE(PumpUntil([] { return !IsShown(); }));
    }
}

// The window manager draws no caption for a tool window: its press is the system's own.
TEST_F(RootTest, APressOnTheCaptionHides)
{
    CWnd tool;
    Open(tool, 500, WS_EX_TOOLWINDOW);
    edit = MakeEdit(tool);
    Attach(edit);
    ASSERT_TRUE(Activate(edit));
    TypeAndAwaitList('A');
    const HWND list = GetPopup();
    std::atomic<bool> wasHidden = false;
    std::atomic<bool> isDone = false;
    TestThread user([&] {  // moving a window is a loop of the system's on our thread
        PressLeft(tool, {100, -8});
        wasHidden = PumpUntil([list] { return !::IsWindowVisible(list); });
        ReleaseLeft(tool, {100, -8});
        isDone = true;
    });
    EXPECT_TRUE(PumpUntil([&] { return isDone.load(); }));
    EXPECT_TRUE(wasHidden);
    tool.DestroyWindow();
}

// For the user the list is part of the window. The caption turns grey when another window, or a box
// that disables this one, takes over.
TEST_F(RootTest, TheCaptionStaysActiveOnlyWhileTheListIsUsed)
{
    const auto staysActive = [this] { return top.SendMessage(WM_NCACTIVATE, FALSE) == 0; };
    EXPECT_FALSE(staysActive());
    TypeAndAwaitList('A');
    EXPECT_TRUE(staysActive());
    top.EnableWindow(FALSE);
    EXPECT_FALSE(staysActive());
    top.EnableWindow(TRUE);
    CWnd other;
    Open(other, 600);
    ::SetForegroundWindow(other);  // nothing is pumped: the list is still there
    ASSERT_TRUE(IsShown());
    EXPECT_FALSE(staysActive());
    EXPECT_TRUE(PumpUntil([] { return !IsShown(); }));
    other.DestroyWindow();
}

TEST_F(RootTest, FollowsItsEditToAnotherParent)
{
    CWnd other;
    const HWND panel = ::CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 300, 200,
                                         top, nullptr, nullptr, nullptr);
    const auto move = [](HWND window) {
        RECT place{};
        ::GetWindowRect(window, &place);
        ::MapWindowPoints(nullptr, ::GetAncestor(window, GA_PARENT),
                          reinterpret_cast<POINT*>(&place), 1);
        ::SetWindowPos(window, nullptr, place.left + 3, place.top, 0, 0,
                       SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        PumpMessages();
    };
    ::SetParent(edit, panel);  // while hidden
    ASSERT_TRUE(Activate(edit));
    TypeAndAwaitList('A');
    EXPECT_EQ(source->requests.back(), L"a");
    Open(other, 600);
    ::SetParent(edit, other);  // while shown
    ASSERT_TRUE(Activate(edit));
    TypeAndAwaitList('B');
    EXPECT_EQ(source->requests.back(), L"ab");
    move(panel);
    move(top);  // neither is its parent any more
    EXPECT_TRUE(IsShown());
    ::DestroyWindow(panel);
    move(other);
    EXPECT_FALSE(IsShown());
    TypeAndAwaitList('C');
    EXPECT_EQ(source->requests.back(), L"abc");
    other.DestroyWindow();
}

bool IsInMenu(DWORD thread)
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return ::GetGUIThreadInfo(thread, &info) && (info.flags & GUI_INMENUMODE) != 0;
}

// While a menu is open, its keys still come under the name of the edit.
TEST_F(RootTest, HidesWhenAltOpensTheMenuAndLeavesItItsKeys)
{
    const HMENU bar = ::CreateMenu();
    ::AppendMenuW(bar, MF_STRING, 1, L"Item");
    ::SetMenu(top, bar);  // which destroys it
    TypeAndAwaitList('A');
    const HWND list = GetPopup();
    const DWORD thread = ::GetCurrentThreadId();
    std::atomic<bool> wasHidden = false;
    std::atomic<bool> isDone = false;
    TestThread user([&] {  // a menu is a loop of the system's on our thread
        TypeKey(VK_MENU);
        wasHidden = PumpUntil([&] { return IsInMenu(thread) && !::IsWindowVisible(list); });
        TypeKey(VK_ESCAPE);
        isDone = true;
    });
    EXPECT_TRUE(PumpUntil([&] { return isDone && !IsInMenu(thread); }));
    EXPECT_TRUE(wasHidden);
    EXPECT_EQ(GetText(), L"a");
    TypeAndAwaitList('B');
}

}  // namespace
