#include "autocomplete/PopupKit.h"
#include "support/TestThread.h"

#include <afxwin.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>

namespace {

TEST_F(PopupTest, KeysWalkTheListAndBringTheTypedTextBack)
{
    EXPECT_FALSE(YAutoComplete::CreateAndAttach(edit, source.Get(), &sink, true));
    TypeAndAwaitList('A');
    for (const wchar_t* text : {L"a1", L"a2", L"a3", L"a", L"a1"}) {
        TypeKey(VK_DOWN);
        EXPECT_EQ(GetText(), text);
    }
    for (const wchar_t* text : {L"a", L"a3", L"a2"}) {
        TypeKey(VK_UP);
        EXPECT_EQ(GetText(), text);
    }
    EXPECT_EQ(source->requests, Texts{L"a"});  // walking asks nobody
    TypeKey('B');
    EXPECT_EQ(GetText(), L"a2b");
    EXPECT_EQ(source->requests.back(), L"a2b");
}

TEST_F(PopupTest, TabWalksAndEscapeEmpties)
{
    TypeAndAwaitList('A');
    TypeKey(VK_TAB);
    EXPECT_EQ(GetText(), L"a1");
    EXPECT_EQ(::GetFocus(), edit);
    TypeKey(VK_ESCAPE);
    EXPECT_EQ(GetText(), L"");
    EXPECT_FALSE(IsShown());
    EXPECT_EQ(::GetFocus(), edit);
}

TEST_F(PopupTest, ReturnAcceptsTheRowOrWhatWasTyped)
{
    TypeAndAwaitList('A');
    TypeKey(VK_RETURN);
    EXPECT_FALSE(IsShown());
    TypeAndAwaitList('B');
    TypeKey(VK_DOWN);
    TypeKey(VK_RETURN);
    EXPECT_EQ(sink.accepted, (Texts{L"a", L"ab1 list"}));
    EXPECT_EQ(GetText(), L"ab");
    EXPECT_FALSE(IsShown());
}

TEST_F(PopupTest, AClickAcceptsHoweverSlow)
{
    TypeAndAwaitList('A');
    MovePointer(GetList(), GetRow(0));
    MovePointer(GetList(), GetRow(1));
    EXPECT_EQ(::SendMessageW(GetList(), LVM_GETITEMSTATE, 1, LVIS_SELECTED), LVIS_SELECTED);
    PressLeft(GetList(), GetRow(1));
    EXPECT_TRUE(IsShown());
    EXPECT_EQ(::GetFocus(), edit);
    ReleaseLeft(GetList(), GetRow(1));
    EXPECT_TRUE(PumpUntil([&] { return !sink.accepted.empty(); }));
    EXPECT_EQ(sink.accepted, Texts{L"a2 list"});
    EXPECT_TRUE(PumpUntil([] { return !IsShown(); }));
    // A window manager may take the focus for the pop-up's sake, and gives it back.
    EXPECT_TRUE(PumpUntil([&] { return ::GetFocus() == edit; }));
}

// Some lists wait for the release inside the press, and tell of the click there.
LRESULT WINAPI ClickInsideThePress(WNDPROC previous, HWND list, UINT message, WPARAM wParam,
                                   LPARAM lParam)
{
    const LRESULT result = ::CallWindowProcW(previous, list, message, wParam, lParam);
    if (message == WM_LBUTTONDOWN) {
        NMITEMACTIVATE click{};
        click.hdr = {list, 0, static_cast<UINT>(NM_CLICK)};
        ::SendMessageW(::GetParent(list), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&click));
    }
    return result;
}

TEST_F(PopupTest, TheSinkDecidesWhereTheFocusGoes)
{
    const ImportHook list(L"CommonUi.dll", "user32.dll", "CallWindowProcW", &ClickInsideThePress);
    TypeAndAwaitList('A');
    sink.atAccept = [&] {
        EXPECT_EQ(::GetFocus(), edit);
        ::SetFocus(top);
    };
    PressLeft(GetList(), GetRow(0));
    EXPECT_EQ(sink.accepted, Texts{L"a1 list"});
    EXPECT_EQ(::GetFocus(), top.m_hWnd);
    sink.atAccept = nullptr;
    ReleaseLeft(top, {300, 200});
}

TEST_F(PopupTest, HidesWhenItsPlaceOrTheUsersAttentionChanges)
{
    const std::function<void()> changes[] = {
        [&] { top.SetWindowPos(nullptr, 140, 140, 0, 0, SWP_NOSIZE | SWP_NOZORDER); },
        [&] {
            ClickLeft(top, {300, 200});
        },
        [&] { top.SendMessage(WM_ENTERMENULOOP); },
        [&] { top.SendMessage(WM_NCMBUTTONDOWN, HTCAPTION); },
    };
    for (const auto& change : changes) {
        TypeAndAwaitList('A');
        change();
        EXPECT_TRUE(PumpUntil([] { return !IsShown(); }));
    }
}

TEST_F(PopupTest, ThreeRowsNeedNoScrollBar)
{
    TypeAndAwaitList('A');
    EXPECT_FALSE(::GetWindowLongW(GetList(), GWL_STYLE) & WS_VSCROLL);
    RECT popup{};
    RECT place{};
    ::GetWindowRect(GetPopup(), &popup);
    ::GetWindowRect(edit, &place);
    EXPECT_EQ(popup.left, place.left);
    EXPECT_EQ(popup.top, place.bottom);
    EXPECT_EQ(popup.right - popup.left, place.right - place.left);
}

TEST_F(PopupTest, ShowsNothingWithoutFocusOrRows)
{
    TypeAndAwaitList('A');
    ::SetFocus(top);
    EXPECT_TRUE(PumpUntil([] { return !IsShown(); }));
    source->Answer(L"a", {L"late"});
    PumpMessages();
    EXPECT_FALSE(IsShown());
    ::SetFocus(edit);
    source->Answer(L"a", {L"late"});
    EXPECT_TRUE(PumpUntil([] { return IsShown(); }));
    source->Answer(L"a", {});
    EXPECT_TRUE(PumpUntil([] { return !IsShown(); }));
}

TEST_F(PopupTest, ANewListTakesTheHighlightAndLeavesTheEdit)
{
    TypeAndAwaitList('A');
    TypeKey(VK_DOWN);
    source->Answer(L"a", {L"x", L"y"});
    PumpMessages();
    EXPECT_EQ(GetText(), L"a1");
    EXPECT_EQ(::SendMessageW(GetList(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED),
              -1);
    TypeKey(VK_DOWN);
    EXPECT_EQ(GetText(), L"x");
}

TEST_F(PopupTest, TheCornerSizesTheListForGood)
{
    TypeAndAwaitList('A');
    RECT before{};
    ::GetWindowRect(GetPopup(), &before);
    RECT client{};
    ::GetClientRect(GetPopup(), &client);
    std::atomic<bool> isDone = false;
    const HWND popup = GetPopup();
    MovePointer(popup, {client.right - 4, client.bottom - 4});  // whence the loop measures
    TestThread user([&] {  // sizing is a loop of the system's on our thread
        DragLeft(popup, {client.right - 4, client.bottom - 4},
                 {client.right + 76, client.bottom + 46});
        isDone = true;
    });
    EXPECT_TRUE(PumpUntil([&] { return isDone.load(); }));
    EXPECT_EQ(::GetFocus(), edit);
    RECT after{};
    ::GetWindowRect(GetPopup(), &after);
    // The loop may end before it has looked at the last moves.
    EXPECT_GT(after.right, before.right);
    EXPECT_LE(after.right - before.right, 80);
    EXPECT_GT(after.bottom, before.bottom);
    EXPECT_LE(after.bottom - before.bottom, 50);
    TypeAndAwaitList('B');
    RECT kept{};
    ::GetWindowRect(GetPopup(), &kept);
    EXPECT_TRUE(::EqualRect(&kept, &after));
}

// The system's count of rows needs 17 bits here, its height 21.
TEST_F(PopupTest, AHundredThousandRowsFillHalfTheWindow)
{
    source->answersAtOnce = [](const std::wstring& text) { return Texts(100'000, text + L"!"); };
    TypeAndAwaitList('A');
    RECT popup{};
    RECT root{};
    ::GetWindowRect(GetPopup(), &popup);
    ::GetWindowRect(top, &root);
    EXPECT_EQ(popup.bottom - popup.top, (root.bottom - root.top) / 2);
}

// Every pair of what can happen to a shown list: it survives, and is usable afterwards, at the latest
// when the window manager has put the window where it wants it, which hides the list.
TEST_F(PopupTest, SurvivesEveryPairOfEvents)
{
    const std::function<void()> events[] = {
        [&] { ::SetFocus(top); },
        [&] { ::SetFocus(edit); },
        [&] { top.SetWindowPos(nullptr, 120, 130, 0, 0, SWP_NOSIZE | SWP_NOZORDER); },
        [&] { ::SetWindowPos(edit, nullptr, 12, 14, 180, 22, SWP_NOZORDER); },
        [&] { source->Answer(source->requests.back().c_str(), {L"other"}); },
        [&] { source->Answer(source->requests.back().c_str(), {}); },
        [&] { TypeKey(VK_DOWN); },
        [&] { TypeKey(VK_UP); },
        [&] { TypeKey(VK_RETURN); },
        [&] { TypeKey(VK_ESCAPE); },
        [&] { ClickLeft(GetList(), GetRow(0)); },
        [&] { ::SetWindowTextW(edit, L"host"); },
    };
    for (const auto& first : events) {
        for (const auto& second : events) {
            first();
            second();
            ASSERT_TRUE(PumpUntil([this] {
                ::SetForegroundWindow(top);
                ::SetFocus(edit);
                ::SetWindowTextW(edit, L"");
                ::SetWindowTextW(edit, L"q");
                PumpMessages();
                const bool wasShown = IsShown();
                TypeKey(VK_DOWN);
                return wasShown && GetText() == L"q1";
            }));
        }
    }
}

}  // namespace
