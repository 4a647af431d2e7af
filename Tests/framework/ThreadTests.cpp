// Threads of the framework: pumping, translating, idle time, exceptions.
#include "WindowTest.h"

#include <thread>

namespace {

constexpr UINT workMessage = WM_APP + 1;

class Translator : public CWnd
{
public:
    Translator(Log& shared, const char* title) : log(shared), name(title) {}
    bool eats = false;

    BOOL PreTranslateMessage(MSG* message) override
    {
        if (message->message == workMessage) {
            log.push_back(name);
        }
        return message->message == workMessage && eats;
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == workMessage) {
            log.push_back(std::string(name) + " handles");
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }

    Log& log;
    const char* name;
};

// A user-interface thread that does what its test tells it in InitInstance.
class TestThread : public CWinThread
{
    DECLARE_DYNCREATE(TestThread)

    BOOL InitInstance() override
    {
        main.CreateEx(0, nullptr, nullptr, WS_OVERLAPPEDWINDOW, 0, 0, 99, 99, nullptr, nullptr);
        child.Create(nullptr, nullptr, WS_CHILD, CRect(0, 0, 9, 9), &main, 1);
        m_pMainWnd = &main;
        return TRUE;
    }
    int ExitInstance() override
    {
        log.push_back(AfxGetThread() == this ? "exit" : "exit elsewhere");
        return CWinThread::ExitInstance();
    }
    BOOL OnIdle(LONG count) override
    {
        idleCounts.push_back(count);
        const BOOL more = CWinThread::OnIdle(count);
        if (!more) {
            OnRested();
        }
        return more;
    }
    LRESULT ProcessWndProcException(CException* exception, const MSG* message) override
    {
        log.push_back(exception->IsKindOf(RUNTIME_CLASS(CUserException)) ? "user exception"
                                                                         : "other exception");
        return CWinThread::ProcessWndProcException(exception, message);
    }

    Log log;
    std::vector<LONG> idleCounts;
    Translator main{log, "main"};
    Translator child{log, "child"};

protected:
    // One step of the script each time the thread has nothing left to do.
    void OnRested()
    {
        switch (step++) {
        case 0: child.PostMessage(workMessage); break;
        case 1:
            main.eats = true;
            child.PostMessage(workMessage);
            break;
        case 2: PostThreadMessage(workMessage, 3, 4); break;
        case 3: PostThreadMessage(workMessage, 0, 0); break;
        case 4: main.PostMessage(WM_CLOSE); break;
        default: break;
        }
    }
    afx_msg void OnThreadMessage(WPARAM wParam, LPARAM lParam)
    {
        log.push_back("thread " + std::to_string(wParam + static_cast<WPARAM>(lParam)));
        if (wParam == 0) {
            AfxThrowUserException();
        }
    }
    DECLARE_MESSAGE_MAP()

private:
    int step = 0;
};

IMPLEMENT_DYNCREATE(TestThread, CWinThread)

BEGIN_MESSAGE_MAP(TestThread, CWinThread)
    ON_THREAD_MESSAGE(workMessage, &TestThread::OnThreadMessage)
END_MESSAGE_MAP()

UINT AFX_CDECL SetToThread(LPVOID parameter)
{
    *static_cast<CWinThread**>(parameter) = AfxGetThread();
    return 7;
}

DWORD JoinThread(HANDLE thread)
{
    DWORD exitCode = 0;
    EXPECT_EQ(::WaitForSingleObject(thread, 10000), WAIT_OBJECT_0);
    ::GetExitCodeThread(thread, &exitCode);
    return exitCode;
}

}  // namespace

TEST(CWinThreadTest, TranslatesPumpsRestsAndEndsWithItsMainWindow)
{
    TestThread thread;
    thread.m_bAutoDelete = FALSE;
    ASSERT_TRUE(thread.CreateThread());
    EXPECT_EQ(JoinThread(thread), 0U);
    EXPECT_EQ(thread.log, (Log{"child", "main", "child handles",  // offered upwards, then delivered
                               "child", "main",  // eaten by the main window
                               "thread 7", "thread 0", "user exception", "exit"}));
    EXPECT_EQ(thread.m_pMainWnd, nullptr);
    ASSERT_GE(thread.idleCounts.size(), 2U);
    EXPECT_EQ(thread.idleCounts[0], 0);
    EXPECT_EQ(thread.idleCounts[1], 1);
}

TEST(CWinThreadTest, AutomaticThreadDeletesItself)
{
    CWinThread* seen = nullptr;
    CWinThread* const worker =
        AfxBeginThread(&SetToThread, &seen, THREAD_PRIORITY_NORMAL, 0, CREATE_SUSPENDED);
    HANDLE handle = nullptr;
    ::DuplicateHandle(::GetCurrentProcess(), *worker, ::GetCurrentProcess(), &handle, 0, FALSE,
                      DUPLICATE_SAME_ACCESS);
    worker->ResumeThread();
    EXPECT_EQ(JoinThread(handle), 7U);
    ::CloseHandle(handle);
    EXPECT_EQ(seen, worker);  // the leak counters see whether it is gone
}

TEST(CWinThreadTest, WindowsWorkOnThreadsThatTheFrameworkDidNotStart)
{
    std::thread([] {
        EXPECT_EQ(AfxGetThread(), nullptr);
        EXPECT_EQ(AfxGetMainWnd(), nullptr);
        Log log;
        Translator window(log, "window");
        ASSERT_TRUE(window.CreateEx(0, nullptr, nullptr, WS_OVERLAPPEDWINDOW, 0, 0, 9, 9, nullptr,
                                    nullptr));
        window.SendMessage(workMessage);
        EXPECT_NE(window.GetWindow(GW_HWNDFIRST), nullptr);  // a temporary object of this thread
        EXPECT_TRUE(window.DestroyWindow());
        EXPECT_EQ(log, (Log{"window handles"}));
    }).join();
}
