// Rows that come and go with what the user types.
#include "ListKit.h"

#include "support/ImportHook.h"

namespace {

class PaintCountingList : public YListCtrl
{
public:
    int paints = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        paints += message == WM_PAINT ? 1 : 0;
        return YListCtrl::WindowProc(message, wParam, lParam);
    }
};

class FilterTest : public ListTestOf<YListCtrl>
{
protected:
    static constexpr unsigned delay = 100;  // milliseconds

    void SetUp() override
    {
        ListTestOf<YListCtrl>::SetUp();
        CreateList(list);
        list.Init(TwoColumns(), 0);
        unsigned long data = 0;
        for (const wchar_t* name : {L"Alpha", L"beta", L"ALPINE", L"gamma"}) {
            rows.Add(++data, {name, L""});
        }
        rows.filters.clear();
    }

    PaintCountingList list;
};

TEST_F(FilterTest, ShowsWhatMatchesInLowerCase)
{
    list.SetFilterText(L"ALP");
    EXPECT_EQ(ColumnOf(list), (Texts{L"Alpha", L"ALPINE"}));
    EXPECT_EQ(rows.filters, Texts(4, L"alp"));
    EXPECT_EQ(rows.refills, (Log{"start", "end"}));
    list.SetFilterText(L"Alp");  // the same
    EXPECT_EQ(rows.refills.size(), 2u);
    rows.Add(5, {L"omega", L""});
    rows.Add(6, {L"alps", L""});
    EXPECT_EQ(ColumnOf(list), (Texts{L"Alpha", L"ALPINE", L"alps"}));
    list.CancelFilter();
    EXPECT_EQ(list.GetItemCount(), 6);
    list.DestroyWindow();
    EXPECT_TRUE(rows.HoldsNothing());
}

TEST_F(FilterTest, KeepsTheSelectionOfWhatIsStillThere)
{
    rows.rows[3].data = 1;  // two rows of one value
    list.RemoveAll();
    rows.RefillItems();
    rows.Add(0, {L"alp zero", L""});
    list.SelectItem(1, false);  // beta, which goes
    list.SelectItem(2, true);
    list.SelectItem(3, true);  // the second row of the value 1
    list.SelectItem(4, true);
    list.SetFilterText(L"alp");
    EXPECT_EQ(ColumnOf(list), (Texts{L"Alpha", L"ALPINE", L"Alpha", L"alp zero"}));
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{0, 1, 3}));  // one row of the value was selected
    list.CancelFilter();
    // What did not match was not selected any more, and does not come back so.
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{0, 2, 4}));
    rows.Add(7, {L"new", L""});
    EXPECT_EQ(list.GetSelectionCount(), 3u);
}

TEST_F(FilterTest, WaitsUntilTheUserStopsTyping)
{
    list.SetFilterQuiescent(delay);
    list.SetFilterText(L"a");
    list.SetFilterText(L"al");
    EXPECT_EQ(list.GetItemCount(), 4);
    EXPECT_TRUE(PumpUntil([&] { return list.GetItemCount() == 2; }));
    EXPECT_EQ(rows.refills, (Log{"start", "end"}));

    // Back to what is shown: nothing is left to wait for.
    list.SetFilterText(L"alpi");
    list.SetFilterText(L"AL");
    const DWORD since = ::GetTickCount();
    PumpUntil([&] { return ::GetTickCount() - since > 3 * delay; });
    EXPECT_EQ(rows.refills.size(), 2u);

    list.SetFilterText(L"gam");
    list.CancelFilter();
    EXPECT_EQ(list.GetItemCount(), 4);
    EXPECT_FALSE(PumpUntil([&] { return list.GetItemCount() != 4; }, 3 * delay));
    list.SetFilterText(L"x");
    list.DestroyWindow();
    EXPECT_FALSE(PumpUntil([&] { return rows.refills.size() != 4; }, 3 * delay));
}

UINT_PTR WINAPI NoTimer(HWND, UINT_PTR, UINT, TIMERPROC)
{
    return 0;
}

TEST_F(FilterTest, FiltersAtOnceWithoutATimer)
{
    list.SetFilterQuiescent(delay);
    const ImportHook timer(L"CommonUi.dll", "user32.dll", "SetTimer", &NoTimer);
    list.SetFilterText(L"beta");
    EXPECT_EQ(ColumnOf(list), (Texts{L"beta"}));
}

TEST_F(FilterTest, WithoutAHelperThereIsNoFilter)
{
    list.SetFilterHelper(nullptr);
    list.SetFilterText(L"beta");
    list.CancelFilter();
    EXPECT_EQ(list.GetItemCount(), 4);
}

TEST_F(FilterTest, NothingIsPaintedBeforeTheRowsAreThere)
{
    list.SelectItem(0, false);
    PumpMessages();
    list.paints = 0;
    top.onItemChanged = [this](const NMLISTVIEW&) { list.UpdateWindow(); };
    list.SetFilterText(L"al");
    EXPECT_EQ(list.paints, 0);
    list.UpdateWindow();
    EXPECT_EQ(list.paints, 1);
}

}  // namespace
