// The order of the rows.
#include "ListKit.h"

#include <random>

namespace {

class SortTest : public ListTestOf<YListCtrl>, public IListCtrlSortSink
{
protected:
    YListCtrl list;
    int sorted = 0;

    void Create(DWORD style = 0)
    {
        CreateList(list, LVS_REPORT | style);
        list.SetSortSink(this);
        list.Init(TwoColumns(), 0);
    }
    void OnSortChanged() override { ++sorted; }

    // Rows of few different texts, which tell by their number where they were before.
    void AddShuffled(unsigned count)
    {
        std::mt19937 random(7);
        list.DisableDraw();
        for (unsigned i = 1; i <= count; ++i) {
            rows.Add(i,
                     {std::wstring(1, static_cast<wchar_t>((i % 2 ? L'a' : L'A') + random() % 20)),
                      std::to_wstring(i)});
        }
        list.EnableDraw();
    }
    // Every row has its own value, the texts are in order, equal ones as they came.
    void ExpectStable(bool ascending)
    {
        for (int i = 0; i + 1 < list.GetItemCount(); ++i) {
            const int order = _wcsicmp(list.GetItemText(i, 0), list.GetItemText(i + 1, 0));
            const auto data = list.GetItemData(i);
            ASSERT_EQ(std::to_wstring(data), list.GetItemText(i, 1).GetString());
            ASSERT_TRUE(ascending ? order <= 0 : order >= 0) << i;
            ASSERT_TRUE(order != 0 || data < list.GetItemData(i + 1)) << i;
        }
    }
};

// By the number in the second column, as the order says.
int CompareNumbers(unsigned long data1, unsigned long data2, int, SortOrder order)
{
    const int difference = data1 < data2 ? -1 : data1 > data2 ? 1 : 0;
    return order == SortDescending ? -difference : difference;
}

TEST_F(SortTest, ByTextsOfAThousandRows)
{
    Create();
    AddShuffled(1'000);
    list.SelectItem(10, false);
    list.SelectItem(500, true);
    const auto first = list.GetItemData(10);
    const auto second = list.GetItemData(500);
    int heard = 0;
    top.onItemChanged = [&](const NMLISTVIEW& change) {
        heard += (change.uChanged & LVIF_PARAM) != 0 ? 1 : 0;
    };
    list.UseDefaultSortingFunction();
    list.Sort();
    ExpectStable(true);
    list.SetSorting(0, SortDescending);
    list.Sort();
    list.Sort();
    std::map<int, unsigned long> selection;
    list.GetSelection(selection);
    ASSERT_EQ(selection.size(), 2u);
    for (const auto& [row, data] : selection) {
        EXPECT_TRUE(data == first || data == second);
    }
    EXPECT_EQ(heard, 0);  // values that rows carry only meanwhile are nobody's business
    int order = 0;
    for (int i = 0; i + 1 < list.GetItemCount(); ++i) {
        order = std::max(order, _wcsicmp(list.GetItemText(i + 1, 0), list.GetItemText(i, 0)));
    }
    EXPECT_LE(order, 0);
}

TEST_F(SortTest, EqualTextsKeepTheirOrderDescendingToo)
{
    Create();
    AddShuffled(300);
    list.UseDefaultSortingFunction();
    list.SetSorting(0, SortDescending);
    list.Sort();
    ExpectStable(false);
}

TEST_F(SortTest, ByRowSeesRowsThatStandStill)
{
    struct Watch
    {
        const SortTest* test;
        Texts before;
        bool moved;
    };
    struct Function
    {
        static int CALLBACK Compare(LPARAM row1, LPARAM row2, LPARAM parameter)
        {
            const auto& context = *reinterpret_cast<const ListSortContext*>(parameter);
            auto& watch = *static_cast<Watch*>(context.helper);
            for (const LPARAM row : {row1, row2}) {
                watch.moved = watch.moved || watch.before[static_cast<std::size_t>(row)] !=
                                                 context.list->GetItemText(row, 1).GetString();
            }
            return context.compareItems(context.list->GetItemData(row1),
                                        context.list->GetItemData(row2), context.column,
                                        context.order);
        }
    };
    Create();
    AddShuffled(200);
    list.SetSorting(1, SortDescending);
    Watch watch{this, ColumnOf(list, 1), false};
    list.SetSortCompareHelper(&watch);
    list.SetSortCompareItemsFunction(&CompareNumbers);
    list.SetSortingUsingIndexFunction(&Function::Compare);
    list.Sort();
    EXPECT_FALSE(watch.moved);
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(list.GetItemData(i), 200u - static_cast<unsigned>(i));
    }
}

TEST_F(SortTest, CaptionsSortByRealClicks)
{
    Create();
    AddShuffled(20);
    ClickCaption(list, 0);
    EXPECT_EQ(top.columnClicks, 1);  // without a comparison it is the dialog's
    EXPECT_EQ(sorted, 0);
    list.SetSortCompareItemsFunction(&CompareNumbers);
    ClickCaption(list, 1);
    EXPECT_EQ(ArrowsOf(list), "-a");
    EXPECT_EQ(list.GetItemData(0), 1u);
    ClickCaption(list, 1);
    EXPECT_EQ(ArrowsOf(list), "-d");
    EXPECT_EQ(list.GetItemData(0), 20u);
    ClickCaption(list, 0);
    EXPECT_EQ(ArrowsOf(list), "a-");
    EXPECT_EQ(list.GetItemData(0), 1u);
    EXPECT_EQ(sorted, 3);
    EXPECT_EQ(top.columnClicks, 1);
    int column = -1;
    SortOrder order = SortDescending;
    list.GetSorting(column, order);
    EXPECT_EQ(column, 0);
    EXPECT_EQ(order, SortAscending);
}

TEST_F(SortTest, TheArrowIsThereFromTheStart)
{
    list.SetSorting(1, SortDescending);  // before there is a window
    Create();
    EXPECT_EQ(ArrowsOf(list), "-d");
    list.SetSorting(0, SortAscending);
    EXPECT_EQ(ArrowsOf(list), "a-");
    list.SetSorting(7, SortAscending);
    EXPECT_EQ(ArrowsOf(list), "--");
}

TEST_F(SortTest, CaptionsThatTakeNoClicksHaveNoArrow)
{
    Create(LVS_NOSORTHEADER);
    list.SetSorting(1, SortDescending);
    EXPECT_EQ(ArrowsOf(list), "--");
}

TEST_F(SortTest, AComparisonThatThrowsCostsNothing)
{
    struct Function
    {
        static int CALLBACK ByRow(LPARAM, LPARAM, LPARAM) { throw std::runtime_error("by row"); }
        static int ByData(unsigned long, unsigned long, int, SortOrder)
        {
            throw std::runtime_error("by data");
        }
    };
    Create();
    rows.AddNumbered(5);
    list.SetSortCompareItemsFunction(&Function::ByData);
    list.Sort();
    EXPECT_EQ(list.GetItemCount(), 5);
    list.SetSortingUsingIndexFunction(&Function::ByRow);
    EXPECT_THROW(list.Sort(), std::runtime_error);
    EXPECT_EQ(ColumnOf(list), (Texts{L"row 1", L"row 2", L"row 3", L"row 4", L"row 5"}));
}

}  // namespace
