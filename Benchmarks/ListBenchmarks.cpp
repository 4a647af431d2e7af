// Lists: filling, sorting and filtering them, against a bare list view that does the same.
#include "Report.h"
#include "Subjects.h"
#include "ViewHost.h"

#include <afxwin.h>
#include <controls/IListCtrlFilterHelper.h>
#include <controls/IListCtrlHelper.h>
#include <controls/YListCtrl.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr unsigned manyRows = 100'000;
constexpr unsigned sortedRows = 10'000;

// Three texts a row, in an order that is none.
struct Row
{
    std::wstring texts[3];
    unsigned key;
};

std::vector<Row> MakeRows(unsigned count)
{
    std::vector<Row> rows(count);
    unsigned random = 1;
    for (unsigned i = 0; i < count; ++i) {
        random = random * 1'664'525 + 1'013'904'223;
        rows[i] = {{L"host " + std::to_wstring(random % count) + L".example.com",
                    std::to_wstring(random % 65'536), L"user"},
                   random};
    }
    return rows;
}

const std::vector<Row>& RowsOf(unsigned count)
{
    static const std::vector<Row> many = MakeRows(manyRows);
    static const std::vector<Row> few = MakeRows(sortedRows);
    return count == manyRows ? many : few;
}

const Row& RowOf(unsigned long data)
{
    return *reinterpret_cast<const Row*>(data);
}

int CompareKeys(unsigned long data1, unsigned long data2, int, SortOrder order)
{
    const unsigned key1 = RowOf(data1).key;
    const unsigned key2 = RowOf(data2).key;
    const int difference = key1 < key2 ? -1 : key1 > key2 ? 1 : 0;
    return order == SortDescending ? -difference : difference;
}

int CALLBACK CompareBare(LPARAM data1, LPARAM data2, LPARAM order)
{
    return CompareKeys(static_cast<unsigned long>(data1), static_cast<unsigned long>(data2), 0,
                       static_cast<SortOrder>(order));
}

// Ours with what it needs, in a window that is seen.
class OurList : public IListCtrlHelper, public IListCtrlFilterHelper
{
public:
    OurList(CWnd& parent, unsigned count) : rows(RowsOf(count))
    {
        list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 500, 400), &parent, 1);
        list.SetItemHelper(this);
        list.SetFilterHelper(this);
        list.Init(
            {{L"Host", 200, LVCFMT_LEFT}, {L"Port", 80, LVCFMT_RIGHT}, {L"User", 80, LVCFMT_LEFT}},
            0);
    }

    void Fill()
    {
        list.DisableDraw();
        RefillItems();
        list.EnableDraw();
    }
    void Empty()
    {
        list.DisableDraw();
        list.RemoveAll();
        list.EnableDraw();
    }

    YListCtrl list;

    void GetItemColumns(unsigned long data, std::vector<YUnicodeString>& columns) override
    {
        for (const std::wstring& text : RowOf(data).texts) {
            columns.emplace_back(text.c_str());
        }
    }
    void ReleaseItemData(unsigned long) override {}
    // Every row does: all of them go and come.
    bool ItemMatchesFilter(unsigned long data, const YUnicodeString& filter) override
    {
        return RowOf(data).texts[0].compare(0, filter.GetLength(), filter.c_str()) == 0;
    }
    void OnFilterRefill(bool) override {}
    void RefillItems() override
    {
        for (const Row& row : rows) {
            list.AddItem(reinterpret_cast<unsigned long>(&row));
        }
    }

private:
    const std::vector<Row>& rows;
};

class BareList
{
public:
    BareList(CWnd& parent, unsigned count) : rows(RowsOf(count))
    {
        list = ::CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT, 0, 0,
                                 500, 400, parent, reinterpret_cast<HMENU>(1), nullptr, nullptr);
        for (const int width : {80, 80, 200}) {
            LVCOLUMNW column{};
            column.mask = LVCF_TEXT | LVCF_WIDTH;
            column.pszText = const_cast<wchar_t*>(L"Column");
            column.cx = width;
            Send(LVM_INSERTCOLUMNW, 0, &column);
        }
    }
    ~BareList() { ::DestroyWindow(list); }
    BareList(const BareList&) = delete;
    BareList& operator=(const BareList&) = delete;

    void SetRedraw(bool on) { ::SendMessageW(list, WM_SETREDRAW, on, 0); }
    void Fill()
    {
        int index = 0;
        for (const Row& row : rows) {
            LVITEMW item{};
            item.mask = LVIF_TEXT | LVIF_PARAM;
            item.iItem = index++;
            item.pszText = const_cast<wchar_t*>(row.texts[0].c_str());
            item.lParam = reinterpret_cast<LPARAM>(&row);
            Send(LVM_INSERTITEMW, 0, &item);
            for (item.iSubItem = 1; item.iSubItem < 3; ++item.iSubItem) {
                item.pszText = const_cast<wchar_t*>(row.texts[item.iSubItem].c_str());
                Send(LVM_SETITEMTEXTW, item.iItem, &item);
            }
        }
    }
    void FillUnseen()
    {
        SetRedraw(false);
        Fill();
        SetRedraw(true);
    }
    void RemoveFirst() { ::SendMessageW(list, LVM_DELETEITEM, 0, 0); }
    void Empty() { ::SendMessageW(list, LVM_DELETEALLITEMS, 0, 0); }
    void Sort(PFNLVCOMPARE compare, LPARAM context)
    {
        ::SendMessageW(list, LVM_SORTITEMS, static_cast<WPARAM>(context),
                       reinterpret_cast<LPARAM>(compare));
    }
    // The keys are read, sorted, and the order carried out by the rows' numbers as their values.
    void SortByTexts(bool descending)
    {
        std::vector<std::wstring> keys(rows.size());
        std::vector<LPARAM> values(rows.size());
        std::vector<int> order(rows.size());
        std::iota(order.begin(), order.end(), 0);
        for (const int i : order) {
            keys[static_cast<std::size_t>(i)] = GetText(i);
        }
        std::stable_sort(order.begin(), order.end(), [&](int row1, int row2) {
            const int difference = _wcsicmp(keys[static_cast<std::size_t>(row1)].c_str(),
                                            keys[static_cast<std::size_t>(row2)].c_str());
            return descending ? difference > 0 : difference < 0;
        });
        std::vector<int> ranks(rows.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            ranks[static_cast<std::size_t>(order[i])] = static_cast<int>(i);
            values[i] = ExchangeValue(static_cast<int>(i), static_cast<LPARAM>(i));
        }
        Sort(&CompareRanks, reinterpret_cast<LPARAM>(ranks.data()));
        for (std::size_t i = 0; i < order.size(); ++i) {
            SetValue(static_cast<int>(i), values[static_cast<std::size_t>(order[i])]);
        }
    }

private:
    static int CALLBACK CompareRanks(LPARAM row1, LPARAM row2, LPARAM context)
    {
        const int* const ranks = reinterpret_cast<const int*>(context);
        return ranks[row1] - ranks[row2];
    }
    LRESULT Send(UINT message, int index, void* data)
    {
        return ::SendMessageW(list, message, static_cast<WPARAM>(index),
                              reinterpret_cast<LPARAM>(data));
    }
    std::wstring GetText(int row)
    {
        wchar_t text[128] = L"";
        LVITEMW item{};
        item.pszText = text;
        item.cchTextMax = 128;
        Send(LVM_GETITEMTEXTW, row, &item);
        return text;
    }
    LPARAM ExchangeValue(int row, LPARAM value)
    {
        LVITEMW item{};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        Send(LVM_GETITEMW, 0, &item);
        SetValue(row, value);
        return item.lParam;
    }
    void SetValue(int row, LPARAM value)
    {
        LVITEMW item{};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        item.lParam = value;
        Send(LVM_SETITEMW, 0, &item);
    }

    const std::vector<Row>& rows;
    HWND list;
};

class HostWindow
{
public:
    HostWindow()
    {
        if (!window.CreateEx(0, nullptr, L"Lists", WS_POPUP | WS_VISIBLE, 0, 0, 520, 420, nullptr,
                             nullptr)) {
            throw std::runtime_error("no window");
        }
        Pump();
    }
    ~HostWindow() { window.DestroyWindow(); }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    CWnd window;
};

void FillOurs(benchmark::State& state)
{
    HostWindow host;
    OurList ours(host.window, manyRows);
    for (auto _ : state) {
        ours.Fill();
        state.PauseTiming();
        ours.Empty();
        state.ResumeTiming();
    }
}

void FillBare(benchmark::State& state)
{
    HostWindow host;
    BareList bare(host.window, manyRows);
    for (auto _ : state) {
        bare.FillUnseen();
        state.PauseTiming();
        bare.Empty();
        state.ResumeTiming();
    }
}

SortOrder Turn(SortOrder order)
{
    return order == SortAscending ? SortDescending : SortAscending;
}

void SortDataOurs(benchmark::State& state)
{
    HostWindow host;
    OurList ours(host.window, manyRows);
    ours.list.SetSortCompareItemsFunction(&CompareKeys);
    ours.Fill();
    SortOrder order = SortDescending;
    for (auto _ : state) {
        ours.list.SetSorting(0, order = Turn(order));
        ours.list.Sort();
    }
}

void SortDataBare(benchmark::State& state)
{
    HostWindow host;
    BareList bare(host.window, manyRows);
    bare.FillUnseen();
    SortOrder order = SortDescending;
    for (auto _ : state) {
        order = Turn(order);
        bare.SetRedraw(false);
        bare.Sort(&CompareBare, order);
        bare.SetRedraw(true);
    }
}

void SortTextsOurs(benchmark::State& state)
{
    HostWindow host;
    OurList ours(host.window, sortedRows);
    ours.list.UseDefaultSortingFunction();
    ours.Fill();
    SortOrder order = SortDescending;
    for (auto _ : state) {
        ours.list.SetSorting(0, order = Turn(order));
        ours.list.Sort();
    }
}

void SortTextsBare(benchmark::State& state)
{
    HostWindow host;
    BareList bare(host.window, sortedRows);
    bare.FillUnseen();
    bool descending = true;
    for (auto _ : state) {
        descending = !descending;
        bare.SetRedraw(false);
        bare.SortByTexts(descending);
        bare.SetRedraw(true);
    }
}

// selected: rows, far apart.
void Refilter(benchmark::State& state, unsigned selected)
{
    HostWindow host;
    OurList ours(host.window, manyRows);
    ours.Fill();
    ours.list.DisableDraw();
    for (unsigned i = 0; i < selected; ++i) {
        ours.list.SelectItem(static_cast<int>(i * (manyRows / selected)), true);
    }
    ours.list.EnableDraw();
    bool filters = false;
    for (auto _ : state) {
        filters = !filters;
        ours.list.SetFilterText(filters ? L"host" : L"hos");
        if (ours.list.GetItemCount() != static_cast<int>(manyRows) ||
            ours.list.GetSelectionCount() != selected) {
            state.SkipWithError("rows or selection lost");
            break;
        }
    }
}

void RefilterOne(benchmark::State& state)
{
    Refilter(state, 1);
}

void RefilterSelected(benchmark::State& state)
{
    Refilter(state, 10'000);
}

// One by one from the top, as rows whose values must be released go.
void RefillBare(benchmark::State& state)
{
    HostWindow host;
    BareList bare(host.window, manyRows);
    bare.FillUnseen();
    for (auto _ : state) {
        bare.SetRedraw(false);
        for (unsigned i = 0; i < manyRows; ++i) {
            bare.RemoveFirst();
        }
        bare.Fill();
        bare.SetRedraw(true);
    }
}

void RefillAtOnceBare(benchmark::State& state)
{
    HostWindow host;
    BareList bare(host.window, manyRows);
    bare.FillUnseen();
    for (auto _ : state) {
        bare.SetRedraw(false);
        bare.Empty();
        bare.Fill();
        bare.SetRedraw(true);
    }
}

}  // namespace

void AddListSubjects(Report& report)
{
    const auto add = [](const char* name, void (*function)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMillisecond);
    };
    add("FillList", &FillOurs);
    add("FillBareList", &FillBare);
    report.CompareCost("100,000 rows of three columns filled in, to a bare list", "FillList",
                       "FillBareList", 1.2);
    add("SortListByValue", &SortDataOurs);
    add("SortBareListByValue", &SortDataBare);
    report.CompareCost("100,000 rows sorted by value, to a bare list", "SortListByValue",
                       "SortBareListByValue", 1.2);
    add("SortListByText", &SortTextsOurs);
    add("SortBareListByText", &SortTextsBare);
    report.CompareCost("10,000 rows sorted by row, to a bare sort and its application",
                       "SortListByText", "SortBareListByText", 1.5);
    add("FilterList", &RefilterOne);
    add("RefillBareList", &RefillBare);
    report.CompareCost("100,000 rows filtered, to a bare removal and fill", "FilterList",
                       "RefillBareList", 1.5);
    add("RefillBareListAtOnce", &RefillAtOnceBare);
    report.ShowCost("  to a bare removal at once and fill", "FilterList", "RefillBareListAtOnce");
    add("FilterSelectedList", &RefilterSelected);
    report.CompareCost("100,000 rows filtered, 10,000 selected, to one selected",
                       "FilterSelectedList", "FilterList", 1.3);
}
