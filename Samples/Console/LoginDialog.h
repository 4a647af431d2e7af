// LoginDialog.h: who logs in.
#pragma once

#include <controls/LinkedPasswordEdits.h>

#include <afxwin.h>

struct Session;

// A stored password is never shown, and stays where its fields are left alone. OK takes user and
// password over.
class LoginDialog : public CDialog
{
public:
    LoginDialog(CWnd& parent, Session& asked);

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;
    void OnOK() override;

private:
    bool TakePassword();

    Session& session;
    LinkedPasswordEdits passwords{nullptr};
};
