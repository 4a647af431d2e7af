// IDeferredProcedureDispatcher.h: a queue of work for one thread.
#pragma once

#include <windows.h>

#include <unknwn.h>

class IDeferredProcedure;

// The library implements it, whoever has work for the dispatcher's thread calls it. The order is
// binary contract.
class IDeferredProcedureDispatcher : public IUnknown
{
public:
    // Any thread. What one thread queues runs in its order. Null runs as nothing.
    virtual void Queue(IDeferredProcedure* procedure, unsigned argument) = 0;
    // Runs what is queued, and what is queued meanwhile. True: something was waiting. False from
    // inside a procedure: the call that runs it goes on with what is queued.
    virtual bool Dispatch() = 0;
};
