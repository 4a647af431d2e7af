#include "FrameworkState.h"

#include "afxole.h"

IMPLEMENT_DYNAMIC(CWinApp, CWinThread)

BEGIN_MESSAGE_MAP(CWinApp, CWinThread)
END_MESSAGE_MAP()

namespace {

// The program's file without folder and extension.
CString GetExecutableName()
{
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH - 1);
    const CString file(path);
    const CString nameAndExtension = file.Mid(file.ReverseFind(L'\\') + 1);
    const int dot = nameAndExtension.ReverseFind(L'.');
    return dot < 0 ? nameAndExtension : nameAndExtension.Left(dot);
}

void EndMainWindow(CWinApp& application)
{
    if (application.m_pMainWnd != nullptr) {
        application.m_pMainWnd->DestroyWindow();
    }
}

int RunApplication(CWinApp& application)
{
    if (!application.InitApplication()) {
        return -1;
    }
    if (application.InitInstance()) {
        return application.Run();
    }
    EndMainWindow(application);
    return application.ExitInstance();
}

}  // namespace

CWinApp::CWinApp(LPCTSTR lpszAppName) : name(lpszAppName)
{
    ASSERT(GetModuleState().application == nullptr);
    m_bAutoDelete = FALSE;
    m_pszAppName = lpszAppName != nullptr ? name.GetString() : nullptr;
    m_nThreadID = ::GetCurrentThreadId();
    GetModuleState().application = this;
    GetThreadState().thread = this;
}

CWinApp::~CWinApp()
{
    if (GetModuleState().application == this) {
        GetModuleState().application = nullptr;
    }
}

int CWinApp::Run()
{
    if (m_pMainWnd == nullptr) {
        ::AfxPostQuitMessage(0);  // nothing that the user could close
    }
    return CWinThread::Run();
}

HICON CWinApp::LoadIcon(LPCTSTR lpszResourceName) const
{
    return ::LoadIconW(::AfxFindResourceHandle(lpszResourceName, RT_GROUP_ICON), lpszResourceName);
}

HCURSOR CWinApp::LoadCursor(LPCTSTR lpszResourceName) const
{
    return ::LoadCursorW(::AfxFindResourceHandle(lpszResourceName, RT_GROUP_CURSOR),
                         lpszResourceName);
}

int CWinApp::DoMessageBox(LPCTSTR lpszPrompt, UINT nType, UINT)
{
    // The window that the user is at; it may be a dialog of the main window.
    HWND owner = ::GetActiveWindow();
    CWnd* const mainWindow = ::AfxGetMainWnd();
    if (owner == nullptr && mainWindow != nullptr) {
        owner = ::GetLastActivePopup(mainWindow->GetSafeHwnd());
    }
    if ((nType & MB_ICONMASK) == 0) {
        const UINT buttons = nType & MB_TYPEMASK;
        const bool isQuestion = buttons == MB_YESNO || buttons == MB_YESNOCANCEL;
        nType |= isQuestion ? MB_ICONQUESTION : MB_ICONEXCLAMATION;
    }
    return ::MessageBoxW(owner, lpszPrompt, m_pszAppName, nType);
}

void CWinApp::OnAppExit()
{
    if (m_pMainWnd != nullptr) {
        m_pMainWnd->SendMessage(WM_CLOSE);
    }
}

CWinApp* AFXAPI AfxGetApp()
{
    return GetModuleState().application;
}

CWnd* AFXAPI AfxGetMainWnd()
{
    CWinThread* const thread = ::AfxGetThread();
    return thread != nullptr ? thread->GetMainWnd() : nullptr;
}

HINSTANCE AFXAPI AfxGetInstanceHandle()
{
    const HINSTANCE instance = GetModuleState().instance;
    return instance != nullptr ? instance : ::GetModuleHandleW(nullptr);
}

HINSTANCE AFXAPI AfxGetResourceHandle()
{
    const HINSTANCE resources = GetModuleState().resources;
    return resources != nullptr ? resources : ::AfxGetInstanceHandle();
}

void AFXAPI AfxSetResourceHandle(HINSTANCE hInstResource)
{
    GetModuleState().resources = hInstResource;
}

HINSTANCE AFXAPI AfxFindResourceHandle(LPCTSTR, LPCTSTR)
{
    return ::AfxGetResourceHandle();
}

BOOL AFXAPI AfxWinInit(HINSTANCE hInstance, HINSTANCE, LPTSTR lpCmdLine, int nCmdShow)
{
    ModuleState& module = GetModuleState();
    module.instance = hInstance;
    if (module.resources == nullptr) {
        module.resources = hInstance;
    }
    if (CWinApp* const application = module.application) {
        application->m_hInstance = hInstance;
        application->m_lpCmdLine = lpCmdLine;
        application->m_nCmdShow = nCmdShow;
        application->executable = GetExecutableName();
        application->m_pszExeName = application->executable;
        if (application->m_pszAppName == nullptr) {
            if (!application->name.LoadString(AFX_IDS_APP_TITLE)) {
                application->name = application->executable;
            }
            application->m_pszAppName = application->name;
        }
    }
    return TRUE;
}

int AFXAPI AfxWinMain(HINSTANCE hInstance, HINSTANCE hPrevInstance, LPTSTR lpCmdLine, int nCmdShow)
{
    CWinApp* const application = ::AfxGetApp();
    if (application == nullptr || !::AfxWinInit(hInstance, hPrevInstance, lpCmdLine, nCmdShow)) {
        return -1;
    }
    const int exitCode = RunApplication(*application);
    ::AfxOleTerm();  // what was copied stays on the clipboard
    return exitCode;
}

int AFXAPI AfxMessageBox(LPCTSTR lpszText, UINT nType, UINT nIDHelp)
{
    if (CWinApp* const application = ::AfxGetApp()) {
        return application->DoMessageBox(lpszText, nType, nIDHelp);
    }
    return ::MessageBoxW(::GetActiveWindow(), lpszText, nullptr, nType);
}

int AFXAPI AfxMessageBox(UINT nIDPrompt, UINT nType, UINT nIDHelp)
{
    CString text;
    text.LoadString(nIDPrompt);
    return ::AfxMessageBox(text, nType, nIDHelp == static_cast<UINT>(-1) ? nIDPrompt : nIDHelp);
}
