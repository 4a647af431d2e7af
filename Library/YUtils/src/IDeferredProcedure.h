// IDeferredProcedure.h: work that is to be done later.
#pragma once

#include <windows.h>

#include <unknwn.h>

// The host implements it, a dispatcher calls it, once for every time it was queued, and keeps it
// alive until then. On the thread that dispatches; without any lock.
class IDeferredProcedure : public IUnknown
{
public:
    virtual void Run(unsigned argument) = 0;  // what it was queued with, 32 bits
};
