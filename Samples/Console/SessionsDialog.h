// SessionsDialog.h: the saved hosts, to choose one and to keep them in order.
#pragma once

#include "Session.h"

#include <afxwin.h>
#include <autocomplete/YLineEdit.h>
#include <controls/IListCtrlFilterHelper.h>
#include <controls/IListCtrlHelper.h>
#include <controls/IListCtrlSortSink.h>
#include <controls/YListSavedWidthsCtrl.h>
#include <dialogs/YDialog.h>

class ConsoleSettings;
class SessionList;

// Changes the settings' sessions at once; saving is the owner's. The rows are the sessions themselves.
// The column "#" is the user's own order: sorted by it and not filtered, rows can be moved.
// User-interface thread.
class SessionsDialog : public YDialog,
                       private IListCtrlHelper,
                       private IListCtrlFilterHelper,
                       private IListCtrlSortSink
{
public:
    // The settings are borrowed.
    SessionsDialog(ConsoleSettings& remembered, CWnd* parent);

    INT_PTR DoModal() override;  // IDOK: the chosen one is to be connected to
    const Session& GetChosen() const { return chosen; }

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;
    void AddToDynamicLayout() override;
    void OnOK() override;
    afx_msg void OnDestroy();
    afx_msg void OnFilterChange();
    afx_msg void OnAdd();
    afx_msg void OnEdit();
    afx_msg void OnRemove();
    afx_msg void OnUp();
    afx_msg void OnDown();
    afx_msg void OnItemChanged(NMHDR* header, LRESULT* result);
    afx_msg void OnKeyDown(NMHDR* header, LRESULT* result);
    afx_msg void OnDoubleClick(NMHDR* header, LRESULT* result);
    DECLARE_MESSAGE_MAP()

private:
    void GetItemColumns(unsigned long data, std::vector<YUnicodeString>& columns) override;
    void ReleaseItemData(unsigned long) override {}  // the list of sessions owns them
    bool ItemMatchesFilter(unsigned long data, const YUnicodeString& filterLowerCase) override;
    void OnFilterRefill(bool starting) override;
    void RefillItems() override;
    void OnSortChanged() override;

    static int CALLBACK CompareRows(LPARAM row1, LPARAM row2, LPARAM context);
    bool IsInOwnOrder() const;
    void EnableControls();
    void Move(MoveDirection direction);
    void Select(const Session& session);
    Session* GetSelected() const;  // null: none, or several

    CWnd* owner;
    ConsoleSettings& settings;
    SessionList& sessions;
    Session chosen;
    YLineEdit filter;
    YListSavedWidthsCtrl list;
};
