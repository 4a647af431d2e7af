// LoginDialog.h: who logs in, and by which password.
#pragma once

#include "Session.h"

#include <afxwin.h>
#include <controls/LinkedPasswordEdits.h>

// A stored password never comes into the dialog; it stays where the user does not touch its fields.
class LoginDialog : public CDialog
{
public:
    // Both are borrowed, and changed by OK only.
    LoginDialog(std::wstring& editedUser, ProtectedPassword& editedPassword, CWnd* parent);

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;
    void OnOK() override;

private:
    bool TakePassword();

    std::wstring& user;
    ProtectedPassword& password;
    LinkedPasswordEdits fields{nullptr};
};
