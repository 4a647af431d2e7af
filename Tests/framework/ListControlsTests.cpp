// Lists, check lists, combo boxes and trees in a dialog.
#include "ScriptedDialog.h"

#include <BCGCBProInc.h>
#include <afxcmn.h>

namespace {

class ListsDialog : public ScriptedDialog
{
public:
    CBCGPCheckListBox list;
    CTreeCtrl tree;
    CComboBox combo;
    Log log;
    bool endsAtCheck = false;

protected:
    void DoDataExchange(CDataExchange* exchange) override
    {
        ScriptedDialog::DoDataExchange(exchange);
        DDX_Control(exchange, IDC_LIST, list);
        DDX_Control(exchange, IDC_TREE, tree);
        DDX_Control(exchange, IDC_COMBO, combo);
    }

    afx_msg void OnCheck()
    {
        const int line = list.GetCurSel();
        log.push_back(std::to_string(line) + (list.GetCheck(line) ? "+" : "-"));
        if (endsAtCheck) {
            DestroyWindow();
        }
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(ListsDialog, ScriptedDialog)
    ON_CLBN_CHKCHANGE(IDC_LIST, &ListsDialog::OnCheck)
END_MESSAGE_MAP()

// Two clicks at one place count as a double click, as they do for users.
class WithDoubleClicks
{
public:
    WithDoubleClicks() { ::SetDoubleClickTime(5000); }
    ~WithDoubleClicks() { ::SetDoubleClickTime(1); }
};

class ListControls : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        ShowTop();
        ASSERT_TRUE(dialog.Create(IDD_LISTS, &top));
        dialog.ShowWindow(SW_SHOW);
        ASSERT_TRUE(Activate(dialog));
        ASSERT_TRUE(StandsStill(dialog));
        for (const wchar_t* line : {L"zero", L"one", L"two", L"three"}) {
            const int index = list.AddString(line);
            list.SetItemData(index, static_cast<DWORD_PTR>(index) + 100);
        }
        PumpMessages();
    }
    void TearDown() override
    {
        dialog.DestroyWindow();
        WindowTest::TearDown();
    }

    CRect BoxOf(int line)
    {
        CRect rect;
        list.GetItemRect(line, &rect);
        return list.OnGetCheckPosition(rect, CRect(0, 0, 13, 13));
    }
    CPoint TextOf(int line)
    {
        CRect rect;
        list.GetItemRect(line, &rect);
        return CPoint(rect.left + 40, rect.CenterPoint().y);
    }
    std::string Checks()
    {
        std::string checks;
        for (int i = 0; i < list.GetCount(); ++i) {
            checks += list.GetCheck(i) == BST_CHECKED ? '1' : '0';
        }
        return checks;
    }
    int CountPixels(const CRect& rect, COLORREF color)
    {
        list.UpdateWindow();
        CClientDC dc(&list);
        int count = 0;
        for (int y = rect.top; y < rect.bottom; ++y) {
            for (int x = rect.left; x < rect.right; ++x) {
                count += dc.GetPixel(x, y) == color;
            }
        }
        return count;
    }

    ListsDialog dialog;
    CBCGPCheckListBox& list = dialog.list;
    CTreeCtrl& tree = dialog.tree;
};

}  // namespace

TEST_F(ListControls, ClicksIntoTheBoxAndSpaceCheckALine)
{
    ClickLeft(list, BoxOf(1).CenterPoint());
    EXPECT_EQ(Checks(), "0100");
    EXPECT_EQ(list.GetCurSel(), 1);
    ClickLeft(list, TextOf(2));  // selects only
    EXPECT_EQ(list.GetCurSel(), 2);
    EXPECT_EQ(Checks(), "0100");
    TypeKey(VK_SPACE);
    EXPECT_EQ(Checks(), "0110");
    TypeKey(VK_UP);
    TypeKey(VK_SPACE);
    EXPECT_EQ(Checks(), "0010");
    EXPECT_EQ(dialog.log, (Log{"1+", "2+", "1-"}));
    CRect client;
    list.GetClientRect(&client);
    ClickLeft(list, CPoint(BoxOf(3).CenterPoint().x, client.bottom - 2));  // below the last line
    EXPECT_EQ(Checks(), "0010");
    list.SetCheck(0, BST_CHECKED);  // a program's doing notifies nobody
    EXPECT_EQ(dialog.log.size(), 3U);
}

TEST_F(ListControls, DoubleClicksCheckALineAndFastClicksInTheBoxCountEach)
{
    const WithDoubleClicks time;
    ClickLeft(list, TextOf(1));
    ClickLeft(list, TextOf(1));
    EXPECT_EQ(Checks(), "0100");
    ClickLeft(list, BoxOf(3).CenterPoint());
    ClickLeft(list, BoxOf(3).CenterPoint());
    EXPECT_EQ(Checks(), "0100");
    EXPECT_EQ(dialog.log, (Log{"1+", "3+", "3-"}));
}

TEST_F(ListControls, DisabledLinesCannotBeChecked)
{
    list.Enable(1, FALSE);
    ClickLeft(list, BoxOf(1).CenterPoint());
    TypeKey(VK_SPACE);
    EXPECT_EQ(Checks(), "0000");
    EXPECT_FALSE(list.IsEnabled(1));
    EXPECT_TRUE(list.IsEnabled(2));
    EXPECT_TRUE(dialog.log.empty());
}

TEST_F(ListControls, ChecksAndDataStayWithTheirLines)
{
    list.SetCheck(1, BST_CHECKED);
    list.SetCheck(3, BST_CHECKED);
    list.Enable(3, FALSE);
    list.InsertString(0, L"new");
    EXPECT_EQ(Checks(), "00101");
    EXPECT_EQ(list.GetItemData(2), 101U);
    list.DeleteString(1);
    list.DeleteString(77);  // no such line
    EXPECT_EQ(Checks(), "0101");
    EXPECT_FALSE(list.IsEnabled(3));
    CString text;
    list.GetText(3, text);
    EXPECT_EQ(text, L"three");
    list.GetText(4, text);
    EXPECT_EQ(text, L"");
    EXPECT_EQ(list.GetCheck(-1), BST_UNCHECKED);
    list.SetCheck(4, BST_CHECKED);
    list.ResetContent();
    EXPECT_EQ(list.AddString(L"again"), 0);
    EXPECT_EQ(Checks(), "0");
    EXPECT_TRUE(list.IsEnabled(0));
}

TEST_F(ListControls, LinesAreTallEnoughAndDrawnInSystemColours)
{
    CRect line;
    list.GetItemRect(0, &line);
    EXPECT_GE(line.Height(), BoxOf(0).Height() + 2);
    EXPECT_GE(BoxOf(0).top, line.top);
    list.SetCurSel(1);
    const COLORREF ink = ::GetSysColor(COLOR_WINDOWTEXT);
    const CRect inside(BoxOf(0).left + 3, BoxOf(0).top + 3, BoxOf(0).right - 3,
                       BoxOf(0).bottom - 3);
    EXPECT_EQ(CountPixels(inside, ink), 0);
    list.SetCheck(0, BST_CHECKED);
    EXPECT_GT(CountPixels(inside, ink), 5);
    CRect second;
    list.GetItemRect(1, &second);
    EXPECT_GT(CountPixels(second, ::GetSysColor(COLOR_HIGHLIGHT)), second.Height() * 20);
    CRect third;
    list.GetItemRect(2, &third);
    third.left = BoxOf(2).right;
    EXPECT_GT(CountPixels(third, ink), 5);
    list.Enable(2, FALSE);
    EXPECT_EQ(CountPixels(third, ink), 0);
    EXPECT_GT(CountPixels(third, ::GetSysColor(COLOR_GRAYTEXT)), 5);
}

TEST_F(ListControls, TheParentMayEndTheListThatNotifiesIt)
{
    dialog.endsAtCheck = true;
    ClickLeft(list, BoxOf(1).CenterPoint());
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_EQ(list.m_hWnd, nullptr);
}

TEST_F(ListControls, ComboBoxesKeepTextsAndData)
{
    CComboBox& combo = dialog.combo;
    EXPECT_EQ(combo.AddString(L"first"), 0);
    EXPECT_EQ(combo.AddString(L"second"), 1);
    combo.SetItemData(1, 42);
    EXPECT_EQ(combo.GetItemData(1), 42U);
    EXPECT_EQ(combo.SetCurSel(1), 1);
    CString text;
    combo.GetLBText(combo.GetCurSel(), text);
    EXPECT_EQ(text, L"second");
    combo.GetLBText(2, text);
    EXPECT_EQ(text, L"");
    combo.ResetContent();
    EXPECT_EQ(combo.GetCount(), 0);
}

TEST_F(ListControls, TheTextOfATreesItemMayBeLong)
{
    const CString longText(L'x', 200);
    EXPECT_EQ(tree.GetItemText(tree.InsertItem(longText)), longText);
}
