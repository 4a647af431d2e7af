// YListCtrlBase.h: the half of a list that needs no window.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <map>
#include <memory>
#include <vector>

class CWnd;
class IListCtrlFilterHelper;
class IListCtrlHelper;
class IListCtrlSortSink;
class IReportMessageParams;
class YDialogListCtrlButtonHelper;
class YReportMessageParams;

enum SortOrder { SortAscending = 0, SortDescending = 1 };

// What is common to all lists of rows that stand for values of the program's: where their texts come
// from, how they are removed, how buttons beside the list follow it. Helpers and sinks are borrowed
// and may be null: what they are needed for does then nothing. Rows are numbered from 0.
// User-interface thread.
class COMMONUI_API YListCtrlBase
{
public:
    // Of two rows by their values, in that column: below 0, 0 or above 0. The order is applied by the
    // function itself: what is equal is 0 in both orders.
    using CompareItemsFunction = int (*)(unsigned long data1, unsigned long data2, int column,
                                         SortOrder order);

    YListCtrlBase();
    YListCtrlBase(const YListCtrlBase&) = delete;
    YListCtrlBase& operator=(const YListCtrlBase&) = delete;
    virtual ~YListCtrlBase();

    virtual void OnSetActive() {}
    virtual bool IsSortingEnabled() const = 0;
    virtual void Sort() = 0;
    // index -1: every row, where the list allows it.
    virtual void SelectItem(int index, bool keepOtherSelections) = 0;
    virtual unsigned GetSelectionCount() const = 0;
    // Row and value of each selected row; what was there before goes.
    virtual void GetSelection(std::map<int, unsigned long>& selection) const = 0;
    virtual int GetCurrentItemIndex() const = 0;  // the first selected row, or -1
    virtual void OnAddItem(int) {}
    virtual void GetSavedColumnWidths(std::vector<int>&) {}  // pixels; none: no widths are known
    virtual void SaveColumnWidths(const std::vector<int>&) {}
    virtual YDialogListCtrlButtonHelper* CreateDefaultButtonHelper() = 0;  // the caller's
    // False: nothing is selected. Afterwards the row after the last removed one is selected, or the
    // last row.
    virtual bool DeleteSelectedItems() = 0;

protected:
    // image: of the image list; noImage: none is set. index: negative: at the end. The row, or -1.
    virtual int AddItemPrivate(const std::vector<YUnicodeString>& columns, int image, int index,
                               unsigned long data) = 0;
    virtual int GetItemCountPrivate() const = 0;
    virtual void SetItemTextPrivate(int item, int column, const wchar_t* text) = 0;
    virtual unsigned long GetItemDataPrivate(int item) const = 0;
    virtual void SetItemDataPrivate(int item, unsigned long data) = 0;
    virtual void DeleteItemPrivate(int item) = 0;
    virtual void UpdateItemDrawing(int item) = 0;

public:
    void SetItemHelper(IListCtrlHelper* helper) { itemHelper = helper; }
    void SetFilterHelper(IListCtrlFilterHelper* helper) { filterHelper = helper; }
    void SetSortSink(IListCtrlSortSink* sink) { sortSink = sink; }
    void SetSortCompareItemsFunction(CompareItemsFunction function) { compareItems = function; }

    // Buttons beside the list, borrowed; each may be null. helper: borrowed, outlives the list; null:
    // the list's own. EnableButtons then follows the selection; the dialog calls it when that has
    // changed (LVN_ITEMCHANGED). While SelectItem clears a selection it does nothing.
    void InitAssociatedButtons(CWnd* up, CWnd* down, CWnd* add, CWnd* edit, CWnd* remove,
                               YDialogListCtrlButtonHelper* helper);
    void EnableButtons(bool enableMoves, bool enableEdits);
    void UseLargeUpDownIcons() { useLargeUpDownIcons = true; }  // before the buttons are given

    // Removes the selected rows. confirmation: if it is a message, the user must say Yes to it; null:
    // nobody is asked. False: nothing was removed.
    bool DoDelete();
    bool DoDelete(const YReportMessageParams& confirmation);
    bool DoDelete(const IReportMessageParams* confirmation);

    void RemoveItem(int item);
    // Shows the row's texts as they are now; the row keeps its place.
    void UpdateItem(int item);
    void UpdateItem(int item, const std::vector<YUnicodeString>& columns, bool resort);
    void SelectAndShowFirstItem();
    unsigned long GetCurrentItemData() const;  // of the first selected row; 0: there is none

protected:
    static constexpr int noImage = -2;

    std::vector<YUnicodeString> GetColumnsOf(unsigned long data) const;
    void ReleaseData(int item);  // tells the item helper of a row that goes
    YDialogListCtrlButtonHelper* GetButtonHelper() const { return buttonHelper; }

    IListCtrlHelper* itemHelper = nullptr;
    IListCtrlFilterHelper* filterHelper = nullptr;  // null: no filtering
    IListCtrlSortSink* sortSink = nullptr;
    bool useLargeUpDownIcons = false;
    YDialogListCtrlButtonHelper* buttonHelper = nullptr;  // borrowed, or ownButtonHelper
    bool inSelectItem = false;  // SelectItem clears: the buttons wait for the end of it
    int sortColumn = 0;
    SortOrder sortOrder = SortAscending;
    CompareItemsFunction compareItems = nullptr;
    bool destroying = false;  // the window is on its way out

private:
    std::unique_ptr<YDialogListCtrlButtonHelper> ownButtonHelper;
};
