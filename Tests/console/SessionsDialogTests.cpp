// The saved hosts, kept by a user with keyboard and mouse in the real dialogs.
#include "ConsoleMessages.h"
#include "FrameTest.h"
#include "LoginDialog.h"
#include "SessionDialog.h"
#include "SessionsDialog.h"
#include "resource.h"
#include "support/CaseName.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"
#include "support/ScriptedModal.h"
#include "support/TestThread.h"

namespace {

using Names = std::vector<std::wstring>;

std::vector<std::wstring> shownMessages;
int answer = IDOK;

int WINAPI RecordMessage(HWND, LPCWSTR text, LPCWSTR, UINT)
{
    shownMessages.emplace_back(text);
    return answer;
}

YListCtrl& ListOf(const CWnd& dialog)
{
    return static_cast<YListCtrl&>(*dialog.GetDlgItem(IDC_SESSIONS));
}

// Of a column, from top to bottom.
Names TextsIn(const CWnd& dialog, int column)
{
    Names texts;
    for (int row = 0; row < ListOf(dialog).GetItemCount(); ++row) {
        texts.emplace_back(ListOf(dialog).GetItemText(row, column).GetString());
    }
    return texts;
}

Names NamesIn(const CWnd& dialog)
{
    return TextsIn(dialog, 1);
}

void ClickCaption(const CWnd& dialog, int column)
{
    const auto header = reinterpret_cast<HWND>(ListOf(dialog).SendMessage(LVM_GETHEADER));
    RECT place{};
    ::SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column),
                   reinterpret_cast<LPARAM>(&place));
    ClickLeft(header, {(place.left + place.right) / 2, place.top + 8});
}

bool IsEnabled(const CWnd& dialog, int id)
{
    return dialog.GetDlgItem(id)->IsWindowEnabled() != FALSE;
}

// Acts in the dialog that a key of another one opens, as a second person at the keyboard.
void ActIn(const wchar_t* title, const std::function<void()>& open,
           const std::function<void(HWND)>& act)
{
    const TestThread user([&] {
        const auto find = [&] { return ::FindWindowW(nullptr, title); };
        if (PumpUntil([&] { return find() && ::GetForegroundWindow() == find(); }, 20'000)) {
            const HWND window = find();
            act(window);
            PumpUntil([&] { return !::IsWindow(window); }, 20'000);
        }
    });
    open();
}

class SessionsTest : public FrameTest
{
protected:
    void SetUp() override
    {
        FrameTest::SetUp();
        answer = IDOK;
        Add(L"beta", L"b.example", 900, L"zoe");
        Add(L"Alpha", L"a.example", 1'000, L"");
        Add(L"gamma", L"c.test", 23, L"adam");
        ::SetDoubleClickTime(1);
    }
    void TearDown() override
    {
        ::SetDoubleClickTime(0);
        shownMessages = {};  // its memory as well
        FrameTest::TearDown();
    }
    void Add(const wchar_t* name, const wchar_t* host, unsigned short port, const wchar_t* user)
    {
        Session session;
        session.name = name;
        session.peer = {host, port};
        session.user = user;
        session.logsIn = *user != L'\0';
        settings.GetSessions().Add(session);
    }
    INT_PTR Choose(const std::function<void(SessionsDialog&)>& script)
    {
        ScriptedModal<SessionsDialog> dialog(settings, frame);
        dialog.script = [&] { script(dialog); };
        const INT_PTR result = dialog.DoModal();
        chosen = dialog.GetChosen().name;
        return result;
    }
    Names Kept()
    {
        Names names;
        for (std::size_t i = 0; i < settings.GetSessions().GetCount(); ++i) {
            names.push_back(settings.GetSessions().Get(i).name);
        }
        return names;
    }

    std::wstring chosen;
    const ImportHook messages{L"CommonFramework.dll", "user32.dll", "MessageBoxW", &RecordMessage};
};

}  // namespace

TEST_F(SessionsTest, TypingFiltersAndReturnConnectsToWhatIsLeft)
{
    EXPECT_EQ(Choose([](const SessionsDialog& dialog) {
                  TypeChord({VK_MENU, 'F'});
                  for (const auto& [typed, left] :
                       {std::pair(L"EXAMPLE", Names{L"beta", L"Alpha"}),
                        std::pair(L"23", Names{L"gamma"}), std::pair(L"aDa", Names{L"gamma"})}) {
                      TypeChord({VK_CONTROL, 'A'});
                      TypeText(typed);
                      EXPECT_TRUE(PumpUntil([&, &expected = left] {
                          return NamesIn(dialog) == expected;
                      })) << typed;
                      EXPECT_FALSE(IsEnabled(dialog, IDC_SESSION_DOWN)) << "in no order";
                  }
                  TypeChord({VK_MENU, 'F'});
                  TypeKey(VK_TAB);
                  TypeKey(VK_HOME);
                  TypeKey(VK_SPACE);
                  TypeKey(VK_RETURN);
              }),
              IDOK);
    EXPECT_EQ(chosen, L"gamma");
}

TEST_F(SessionsTest, CaptionsSortAndRowsMoveInTheUsersOwnOrder)
{
    Choose([this](const SessionsDialog& dialog) {
        ASSERT_TRUE(StandsStill(dialog.GetSafeHwnd()));
        EXPECT_FALSE(IsEnabled(dialog, IDC_SESSION_UP));
        EXPECT_TRUE(IsEnabled(dialog, IDC_SESSION_DOWN));
        ClickCaption(dialog, 1);
        EXPECT_EQ(NamesIn(dialog), (Names{L"Alpha", L"beta", L"gamma"}));
        EXPECT_FALSE(IsEnabled(dialog, IDC_SESSION_DOWN));
        ClickCaption(dialog, 3);
        EXPECT_EQ(TextsIn(dialog, 3), (Names{L"23", L"900", L"1000"}));
        ClickCaption(dialog, 3);
        EXPECT_EQ(TextsIn(dialog, 3), (Names{L"1000", L"900", L"23"}));
        ClickCaption(dialog, 0);
        EXPECT_EQ(NamesIn(dialog), (Names{L"beta", L"Alpha", L"gamma"}));
        TypeChord({VK_MENU, 'D'});
        EXPECT_EQ(NamesIn(dialog), (Names{L"Alpha", L"beta", L"gamma"}));
        TypeChord({VK_MENU, 'D'});
        EXPECT_EQ(TextsIn(dialog, 0), (Names{L"1", L"2", L"3"}));
        TypeChord({VK_MENU, 'U'});
    });
    EXPECT_EQ(Kept(), (Names{L"Alpha", L"beta", L"gamma"}));
}

TEST_F(SessionsTest, RemovalAsksAndNamesWhatGoes)
{
    Choose([this](const SessionsDialog& dialog) {
        answer = IDNO;
        TypeKey(VK_DELETE);
        EXPECT_EQ(Kept().size(), 3u);
        EXPECT_NE(shownMessages.at(0).find(L"beta"), std::wstring::npos);
        answer = IDYES;
        TypeChord({VK_MENU, 'R'});
        EXPECT_EQ(TextsIn(dialog, 0), (Names{L"1", L"2"}));
        ListOf(dialog).SetFocus();
        TypeChord({VK_SHIFT, VK_DOWN});
        EXPECT_FALSE(IsEnabled(dialog, IDC_SESSION_EDIT));
        EXPECT_FALSE(IsEnabled(dialog, IDOK));
        TypeKey(VK_DELETE);
        EXPECT_NE(shownMessages.at(2).find(L"Alpha\r\ngamma"), std::wstring::npos);
        EXPECT_FALSE(IsEnabled(dialog, IDC_SESSION_REMOVE));
    });
    EXPECT_EQ(Kept(), Names());
}

TEST_F(SessionsTest, ASessionIsAddedWithAllThatItsUserWants)
{
    Choose([this](const SessionsDialog& dialog) {
        ActIn(
            L"Add a session",
            [] {
                TypeChord({VK_MENU, 'A'});
            },
            [](HWND) {
                TypeText(L"BETA");
                TypeKey(VK_RETURN);
                EXPECT_TRUE(PumpUntil([] { return shownMessages.size() == 1; })) << "is taken";
                TypeChord({VK_MENU, 'N'});
                TypeText(L"delta");
                TypeChord({VK_MENU, 'H'});
                TypeText(L"d.example");
                TypeChord({VK_MENU, 'P'});
                TypeText(L"4000");
                TypeChord({VK_MENU, 'L'});
                TypeKey(VK_DOWN);
                TypeKey(VK_DOWN);
                TypeChord({VK_MENU, 'O'});
                TypeKey(VK_HOME);
                TypeKey(VK_SPACE);
                TypeChord({VK_MENU, 'S'});
                TypeText(L"one");
                TypeKey(VK_RETURN);
                TypeText(L"two");
                TypeKey(VK_RETURN);
                TypeKey(VK_RETURN);
            });
        EXPECT_EQ(NamesIn(dialog).back(), L"delta");
    });
    ASSERT_EQ(Kept().size(), 4u);
    const Session& added = settings.GetSessions().Get(3);
    EXPECT_EQ(ToText(added.peer), L"d.example:4000");
    EXPECT_EQ(added.lineEnd, LineEnd::Lf);
    EXPECT_EQ(added.options & Session::showsSent, 0u);
    EXPECT_EQ(added.lines, (Names{L"one", L"two"}));
    ASSERT_EQ(shownMessages.size(), 1u);
    EXPECT_NE(shownMessages[0].find(L"BETA"), std::wstring::npos);
}

TEST_F(SessionsTest, WidthsAreRememberedAndReopeningLeaksNothing)
{
    Choose([](const SessionsDialog& dialog) { ListOf(dialog).SetColumnWidth(2, 77); });
    Choose([](const SessionsDialog& dialog) { EXPECT_EQ(ListOf(dialog).GetColumnWidth(2), 77); });
    CWinThread().OnIdle(1);
    const LeakCheck check;
    for (int i = 0; i < 200; ++i) {
        Choose([](const SessionsDialog&) {});
        CWinThread().OnIdle(1);  // the framework's temporary objects go
    }
}

namespace {

struct LoginCase
{
    const char* name;
    bool hasStored;
    const wchar_t* typed;  // null: the fields are passed by
    const wchar_t* confirmed;
    const wchar_t* kept;
    bool isRefused;
};

class LoginTest : public testing::TestWithParam<LoginCase>
{
protected:
    void TearDown() override { shownMessages = {}; }

    const ImportHook messages{L"CommonFramework.dll", "user32.dll", "MessageBoxW", &RecordMessage};
};

}  // namespace

TEST_P(LoginTest, KeepsWhatIsUntouchedAndWantsTheSameTwice)
{
    const LoginCase& c = GetParam();
    std::wstring user = L"zoe";
    ProtectedPassword password;
    ASSERT_TRUE(password.Set(YUnicodeString(c.hasStored ? L"old" : L"", Str::Sensitive)));
    ScriptedModal<LoginDialog> dialog(user, password, nullptr);
    dialog.script = [&] {
        EXPECT_EQ(::GetWindowTextLengthW(*dialog.GetDlgItem(IDC_LOGIN_PASSWORD)),
                  c.hasStored ? 8 : 0);
        TypeKey(VK_TAB);
        TypeText(c.typed ? c.typed : L"");
        TypeKey(VK_TAB);
        TypeText(c.confirmed ? c.confirmed : L"");
        TypeKey(VK_RETURN);
        if (c.isRefused) {
            EXPECT_EQ(::GetDlgCtrlID(::GetFocus()), IDC_LOGIN_CONFIRMATION);
        }
    };
    EXPECT_EQ(dialog.DoModal(), c.isRefused ? IDCANCEL : IDOK);
    EXPECT_EQ(shownMessages.size(), c.isRefused ? 1u : 0u);
    EXPECT_EQ(password.Get(), c.kept);
}

INSTANTIATE_TEST_SUITE_P(Fields, LoginTest,
                         testing::Values(LoginCase{"Untouched", true, nullptr, nullptr, L"old",
                                                   false},
                                         LoginCase{"Replaced", true, L"new", L"new", L"new", false},
                                         LoginCase{"First", false, L"new", L"new", L"new", false},
                                         LoginCase{"Mismatch", true, L"new", L"neW", L"old", true},
                                         LoginCase{"OnlyOnce", false, L"new", nullptr, L"", true}),
                         CaseName());
