// Dialogs: modal and modeless, keys and focus, pages inside, failures.
#include "ScriptedDialog.h"

#include "support/ImportHook.h"
#include "support/LeakCheck.h"

#include <optional>
#include <stdexcept>

namespace {

void TypeWithAlt(WORD key)
{
    ::keybd_event(VK_MENU, 0, 0, 0);
    TypeKey(key);
    ::keybd_event(VK_MENU, 0, KEYEVENTF_KEYUP, 0);
    PumpMessages();
}

void TypeBackTab()
{
    ::keybd_event(VK_SHIFT, 0, 0, 0);
    TypeKey(VK_TAB);
    ::keybd_event(VK_SHIFT, 0, KEYEVENTF_KEYUP, 0);
    PumpMessages();
}

class OuterDialog : public ScriptedDialog
{
public:
    explicit OuterDialog(CWnd* parent = nullptr) : ScriptedDialog(IDD_OUTER, parent) {}

    int presses = 0;
    int fontsSet = 0;
    bool throwsAtPress = false;

    void OnSetFont(CFont* font) override { fontsSet += font->GetSafeHandle() != nullptr; }

protected:
    afx_msg void OnPress()
    {
        ++presses;
        if (throwsAtPress) {
            throw std::runtime_error("OnPress");
        }
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(OuterDialog, ScriptedDialog)
    ON_BN_CLICKED(IDC_PRESS, &OuterDialog::OnPress)
END_MESSAGE_MAP()

class SelfDeletingDialog : public ScriptedDialog
{
public:
    explicit SelfDeletingDialog(Log& shared) : log(shared) {}
    ~SelfDeletingDialog() override { log.push_back("deleted"); }

protected:
    void OnCancel() override { DestroyWindow(); }
    void PostNcDestroy() override { delete this; }

private:
    Log& log;
};

class CDialogTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        ShowTop();
    }
    // What DoModal gives when the script runs in it.
    INT_PTR Run(OuterDialog& dialog, std::function<void()> script)
    {
        dialog.script = std::move(script);
        return dialog.DoModal();
    }
};

HWND WINAPI FailToCreate(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM)
{
    return nullptr;
}

}  // namespace

TEST_F(CDialogTest, EndsByKeysClicksAndTheSystemMenu)
{
    struct Way
    {
        const char* name;
        INT_PTR result;
        std::function<void(OuterDialog&)> act;
    };
    const Way ways[] = {
        {"Return", IDOK, [](OuterDialog&) { TypeKey(VK_RETURN); }},
        {"Escape", IDCANCEL, [](OuterDialog&) { TypeKey(VK_ESCAPE); }},
        {"click on OK", IDOK, [](OuterDialog& dialog) { dialog.ClickControl(IDOK); }},
        {"click on Cancel", IDCANCEL, [](OuterDialog& dialog) { dialog.ClickControl(IDCANCEL); }},
        {"WM_CLOSE", IDCANCEL, [](OuterDialog& dialog) { dialog.SendMessage(WM_CLOSE); }},
        {"EndDialog", 1234, [](OuterDialog& dialog) { dialog.EndDialog(1234); }},
        {"nothing", ScriptedDialog::notEnded, [](OuterDialog&) {}},
    };
    for (const Way& way : ways) {
        OuterDialog dialog(&top);
        EXPECT_EQ(Run(dialog, [&] { way.act(dialog); }), way.result) << way.name;
        EXPECT_EQ(dialog.m_hWnd, nullptr) << way.name;
        EXPECT_EQ(::GetActiveWindow(), top.m_hWnd) << way.name;
    }
}

TEST_F(CDialogTest, DisablesItsOwnerWhileItIsOpen)
{
    CWnd child;
    ASSERT_TRUE(child.Create(nullptr, nullptr, WS_CHILD, CRect(0, 0, 9, 9), &top, 1));
    OuterDialog dialog(&child);  // a child cannot own: its top-level window does
    bool wasEnabled = true;
    HWND owner = nullptr;
    bool wasVisible = false;
    Run(dialog, [&] {
        wasEnabled = top.IsWindowEnabled() != FALSE;
        owner = ::GetWindow(dialog, GW_OWNER);
        wasVisible = dialog.IsWindowVisible() != FALSE;
    });
    EXPECT_FALSE(wasEnabled);
    EXPECT_EQ(owner, top.m_hWnd);
    EXPECT_TRUE(wasVisible);  // although the template does not say so
    EXPECT_TRUE(top.IsWindowEnabled());
    top.EnableWindow(FALSE);  // another's doing is not undone
    Run(dialog, [] {});
    EXPECT_FALSE(top.IsWindowEnabled());
}

TEST_F(CDialogTest, TabWalksThroughAPageAndRoundAndLeavesKeysToTheOuterDialog)
{
    OuterDialog dialog(&top);
    CDialog page;
    std::vector<int> there;
    std::vector<int> back;
    const INT_PTR result = Run(dialog, [&] {
        ASSERT_TRUE(page.Create(IDD_PAGE, &dialog));
        dialog.GotoDlgCtrl(dialog.GetDlgItem(IDC_NAME));  // a new page takes the focus
        page.SetWindowPos(dialog.GetDlgItem(IDC_FRAME), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        for (int i = 0; i < 6; ++i) {
            there.push_back(dialog.FocusId());
            TypeKey(VK_TAB);
        }
        for (int i = 0; i < 5; ++i) {
            back.push_back(dialog.FocusId());
            TypeBackTab();
        }
        dialog.GotoDlgCtrl(page.GetDlgItem(IDC_SECOND));
        ASSERT_EQ(dialog.FocusId(), IDC_SECOND);
        TypeKey('A');
        TypeKey(VK_RETURN);
    });
    EXPECT_EQ(there,
              (std::vector{IDC_NAME, IDC_PRESS, IDC_FIRST, IDC_SECOND, int(IDOK), int(IDCANCEL)}));
    EXPECT_EQ(back, (std::vector{IDC_NAME, int(IDCANCEL), int(IDOK), IDC_SECOND, IDC_FIRST}));
    EXPECT_EQ(result, IDOK);
}

TEST_F(CDialogTest, MnemonicsDefaultButtonAndFocusMoves)
{
    OuterDialog dialog(&top);
    Run(dialog, [&] {
        TypeWithAlt('P');
        EXPECT_EQ(dialog.presses, 1);
        TypeWithAlt('N');
        EXPECT_EQ(dialog.FocusId(), IDC_NAME);
        dialog.NextDlgCtrl();
        EXPECT_EQ(dialog.FocusId(), IDC_PRESS);
        dialog.PrevDlgCtrl();
        EXPECT_EQ(dialog.FocusId(), IDC_NAME);
        EXPECT_EQ(dialog.GetDefID(), static_cast<DWORD>(MAKELONG(IDOK, DC_HASDEFID)));
        dialog.SetDefID(IDC_PRESS);
        TypeKey(VK_RETURN);
        EXPECT_EQ(dialog.presses, 2);
        CRect place(40, 7, 40 + 60, 7 + 12);  // the template's
        dialog.MapDialogRect(&place);
        CRect name;
        dialog.GetDlgItem(IDC_NAME)->GetWindowRect(&name);
        dialog.ScreenToClient(&name);
        EXPECT_EQ(name, place);
    });
    EXPECT_EQ(dialog.presses, 2);
    EXPECT_EQ(dialog.fontsSet, 1);
}

TEST_F(CDialogTest, OnInitDialogMayChooseTheFocusOrEndTheDialog)
{
    OuterDialog dialog(&top);
    dialog.atInit = [&] {
        dialog.GetDlgItem(IDC_PRESS)->SetFocus();
        return FALSE;
    };
    int focus = 0;
    Run(dialog, [&] { focus = dialog.FocusId(); });
    EXPECT_EQ(focus, IDC_PRESS);

    OuterDialog brief(&top);
    brief.atInit = [&] {
        brief.EndDialog(7);
        return TRUE;
    };
    EXPECT_EQ(brief.DoModal(), 7);
    brief.atInit = [&] { return brief.DestroyWindow(); };
    EXPECT_EQ(brief.DoModal(), -1);
}

TEST_F(CDialogTest, ModalDialogsNest)
{
    OuterDialog first(&top);
    OuterDialog second(&first);
    INT_PTR inner = 0;
    const INT_PTR outer = Run(first, [&] {
        inner = Run(second, [&] {
            EXPECT_FALSE(first.IsWindowEnabled());
            TypeKey(VK_ESCAPE);
        });
        EXPECT_TRUE(first.IsWindowEnabled());
        EXPECT_FALSE(top.IsWindowEnabled());
        EXPECT_EQ(::GetActiveWindow(), first.m_hWnd);
        EXPECT_EQ(first.FocusId(), IDC_NAME);
        TypeKey(VK_RETURN);
    });
    EXPECT_EQ(inner, IDCANCEL);
    EXPECT_EQ(outer, IDOK);
}

TEST_F(CDialogTest, EndsWithItsOwnerAndWithTheProgram)
{
    OuterDialog dialog(&top);
    dialog.endsAfterScript = false;
    EXPECT_EQ(Run(dialog, [] { ::PostQuitMessage(5); }), -1);
    MSG message;
    ASSERT_TRUE(::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 5U);  // for the loop outside
    EXPECT_EQ(Run(dialog, [this] { top.DestroyWindow(); }), -1);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(CDialogTest, AThreadsPumpServesModalDialogs)
{
    struct Probe : CWinApp
    {
        BOOL PumpMessage() override
        {
            ++pumped;
            return CWinApp::PumpMessage();
        }
        int pumped = 0;
    };
    std::optional<Probe> program(std::in_place);
    program->m_pMainWnd = &top;
    OuterDialog dialog;  // without a parent: owned by the main window
    HWND owner = nullptr;
    EXPECT_EQ(Run(dialog,
                  [&] {
                      owner = ::GetWindow(dialog, GW_OWNER);
                      dialog.PostMessage(WM_COMMAND, IDOK);
                  }),
              IDOK);
    EXPECT_EQ(owner, top.m_hWnd);
    EXPECT_GT(program->pumped, 0);
    program->m_pMainWnd = nullptr;
    program.reset();
}

TEST_F(CDialogTest, ExceptionsOfHandlersStayInside)
{
    OuterDialog dialog(&top);
    dialog.throwsAtPress = true;
    EXPECT_EQ(Run(dialog,
                  [&] {
                      dialog.ClickControl(IDC_PRESS);
                      TypeKey(VK_ESCAPE);
                  }),
              IDCANCEL);
    EXPECT_EQ(dialog.presses, 1);
    dialog.atInit = []() -> BOOL { throw std::runtime_error("OnInitDialog"); };
    EXPECT_EQ(dialog.DoModal(), -1);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_TRUE(top.IsWindowEnabled());
}

TEST_F(CDialogTest, FailuresLeaveNothing)
{
    OuterDialog warm(&top);
    Run(warm, [] {});
    CWinThread().OnIdle(1);
    const LeakCheck leaks;
    OuterDialog hooked(&top);
    {
        const ImportHook creation(L"CommonFramework.dll", "user32.dll",
                                  "CreateDialogIndirectParamW", &FailToCreate);
        EXPECT_EQ(hooked.DoModal(), -1);
    }
    EXPECT_TRUE(top.IsWindowEnabled());
    EXPECT_EQ(CDialog(IDD_BROKEN, &top).DoModal(), -1);
    EXPECT_EQ(CDialog(L"No such template", &top).DoModal(), -1);
    EXPECT_EQ(hooked.m_hWnd, nullptr);
    EXPECT_EQ(Run(hooked, [] { TypeKey(VK_RETURN); }), IDOK);  // it can still be opened
    for (const UINT id : {IDD_BROKEN, 4711, IDD_OUTER}) {
        Log log;
        auto* const dialog = new SelfDeletingDialog(log);
        dialog->atInit = []() -> BOOL { AfxThrowMemoryException(); };
        EXPECT_FALSE(dialog->Create(id, &top));
        EXPECT_EQ(log, Log{"deleted"});
    }
    CWinThread().OnIdle(1);
}

TEST_F(CDialogTest, AModelessDialogTakesKeysAndDeletesItself)
{
    Log log;
    auto* const dialog = new SelfDeletingDialog(log);
    ASSERT_TRUE(dialog->Create(IDD_OUTER, &top));
    EXPECT_TRUE(top.IsWindowEnabled());
    dialog->ShowWindow(SW_SHOW);
    ASSERT_TRUE(Activate(*dialog));
    dialog->NextDlgCtrl();
    TypeKey(VK_TAB);
    TypeKey(VK_RETURN);  // the default OnOK hides it
    EXPECT_FALSE(dialog->IsWindowVisible());
    EXPECT_TRUE(log.empty());
    dialog->ShowWindow(SW_SHOW);
    ASSERT_TRUE(Activate(*dialog));
    TypeKey(VK_ESCAPE);
    EXPECT_EQ(log, Log{"deleted"});
}

TEST_F(CDialogTest, TemplatesComeFromTheChosenModule)
{
    constexpr UINT systemFindDialog = 1540;  // of comdlg32.dll
    const HINSTANCE before = AfxGetResourceHandle();
    CDialog dialog;
    EXPECT_FALSE(dialog.Create(systemFindDialog, &top));
    AfxSetResourceHandle(::LoadLibraryW(L"comdlg32.dll"));
    EXPECT_TRUE(dialog.Create(systemFindDialog, &top));
    ::FreeLibrary(AfxGetResourceHandle());
    AfxSetResourceHandle(before);
}

TEST_F(CDialogTest, LeavesNothingBehindAfter200Openings)
{
    const auto open = [this](int times) {
        for (int i = 0; i < times; ++i) {
            OuterDialog dialog(&top);
            CDialog page;
            dialog.atInit = [&] { return page.Create(IDD_PAGE, &dialog); };
            EXPECT_EQ(Run(dialog, [&] { dialog.PostMessage(WM_COMMAND, IDOK); }), IDOK);
        }
        CWinThread().OnIdle(1);
    };
    open(2);
    const LeakCheck leaks;
    open(200);
}
