// Work for later: in order, once, on the right thread, and nobody waits for ever.
#include "YMfcThread.h"
#include "YMsgDeferredProcedureDispatcher.h"
#include "YUnknownPointer.h"
#include "support/ImportHook.h"
#include "support/Input.h"
#include "support/TestThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <stdexcept>
#include <vector>

namespace {

constexpr DWORD limit = 20'000;  // milliseconds, for what must happen

using Dispatcher = YUnknownPointer<IDeferredProcedureDispatcher>;

class Procedure : public YUnknown<IDeferredProcedure>
{
public:
    explicit Procedure(std::function<void(unsigned)> body) : work(std::move(body)) { ++live; }
    void Run(unsigned argument) override { work(argument); }

    static inline std::atomic<int> live = 0;

protected:
    ~Procedure() override { --live; }

private:
    std::function<void(unsigned)> work;
};

void Queue(IDeferredProcedureDispatcher& dispatcher, std::function<void(unsigned)> work,
           unsigned argument = 0)
{
    dispatcher.Queue(YUnknownPointer<Procedure>::Make(std::move(work)).Get(), argument);
}

Dispatcher MakeMessageDispatcher()
{
    return Dispatcher::Adopt(CreateYMsgDeferredProcedureDispatcher(nullptr));
}

// What posting does, while one of these lives.
class PostHook
{
public:
    explicit PostHook(bool isPossible)
    {
        works = isPossible;
        posts = 0;
    }

    static inline int posts;

private:
    static BOOL WINAPI Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        ++posts;
        ::SetLastError(works ? ERROR_SUCCESS : ERROR_NOT_ENOUGH_QUOTA);
        return works && ::PostMessageW(window, message, wParam, lParam);
    }

    static inline bool works;
    const ImportHook hook{L"CommonUi.dll", "user32.dll", "PostMessageW", &Post};
};

class DispatchTest : public testing::Test
{
protected:
    ~DispatchTest() override
    {
        EXPECT_TRUE(PumpUntil([] { return Procedure::live == 0; }));
    }

    std::function<void(unsigned)> Note()
    {
        return [this](unsigned argument) { order.push_back(argument); };
    }

    std::vector<unsigned> order;
    Dispatcher dispatcher = Dispatcher::Adopt(new YDeferredProcedureDispatcher);
};

TEST_F(DispatchTest, RunsInOrderAndWhatIsQueuedMeanwhile)
{
    EXPECT_FALSE(dispatcher->Dispatch());
    Queue(*dispatcher, Note(), 1);
    Queue(
        *dispatcher,
        [&](unsigned argument) {
            order.push_back(argument);
            Queue(*dispatcher, Note(), 4);
            EXPECT_FALSE(dispatcher->Dispatch());
        },
        2);
    dispatcher->Queue(nullptr, 9);
    Queue(*dispatcher, Note(), 0xFFFFFFFF);
    EXPECT_TRUE(dispatcher->Dispatch());
    EXPECT_EQ(order, (std::vector<unsigned>{1, 2, 0xFFFFFFFF, 4}));
    EXPECT_FALSE(dispatcher->Dispatch());
}

TEST_F(DispatchTest, LastReferenceMayGoInsideAProcedure)
{
    for (const bool byMessage : {false, true}) {
        dispatcher = byMessage ? MakeMessageDispatcher()
                               : Dispatcher::Adopt(new YDeferredProcedureDispatcher);
        bool released = false;
        Queue(*dispatcher, [&](unsigned) {
            dispatcher.Reset();
            released = true;
        });
        Queue(*dispatcher, Note(), 2);
        if (!byMessage) {
            EXPECT_TRUE(dispatcher.Get()->Dispatch());
        }
        EXPECT_TRUE(PumpUntil([&] { return released; }));
        EXPECT_EQ(Procedure::live, 0);
    }
    EXPECT_TRUE(order.empty());
}

TEST_F(DispatchTest, OneMessageServesAllThatIsQueuedBeforeIt)
{
    dispatcher = MakeMessageDispatcher();
    const PostHook hook(true);
    for (int round = 1; round <= 2; ++round) {
        order.clear();
        Queue(*dispatcher, Note(), 1);
        Queue(*dispatcher, Note(), 2);
        EXPECT_TRUE(order.empty());
        EXPECT_TRUE(PumpUntil([&] { return order.size() == 2; }));
        EXPECT_EQ(PostHook::posts, round);
    }
}

TEST_F(DispatchTest, ExceptionStaysInTheWindowAndTheRestRuns)
{
    dispatcher = MakeMessageDispatcher();
    Queue(*dispatcher, [](unsigned) { throw std::runtime_error("a procedure"); });
    Queue(*dispatcher, [](unsigned) { AfxThrowUserException(); });
    Queue(*dispatcher, Note(), 3);
    EXPECT_TRUE(PumpUntil([&] { return !order.empty(); }));

    // The message comes while the direct call is busy, and finds nothing to do.
    Queue(*dispatcher, [](unsigned) {
        PumpMessages();
        throw std::runtime_error("a procedure");
    });
    Queue(*dispatcher, Note(), 4);
    EXPECT_THROW(dispatcher->Dispatch(), std::runtime_error);
    EXPECT_TRUE(PumpUntil([&] { return order.size() == 2; }));
}

TEST_F(DispatchTest, FailedPostLosesNothing)
{
    dispatcher = MakeMessageDispatcher();
    {
        const PostHook hook(false);
        Queue(*dispatcher, Note(), 1);
        Queue(*dispatcher, Note(), 2);
        EXPECT_EQ(PostHook::posts, 2);
    }
    PumpMessages();
    EXPECT_TRUE(order.empty());
    Queue(*dispatcher, Note(), 3);
    EXPECT_TRUE(PumpUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<unsigned>{1, 2, 3}));
}

TEST_F(DispatchTest, ManyThreadsLoseNothingAndKeepTheirOrder)
{
    constexpr unsigned threads = 8;
    constexpr unsigned callsEach = 100'000;
    class Counter : public YUnknown<IDeferredProcedure>
    {
    public:
        void Run(unsigned argument) override
        {
            mistakes += argument != next || ::GetCurrentThreadId() != owner;
            ++next;
        }
        unsigned next = 0;
        unsigned mistakes = 0;
        const DWORD owner = ::GetCurrentThreadId();
    };

    dispatcher = MakeMessageDispatcher();
    std::array<YUnknownPointer<Counter>, threads> counters;
    std::array<std::unique_ptr<TestThread>, threads> running;
    for (unsigned i = 0; i < threads; ++i) {
        counters[i] = YUnknownPointer<Counter>::Make();
        running[i] = std::make_unique<TestThread>([&, counter = counters[i].Get()] {
            for (unsigned call = 0; call < callsEach; ++call) {
                dispatcher->Queue(counter, call);
            }
        });
    }
    const auto isDone = [&] {
        return std::ranges::all_of(counters, [](auto& c) { return c->next == callsEach; });
    };
    EXPECT_TRUE(PumpUntil(isDone, 120'000));
    running = {};
    PumpMessages();
    for (const auto& counter : counters) {
        EXPECT_EQ(counter->next, callsEach);
        EXPECT_EQ(counter->mistakes, 0u);
    }
}

// The dispatcher of a thread that is at work, and its last reference.
class OtherThreadsDispatcher : public DispatchTest
{
protected:
    OtherThreadsDispatcher()
    {
        EXPECT_TRUE(thread->Start(nullptr));
        Call([&] { dispatcher = MakeMessageDispatcher(); });
    }
    ~OtherThreadsDispatcher() override { EXPECT_TRUE(thread->Stop(limit)); }

    // On the thread, while this one waits.
    void Call(const std::function<void()>& work)
    {
        const YUniqueKernelHandle done(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
        Queue(*thread->GetDispatcher(), [&](unsigned) {
            work();
            ::SetEvent(done.Get());
        });
        EXPECT_EQ(::WaitForSingleObject(done.Get(), limit), WAIT_OBJECT_0);
    }

    const YUnknownPointer<YMfcThread> thread = YUnknownPointer<YMfcThread>::Make();
};

TEST_F(OtherThreadsDispatcher, EndsWhileCallsAreQueuedAndRun)
{
    for (int round = 0; round < 50; ++round) {
        Call([&] { dispatcher = MakeMessageDispatcher(); });
        std::atomic<int> ran = 0;
        for (int i = 0; i < 100; ++i) {
            Queue(*dispatcher, [&](unsigned) { ++ran; });
        }
        dispatcher.Reset();
        const int ranBefore = ran;
        Call([] {});
        EXPECT_LE(ran, ranBefore + 1) << round;  // one may have been about to run
        EXPECT_TRUE(PumpUntil([] { return Procedure::live == 0; })) << round;
    }
}

TEST_F(OtherThreadsDispatcher, EndsWhenItsThreadHas)
{
    Queue(*dispatcher, Note(), 1);
    EXPECT_TRUE(thread->Stop(limit));
    EXPECT_EQ(order, (std::vector<unsigned>{1}));  // what was queued before the stop
    Queue(*dispatcher, Note(), 2);
    dispatcher.Reset();
    EXPECT_EQ(Procedure::live, 0);
}

TEST_F(OtherThreadsDispatcher, EndsWhenItsThreadEndsMeanwhile)
{
    Queue(*thread->GetDispatcher(), [](unsigned) {
        MSG message;
        while (!::PeekMessageW(&message, nullptr, WM_CLOSE, WM_CLOSE, PM_REMOVE)) {
            ::SwitchToThread();
        }
        ::AfxPostQuitMessage(0);  // and the close is never handled
    });
    dispatcher.Reset();
    EXPECT_TRUE(thread->Stop(limit));
}

TEST_F(OtherThreadsDispatcher, EndsWhereNothingCanBePosted)
{
    Call([&] { dispatcher = MakeMessageDispatcher(); });
    {
        const PostHook hook(false);
        dispatcher.Reset();  // its thread serves what is sent to it
    }
    Call([&] { dispatcher = MakeMessageDispatcher(); });
    const YUniqueKernelHandle released(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    Queue(*thread->GetDispatcher(),
          [&](unsigned) { ::WaitForSingleObject(released.Get(), limit); });
    Queue(*dispatcher, Note(), 1);
    {
        const PostHook hook(false);
        dispatcher.Reset();  // its thread serves nobody
    }
    ::SetEvent(released.Get());
    EXPECT_TRUE(thread->Stop(limit));
    EXPECT_TRUE(order.empty());
}

class Sink : public YNotificationSink
{
public:
    ~Sink() override { Destroy(); }
    LRESULT OnNotify(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        seen = {message, wParam, static_cast<WPARAM>(lParam), ::GetCurrentThreadId()};
        return 7;
    }
    std::array<DWORD, 4> seen{};
};

TEST(YNotificationSink, HandsOnWhatIsPostedToIt)
{
    Sink sink;
    EXPECT_FALSE(sink.Post(WM_USER, 0, 0));
    ASSERT_TRUE(sink.Create());
    TestThread([&] { EXPECT_TRUE(!sink.IsOwnThread() && sink.Post(WM_APP, 3, 4)); }).Join();
    EXPECT_TRUE(PumpUntil([&] { return sink.seen[0] == WM_APP; }));
    EXPECT_EQ(sink.seen, (std::array<DWORD, 4>{WM_APP, 3, 4, ::GetCurrentThreadId()}));
    EXPECT_TRUE(sink.Post(WM_USER, 0, 0));
    sink.Destroy();
    PumpMessages();
    EXPECT_EQ(sink.seen[0], DWORD{WM_APP});
}

TEST_F(OtherThreadsDispatcher, SinkFollowsToTheThreadThatCreatesItAgain)
{
    Sink sink;
    Call([&] { EXPECT_TRUE(sink.Create()); });
    EXPECT_TRUE(sink.Create());
    EXPECT_TRUE(sink.IsOwnThread());
    EXPECT_TRUE(sink.Post(WM_USER, 0, 0));
    EXPECT_TRUE(PumpUntil([&] { return sink.seen[3] == ::GetCurrentThreadId(); }));
}

TEST(YMfcThread, IsStartedOnceAndStoppedWithinALimit)
{
    const auto thread = YUnknownPointer<YMfcThread>::Make();
    EXPECT_EQ(thread->GetDispatcher(), nullptr);
    EXPECT_TRUE(thread->Stop(0));
    EXPECT_TRUE(thread->Start(nullptr));
    EXPECT_FALSE(thread->Start(nullptr));

    const YUniqueKernelHandle leave(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    Queue(*thread->GetDispatcher(), [&](unsigned) {
        EXPECT_FALSE(thread->Stop(INFINITE));
        ::WaitForSingleObject(leave.Get(), limit);
    });
    EXPECT_FALSE(thread->Stop(10));
    ::SetEvent(leave.Get());
    EXPECT_TRUE(thread->Stop(limit));
}

TEST(YMfcThread, LivesUntilItHasStopped)
{
    for (int round = 0; round < 20; ++round) {
        auto thread = YUnknownPointer<YMfcThread>::Make();
        ASSERT_TRUE(thread->Start(nullptr));
        const YUniqueKernelHandle ends(::OpenThread(SYNCHRONIZE, FALSE, thread->m_nThreadID));
        thread->Stop(0);
        thread.Reset();
        EXPECT_EQ(::WaitForSingleObject(ends.Get(), limit), WAIT_OBJECT_0);
    }
}

}  // namespace
