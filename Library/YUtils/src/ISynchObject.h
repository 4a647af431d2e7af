// ISynchObject.h: the host's own lock, lent to the library.
#pragma once

// Held by the library while it asks the host's factories for an object, so that a host whose
// factories share state with its other threads can guard it. The host implements it; it outlives
// the library's use. May be entered again by the thread that holds it. The order is binary
// contract.
class ISynchObject
{
public:
    virtual void Lock() = 0;
    virtual void Unlock() = 0;

protected:
    ~ISynchObject() = default;
};
