#include "YMfcThread.h"

YMfcThread::YMfcThread()
{
    m_bAutoDelete = FALSE;  // the references decide
}

YMfcThread::~YMfcThread() = default;

void YMfcThread::DeleteThis()
{
    WaitForEnd();
    delete this;
}

void YMfcThread::DeleteThis() const
{
    WaitForEnd();
    delete this;
}

// The thread has given its reference back, but the framework still looks at the object on the
// thread's last steps.
void YMfcThread::WaitForEnd() const
{
    if (m_hThread && !IsOwnThread()) {
        ::WaitForSingleObject(m_hThread, INFINITE);
    }
}

bool YMfcThread::Start(IReportMessageParams** error)
{
    YReportMessageParams failure(ERROR_ALREADY_INITIALIZED);
    if (!m_hThread) {
        dispatcher = YUnknownPointer<YMsgDeferredProcedureDispatcher>::Make();
        if (!Launch()) {
            failure.SetErrorCode(::GetLastError());
        } else {
            const HANDLE outcomes[] = {started.Get(), m_hThread};
            if (::WaitForMultipleObjects(2, outcomes, FALSE, INFINITE) == WAIT_OBJECT_0) {
                return true;
            }
            failure = dispatcher->GetError();
        }
    }
    if (error) {
        *error = new YReportMessageParams(failure);
    }
    return false;
}

bool YMfcThread::Launch()
{
    started.Reset(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!started) {
        return false;
    }
    AddRef();  // the thread's, which ExitInstance gives back
    if (CreateThread()) {
        return true;
    }
    const DWORD code = ::GetLastError();
    Release();
    ::SetLastError(code);
    return false;
}

// The message has its turn behind those of the dispatcher. A thread that cannot be told does not
// end, unless it has ended already.
bool YMfcThread::Stop(DWORD milliseconds)
{
    if (!m_hThread) {
        return true;
    }
    const bool isTold = PostThreadMessage(WM_QUIT, 0, 0) != FALSE;
    return !IsOwnThread() &&
           ::WaitForSingleObject(m_hThread, isTold ? milliseconds : 0) == WAIT_OBJECT_0;
}

BOOL YMfcThread::InitInstance()
{
    return dispatcher->Create();
}

int YMfcThread::Run()
{
    ::SetEvent(started.Get());
    return CWinThread::Run();
}

int YMfcThread::ExitInstance()
{
    const int code = CWinThread::ExitInstance();
    Release();
    return code;
}
