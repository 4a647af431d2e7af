#include "AboutDialog.h"

#include "ConsoleMessages.h"
#include "resource.h"

#include <YReportMessageParams.h>

AboutDialog::AboutDialog(CWnd* parent)
    : CDialog(IDD_ABOUT, parent), licence(L"https://opensource.org/licenses/MIT", 0, nullptr)
{}

void AboutDialog::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_ABOUT_LICENCE, licence);
}

BOOL AboutDialog::OnInitDialog()
{
    const BOOL setsFocus = CDialog::OnInitDialog();
    const YReportMessageParams text(CONSOLE_ABOUT, ::AfxGetInstanceHandle());
    GetDlgItem(IDC_ABOUT_TEXT)->SetWindowText(text.GetTrimmedText());
    return setsFocus;
}
