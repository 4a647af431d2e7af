#include "SessionDialog.h"

#include "ConsoleMessages.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "DialogText.h"
#include "LoginDialog.h"
#include "resource.h"

#include <iterator>

namespace {

constexpr WPARAM longestName = 100;  // characters
constexpr WPARAM longestHost = 1'024;
constexpr WPARAM longestPort = 5;
constexpr WPARAM longestLine = 4'096;

struct OptionText
{
    unsigned option;
    UINT textId;
};

constexpr OptionText optionTexts[] = {
    {Session::showsSent, IDS_SESSION_SHOWS_SENT},
    {Session::logs, IDS_SESSION_LOGS},
    {Session::atStart, IDS_SESSION_AT_START},
};

struct LineEndText
{
    const char* value;  // the number of the line end
    UINT textId;
};

constexpr LineEndText lineEndTexts[] = {
    {"", IDS_LINE_END_USUAL},
    {"0", IDS_LINE_END_CRLF},
    {"1", IDS_LINE_END_LF},
    {"2", IDS_LINE_END_CR},
};

}  // namespace

BEGIN_MESSAGE_MAP(SessionDialog, CDialog)
    ON_BN_CLICKED(IDC_SESSION_LOGIN, &SessionDialog::OnLogin)
    ON_BN_CLICKED(IDC_SESSION_ADD_LINE, &SessionDialog::OnAddLine)
    ON_BN_CLICKED(IDC_SESSION_REMOVE_LINE, &SessionDialog::OnRemoveLine)
    ON_EN_CHANGE(IDC_SESSION_LINE, &SessionDialog::OnLineChange)
    ON_NOTIFY(LVN_ITEMCHANGED, IDC_SESSION_OPTIONS, &SessionDialog::OnOptionChange)
    ON_NOTIFY(LVN_ITEMCHANGED, IDC_SESSION_LINES, &SessionDialog::OnLineSelected)
END_MESSAGE_MAP()

SessionDialog::SessionDialog(Session& edited, const Session* replaced, ConsoleSettings& remembered,
                             CWnd* parent)
    : CDialog(IDD_SESSION, parent),
      result(edited),
      session(edited),
      replacedSession(replaced),
      settings(remembered),
      options(L"Session Options", nullptr)
{}

void SessionDialog::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_SESSION_LINE_END, lineEnds);
    DDX_Control(exchange, IDC_SESSION_OPTIONS, options);
    DDX_Control(exchange, IDC_SESSION_LOGS_IN, logsIn);
    DDX_Control(exchange, IDC_SESSION_LINE, line);
    DDX_Control(exchange, IDC_SESSION_LINES, lines);
}

BOOL SessionDialog::OnInitDialog()
{
    const BOOL setsFocus = CDialog::OnInitDialog();
    SetWindowText(LoadText(replacedSession ? IDS_SESSION_EDIT : IDS_SESSION_ADD).c_str());
    ::SendDlgItemMessageW(m_hWnd, IDC_SESSION_NAME, EM_LIMITTEXT, longestName, 0);
    ::SendDlgItemMessageW(m_hWnd, IDC_SESSION_HOST, EM_LIMITTEXT, longestHost, 0);
    ::SendDlgItemMessageW(m_hWnd, IDC_SESSION_PORT, EM_LIMITTEXT, longestPort, 0);
    ::SendDlgItemMessageW(m_hWnd, IDC_SESSION_LINE, EM_LIMITTEXT, longestLine, 0);
    GetDlgItem(IDC_SESSION_NAME)->SetWindowText(session.name.c_str());
    GetDlgItem(IDC_SESSION_HOST)->SetWindowText(session.peer.host.c_str());
    ::SetDlgItemInt(m_hWnd, IDC_SESSION_PORT, session.peer.port, FALSE);
    line.SetAllowNewLines(false);
    logsIn.Init(session.logsIn, this, nullptr, {IDC_SESSION_LOGIN});
    FillLineEnds();
    FillOptions();
    FillLines();
    EnableLineButtons();
    return setsFocus;
}

void SessionDialog::FillLineEnds()
{
    for (const auto& [value, textId] : lineEndTexts) {
        lineEnds.AddItem(YUnicodeString(LoadText(textId)), value);
    }
    const std::size_t shown = session.lineEnd ? static_cast<std::size_t>(*session.lineEnd) + 1 : 0;
    lineEnds.SetCurrentValue(lineEndTexts[shown].value);
}

void SessionDialog::FillOptions()
{
    options.SetSink(this);
    options.Init({ColumnInfoRatio{YUnicodeString(), 1.0, LVCFMT_LEFT}}, 0, false);
    for (const OptionText& text : optionTexts) {
        options.AddItem(text.option);
    }
}

void SessionDialog::FillLines()
{
    lines.Init();
    for (const std::wstring& text : session.lines) {
        lines.AddString(text.c_str());
    }
}

void SessionDialog::GetItemColumns(unsigned long option, std::vector<YUnicodeString>& columns)
{
    for (const OptionText& text : optionTexts) {
        if (text.option == option) {
            columns.emplace_back(LoadText(text.textId));
        }
    }
}

void SessionDialog::OnOptionChange(NMHDR* header, LRESULT*)
{
    options.OnItemChanged(reinterpret_cast<const NMLISTVIEW*>(header)->iItem);
}

void SessionDialog::OnItemCheckChanged(unsigned long option, bool checked)
{
    session.options = checked ? session.options | option : session.options & ~option;
}

void SessionDialog::OnLogin()
{
    LoginDialog(session.user, session.password, this).DoModal();
}

// The lines that are sent

void SessionDialog::OnLineChange()
{
    EnableLineButtons();
}

void SessionDialog::OnLineSelected(NMHDR*, LRESULT*)
{
    EnableLineButtons();
}

// The focus does not stay on a button that can no longer be pressed.
void SessionDialog::EnableLineButtons()
{
    CWnd& add = *GetDlgItem(IDC_SESSION_ADD_LINE);
    CWnd& remove = *GetDlgItem(IDC_SESSION_REMOVE_LINE);
    const bool isTyped = line.GetWindowTextLength() > 0;
    const bool isSelected = lines.GetCurSel() >= 0;
    const HWND focus = ::GetFocus();
    if ((!isTyped && focus == add.GetSafeHwnd()) ||
        (!isSelected && focus == remove.GetSafeHwnd())) {
        GotoDlgCtrl(&line);
    }
    add.EnableWindow(isTyped);
    remove.EnableWindow(isSelected);
}

void SessionDialog::OnAddLine()
{
    CString text;
    line.GetWindowText(text);
    lines.SetCurSel(lines.AddString(text));
    line.SetWindowText(L"");
    GotoDlgCtrl(&line);
}

void SessionDialog::OnRemoveLine()
{
    const int removed = lines.GetCurSel();
    if (removed >= 0) {
        lines.DeleteString(removed);
        lines.SetCurSel(std::min(removed, lines.GetCount() - 1));
        EnableLineButtons();
    }
}

// The end

// Return in the field of a line means that line. One that was typed and not added is meant as well.
void SessionDialog::OnOK()
{
    const bool isTyped = line.GetWindowTextLength() > 0;
    if (isTyped) {
        const bool isInField = ::GetFocus() == line.GetSafeHwnd();
        OnAddLine();
        if (isInField) {
            return;
        }
    }
    session.logsIn = logsIn.IsChecked();
    if (!TakeNameAndPeer() || !MayLogAndLogIn()) {
        return;
    }
    const YString end = lineEnds.GetCurrentValue();
    session.lineEnd.reset();
    if (end.GetLength() > 0) {
        session.lineEnd = static_cast<LineEnd>(end[0] - '0');
    }
    session.lines.clear();
    for (int i = 0; i < lines.GetCount(); ++i) {
        session.lines.emplace_back(lines.GetText(i).GetString());
    }
    result = session;
    CDialog::OnOK();
}

// False, here and below: the user has been told what is missing.
bool SessionDialog::TakeNameAndPeer()
{
    session.name = GetTrimmedText(m_hWnd, IDC_SESSION_NAME);
    session.peer.host = GetTrimmedText(m_hWnd, IDC_SESSION_HOST);
    const Session* const namesake = settings.GetSessions().FindByName(session.name);
    if (session.name.empty()) {
        Complain(m_hWnd, CONSOLE_NO_SESSION_NAME, IDC_SESSION_NAME);
    } else if (namesake && namesake != replacedSession) {
        Complain(m_hWnd, CONSOLE_SESSION_EXISTS, IDC_SESSION_NAME, session.name.c_str());
    } else if (session.peer.host.empty()) {
        Complain(m_hWnd, CONSOLE_NO_HOST, IDC_SESSION_HOST);
    } else if (!ParsePort(GetTrimmedText(m_hWnd, IDC_SESSION_PORT).c_str(), session.peer.port)) {
        Complain(m_hWnd, CONSOLE_WRONG_PORT, IDC_SESSION_PORT);
    } else {
        return true;
    }
    return false;
}

bool SessionDialog::MayLogAndLogIn()
{
    if (session.logsIn && session.user.empty()) {
        Complain(m_hWnd, CONSOLE_NO_LOGIN, IDC_SESSION_LOGIN);
        return false;
    }
    if ((session.options & Session::logs) != 0 && settings.GetChoices().logFolder.empty()) {
        Complain(m_hWnd, CONSOLE_NO_SESSION_LOG_FOLDER, IDC_SESSION_OPTIONS);
        return false;
    }
    return true;
}
