// The resolver for hosts: real look-ups, and slow and failing ones in the system's place.
#include "HostnameResolver.h"

#include "network/SocketKit.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"
#include "support/TestThread.h"

#include <CommonUiInit.h>
#include <YReportMessageParams.h>

#include <atomic>

namespace {

struct NameSink : YUnknown<IHostnameResolverSink>
{
    void OnHostname(void*, const YReportMessageParams& report, const Result& found) override
    {
        answers += ::GetCurrentThreadId() == thread ? 1 : 1'000;
        error = report.GetMessageId();
        result = found;
    }
    bool IsAlone() { return AddRef(), Release() == 1; }

    const DWORD thread = ::GetCurrentThreadId();
    unsigned answers = 0;
    unsigned error = 0;
    Result result;
};

// In the place of GetAddrInfoW.
std::atomic<int> asked = 0;
std::atomic<bool> isGateOpen = false;

int WINAPI FindSlowly(const wchar_t*, const wchar_t*, const ADDRINFOW*, ADDRINFOW**)
{
    for (++asked; !isGateOpen;) {
        ::SwitchToThread();
    }
    return WSATRY_AGAIN;
}

BOOL WINAPI RefuseItem(PTP_SIMPLE_CALLBACK, void*, PTP_CALLBACK_ENVIRON)
{
    ::SetLastError(ERROR_NO_SYSTEM_RESOURCES);
    return FALSE;
}

YUnknownPointer<ThreadedHostnameResolver> resolver;

struct HostnameResolver : testing::Test
{
    HostnameResolver() { resolver = YUnknownPointer<ThreadedHostnameResolver>::Make(); }
    ~HostnameResolver() override { resolver.Reset(); }

    void Resolve(const char* name, int protocol = IPPROTO_TCP) const
    {
        resolver->Resolve(sink.Get(), nullptr, name, 7000, 0, protocol);
    }
    bool WaitForAnswers(unsigned count) const
    {
        return PumpUntil([&] { return sink->answers == count; }, 20'000);
    }

    YUnknownPointer<NameSink> sink = YUnknownPointer<NameSink>::Make();
};

TEST_F(HostnameResolver, AnswersOnceWhatCannotBeFound)
{
    const std::string tooLong(NI_MAXHOST, 'a');
    unsigned count = 0;
    for (const char* name : {"no-such-name.invalid", "", "\xFF", tooLong.c_str()}) {
        Resolve(name);
        ASSERT_TRUE(WaitForAnswers(++count));
        EXPECT_TRUE(sink->error != 0 && sink->result.addresses.empty()) << name;
    }
    const ImportHook pool(L"BackendTests.exe", "kernel32.dll", "TrySubmitThreadpoolCallback",
                          &RefuseItem);
    Resolve("localhost");
    EXPECT_EQ(sink->answers, ++count);
    EXPECT_EQ(sink->error, unsigned{ERROR_NO_SYSTEM_RESOURCES});
}

TEST_F(HostnameResolver, AsksForEightAtOnceAndDropsThemWithTheLastRelease)
{
    const ImportHook hook(L"BackendTests.exe", "ws2_32.dll", "GetAddrInfoW", &FindSlowly);
    for (const bool isDropped : {false, true}) {
        resolver.Reset();
        const long blocks = CountResources().blocks;
        resolver = YUnknownPointer<ThreadedHostnameResolver>::Make();
        asked = 0;
        isGateOpen = false;
        TestThread other([] {
            const auto own = YUnknownPointer<NameSink>::Make();
            resolver->Resolve(own.Get(), nullptr, "slow", 1, 0, IPPROTO_TCP);
            EXPECT_TRUE(PumpUntil([&] { return own->IsAlone(); }, 30'000));
            EXPECT_EQ(own->answers, isGateOpen ? 1u : 0u);
        });
        for (int i = 1; i < 8; ++i) {
            Resolve("slow");
        }
        EXPECT_TRUE(PumpUntil([] { return asked == 8; }, 20'000)) << asked << " at once";
        if (isDropped) {
            resolver.Reset();
            EXPECT_TRUE(sink->IsAlone()) << "released before the resolver is gone";
            other.Join();
        }
        isGateOpen = true;
        other.Join();
        EXPECT_TRUE(WaitForAnswers(7));
        const auto isAllGone = [&] { return CountResources().blocks == blocks; };
        EXPECT_TRUE(!isDropped || PumpUntil(isAllGone, 20'000)) << "late answers go to nobody";
    }
    EXPECT_EQ(sink->answers, 7u);
    EXPECT_EQ(sink->error, unsigned{WSATRY_AGAIN});
}

TEST_F(HostnameResolver, LetsASocketConnectByName)
{
    CommonUiInit([]() -> IHostnameResolver* { return resolver.Get(); }, nullptr, nullptr);
    const Listener listener;
    listener.socket->Accept(nullptr);
    const auto socket = YUnknownPointer<YIoSocket>::Make();
    const auto answers = YUnknownPointer<RecordingSink>::Make();
    socket->SetSink(answers.Get());
    socket->CreateAndConnect(Context(4), "localhost", listener.address->GetPort(), sink.Get());
    EXPECT_TRUE(answers->WaitForCount(1) && listener.sink->WaitForCount(1));
    EXPECT_EQ(answers->answers, (std::vector<SocketAnswer>{{"connect", Context(4)}}));
    ASSERT_FALSE(sink->result.addresses.empty());
    const IInternetAddress& first = *sink->result.addresses.front();
    EXPECT_TRUE(first.IsLoopback() && first.GetProtocol() == IPPROTO_TCP);
    EXPECT_EQ(sink->answers, 1u);
    CommonUiInit(nullptr, nullptr, nullptr);
}

}  // namespace
