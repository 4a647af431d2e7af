// What a program offers on the clipboard: formats, copies, life time, a clipboard that is busy.
#include "afxole.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <future>
#include <string>
#include <thread>

namespace {

using namespace std::chrono_literals;

// Says when it goes.
class CountedSource : public COleDataSource
{
public:
    CountedSource() { ++live; }
    ~CountedSource() override { --live; }

    static inline std::atomic<int> live = 0;
};

HGLOBAL BlockOf(const std::wstring& text)
{
    const SIZE_T bytes = (text.size() + 1) * sizeof(wchar_t);
    const HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, bytes);
    std::memcpy(::GlobalLock(block), text.c_str(), bytes);
    ::GlobalUnlock(block);
    return block;
}

// The clipboard, open with a window of the calling thread: without one others are not kept out.
class OpenedClipboard
{
public:
    OpenedClipboard()
        : window(::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                   nullptr))
    {
        for (int i = 0; i < 100 && !::OpenClipboard(window); ++i) {
            std::this_thread::sleep_for(1ms);
        }
        EXPECT_EQ(::GetOpenClipboardWindow(), window);
    }
    ~OpenedClipboard()
    {
        ::CloseClipboard();
        ::DestroyWindow(window);
    }

    static std::wstring Text()
    {
        const HANDLE block = ::GetClipboardData(CF_UNICODETEXT);
        const auto* locked = static_cast<const wchar_t*>(::GlobalLock(block));
        std::wstring text = locked == nullptr ? L"" : locked;
        ::GlobalUnlock(block);
        return text;
    }

private:
    HWND window;
};

void EmptyTheClipboard()
{
    OpenedClipboard clipboard;
    ::EmptyClipboard();
}

// Holds the clipboard open from another thread.
class BusyClipboard
{
public:
    explicit BusyClipboard(std::chrono::milliseconds time)
        : holder([this, time] {
              OpenedClipboard opened;
              isHeld = true;
              isHeld.notify_one();
              released.get_future().wait_for(time);
          })
    {
        isHeld.wait(false);
    }
    ~BusyClipboard()
    {
        released.set_value();
        holder.join();
    }

private:
    std::atomic<bool> isHeld = false;
    std::promise<void> released;
    std::thread holder;
};

class DataSourceTest : public testing::Test
{
protected:
    void TearDown() override
    {
        EmptyTheClipboard();
        EXPECT_EQ(CountedSource::live, 0);
    }

    void Offer(const std::wstring& text)
    {
        COleDataSource* source = new CountedSource;
        source->CacheGlobalData(CF_UNICODETEXT, BlockOf(text));
        source->SetClipboard();
    }
};

// With OLE on the test's own thread.
class OleClipboardTest : public DataSourceTest
{
protected:
    void SetUp() override { ASSERT_TRUE(AfxOleInit()); }
    void TearDown() override
    {
        DataSourceTest::TearDown();
        AfxOleTerm();
    }
};

}  // namespace

TEST_F(OleClipboardTest, WaitsForAClipboardThatIsBusyForAMoment)
{
    Offer(L"before");
    BusyClipboard busy(30ms);
    Offer(L"patient");
    EXPECT_EQ(CountedSource::live, 1);  // the last one
    EXPECT_EQ(OpenedClipboard().Text(), L"patient");
}

TEST_F(OleClipboardTest, GivesUpOnABusyClipboardAndLeavesNothing)
{
    Offer(L"before");
    const auto start = std::chrono::steady_clock::now();
    {
        BusyClipboard busy(10s);
        Offer(L"never");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    EXPECT_EQ(CountedSource::live, 1);
    EXPECT_EQ(OpenedClipboard().Text(), L"before");
}

TEST_F(DataSourceTest, BeginsOleForAThreadThatHasNone)
{
    ASSERT_EQ(::OleSetClipboard(nullptr), CO_E_NOTINITIALIZED);
    Offer(L"late");
    EXPECT_EQ(CountedSource::live, 1);
    AfxOleTerm(TRUE);
    EXPECT_EQ(CountedSource::live, 0);
    EXPECT_EQ(::OleSetClipboard(nullptr), S_OK);
    Offer(L"kept");
    AfxOleTerm();
    EXPECT_EQ(::OleSetClipboard(nullptr), CO_E_NOTINITIALIZED);
    EXPECT_EQ(OpenedClipboard().Text(), L"kept");
}
