// YListCtrl.h: a list with columns that sorts, filters and remembers.
#pragma once

#include "CommonUiApi.h"
#include "controls/ColumnInfo.h"
#include "controls/YListCtrlBase.h"

#include <BCGCBProInc.h>

#include <optional>
#include <unordered_map>
#include <vector>

class IListCtrlCustomDrawSink;
class YListCtrl;

enum MoveDirection { MoveUp, MoveDown };

// What a comparison by row gets as its last argument.
struct ListSortContext
{
    YListCtrl* list;
    int column;
    SortOrder order;
    void* helper;  // SetSortCompareHelper
    YListCtrlBase::CompareItemsFunction compareItems;
};

// The rows come from the program, one for each value that it adds (IListCtrlHelper); the list knows
// nothing of what they mean. Init gives it columns, then rows are added. A click on a caption sorts,
// where there is a comparison, a text box beside the list may filter it (IListCtrlFilterHelper); what
// was selected stays selected. A disabled list shows every row selected: it is meant to look out of
// use as a whole. It gets its selection back with WM_ENABLE; what is removed, filtered or sorted
// meanwhile is the true selection. Large fills go between DisableDraw and EnableDraw.
// User-interface thread.
class COMMONUI_API YListCtrl : public CBCGPListCtrl, public YListCtrlBase
{
    DECLARE_DYNAMIC(YListCtrl)

public:
    YListCtrl() = default;
    ~YListCtrl() override;  // destroys the window: values are released on this way, too

    // Makes the columns, once. extendedStyle: LVS_EX_..., added to what is there.
    void Init(const std::vector<ColumnInfoExact>& columns, unsigned long extendedStyle);
    // reserveScrollBar: the columns leave room for a vertical scroll bar.
    void Init(const std::vector<ColumnInfoRatio>& columns, unsigned long extendedStyle,
              bool reserveScrollBar);
    // The dialog calls it when it closes. Widths as Init made them are not written.
    void SaveGuiSettings();
    void DisableDpiAdjustment() { adjustForDpi = false; }  // before Init

    // All return the row, or -1: left out by the filter, or failed. Texts of the program's own are not
    // filtered.
    int AddItem(unsigned long data);
    int AddItem(unsigned long data, int image);
    int AddItem(const std::vector<YUnicodeString>& columns, int image);
    int AddItemAt(int index, unsigned long data, int image);
    int AddItemAt(int index, const std::vector<YUnicodeString>& columns, int image);
    void RemoveAll();
    void SetItemData(int item, unsigned long data);

    void SelectItem(int index, bool keepOtherSelections) override;
    unsigned GetSelectionCount() const override;
    void GetSelection(std::map<int, unsigned long>& selection) const override;
    int GetCurrentItemIndex() const override;
    void EnsureSelectionIsVisible();
    void SetSingleSelection(bool single);

    // The dialog hands its NM_DBLCLK here: as the edit button would, on a row.
    void DoItemDblClick(NMHDR* header, LRESULT* result);
    // The first selected row changes places with its neighbour and stays selected. False: there is no
    // such row or neighbour.
    bool DoMoveSelected(MoveDirection direction);
    bool DeleteSelectedItems() override;

    // Comparisons. By row is preferred; its result is negated by itself for SortDescending, its rows
    // stand still while it is asked, its context is a ListSortContext*. Equal rows keep their order.
    void SetSortingUsingIndexFunction(PFNLVCOMPARE function) { compareByIndex = function; }
    void UseDefaultSortingFunction();  // by the texts of the column, regardless of case
    void SetSortCompareHelper(void* helper) { sortCompareHelper = helper; }
    void SetSorting(int column, SortOrder order);  // Sort does it
    void GetSorting(int& column, SortOrder& order) const;
    bool IsSortingEnabled() const override;
    void Sort() override;

    // The text goes to ItemMatchesFilter in lower case; empty: every row is shown. With a quiescent time
    // (milliseconds; 0: none) it waits until no other text has come for so long.
    void SetFilterText(const YUnicodeString& text);
    void SetFilterQuiescent(unsigned milliseconds) { filterQuiescent = milliseconds; }
    void CancelFilter();

    void EnableCustomDraw(IListCtrlCustomDrawSink* sink) { customDrawSink = sink; }
    void DisableDraw();  // counted: EnableDraw undoes one
    void EnableDraw();

    YDialogListCtrlButtonHelper* CreateDefaultButtonHelper() override;

protected:
    int AddItemPrivate(const std::vector<YUnicodeString>& columns, int image, int index,
                       unsigned long data) override;
    int GetItemCountPrivate() const override;
    void SetItemTextPrivate(int item, int column, const wchar_t* text) override;
    unsigned long GetItemDataPrivate(int item) const override;
    void SetItemDataPrivate(int item, unsigned long data) override;
    void DeleteItemPrivate(int item) override;
    void UpdateItemDrawing(int item) override;

    // The list itself moves rows or their states about: their notices tell nothing of the user.
    bool IsRearranging() const { return rearranging; }

    afx_msg void OnDestroy();
    afx_msg void OnEnable(BOOL enable);
    afx_msg void OnTimer(UINT_PTR timer);
    afx_msg BOOL OnColumnClick(NMHDR* header, LRESULT* result);
    afx_msg BOOL OnItemChange(NMHDR* header, LRESULT* result);
    afx_msg void OnCustomDraw(NMHDR* header, LRESULT* result);
    DECLARE_MESSAGE_MAP()

    unsigned long extraExtendedStyles = 0;  // LVS_EX_..., added by Init

private:
    class DrawingOff;
    class Rearrangement;
    class TrueSelection;

    void InitStyle(unsigned long extendedStyle);
    int GetAvailableWidth(bool reserveScrollBar) const;
    template <class Column>
    void InitColumns(const std::vector<Column>& columns);
    void ShowSortArrow();

    int FindSelected(int after) const;
    std::vector<int> GetSelectedRows() const;
    void SelectRow(int row);
    void DeselectAll();
    void ClearFocus();
    void HighlightAll();
    void RestoreSelection();
    void HighlightAdded(int row);
    void ForgetDisabled(int row);
    void ExchangeRows(int row, int other);

    void ApplyFilter();
    void StopFilterTimer();
    void Refill();
    void RemoveEach();
    void ReselectSaved(int row, unsigned long data);

    void SortByRow();
    void SortByData();
    void ApplyOrder(const std::vector<int>& order);
    const CString& GetSortText(int row);
    static int CALLBACK CompareTexts(LPARAM row1, LPARAM row2, LPARAM context);
    static int CALLBACK CompareData(LPARAM data1, LPARAM data2, LPARAM context);
    static int CALLBACK CompareRanks(LPARAM row1, LPARAM row2, LPARAM context);

    IListCtrlCustomDrawSink* customDrawSink = nullptr;  // borrowed
    PFNLVCOMPARE compareByIndex = nullptr;
    void* sortCompareHelper = nullptr;  // borrowed
    unsigned filterQuiescent = 0;  // milliseconds; 0: at once
    UINT_PTR filterTimer = 0;  // 0: none runs
    YUnicodeString pendingFilter;  // lower case
    YUnicodeString appliedFilter;  // lower case; empty: no filter
    std::unordered_map<unsigned long, unsigned>
        savedSelection;  // values, how often; during a refill
    std::vector<int> defaultWidths;  // pixels
    bool singleSelection = false;  // as last set; a disabled list has it not
    std::vector<int> disabledSelection;  // rows; only while allHighlighted
    bool adjustForDpi = true;
    int redrawCount = 1;  // drawing is on from 1 up

    bool allHighlighted = false;  // the list is disabled
    bool rearranging = false;
    bool applyingOrder = false;  // rows carry other values than theirs: nobody may look
    int lastReselected = -1;  // row that a refill has selected again
    std::vector<std::optional<CString>> sortTexts;  // of the sort column by row, as asked for
};
