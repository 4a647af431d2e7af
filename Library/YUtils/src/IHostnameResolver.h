// IHostnameResolver.h: how the host finds the addresses of a name for the library.
#pragma once

#include "IInternetAddress.h"
#include "YUnknownPointer.h"

#include <windows.h>

#include <unknwn.h>

#include <vector>

class YReportMessageParams;

// Who waits for the addresses. The order is binary contract.
class IHostnameResolverSink : public IUnknown
{
public:
    struct Result
    {
        std::vector<YUnknownPointer<IInternetAddress>> addresses;  // the best one first
    };

    // context is Resolve's. reportParams: message id 0, or the failure; there are no addresses then.
    virtual void OnHostname(void* context, const YReportMessageParams& reportParams,
                            const Result& result) = 0;
};

// The host implements it and hands it to CommonUiInit. The order is binary contract.
class IHostnameResolver : public IUnknown
{
public:
    // Answers once, by OnHostname on the calling thread, inside the call or later; holds the sink
    // until then. The time that it may take, and the order of the addresses, are the host's affair.
    // hostName: 8-bit, UTF-8 for others than ASCII ones. flags: 0. protocol: IPPROTO_TCP. The
    // addresses carry the port.
    virtual void Resolve(IHostnameResolverSink* sink, void* context, const char* hostName,
                         unsigned short port, unsigned flags, int protocol) = 0;
};
