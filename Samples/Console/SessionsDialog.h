// SessionsDialog.h: the hosts that the user keeps.
#pragma once

#include <autocomplete/YLineEdit.h>
#include <controls/IListCtrlFilterHelper.h>
#include <controls/IListCtrlHelper.h>
#include <controls/IListCtrlSortSink.h>
#include <controls/YListSavedWidthsCtrl.h>
#include <dialogs/YDialog.h>

class ConsoleSettings;
struct Session;

// What is added, changed and removed goes to the settings at once. The user's own order is that of
// the numbers in the first column: rows move while the list shows it, and all of it.
class SessionsDialog : public YDialog,
                       private IListCtrlHelper,
                       private IListCtrlFilterHelper,
                       private IListCtrlSortSink
{
public:
    SessionsDialog(ConsoleSettings& remembered, CWnd* parent);  // borrowed

    const Session* GetChosen() const { return chosen; }  // to connect to; null: none

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;
    void AddToDynamicLayout() override;
    void OnOK() override;

    afx_msg void OnDestroy();
    afx_msg void OnFilterChange();
    afx_msg void OnItemChanged(NMHDR* header, LRESULT* result);
    afx_msg void OnDoubleClick(NMHDR* header, LRESULT* result);
    afx_msg void OnListKey(NMHDR* header, LRESULT* result);
    afx_msg void OnUp();
    afx_msg void OnDown();
    afx_msg void OnAdd();
    afx_msg void OnEdit();
    afx_msg void OnRemove();
    DECLARE_MESSAGE_MAP()

private:
    void GetItemColumns(unsigned long data, std::vector<YUnicodeString>& columns) override;
    void ReleaseItemData(unsigned long) override {}  // the settings hold the sessions
    bool ItemMatchesFilter(unsigned long data, const YUnicodeString& filter) override;
    void OnFilterRefill(bool starting) override;
    void RefillItems() override;
    void OnSortChanged() override { EnableButtons(); }

    void Fill();
    void Select(const Session& session);
    void Move(bool up);
    void EnableButtons();
    bool ShowsOwnOrder() const;

    ConsoleSettings& settings;
    YListSavedWidthsCtrl list;
    YLineEdit filter;
    CButton buttons[5];  // in the order of their ids
    const Session* chosen = nullptr;
};
