// YMfcThread.h: a thread of the framework's that does what is queued for it.
#pragma once

#include "CommonUiApi.h"
#include "IThread.h"
#include "YMsgDeferredProcedureDispatcher.h"
#include "YUniqueHandle.h"

#include <afxwin.h>

// A user-interface thread with a dispatcher instead of a main window. A class that derives from it
// to do something of its own at the thread's start or end calls this one's InitInstance first and
// its ExitInstance last: the object may be gone after that. Start succeeds when Run is reached.
class COMMONUI_API YMfcThread : public CWinThread, public YUnknown<IThread>
{
public:
    YMfcThread();

    bool Start(IReportMessageParams** error) override;
    IDeferredProcedureDispatcher* GetDispatcher() const override { return dispatcher.Get(); }
    bool Stop(DWORD milliseconds) override;
    bool IsOwnThread() const override { return m_nThreadID == ::GetCurrentThreadId(); }

protected:
    ~YMfcThread() override;
    void DeleteThis() override;
    void DeleteThis() const override;

    BOOL InitInstance() override;
    int Run() override;
    int ExitInstance() override;

private:
    bool Launch();
    void WaitForEnd() const;

    YUniqueKernelHandle started;  // signalled when the thread serves its messages
    YUnknownPointer<YMsgDeferredProcedureDispatcher> dispatcher;
};
