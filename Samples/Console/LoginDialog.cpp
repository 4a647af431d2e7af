#include "LoginDialog.h"

#include "ConsoleMessages.h"
#include "ConsoleText.h"
#include "DialogText.h"
#include "resource.h"

namespace {

constexpr unsigned longestUser = 256;  // characters
constexpr int longestPassword = 256;

// No copy is left but the one that is returned.
YUnicodeString ReadPassword(const CWnd& field)
{
    wchar_t text[longestPassword + 1] = L"";
    ::GetWindowTextW(field.GetSafeHwnd(), text, longestPassword + 1);
    YUnicodeString password(text, Str::Sensitive);
    ::SecureZeroMemory(text, sizeof text);
    return password;
}

}  // namespace

LoginDialog::LoginDialog(std::wstring& editedUser, ProtectedPassword& editedPassword, CWnd* parent)
    : CDialog(IDD_LOGIN, parent), user(editedUser), password(editedPassword)
{}

void LoginDialog::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_LOGIN_PASSWORD, fields.password);
    DDX_Control(exchange, IDC_LOGIN_CONFIRMATION, fields.confirmation);
}

BOOL LoginDialog::OnInitDialog()
{
    const BOOL setsFocus = CDialog::OnInitDialog();
    ::SendDlgItemMessageW(m_hWnd, IDC_LOGIN_USER, EM_LIMITTEXT, longestUser, 0);
    for (const int id : {IDC_LOGIN_PASSWORD, IDC_LOGIN_CONFIRMATION}) {
        ::SendDlgItemMessageW(m_hWnd, id, EM_LIMITTEXT, longestPassword, 0);
    }
    GetDlgItem(IDC_LOGIN_USER)->SetWindowText(user.c_str());
    if (!password.IsEmpty()) {
        fields.SetPseudoPassword();
    }
    return setsFocus;
}

void LoginDialog::OnOK()
{
    const std::wstring typed = GetTrimmedText(m_hWnd, IDC_LOGIN_USER);
    if (typed.empty()) {
        Complain(m_hWnd, CONSOLE_NO_USER, IDC_LOGIN_USER);
    } else if (TakePassword()) {
        user = typed;
        CDialog::OnOK();
    }
}

// False: the user has been told why not.
bool LoginDialog::TakePassword()
{
    if (!fields.GetTouched()) {
        return true;  // the stored one stays
    }
    const YUnicodeString typed = ReadPassword(fields.password);
    if (typed != ReadPassword(fields.confirmation)) {
        Complain(m_hWnd, CONSOLE_PASSWORDS_DIFFER, IDC_LOGIN_CONFIRMATION);
        return false;
    }
    if (!password.Set(typed)) {
        ShowError(this, ::GetLastError());
        return false;
    }
    return true;
}
