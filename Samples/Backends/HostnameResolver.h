// HostnameResolver.h: a resolver of host names to hand to CommonUiInit as it is.
#pragma once

#include <IHostnameResolver.h>
#include <YUnknown.h>

#include <memory>

class HostnameLookups;

// Asks the system, on the threads of its pool: a slow name holds up neither the caller nor another
// name, and no thread stays behind. Resolve may be called by any thread that handles messages: the
// answer comes as one, in the order in which the look-ups end, with all addresses in the system's
// order. Only what cannot even begin is answered inside the call.
// The last Release drops what is under way: nothing is answered any more, and each sink is released
// on its own thread, on the releasing one before Release returns. Nobody waits for a slow look-up.
// Part of the host's program: a host that is a DLL must stay loaded while look-ups run.
class ThreadedHostnameResolver : public YUnknown<IHostnameResolver>
{
public:
    ThreadedHostnameResolver();
    ThreadedHostnameResolver(const ThreadedHostnameResolver&) = delete;
    ThreadedHostnameResolver& operator=(const ThreadedHostnameResolver&) = delete;

    void Resolve(IHostnameResolverSink* sink, void* context, const char* hostName,
                 unsigned short port, unsigned flags, int protocol) override;

private:
    ~ThreadedHostnameResolver() override;

    const std::shared_ptr<HostnameLookups> lookups;  // outlives this object by a late answer
};
