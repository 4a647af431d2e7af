#include "OptionPages.h"

#include "CertificateText.h"
#include "ConsoleMessages.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "ConsoleView.h"
#include "resource.h"

#include <YFolders.h>
#include <YMessageBox.h>
#include <YReportMessageParams.h>
#include <afxdlgs.h>
#include <certificates/CreateCertificateDialog.h>
#include <certificates/YCertificatePath.h>
#include <dialogs/YTlsVersionsPlugin.h>

#include <algorithm>
#include <iterator>

namespace {

void ExchangeCheck(CDataExchange& exchange, int id, bool& choice)
{
    int checked = choice ? BST_CHECKED : BST_UNCHECKED;
    DDX_Check(&exchange, id, checked);
    choice = checked != BST_UNCHECKED;
}

void ExchangeNumber(CDataExchange& exchange, int id, unsigned least, unsigned most,
                    unsigned& choice)
{
    unsigned number = choice;
    DDX_Text(&exchange, id, number);
    DDV_MinMaxUInt(&exchange, number, least, most);
    choice = number;
}

void ExchangeRadio(CDataExchange& exchange, int firstId, unsigned& choice)
{
    int button = static_cast<int>(choice);
    DDX_Radio(&exchange, firstId, button);
    choice = button < 0 ? choice : static_cast<unsigned>(button);
}

void ExchangeText(CDataExchange& exchange, int id, int longest, std::wstring& choice)
{
    CString text(choice.c_str());
    DDX_Text(&exchange, id, text);
    DDV_MaxChars(&exchange, text, longest);
    text.Trim();
    choice = text.GetString();
}

// The rows of the page of colours, in their order.
constexpr LineSeverity shownColors[] = {LineSeverity::Warning, LineSeverity::Error,
                                        LineSeverity::Notice, LineSeverity::Sent};

COLORREF& ColorOf(ConsoleChoices& choices, UINT row)
{
    return choices.colors[static_cast<std::size_t>(shownColors[row])];
}

// Of files that are no Unicode, in the order of the list; not all are there on every system.
constexpr UINT codePages[] = {CP_ACP, CP_OEMCP, 1252, 1250, 1251, 1253, 28591, 850, 437, 932, 936};

// CP_ACP and CP_OEMCP have names of the program's, the others have those of the system.
std::wstring NameCodePage(UINT codePage)
{
    if (codePage == CP_ACP || codePage == CP_OEMCP) {
        const UINT number = codePage == CP_ACP ? ::GetACP() : ::GetOEMCP();
        return FormatText(codePage == CP_ACP ? IDS_CODE_PAGE_ANSI : IDS_CODE_PAGE_OEM, number);
    }
    CPINFOEXW info;
    return ::GetCPInfoExW(codePage, 0, &info) ? info.CodePageName : std::to_wstring(codePage);
}

// What a log can hold beside what is received, in the order of the rows.
struct LoggedKind
{
    UINT textId;
    bool ConsoleChoices::*choice;
};
constexpr LoggedKind loggedKinds[] = {
    {IDS_LOG_SENT, &ConsoleChoices::logsSent},
    {IDS_LOG_NOTICES, &ConsoleChoices::logsNotices},
};

bool IsOffered(UINT codePage)
{
    return codePage <= CP_OEMCP || ::IsValidCodePage(codePage);
}

}  // namespace

// What is filled by the program is no change of its user's.
void OptionPage::DoDataExchange(CDataExchange* exchange)
{
    isFilling = !exchange->m_bSaveAndValidate;
    Exchange(*exchange);
    isFilling = false;
}

BOOL OptionPage::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT code = HIWORD(wParam);
    const bool isChange =
        lParam != 0 && (code == EN_CHANGE || code == CBN_SELCHANGE || code == BN_CLICKED);
    if (isChange && !isFilling) {
        OnChange();
    }
    return YPropertyTreePage::OnCommand(wParam, lParam);
}

// View

ViewPage::ViewPage(ConsoleChoices& edited) : OptionPage(IDD_OPTIONS_VIEW, edited) {}

BOOL ViewPage::OnInitDialog()
{
    const BOOL setsFocus = OptionPage::OnInitDialog();
    if (lockedLines != 0) {
        GetDlgItem(IDC_LINES)->EnableWindow(FALSE);
        GetDlgItem(IDC_LINES_NOTE)
            ->SetWindowText(
                FormatText(IDS_BUFFER_LOCKED, FormatNumber(lockedLines).c_str()).c_str());
    }
    return setsFocus;
}

void ViewPage::Exchange(CDataExchange& exchange)
{
    ExchangeNumber(exchange, IDC_LINES, 1, ConsoleChoices::mostLines, choices.lineLimit);
    ExchangeCheck(exchange, IDC_OUTLINES, choices.outlines);
    ExchangeCheck(exchange, IDC_SPLITS, choices.splits);
}

// Colours

BEGIN_MESSAGE_MAP(ColorsPage, OptionPage)
    ON_CONTROL_RANGE(BN_CLICKED, IDC_COLOR_FIRST, IDC_COLOR_LAST, &ColorsPage::OnChoose)
    ON_BN_CLICKED(IDC_COLOR_USUAL, &ColorsPage::OnUsual)
    ON_WM_CTLCOLOR()
END_MESSAGE_MAP()

ColorsPage::ColorsPage(ConsoleChoices& edited) : OptionPage(IDD_OPTIONS_COLORS, edited) {}

void ColorsPage::Exchange(CDataExchange& exchange)
{
    ExchangeCheck(exchange, IDC_COLORS_LINES, choices.colorsLines);
}

void ColorsPage::OnChoose(UINT id)
{
    COLORREF& color = ColorOf(choices, id - IDC_COLOR_FIRST);
    CColorDialog dialog(color, CC_FULLOPEN | CC_RGBINIT, this);
    if (dialog.DoModal() == IDOK) {
        color = dialog.GetColor();
        Invalidate();
    }
}

void ColorsPage::OnUsual()
{
    choices.colors = defaultLineColors;
    Invalidate();
}

// A sample shows its line as the view does.
HBRUSH ColorsPage::OnCtlColor(CDC* dc, CWnd* window, UINT kind)
{
    const HBRUSH brush = OptionPage::OnCtlColor(dc, window, kind);
    const UINT row = static_cast<UINT>(window->GetDlgCtrlID()) - IDC_SAMPLE_FIRST;
    if (row >= std::size(shownColors)) {
        return brush;
    }
    dc->SetTextColor(ColorOf(choices, row));
    dc->SetBkColor(::GetSysColor(COLOR_WINDOW));
    return ::GetSysColorBrush(COLOR_WINDOW);
}

// Font

BEGIN_MESSAGE_MAP(FontPage, OptionPage)
    ON_BN_CLICKED(IDC_FONT_CHOOSE, &FontPage::OnChoose)
    ON_BN_CLICKED(IDC_FONT_USUAL, &FontPage::OnUsual)
END_MESSAGE_MAP()

FontPage::FontPage(ConsoleChoices& edited) : OptionPage(IDD_OPTIONS_FONT, edited) {}

void FontPage::Exchange(CDataExchange& exchange)
{
    if (!exchange.m_bSaveAndValidate) {
        Show();
    }
}

void FontPage::Show()
{
    LOGFONT font{};
    if (!ParseFont(choices.font, font)) {
        font = ConsoleView::GetUsualFont();
    }
    const CClientDC screen(nullptr);
    const int points = ::MulDiv(-font.lfHeight, 72, screen.GetDeviceCaps(LOGPIXELSY));
    const wchar_t* const face = font.lfFaceName;
    const std::wstring name = FormatText(IDS_FONT_NAME, face, points);
    GetDlgItem(IDC_FONT_NAME)->SetWindowText(name.c_str());
    auto next = std::make_unique<CFont>();
    if (next->CreateFontIndirect(&font)) {
        GetDlgItem(IDC_FONT_SAMPLE)->SetFont(next.get());
        sample = std::move(next);
    }
}

void FontPage::OnChoose()
{
    LOGFONT font{};
    if (!ParseFont(choices.font, font)) {
        font = ConsoleView::GetUsualFont();
    }
    CFontDialog dialog(&font, CF_SCREENFONTS | CF_FIXEDPITCHONLY | CF_INITTOLOGFONTSTRUCT, nullptr,
                       this);
    if (dialog.DoModal() == IDOK) {
        dialog.GetCurrentFont(&font);
        choices.font = FormatFont(font);
        Show();
    }
}

void FontPage::OnUsual()
{
    choices.font.clear();
    Show();
}

// Find

SearchPage::SearchPage(ConsoleChoices& edited) : OptionPage(IDD_OPTIONS_FIND, edited) {}

void SearchPage::Exchange(CDataExchange& exchange)
{
    ExchangeCheck(exchange, IDC_WRAPS_AROUND, choices.wrapsAround);
    ExchangeCheck(exchange, IDC_WHILE_TYPING, choices.findsWhileTyping);
    ExchangeCheck(exchange, IDC_MATCHES_CASE, choices.matchesCase);
    ExchangeCheck(exchange, IDC_MATCHES_WORDS, choices.matchesWords);
}

// Connection

ConnectionPage::ConnectionPage(ConsoleChoices& edited) : OptionPage(IDD_OPTIONS_CONNECTION, edited)
{}

void ConnectionPage::Exchange(CDataExchange& exchange)
{
    ExchangeRadio(exchange, IDC_LINE_END_CRLF, choices.lineEnd);
    ExchangeCheck(exchange, IDC_SHOWS_SENT, choices.showsSent);
}

// TLS versions

TlsPage::TlsPage(ConsoleChoices& edited) : OptionPage(IDD_OPTIONS_TLS, edited) {}

BOOL TlsPage::OnInitDialog()
{
    versions.SetMask(choices.tlsVersions);
    plugin = YTlsVersionsPlugin::Create(this, IDC_TLS_VERSIONS, &versions);
    return OptionPage::OnInitDialog();
}

// The list's changes go to the plug-in, so that the page sees them only now.
BOOL TlsPage::OnKillActive()
{
    if ((plugin && !plugin->SavePageData()) || !OptionPage::OnKillActive()) {
        return FALSE;
    }
    if (choices.tlsVersions != versions.GetMask()) {
        choices.tlsVersions = versions.GetMask();
        OnChange();
    }
    return TRUE;
}

// Certificate

BEGIN_MESSAGE_MAP(CertificatePage, OptionPage)
    ON_BN_CLICKED(IDC_CERTIFICATE_CREATE, &CertificatePage::OnCreateCertificate)
    ON_BN_CLICKED(IDC_CERTIFICATE_BROWSE, &CertificatePage::OnBrowse)
    ON_CONTROL(EN_KILLFOCUS, IDC_CERTIFICATE, &CertificatePage::OnPathLeft)
END_MESSAGE_MAP()

CertificatePage::CertificatePage(ConsoleChoices& edited, ConsoleSettings& remembered)
    : OptionPage(IDD_OPTIONS_CERTIFICATE, edited), settings(remembered)
{}

void CertificatePage::Exchange(CDataExchange& exchange)
{
    ExchangeText(exchange, IDC_CERTIFICATE, MAX_PATH, choices.certificate);
    YDDV_ValidateCertificatePath(&exchange, choices.certificate.c_str());
    if (!exchange.m_bSaveAndValidate) {
        OnPathLeft();
    }
}

void CertificatePage::OnPathLeft()
{
    CString file;
    GetDlgItem(IDC_CERTIFICATE)->GetWindowText(file);
    GetDlgItem(IDC_CERTIFICATE_DETAILS)
        ->SetWindowText(DescribeCertificate(file.GetString()).c_str());
}

void CertificatePage::ShowFile(const wchar_t* file)
{
    GetDlgItem(IDC_CERTIFICATE)->SetWindowText(file);
    OnPathLeft();
}

// For this program as a client, with a request for an authority.
void CertificatePage::OnCreateCertificate()
{
    constexpr std::uint8_t flags =
        YCertificateParameters::clientFlag | YCertificateParameters::requestFlag;
    CreateCertificateDialog dialog(L"Console", SslLib::OpenSsl, flags,
                                   &settings.GetCertificatePlacement(), this);
    if (dialog.DoModal() == IDOK) {
        ShowFile(dialog.GetPath().c_str());
    }
}

void CertificatePage::OnBrowse()
{
    YUnicodeString file;
    if (BrowseForCertificateFile(this, LoadText(IDS_CERTIFICATE_FILE).c_str(), file)) {
        ShowFile(file.c_str());
    }
}

// Log

BEGIN_MESSAGE_MAP(LogPage, OptionPage)
    ON_BN_CLICKED(IDC_LOG_BROWSE, &LogPage::OnBrowse)
END_MESSAGE_MAP()

LogPage::LogPage(ConsoleChoices& edited) : OptionPage(IDD_OPTIONS_LOG, edited) {}

LogPage* LogPage::shown = nullptr;

BOOL LogPage::OnInitDialog()
{
    shown = this;
    CRect caption;
    GetDlgItem(IDC_LOG_COLUMN)->GetWindowRect(&caption);
    kinds.Create(WS_VISIBLE, this, IDC_LOG_KINDS, &LogPage::OnKindsChange);
    kinds.SetRadioStyle(false);
    kinds.AddCheckColumn(caption.left);
    for (const LoggedKind& kind : loggedKinds) {
        kinds.AddItem(LoadText(kind.textId).c_str());
    }
    return OptionPage::OnInitDialog();
}

void LogPage::OnKindsChange()
{
    shown->OnChange();
}

void LogPage::Exchange(CDataExchange& exchange)
{
    ExchangeCheck(exchange, IDC_LOGS, choices.logs);
    for (int row = 0; row < kinds.GetCount(); ++row) {
        bool& choice = choices.*loggedKinds[row].choice;
        if (exchange.m_bSaveAndValidate) {
            choice = kinds.GetCheckState(row, 0) > 0;
        } else {
            kinds.SetCheckState(row, 0, choice ? 1 : 0);
        }
    }
    ExchangeText(exchange, IDC_LOG_FOLDER, MAX_PATH, choices.logFolder);
    if (!exchange.m_bSaveAndValidate || !choices.logs) {
        return;
    }
    const DWORD attributes = ::GetFileAttributesW(choices.logFolder.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        const YReportMessageParams message(CONSOLE_NO_LOG_FOLDER, ::AfxGetInstanceHandle());
        YMessageBox(this, &message);
        exchange.Fail();
    }
}

void LogPage::OnBrowse()
{
    YReportMessageParams error;
    if (!OnBrowseLocalFolderHelper(this, GetDlgItem(IDC_LOG_FOLDER),
                                   LoadText(IDS_LOG_FOLDER).c_str(), error, nullptr, nullptr) &&
        error.GetMessageId() != 0) {
        YMessageBox(this, &error);
    }
}

// Files

FilesPage::FilesPage(ConsoleChoices& edited) : OptionPage(IDD_OPTIONS_FILES, edited) {}

BOOL FilesPage::OnInitDialog()
{
    auto& list = static_cast<CComboBox&>(*GetDlgItem(IDC_CODE_PAGE));
    for (const UINT codePage : codePages) {
        if (IsOffered(codePage)) {
            list.SetItemData(list.AddString(NameCodePage(codePage).c_str()), codePage);
        }
    }
    return OptionPage::OnInitDialog();
}

// A code page that is not offered, from settings of another machine, stays as it is until another is
// chosen.
void FilesPage::Exchange(CDataExchange& exchange)
{
    ExchangeCheck(exchange, IDC_FOLLOWS, choices.follows);
    ExchangeNumber(exchange, IDC_TAB_WIDTH, 1, ConsoleChoices::mostColumnsPerTab, choices.tabWidth);
    const auto& list = static_cast<const CComboBox&>(*GetDlgItem(IDC_CODE_PAGE));
    int index = 0;
    while (index < list.GetCount() && list.GetItemData(index) != choices.codePage) {
        ++index;
    }
    DDX_CBIndex(&exchange, IDC_CODE_PAGE, index);
    if (exchange.m_bSaveAndValidate && index >= 0) {
        choices.codePage = list.GetItemData(index);
    }
}

// Recent files and hosts

BEGIN_MESSAGE_MAP(RecentPage, OptionPage)
    ON_BN_CLICKED(IDC_FORGET, &RecentPage::OnForget)
END_MESSAGE_MAP()

RecentPage::RecentPage(ConsoleChoices& edited) : OptionPage(IDD_OPTIONS_RECENT, edited) {}

void RecentPage::Exchange(CDataExchange& exchange)
{
    ExchangeCheck(exchange, IDC_REMEMBERS, choices.remembers);
}

// At once, as the page says.
void RecentPage::OnForget()
{
    settings->ForgetRecent();
    GetDlgItem(IDC_REMEMBERS)->SetFocus();
    GetDlgItem(IDC_FORGET)->EnableWindow(FALSE);
}
