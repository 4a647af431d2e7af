// The bar of a window, used as its user does: by real keys and the mouse.
#include "ConnectionFrame.h"
#include "ConsoleFile.h"
#include "FrameTest.h"
#include "resource.h"

#include <BCGCBProInc.h>
#include <autocomplete/YLineEdit.h>

#include <string>

namespace {

using BarTest = FrameTest;

TEST_F(BarTest, FindsAsOneTypesAndGoesOnByReturn)
{
    ShowTexts({L"an apple", L"a pear, an APPLE", L"nothing", L"apricot"});
    View().GoToStart();
    TypeChord({VK_CONTROL, 'E'});
    ASSERT_TRUE(HasFocus(Field(ID_SEARCH)));
    TypeText(L"ap");
    EXPECT_EQ(Found(), L"0:3");
    TypeText(L"p");
    EXPECT_EQ(Found(), L"0:3") << "what is found so far may go on";
    TypeKey(VK_RETURN);
    EXPECT_EQ(Found(), L"1:11");
    TypeKey(VK_RETURN);
    EXPECT_EQ(Found(), L"0:3") << "past the end";
    TypeChord({VK_SHIFT, VK_RETURN});
    EXPECT_EQ(Found(), L"1:11");
    TypeText(L"x");
    EXPECT_EQ(Found(), L"1:11") << "where it was";
    EXPECT_NE(StatusText().find(L"appx"), std::wstring::npos) << "it says so";
    EXPECT_TRUE(HasFocus(Field(ID_SEARCH)));

    TypeKey(VK_ESCAPE);
    PumpMessages();
    EXPECT_TRUE(Field(ID_SEARCH).IsPlaceholderText());
    TypeKey(VK_ESCAPE);
    EXPECT_TRUE(HasFocus(View()));
}

// Both halves of a split window show what is found; the reader stays there while lines come.
TEST_F(BarTest, TheHitIsShownInBothViewsAndStays)
{
    std::vector<std::wstring> texts(500, L"line");
    texts[250] = std::wstring(300, L' ') + L"needle";
    ShowTexts(texts);
    frame->SendMessage(WM_COMMAND, ID_VIEW_SPLIT);
    frame->RecalcLayout();
    TypeChord({VK_CONTROL, 'E'});
    TypeText(L"needle");
    EXPECT_EQ(Found(), L"250:300");
    const unsigned top = View().GetTopLine();
    EXPECT_LT(top, 250u);
    EXPECT_GT(top + View().GetPageLines(), 250u);
    const int second = View().GetDlgCtrlID() + 1;
    const auto& other = static_cast<ConsoleView&>(*View().GetParent()->GetDlgItem(second));
    ASSERT_NE(other.GetHighlight(), nullptr);
    EXPECT_TRUE(other.GetHighlight()->Equal(*View().GetHighlight()));
    ShowTexts(texts);
    EXPECT_EQ(View().GetTopLine(), top);
}

// Longer than a turn: the keys that come between begin it anew, and it goes on after them.
TEST_F(BarTest, ALongSearchLeavesTheWindowFree)
{
    View().SetLineLimit(400'000);
    const std::vector<std::wstring> texts(4'000, std::wstring(100, L'a'));
    for (int i = 0; i < 100; ++i) {
        ShowTexts(texts);
    }
    View().GoToStart();
    TypeChord({VK_CONTROL, 'E'});
    Field(ID_SEARCH).SetFocus();
    INPUT key{};
    key.type = INPUT_KEYBOARD;
    key.ki.wVk = 'B';
    ::SendInput(1, &key, sizeof key);
    EXPECT_TRUE(
        PumpUntil([&] { return View().GetSearch().GetState() == LineSearch::State::Running; }));
    ShowTexts({L"ab"});
    EXPECT_TRUE(PumpUntil([&] { return Found() == L"400000:1" || Found() == L"399999:1"; }, 20'000))
        << "a line that came while it was looked for";
}

TEST_F(BarTest, AnAddressIsCompletedToARecentFileAndOpened)
{
    const ConsoleFile file("first\nsecond\n");
    settings.AddRecentFile(L"C:\\other.log");
    settings.AddRecentFile(file.GetPath());
    const std::wstring name = file.GetPath().substr(file.GetPath().rfind(L'\\') + 1);
    TypeChord({VK_CONTROL, 'L'});
    ASSERT_TRUE(HasFocus(Field(ID_ADDRESS)));
    TypeText(name.substr(0, name.size() - 4));
    ASSERT_TRUE(PumpUntil([] { return IsShown(); }));
    EXPECT_EQ(::SendMessageW(GetList(), LVM_GETITEMCOUNT, 0, 0), 1);
    TypeKey(VK_DOWN);
    EXPECT_EQ(std::wstring(Field(ID_ADDRESS).GetText()), file.GetPath());
    TypeKey(VK_RETURN);
    EXPECT_TRUE(PumpUntil([&] { return View().GetBuffer().GetLineCount() == 2; }));
    EXPECT_FALSE(IsShown());
    EXPECT_TRUE(HasFocus(View()));
    EXPECT_EQ(std::wstring(Field(ID_ADDRESS).GetText()), file.GetPath());

    TypeChord({VK_CONTROL, 'L'});
    TypeKey(VK_ESCAPE);
    PumpMessages();
    EXPECT_TRUE(Field(ID_ADDRESS).IsPlaceholderText());
    TypeKey(VK_RETURN);
    EXPECT_EQ(View().GetBuffer().GetLineCount(), 2u) << "the hint is no address";
}

TEST_F(BarTest, AHostAndItsPortOpenAConnection)
{
    TypeChord({VK_CONTROL, 'L'});
    TypeText(L"[::1]:9");  // nobody listens there
    TypeKey(VK_RETURN);
    ASSERT_TRUE(PumpUntil([] { return FindConsoleFrames().size() == 2; }));
    EXPECT_EQ(settings.GetPeer().host, L"::1");
    EXPECT_EQ(settings.GetRecentHosts(), (std::vector<std::wstring>{L"[::1]:9"}));

    // From there a file goes to the window of files.
    ConsoleFrame* const connection = FindConsoleFrames().front();
    ASSERT_NE(connection, frame);
    const ConsoleFile file("one\n");
    connection->OpenFile(file.GetPath());
    EXPECT_TRUE(PumpUntil([&] { return View().GetBuffer().GetLineCount() == 1; }));
    EXPECT_EQ(FindConsoleFrames().front(), frame);
}

TEST(PeerTest, IsReadAsItIsWrittenAndIsNoFile)
{
    Peer peer;
    for (const Peer& given :
         {Peer{L"host.example", 22}, Peer{L"::1", 7000}, Peer{L"10.0.0.1", 1}}) {
        EXPECT_TRUE(ParsePeer(ToText(given), peer));
        EXPECT_EQ(peer.host, given.host);
        EXPECT_EQ(peer.port, given.port);
    }
    for (const wchar_t* text :
         {L"C:\\logs\\a.log", L"C:22", L"host", L"host:", L"host:0", L"host:65536", L"::1:22",
          L"[]:22", L"[host]:22", L"dir/a:22", L"two words:22", L":22", L""}) {
        EXPECT_FALSE(ParsePeer(text, peer)) << text;
    }
}

}  // namespace
