// ConsoleFrame.h: what every window of the program does.
#pragma once

#include <afxext.h>
#include <textview/YTextViewBase.h>

class ConsoleSettings;
class ConsoleView;

// A frame round a view of lines: the commands of the view, new connections, and the end of the
// program with its last window.
class ConsoleFrame : public CFrameWnd
{
public:
    // The settings are borrowed; what the user changes goes there, and they are saved at the end.
    explicit ConsoleFrame(ConsoleSettings& remembered) : settings(remembered) {}

    virtual ConsoleView& GetView() const = 0;  // once the window is made

protected:
    // Before they are saved.
    virtual void RememberMore() {}

    ConsoleSettings& GetSettings() const { return settings; }
    SelectionDrawStyle GetStyle() const;
    // Before the window is shown: as chosen, and as the command line or the last time had it.
    void ApplyLook(bool outlined);

    afx_msg void OnClose();
    afx_msg void OnEndSession(BOOL ending);
    afx_msg void OnDestroy();
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    afx_msg void OnFileConnect();
    afx_msg void OnEditCopy();
    afx_msg void OnEditSelectAll();
    afx_msg void OnEditClear();
    afx_msg void OnViewOutline();
    afx_msg void OnViewFont();
    afx_msg void OnViewStart();
    afx_msg void OnViewEnd();
    afx_msg void OnAbout();
    afx_msg void OnUpdateCopy(CCmdUI* item);
    afx_msg void OnUpdateHasLines(CCmdUI* item);
    afx_msg void OnUpdateOutline(CCmdUI* item);
    DECLARE_MESSAGE_MAP()

private:
    void SaveSettings();

    ConsoleSettings& settings;
    bool outline = false;
};

// Asks each window of the program to close, as its user would.
void CloseAllFrames();
