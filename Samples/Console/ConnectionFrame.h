// ConnectionFrame.h: the window of one connection.
#pragma once

#include "Connection.h"
#include "ConsoleFrame.h"
#include "InputLine.h"
#include "Session.h"

#include <memory>
#include <optional>
#include <string>

// The conversation in a view, a line to type in below it. The connection's state stands in the
// status bar and, where it changes, among the lines. Deletes itself with its window, which also
// ends the connection.
class ConnectionFrame : public ConsoleFrame, private ConnectionObserver
{
public:
    explicit ConnectionFrame(ConsoleSettings& remembered);

    // Null: the window could not be made. show: how to (SW_...).
    static ConnectionFrame* Open(ConsoleSettings& settings, const Peer& peer, int show);
    // As the user has saved it: line end, log, login and what is sent then, at every connection.
    static ConnectionFrame* Open(ConsoleSettings& settings, const Session& session, int show);

    ConsoleView& GetView() const override { return *view; }
    void OpenFile(const std::wstring& path) override;
    void ApplyChoices(const ConsoleChoices& before) override;
    const Connection& GetConnection() const { return *connection; }
    void RecalcLayout(BOOL notify = TRUE) override;
    // The state, where the prompts of commands are shown while there is none.
    void GetMessageString(UINT id, CString& message) const override;

protected:
    ~ConnectionFrame() override;

    BOOL OnCreateClient(LPCREATESTRUCT create, CCreateContext* context) override;
    BOOL PreTranslateMessage(MSG* message) override;

    afx_msg int OnCreate(CREATESTRUCT* create);
    afx_msg void OnDestroy();
    afx_msg void OnActivate(UINT state, CWnd* other, BOOL minimized);
    afx_msg void OnSetFocus(CWnd* previous);
    afx_msg void OnDisconnect();
    afx_msg void OnReconnect();
    afx_msg void OnLog();
    afx_msg void OnCloseWindow();
    afx_msg void OnSend();
    afx_msg void OnEditCopy();
    afx_msg void OnEditPaste();
    afx_msg void OnEditSelectAll();
    afx_msg void OnViewFont();
    afx_msg void OnUpdateDisconnect(CCmdUI* item);
    afx_msg void OnUpdateLog(CCmdUI* item);
    afx_msg void OnUpdateCopy(CCmdUI* item);
    afx_msg void OnUpdateReceived(CCmdUI* item);
    afx_msg void OnUpdateLogPane(CCmdUI* item);
    DECLARE_MESSAGE_MAP()

private:
    void OnLines(const LineBatch& lines, bool endsUnfinished) override;
    void OnStateChange() override;
    void OnLogStop(const YReportMessageParams& error) override;

    bool Make(int show);
    void Connect(const Peer& peer);
    void ApplyToConnection();
    bool HasOption(unsigned option, bool usual) const;
    void StartLog();
    void LogIn();
    bool IsTyping() const;
    void ShowInputFont();
    int GetInputHeight() const;
    std::wstring DescribeState() const;
    void ShowNotice(const std::wstring& text);
    void UpdatePanes();

    const YUnknownPointer<Connection> connection;
    std::optional<Session> saved;  // none: as in the options, and nothing is sent
    ConsoleView* view = nullptr;  // windows delete themselves
    InputLine input;
    std::unique_ptr<CFont> inputFont;
    CStatusBar statusBar;
    bool laysOut = false;
};
