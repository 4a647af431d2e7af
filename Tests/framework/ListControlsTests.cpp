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
    LRESULT vetoes = 0;

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
    afx_msg void OnSelecting(NMHDR*, LRESULT* result)
    {
        log.push_back("selecting");
        *result = vetoes;
    }
    afx_msg void OnSelected(NMHDR*, LRESULT*) { log.push_back("selected"); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(ListsDialog, ScriptedDialog)
    ON_CLBN_CHKCHANGE(IDC_LIST, &ListsDialog::OnCheck)
    ON_NOTIFY(TVN_SELCHANGINGW, IDC_TREE, &ListsDialog::OnSelecting)
    ON_NOTIFY(TVN_SELCHANGEDW, IDC_TREE, &ListsDialog::OnSelected)
END_MESSAGE_MAP()

// Two clicks at one place count as a double click, as they do for users.
class WithDoubleClicks
{
public:
    WithDoubleClicks() { ::SetDoubleClickTime(5000); }
    ~WithDoubleClicks() { ::SetDoubleClickTime(1); }
};

// The tree waits inside its handler for the button to come up again: both events are there first.
void ClickAtOnce(HWND window, POINT point)
{
    MovePointer(window, point);
    INPUT inputs[2]{};
    inputs[0].type = inputs[1].type = INPUT_MOUSE;
    inputs[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    inputs[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    ::SendInput(2, inputs, sizeof(INPUT));
    PumpMessages();
}

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

TEST_F(ListControls, ACreatedListChecksItsLinesToo)
{
    CCheckListBox made;
    ASSERT_TRUE(made.Create(WS_CHILD | LBS_SORT | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS,
                            CRect(0, 0, 90, 90), &dialog, 5));
    made.AddString(L"b");
    made.SetCheck(0, BST_CHECKED);
    EXPECT_EQ(made.AddString(L"a"), 0);
    EXPECT_EQ(made.GetCheck(0), BST_UNCHECKED);
    EXPECT_EQ(made.GetCheck(1), BST_CHECKED);
    CRect line;
    made.GetItemRect(0, &line);
    EXPECT_GE(line.Height(), 15);
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

TEST_F(ListControls, TreesAreWalkedExpandedAndSelected)
{
    const HTREEITEM first = tree.InsertItem(L"first");
    const HTREEITEM last = tree.InsertItem(L"last");
    const HTREEITEM child = tree.InsertItem(L"child", first);
    const HTREEITEM earlier = tree.InsertItem(L"earlier", first, TVI_FIRST);
    const CString longText(L'x', 200);
    EXPECT_TRUE(tree.SetItemText(last, longText));
    EXPECT_EQ(tree.GetItemText(last), longText);
    EXPECT_EQ(tree.GetItemText(child), L"child");
    EXPECT_TRUE(tree.SetItemData(child, 7));
    EXPECT_EQ(tree.GetItemData(child), 7U);
    EXPECT_EQ(tree.GetCount(), 4U);
    EXPECT_EQ(tree.GetRootItem(), first);
    EXPECT_EQ(tree.GetChildItem(first), earlier);
    EXPECT_EQ(tree.GetNextSiblingItem(earlier), child);
    EXPECT_EQ(tree.GetPrevSiblingItem(child), earlier);
    EXPECT_EQ(tree.GetParentItem(child), first);
    EXPECT_FALSE(tree.ItemHasChildren(child));

    EXPECT_EQ(tree.GetNextVisibleItem(first), last);
    EXPECT_TRUE(tree.Expand(first, TVE_EXPAND));
    EXPECT_TRUE(tree.GetItemState(first, TVIS_EXPANDED) & TVIS_EXPANDED);
    EXPECT_EQ(tree.GetNextVisibleItem(first), earlier);
    EXPECT_EQ(tree.GetPrevVisibleItem(last), child);
    EXPECT_EQ(tree.GetLastVisibleItem(), last);

    dialog.log.clear();
    EXPECT_TRUE(tree.SelectItem(child));
    EXPECT_EQ(tree.GetSelectedItem(), child);
    EXPECT_EQ(dialog.log, (Log{"selecting", "selected"}));
    dialog.vetoes = TRUE;
    CRect rect;
    EXPECT_TRUE(tree.GetItemRect(last, &rect, TRUE));
    ClickAtOnce(tree, {rect.left + 3, rect.CenterPoint().y});
    EXPECT_EQ(tree.GetSelectedItem(), child);
    EXPECT_EQ(dialog.log.back(), "selecting");
    dialog.vetoes = FALSE;
    EXPECT_TRUE(tree.DeleteItem(first));
    EXPECT_EQ(tree.GetCount(), 1U);
    for (int i = 0; i < 50; ++i) {
        tree.InsertItem(L"more");
    }
    EXPECT_LT(tree.GetVisibleCount(), 50U);
    EXPECT_TRUE(tree.EnsureVisible(tree.GetLastVisibleItem()));
    EXPECT_TRUE(tree.DeleteAllItems());
    EXPECT_EQ(tree.GetRootItem(), nullptr);
}
