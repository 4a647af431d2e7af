// Columns, rows and what is selected of them.
#include "ListKit.h"

#include "support/CaseName.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"

#include <YDpi.h>
#include <YReportMessageParams.h>
#include <controls/IListCtrlCustomDrawSink.h>

#include <memory>

namespace {

using ListTest = ListTestOf<YListCtrl>;

std::vector<int> WidthsOf(YListCtrl& list)
{
    std::vector<int> widths;
    for (int i = 0; i < list.GetHeaderCtrl().GetItemCount(); ++i) {
        widths.push_back(list.GetColumnWidth(i));
    }
    return widths;
}

// The device tells that resolution, whatever the screen has.
int resolution = 96;
int WINAPI TellResolution(HDC dc, int index)
{
    return index == LOGPIXELSX ? resolution : ::GetDeviceCaps(dc, index);
}

struct WidthCase
{
    const char* name;
    int dpi;
    bool adjusts;
    std::vector<int> table;
    std::vector<int> expected;  // -1000: what is left of the window, less the table's others
};

class ListColumnWidths : public ListTest, public testing::WithParamInterface<WidthCase>
{};

TEST_P(ListColumnWidths, ComeFromTheTable)
{
    const WidthCase& c = GetParam();
    resolution = c.dpi;
    const ImportHook hook(L"CommonFramework.dll", "gdi32.dll", "GetDeviceCaps", &TellResolution);
    YListCtrl list;
    CreateList(list);
    if (!c.adjusts) {
        list.DisableDpiAdjustment();
    }
    std::vector<ColumnInfoExact> columns;
    for (const int columnWidth : c.table) {
        columns.push_back({L"Column", columnWidth, LVCFMT_LEFT});
    }
    list.Init(columns, 0);
    std::vector<int> expected = c.expected;
    for (int& each : expected) {
        each = each <= -500 ? width - ::GetSystemMetrics(SM_CXVSCROLL) + each + 1000 : each;
    }
    EXPECT_EQ(WidthsOf(list), expected);
    EXPECT_EQ(list.GetExStyle() & WS_EX_LEFTSCROLLBAR, 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Tables, ListColumnWidths,
    testing::Values(WidthCase{"Plain", 96, true, {120, 80}, {120, 80}},
                    WidthCase{"At144", 144, true, {120, 81}, {180, 122}},
                    WidthCase{"At192", 192, true, {120, 80}, {240, 160}},
                    WidthCase{"NotAdjusted", 192, false, {120, 80}, {120, 80}},
                    WidthCase{"Rest", 96, true, {100, -1, 50}, {100, -1150, 50}},
                    // The others count as in the table, not as they are shown.
                    WidthCase{"RestAt192", 192, true, {60, -1}, {120, -1060}},
                    WidthCase{"TooMuchForARest", 96, true, {400, -1}, {400, 0}}),
    CaseName());

TEST_F(ListTest, RatiosAreOfTheWidthThatIsThere)
{
    for (const bool reserves : {true, false}) {
        YListCtrl list;
        CreateList(list);
        list.Init(
            {ColumnInfoRatio{L"A", 0.333, LVCFMT_LEFT}, ColumnInfoRatio{L"B", 0.5, LVCFMT_LEFT}}, 0,
            reserves);
        const int available = width - (reserves ? ::GetSystemMetrics(SM_CXVSCROLL) : 0);
        EXPECT_EQ(WidthsOf(list), (std::vector<int>{available * 333 / 1000, available / 2}));
    }
}

TEST_F(ListTest, RemembersWidthsUnderTheirName)
{
    Widths widths;
    const auto open = [&](const std::function<void(YListCtrl&)>& act) {
        YListSavedWidthsCtrl list(L"hosts", &widths);
        CreateList(list);
        list.Init(TwoColumns(), 0);
        act(list);
        list.SaveGuiSettings();
        list.DestroyWindow();
    };
    open([](YListCtrl& list) {
        const DWORD wanted = LVS_EX_LABELTIP | LVS_EX_FULLROWSELECT;
        EXPECT_EQ(list.GetExtendedStyle() & wanted, wanted);
    });
    EXPECT_EQ(widths.written, 0);  // as the table has them
    open([](YListCtrl& list) { list.SetColumnWidth(1, 99); });
    EXPECT_EQ(widths.kept[L"hosts"], (std::vector<int>{120, 99}));
    open([](YListCtrl& list) {
        EXPECT_EQ(WidthsOf(list), (std::vector<int>{120, 99}));
        list.SetColumnWidth(1, 80);  // back to the table's: what is kept stays in force
    });
    EXPECT_EQ(widths.kept[L"hosts"], (std::vector<int>{120, 99}));
    widths.kept[L"hosts"] = {50};
    open([](YListCtrl& list) { EXPECT_EQ(WidthsOf(list), (std::vector<int>{120, 80})); });
}

TEST_F(ListTest, AddsRowsWhereTheyAreWanted)
{
    YListCtrl list;
    CreateList(list);
    list.Init(TwoColumns(), 0);
    rows.Add(1, {L"one", L"1"});
    rows.rows.push_back({2, {L"two", L"2"}});
    EXPECT_EQ(list.AddItemAt(0, 2, -1), 0);
    EXPECT_EQ(list.AddItem({L"plain"}, -1), 2);
    EXPECT_EQ(list.AddItemAt(99, std::vector<YUnicodeString>{}, -1), 3);
    EXPECT_EQ(ColumnOf(list), (Texts{L"two", L"one", L"plain", L""}));
    EXPECT_EQ(ColumnOf(list, 1), (Texts{L"2", L"1", L"", L""}));
    EXPECT_EQ(list.GetItemData(1), 1u);
    EXPECT_EQ(list.GetItemData(2), 0u);
    rows.rows[0].texts = {L"uno", L"i"};
    list.UpdateItem(1);
    EXPECT_EQ(list.GetItemText(1, 0), L"uno");
    EXPECT_EQ(list.GetItemText(1, 1), L"i");
}

// However a row goes, what its value stands for is released once; two rows may have one value.
TEST_F(ListTest, ReleasesEveryRowOnce)
{
    {
        YListCtrl list;
        CreateList(list);
        list.Init(TwoColumns(), 0);
        for (const unsigned long data : {5ul, 6ul, 7ul, 0ul, 7ul, 8ul, 9ul}) {
            rows.Add(data, {L"row", L""});
        }
        list.RemoveItem(0);
        EXPECT_EQ(rows.held[5], 0);
        list.SelectItem(0, false);
        list.SelectItem(2, true);
        EXPECT_TRUE(list.DoDelete());
        EXPECT_EQ(rows.held[6] + rows.held[0], 0);
        EXPECT_EQ(rows.held[7], 2);
        list.RemoveAll();
        EXPECT_TRUE(rows.HoldsNothing());
        rows.Add(10, {L"row", L""});
        list.DestroyWindow();  // with its window
        EXPECT_TRUE(rows.HoldsNothing());
        CreateList(list);
        rows.Add(11, {L"row", L""});
    }  // with the object
    EXPECT_TRUE(rows.HoldsNothing());
}

TEST_F(ListTest, SelectsWhatIsNextAfterARemoval)
{
    YListCtrl list;
    CreateList(list);
    list.Init(TwoColumns(), 0);
    rows.AddNumbered(5);
    EXPECT_FALSE(list.DoDelete());
    list.SelectItem(1, false);
    list.SelectItem(3, true);
    EXPECT_TRUE(list.DoDelete());
    EXPECT_EQ(ColumnOf(list), (Texts{L"row 1", L"row 3", L"row 5"}));
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{2}));
    EXPECT_TRUE(list.DoDelete());
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{1}));
    EXPECT_EQ(list.GetCurrentItemData(), 3u);
}

// Presses a button of the message box that opens next. The box handles messages of its thread, a
// timer's among them.
class PressedButton
{
public:
    explicit PressedButton(int id) : timer(::SetTimer(nullptr, 0, 10, &Press))
    {
        button = id;
        boxes = 0;
    }
    ~PressedButton() { ::KillTimer(nullptr, timer); }
    PressedButton(const PressedButton&) = delete;
    PressedButton& operator=(const PressedButton&) = delete;

    int CountBoxes() const { return boxes; }

private:
    static void CALLBACK Press(HWND, UINT, UINT_PTR, DWORD)
    {
        ::EnumThreadWindows(::GetCurrentThreadId(), &PressIn, 0);
    }
    static BOOL CALLBACK PressIn(HWND window, LPARAM)
    {
        const HWND pressed = ::GetDlgItem(window, button);
        if (pressed && ::IsWindowVisible(window) && ::GetDlgItem(window, IDNO)) {
            ++boxes;
            ::SendMessageW(pressed, BM_CLICK, 0, 0);
            return FALSE;
        }
        return TRUE;
    }

    static inline int button = 0;
    static inline int boxes = 0;
    UINT_PTR timer;
};

TEST_F(ListTest, AsksBeforeItRemoves)
{
    YListCtrl list;
    CreateList(list);
    list.Init(TwoColumns(), 0);
    rows.AddNumbered(2);
    YReportMessageParams question(ERROR_ACCESS_DENIED);
    EXPECT_FALSE(list.DoDelete(question));  // nothing is selected: nobody is asked
    list.SelectItem(0, false);
    {
        const PressedButton no(IDNO);
        EXPECT_FALSE(list.DoDelete(question));
        EXPECT_EQ(no.CountBoxes(), 1);
        EXPECT_EQ(list.GetItemCount(), 2);
    }
    {
        const PressedButton yes(IDYES);
        EXPECT_TRUE(list.DoDelete(&question));
        EXPECT_EQ(yes.CountBoxes(), 1);
        EXPECT_EQ(list.GetItemCount(), 1);
        EXPECT_TRUE(list.DoDelete(YReportMessageParams()));  // carries no message
        EXPECT_EQ(yes.CountBoxes(), 1);
    }
    EXPECT_EQ(list.GetItemCount(), 0);
}

TEST_F(ListTest, SelectingNoRowSelectsEveryRow)
{
    YListCtrl list;
    CreateList(list);
    list.Init(TwoColumns(), 0);
    rows.AddNumbered(3);
    list.SelectItem(1, false);
    list.SelectItem(-1, false);
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(list.GetNextItem(-1, LVNI_FOCUSED), 2);
    list.SelectItem(1, false);
    list.SetSingleSelection(true);
    list.SelectItem(0, false);
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{0}));
}

TEST_F(ListTest, MovesTheSelectedRow)
{
    for (const bool hasHelper : {true, false}) {
        YListCtrl list;
        CreateList(list);
        list.Init(TwoColumns(), 0);
        if (hasHelper) {
            rows.AddNumbered(3);
        } else {
            list.SetItemHelper(nullptr);
            for (const wchar_t* name : {L"row 1", L"row 2", L"row 3"}) {
                list.SetItemData(list.AddItem({name, YUnicodeString(name + 4)}, -1),
                                 static_cast<unsigned long>(name[4] - L'0'));
            }
        }
        EXPECT_FALSE(list.DoMoveSelected(MoveDown));
        list.SelectItem(0, false);
        EXPECT_FALSE(list.DoMoveSelected(MoveUp));
        EXPECT_TRUE(list.DoMoveSelected(MoveDown));
        EXPECT_EQ(ColumnOf(list), (Texts{L"row 2", L"row 1", L"row 3"}));
        EXPECT_EQ(ColumnOf(list, 1),
                  hasHelper ? (Texts{L"1", L"2", L"0"}) : (Texts{L"2", L"1", L"3"}));
        EXPECT_EQ(SelectionOf(list), (std::vector<int>{1}));
        EXPECT_EQ(list.GetCurrentItemData(), 1u);
        EXPECT_EQ(list.GetItemData(0), 2u);
        EXPECT_TRUE(list.DoMoveSelected(MoveUp));
        EXPECT_EQ(ColumnOf(list), (Texts{L"row 1", L"row 2", L"row 3"}));
        list.RemoveAll();
        rows.rows.clear();
    }
}

TEST_F(ListTest, ADisabledListIsHighlightedAndComesBack)
{
    YListCtrl list;
    CreateList(list, LVS_REPORT | LVS_SINGLESEL);
    list.Init(TwoColumns(), 0);
    rows.AddNumbered(4);
    list.SelectItem(2, false);
    list.EnableWindow(FALSE);
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{0, 1, 2, 3}));
    list.EnableWindow(TRUE);
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{2}));
    EXPECT_NE(list.GetStyle() & LVS_SINGLESEL, 0u);
    list.EnableWindow(TRUE);
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{2}));
}

// The rows that were selected stay the ones, wherever they are by then.
TEST_F(ListTest, ChangesWhileDisabledKeepTheSelection)
{
    YListCtrl list;
    CreateList(list);
    list.Init(TwoColumns(), 0);
    rows.AddNumbered(4);
    list.UseDefaultSortingFunction();
    list.SelectItem(1, false);
    list.SelectItem(3, true);
    list.EnableWindow(FALSE);

    list.AddItemAt(0, {L"added"}, -1);
    list.RemoveItem(1);
    EXPECT_EQ(list.GetSelectionCount(), 4u);
    list.SetSorting(0, SortDescending);
    list.Sort();
    EXPECT_EQ(ColumnOf(list), (Texts{L"row 4", L"row 3", L"row 2", L"added"}));
    EXPECT_EQ(list.GetSelectionCount(), 4u);
    rows.rows.erase(rows.rows.begin());
    list.SetFilterText(L"row");
    EXPECT_EQ(ColumnOf(list), (Texts{L"row 2", L"row 3", L"row 4"}));
    EXPECT_EQ(list.GetSelectionCount(), 3u);
    list.EnableWindow(TRUE);
    EXPECT_EQ(SelectionOf(list), (std::vector<int>{0, 2}));

    list.EnableWindow(FALSE);
    EXPECT_TRUE(list.DoDelete());  // what is selected, not what looks so
    list.EnableWindow(TRUE);
    EXPECT_EQ(ColumnOf(list), (Texts{L"row 3"}));
}

TEST_F(ListTest, DrawsWhenTheLastOneAllowsIt)
{
    YListCtrl list;
    CreateList(list);
    list.Init(TwoColumns(), 0);
    const auto paintsNow = [&] {
        list.UpdateWindow();
        list.AddItem({L"row"}, -1);
        return ::GetUpdateRect(list, nullptr, FALSE) != FALSE;
    };
    EXPECT_TRUE(paintsNow());
    list.DisableDraw();
    list.DisableDraw();
    EXPECT_FALSE(paintsNow());
    list.EnableDraw();
    EXPECT_FALSE(paintsNow());
    list.EnableDraw();
    EXPECT_TRUE(paintsNow());
    // Switching it does not show a list that is hidden.
    list.ShowWindow(SW_HIDE);
    list.RemoveAll();
    EXPECT_FALSE(list.IsWindowVisible());
}

class Painter : public IListCtrlCustomDrawSink
{
public:
    void OnCustomDraw(NMHDR* header, LRESULT* result) override
    {
        const auto& draw = *reinterpret_cast<NMLVCUSTOMDRAW*>(header);
        if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) {
            *result = CDRF_NOTIFYITEMDRAW;
        } else if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) {
            ::FillRect(draw.nmcd.hdc, &draw.nmcd.rc,
                       static_cast<HBRUSH>(::GetStockObject(BLACK_BRUSH)));
            *result = CDRF_SKIPDEFAULT;
        }
    }
};

TEST_F(ListTest, TheSinkDrawsTheRows)
{
    YListCtrl list;
    CreateList(list);
    list.Init(TwoColumns(), 0);
    rows.AddNumbered(1);
    const auto pixelInRow = [&] {
        list.RedrawWindow();
        CRect place;
        list.GetItemRect(0, &place, LVIR_BOUNDS);
        CClientDC dc(&list);
        return ::GetPixel(dc, 100, place.bottom - 2);
    };
    EXPECT_EQ(pixelInRow(), ::GetSysColor(COLOR_WINDOW));
    Painter painter;
    list.EnableCustomDraw(&painter);
    EXPECT_EQ(pixelInRow(), RGB(0, 0, 0));
    list.EnableCustomDraw(nullptr);
    EXPECT_EQ(pixelInRow(), ::GetSysColor(COLOR_WINDOW));
}

TEST_F(ListTest, ThousandRoundsLeaveNothing)
{
    Widths widths;
    const auto round = [&] {
        YListSavedWidthsCtrl list(L"list", &widths);
        CreateList(list);
        list.Init(TwoColumns(), 0);
        list.UseDefaultSortingFunction();
        list.InitAssociatedButtons(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        rows.AddNumbered(5);
        list.SelectItem(2, false);
        list.SetFilterText(L"4");
        list.EnableWindow(FALSE);
        list.Sort();
        list.DestroyWindow();
        rows.rows.clear();
        rows.held.clear();
        rows.filters.clear();
        rows.refills.clear();
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
