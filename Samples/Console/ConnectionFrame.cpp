#include "ConnectionFrame.h"

#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "ConsoleView.h"
#include "MainFrame.h"
#include "resource.h"

#include <YMessageBox.h>
#include <afxdlgs.h>

#include <new>

namespace {

constexpr UINT indicators[] = {ID_SEPARATOR, ID_INDICATOR_LOG, ID_INDICATOR_RECEIVED};
constexpr int inputMargin = 2;  // pixels between the line's text and its border, above and below

UINT GetStateText(ConnectionState state)
{
    switch (state) {
    case ConnectionState::Resolving: return IDS_CONNECTION_RESOLVING;
    case ConnectionState::Connecting: return IDS_CONNECTION_CONNECTING;
    case ConnectionState::Connected: return IDS_CONNECTION_CONNECTED;
    case ConnectionState::Closing: return IDS_CONNECTION_CLOSING;
    case ConnectionState::EndedByUs: return IDS_CONNECTION_ENDED_BY_US;
    case ConnectionState::EndedByPeer: return IDS_CONNECTION_ENDED_BY_PEER;
    case ConnectionState::Idle:
    case ConnectionState::Failed: break;
    }
    return IDS_CONNECTION_NONE;
}

}  // namespace

BEGIN_MESSAGE_MAP(ConnectionFrame, ConsoleFrame)
    ON_WM_CREATE()
    ON_WM_DESTROY()
    ON_WM_ACTIVATE()
    ON_WM_SETFOCUS()
    ON_COMMAND(ID_CONNECTION_DISCONNECT, &ConnectionFrame::OnDisconnect)
    ON_COMMAND(ID_CONNECTION_RECONNECT, &ConnectionFrame::OnReconnect)
    ON_COMMAND(ID_CONNECTION_LOG, &ConnectionFrame::OnLog)
    ON_COMMAND(ID_CONNECTION_CLOSE, &ConnectionFrame::OnCloseWindow)
    ON_COMMAND(ID_CONNECTION_SEND, &ConnectionFrame::OnSend)
    ON_COMMAND(ID_EDIT_COPY, &ConnectionFrame::OnEditCopy)
    ON_COMMAND(ID_EDIT_PASTE, &ConnectionFrame::OnEditPaste)
    ON_COMMAND(ID_EDIT_SELECT_ALL, &ConnectionFrame::OnEditSelectAll)
    ON_COMMAND(ID_VIEW_FONT, &ConnectionFrame::OnViewFont)
    ON_UPDATE_COMMAND_UI(ID_CONNECTION_DISCONNECT, &ConnectionFrame::OnUpdateDisconnect)
    ON_UPDATE_COMMAND_UI(ID_CONNECTION_LOG, &ConnectionFrame::OnUpdateLog)
    ON_UPDATE_COMMAND_UI(ID_EDIT_COPY, &ConnectionFrame::OnUpdateCopy)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_RECEIVED, &ConnectionFrame::OnUpdateReceived)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_LOG, &ConnectionFrame::OnUpdateLogPane)
END_MESSAGE_MAP()

// The window

ConnectionFrame::ConnectionFrame(ConsoleSettings& remembered)
    : ConsoleFrame(remembered),
      connection(YUnknownPointer<Connection>::Make(static_cast<ConnectionObserver&>(*this)))
{}

ConnectionFrame::~ConnectionFrame()
{
    connection->Abandon();  // the window may never have been made
}

ConnectionFrame* ConnectionFrame::Open(ConsoleSettings& settings, const Peer& peer, int show)
{
    auto* const frame = new ConnectionFrame(settings);  // deletes itself with its window
    if (!frame->Make(show)) {
        return nullptr;
    }
    frame->Connect(peer);
    return frame;
}

ConnectionFrame* ConnectionFrame::Open(ConsoleSettings& settings, const Session& session, int show)
{
    auto* const frame = new ConnectionFrame(settings);  // deletes itself with its window
    frame->saved = session;
    if (!frame->Make(show)) {
        return nullptr;
    }
    frame->Connect(session.peer);
    return frame;
}

bool ConnectionFrame::Make(int show)
{
    if (!LoadFrame(IDR_CONNECTION)) {
        return false;
    }
    ApplyLook(GetSettings().GetChoices().outlines);
    ShowInputFont();
    view->SetLineLimit(GetSettings().GetLineLimit());
    InitialUpdateFrame(nullptr, FALSE);
    ActivateFrame(show);
    return true;
}

int ConnectionFrame::OnCreate(CREATESTRUCT* create)
{
    if (ConsoleFrame::OnCreate(create) == -1 || !input.CreateIn(this, IDC_INPUT, view) ||
        !statusBar.Create(this) || !statusBar.SetIndicators(indicators, std::size(indicators))) {
        return -1;
    }
    SetMessageText(static_cast<UINT>(AFX_IDS_IDLEMESSAGE));
    RecalcLayout();
    return 0;
}

BOOL ConnectionFrame::OnCreateClient(LPCREATESTRUCT, CCreateContext*)
{
    CCreateContext context;
    context.m_pNewViewClass = RUNTIME_CLASS(ConsoleView);
    view = static_cast<ConsoleView*>(CreateView(&context, AFX_IDW_PANE_FIRST));
    return view != nullptr;
}

void ConnectionFrame::OnDestroy()
{
    connection->Abandon();
    ConsoleFrame::OnDestroy();
}

// The input line takes its height from what the bars leave, the view has the rest.
void ConnectionFrame::RecalcLayout(BOOL)
{
    if (laysOut || !input.GetSafeHwnd()) {
        return;  // a window that moves may bring on a WM_SIZE
    }
    laysOut = true;
    constexpr UINT noPane = 0;
    CRect rest;
    RepositionBars(0, 0xFFFF, noPane);
    RepositionBars(0, 0xFFFF, noPane, reposQuery, &rest);
    const int height = GetInputHeight();
    input.MoveWindow(rest.left, rest.bottom - height, rest.Width(), height);
    rest.bottom -= height;
    view->MoveWindow(&rest);
    laysOut = false;
}

int ConnectionFrame::GetInputHeight() const
{
    return view->GetCharacterHeight() + 2 * (inputMargin + ::GetSystemMetrics(SM_CYEDGE));
}

void ConnectionFrame::ShowInputFont()
{
    auto next = std::make_unique<CFont>();
    const LOGFONT font = view->GetShownFont();
    if (next->CreateFontIndirect(&font)) {
        input.SetFont(next.get());
        inputFont = std::move(next);
        RecalcLayout();
    }
}

// Whoever comes back wants to type; the keys of the view work from there, too.
void ConnectionFrame::OnActivate(UINT state, CWnd* other, BOOL minimized)
{
    ConsoleFrame::OnActivate(state, other, minimized);
    if (state != WA_INACTIVE && !minimized) {
        input.SetFocus();
    }
}

void ConnectionFrame::OnSetFocus(CWnd*)
{
    input.SetFocus();
}

// What is typed while the view has the focus belongs into the line as well.
BOOL ConnectionFrame::PreTranslateMessage(MSG* message)
{
    if (message->message == WM_CHAR && view && message->hwnd == view->GetSafeHwnd() &&
        message->wParam >= L' ') {
        input.SetFocus();
        message->hwnd = input.GetSafeHwnd();
    }
    return ConsoleFrame::PreTranslateMessage(message);
}

void ConnectionFrame::GetMessageString(UINT id, CString& message) const
{
    if (id == AFX_IDS_IDLEMESSAGE) {
        message = DescribeState().c_str();
    } else {
        ConsoleFrame::GetMessageString(id, message);
    }
}

// The connection

void ConnectionFrame::Connect(const Peer& peer)
{
    GetSettings().SetPeer(peer);
    SetWindowText(((saved ? saved->name : ToText(peer)) + L" - Console").c_str());
    ShowAddress(ToText(peer));
    ApplyToConnection();
    connection->Connect(peer);
    StartLog();
}

bool ConnectionFrame::HasOption(unsigned option, bool usual) const
{
    return saved ? (saved->options & option) != 0 : usual;
}

void ConnectionFrame::ApplyToConnection()
{
    const ConsoleChoices& choices = GetSettings().GetChoices();
    const auto usual = static_cast<LineEnd>(choices.lineEnd);
    connection->SetLineEnd(saved ? saved->lineEnd.value_or(usual) : usual);
    connection->SetLoggingSent(choices.logsSent);
    connection->SetShowingSent(HasOption(Session::showsSent, choices.showsSent));
}

// Unasked by the peer, which reads it in its own time. The password goes past the lines that are shown
// and past the log, which has what the peer sends: whether it is there is up to the peer's echo.
void ConnectionFrame::LogIn()
{
    if (!saved) {
        return;
    }
    if (saved->logsIn) {
        const YUnicodeString password = saved->password.Get();
        if (password.IsEmpty() && !saved->password.IsEmpty()) {
            ShowNotice(LoadText(IDS_PASSWORD_UNREADABLE));
            return;
        }
        connection->Send(saved->user);
        connection->SendSecret(password);
    }
    for (const std::wstring& line : saved->lines) {
        connection->Send(line);
    }
}

// Where this connection, or every one, is to be logged. What cannot be written is told among the lines.
void ConnectionFrame::StartLog()
{
    const ConsoleChoices& choices = GetSettings().GetChoices();
    SessionLog& log = connection->GetLog();
    YReportMessageParams error;
    const bool isWanted = choices.logs || HasOption(Session::logs, false);
    if (isWanted && connection->IsOpen() && !log.IsRunning() &&
        !log.Start(MakeLogPath(choices.logFolder, connection->GetPeer()), error)) {
        ShowNotice(error.GetTrimmedTextSingleLine());
    }
    UpdatePanes();
}

void ConnectionFrame::ApplyChoices(const ConsoleChoices& before)
{
    const ConsoleChoices& now = GetSettings().GetChoices();
    ConsoleFrame::ApplyChoices(before);
    if (now.font != before.font) {
        ShowInputFont();
    }
    try {
        if (now.lineLimit != before.lineLimit) {
            view->SetLineLimit(GetSettings().GetLineLimit());
        }
    } catch (const std::bad_alloc&) {
        ShowError(this, ERROR_NOT_ENOUGH_MEMORY);
    }
    ApplyToConnection();
    if (now.logs && !before.logs) {
        StartLog();
    }
}

void ConnectionFrame::OnLines(const LineBatch& lines, bool endsUnfinished)
{
    view->ShowLines(lines.GetLines(), lines.GetCount(), endsUnfinished);
    UpdatePanes();
}

void ConnectionFrame::OnStateChange()
{
    SetMessageText(static_cast<UINT>(AFX_IDS_IDLEMESSAGE));
    UpdatePanes();
    switch (connection->GetState()) {
    case ConnectionState::Idle:
    case ConnectionState::Resolving:
    case ConnectionState::Connecting:
    case ConnectionState::Closing: break;  // until something comes of it
    case ConnectionState::Connected:
        ShowNotice(DescribeState());
        LogIn();
        break;
    case ConnectionState::EndedByUs:
    case ConnectionState::EndedByPeer:
    case ConnectionState::Failed: ShowNotice(DescribeState()); break;
    }
}

void ConnectionFrame::OnLogStop(const YReportMessageParams& error)
{
    ShowNotice(error.GetTrimmedTextSingleLine());
    UpdatePanes();
}

// Idle time, which does it otherwise, does not come while a fast peer sends.
void ConnectionFrame::UpdatePanes()
{
    statusBar.SendMessage(WM_IDLEUPDATECMDUI, TRUE);
}

std::wstring ConnectionFrame::DescribeState() const
{
    if (connection->GetState() == ConnectionState::Failed) {
        return connection->GetError().GetTrimmedTextSingleLine();
    }
    const Peer& peer = connection->GetPeer();
    const std::wstring port = std::to_wstring(peer.port);
    return FormatText(GetStateText(connection->GetState()), peer.host.c_str(), port.c_str());
}

void ConnectionFrame::ShowNotice(const std::wstring& text)
{
    const std::wstring notice = FormatText(IDS_NOTICE, text.c_str());
    view->ShowNotice(notice.c_str());
    if (GetSettings().GetChoices().logsNotices) {
        connection->LogNotice(notice);
    }
}

// Commands

void ConnectionFrame::OpenFile(const std::wstring& path)
{
    MainFrame::OpenFile(GetSettings(), path);
}

void ConnectionFrame::OnDisconnect()
{
    connection->Disconnect();
}

void ConnectionFrame::OnReconnect()
{
    Connect(connection->GetPeer());
}

void ConnectionFrame::OnLog()
{
    SessionLog& log = connection->GetLog();
    if (log.IsRunning()) {
        log.Stop();
        UpdatePanes();
        return;
    }
    CFileDialog dialog(FALSE, L"log", nullptr, OFN_HIDEREADONLY, LoadText(IDS_FILE_FILTER).c_str(),
                       this);
    YReportMessageParams error;
    if (dialog.DoModal() == IDOK && !log.Start(dialog.GetPathName().GetString(), error)) {
        YMessageBox(this, &error);
    }
    UpdatePanes();
}

void ConnectionFrame::OnCloseWindow()
{
    SendMessage(WM_CLOSE);
}

// What cannot be sent stays in the line.
void ConnectionFrame::OnSend()
{
    try {
        if (connection->Send(input.GetText())) {
            input.TakeSent();
            view->GoToEnd();
        } else {
            ::MessageBeep(MB_OK);
        }
    } catch (const std::bad_alloc&) {
        ShowError(this, ERROR_NOT_ENOUGH_MEMORY);
    }
}

bool ConnectionFrame::IsTyping() const
{
    return ::GetFocus() == input.GetSafeHwnd();
}

void ConnectionFrame::OnEditCopy()
{
    if (IsTyping() && input.HasSelection()) {
        input.SendMessage(WM_COPY);
    } else {
        ConsoleFrame::OnEditCopy();
    }
}

void ConnectionFrame::OnEditPaste()
{
    input.SetFocus();
    input.SendMessage(WM_PASTE);
}

void ConnectionFrame::OnEditSelectAll()
{
    if (IsTyping() && input.GetWindowTextLength() > 0) {
        input.SetSel(0, -1);
    } else {
        ConsoleFrame::OnEditSelectAll();
    }
}

void ConnectionFrame::OnViewFont()
{
    ConsoleFrame::OnViewFont();
    ShowInputFont();
}

// The state of commands and panes

void ConnectionFrame::OnUpdateDisconnect(CCmdUI* item)
{
    item->Enable(connection->IsOpen());
}

void ConnectionFrame::OnUpdateLog(CCmdUI* item)
{
    item->SetCheck(connection->GetLog().IsRunning());
}

void ConnectionFrame::OnUpdateCopy(CCmdUI* item)
{
    item->Enable(view->CanCopy() || (IsTyping() && input.HasSelection()));
}

void ConnectionFrame::OnUpdateReceived(CCmdUI* item)
{
    const std::wstring lines = FormatCount(connection->GetReceivedLines(), IDS_ONE_LINE, IDS_LINES);
    const std::wstring bytes = FormatCount(connection->GetReceivedBytes(), IDS_ONE_BYTE, IDS_BYTES);
    item->SetText((lines + L", " + bytes).c_str());
}

void ConnectionFrame::OnUpdateLogPane(CCmdUI* item)
{
    item->SetText(connection->GetLog().IsRunning() ? LoadText(IDS_LOGGING).c_str() : L"");
}
