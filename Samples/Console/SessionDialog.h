// SessionDialog.h: a saved host, to be added or changed.
#pragma once

#include "Session.h"

#include <afxwin.h>
#include <controls/ICheckBoxListCtrlHelper.h>
#include <controls/YCheckBoxListCtrl.h>
#include <controls/YControllingCheckBox.h>
#include <controls/YListBox.h>
#include <controls/YMultiLineEdit.h>
#include <controls/YStringComboBox.h>

class ConsoleSettings;

// Works on a copy, which OK gives back. Two sessions never have one name.
class SessionDialog : public CDialog, private ICheckBoxListCtrlHelper
{
public:
    // Both are borrowed. replaced: the session of the list that is changed; null: a new one.
    SessionDialog(Session& edited, const Session* replaced, ConsoleSettings& remembered,
                  CWnd* parent);

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;
    void OnOK() override;
    afx_msg void OnLogin();
    afx_msg void OnAddLine();
    afx_msg void OnRemoveLine();
    afx_msg void OnLineChange();
    afx_msg void OnOptionChange(NMHDR* header, LRESULT* result);
    afx_msg void OnLineSelected(NMHDR* header, LRESULT* result);
    DECLARE_MESSAGE_MAP()

private:
    void GetItemColumns(unsigned long option, std::vector<YUnicodeString>& columns) override;
    void ReleaseItemData(unsigned long) override {}
    bool IsItemChecked(unsigned long option) override { return (session.options & option) != 0; }
    void OnItemCheckChanged(unsigned long option, bool checked) override;

    void FillLineEnds();
    void FillOptions();
    void FillLines();
    void EnableLineButtons();
    bool TakeNameAndPeer();
    bool MayLogAndLogIn();

    Session& result;
    Session session;  // the copy
    const Session* const replacedSession;
    ConsoleSettings& settings;
    YStringComboBox lineEnds;
    YCheckBoxListCtrl options;
    YControllingCheckBox logsIn;
    YMultiLineEdit line;
    YListBox lines;
};
