#include "AboutDialog.h"

#include "ConsoleMessages.h"
#include "resource.h"

#include <YReportMessageParams.h>

namespace {

constexpr wchar_t licenceAddress[] = L"https://opensource.org/licenses/MIT";
constexpr int systemsHand = 0;  // no cursor of the program's own

}  // namespace

AboutDialog::AboutDialog(CWnd* parent)
    : CDialog(IDD_ABOUT, parent), licence(licenceAddress, systemsHand, nullptr)
{}

void AboutDialog::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_LICENCE, licence);
    const YReportMessageParams text(CONSOLE_ABOUT, ::AfxGetInstanceHandle());
    SetDlgItemText(IDC_ABOUT, text.GetTrimmedText());
}
