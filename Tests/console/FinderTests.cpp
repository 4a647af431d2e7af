// The find box over a window of lines, used as its user does.
#include "ConsoleMessages.h"
#include "ConsoleText.h"
#include "FrameTest.h"
#include "LineRules.h"
#include "resource.h"
#include "support/ImportHook.h"

#include <YReportMessageParams.h>
#include <dlgs.h>

#include <algorithm>

namespace {

std::wstring shownMessage;
int shownMessages = 0;
HWND ownerOfMessage;

int WINAPI RecordMessage(HWND owner, LPCWSTR text, LPCWSTR, UINT)
{
    shownMessage = text;
    ownerOfMessage = owner;
    ++shownMessages;
    return IDOK;
}

class FinderTest : public FrameTest
{
protected:
    void SetUp() override
    {
        FrameTest::SetUp();
        shownMessages = 0;
    }
    HWND Box() const
    {
        for (HWND window = nullptr;
             (window = ::FindWindowExW(nullptr, window, L"#32770", nullptr)) != nullptr;) {
            if (::GetDlgItem(window, edt1) && ::GetWindow(window, GW_OWNER) == frame->m_hWnd) {
                return window;
            }
        }
        return nullptr;
    }
    bool OpenBox() const
    {
        TypeChord({VK_CONTROL, 'F'});
        return PumpUntil([&] { return Box() && ::GetForegroundWindow() == Box(); });
    }
    std::wstring BoxText() const { return GetTextOf(::GetDlgItem(Box(), edt1)); }
    bool IsBoxGone() const
    {
        return PumpUntil([&] { return !Box(); });
    }

    const ImportHook messages{L"CommonFramework.dll", "user32.dll", "MessageBoxW", &RecordMessage};
};

}  // namespace

TEST_F(FinderTest, FindsWhileOneTypesThenOnByReturnAndBackByShiftF3)
{
    ShowTexts({L"an apple", L"a pear, an APPLE", L"nothing", L"apricot"});
    View().GoToStart();
    ASSERT_TRUE(OpenBox());
    TypeText(L"ap");
    EXPECT_TRUE(PumpUntil([&] { return Found() == L"0:3"; }));
    TypeText(L"pl");
    EXPECT_EQ(Found(), L"0:3") << "what is found so far may go on";
    TypeKey(VK_RETURN);
    EXPECT_EQ(Found(), L"1:11");
    TypeKey(VK_RETURN);
    EXPECT_EQ(Found(), L"0:3");
    EXPECT_NE(StatusText().find(LoadText(IDS_SEARCH_WRAPPED)), std::wstring::npos);
    TypeKey(VK_ESCAPE);
    ASSERT_TRUE(IsBoxGone());
    ASSERT_TRUE(Activate(*frame));
    TypeChord({VK_SHIFT, VK_F3});
    EXPECT_EQ(Found(), L"1:11") << "the keys go on with what the box looked for";

    settings.SetChoices([&] {
        ConsoleChoices choices = settings.GetChoices();
        choices.findsWhileTyping = false;
        return choices;
    }());
    ASSERT_TRUE(OpenBox());
    EXPECT_EQ(BoxText(), L"APPL") << "what is selected";
    TypeText(L"noth");
    PumpMessages();
    EXPECT_EQ(Found(), L"1:11");
    TypeKey(VK_RETURN);
    EXPECT_EQ(Found(), L"2:0");
    EXPECT_EQ(shownMessages, 0);
}

// Whoever has not chosen to go on at the other end is told of the end; who types is not disturbed.
TEST_F(FinderTest, TellsOfTheEndOfTheBuffer)
{
    ShowTexts({L"one", L"two", L"one"});
    View().GoToStart();
    ConsoleChoices choices = settings.GetChoices();
    choices.wrapsAround = false;
    settings.SetChoices(choices);
    ASSERT_TRUE(OpenBox());
    TypeText(L"one");
    TypeKey(VK_RETURN);
    EXPECT_TRUE(PumpUntil([&] { return Found() == L"2:0"; }));
    EXPECT_EQ(shownMessages, 0);
    TypeKey(VK_RETURN);
    EXPECT_TRUE(PumpUntil([] { return shownMessages == 1; }));
    EXPECT_NE(shownMessage.find(L"End of buffer reached"), std::wstring::npos);
    EXPECT_EQ(Found(), L"2:0") << "it stays where it was";
    EXPECT_TRUE(frame->IsWindowEnabled());

    TypeText(L"s");  // "ones"
    EXPECT_TRUE(PumpUntil([&] { return StatusText().find(L"ones") != std::wstring::npos; }));
    EXPECT_EQ(shownMessages, 1) << "typing tells nobody";
    choices.wrapsAround = true;
    settings.SetChoices(choices);
    TypeKey(VK_RETURN);
    EXPECT_TRUE(PumpUntil([] { return shownMessages == 2; }));
    EXPECT_NE(shownMessage.find(L"ones"), std::wstring::npos);
    EXPECT_NE(ownerOfMessage, nullptr);
}

TEST_F(FinderTest, RemembersItsPlaceAndHowItFinds)
{
    ShowTexts({L"cats", L"Cat", L"cat"});
    View().GoToStart();
    ASSERT_TRUE(OpenBox());
    ::SetWindowPos(Box(), nullptr, 210, 170, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    TypeText(L"cat");
    EXPECT_TRUE(PumpUntil([&] { return Found() == L"0:0"; }));
    TypeChord({VK_MENU, 'C'});  // Match Case
    TypeChord({VK_MENU, 'W'});  // Match Whole Word Only
    TypeKey(VK_RETURN);
    EXPECT_EQ(Found(), L"2:0");
    EXPECT_TRUE(settings.GetChoices().matchesCase);
    EXPECT_TRUE(settings.GetChoices().matchesWords);
    TypeChord({VK_MENU, 'U'});  // Up
    TypeKey(VK_RETURN);
    EXPECT_EQ(Found(), L"2:0") << "the only one";
    TypeKey(VK_ESCAPE);
    ASSERT_TRUE(IsBoxGone());
    EXPECT_EQ(settings.GetFindPlace(), YPoint(210, 170));

    ASSERT_TRUE(Activate(*frame));
    ASSERT_TRUE(OpenBox());
    RECT place{};
    ::GetWindowRect(Box(), &place);
    EXPECT_EQ(place.left, 210);
    EXPECT_EQ(place.top, 170);
    EXPECT_EQ(::IsDlgButtonChecked(Box(), chx1), UINT{BST_CHECKED});
    EXPECT_EQ(::IsDlgButtonChecked(Box(), chx2), UINT{BST_CHECKED});
    ASSERT_TRUE(Activate(*frame));
    TypeChord({VK_CONTROL, 'F'});
    EXPECT_TRUE(PumpUntil([&] { return ::GetForegroundWindow() == Box(); })) << "the same one";
    frame->DestroyWindow();  // with its box
    EXPECT_TRUE(IsBoxGone());
}

// A million lines are looked through in turns: the window answers between them, and Escape ends it.
TEST_F(FinderTest, AMillionLinesNeverHoldTheWindow)
{
    constexpr DWORD mostHeld = 50;  // milliseconds
    View().SetLineLimit(1'000'000);
    const std::vector<std::wstring> texts(10'000, std::wstring(80, L'a'));
    for (int i = 0; i < 100; ++i) {
        ShowTexts(texts);
    }
    View().GoToStart();
    frame->SetFocus();
    SearchQuery query;
    query.text = L"aaaaaaaaab";  // begins everywhere, stands nowhere
    View().Find(query, false);
    const auto isRunning = [&] {
        return View().GetSearch().GetState() == LineSearch::State::Running;
    };
    ASSERT_TRUE(isRunning());
    EXPECT_NE(StatusText().find(LoadText(IDS_SEARCH_RUNNING)), std::wstring::npos);
    std::vector<ULONGLONG> held;
    while (isRunning() && held.size() < 10'000) {
        MSG message;
        ::GetMessageW(&message, nullptr, 0, 0);
        const ULONGLONG start = ::GetTickCount64();
        ::DispatchMessageW(&message);
        held.push_back(::GetTickCount64() - start);
    }
    EXPECT_EQ(View().GetSearch().GetState(), LineSearch::State::NotFound);
    ASSERT_GT(held.size(), 4u);
    std::sort(held.begin(), held.end());
    EXPECT_LE(held[held.size() * 9 / 10], mostHeld) << "but for what else the machine does";

    View().Find(query, false);
    ASSERT_TRUE(isRunning());
    TypeKey(VK_ESCAPE);
    EXPECT_FALSE(isRunning());
    EXPECT_NE(StatusText().find(LoadText(IDS_SEARCH_CANCELLED)), std::wstring::npos);
}
