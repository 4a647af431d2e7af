// The options, chosen by the keyboard alone in the real dialog.
#include "ConnectionFrame.h"
#include "ConsoleFile.h"
#include "ConsoleMessages.h"
#include "FrameTest.h"
#include "OptionsDialog.h"
#include "backends/ScratchFolder.h"
#include "resource.h"
#include "support/DialogLayout.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"
#include "support/ScriptedModal.h"
#include "support/TestThread.h"

#include <certificates/CertificateDialogIds.h>
#include <dialogs/PropertyTreeIds.h>
#include <dialogs/TlsVersionsIds.h>

namespace {

int shownMessages = 0;

int WINAPI RecordMessage(HWND, LPCWSTR, LPCWSTR, UINT)
{
    ++shownMessages;
    return IDOK;
}

class ScriptedOptions : public ScriptedModal<OptionsDialog>
{
public:
    using ScriptedModal::ScriptedModal;

    HWND Control(int id) { return ::GetDlgItem(*GetCurrentPage(), id); }
    unsigned PageId() { return GetCurrentPage()->GetResourceID(); }
    void GoTo(unsigned page)
    {
        for (int i = 0; i < 20 && PageId() != page; ++i) {
            TypeChord({VK_CONTROL, VK_TAB});
        }
        EXPECT_EQ(PageId(), page);
    }
};

class OptionsTest : public FrameTest
{
protected:
    void SetUp() override
    {
        FrameTest::SetUp();
        shownMessages = 0;
    }
    template <class Script>
    INT_PTR Choose(Script script)
    {
        ScriptedOptions dialog(settings, frame);
        dialog.script = [&] { script(dialog); };
        return dialog.DoModal();
    }
    const ConsoleChoices& Choices() const { return settings.GetChoices(); }

    const ImportHook messages{L"CommonFramework.dll", "user32.dll", "MessageBoxW", &RecordMessage};
};

}  // namespace

TEST_F(OptionsTest, OkAppliesToEveryWindowAtOnce)
{
    const ConsoleFile file("a\tb\nwarning: c\n");
    frame->OpenFile(file.GetPath());
    ASSERT_TRUE(PumpUntil([&] { return View().GetBuffer().GetLineCount() == 2; }));
    auto* const other = new MainFrame(settings);
    int show = SW_SHOWNOACTIVATE;
    ASSERT_TRUE(other->Load({}, show));
    other->ShowWindow(show);
    EXPECT_EQ(TextOf(View().GetBuffer(), 0), L"a       b");

    const INT_PTR result = Choose([&](ScriptedOptions& dialog) {
        EXPECT_FALSE(other->IsWindowEnabled()) << "waits meanwhile";
        dialog.GoTo(IDD_OPTIONS_VIEW);
        TypeChord({VK_MENU, 'L'});
        TypeText(L"1");  // the text is selected: "1"
        TypeChord({VK_MENU, 'O'});
        dialog.GoTo(IDD_OPTIONS_COLORS);
        TypeChord({VK_MENU, 'O'});
        dialog.GoTo(IDD_OPTIONS_FIND);
        TypeChord({VK_MENU, 'C'});
        dialog.GoTo(IDD_OPTIONS_CONNECTION);
        TypeChord({VK_MENU, 'L'});
        dialog.GoTo(IDD_OPTIONS_TLS);
        TypeKey(VK_TAB);
        EXPECT_EQ(::GetDlgCtrlID(::GetFocus()), TLS_VERSIONS_LIST);
        TypeKey(VK_SPACE);  // the first version
        dialog.GoTo(IDD_OPTIONS_FILES);
        TypeChord({VK_MENU, 'F'});
        TypeChord({VK_MENU, 'T'});
        TypeText(L"4");
        TypeKey(VK_RETURN);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(shownMessages, 0);
    EXPECT_EQ(Choices().lineLimit, 1u);
    EXPECT_TRUE(Choices().outlines);
    EXPECT_FALSE(Choices().colorsLines);
    EXPECT_TRUE(Choices().matchesCase);
    EXPECT_EQ(Choices().lineEnd, static_cast<unsigned>(LineEnd::Lf));
    EXPECT_EQ(Choices().tlsVersions,
              YProfileTlsVersions::allVersions & ~YProfileTlsVersions::version10);
    EXPECT_FALSE(Choices().follows);
    EXPECT_EQ(Choices().tabWidth, 4u);

    EXPECT_TRUE(other->IsWindowEnabled());
    ASSERT_TRUE(PumpUntil([&] { return View().GetBuffer().GetLineCount() == 1; }))
        << "as many lines as are kept now";
    other->GetView().ShowNotice(L"one");
    other->GetView().ShowNotice(L"two");
    EXPECT_EQ(other->GetView().GetBuffer().GetLineCount(), 1u);

    ConsoleChoices choices = Choices();
    choices.lineLimit = 10;
    ChangeChoices(settings, choices);
    choices.tabWidth = 2;
    ChangeChoices(settings, choices);
    ASSERT_TRUE(PumpUntil([&] { return View().GetBuffer().GetLineCount() == 2; })) << "read again";
    EXPECT_EQ(TextOf(View().GetBuffer(), 0), L"a b");
}

TEST_F(OptionsTest, ApplyAppliesCancelDoesNot)
{
    const ConsoleChoices before = Choices();
    EXPECT_EQ(Choose([&](ScriptedOptions& dialog) {
                  const CWnd& apply = *dialog.GetApplyButton();
                  EXPECT_FALSE(apply.IsWindowEnabled()) << "nothing has changed yet";
                  dialog.GoTo(IDD_OPTIONS_VIEW);
                  TypeChord({VK_MENU, 'O'});
                  EXPECT_TRUE(apply.IsWindowEnabled());
                  TypeChord({VK_MENU, 'A'});
                  EXPECT_TRUE(Choices().outlines);
                  EXPECT_FALSE(apply.IsWindowEnabled());
                  TypeChord({VK_MENU, 'O'});
                  dialog.GoTo(IDD_OPTIONS_TLS);
                  TypeKey(VK_TAB);
                  TypeKey(VK_SPACE);
                  TypeKey(VK_ESCAPE);
              }),
              IDCANCEL);
    ConsoleChoices applied = before;
    applied.outlines = true;
    EXPECT_TRUE(Choices() == applied);
}

TEST_F(OptionsTest, WhatMakesNoSenseIsRefused)
{
    EXPECT_EQ(Choose([&](ScriptedOptions& dialog) {
                  dialog.GoTo(IDD_OPTIONS_VIEW);
                  TypeChord({VK_MENU, 'L'});
                  TypeText(L"0");
                  TypeChord({VK_CONTROL, VK_TAB});
                  EXPECT_EQ(dialog.PageId(), unsigned{IDD_OPTIONS_VIEW});
                  EXPECT_EQ(shownMessages, 1);
                  TypeText(L"1000000");
                  dialog.GoTo(IDD_OPTIONS_LOG);
                  TypeChord({VK_MENU, 'G'});
                  TypeChord({VK_MENU, 'F'});
                  TypeText(L"C:\\no such folder");
                  TypeKey(VK_RETURN);
                  EXPECT_EQ(shownMessages, 2);
                  EXPECT_EQ(::GetFocus(), dialog.Control(IDC_LOG_FOLDER));
                  TypeChord({VK_CONTROL, 'A'});
                  TypeText(L"C:\\windows");
                  TypeKey(VK_RETURN);
              }),
              IDOK);
    EXPECT_EQ(shownMessages, 2);
    EXPECT_EQ(Choices().lineLimit, 1'000'000u);
    EXPECT_EQ(Choices().logFolder, L"C:\\windows");
    EXPECT_TRUE(Choices().logs);
}

TEST_F(OptionsTest, ForgetsRecentFilesAtOnceAndStopsRemembering)
{
    settings.AddRecentFile(L"C:\\a.log");
    settings.SetPeer({L"host", 22});
    Choose([&](ScriptedOptions& dialog) {
        dialog.GoTo(IDD_OPTIONS_RECENT);
        TypeChord({VK_MENU, 'G'});
        EXPECT_TRUE(settings.GetRecentFiles().empty());
        EXPECT_TRUE(settings.GetRecentHosts().empty());
        TypeKey(VK_ESCAPE);
    });
    settings.AddRecentFile(L"C:\\b.log");
    Choose([&](ScriptedOptions& dialog) {
        EXPECT_EQ(dialog.PageId(), unsigned{IDD_OPTIONS_RECENT}) << "where it was left";
        TypeChord({VK_MENU, 'R'});
        TypeKey(VK_RETURN);
    });
    EXPECT_TRUE(settings.GetRecentFiles().empty());
    settings.AddRecentFile(L"C:\\c.log");
    settings.SetPeer({L"other", 22});
    EXPECT_TRUE(settings.GetRecentFiles().empty());
    EXPECT_TRUE(settings.GetRecentHosts().empty());
    EXPECT_EQ(settings.GetPeer().host, L"other") << "the last one is proposed all the same";
}

// Made from the page, shown there, and chosen.
TEST_F(OptionsTest, ACertificateIsMadeAndShown)
{
    const ScratchFolder folder;
    const std::wstring path = folder.GetPath(L"console.pfx");
    const INT_PTR result = Choose([&](ScriptedOptions& dialog) {
        dialog.GoTo(IDD_OPTIONS_CERTIFICATE);
        const HWND options = dialog;
        const TestThread user([&] {
            const auto inFront = [&](const wchar_t* title) {
                const HWND window = ::FindWindowW(nullptr, title);
                return window && ::GetForegroundWindow() == window;
            };
            if (!PumpUntil([&] { return inFront(L"Create Certificate"); }, 20'000)) {
                return;
            }
            const HWND maker = ::GetForegroundWindow();
            TypeText(L"me");
            ::SetDlgItemTextW(maker, CERTIFICATE_PATH, path.c_str());
            ::SendDlgItemMessageW(maker, CERTIFICATE_KEY_SIZE, CB_SETCURSEL, 0, 0);
            TypeKey(VK_RETURN);
            PumpUntil([&] { return !::IsWindow(maker) && inFront(L"Options"); }, 60'000);
        });
        TypeChord({VK_MENU, 'C'});
        EXPECT_TRUE(PumpUntil([&] { return ::GetForegroundWindow() == options; }, 60'000));
        std::wstring details(400, L'\0');
        details.resize(static_cast<std::size_t>(
            ::GetWindowTextW(dialog.Control(IDC_CERTIFICATE_DETAILS), details.data(), 400)));
        EXPECT_EQ(details.find(L"Subject: CN=me\r\nValid: "), 0u) << details;
        EXPECT_NE(details.find(L"Key: 1024 bits"), std::wstring::npos) << details;
        TypeKey(VK_RETURN);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(shownMessages, 0);
    EXPECT_EQ(Choices().certificate, path);
    EXPECT_TRUE(folder.Has(L"console.csr"));
}

TEST_F(OptionsTest, ALogHoldsWhatIsChecked)
{
    const INT_PTR result = Choose([&](ScriptedOptions& dialog) {
        dialog.GoTo(IDD_OPTIONS_LOG);
        ASSERT_TRUE(StandsStill(dialog));
        const HWND kinds = dialog.Control(IDC_LOG_KINDS);
        RECT caption{};
        ::GetWindowRect(dialog.Control(IDC_LOG_COLUMN), &caption);
        POINT box{caption.left + 4, 0};
        ::ScreenToClient(kinds, &box);
        EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(dialog, PROPERTY_TREE_APPLY)));
        ClickLeft(kinds, {box.x, 4});
        EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(dialog, PROPERTY_TREE_APPLY)));
        TypeKey(VK_RETURN);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_TRUE(Choices().logsSent);
    EXPECT_FALSE(Choices().logsNotices);
}

// As they are filled; in the language of the process, which is English or French.
TEST_F(OptionsTest, EveryPageShowsAllThatItSays)
{
    Choose([](ScriptedOptions& dialog) {
        for (int page = IDD_OPTIONS_VIEW; page <= IDD_OPTIONS_CERTIFICATE; ++page) {
            dialog.GoTo(static_cast<unsigned>(page));
            EXPECT_EQ(FindLayoutFaults(dialog), std::vector<std::string>()) << page;
            EXPECT_EQ(FindKeyboardFaults(dialog), std::vector<std::string>()) << page;
        }
    });
}

// The system's own boxes for colour and font are not opened here; what comes of them is.
TEST_F(OptionsTest, OpensLeakFree)
{
    const auto open = [&] {
        Choose([](ScriptedOptions& dialog) {
            for (int page = 0; page < 10; ++page) {
                dialog.GoTo(static_cast<unsigned>(IDD_OPTIONS_VIEW + page));
            }
        });
        CWinThread().OnIdle(1);  // the framework's temporary objects go
    };
    open();
    const LeakCheck check;
    for (int i = 0; i < 20; ++i) {
        open();
    }
}
