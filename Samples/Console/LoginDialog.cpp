#include "LoginDialog.h"

#include "ConsoleMessages.h"
#include "Session.h"
#include "resource.h"

#include <YMessageBox.h>
#include <YReportMessageParams.h>

#include <iterator>

namespace {

constexpr int longestUser = 256;  // characters
constexpr int longestPassword = 256;

// Through a buffer that is wiped: a string of the framework's would leave copies.
YUnicodeString ReadPassword(const CWnd& edit)
{
    wchar_t text[longestPassword + 1] = L"";
    edit.GetWindowText(text, static_cast<int>(std::size(text)));
    YUnicodeString password(text, Str::Sensitive);
    ::SecureZeroMemory(text, sizeof text);
    return password;
}

void Tell(CWnd& parent, unsigned id)
{
    const YReportMessageParams message(id, ::AfxGetInstanceHandle());
    YMessageBox(&parent, &message);
}

}  // namespace

LoginDialog::LoginDialog(CWnd& parent, Session& asked) : CDialog(IDD_LOGIN, &parent), session(asked)
{}

void LoginDialog::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_PASSWORD, passwords.password);
    DDX_Control(exchange, IDC_CONFIRMATION, passwords.confirmation);
}

BOOL LoginDialog::OnInitDialog()
{
    const BOOL setsFocus = CDialog::OnInitDialog();
    static_cast<CEdit*>(GetDlgItem(IDC_USER))->LimitText(longestUser);
    passwords.password.LimitText(longestPassword);
    passwords.confirmation.LimitText(longestPassword);
    SetDlgItemText(IDC_USER, session.user.c_str());
    if (!session.password.IsEmpty()) {
        passwords.SetPseudoPassword();
    }
    return setsFocus;
}

void LoginDialog::OnOK()
{
    if (passwords.GetTouched() && !TakePassword()) {
        return;
    }
    CString user;
    GetDlgItem(IDC_USER)->GetWindowText(user);
    session.user = user.Trim().GetString();
    EndDialog(IDOK);
}

// False: the user has been told why not.
bool LoginDialog::TakePassword()
{
    const YUnicodeString password = ReadPassword(passwords.password);
    if (password != ReadPassword(passwords.confirmation)) {
        Tell(*this, CONSOLE_PASSWORDS_DIFFER);
        passwords.confirmation.SetFocus();
        passwords.confirmation.SetSel(0, -1);
        return false;
    }
    if (password.IsEmpty()) {
        session.password.Clear();
    } else if (!session.password.Set(password)) {
        Tell(*this, CONSOLE_PASSWORD_NOT_KEPT);
        return false;
    }
    return true;
}
