// afxthr_.h: threads, the application object and what a program knows of itself. Part of afxwin.h.
#pragma once

#include "afxcmd_.h"

typedef UINT(AFX_CDECL* AFX_THREADPROC)(LPVOID);

// A thread: with a message loop if it is derived (InitInstance TRUE starts it), or with one
// function to run. With m_bAutoDelete the object dies with its thread.
class COMMONFRAMEWORK_API CWinThread : public CCmdTarget
{
    DECLARE_DYNAMIC(CWinThread)

    CWinThread() = default;
    CWinThread(AFX_THREADPROC pfnThreadProc, LPVOID pParam);
    ~CWinThread() override;  // closes the handle; the thread is over, or never was

    BOOL CreateThread(DWORD dwCreateFlags = 0, UINT nStackSize = 0,
                      LPSECURITY_ATTRIBUTES lpSecurityAttrs = nullptr);
    DWORD ResumeThread() { return ::ResumeThread(m_hThread); }
    DWORD SuspendThread() { return ::SuspendThread(m_hThread); }
    int GetThreadPriority() { return ::GetThreadPriority(m_hThread); }
    BOOL SetThreadPriority(int nPriority) { return ::SetThreadPriority(m_hThread, nPriority); }
    BOOL PostThreadMessage(UINT message, WPARAM wParam, LPARAM lParam)
    {
        return ::PostThreadMessage(m_nThreadID, message, wParam, lParam);
    }

    virtual BOOL InitInstance() { return FALSE; }
    virtual int Run();
    virtual int ExitInstance();
    virtual BOOL PreTranslateMessage(MSG* pMsg);
    virtual BOOL PumpMessage();  // waits for one message and dispatches it; FALSE: WM_QUIT
    // True while there is more to do; lCount: calls since the last message. At 0 the windows bring
    // their commands up to date, at 1 the temporary objects go.
    virtual BOOL OnIdle(LONG lCount);
    // False for messages after which nothing can have changed: idle work waits for others.
    virtual BOOL IsIdleMessage(MSG* pMsg);
    // Gets what a handler threw; the answer goes to the system.
    virtual LRESULT ProcessWndProcException(CException* e, const MSG* pMsg);
    virtual CWnd* GetMainWnd() { return m_pMainWnd; }

    operator HANDLE() const { return m_hThread; }

    CWnd* m_pMainWnd = nullptr;  // when it is destroyed, the loop ends
    BOOL m_bAutoDelete = TRUE;
    HANDLE m_hThread = nullptr;
    DWORD m_nThreadID = 0;

    // Internal: the body of the thread.
    UINT RunBody();

protected:
    BOOL DispatchThreadMessageEx(MSG* msg);

private:
    void UpdateCommands();

    MSG current{};  // of PumpMessage
    POINT lastMousePosition{};  // of the last mouse move that was an idle message
    UINT lastMouseMessage = 0;
    AFX_THREADPROC threadFunction = nullptr;  // null: InitInstance, Run, ExitInstance
    LPVOID threadParameter = nullptr;
};

// The program. One global object per executable; it stands for the main thread.
class COMMONFRAMEWORK_API CWinApp : public CWinThread
{
    DECLARE_DYNAMIC(CWinApp)

    explicit CWinApp(LPCTSTR lpszAppName = nullptr);
    ~CWinApp() override;

    virtual BOOL InitApplication() { return TRUE; }
    BOOL InitInstance() override { return TRUE; }
    int Run() override;

    HICON LoadIcon(LPCTSTR lpszResourceName) const;
    HICON LoadIcon(UINT nIDResource) const { return LoadIcon(MAKEINTRESOURCE(nIDResource)); }
    HCURSOR LoadCursor(LPCTSTR lpszResourceName) const;
    HCURSOR LoadCursor(UINT nIDResource) const { return LoadCursor(MAKEINTRESOURCE(nIDResource)); }
    HICON LoadStandardIcon(LPCTSTR lpszIconName) const { return ::LoadIcon(nullptr, lpszIconName); }
    HCURSOR LoadStandardCursor(LPCTSTR lpszCursorName) const
    {
        return ::LoadCursor(nullptr, lpszCursorName);
    }

    // Shows every message box of AfxMessageBox.
    virtual int DoMessageBox(LPCTSTR lpszPrompt, UINT nType, UINT nIDPrompt);

    HINSTANCE m_hInstance = nullptr;
    LPTSTR m_lpCmdLine = nullptr;
    int m_nCmdShow = SW_SHOWDEFAULT;
    LPCTSTR m_pszAppName = nullptr;  // from AfxWinInit on at the latest
    LPCTSTR m_pszExeName = nullptr;  // without folder and extension, from AfxWinInit on

protected:
    afx_msg void OnAppExit();  // map it to ID_APP_EXIT: closes the main window
    DECLARE_MESSAGE_MAP()

private:
    friend BOOL AFXAPI AfxWinInit(HINSTANCE, HINSTANCE, LPTSTR, int);

    CString name;
    CString executable;
};

// The program, or null.
COMMONFRAMEWORK_API CWinApp* AFXAPI AfxGetApp();
// The object of the calling thread; null: the framework did not start the thread.
COMMONFRAMEWORK_API CWinThread* AFXAPI AfxGetThread();
COMMONFRAMEWORK_API CWnd* AFXAPI AfxGetMainWnd();
COMMONFRAMEWORK_API HINSTANCE AFXAPI AfxGetInstanceHandle();
COMMONFRAMEWORK_API HINSTANCE AFXAPI AfxGetResourceHandle();
COMMONFRAMEWORK_API void AFXAPI AfxSetResourceHandle(HINSTANCE hInstResource);
// The module that holds the resource.
COMMONFRAMEWORK_API HINSTANCE AFXAPI AfxFindResourceHandle(LPCTSTR lpszName, LPCTSTR lpszType);

// Before anything else of the framework in a program that has its own main().
COMMONFRAMEWORK_API BOOL AFXAPI AfxWinInit(HINSTANCE hInstance, HINSTANCE hPrevInstance,
                                           LPTSTR lpCmdLine, int nCmdShow);
// The whole life of a program with an application object; the entry of a GUI program calls it.
COMMONFRAMEWORK_API int AFXAPI AfxWinMain(HINSTANCE hInstance, HINSTANCE hPrevInstance,
                                          LPTSTR lpCmdLine, int nCmdShow);

COMMONFRAMEWORK_API int AFXAPI AfxMessageBox(LPCTSTR lpszText, UINT nType = MB_OK,
                                             UINT nIDHelp = 0);
COMMONFRAMEWORK_API int AFXAPI AfxMessageBox(UINT nIDPrompt, UINT nType = MB_OK,
                                             UINT nIDHelp = static_cast<UINT>(-1));

// Null: no thread could be made.
COMMONFRAMEWORK_API CWinThread* AFXAPI AfxBeginThread(
    AFX_THREADPROC pfnThreadProc, LPVOID pParam, int nPriority = THREAD_PRIORITY_NORMAL,
    UINT nStackSize = 0, DWORD dwCreateFlags = 0, LPSECURITY_ATTRIBUTES lpSecurityAttrs = nullptr);
COMMONFRAMEWORK_API CWinThread* AFXAPI AfxBeginThread(
    CRuntimeClass* pThreadClass, int nPriority = THREAD_PRIORITY_NORMAL, UINT nStackSize = 0,
    DWORD dwCreateFlags = 0, LPSECURITY_ATTRIBUTES lpSecurityAttrs = nullptr);
// Ends the calling thread; bDelete: with its object, if it deletes itself.
COMMONFRAMEWORK_API void AFXAPI AfxEndThread(UINT nExitCode, BOOL bDelete = TRUE);

COMMONFRAMEWORK_API void AFXAPI AfxPostQuitMessage(int nExitCode);
