// MainFrame.h: the log viewer's window.
#pragma once

#include "ConsoleFrame.h"
#include "FileFollower.h"
#include "ViewPair.h"

#include <memory>
#include <string>

struct ConsoleOptions;

// Shows one file. A file that is to be opened is read by a second follower until its first bytes
// are there; only then does it take the place of what is shown, so a file that cannot be read costs
// nothing but a message. Lines are taken over for some milliseconds at a time: input and painting
// come between, however fast they arrive.
class MainFrame : public ConsoleFrame
{
public:
    explicit MainFrame(ConsoleSettings& remembered) : ConsoleFrame(remembered), views(*this) {}

    // Creates the window where it was the last time, does not show it yet. show: how to (SW_...).
    bool Load(const ConsoleOptions& options, int& show);
    void OpenFile(const std::wstring& path) override;
    void ApplyChoices(const ConsoleChoices& before) override;
    // In the window of files that is there, or in a new one.
    static void OpenFile(ConsoleSettings& settings, const std::wstring& path);

    ConsoleView& GetView() const override { return views.GetFirst(); }  // the other is linked
    const ViewPair& GetViews() const { return views; }
    bool IsLoading() const;
    void RecalcLayout(BOOL notify = TRUE) override;

protected:
    BOOL OnCreateClient(LPCREATESTRUCT create, CCreateContext* context) override;
    void RememberMore() override;

    afx_msg int OnCreate(CREATESTRUCT* create);
    afx_msg void OnDestroy();
    afx_msg void OnTimer(UINT_PTR timer);
    afx_msg LRESULT OnNews(WPARAM wParam, LPARAM lParam);
    afx_msg void OnVScroll(UINT code, UINT position, CScrollBar* bar);
    afx_msg void OnDropFiles(HDROP drop);

    afx_msg void OnRecentFile(UINT id);
    afx_msg void OnFileReload();
    afx_msg void OnFileFollow();
    afx_msg void OnFileCancel();
    afx_msg void OnFileClose();
    afx_msg void OnViewSplit();
    afx_msg void OnBufferSize(UINT id);

    afx_msg void OnUpdateHasFile(CCmdUI* item);
    afx_msg void OnUpdateRecentFiles(CCmdUI* item);
    afx_msg void OnUpdateFollow(CCmdUI* item);
    afx_msg void OnUpdateCancel(CCmdUI* item);
    afx_msg void OnUpdateSplit(CCmdUI* item);
    afx_msg void OnUpdateBufferSize(CCmdUI* item);
    afx_msg void OnUpdateBufferLocked(CCmdUI* item);
    afx_msg void OnUpdateProgress(CCmdUI* item);
    afx_msg void OnUpdateLines(CCmdUI* item);
    afx_msg void OnUpdatePosition(CCmdUI* item);
    afx_msg void OnUpdateSelection(CCmdUI* item);
    DECLARE_MESSAGE_MAP()

private:
    TextRules GetTextRules() const;
    void Follow(bool on);
    void LimitLines(unsigned lines);
    void TakeNews();
    void JudgeCandidate();
    void ShowLines();
    void ShowEnd();
    void GiveUpForMemory();
    void ShowTitle();

    ViewPair views;
    CStatusBar statusBar;
    std::wstring path;  // of the file shown; empty: none
    std::unique_ptr<FileFollower> follower;  // of the file shown; null: nothing more will come
    std::unique_ptr<FileFollower> candidate;  // of the file that is being opened
    unsigned lineLimit = 0;
    bool follow = true;
    bool laysOut = false;
};
