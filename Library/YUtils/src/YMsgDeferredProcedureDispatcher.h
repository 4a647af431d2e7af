// YMsgDeferredProcedureDispatcher.h: runs queued calls on the thread of a window.
#pragma once

#include "YDeferredProcedureDispatcher.h"
#include "YNotificationSink.h"

class IReportMessageParams;

// A dispatcher that asks for its own Dispatch with a message, one for all that is queued until the
// message arrives. Nobody else needs to dispatch; a host that does anyway does it on its thread.
//
// Behind a procedure that throws, the entries run by another message; the exception of one that ran
// by a message goes no further. When no message can be posted, entries wait for the next Queue, which
// tries again, or the next Dispatch. The last Release on another thread than the window's waits for
// that thread (YNotificationSink::Destroy).
class COMMONUI_API YMsgDeferredProcedureDispatcher : public YDeferredProcedureDispatcher,
                                                     private YNotificationSink
{
public:
    YMsgDeferredProcedureDispatcher() = default;

    using YNotificationSink::Create;
    using YNotificationSink::GetError;
    using YNotificationSink::IsOwnThread;
    void Queue(IDeferredProcedure* procedure, unsigned argument) override;
    bool Dispatch() override;

protected:
    ~YMsgDeferredProcedureDispatcher() override;

private:
    LRESULT OnNotify(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool RunOrPost();
    void PostDispatch();

    std::atomic<bool> postPending = false;  // a message is on its way
};

// For the calling thread, which pumps messages. The caller owns the reference. Null: *error has the
// reason, of which the caller owns a reference as well; error may be null.
COMMONUI_API IDeferredProcedureDispatcher*
CreateYMsgDeferredProcedureDispatcher(IReportMessageParams** error);
