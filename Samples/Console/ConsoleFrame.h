// ConsoleFrame.h: what every window of the program does.
#pragma once

#include "ConsoleBar.h"
#include "Finder.h"

#include <afxext.h>
#include <textview/YTextViewBase.h>

#include <string>
#include <vector>

struct ConsoleChoices;
class ConsoleSettings;
class ConsoleView;

// A frame round a view of lines: the bar with the address and the search, the commands of the view,
// new connections, and the end of the program with its last window.
class ConsoleFrame : public CFrameWnd
{
public:
    // The settings are borrowed; what the user changes goes there, and they are saved at the end.
    explicit ConsoleFrame(ConsoleSettings& remembered)
        : settings(remembered), finder(*this, remembered)
    {}

    virtual ConsoleView& GetView() const = 0;  // once the window is made
    virtual void OpenFile(const std::wstring& path) = 0;
    // The settings have changed from before. What is the same in both stays as the window has it:
    // it may have a look of its own.
    virtual void ApplyChoices(const ConsoleChoices& before);
    // Where the words of commands are shown; null: the idle ones.
    void ShowMessage(const wchar_t* text);

protected:
    // Before they are saved.
    virtual void RememberMore() {}

    ConsoleSettings& GetSettings() const { return settings; }
    SelectionDrawStyle GetStyle() const;
    // Before the window is shown: as chosen, and as the command line or the last time had it.
    void ApplyLook(bool outlined);
    // What the window shows, unless the user is typing there; as soon as messages are handled.
    void ShowAddress(const std::wstring& address);

    afx_msg int OnCreate(CREATESTRUCT* create);
    afx_msg void OnClose();
    afx_msg void OnEndSession(BOOL ending);
    afx_msg void OnDestroy();
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    afx_msg void OnFileOpen();
    afx_msg void OnFileConnect();
    afx_msg void OnFileSessions();
    afx_msg void OnAddress();
    afx_msg void OnAddressShown();
    afx_msg void OnAddressFocus();
    afx_msg void OnSearchChange();
    afx_msg void OnSearch();
    afx_msg void OnSearchPrevious();
    afx_msg void OnSearchProgress();
    afx_msg void OnSearchTellEnd();
    afx_msg void OnEditFind();
    afx_msg void OnOptions();
    afx_msg void OnCancel();
    afx_msg void OnBarLeave();
    afx_msg void OnViewAddress();
    afx_msg void OnViewSearch();
    afx_msg void OnEditCopy();
    afx_msg void OnEditSelectAll();
    afx_msg void OnEditClear();
    afx_msg void OnViewOutline();
    afx_msg void OnViewFont();
    afx_msg void OnViewStart();
    afx_msg void OnViewEnd();
    afx_msg void OnAbout();
    afx_msg void OnUpdateCancel(CCmdUI* item);
    afx_msg void OnUpdateCopy(CCmdUI* item);
    afx_msg void OnUpdateHasLines(CCmdUI* item);
    afx_msg void OnUpdateOutline(CCmdUI* item);
    DECLARE_MESSAGE_MAP()

private:
    void SaveSettings();
    void Search(bool backwards);

    ConsoleSettings& settings;
    ConsoleBar bar;
    Finder finder;
    std::wstring shownAddress;
    std::wstring searched;  // as it was typed last
    bool outline = false;
};

// Those of this thread; the topmost first.
std::vector<ConsoleFrame*> FindConsoleFrames();

// Gives the settings other choices and applies them to every window.
void ChangeChoices(ConsoleSettings& settings, const ConsoleChoices& next);

// Asks each window of the program to close, as its user would.
void CloseAllFrames();
