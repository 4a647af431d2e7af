// The system's find dialog, and what its owner hears.
#include "WindowTest.h"

#include "support/ImportHook.h"
#include "support/LeakCheck.h"

#include <afxdlgs.h>
#include <dlgs.h>

namespace {

const UINT findMessage = ::RegisterWindowMessageW(FINDMSGSTRINGW);

// Remembers what the dialog said at each message.
class Searcher : public CWnd
{
public:
    Log log;
    const CFindReplaceDialog* notifier = nullptr;

protected:
    afx_msg LRESULT OnFind(WPARAM, LPARAM lParam)
    {
        const CFindReplaceDialog& dialog = *CFindReplaceDialog::GetNotifier(lParam);
        notifier = &dialog;
        std::string line = dialog.IsTerminating() ? "end" : "?";
        if (dialog.FindNext()) {
            const CString text = dialog.GetFindString();
            line.assign(text.GetString(), text.GetString() + text.GetLength());
            line += dialog.SearchDown() ? " down" : " up";
            line += dialog.MatchCase() ? " case" : "";
            line += dialog.MatchWholeWord() ? " word" : "";
        }
        log.push_back(line);
        return 0;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Searcher, CWnd)
    ON_REGISTERED_MESSAGE(findMessage, &Searcher::OnFind)
END_MESSAGE_MAP()

class FindDialog : public CFindReplaceDialog
{
public:
    explicit FindDialog(Log& shared) : log(shared) {}
    ~FindDialog() override { log.push_back("deleted"); }

protected:
    BOOL OnInitDialog() override
    {
        CString text;
        GetDlgItem(edt1)->GetWindowText(text);
        log.push_back(text.IsEmpty() ? "init" : "init filled");
        return CFindReplaceDialog::OnInitDialog();
    }

private:
    Log& log;
};

class CFindReplaceDialogTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(owner.CreateEx(0, nullptr, L"Text", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300,
                                   nullptr, nullptr));
        owner.ShowWindow(SW_SHOWNORMAL);
        PumpMessages();
    }
    void TearDown() override
    {
        owner.DestroyWindow();
        PumpMessages();
    }

    FindDialog* Open(const wchar_t* text = L"word", DWORD flags = FR_DOWN)
    {
        auto* const dialog = new FindDialog(owner.log);
        EXPECT_TRUE(dialog->Create(TRUE, text, nullptr, flags, &owner));
        EXPECT_TRUE(PumpUntil([&] { return dialog->IsWindowVisible() != FALSE; }));
        ::SetForegroundWindow(*dialog);
        EXPECT_TRUE(PumpUntil([&] { return ::GetForegroundWindow() == dialog->m_hWnd; }));
        return dialog;
    }

    Searcher owner;
};

UINT_PTR CALLBACK Hook(HWND, UINT message, WPARAM, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        *reinterpret_cast<bool*>(reinterpret_cast<FINDREPLACE*>(lParam)->lCustData) = true;
        return TRUE;
    }
    return FALSE;
}

HWND WINAPI FailToOpen(FINDREPLACEW*)
{
    return nullptr;
}

}  // namespace

TEST_F(CFindReplaceDialogTest, ReturnFindsAndEscapeEnds)
{
    FindDialog* const dialog = Open();
    EXPECT_EQ(CWnd::FromHandlePermanent(*dialog), dialog);
    TypeKey(VK_RETURN);
    EXPECT_EQ(owner.notifier, dialog);
    TypeKey('A');  // over the selected text
    ::SendMessageW(dialog->GetDlgItem(chx2)->m_hWnd, BM_CLICK, 0, 0);
    ::SendMessageW(dialog->GetDlgItem(chx1)->m_hWnd, BM_CLICK, 0, 0);
    ::SendMessageW(dialog->GetDlgItem(rad1)->m_hWnd, BM_CLICK, 0, 0);
    TypeKey(VK_RETURN);
    EXPECT_TRUE(dialog->IsWindowVisible());
    TypeKey(VK_ESCAPE);
    EXPECT_EQ(owner.log, (Log{"init filled", "word down", "a up case word", "end", "deleted"}));
}

TEST_F(CFindReplaceDialogTest, HostsChooseHookFlagsAndBuffer)
{
    bool hooked = false;
    wchar_t buffer[1024] = {};
    const std::wstring text(1000, L'x');
    auto* const dialog = new FindDialog(owner.log);
    dialog->m_fr.Flags = FR_ENABLEHOOK | FR_HIDEUPDOWN;
    dialog->m_fr.lpfnHook = &Hook;
    dialog->m_fr.lCustData = reinterpret_cast<LPARAM>(&hooked);
    dialog->m_fr.lpstrFindWhat = buffer;
    dialog->m_fr.wFindWhatLen = static_cast<WORD>(std::size(buffer));
    ASSERT_TRUE(dialog->Create(TRUE, text.c_str(), nullptr, FR_DOWN, &owner));
    EXPECT_TRUE(hooked);
    EXPECT_EQ(dialog->GetFindString(), text.c_str());
    EXPECT_EQ(dialog->GetDlgItem(edt1)->GetWindowTextLength(), 1000);
    EXPECT_FALSE(dialog->GetDlgItem(rad1)->IsWindowVisible());
    dialog->DestroyWindow();
    EXPECT_EQ(owner.log.back(), "deleted");
}

TEST_F(CFindReplaceDialogTest, GoesWithItsOwner)
{
    Open();
    owner.DestroyWindow();
    EXPECT_EQ(owner.log.back(), "deleted");
}

TEST_F(CFindReplaceDialogTest, AFailedCreateDeletesTheObject)
{
    const ImportHook open(L"CommonFramework.dll", "comdlg32.dll", "FindTextW", &FailToOpen);
    EXPECT_FALSE((new FindDialog(owner.log))->Create(TRUE, L"", nullptr, FR_DOWN, &owner));
    EXPECT_EQ(owner.log, Log{"deleted"});
}

TEST_F(CFindReplaceDialogTest, LeavesNothingBehind)
{
    const auto open = [this](int times) {
        for (int i = 0; i < times; ++i) {
            auto* const dialog = new CFindReplaceDialog;
            ASSERT_TRUE(dialog->Create(TRUE, L"", nullptr, FR_DOWN, &owner));
            PumpMessages();
            dialog->SendMessage(WM_CLOSE);
            PumpMessages();
        }
        owner.log = Log();
        CWinThread().OnIdle(1);
    };
    open(2);
    const LeakCheck leaks;
    open(100);
}
