#include "FrameworkState.h"
#include "MessageMap.h"
#include "WindowMap.h"

#include "afxole.h"

#include <process.h>

#include <memory>

IMPLEMENT_DYNAMIC(CWinThread, CCmdTarget)

namespace {

constexpr UINT systemTimerMessage = 0x0118;  // blinks carets; undocumented, but seen by loops

bool IsMouseMove(UINT message)
{
    return message == WM_MOUSEMOVE || message == WM_NCMOUSEMOVE;
}

UINT __stdcall ThreadMain(void* parameter) noexcept
{
    CWinThread* const thread = static_cast<CWinThread*>(parameter);
    GetThreadState().thread = thread;
    ::AfxEndThread(thread->RunBody());
    return 0;
}

CWinThread* StartThread(std::unique_ptr<CWinThread> thread, int priority, UINT stackSize,
                        DWORD flags, LPSECURITY_ATTRIBUTES security)
{
    // Suspended, so that the priority is set before its first instruction, and the object is not
    // touched once it may delete itself.
    if (!thread->CreateThread(flags | CREATE_SUSPENDED, stackSize, security)) {
        return nullptr;
    }
    CWinThread* const started = thread.release();
    started->SetThreadPriority(priority);
    if ((flags & CREATE_SUSPENDED) == 0) {
        started->ResumeThread();
    }
    return started;
}

void UpdateCommandsOf(CWnd& window)
{
    if (window.IsWindowVisible()) {
        window.SendMessage(WM_IDLEUPDATECMDUI, TRUE);
        window.SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE, 0, TRUE, TRUE);
    }
}

BOOL CALLBACK UpdateOtherFrame(HWND handle, LPARAM mainWindow) noexcept
{
    CWnd* const window = CWnd::FromHandlePermanent(handle);
    if (window != nullptr && window != reinterpret_cast<CWnd*>(mainWindow) &&
        window->IsFrameWnd()) {
        UpdateCommandsOf(*window);
    }
    return TRUE;
}

}  // namespace

CWinThread::CWinThread(AFX_THREADPROC pfnThreadProc, LPVOID pParam)
    : threadFunction(pfnThreadProc), threadParameter(pParam)
{}

CWinThread::~CWinThread()
{
    if (m_hThread != nullptr) {
        ::CloseHandle(m_hThread);
    }
    if (GetThreadState().thread == this) {
        GetThreadState().thread = nullptr;
    }
}

BOOL CWinThread::CreateThread(DWORD dwCreateFlags, UINT nStackSize,
                              LPSECURITY_ATTRIBUTES lpSecurityAttrs)
{
    ASSERT(m_hThread == nullptr);
    unsigned id = 0;
    const auto handle = reinterpret_cast<HANDLE>(::_beginthreadex(
        lpSecurityAttrs, nStackSize, &ThreadMain, this, dwCreateFlags | CREATE_SUSPENDED, &id));
    if (handle == nullptr) {
        return FALSE;
    }
    m_hThread = handle;
    m_nThreadID = id;
    if ((dwCreateFlags & CREATE_SUSPENDED) == 0) {
        ::ResumeThread(handle);  // from here on the object may be gone
    }
    return TRUE;
}

UINT CWinThread::RunBody()
{
    if (threadFunction != nullptr) {
        return threadFunction(threadParameter);
    }
    return static_cast<UINT>(InitInstance() ? Run() : ExitInstance());
}

int CWinThread::Run()
{
    LONG idleCount = 0;
    bool isIdle = true;
    MSG next{};
    for (;;) {
        while (isIdle && !::PeekMessageW(&next, nullptr, 0, 0, PM_NOREMOVE)) {
            isIdle = OnIdle(idleCount++) != FALSE;
        }
        do {
            if (!PumpMessage()) {
                return ExitInstance();
            }
            if (IsIdleMessage(&current)) {
                isIdle = true;
                idleCount = 0;
            }
        } while (::PeekMessageW(&next, nullptr, 0, 0, PM_NOREMOVE));
    }
}

int CWinThread::ExitInstance()
{
    return static_cast<int>(current.wParam);  // WM_QUIT's
}

BOOL CWinThread::PumpMessage()
{
    const BOOL got = ::GetMessageW(&current, nullptr, 0, 0);
    if (got == 0 || got == -1) {
        return FALSE;
    }
    // A copy: handlers may run loops of their own, which pump into `current`.
    MSG message = current;
    bool isEaten = false;
    try {
        isEaten = PreTranslateMessage(&message) != FALSE;
    } catch (...) {
        AnswerForCurrentException(message);
        isEaten = true;
    }
    if (!isEaten) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    return TRUE;
}

BOOL CWinThread::PreTranslateMessage(MSG* pMsg)
{
    if (pMsg->hwnd == nullptr) {
        return DispatchThreadMessageEx(pMsg);
    }
    CWnd* const mainWindow = ::AfxGetMainWnd();
    const HWND mainHandle = mainWindow != nullptr ? mainWindow->GetSafeHwnd() : nullptr;
    if (CWnd::WalkPreTranslateTree(mainHandle, pMsg)) {
        return TRUE;
    }
    // The accelerators of the main window also serve windows beside it, such as modeless dialogs.
    CWnd* const stillMain = ::AfxGetMainWnd();
    return stillMain != nullptr && stillMain == mainWindow && ::IsWindow(pMsg->hwnd) &&
           ::GetAncestor(pMsg->hwnd, GA_ROOT) != mainHandle &&
           mainWindow->PreTranslateMessage(pMsg);
}

BOOL CWinThread::DispatchThreadMessageEx(MSG* msg)
{
    const AFX_MSGMAP_ENTRY* const entry = FindMessageEntry(GetMessageMap(), msg->message);
    if (entry == nullptr || entry->nSig != AfxSig_ThreadMessage) {
        return FALSE;
    }
    (this->*RestoreSignature<AfxSig_ThreadMessage>(entry->pfn))(msg->wParam, msg->lParam);
    return TRUE;
}

BOOL CWinThread::OnIdle(LONG lCount)
{
    if (lCount == 0) {
        UpdateCommands();
    } else if (lCount == 1) {
        DeleteTemporaryObjects();
    }
    return lCount < 1;
}

// The main window and every other frame of the thread.
void CWinThread::UpdateCommands()
{
    CWnd* const mainWindow = m_pMainWnd;
    if (mainWindow != nullptr && mainWindow->GetSafeHwnd() != nullptr) {
        UpdateCommandsOf(*mainWindow);
    }
    ::EnumThreadWindows(::GetCurrentThreadId(), &UpdateOtherFrame,
                        reinterpret_cast<LPARAM>(mainWindow));
}

BOOL CWinThread::IsIdleMessage(MSG* pMsg)
{
    if (!IsMouseMove(pMsg->message)) {
        return pMsg->message != WM_PAINT && pMsg->message != systemTimerMessage;
    }
    // A window that appears under a resting pointer sends moves that are none.
    const bool hasMoved = pMsg->message != lastMouseMessage || pMsg->pt.x != lastMousePosition.x ||
                          pMsg->pt.y != lastMousePosition.y;
    lastMouseMessage = pMsg->message;
    lastMousePosition = pMsg->pt;
    return hasMoved;
}

LRESULT CWinThread::ProcessWndProcException(CException* e, const MSG* pMsg)
{
    return AnswerForFailedHandler(e->GetRuntimeClass()->m_lpszClassName, *pMsg);
}

CWinThread* AFXAPI AfxGetThread()
{
    return GetThreadState().thread;
}

CWinThread* AFXAPI AfxBeginThread(AFX_THREADPROC pfnThreadProc, LPVOID pParam, int nPriority,
                                  UINT nStackSize, DWORD dwCreateFlags,
                                  LPSECURITY_ATTRIBUTES lpSecurityAttrs)
{
    return StartThread(std::make_unique<CWinThread>(pfnThreadProc, pParam), nPriority, nStackSize,
                       dwCreateFlags, lpSecurityAttrs);
}

CWinThread* AFXAPI AfxBeginThread(CRuntimeClass* pThreadClass, int nPriority, UINT nStackSize,
                                  DWORD dwCreateFlags, LPSECURITY_ATTRIBUTES lpSecurityAttrs)
{
    CObject* const object = pThreadClass->CreateObject();
    CWinThread* const thread = DYNAMIC_DOWNCAST(CWinThread, object);
    if (thread == nullptr) {
        delete object;
        return nullptr;
    }
    return StartThread(std::unique_ptr<CWinThread>(thread), nPriority, nStackSize, dwCreateFlags,
                       lpSecurityAttrs);
}

void AFXAPI AfxEndThread(UINT nExitCode, BOOL bDelete)
{
    CWinThread* const thread = GetThreadState().thread;
    if (thread != nullptr) {
        if (bDelete && thread->m_bAutoDelete) {
            delete thread;
        }
        GetThreadState().thread = nullptr;
    }
    ::AfxOleTerm();
    ::_endthreadex(nExitCode);
}

void AFXAPI AfxPostQuitMessage(int nExitCode)
{
    ::PostQuitMessage(nExitCode);
}
