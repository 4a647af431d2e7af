// The link as its user meets it; what it opens is recorded instead.
#include "CheckListIds.h"
#include "support/ImportHook.h"
#include "support/Input.h"
#include "support/LeakCheck.h"
#include "support/ScreenReader.h"
#include "support/TestThread.h"

#include <YOpenUrl.h>
#include <controls/IStaticUrlSink.h>
#include <controls/YStaticURL.h>

#include <afxole.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using Addresses = std::vector<std::wstring>;

Addresses opened;
bool canOpen = true;
std::function<void()> atOpening;

BOOL WINAPI Record(SHELLEXECUTEINFOW* info)
{
    EXPECT_STREQ(info->lpVerb, L"open");
    EXPECT_EQ(info->lpParameters, nullptr);
    opened.emplace_back(info->lpFile);
    if (atOpening) {
        atOpening();
    }
    return canOpen;
}

HCURSOR WINAPI LoadTestCursor(HINSTANCE module, LPCWSTR name)
{
    const bool isOurs = module && name == MAKEINTRESOURCEW(IDC_CURSOR);
    return isOurs ? ::LoadCursorW(nullptr, IDC_CROSS) : ::LoadCursorW(module, name);
}

class Sink : public IStaticUrlSink
{
public:
    void OnURLOpened() override
    {
        ++calls;
        if (atCall) {
            atCall();
        }
    }

    int calls = 0;
    std::function<void()> atCall;
};

class LinkDialog : public CDialog
{
public:
    int accepted = 0;  // Return has reached the dialog

protected:
    void OnOK() override { ++accepted; }
};

constexpr wchar_t library[] = L"CommonUi.dll";

class StaticUrlTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { ASSERT_TRUE(AfxOleInit()); }

    void SetUp() override
    {
        ASSERT_TRUE(dialog.Create(IDD_LINKS));
        ASSERT_TRUE(link.SubclassDlgItem(IDC_LINK, &dialog));
        ASSERT_TRUE(centered.SubclassDlgItem(IDC_CENTERED_LINK, &dialog));
        dialog.ShowWindow(SW_SHOW);
        ASSERT_TRUE(Activate(dialog));
        ASSERT_TRUE(StandsStill(dialog));
        dialog.GetDlgItem(IDC_BEFORE)->SetFocus();
        dialog.UpdateWindow();
        PumpMessages();
    }
    void TearDown() override
    {
        dialog.DestroyWindow();
        PumpMessages();
        opened = {};  // no block of one test is left to the next
        canOpen = true;
        atOpening = nullptr;
    }

    // All pixels of the dialog.
    std::vector<COLORREF> Shoot()
    {
        PumpMessages();
        CRect client;
        dialog.GetClientRect(&client);
        CClientDC dc(&dialog);
        std::vector<COLORREF> pixels;
        for (int y = 0; y < client.bottom; ++y) {
            for (int x = 0; x < client.right; ++x) {
                pixels.push_back(dc.GetPixel(x, y));
            }
        }
        return pixels;
    }
    // The box round all pixels of a control's neighbourhood that differ.
    CRect Difference(const std::vector<COLORREF>& one, const std::vector<COLORREF>& other,
                     CWnd& control)
    {
        CRect around;
        control.GetWindowRect(&around);
        dialog.ScreenToClient(&around);
        around.InflateRect(4, 4);
        CRect client;
        dialog.GetClientRect(&client);
        CRect box(INT_MAX, INT_MAX, INT_MIN, INT_MIN);
        for (int y = around.top; y < around.bottom; ++y) {
            for (int x = around.left; x < around.right; ++x) {
                const auto at = static_cast<std::size_t>(y * client.right + x);
                if (one[at] != other[at]) {
                    box = {std::min<int>(box.left, x), std::min<int>(box.top, y),
                           std::max<int>(box.right, x + 1), std::max<int>(box.bottom, y + 1)};
                }
            }
        }
        return box;
    }
    CRect GetTextRect(CWnd& control)
    {
        CString text;
        control.GetWindowText(text);
        CClientDC dc(&control);
        CFont* const before = dc.SelectObject(control.GetFont());
        CRect place(0, 0, 0, 0);
        dc.DrawText(text, &place, DT_CALCRECT);
        dc.SelectObject(before);
        return place;
    }

    const ImportHook shell{library, "SHELL32.dll", "ShellExecuteExW", &Record};
    const ImportHook cursors{library, "USER32.dll", "LoadCursorW", &LoadTestCursor};
    LinkDialog dialog;
    Sink sink;
    YStaticURL link{IDS_ADDRESS, IDC_CURSOR, &sink};
    YStaticURL centered{L"mailto:us@example.org", 4711, nullptr};
    const Addresses once{L"https://example.org/start"};
};

}  // namespace

// The opener

TEST_F(StaticUrlTest, OnlyAddressesThatRunNoProgramAreOpened)
{
    const Addresses good = {L"http://example.org", L"HTTPS://example.org/a?b=c%20d#e",
                            L"ftp://example.org/file", L"mailto:us@example.org?subject=Hello",
                            L"https://example.org/\u00e9t\u00e9"};
    for (const std::wstring& url : good) {
        EXPECT_TRUE(OpenURLWithoutConfig(url.c_str())) << url.c_str();
    }
    EXPECT_EQ(opened, good);
    for (const wchar_t* const url :
         {L"", L"http:", L"file:///c:/windows/notepad.exe", L"notepad.exe", L"\\\\host\\share",
          L"c:\\windows\\notepad.exe", L"javascript:alert(1)", L"ms-settings:", L"httpx://a",
          L" http://example.org", L"http://example.org/\" --run \"x", L"http://example.org/a b",
          L"http://example.org/\r\n", L"shell:startup", L"example.org"}) {
        EXPECT_FALSE(OpenURLWithoutConfig(url)) << url;
    }
    EXPECT_EQ(opened, good);
    canOpen = false;
    EXPECT_FALSE(OpenURLWithoutConfig(L"http://example.org"));
}

// The link

TEST_F(StaticUrlTest, AClickOpensAndTellsTheSink)
{
    ClickLeft(link, {3, 3});
    EXPECT_EQ(opened, once);
    EXPECT_EQ(sink.calls, 1);
    canOpen = false;
    ClickLeft(link, {30, 3});  // beside the first one: no double click
    EXPECT_EQ(sink.calls, 2) << "used all the same";
    ClickLeft(centered, {3, 3});
    EXPECT_EQ(opened.back(), L"mailto:us@example.org");
    EXPECT_EQ(sink.calls, 2);
}

TEST_F(StaticUrlTest, SpaceAndReturnOpenWhenReleased)
{
    TypeKey(VK_TAB);
    ASSERT_EQ(::GetFocus(), link);
    TypeKey(VK_SPACE);
    EXPECT_EQ(opened.size(), 1u);
    TypeKey(VK_RETURN);
    EXPECT_EQ(opened.size(), 2u);
    EXPECT_EQ(dialog.accepted, 0);
    link.PostMessage(WM_KEYDOWN, VK_RETURN, 0);
    PumpMessages();
    EXPECT_EQ(opened.size(), 2u);
    TypeKey(L'A');
    EXPECT_EQ(opened.size(), 2u);
    EXPECT_EQ(sink.calls, 2);
    TypeKey(VK_TAB);
    TypeKey(VK_TAB);
    TypeKey(VK_RETURN);
    EXPECT_EQ(opened.size(), 2u);
}

TEST_F(StaticUrlTest, LooksLikeALink)
{
    EXPECT_EQ(link.GetStyle() & (SS_NOTIFY | WS_TABSTOP), DWORD{SS_NOTIFY | WS_TABSTOP});
    LOGFONTW font{};
    LOGFONTW dialogs{};
    ASSERT_NE(link.GetFont()->GetLogFont(&font), 0);
    dialog.GetFont()->GetLogFont(&dialogs);
    EXPECT_NE(font.lfUnderline, 0);
    EXPECT_EQ(font.lfHeight, dialogs.lfHeight);
    EXPECT_STREQ(font.lfFaceName, dialogs.lfFaceName);
    CRect client;
    link.GetClientRect(&client);
    CClientDC dc(&link);
    int blue = 0;
    for (int y = 0; y < client.bottom; ++y) {
        for (int x = 0; x < client.right; ++x) {
            const COLORREF pixel = dc.GetPixel(x, y);
            EXPECT_TRUE(pixel == RGB(0, 0, 238) || pixel == ::GetSysColor(COLOR_BTNFACE));
            blue += pixel == RGB(0, 0, 238);
        }
    }
    EXPECT_GT(blue, 50);
    MovePointer(link, {3, 3});
    EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_CROSS));
    MovePointer(centered, {3, 3});
    EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_HAND)) << "no such resource";
}

// Focus

TEST_F(StaticUrlTest, TheFocusRectangleGoesRoundTheTextAndAway)
{
    const auto before = Shoot();
    for (YStaticURL* const control : {&link, &centered}) {
        TypeKey(VK_TAB);
        ASSERT_EQ(::GetFocus(), *control);
        CRect expected = GetTextRect(*control);
        CRect client;
        control->GetClientRect(&client);
        if (control == &centered) {
            expected.OffsetRect((client.Width() - expected.Width()) / 2, 0);
        }
        expected.InflateRect(2, 2);
        control->ClientToScreen(&expected);
        dialog.ScreenToClient(&expected);
        CRect seen = Difference(before, Shoot(), *control);
        // It is dotted: a corner may be a gap.
        EXPECT_LE(abs(seen.left - expected.left) + abs(seen.top - expected.top), 1);
        EXPECT_LE(abs(seen.right - expected.right) + abs(seen.bottom - expected.bottom), 1);
    }
    TypeKey(VK_TAB);
    dialog.GetDlgItem(IDC_BEFORE)->SetFocus();
    EXPECT_EQ(Shoot(), before);
}

TEST_F(StaticUrlTest, NothingStaysOfARectangleThatWasPaintedOver)
{
    const auto before = Shoot();
    link.SetFocus();
    dialog.RedrawWindow(nullptr, nullptr,
                        RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    dialog.GetDlgItem(IDC_BEFORE)->SetFocus();
    EXPECT_EQ(Shoot(), before);
}

TEST_F(StaticUrlTest, WhatIsStillToBePaintedDoesNotHideTheRectangle)
{
    const auto before = Shoot();
    dialog.Invalidate();
    link.SetFocus();
    EXPECT_FALSE(Difference(before, Shoot(), link).IsRectEmpty());
}

TEST_F(StaticUrlTest, AFocusFromBeforeTheDialogIsShownIsSeen)
{
    const auto before = Shoot();
    dialog.ShowWindow(SW_HIDE);
    PumpMessages();
    link.SetFocus();
    ASSERT_EQ(::GetFocus(), link);
    dialog.ShowWindow(SW_SHOWNA);
    EXPECT_TRUE(PumpUntil([&] { return !Difference(before, Shoot(), link).IsRectEmpty(); }));
    dialog.GetDlgItem(IDC_BEFORE)->SetFocus();
    EXPECT_TRUE(PumpUntil([&] { return Shoot() == before; }));
}

// Menu

namespace {

HWND FindMenu()
{
    return ::FindWindowW(L"#32768", nullptr);
}

std::wstring MenuText(HMENU menu, UINT item)
{
    wchar_t text[64] = {};
    ::GetMenuStringW(menu, item, text, 64, MF_BYPOSITION);
    return text;
}

}  // namespace

TEST_F(StaticUrlTest, ItsMenuOpensAndCopies)
{
    const auto choose = [this](WORD mnemonic) {
        MovePointer(link, {3, 3});
        std::vector<std::wstring> texts;
        UINT defaultItem = 0;
        TestThread user([&] {
            for (int tries = 0; tries < 5'000 && !::IsWindowVisible(FindMenu()); ++tries) {
                ::Sleep(1);  // this thread has no messages
            }
            const auto menu =
                reinterpret_cast<HMENU>(::SendMessageW(FindMenu(), MN_GETHMENU, 0, 0));
            texts = {MenuText(menu, 0), MenuText(menu, 1), MenuText(menu, 2)};
            defaultItem = ::GetMenuDefaultItem(menu, FALSE, 0);
            ::PostMessageW(FindMenu(), WM_KEYDOWN, mnemonic, 0);
            ::PostMessageW(FindMenu(), WM_CHAR, mnemonic + (L'a' - L'A'), 0);
        });
        link.SendMessage(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(link.m_hWnd), -1);
        user.Join();
        PumpMessages();
        EXPECT_EQ(texts, (std::vector<std::wstring>{L"&Open", L"", L"Copy Shor&tcut"}));
        EXPECT_EQ(defaultItem, 32800u);
    };
    choose(L'O');
    EXPECT_EQ(opened, once);
    EXPECT_EQ(sink.calls, 1);
    choose(L'T');
    EXPECT_EQ(opened, once);
    ASSERT_TRUE(::OpenClipboard(dialog));
    const HANDLE block = ::GetClipboardData(CF_UNICODETEXT);
    EXPECT_STREQ(static_cast<const wchar_t*>(::GlobalLock(block)), L"https://example.org/start");
    ::GlobalUnlock(block);
    ::CloseClipboard();
    ::OleSetClipboard(nullptr);
}

// Screen readers

TEST_F(StaticUrlTest, IsALinkForScreenReaders)
{
    link.SetFocus();
    ScreenReader reader(link);
    EXPECT_EQ(reader.Role(), ROLE_SYSTEM_LINK);
    EXPECT_EQ(reader.Name(), L"Our page");
    EXPECT_EQ(reader.Value(), once.front());
    EXPECT_EQ(reader.DefaultAction(), L"Open");
    const long expected = STATE_SYSTEM_LINKED | STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_FOCUSED;
    EXPECT_EQ(reader.State() & expected, expected);
    EXPECT_EQ(reader.DoDefaultAction(), S_OK);
    EXPECT_EQ(opened, Addresses()) << "the reader does not wait";
    PumpMessages();
    EXPECT_EQ(opened, once);
    EXPECT_EQ(reader.Role(1), -1);
    EXPECT_EQ(reader.DoDefaultAction(1), E_INVALIDARG);
    link.EnableWindow(FALSE);
    EXPECT_EQ(reader.DoDefaultAction(), E_FAIL);
    PumpMessages();
    EXPECT_EQ(opened, once);
}

// Ends

TEST_F(StaticUrlTest, MayGoWhileItOpens)
{
    atOpening = [this] { link.DestroyWindow(); };
    ClickLeft(link, {3, 3});
    EXPECT_EQ(opened, once);
    EXPECT_EQ(sink.calls, 0) << "its dialog may be gone with it";
}

TEST_F(StaticUrlTest, TheSinkMayCloseTheDialog)
{
    sink.atCall = [this] { dialog.DestroyWindow(); };
    TypeKey(VK_TAB);
    TypeKey(VK_RETURN);
    EXPECT_EQ(sink.calls, 1);
    EXPECT_EQ(link.GetSafeHwnd(), nullptr);
}

TEST_F(StaticUrlTest, AThousandRoundsLeaveNothingBehind)
{
    YStaticURL another(L"http://example.org", 0, nullptr);
    const auto round = [&] {
        ASSERT_TRUE(another.Create(L"Text", WS_CHILD | WS_VISIBLE, CRect(60, 0, 120, 12), &dialog));
        another.SetFocus();
        another.UpdateWindow();
        EXPECT_EQ(ScreenReader(another).Role(), ROLE_SYSTEM_LINK);
        another.DestroyWindow();
    };
    round();
    CWinThread().OnIdle(1);
    const LeakCheck leaks;
    for (int count = 0; count < 1'000; ++count) {
        round();
    }
    CWinThread().OnIdle(1);
}
