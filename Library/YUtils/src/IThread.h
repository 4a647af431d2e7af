// IThread.h: a thread that does what is queued for it.
#pragma once

#include <windows.h>

#include <unknwn.h>

class IDeferredProcedureDispatcher;
class IReportMessageParams;

// The library implements it (YMfcThread), hosts use it. It pumps messages, so it serves the windows
// that its work makes: notification windows, sockets. It may be started once. A running thread
// holds a reference to its object: Stop it before the last Release, or it runs on alone. Any
// thread. The order is binary contract.
class IThread : public IUnknown
{
public:
    // Back when the thread takes work. False: *error has the reason, of which the caller owns a
    // reference; error may be null.
    virtual bool Start(IReportMessageParams** error) = 0;
    // Where to queue work for the thread. Borrowed, lives as long as this object; null before
    // Start. What is queued too late is never run and goes with the dispatcher.
    virtual IDeferredProcedureDispatcher* GetDispatcher() const = 0;
    // Asks the thread to end when it has done what was queued before, and waits for it: true when
    // it has ended. False after `milliseconds`, of INFINITE never, or on the thread itself, which
    // cannot wait for its own end; the thread still ends then as soon as it can.
    virtual bool Stop(DWORD milliseconds) = 0;
    virtual bool IsOwnThread() const = 0;
};
