// ListKit.h: a list in a real window, the rows that it shows, and what a test sees and does of it.
#pragma once

#include "framework/WindowTest.h"
#include "support/Input.h"

#include <controls/IListCtrlColumnWidthSink.h>
#include <controls/IListCtrlFilterHelper.h>
#include <controls/IListCtrlHelper.h>
#include <controls/IListCtrlSortSink.h>
#include <controls/YCheckBoxListCtrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwctype>
#include <functional>
#include <map>
#include <string>
#include <vector>

using Texts = std::vector<std::wstring>;

// Where the rows come from: the first text of a row is what the filter looks at.
class Rows : public IListCtrlHelper, public IListCtrlFilterHelper
{
public:
    struct Row
    {
        unsigned long data;
        Texts texts;
    };

    std::vector<Row> rows;
    YListCtrl* list = nullptr;
    std::map<unsigned long, int> held;  // values that the list has been given and not released
    Texts filters;  // that it was asked about
    Log refills;

    void Add(unsigned long data, Texts texts)
    {
        rows.push_back({data, std::move(texts)});
        AddToList(rows.back());
    }
    void AddNumbered(unsigned long count)  // "row 1", ...
    {
        for (unsigned long i = 1; i <= count; ++i) {
            Add(i, {L"row " + std::to_wstring(i), std::to_wstring(count - i)});
        }
    }
    bool HoldsNothing() const
    {
        return std::all_of(held.begin(), held.end(),
                           [](const auto& value) { return value.second == 0; });
    }

    void GetItemColumns(unsigned long data, std::vector<YUnicodeString>& columns) override
    {
        const auto row = std::find_if(rows.begin(), rows.end(),
                                      [&](const Row& each) { return each.data == data; });
        for (const std::wstring& text : row->texts) {
            columns.emplace_back(text.c_str());
        }
    }
    void ReleaseItemData(unsigned long data) override { --held[data]; }
    bool ItemMatchesFilter(unsigned long data, const YUnicodeString& filter) override
    {
        filters.emplace_back(filter.c_str());
        std::vector<YUnicodeString> columns;
        GetItemColumns(data, columns);
        std::wstring text = columns[0].c_str();
        std::transform(text.begin(), text.end(), text.begin(), std::towlower);
        return text.find(filter.c_str()) != std::wstring::npos;
    }
    void OnFilterRefill(bool starting) override
    {
        refills.emplace_back(starting ? "start" : "end");
    }
    void RefillItems() override
    {
        for (const Row& row : rows) {
            AddToList(row);
        }
    }

private:
    void AddToList(const Row& row)
    {
        if (list->AddItem(row.data) >= 0) {
            ++held[row.data];
        }
    }
};

// Keeps what lists give it.
class Widths : public IListCtrlColumnWidthSink
{
public:
    std::map<std::wstring, std::vector<int>> kept;
    int written = 0;

    void GetColumnWidths(const YUnicodeString& name, std::vector<int>& widths) override
    {
        widths = kept[name.c_str()];
    }
    void SetColumnWidths(const YUnicodeString& name, const std::vector<int>& widths) override
    {
        kept[name.c_str()] = widths;
        ++written;
    }
};

// The top window of a test, which hears of the list as a dialog does.
class ListWindow : public CWnd
{
public:
    static constexpr UINT listId = 7;

    std::function<void(const NMLISTVIEW&)> onItemChanged;
    std::function<void(NMHDR*)> onDoubleClick;
    int columnClicks = 0;
    std::vector<UINT> clickedButtons;

protected:
    BOOL OnCommand(WPARAM wParam, LPARAM) override
    {
        clickedButtons.push_back(LOWORD(wParam));
        return TRUE;
    }
    BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override
    {
        if (CWnd::OnNotify(wParam, lParam, result)) {
            return TRUE;
        }
        UINT code = 0;  // the header of a packed notification lies anywhere
        std::memcpy(&code, reinterpret_cast<const char*>(lParam) + offsetof(NMHDR, code),
                    sizeof code);
        if (code == LVN_ITEMCHANGED && onItemChanged) {
            onItemChanged(*reinterpret_cast<const NMLISTVIEW*>(lParam));
        }
        if (code == NM_DBLCLK && onDoubleClick) {
            onDoubleClick(reinterpret_cast<NMHDR*>(lParam));
        }
        columnClicks += code == LVN_COLUMNCLICK ? 1 : 0;
        return FALSE;
    }
};

// A list of 300 by 200 pixels in a window in front, without rows. The list may be replaced by one
// of another class before it is created.
template <class List>
class ListTestOf : public testing::Test
{
protected:
    static constexpr int width = 300;

    void SetUp() override
    {
        ASSERT_TRUE(top.CreateEx(0, nullptr, L"Top", WS_OVERLAPPEDWINDOW, 100, 100, 420, 300,
                                 nullptr, nullptr));
        top.ShowWindow(SW_SHOWNORMAL);
        ASSERT_TRUE(Activate(top));
    }
    void TearDown() override
    {
        top.DestroyWindow();
        PumpMessages();
    }
    void CreateList(List& list, DWORD style = LVS_REPORT)
    {
        ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, CRect(0, 0, width, 200),
                                &top, ListWindow::listId));
        rows.list = &list;
        list.SetItemHelper(&rows);
        list.SetFilterHelper(&rows);
    }
    static std::vector<ColumnInfoExact> TwoColumns()
    {
        return {{L"Name", 120, LVCFMT_LEFT}, {L"Number", 80, LVCFMT_RIGHT}};
    }

    ListWindow top;
    Rows rows;
};

inline Texts ColumnOf(const YListCtrl& list, int column = 0)
{
    Texts texts;
    for (int i = 0; i < list.GetItemCount(); ++i) {
        texts.emplace_back(list.GetItemText(i, column).GetString());
    }
    return texts;
}

inline std::vector<int> SelectionOf(const YListCtrl& list)
{
    std::map<int, unsigned long> selection;
    list.GetSelection(selection);
    std::vector<int> selected;
    for (const auto& [row, data] : selection) {
        selected.push_back(row);
    }
    return selected;
}

// 'a' ascending, 'd' descending, '-' none: of each column.
inline std::string ArrowsOf(YListCtrl& list)
{
    std::string arrows;
    CHeaderCtrl& header = list.GetHeaderCtrl();
    for (int i = 0; i < header.GetItemCount(); ++i) {
        HDITEM item{};
        item.mask = HDI_FORMAT;
        header.GetItem(i, &item);
        arrows += (item.fmt & HDF_SORTUP) ? 'a' : (item.fmt & HDF_SORTDOWN) ? 'd' : '-';
    }
    return arrows;
}

inline void ClickCaption(YListCtrl& list, int column)
{
    CRect place;
    ASSERT_TRUE(list.GetHeaderCtrl().GetItemRect(column, &place));
    ClickLeft(list.GetHeaderCtrl(), place.CenterPoint());
}

inline void ClickRow(YListCtrl& list, int row)
{
    CRect place;
    ASSERT_TRUE(list.GetItemRect(row, &place, LVIR_LABEL));
    ClickLeft(list, CPoint(place.left + 4, place.CenterPoint().y));
}
