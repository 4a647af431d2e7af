#include "SessionDialog.h"

#include "ConsoleMessages.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "LoginDialog.h"
#include "Session.h"
#include "resource.h"

#include <YMessageBox.h>
#include <YReportMessageParams.h>
#include <controls/ICheckBoxListCtrlHelper.h>
#include <controls/YCheckBoxListCtrl.h>
#include <controls/YControllingCheckBox.h>
#include <controls/YMultiLineEdit.h>
#include <controls/YStringComboBox.h>

#include <iterator>

namespace {

constexpr int longestText = 256;  // characters
constexpr int longestHost = 1'024;
constexpr int longestPort = 5;
constexpr int longestLines = 4'096;

struct Option
{
    UINT textId;
    bool Session::*flag;
};

// The rows of the list of options; a row's value is its place here and 1, as 0 is nothing.
constexpr Option options[] = {
    {IDS_OPTION_LOGS, &Session::logs},
    {IDS_OPTION_SHOWS_SENT, &Session::showsSent},
    {IDS_OPTION_AT_START, &Session::connectsAtStart},
};

struct LineEndText
{
    UINT textId;
    unsigned lineEnd;
};

constexpr LineEndText lineEnds[] = {
    {IDS_LINE_END_OPTIONS, Session::lineEndAsInOptions},
    {IDS_LINE_END_CRLF, static_cast<unsigned>(LineEnd::CrLf)},
    {IDS_LINE_END_LF, static_cast<unsigned>(LineEnd::Lf)},
    {IDS_LINE_END_CR, static_cast<unsigned>(LineEnd::Cr)},
};

YString ValueOf(unsigned lineEnd)
{
    return YString(std::to_string(lineEnd));
}

class SessionDialog : public CDialog, private ICheckBoxListCtrlHelper
{
public:
    SessionDialog(ConsoleSettings& settings, CWnd& parent, Session& asked, bool isNew)
        : CDialog(IDD_SESSION, &parent),
          session(asked),
          edited(asked),
          adds(isNew),
          list(L"Session Options", &settings.GetColumnWidths())
    {
        list.SetSink(this);
    }

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;
    void OnOK() override;

    afx_msg void OnLogin();
    afx_msg void OnItemChanged(NMHDR* header, LRESULT*)
    {
        list.OnItemChanged(reinterpret_cast<const NMLISTVIEW*>(header)->iItem);
    }
    DECLARE_MESSAGE_MAP()

private:
    void GetItemColumns(unsigned long data, std::vector<YUnicodeString>& columns) override
    {
        columns.emplace_back(LoadText(options[data - 1].textId).c_str());
    }
    void ReleaseItemData(unsigned long) override {}
    bool IsItemChecked(unsigned long data) override { return edited.*options[data - 1].flag; }
    void OnItemCheckChanged(unsigned long data, bool checked) override
    {
        edited.*options[data - 1].flag = checked;
    }

    void ExchangeText(CDataExchange& exchange, int id, int longest, std::wstring& text);
    [[noreturn]] void Complain(CDataExchange& exchange, unsigned messageId, int controlId);
    void ShowUser();

    Session& session;
    Session edited;
    bool adds;
    YCheckBoxListCtrl list;
    YStringComboBox lineEnd;
    YControllingCheckBox logsIn;
    YMultiLineEdit note;
};

BEGIN_MESSAGE_MAP(SessionDialog, CDialog)
    ON_BN_CLICKED(IDC_LOGIN, &SessionDialog::OnLogin)
    ON_NOTIFY(LVN_ITEMCHANGED, IDC_SESSION_OPTIONS, &SessionDialog::OnItemChanged)
END_MESSAGE_MAP()

void SessionDialog::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_SESSION_NOTE, note);
    DDX_Control(exchange, IDC_SESSION_LINE_END, lineEnd);
    DDX_Control(exchange, IDC_LOGS_IN, logsIn);
    DDX_Control(exchange, IDC_SESSION_OPTIONS, list);
    ExchangeText(*exchange, IDC_SESSION_NAME, longestText, edited.name);
    if (exchange->m_bSaveAndValidate && edited.name.empty()) {
        Complain(*exchange, CONSOLE_NO_SESSION_NAME, IDC_SESSION_NAME);
    }
    ExchangeText(*exchange, IDC_SESSION_HOST, longestHost, edited.peer.host);
    if (exchange->m_bSaveAndValidate && edited.peer.host.empty()) {
        Complain(*exchange, CONSOLE_NO_HOST, IDC_SESSION_HOST);
    }
    std::wstring port = std::to_wstring(edited.peer.port);
    ExchangeText(*exchange, IDC_SESSION_PORT, longestPort, port);
    if (exchange->m_bSaveAndValidate && !ParsePort(port.c_str(), edited.peer.port)) {
        Complain(*exchange, CONSOLE_WRONG_PORT, IDC_SESSION_PORT);
    }
    ExchangeText(*exchange, IDC_SESSION_NOTE, longestText, edited.note);
    ExchangeText(*exchange, IDC_FIRST_LINES, longestLines, edited.firstLines);
}

void SessionDialog::ExchangeText(CDataExchange& exchange, int id, int longest, std::wstring& text)
{
    CString shown(text.c_str());
    DDX_Text(&exchange, id, shown);
    DDV_MaxChars(&exchange, shown, longest);
    shown.Trim();
    text = shown.GetString();
}

void SessionDialog::Complain(CDataExchange& exchange, unsigned messageId, int controlId)
{
    const YReportMessageParams message(messageId, ::AfxGetInstanceHandle());
    YMessageBox(this, &message);
    exchange.PrepareEditCtrl(controlId);
    exchange.Fail();
}

BOOL SessionDialog::OnInitDialog()
{
    const BOOL setsFocus = CDialog::OnInitDialog();
    SetWindowText(LoadText(adds ? IDS_NEW_SESSION : IDS_EDIT_SESSION).c_str());
    note.SetAllowNewLines(false);
    for (const LineEndText& each : lineEnds) {
        lineEnd.AddItem(YUnicodeString(LoadText(each.textId)), ValueOf(each.lineEnd));
    }
    lineEnd.SetCurrentValue(ValueOf(edited.lineEnd));
    logsIn.Init(edited.logsIn, this, nullptr, {IDC_LOGIN, IDC_LOGIN_USER});
    list.Init({ColumnInfoExact{L"", -1, LVCFMT_LEFT}}, 0);
    for (unsigned long data = 1; data <= std::size(options); ++data) {
        list.AddItem(data);
    }
    list.SelectAndShowFirstItem();
    ShowUser();
    return setsFocus;
}

void SessionDialog::ShowUser()
{
    GetDlgItem(IDC_LOGIN_USER)
        ->SetWindowText(edited.user.empty() ? LoadText(IDS_NO_USER).c_str() : edited.user.c_str());
}

void SessionDialog::OnLogin()
{
    if (EditLogin(*this, edited)) {
        ShowUser();
    }
}

void SessionDialog::OnOK()
{
    if (!UpdateData(TRUE)) {
        return;
    }
    edited.logsIn = logsIn.IsChecked();
    edited.lineEnd = static_cast<unsigned>(std::stoul(lineEnd.GetCurrentValue().c_str()));
    list.SaveGuiSettings();
    session = edited;
    EndDialog(IDOK);
}

}  // namespace

bool EditSession(ConsoleSettings& settings, CWnd& parent, Session& session, bool isNew)
{
    return SessionDialog(settings, parent, session, isNew).DoModal() == IDOK;
}

bool EditLogin(CWnd& parent, Session& session)
{
    return LoginDialog(parent, session).DoModal() == IDOK;
}
