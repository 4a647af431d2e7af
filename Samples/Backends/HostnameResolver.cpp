#include "HostnameResolver.h"

#include <YAddress.h>
#include <YCriticalSection.h>
#include <YNotificationSink.h>
#include <YReportMessageParams.h>
#include <YUniqueHandle.h>

#include <winsock2.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace {

struct AddressInfoTraits
{
    using Handle = ADDRINFOW*;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle list) noexcept { ::FreeAddrInfoW(list); }
};
using UniqueAddressInfo = YUniqueHandle<AddressInfoTraits>;

// Winsock for the time of one look-up: a late one may run while the host ends its own use.
class WinsockUse
{
public:
    WinsockUse()
    {
        WSADATA data;
        error = ::WSAStartup(MAKEWORD(2, 2), &data);
    }
    ~WinsockUse()
    {
        if (error == 0) {
            ::WSACleanup();
        }
    }
    WinsockUse(const WinsockUse&) = delete;
    WinsockUse& operator=(const WinsockUse&) = delete;

    int GetError() const { return error; }

private:
    int error;
};

// False: no UTF-8, longer than any name, or nothing at all, which the system would take for this
// machine.
bool ToUtf16(const char* text, wchar_t (&name)[NI_MAXHOST])
{
    return text && *text != '\0' &&
           ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text, -1, name, NI_MAXHOST) > 0;
}

int GetSocketType(int protocol)
{
    switch (protocol) {
    case IPPROTO_TCP: return SOCK_STREAM;
    case IPPROTO_UDP: return SOCK_DGRAM;
    default: return 0;  // whatever there is
    }
}

// Null: a family of which we have no addresses.
YUnknownPointer<IInternetAddress> MakeAddressOf(const ADDRINFOW& found, unsigned short port)
{
    addrinfo record{};  // the same without the name, which is in other characters
    record.ai_family = found.ai_family;
    record.ai_socktype = found.ai_socktype;
    record.ai_protocol = found.ai_protocol;
    record.ai_addr = found.ai_addr;
    record.ai_addrlen = found.ai_addrlen;
    auto address = YUnknownPointer<IInternetAddress>::Adopt(MakeAddress(found.ai_family));
    if (!address || !address->SetFromAddrInfo(&record)) {
        return nullptr;
    }
    address->SetPort(port);
    return address;
}

}  // namespace

class HostnameLookup;

// Those that are under way, each held here. Whoever takes one out settles it: its answer, or the end
// of the resolver. Any thread.
class HostnameLookups
{
public:
    void Add(HostnameLookup& lookup);
    YUnknownPointer<HostnameLookup> Take(const HostnameLookup& lookup);  // null: taken before
    std::vector<YUnknownPointer<HostnameLookup>> TakeAll();

private:
    YCriticalSection lock;
    std::vector<YUnknownPointer<HostnameLookup>> all;
};

// One question. Belongs to the thread that asks, by its window, but for Find, which is the pool's.
class HostnameLookup : public YUnknown<>, private YNotificationSink
{
public:
    HostnameLookup(std::shared_ptr<HostnameLookups> lookups, IHostnameResolverSink* receiver,
                   void* receiverContext)
        : underWay(std::move(lookups)), sink(receiver), context(receiverContext)
    {}
    HostnameLookup(const HostnameLookup&) = delete;
    HostnameLookup& operator=(const HostnameLookup&) = delete;

    // Not 0: why there will be no answer.
    unsigned Begin(const char* hostName, unsigned short wantedPort, int wantedProtocol);
    // It has been taken out, and nobody wants its answer.
    static void Drop(YUnknownPointer<HostnameLookup> lookup);

private:
    ~HostnameLookup() override { Destroy(); }

    enum : UINT { found = WM_USER + 1, dropped };

    static void CALLBACK RunInPool(TP_CALLBACK_INSTANCE*, void* lookup) noexcept;
    bool Submit();
    unsigned Find();
    void Answer();
    void Settle();
    LRESULT OnNotify(UINT message, WPARAM wParam, LPARAM lParam) override;

    const std::shared_ptr<HostnameLookups> underWay;
    YUnknownPointer<IHostnameResolverSink> sink;
    void* const context;
    wchar_t name[NI_MAXHOST];
    unsigned short port = 0;
    int protocol = 0;
    // What was found: the pool's until it has posted.
    unsigned error = WSA_NOT_ENOUGH_MEMORY;
    IHostnameResolverSink::Result result;
};

void HostnameLookups::Add(HostnameLookup& lookup)
{
    const std::lock_guard guard(lock);
    all.emplace_back(&lookup);
}

YUnknownPointer<HostnameLookup> HostnameLookups::Take(const HostnameLookup& lookup)
{
    const std::lock_guard guard(lock);
    const auto place =
        std::find_if(all.begin(), all.end(), [&](const auto& held) { return held == &lookup; });
    if (place == all.end()) {
        return nullptr;
    }
    auto taken = std::move(*place);
    all.erase(place);
    return taken;
}

std::vector<YUnknownPointer<HostnameLookup>> HostnameLookups::TakeAll()
{
    const std::lock_guard guard(lock);
    return std::exchange(all, {});
}

unsigned HostnameLookup::Begin(const char* hostName, unsigned short wantedPort, int wantedProtocol)
{
    port = wantedPort;
    protocol = wantedProtocol;
    if (!ToUtf16(hostName, name)) {
        return WSAHOST_NOT_FOUND;
    }
    if (!Create()) {
        return GetError().GetMessageId();
    }
    underWay->Add(*this);
    if (!Submit()) {
        const DWORD code = ::GetLastError();
        underWay->Take(*this);
        return code;
    }
    return ERROR_SUCCESS;
}

// The pool's item has a reference of its own.
bool HostnameLookup::Submit()
{
    TP_CALLBACK_ENVIRON environment;
    ::InitializeThreadpoolEnvironment(&environment);
    ::SetThreadpoolCallbackRunsLong(&environment);  // the pool makes room for others
    AddRef();
    const bool submitted = ::TrySubmitThreadpoolCallback(&RunInPool, this, &environment) != FALSE;
    if (!submitted) {
        Release();  // keeps the error: the caller has a reference
    }
    ::DestroyThreadpoolEnvironment(&environment);
    return submitted;
}

// Where the thread takes no more posts the message is sent. Where it is gone, or has been dropped,
// nobody waits for it.
void HostnameLookup::RunInPool(TP_CALLBACK_INSTANCE*, void* lookup) noexcept
{
    const auto self = YUnknownPointer<HostnameLookup>::Adopt(static_cast<HostnameLookup*>(lookup));
    try {
        self->error = self->Find();
    } catch (const std::bad_alloc&) {
        self->result.addresses.clear();  // the error is that of the beginning
    }
    static_cast<void>(self->Post(found, 0, 0) || self->Send(found, 0, 0));
}

// Without AI_ADDRCONFIG: it would deny a machine that has no network its own loopback names.
unsigned HostnameLookup::Find()
{
    const WinsockUse winsock;
    if (winsock.GetError() != 0) {
        return static_cast<unsigned>(winsock.GetError());
    }
    ADDRINFOW hints{};
    hints.ai_socktype = GetSocketType(protocol);
    hints.ai_protocol = protocol;
    ADDRINFOW* first = nullptr;
    const int code = ::GetAddrInfoW(name, nullptr, &hints, &first);
    const UniqueAddressInfo list(code == 0 ? first : nullptr);
    for (const ADDRINFOW* entry = list.Get(); entry; entry = entry->ai_next) {
        if (auto address = MakeAddressOf(*entry, port)) {
            result.addresses.push_back(std::move(address));
        }
    }
    return code == 0 && result.addresses.empty() ? WSAHOST_NOT_FOUND : static_cast<unsigned>(code);
}

LRESULT HostnameLookup::OnNotify(UINT message, WPARAM, LPARAM)
{
    switch (message) {
    case found: Answer(); break;
    case dropped: YUnknownPointer<HostnameLookup>::Adopt(this)->Settle(); break;  // its reference
    default: break;
    }
    return 0;
}

// The sink may do anything, and release the resolver too.
void HostnameLookup::Answer()
{
    const auto self = underWay->Take(*this);
    if (!self) {
        return;  // dropped: that message is on its way
    }
    const auto receiver = sink;
    Settle();
    receiver->OnHostname(context, YReportMessageParams(error), result);
}

void HostnameLookup::Drop(YUnknownPointer<HostnameLookup> lookup)
{
    const HostnameLookup& target = *lookup;
    if (!target.IsOwnThread() && (target.Post(dropped, 0, 0) || target.Send(dropped, 0, 0))) {
        static_cast<void>(lookup.Detach());  // the reference goes with the message
    } else {
        lookup->Settle();  // ours, or of a thread that has ended
    }
}

// The sink is released here: the last reference to this object may be the pool's.
void HostnameLookup::Settle()
{
    Destroy();
    sink.Reset();
}

ThreadedHostnameResolver::ThreadedHostnameResolver() : lookups(std::make_shared<HostnameLookups>())
{}

ThreadedHostnameResolver::~ThreadedHostnameResolver()
{
    for (YUnknownPointer<HostnameLookup>& lookup : lookups->TakeAll()) {
        HostnameLookup::Drop(std::move(lookup));
    }
}

void ThreadedHostnameResolver::Resolve(IHostnameResolverSink* sink, void* context,
                                       const char* hostName, unsigned short port, unsigned,
                                       int protocol)
{
    unsigned code = WSA_NOT_ENOUGH_MEMORY;
    try {
        const auto lookup = YUnknownPointer<HostnameLookup>::Make(lookups, sink, context);
        code = lookup->Begin(hostName, port, protocol);
    } catch (const std::bad_alloc&) {}
    if (code != ERROR_SUCCESS) {
        sink->OnHostname(context, YReportMessageParams(code), {});
    }
}
