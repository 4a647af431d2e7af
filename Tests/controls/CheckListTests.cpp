// Lists whose rows have boxes, and lists that look like list boxes.
#include "ListKit.h"

#include "support/LeakCheck.h"

#include <controls/ICheckBoxListCtrlHelper.h>
#include <controls/YListBox.h>

#include <set>

namespace {

class BoxTest : public ListTestOf<YCheckBoxListCtrl>, public ICheckBoxListCtrlHelper
{
protected:
    BoxTest() : list(L"boxes", nullptr) {}

    void SetUp() override
    {
        ListTestOf<YCheckBoxListCtrl>::SetUp();
        CreateList(list);
        list.SetSink(this);
        list.Init(TwoColumns(), 0);
        top.onItemChanged = [this](const NMLISTVIEW& change) { list.OnItemChanged(change.iItem); };
        for (const unsigned long data : {1ul, 2ul, 3ul}) {
            EXPECT_EQ(list.AddItem(data), static_cast<int>(data) - 1);
        }
    }

    void GetItemColumns(unsigned long data, std::vector<YUnicodeString>& columns) override
    {
        columns.emplace_back((L"row " + std::to_wstring(data)).c_str());
    }
    void ReleaseItemData(unsigned long) override { ++released; }
    bool IsItemChecked(unsigned long data) override { return checked.count(data) != 0; }
    void OnItemCheckChanged(unsigned long data, bool isChecked) override
    {
        reports.push_back(std::to_string(data) + (isChecked ? "+" : "-"));
        if (isChecked) {
            checked.insert(data);
        } else {
            checked.erase(data);
        }
    }
    void ClickBox(int row)
    {
        CRect place;
        ASSERT_TRUE(list.GetItemRect(row, &place, LVIR_LABEL));
        ClickLeft(list, CPoint(place.left - 9, place.CenterPoint().y));
    }
    std::string Boxes() const
    {
        std::string boxes;
        for (int i = 0; i < list.GetItemCount(); ++i) {
            boxes += list.GetCheck(i) ? '+' : '-';
        }
        return boxes;
    }

    YCheckBoxListCtrl list;
    std::set<unsigned long> checked{2};
    Log reports;
    int released = 0;
};

TEST_F(BoxTest, ShowWhatTheProgramSays)
{
    EXPECT_EQ(Boxes(), "-+-");
    EXPECT_EQ(reports, Log());  // nobody has clicked
    checked = {3};
    list.UpdateItem(1);
    list.UpdateItem(2);
    EXPECT_EQ(Boxes(), "--+");
    list.OnItemChanged(-1);
    list.OnItemChanged(3);
    reports.clear();
    ClickBox(0);
    EXPECT_EQ(Boxes(), "+-+");
    EXPECT_EQ(reports, Log{"1+"});
    ClickRow(list, 0);
    list.SetFocus();
    reports.clear();
    TypeKey(VK_SPACE);
    EXPECT_EQ(Boxes(), "--+");
    EXPECT_EQ(reports.back(), "1-");
}

TEST_F(BoxTest, OwnChangesAreNotReported)
{
    list.SelectItem(0, false);
    list.SelectItem(1, true);
    reports.clear();
    EXPECT_TRUE(list.DoDelete());
    EXPECT_EQ(reports, Log());
    EXPECT_EQ(released, 2);
    list.AddItem(2);
    EXPECT_EQ(Boxes(), "-+");
    list.SelectItem(0, false);
    reports.clear();
    EXPECT_TRUE(list.DoMoveSelected(MoveDown));
    EXPECT_EQ(Boxes(), "+-");  // the box goes with its row
    for (const std::string& report : reports) {  // the selection has moved, no box
        EXPECT_TRUE(report == "2+" || report == "3-") << report;
    }
    reports.clear();
    list.EnableWindow(FALSE);
    list.EnableWindow(TRUE);
    list.UseDefaultSortingFunction();
    list.SetSorting(0, SortDescending);
    list.Sort();
    EXPECT_EQ(Boxes(), "-+");
    EXPECT_EQ(reports, Log());
}

class BoxOfLines : public ListTestOf<YListCtrl>
{};

TEST_F(BoxOfLines, AreAsWideAsTheLongest)
{
    YListBox box;
    ASSERT_TRUE(box.Create(WS_CHILD | WS_VISIBLE | LVS_SMALLICON, CRect(0, 0, 150, 100), &top, 3));
    box.Init();
    const DWORD wanted = LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOCOLUMNHEADER;
    EXPECT_EQ(box.GetStyle() & (wanted | LVS_TYPEMASK), wanted);
    EXPECT_EQ(box.GetColumnWidth(0), 150);
    EXPECT_EQ(box.AddString(L"short"), 0);
    EXPECT_EQ(box.GetColumnWidth(0), box.GetStringWidth(L"short") + 10);
    EXPECT_EQ(box.AddString(L"a longer line"), 1);
    EXPECT_EQ(box.AddString(L"Short"), 2);
    EXPECT_EQ(box.GetColumnWidth(0), box.GetStringWidth(L"a longer line") + 10);
    EXPECT_EQ(box.FindStringExact(-1, L"SHORT"), 0);
    EXPECT_EQ(box.FindStringExact(0, L"short"), 2);
    EXPECT_EQ(box.FindStringExact(-1, L"a longer"), -1);
    EXPECT_EQ(box.GetCurSel(), -1);
    box.SetCurSel(2);
    box.SetCurSel(1);
    EXPECT_EQ(box.GetCurSel(), 1);
    EXPECT_EQ(box.GetText(1), L"a longer line");
    box.DeleteString(1);
    EXPECT_EQ(box.GetColumnWidth(0),
              std::max(box.GetStringWidth(L"short"), box.GetStringWidth(L"Short")) + 10);
    box.DeleteString(0);
    box.DeleteString(0);
    EXPECT_EQ(box.GetColumnWidth(0), 10);
    EXPECT_EQ(box.GetCount(), 0);
}

TEST_F(BoxOfLines, AndListsWithBoxesLeaveNothingAfterAThousandRounds)
{
    struct Boxes : ICheckBoxListCtrlHelper
    {
        void GetItemColumns(unsigned long, std::vector<YUnicodeString>& columns) override
        {
            columns.emplace_back(L"row");
        }
        void ReleaseItemData(unsigned long) override {}
        bool IsItemChecked(unsigned long data) override { return data % 2 != 0; }
        void OnItemCheckChanged(unsigned long, bool) override {}
    };
    Boxes boxes;
    const auto round = [&] {
        YListBox lines;
        lines.Create(WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 100), &top, 3);
        lines.Init();
        lines.AddString(L"line");
        lines.DeleteString(0);
        YCheckBoxListCtrl list(L"list", nullptr);
        list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(100, 0, 300, 100), &top, 4);
        list.SetSink(&boxes);
        list.Init(TwoColumns(), 0);
        list.AddItem(1);
        list.AddItem(2);
        list.SelectItem(0, false);
        list.DoDelete();
    };
    round();
    CWinThread().OnIdle(1);
    const LeakCheck leaks;
    for (int i = 0; i < 1'000; ++i) {
        round();
    }
    CWinThread().OnIdle(1);
}

}  // namespace
