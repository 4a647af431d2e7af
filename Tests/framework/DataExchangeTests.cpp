// Data exchange: between members and every kind of control, and what is refused.
#include "ScriptedDialog.h"

#include "support/ImportHook.h"
#include "support/LeakCheck.h"

#include <optional>

namespace {

class ValuesDialog : public ScriptedDialog
{
public:
    explicit ValuesDialog(CWnd* owner) : ScriptedDialog(IDD_VALUES, owner) {}

    CString name = L"first";
    int number = -3;
    UINT count = 4;
    int check = BST_CHECKED;
    int radio = 1;
    int comboIndex = -1;
    int listIndex = -1;
    CEdit nameEdit;
    Log log;
    std::function<void(CDataExchange&)> duringExchange;

    std::wstring TextOf(int id) const
    {
        CString text;
        GetDlgItem(id)->GetWindowText(text);
        return text.GetString();
    }

protected:
    BOOL OnInitDialog() override
    {
        for (const wchar_t* line : {L"a", L"b", L"c"}) {
            SendDlgItem(IDC_COMBO, CB_ADDSTRING, line);
            SendDlgItem(IDC_LIST, LB_ADDSTRING, line);
        }
        return ScriptedDialog::OnInitDialog();
    }

    void DoDataExchange(CDataExchange* exchange) override
    {
        ScriptedDialog::DoDataExchange(exchange);
        DDX_Control(exchange, IDC_NAME, nameEdit);
        DDX_Text(exchange, IDC_NAME, name);
        DDV_MaxChars(exchange, name, 8);
        DDX_Text(exchange, IDC_NUMBER, number);
        DDV_MinMaxInt(exchange, number, -10, 10);
        DDX_Text(exchange, IDC_COUNT, count);
        DDV_MinMaxUInt(exchange, count, 1, 4000000000);
        DDX_Check(exchange, IDC_CHECK, check);
        DDX_Radio(exchange, IDC_RADIO, radio);
        DDX_CBIndex(exchange, IDC_COMBO, comboIndex);
        DDX_LBIndex(exchange, IDC_LIST, listIndex);
        if (duringExchange) {
            duringExchange(*exchange);
        }
    }

    afx_msg void OnChange() { log.push_back("change"); }
    DECLARE_MESSAGE_MAP()

private:
    void SendDlgItem(int id, UINT message, const wchar_t* text)
    {
        ::SendDlgItemMessageW(m_hWnd, id, message, 0, reinterpret_cast<LPARAM>(text));
    }
};

BEGIN_MESSAGE_MAP(ValuesDialog, ScriptedDialog)
    ON_EN_CHANGE(IDC_NAME, &ValuesDialog::OnChange)
END_MESSAGE_MAP()

// What the user was told last, in place of the message box.
CString told;
int WINAPI TakeDown(HWND, LPCWSTR text, LPCWSTR, UINT)
{
    told = text;
    return IDOK;
}

class DataExchangeTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        ShowTop();
        ASSERT_TRUE(dialog.Create(IDD_VALUES, &top));
        dialog.ShowWindow(SW_SHOW);
        ASSERT_TRUE(Activate(dialog));
    }
    void TearDown() override
    {
        dialog.DestroyWindow();
        told.Empty();
        WindowTest::TearDown();
    }

    ValuesDialog dialog{&top};
    ImportHook messageBox{L"CommonFramework.dll", "user32.dll", "MessageBoxW", &TakeDown};
};

}  // namespace

TEST_F(DataExchangeTest, MembersFillTheControls)
{
    EXPECT_EQ(dialog.nameEdit.m_hWnd, ::GetDlgItem(dialog, IDC_NAME));
    EXPECT_EQ(dialog.TextOf(IDC_NAME), L"first");
    EXPECT_EQ(dialog.TextOf(IDC_NUMBER), L"-3");
    EXPECT_EQ(dialog.TextOf(IDC_COUNT), L"4");
    EXPECT_TRUE(dialog.IsDlgButtonChecked(IDC_CHECK));
    EXPECT_FALSE(dialog.IsDlgButtonChecked(IDC_RADIO));
    EXPECT_TRUE(dialog.IsDlgButtonChecked(IDC_RADIO + 1));
    dialog.radio = -1;
    dialog.comboIndex = 2;
    dialog.listIndex = 1;
    EXPECT_TRUE(dialog.UpdateData(FALSE));
    EXPECT_FALSE(dialog.IsDlgButtonChecked(IDC_RADIO + 1));
    EXPECT_EQ(::SendDlgItemMessageW(dialog, IDC_COMBO, CB_GETCURSEL, 0, 0), 2);
    EXPECT_EQ(::SendDlgItemMessageW(dialog, IDC_LIST, LB_GETCURSEL, 0, 0), 1);
    dialog.comboIndex = 3;  // no such line: none is chosen
    EXPECT_TRUE(dialog.UpdateData(FALSE));
    EXPECT_EQ(::SendDlgItemMessageW(dialog, IDC_COMBO, CB_GETCURSEL, 0, 0), CB_ERR);
}

TEST_F(DataExchangeTest, ControlsFillTheMembers)
{
    dialog.GotoDlgCtrl(&dialog.nameEdit);
    TypeKey('X');
    dialog.ClickControl(IDC_CHECK);
    dialog.ClickControl(IDC_RADIO + 2);
    ::SetDlgItemTextW(dialog, IDC_NUMBER, L" -10 ");
    ::SetDlgItemTextW(dialog, IDC_COUNT, L"4000000000");
    ::SendDlgItemMessageW(dialog, IDC_COMBO, CB_SETCURSEL, 1, 0);
    ::SendDlgItemMessageW(dialog, IDC_LIST, LB_SETCURSEL, 2, 0);
    EXPECT_TRUE(dialog.UpdateData());
    EXPECT_EQ(dialog.name, L"x");  // the old text was selected
    EXPECT_EQ(dialog.number, -10);
    EXPECT_EQ(dialog.count, 4000000000);
    EXPECT_EQ(dialog.check, BST_UNCHECKED);
    EXPECT_EQ(dialog.radio, 2);
    EXPECT_EQ(dialog.comboIndex, 1);
    EXPECT_EQ(dialog.listIndex, 2);
}

TEST_F(DataExchangeTest, WhatIsRefusedIsToldAndGetsTheFocusSelected)
{
    struct Case
    {
        int id;
        const wchar_t* text;
        const wchar_t* part;  // of what is told
    };
    const Case cases[] = {
        {IDC_NUMBER, L"", L"integer"},
        {IDC_NUMBER, L"1x", L"integer"},
        {IDC_NUMBER, L"1 2", L"integer"},
        {IDC_NUMBER, L"2147483648", L"integer"},
        {IDC_NUMBER, L"11", L"between -10 and 10"},
        {IDC_NUMBER, L"-11", L"between -10 and 10"},
        {IDC_COUNT, L"-1", L"positive integer"},
        {IDC_COUNT, L"4294967296", L"positive integer"},
        {IDC_COUNT, L"0", L"between 1 and 4000000000"},
        {IDC_NAME, L"ninechars", L"8 characters"},
    };
    for (const Case& c : cases) {
        dialog.name = L"first";
        dialog.number = -3;
        dialog.count = 4;
        dialog.UpdateData(FALSE);
        dialog.GotoDlgCtrl(dialog.GetDlgItem(IDC_CHECK));
        ::SetDlgItemTextW(dialog, c.id, c.text);
        told.Empty();
        EXPECT_FALSE(dialog.UpdateData()) << c.id;
        EXPECT_GE(told.Find(c.part), 0) << c.id << told.GetString();
        EXPECT_EQ(dialog.FocusId(), c.id);
        DWORD start = 1;
        DWORD end = 0;
        ::SendDlgItemMessageW(dialog, c.id, EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                              reinterpret_cast<LPARAM>(&end));
        EXPECT_EQ(start, 0U);
        EXPECT_EQ(end, static_cast<DWORD>(::lstrlenW(c.text)));
        // What is no number at all does not reach the member.
        EXPECT_TRUE(told.Find(L"integer.") < 0 || (dialog.number == -3 && dialog.count == 4));
    }
    TypeKey(VK_RETURN);  // the focus is in the name, nine characters: the dialog stays
    EXPECT_TRUE(dialog.IsWindowVisible());
}

TEST_F(DataExchangeTest, TypingStopsAtTheLimit)
{
    dialog.GotoDlgCtrl(&dialog.nameEdit);
    for (int i = 0; i < 10; ++i) {
        TypeKey('A');
    }
    EXPECT_EQ(dialog.TextOf(IDC_NAME), L"aaaaaaaa");
}

TEST_F(DataExchangeTest, OneExchangeAtATimeWithoutNotifications)
{
    dialog.log.clear();
    ::SetDlgItemTextW(dialog, IDC_NAME, L"by hand");
    EXPECT_EQ(dialog.log, Log{"change"});
    std::optional<BOOL> inner;
    dialog.duringExchange = [&](CDataExchange&) { inner = dialog.UpdateData(FALSE); };
    EXPECT_TRUE(dialog.UpdateData(FALSE));
    EXPECT_EQ(inner, FALSE);
    EXPECT_EQ(dialog.log, Log{"change"});
    EXPECT_EQ(dialog.TextOf(IDC_NAME), L"first");
}

TEST_F(DataExchangeTest, FaultsKeepTheDialogOpenAndUsable)
{
    dialog.duringExchange = [](CDataExchange& exchange) { exchange.PrepareCtrl(4711); };
    EXPECT_FALSE(dialog.UpdateData());
    dialog.duringExchange = [](CDataExchange&) { throw std::bad_alloc(); };
    TypeKey(VK_RETURN);
    EXPECT_TRUE(dialog.IsWindowVisible());
    dialog.duringExchange = nullptr;
    EXPECT_TRUE(dialog.UpdateData());
    ValuesDialog other(&top);
    other.duringExchange = [](CDataExchange& exchange) { exchange.Fail(); };
    EXPECT_EQ(other.DoModal(), -1);
}
