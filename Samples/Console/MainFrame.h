// MainFrame.h: the log viewer's window.
#pragma once

#include "FileFollower.h"
#include "ViewPair.h"

#include <afxext.h>

#include <memory>
#include <string>

class ConsoleSettings;
struct ConsoleOptions;

// Shows one file. A file that is to be opened is read by a second follower until its first bytes
// are there; only then does it take the place of what is shown, so a file that cannot be read costs
// nothing but a message. Lines are taken over for some milliseconds at a time: input and painting
// come between, however fast they arrive.
class MainFrame : public CFrameWnd
{
public:
    // The settings are borrowed; what the user changes goes there, and they are saved at the end.
    explicit MainFrame(ConsoleSettings& remembered) : settings(remembered), views(*this) {}

    // Creates the window where it was the last time, does not show it yet. show: how to (SW_...).
    bool Load(const ConsoleOptions& options, int& show);
    void Open(const std::wstring& path);

    const ViewPair& GetViews() const { return views; }
    bool IsLoading() const;
    void RecalcLayout(BOOL notify = TRUE) override;

protected:
    BOOL OnCreateClient(LPCREATESTRUCT create, CCreateContext* context) override;

    afx_msg void OnClose();
    afx_msg void OnEndSession(BOOL ending);
    afx_msg int OnCreate(CREATESTRUCT* create);
    afx_msg void OnDestroy();
    afx_msg void OnTimer(UINT_PTR timer);
    afx_msg LRESULT OnNews(WPARAM wParam, LPARAM lParam);
    afx_msg void OnVScroll(UINT code, UINT position, CScrollBar* bar);
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    afx_msg void OnDropFiles(HDROP drop);

    afx_msg void OnFileOpen();
    afx_msg void OnRecentFile(UINT id);
    afx_msg void OnFileReload();
    afx_msg void OnFileFollow();
    afx_msg void OnFileCancel();
    afx_msg void OnFileClose();
    afx_msg void OnEditCopy();
    afx_msg void OnEditSelectAll();
    afx_msg void OnEditClear();
    afx_msg void OnViewSplit();
    afx_msg void OnViewOutline();
    afx_msg void OnBufferSize(UINT id);
    afx_msg void OnViewFont();
    afx_msg void OnViewStart();
    afx_msg void OnViewEnd();
    afx_msg void OnAbout();

    afx_msg void OnUpdateHasFile(CCmdUI* item);
    afx_msg void OnUpdateRecentFiles(CCmdUI* item);
    afx_msg void OnUpdateFollow(CCmdUI* item);
    afx_msg void OnUpdateCancel(CCmdUI* item);
    afx_msg void OnUpdateCopy(CCmdUI* item);
    afx_msg void OnUpdateHasLines(CCmdUI* item);
    afx_msg void OnUpdateSplit(CCmdUI* item);
    afx_msg void OnUpdateOutline(CCmdUI* item);
    afx_msg void OnUpdateBufferSize(CCmdUI* item);
    afx_msg void OnUpdateBufferLocked(CCmdUI* item);
    afx_msg void OnUpdateProgress(CCmdUI* item);
    afx_msg void OnUpdateLines(CCmdUI* item);
    afx_msg void OnUpdatePosition(CCmdUI* item);
    afx_msg void OnUpdateSelection(CCmdUI* item);
    DECLARE_MESSAGE_MAP()

private:
    void TakeNews();
    void JudgeCandidate();
    void ShowLines();
    void ShowEnd();
    void GiveUpForMemory();
    void SaveSettings();
    void ShowTitle();
    SelectionDrawStyle GetStyle() const;

    ConsoleSettings& settings;
    ViewPair views;
    CStatusBar statusBar;
    std::wstring path;  // of the file shown; empty: none
    std::unique_ptr<FileFollower> follower;  // of the file shown; null: nothing more will come
    std::unique_ptr<FileFollower> candidate;  // of the file that is being opened
    unsigned lineLimit = 0;
    bool follow = true;
    bool outline = false;
    bool laysOut = false;
};
