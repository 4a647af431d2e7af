// YDialogListCtrlButtonHelper.h: keeps the buttons beside a list in step with it.
#pragma once

#include "CommonUiApi.h"
#include "YUnknownPointer.h"
#include "controls/IListCtrlWrapper.h"

class CWnd;
class YListCtrl;

// Enables what can be done with the selection: moves and edits with one row, removal with any. Knows
// the list by its wrapper only. Borrows the buttons, each of which may be null, and the list.
// User-interface thread.
class COMMONUI_API YDialogListCtrlButtonHelper
{
public:
    explicit YDialogListCtrlButtonHelper(YListCtrl* list);
    YDialogListCtrlButtonHelper(const YDialogListCtrlButtonHelper&) = delete;
    YDialogListCtrlButtonHelper& operator=(const YDialogListCtrlButtonHelper&) = delete;
    virtual ~YDialogListCtrlButtonHelper();

    // enableEdits: of add, edit and remove.
    virtual void EnableButtons(bool enableMoves, bool enableEdits);
    virtual void EnableButtons() { EnableButtons(true, true); }
    // Overridden to protect rows. selectionIndex: the first selected row, or -1.
    virtual bool ShouldDeleteBeEnabled(int selectionCount, int selectionIndex);

    void UseLargeUpDownIcons() { useLargeIcons = true; }  // before Initialize
    void Initialize(CWnd* up, CWnd* down, CWnd* add, CWnd* edit, CWnd* remove);
    CWnd* GetEditButton() const { return editButton; }

    // The list; see IListCtrlWrapper.
    int GetItemCount() { return wrapper->GetItemCount(); }
    unsigned GetSelectionCount() { return wrapper->GetSelectionCount(); }
    int GetSelectionIndex() { return wrapper->GetSelectionIndex(); }
    YUnicodeString GetItemText(int row) { return wrapper->GetItemText(row); }
    void GetSelectedItemText(std::vector<YUnicodeString>& texts)
    {
        wrapper->GetSelectedItemText(texts);
    }
    void SelectItem(int row, bool keepOtherSelections)
    {
        wrapper->SelectItem(row, keepOtherSelections);
    }
    void UpdateItemText(int row, const YUnicodeString& text) { wrapper->UpdateItemText(row, text); }
    int FindItemByText(const YUnicodeString& text) { return wrapper->FindItemByText(text); }
    void SetRedraw(bool redraw) { wrapper->SetRedraw(redraw); }
    // A text that no row has selects every row, as row -1 does in a list: look with FindItemByText
    // first where that is not wanted.
    void SelectItemByText(const YUnicodeString& text, bool keepOtherSelections);

private:
    YUnknownPointer<IListCtrlWrapper> wrapper;
    bool useLargeIcons = false;
    CWnd* upButton = nullptr;
    CWnd* downButton = nullptr;
    CWnd* addButton = nullptr;
    CWnd* editButton = nullptr;
    CWnd* removeButton = nullptr;
};
