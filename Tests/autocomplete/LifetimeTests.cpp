// What completion holds: with several edits and threads, under foreign subclasses, over many rounds,
// and when the system refuses what it asks for.
#include "autocomplete/PopupKit.h"
#include "support/CaseName.h"
#include "support/LeakCheck.h"
#include "support/TestThread.h"

#include <afxwin.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <optional>

namespace {

class LifetimeTest : public PopupTest
{
protected:
    // What the test itself holds of a round, and what the framework does until the thread is idle.
    void Forget()
    {
        source->requests.clear();
        source->sinks.clear();
        sink.accepted.clear();
        CWinThread().OnIdle(1);
    }
};

TEST_F(LifetimeTest, OneListAndOneHookForAllEditsOfAThread)
{
    ::DestroyWindow(edit);
    const LiveHooks hooks;
    const HWND edits[] = {MakeEdit(top), MakeEdit(top, 60), MakeEdit(top, 110)};
    for (const HWND each : edits) {
        Attach(each);
    }
    for (const HWND each : edits) {
        ASSERT_TRUE(Activate(each));  // which hides the list of the one before
        EXPECT_FALSE(IsShown());
        TypeAndAwaitList('A');
        RECT place{};
        RECT list{};
        ::GetWindowRect(each, &place);
        ::GetWindowRect(GetPopup(), &list);
        EXPECT_EQ(list.top, place.bottom);
        EXPECT_EQ(LiveHooks::Count(WH_GETMESSAGE), 1);
        EXPECT_EQ(LiveHooks::Count(WH_MOUSE), 1);
    }
    ::DestroyWindow(edits[2]);  // with the list
    EXPECT_FALSE(IsShown());
    EXPECT_EQ(LiveHooks::Count(WH_MOUSE), 0);
    ::DestroyWindow(edits[0]);
    EXPECT_EQ(LiveHooks::Count(WH_GETMESSAGE), 1);
    ASSERT_TRUE(Activate(edits[1]));
    TypeAndAwaitList('B');
    TypeKey(VK_TAB);
    EXPECT_EQ(GetTextOf(edits[1]), L"ab1");
    ::DestroyWindow(edits[1]);
    EXPECT_EQ(LiveHooks::Count(WH_GETMESSAGE) + LiveHooks::Count(WH_MOUSE), 0);
}

class ThreadsTest : public LifetimeTest, public testing::WithParamInterface<bool>
{};

// The system's input goes to the window in front, and window managers give the front to each window
// that comes up: the second thread's stays hidden, is told that it has the focus, and typed into by
// posted messages.
TEST_P(ThreadsTest, TwoThreadsEachHaveAList)
{
    const bool otherGoesFirst = GetParam();
    ::DestroyWindow(edit);
    const DWORD mine = ::GetCurrentThreadId();
    const LiveHooks hooks;
    const auto otherSource = YUnknownPointer<TestSource>::Make();
    otherSource->answersAtOnce = source->answersAtOnce;
    std::atomic<HWND> otherEdit = nullptr;
    std::atomic<bool> mayEnd = false;
    TestThread other([&] {
        const HWND window = ::CreateWindowExW(0, L"#32770", L"Other", WS_OVERLAPPEDWINDOW, 600, 100,
                                              300, 200, nullptr, nullptr, nullptr, nullptr);
        const HWND inner = MakeEdit(window);
        YAutoComplete::CreateAndAttach(inner, otherSource.Get(), nullptr, true);
        ::SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, EN_SETFOCUS),
                       reinterpret_cast<LPARAM>(inner));
        otherEdit = inner;
        PumpUntil([&] { return mayEnd.load(); }, 20'000);
        ::DestroyWindow(window);
        PumpMessages();
        otherSource->sinks.clear();
    });
    EXPECT_TRUE(PumpUntil([&] { return otherEdit != nullptr; }));
    const DWORD others = ::GetWindowThreadProcessId(otherEdit, nullptr);
    edit = MakeEdit(top);
    Attach(edit);
    EXPECT_TRUE(Activate(edit));
    TypeKey('A');
    EXPECT_TRUE(PumpUntil([&] { return IsShown(mine); }));
    ::PostMessageW(otherEdit, WM_CHAR, 'x', 0);
    EXPECT_TRUE(PumpUntil([&] { return IsShown(others) && LiveHooks::Count(WH_MOUSE) == 2; }));
    EXPECT_TRUE(IsShown(mine));
    EXPECT_EQ(LiveHooks::Count(WH_GETMESSAGE), 2);
    TypeKey(VK_TAB);
    ::PostMessageW(otherEdit, WM_KEYDOWN, VK_TAB, 0);
    EXPECT_TRUE(PumpUntil([&] { return GetTextOf(otherEdit) == L"x1"; }));
    EXPECT_EQ(GetText(), L"a1");
    if (!otherGoesFirst) {
        ::DestroyWindow(edit);
    }
    mayEnd = true;
    other.Join();
    EXPECT_EQ(LiveHooks::Count(WH_GETMESSAGE), otherGoesFirst ? 1 : 0);
    ::DestroyWindow(edit);
    EXPECT_EQ(LiveHooks::Count(WH_GETMESSAGE) + LiveHooks::Count(WH_MOUSE), 0);
}

INSTANTIATE_TEST_SUITE_P(OtherFirst, ThreadsTest, testing::Bool());

TEST_F(LifetimeTest, AcceptsOncePerKey)
{
    TypeAndAwaitList('A');
    TypeKey(VK_DOWN);
    TypeChord({VK_RETURN, VK_RETURN});  // held until it repeats: the list is hidden by then
    EXPECT_EQ(sink.accepted, (Texts{L"a1 list", L"a"}));
    TypeAndAwaitList('B');
    ClickLeft(GetList(), GetRow(2));
    EXPECT_TRUE(PumpUntil([] { return !IsShown(); }));
    EXPECT_EQ(sink.accepted.size(), 3u);
}

// Subclasses of others, over and under ours

int deathsUnder = 0;
int deathsOver = 0;
WNDPROC procedureUnder = nullptr;

LRESULT CALLBACK CountDeaths(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                             DWORD_PTR count)
{
    if (message == WM_NCDESTROY) {
        ++*reinterpret_cast<int*>(count);
        ::RemoveWindowSubclass(window, &CountDeaths, id);
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
}

LRESULT CALLBACK CountDeathsOldStyle(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    deathsOver += message == WM_NCDESTROY;
    return ::CallWindowProcW(procedureUnder, window, message, wParam, lParam);
}

void PutOver(HWND window, bool isOldStyle)
{
    if (isOldStyle) {
        procedureUnder = reinterpret_cast<WNDPROC>(::SetWindowLongPtrW(
            window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountDeathsOldStyle)));
    } else {
        ::SetWindowSubclass(window, &CountDeaths, 2, reinterpret_cast<DWORD_PTR>(&deathsOver));
    }
}

void TakeOff(HWND window, bool isOldStyle)
{
    if (isOldStyle) {
        ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedureUnder));
    } else {
        ::RemoveWindowSubclass(window, &CountDeaths, 2);
    }
}

struct SubclassCase
{
    const char* name;
    bool isOldStyle;
    bool goesBefore;  // the edit; else with it
};
class SubclassTest : public LifetimeTest, public testing::WithParamInterface<SubclassCase>
{};

TEST_P(SubclassTest, EverybodySeesTheEditGo)
{
    deathsUnder = deathsOver = 0;
    const HWND inner = MakeEdit(top, 60);
    ::SetWindowSubclass(inner, &CountDeaths, 1, reinterpret_cast<DWORD_PTR>(&deathsUnder));
    Attach(inner);
    PutOver(inner, GetParam().isOldStyle);
    ASSERT_TRUE(Activate(inner));
    TypeAndAwaitList('A');
    TypeKey(VK_DOWN);
    EXPECT_EQ(GetTextOf(inner), L"a1");
    if (GetParam().goesBefore) {
        TakeOff(inner, GetParam().isOldStyle);
        TypeKey(VK_DOWN);
        EXPECT_EQ(GetTextOf(inner), L"a2");
    }
    ::DestroyWindow(inner);
    EXPECT_FALSE(IsShown());
    EXPECT_EQ(deathsUnder, 1);
    EXPECT_EQ(deathsOver, GetParam().goesBefore ? 0 : 1);
    source->sinks.clear();
    EXPECT_EQ(source->AddRef(), 3u);  // ours and the other edit's
    source->Release();
}

INSTANTIATE_TEST_SUITE_P(Kinds, SubclassTest,
                         testing::Values(SubclassCase{"NewBefore", false, true},
                                         SubclassCase{"NewWith", false, false},
                                         SubclassCase{"OldBefore", true, true},
                                         SubclassCase{"OldWith", true, false}),
                         CaseName());

// Counting and refusing what the library asks the system for

long liveProperties = 0;
long liveGlobals = 0;

BOOL WINAPI CountingSetProp(HWND window, const wchar_t* name, HANDLE data)
{
    ++liveProperties;
    return ::SetPropW(window, name, data);
}

HANDLE WINAPI CountingRemoveProp(HWND window, const wchar_t* name)
{
    --liveProperties;
    return ::RemovePropW(window, name);
}

HGLOBAL WINAPI CountingGlobalAlloc(UINT flags, SIZE_T size)
{
    ++liveGlobals;
    return ::GlobalAlloc(flags, size);
}

HGLOBAL WINAPI CountingGlobalFree(HGLOBAL block)
{
    --liveGlobals;
    return ::GlobalFree(block);
}

// By posted keys. Edits and the windows that carry them go in turn.
TEST_F(LifetimeTest, AThousandRoundsLeaveNothing)
{
    const auto round = [this](bool editGoesFirst) {
        const HWND panel = ::CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 40, 300,
                                             100, top, nullptr, nullptr, nullptr);
        const HWND inner = MakeEdit(panel);
        Attach(inner);
        ::SetFocus(inner);
        ::PostMessageW(inner, WM_CHAR, 'x', 0);
        ASSERT_TRUE(PumpUntil([] { return IsShown(); }));
        if (editGoesFirst) {
            ::DestroyWindow(inner);
        }
        ::DestroyWindow(panel);
        ASSERT_FALSE(IsShown());
        Forget();
    };
    round(true);
    round(false);
    const ImportHook hooks[] = {
        {L"CommonUi.dll", "user32.dll", "SetPropW", &CountingSetProp},
        {L"CommonUi.dll", "user32.dll", "RemovePropW", &CountingRemoveProp},
        {L"CommonUi.dll", "kernel32.dll", "GlobalAlloc", &CountingGlobalAlloc},
        {L"CommonUi.dll", "kernel32.dll", "GlobalFree", &CountingGlobalFree},
    };
    liveProperties = liveGlobals = 0;
    const LeakCheck leaks;
    for (int i = 0; i < 1'000 && !HasFatalFailure(); ++i) {
        round(i % 2 == 0);
    }
    EXPECT_EQ(liveProperties, 0);
    EXPECT_EQ(liveGlobals, 0);
    EXPECT_EQ(source->AddRef(), 3u);  // ours and the other edit's
    source->Release();
}

unsigned failingCall = 0;  // the one that fails, from 1; 0: none
unsigned calls = 0;

bool FailsNow()
{
    return ++calls == failingCall;
}

BOOL WINAPI FailingSubclass(HWND window, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR data)
{
    return !FailsNow() && ::SetWindowSubclass(window, procedure, id, data);
}

decltype(&::SetWindowsHookExW) setHookBefore = nullptr;  // which counts what is set

HHOOK WINAPI FailingSetHook(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread)
{
    return FailsNow() ? nullptr : setHookBefore(kind, procedure, module, thread);
}

HWND WINAPI FailingCreateWindow(DWORD extendedStyle, const wchar_t* className, const wchar_t* text,
                                DWORD style, int x, int y, int width, int height, HWND parent,
                                HMENU menu, HINSTANCE instance, void* parameter)
{
    return FailsNow() ? nullptr
                      : ::CreateWindowExW(extendedStyle, className, text, style, x, y, width,
                                          height, parent, menu, instance, parameter);
}

BOOL WINAPI FailingSetProp(HWND window, const wchar_t* name, HANDLE data)
{
    return !FailsNow() && ::SetPropW(window, name, data);
}

HGLOBAL WINAPI FailingGlobalAlloc(UINT flags, SIZE_T size)
{
    return FailsNow() ? nullptr : ::GlobalAlloc(flags, size);
}

void* (*mallocBefore)(std::size_t) = nullptr;

void* FailingMalloc(std::size_t size)
{
    return FailsNow() ? nullptr : mallocBefore(size);
}

class RefusalTest : public LifetimeTest
{
protected:
    // Attaches to a new edit and types into it, while the n-th call of the function fails, for every
    // n: the edit takes its keys all the same, and leaves nothing. Returns how many n there were.
    template <class Function>
    unsigned Sweep(const char* library, const char* name, Function* replacement)
    {
        TypeWhileRefused();  // what the system makes once
        const LeakCheck leaks;
        const ImportHook hook(L"CommonUi.dll", library, name, replacement);
        if constexpr (std::is_same_v<Function, decltype(FailingSetHook)>) {
            setHookBefore = hook.Original<Function>();
        }
        for (failingCall = 1;; ++failingCall) {
            calls = 0;
            TypeWhileRefused();
            if (calls < failingCall) {
                return std::exchange(failingCall, 0) - 1;
            }
        }
    }

    void TypeWhileRefused()
    {
        const HWND inner = MakeEdit(top, 60);
        EXPECT_TRUE(YAutoComplete::CreateAndAttach(inner, source.Get(), &sink, true));
        ::SetFocus(inner);
        TypeKey('X');
        EXPECT_EQ(GetTextOf(inner), L"x");
        TypeKey(VK_DOWN);
        TypeKey(VK_RETURN);
        ::SetFocus(top);
        ::DestroyWindow(inner);
        PumpMessages();
        EXPECT_FALSE(IsShown());
        Forget();
    }
};

TEST_F(RefusalTest, AnEditIsUsableWhateverTheSystemRefuses)
{
    ::DestroyWindow(edit);
    EXPECT_EQ(Sweep("comctl32.dll", "SetWindowSubclass", &FailingSubclass), 4u);
    EXPECT_EQ(Sweep("user32.dll", "SetWindowsHookExW", &FailingSetHook), 2u);
    EXPECT_EQ(Sweep("user32.dll", "CreateWindowExW", &FailingCreateWindow), 4u);
    EXPECT_EQ(Sweep("user32.dll", "SetPropW", &FailingSetProp), 1u);
    EXPECT_EQ(Sweep("kernel32.dll", "GlobalAlloc", &FailingGlobalAlloc), 1u);
}

TEST_F(RefusalTest, NothingIsAttachedWithoutMemory)
{
    ::DestroyWindow(edit);
    TypeWhileRefused();
    const LeakCheck leaks;
    unsigned refused = 0;
    bool wasRefused = true;
    while (wasRefused) {
        const HWND inner = MakeEdit(top, 60);
        wasRefused = false;
        try {
            const ImportHook hook(L"libstdc++-6.dll", "msvcrt.dll", "malloc", &FailingMalloc);
            mallocBefore = hook.Original<void*(std::size_t)>();
            calls = 0;
            failingCall = refused + 1;
            YAutoComplete::CreateAndAttach(inner, source.Get(), &sink, true);
        } catch (const std::bad_alloc&) {
            wasRefused = true;
            ++refused;
        }
        failingCall = 0;
        ::SetFocus(inner);
        TypeKey('X');
        EXPECT_EQ(GetTextOf(inner), L"x");
        EXPECT_EQ(source->requests.empty(), wasRefused);
        ::SetFocus(top);
        ::DestroyWindow(inner);
        PumpMessages();
        Forget();
    }
    EXPECT_GE(refused, 3u);  // the object and its entries in two tables
}

}  // namespace
