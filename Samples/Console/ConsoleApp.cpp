#include "ConsoleApp.h"

#include "ConsoleOptions.h"
#include "MainFrame.h"

#include <afxole.h>

#include <shellapi.h>

BEGIN_MESSAGE_MAP(ConsoleApp, CWinApp)
    ON_COMMAND(ID_APP_EXIT, &ConsoleApp::OnAppExit)
END_MESSAGE_MAP()

namespace {

ConsoleApp application;

ConsoleOptions ParseCommandLine()
{
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    ConsoleOptions options = ParseConsoleOptions(arguments ? count : 0, arguments);
    ::LocalFree(arguments);
    return options;
}

}  // namespace

// The text view's copy needs OLE.
BOOL ConsoleApp::InitInstance()
{
    if (!CWinApp::InitInstance() || !::AfxOleInit()) {
        return FALSE;
    }
    const ConsoleOptions options = ParseCommandLine();
    if (options.help || !options.error.empty()) {
        ::AfxMessageBox((options.error + L"\n\n" + consoleUsage).c_str());
        return FALSE;
    }
    auto* const frame = new MainFrame;  // deletes itself with its window
    if (!frame->Load(options)) {
        return FALSE;
    }
    m_pMainWnd = frame;
    frame->InitialUpdateFrame(nullptr, TRUE);
    if (!options.file.empty()) {
        frame->Open(options.file);
    }
    return TRUE;
}
