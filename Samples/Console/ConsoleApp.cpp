#include "ConsoleApp.h"

#include "ConnectionFrame.h"
#include "ConsoleMessages.h"
#include "ConsoleOptions.h"
#include "ConsoleText.h"
#include "MainFrame.h"

#include <CommonUiInit.h>
#include <YFolders.h>
#include <YMessageBox.h>
#include <YReportMessageParams.h>
#include <afxole.h>

#include <knownfolders.h>
#include <shellapi.h>

BEGIN_MESSAGE_MAP(ConsoleApp, CWinApp)
    ON_COMMAND(ID_APP_EXIT, &ConsoleApp::OnExit)
END_MESSAGE_MAP()

namespace {

ConsoleApp application;

YProfileStoreFactory* GetProfileStoreFactory()
{
    return application.GetProfiles();
}

IHostnameResolver* GetHostnameResolver()
{
    return application.GetResolver();
}

ConsoleOptions ParseCommandLine()
{
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    ConsoleOptions options = ParseConsoleOptions(arguments ? count : 0, arguments);
    ::LocalFree(arguments);
    return options;
}

YReportMessageParams MakeMessage(unsigned id)
{
    return YReportMessageParams(id, ::AfxGetInstanceHandle());
}

void Show(const YReportMessageParams& message, unsigned style = MB_ICONEXCLAMATION)
{
    YMessageBox(::AfxGetMainWnd(), &message, style);
}

void ShowUsage(const YReportMessageParams& error)
{
    const YReportMessageParams usage = MakeMessage(CONSOLE_USAGE);
    if (error.GetMessageId() == 0) {
        Show(usage, MB_ICONINFORMATION);
        return;
    }
    YReportMessageParams message = MakeMessage(CONSOLE_WRONG_COMMAND_LINE);
    message.AddInsert(error.GetTrimmedText());
    message.AddInsert(usage.GetTrimmedText());
    Show(message);
}

// On whichever thread used the settings; all of ours do so on the window's.
void TellIncident(const ProfileReport& report)
{
    const bool isDamaged = report.incident == ProfileReport::Incident::FileDamaged;
    YReportMessageParams message =
        MakeMessage(isDamaged ? CONSOLE_SETTINGS_DAMAGED : CONSOLE_SETTINGS_NOT_SAVED);
    message.AddInsert(isDamaged ? report.file.c_str() : report.error.GetTrimmedText());
    message.AddInsert(report.keptAs.empty() ? report.file : report.keptAs);
    Show(message);
}

}  // namespace

// The text view's copy needs OLE.
BOOL ConsoleApp::InitInstance()
{
    if (!CWinApp::InitInstance() || !::AfxOleInit()) {
        return FALSE;
    }
    const ConsoleOptions options = ParseCommandLine();
    UseLanguage(options.language != 0 ? options.language
                                      : GetOwnLanguage(::GetUserDefaultUILanguage()));
    if (options.help || options.error.GetMessageId() != 0) {
        ShowUsage(options.error);
        return FALSE;
    }
    if (!OpenProfiles(options)) {
        return FALSE;
    }
    CommonUiInit(&GetHostnameResolver, &GetProfileStoreFactory, nullptr);
    LoadSettings();
    ShowWindows(options);
    return m_pMainWnd != nullptr;
}

// The keys of a window are its own: what it does not know would be tried as the main window's.
BOOL ConsoleApp::PreTranslateMessage(MSG* message)
{
    const HWND top = ::GetAncestor(message->hwnd, GA_ROOT);
    const CWnd* const frame = CWnd::FromHandlePermanent(top);
    if (frame && frame->IsFrameWnd()) {
        return CWnd::WalkPreTranslateTree(top, message);
    }
    return CWinApp::PreTranslateMessage(message);
}

// A folder that the user names must be one that can hold settings. The program's own is made where
// it is missing, by the first save.
bool ConsoleApp::OpenProfiles(const ConsoleOptions& options)
{
    YUnicodeString folder(options.settings.c_str());
    YReportMessageParams error;
    if (!folder.IsEmpty() && !IsValidConfigFolder(folder, error)) {
        Show(error);
        return false;
    }
    if (folder.IsEmpty() && YGetKnownFolder(FOLDERID_RoamingAppData, folder)) {
        folder += L"\\CommonUi Console";
    }
    SetOrxConfigPathSub(folder.c_str());
    profiles = std::make_unique<FolderProfileFactory>(folder.c_str(), &TellIncident);
    return true;
}

void ConsoleApp::LoadSettings()
{
    YReportMessageParams error;
    if (!settings.Load(error)) {
        YReportMessageParams message = MakeMessage(CONSOLE_SETTINGS_NOT_READ);
        message.AddInsert(error.GetTrimmedText());
        Show(message);
    }
}

// The window of files, unless only a connection is asked for; in front of it the connection's.
void ConsoleApp::ShowWindows(const ConsoleOptions& options)
{
    const bool connects = options.peer.port != 0;
    if (!connects || !options.file.empty()) {
        ShowFile(options);
    }
    if (connects) {
        CWnd* const frame = ConnectionFrame::Open(settings, options.peer, m_nCmdShow);
        m_pMainWnd = m_pMainWnd ? m_pMainWnd : frame;
    } else {
        ConnectAtStart();
    }
}

void ConsoleApp::ConnectAtStart()
{
    const SessionList& sessions = settings.GetSessions();
    for (std::size_t i = 0; m_pMainWnd && i < sessions.GetCount(); ++i) {
        if ((sessions.Get(i).options & Session::atStart) != 0) {
            ConnectionFrame::Open(settings, sessions.Get(i), SW_SHOWNORMAL);
        }
    }
}

void ConsoleApp::ShowFile(const ConsoleOptions& options)
{
    auto* const frame = new MainFrame(settings);  // deletes itself with its window
    int show = m_nCmdShow;
    if (!frame->Load(options, show)) {
        return;
    }
    m_pMainWnd = frame;
    m_nCmdShow = show;
    frame->InitialUpdateFrame(nullptr, TRUE);
    if (!options.file.empty()) {
        frame->OpenFile(options.file);
    }
}

void ConsoleApp::OnExit()
{
    CloseAllFrames();
}
