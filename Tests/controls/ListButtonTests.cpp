// The buttons beside a list.
#include "ListKit.h"

#include "support/LeakCheck.h"

#include <controls/YDialogListCtrlButtonHelper.h>
#include <controls/YListButtons.h>

#include <memory>

namespace {

enum ButtonId : UINT { Up = 20, Down, Add, Edit, Remove };

class ButtonTest : public ListTestOf<YListCtrl>
{
protected:
    void SetUp() override
    {
        ListTestOf<YListCtrl>::SetUp();
        CreateList(list);
        list.Init(TwoColumns(), LVS_EX_FULLROWSELECT);
        for (int i = 0; i < 5; ++i) {
            ASSERT_TRUE(buttons[i].Create(
                L"Button", WS_CHILD | WS_VISIBLE | WS_TABSTOP | (i < 2 ? BS_ICON : 0),
                CRect(310, 30 * i, 400, 30 * i + 28), &top, Up + i));
        }
        top.onItemChanged = [this](const NMLISTVIEW& change) {
            if (change.uChanged & LVIF_STATE) {
                ++updates;
                list.EnableButtons(true, true);
            }
        };
        rows.AddNumbered(3);
    }
    void Join(YDialogListCtrlButtonHelper* helper = nullptr)
    {
        list.InitAssociatedButtons(&buttons[0], &buttons[1], &buttons[2], &buttons[3], &buttons[4],
                                   helper);
    }
    // "ud aer": those that are enabled.
    std::string Enabled() const
    {
        std::string enabled;
        for (int i = 0; i < 5; ++i) {
            enabled += buttons[i].IsWindowEnabled() ? "udaer"[i] : '-';
        }
        return enabled;
    }

    YListCtrl list;
    CButton buttons[5];
    int updates = 0;
};

TEST_F(ButtonTest, FollowTheSelection)
{
    Join();
    list.EnableButtons(true, true);
    EXPECT_EQ(Enabled(), "--a--");
    ClickRow(list, 0);
    EXPECT_EQ(Enabled(), "-daer");
    ClickRow(list, 1);
    EXPECT_EQ(Enabled(), "udaer");
    list.SelectItem(2, false);
    EXPECT_EQ(Enabled(), "u-aer");
    list.SelectItem(0, true);
    EXPECT_EQ(Enabled(), "--a-r");
    list.SelectItem(1, false);
    list.EnableButtons(false, true);
    EXPECT_EQ(Enabled(), "--aer");
    list.EnableButtons(true, false);
    EXPECT_EQ(Enabled(), "ud---");
    list.RemoveItem(2);
    list.RemoveItem(0);
    list.EnableButtons(true, true);
    EXPECT_EQ(Enabled(), "--aer");
}

// One row after another loses its selection: the buttons wait for what comes of it.
TEST_F(ButtonTest, DoNotFlickerWhileTheSelectionIsCleared)
{
    struct Counting : YDialogListCtrlButtonHelper
    {
        using YDialogListCtrlButtonHelper::YDialogListCtrlButtonHelper;
        int calls = 0;
        void EnableButtons(bool moves, bool edits) override
        {
            ++calls;
            YDialogListCtrlButtonHelper::EnableButtons(moves, edits);
        }
        using YDialogListCtrlButtonHelper::EnableButtons;
    };
    Counting helper(&list);
    Join(&helper);
    list.SelectItem(-1, false);
    helper.calls = 0;
    updates = 0;
    list.SelectItem(1, false);
    EXPECT_LT(helper.calls, updates);  // heard of, not followed
    EXPECT_EQ(Enabled(), "udaer");
}

TEST_F(ButtonTest, TheFocusLeavesAnArrowThatIsDisabled)
{
    Join();
    list.SelectItem(1, false);
    buttons[0].SetFocus();
    list.SelectItem(0, false);
    EXPECT_EQ(::GetFocus(), buttons[1].m_hWnd);
    list.SelectItem(1, false);
    list.SelectItem(2, false);
    EXPECT_EQ(::GetFocus(), buttons[0].m_hWnd);
    buttons[2].SetFocus();
    list.SelectItem(0, false);
    EXPECT_EQ(::GetFocus(), buttons[2].m_hWnd);
    EnableUpDownButtons(nullptr, &buttons[1], true, 1, 3);
    EXPECT_TRUE(buttons[1].IsWindowEnabled());  // untouched without the other
    EnableUpDownButtons(&buttons[0], nullptr, true, 1, 3);
    EXPECT_TRUE(buttons[0].IsWindowEnabled());
}

TEST_F(ButtonTest, ADerivedHelperProtectsRows)
{
    struct Protecting : YDialogListCtrlButtonHelper
    {
        using YDialogListCtrlButtonHelper::YDialogListCtrlButtonHelper;
        bool ShouldDeleteBeEnabled(int, int index) override { return index > 0; }
    };
    const auto helper = std::make_unique<Protecting>(&list);
    Join(helper.get());
    list.SelectItem(0, false);
    EXPECT_EQ(Enabled(), "-dae-");
    list.SelectItem(1, false);
    EXPECT_EQ(Enabled(), "udaer");
}

TEST_F(ButtonTest, FindsRowsByTheirExactText)
{
    YDialogListCtrlButtonHelper helper(&list);
    rows.Add(9, {L"ROW 2", L""});
    EXPECT_EQ(helper.FindItemByText(L"ROW 2"), 3);
    EXPECT_EQ(helper.FindItemByText(L"row"), -1);
    helper.SelectItemByText(L"row 2", false);
    EXPECT_EQ(helper.GetSelectionIndex(), 1);
    helper.UpdateItemText(1, L"second");
    helper.SelectItem(3, true);
    std::vector<YUnicodeString> texts{L"before"};
    helper.GetSelectedItemText(texts);
    EXPECT_EQ(texts, (std::vector<YUnicodeString>{L"before", L"second", L"ROW 2"}));
    helper.SelectItemByText(L"nobody", false);
    EXPECT_EQ(helper.GetSelectionCount(), 4u);
    EXPECT_EQ(helper.GetItemCount(), 4);
}

TEST_F(ButtonTest, ADoubleClickOnARowEdits)
{
    Join();
    top.onDoubleClick = [this](NMHDR* header) {
        LRESULT result = 1;
        list.DoItemDblClick(header, &result);
        EXPECT_EQ(result, 0);
    };
    CRect place;
    list.GetItemRect(1, &place, LVIR_LABEL);
    const CPoint label(place.left + 4, place.CenterPoint().y);
    const auto doubleClick = [&](CPoint point) {
        ::SetDoubleClickTime(5'000);
        ClickLeft(list, point);
        ClickLeft(list, point);
        ::SetDoubleClickTime(1);
    };
    doubleClick(label);
    EXPECT_EQ(top.clickedButtons, (std::vector<UINT>{Edit}));
    doubleClick(CPoint(label.x, 190));  // below the rows
    EXPECT_EQ(top.clickedButtons.size(), 1u);
}

// Pixels of the button's face that are the arrow's.
int CountInk(CWnd& button)
{
    button.RedrawWindow();
    CClientDC dc(&button);
    CRect face;
    button.GetClientRect(&face);
    int ink = 0;
    for (int y = 0; y < face.Height(); ++y) {
        for (int x = 0; x < face.Width(); ++x) {
            ink += ::GetPixel(dc, x, y) == RGB(0x1F, 0x6F, 0xBF) ? 1 : 0;
        }
    }
    return ink;
}

// Each button gets its arrow once: the system under the tests keeps a copy for good when it is given
// another.
TEST_F(ButtonTest, ArrowsAreDrawn)
{
    int ink[2] = {};
    for (const bool large : {false, true}) {
        CButton up;
        CButton down;
        for (CButton* const button : {&up, &down}) {
            ASSERT_TRUE(button->Create(L"", WS_CHILD | WS_VISIBLE | BS_ICON,
                                       CRect(310, 200, 350, 240), &top, 30));
        }
        if (large) {
            list.UseLargeUpDownIcons();
        }
        list.InitAssociatedButtons(&up, &down, nullptr, nullptr, nullptr, nullptr);
        ink[large] = CountInk(up);
        up.ShowWindow(SW_HIDE);
        EXPECT_EQ(CountInk(down), ink[large]);
    }
    EXPECT_GT(ink[0], 30);
    EXPECT_GT(ink[1], ink[0] * 3 / 2);
}

TEST_F(ButtonTest, ThousandRoundsLeaveNothing)
{
    const auto round = [&] {
        CButton up;
        up.Create(L"", WS_CHILD | WS_VISIBLE | BS_ICON, CRect(310, 200, 340, 230), &top, 30);
        list.InitAssociatedButtons(&up, nullptr, nullptr, nullptr, nullptr, nullptr);
        list.EnableButtons(true, true);
    };
    round();
    CWinThread().OnIdle(1);
    const LeakCheck leaks;
    for (int i = 0; i < 1'000; ++i) {
        round();
    }
    CWinThread().OnIdle(1);
    list.InitAssociatedButtons(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
}

}  // namespace
