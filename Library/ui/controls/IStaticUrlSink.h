// IStaticUrlSink.h: who wants to know of a link that is used.
#pragma once

// The host implements, the link calls. Borrowed: outlives the link. User-interface thread. It may
// destroy the link.
class IStaticUrlSink
{
public:
    virtual void OnURLOpened() = 0;  // or tried to: the user has used the link

protected:
    ~IStaticUrlSink() = default;  // adds no slot; nobody deletes through it
};
