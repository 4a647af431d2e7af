// PopupKit.h: an edit with completion in a real window, and what a test sees and does of it.
#pragma once

#include "autocomplete/Kit.h"
#include "autocomplete/YAutoComplete.h"
#include "support/ImportHook.h"
#include "support/Input.h"

#include <afxwin.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <map>
#include <mutex>
#include <string>
#include <vector>

using Texts = std::vector<std::wstring>;

// The pop-up that is shown, or else one that is not; null: there is none. thread: 0 for any.
inline HWND GetPopup(DWORD thread = 0)
{
    constexpr wchar_t popupClass[] = L"YAutoCompleteListViewParentWindowClass";
    HWND hidden = nullptr;
    for (HWND popup = nullptr;
         (popup = ::FindWindowExW(nullptr, popup, popupClass, nullptr)) != nullptr;) {
        if (thread != 0 && ::GetWindowThreadProcessId(popup, nullptr) != thread) {
            continue;
        }
        if (::IsWindowVisible(popup)) {
            return popup;
        }
        hidden = popup;
    }
    return hidden;
}

inline bool IsShown(DWORD thread = 0)
{
    return ::IsWindowVisible(GetPopup(thread)) != FALSE;
}

inline HWND GetList()
{
    return ::FindWindowExW(GetPopup(), nullptr, L"SysListView32", nullptr);
}

inline std::wstring GetTextOf(HWND window)
{
    wchar_t text[100];
    ::GetWindowTextW(window, text, 100);
    return text;
}

// In client coordinates of the list.
inline POINT GetRow(int row)
{
    RECT place{};
    place.left = LVIR_BOUNDS;
    ::SendMessageW(GetList(), LVM_GETITEMRECT, static_cast<WPARAM>(row),
                   reinterpret_cast<LPARAM>(&place));
    return {20, (place.top + place.bottom) / 2};
}

inline void Open(CWnd& window, int left, DWORD extendedStyle = 0)
{
    ASSERT_TRUE(window.CreateEx(extendedStyle, nullptr, L"Top", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                left, 100, 400, 300, nullptr, nullptr));
}

inline HWND MakeEdit(HWND parent, int top = 10)
{
    return ::CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"",
                             WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, 10, top, 200, 22,
                             parent, nullptr, nullptr, nullptr);
}

// Keys down in their order and up again in the opposite one, all before any is handled.
inline void TypeChord(std::initializer_list<WORD> keys)
{
    std::vector<INPUT> inputs;
    for (const WORD key : keys) {
        INPUT down{};
        down.type = INPUT_KEYBOARD;
        down.ki.wVk = key;
        inputs.push_back(down);
    }
    for (std::size_t i = keys.size(); i-- > 0;) {
        inputs.push_back(inputs[i]);
        inputs.back().ki.dwFlags = KEYEVENTF_KEYUP;
    }
    ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    PumpMessages();
}

// Once a window manager that is late has given the window back what it took for the pop-up.
inline void TypeAndAwaitList(char key)
{
    EXPECT_TRUE(PumpUntil([] {
        return ::GetFocus() && ::GetForegroundWindow() == ::GetAncestor(::GetFocus(), GA_ROOT);
    }));
    TypeKey(static_cast<WORD>(key));
    EXPECT_TRUE(PumpUntil([] { return IsShown(); }));
}

// The hooks that the library sets and holds while this lives, by kind. One at a time.
class LiveHooks
{
public:
    LiveHooks()
    {
        live.clear();
        setBefore = set.Original<decltype(Set)>();
        removeBefore = remove.Original<decltype(Remove)>();
    }
    static long Count(int kind)
    {
        const std::lock_guard lock(mutex);
        return std::count_if(live.begin(), live.end(),
                             [kind](const auto& entry) { return entry.second == kind; });
    }

private:
    static HHOOK WINAPI Set(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread)
    {
        const HHOOK hook = setBefore(kind, procedure, module, thread);
        const std::lock_guard lock(mutex);
        live[hook] = kind;
        return hook;
    }
    static BOOL WINAPI Remove(HHOOK hook)
    {
        const std::lock_guard lock(mutex);
        live.erase(hook);
        return removeBefore(hook);
    }

    static inline std::mutex mutex;
    static inline std::map<HHOOK, int> live;
    static inline decltype(&Set) setBefore;
    static inline decltype(&Remove) removeBefore;
    const ImportHook set{L"CommonUi.dll", "user32.dll", "SetWindowsHookExW", &Set};
    const ImportHook remove{L"CommonUi.dll", "user32.dll", "UnhookWindowsHookEx", &Remove};
};

// A data source that offers the text with 1, 2, 3 behind it; at the end nobody else may hold it.
class CompletionTest : public testing::Test
{
protected:
    CompletionTest()
    {
        source->answersAtOnce = [](const std::wstring& text) {
            return text.empty() ? Texts() : Texts{text + L"1", text + L"2", text + L"3"};
        };
    }
    void TearDown() override
    {
        PumpMessages();
        source->sinks.clear();
        EXPECT_EQ(source->AddRef(), 2u);
        source->Release();
    }
    void Attach(HWND window)
    {
        ASSERT_TRUE(YAutoComplete::CreateAndAttach(window, source.Get(), &sink, true));
    }

    YUnknownPointer<TestSource> source = YUnknownPointer<TestSource>::Make();
    RecordingSink sink;
};

// One such edit in a window of its own, which is in front.
class PopupTest : public CompletionTest
{
protected:
    void SetUp() override
    {
        Open(top, 100);
        edit = MakeEdit(top);
        Attach(edit);
        ASSERT_TRUE(Activate(edit));
    }
    void TearDown() override
    {
        top.DestroyWindow();
        CompletionTest::TearDown();
    }
    std::wstring GetText() const { return GetTextOf(edit); }

    CWnd top;
    HWND edit = nullptr;
};
