// YDeferredProcedureDispatcher.h: runs queued calls in order, on the thread that asks for it.
#pragma once

#include "CommonUiApi.h"
#include "IDeferredProcedure.h"
#include "IDeferredProcedureDispatcher.h"
#include "ISynchObject.h"
#include "YUnknown.h"
#include "YUnknownPointer.h"

#include <deque>
#include <memory>

// Any thread; its lock is never held while a procedure runs or ends. Each entry runs once at most:
// one that throws counts as run. Its exception leaves Dispatch, the entries behind it stay queued
// for the next one. The dispatcher outlives the procedure that drops the last reference to it; the
// entries behind that one, as all that wait when a dispatcher ends, are dropped without a call.
class COMMONUI_API YDeferredProcedureDispatcher : public YUnknown<IDeferredProcedureDispatcher>
{
public:
    YDeferredProcedureDispatcher();

    void Queue(IDeferredProcedure* procedure, unsigned argument) override;
    bool Dispatch() override;

protected:
    ~YDeferredProcedureDispatcher() override;

    // Dispatch for a caller that holds `ownReferences` itself: when there are no others, nobody
    // wants the rest done.
    bool Run(ULONG ownReferences);
    bool HasEntries() const;

private:
    struct Entry
    {
        YUnknownPointer<IDeferredProcedure> procedure;
        unsigned argument;
    };
    class QueueLock;

    bool IsAbandoned(ULONG ownReferences) const;

    const std::unique_ptr<QueueLock> lock;
    bool dispatching = false;  // a Dispatch is running; both under the lock
    std::deque<Entry> queue;
};
