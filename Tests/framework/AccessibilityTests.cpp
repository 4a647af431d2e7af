// Windows as screen readers find them: by WM_GETOBJECT.
#include "WindowTest.h"
#include "support/ImportHook.h"
#include "support/ScreenReader.h"

#include <afxole.h>

#include <atomic>
#include <functional>
#include <new>
#include <thread>

namespace {

// Speaks of itself and of one part that it draws.
class SpeakingWindow : public CWnd
{
public:
    SpeakingWindow() { EnableActiveAccessibility(); }

    std::function<void()> atDefaultAction;

protected:
    HRESULT get_accChildCount(long* count) override
    {
        *count = 1;
        return S_OK;
    }
    HRESULT get_accName(VARIANT child, BSTR* name) override
    {
        *name = ::SysAllocString(child.lVal == 1 ? L"the part" : L"the whole");
        return S_OK;
    }
    HRESULT accDoDefaultAction(VARIANT) override
    {
        atDefaultAction();
        return S_OK;
    }
};

class AccessibilityTest : public WindowTest
{
protected:
    static void SetUpTestSuite() { ASSERT_TRUE(AfxOleInit()); }
    static void TearDownTestSuite() { AfxOleTerm(); }
    void SetUp() override
    {
        WindowTest::SetUp();
        Make();
    }
    void TearDown() override
    {
        spoken.DestroyWindow();
        WindowTest::TearDown();
    }
    void Make()
    {
        ASSERT_TRUE(spoken.Create(nullptr, L"Title", WS_CHILD | WS_VISIBLE | WS_DISABLED,
                                  CRect(20, 30, 120, 80), &top, 1));
    }

    SpeakingWindow spoken;
};

}  // namespace

TEST_F(AccessibilityTest, TheOperationsOfTheClassAnswer)
{
    ScreenReader reader(spoken);
    ASSERT_EQ(reader.last, S_OK);
    EXPECT_EQ(reader.ChildCount(), 1);
    EXPECT_EQ(reader.Name(), L"the whole");
    EXPECT_EQ(reader.Name(1), L"the part");
    const ScreenReader another(spoken);
    EXPECT_EQ(another.Get(), reader.Get()) << "one object a window";
}

TEST_F(AccessibilityTest, WhatTheClassDoesNotSayTheSystemDoes)
{
    ScreenReader reader(spoken);
    EXPECT_EQ(reader.Role(), ROLE_SYSTEM_CLIENT);
    EXPECT_NE(reader.State() & STATE_SYSTEM_UNAVAILABLE, 0);
    CRect place;
    spoken.GetClientRect(&place);
    spoken.ClientToScreen(&place);
    EXPECT_EQ(CRect(reader.Location()), place);
    IDispatch* parent = nullptr;
    EXPECT_EQ(reader->get_accParent(&parent), S_OK);
    ASSERT_NE(parent, nullptr);
    parent->Release();
}

TEST_F(AccessibilityTest, AWindowThatHasNotAskedForItStaysTheSystems)
{
    EXPECT_EQ(top.SendMessage(WM_GETOBJECT, 0, OBJID_CLIENT), 0);
    EXPECT_EQ(spoken.SendMessage(WM_GETOBJECT, 0, OBJID_WINDOW), 0);
    ScreenReader reader(top);
    EXPECT_EQ(reader.Name(), L"Top");
    BSTR name = nullptr;
    EXPECT_EQ(top.get_accName(ScreenReader::Child(0), &name), DISP_E_MEMBERNOTFOUND);
}

TEST_F(AccessibilityTest, TheObjectOutlivesItsWindow)
{
    ScreenReader reader(spoken);
    spoken.DestroyWindow();
    EXPECT_EQ(reader.Name(), L"");
    EXPECT_EQ(reader.last, CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(reader.ChildCount(), -1);
    Make();
    EXPECT_EQ(reader.Role(), -1) << "another window is another object's";
    ScreenReader second(spoken);
    EXPECT_EQ(second.Name(), L"the whole");
    EXPECT_EQ(second.Role(), ROLE_SYSTEM_CLIENT);
}

TEST_F(AccessibilityTest, AWindowMayEndInItsDefaultAction)
{
    ScreenReader reader(spoken);
    spoken.atDefaultAction = [this] { spoken.DestroyWindow(); };
    EXPECT_EQ(reader.DoDefaultAction(), S_OK);
    EXPECT_EQ(reader.DoDefaultAction(), CO_E_OBJNOTCONNECTED);
}

TEST_F(AccessibilityTest, NothingIsThrownAtTheReader)
{
    ScreenReader reader(spoken);
    const struct
    {
        std::function<void()> thrower;
        HRESULT expected;
    } cases[] = {{[] { throw std::bad_alloc(); }, E_OUTOFMEMORY},
                 {[] { AfxThrowResourceException(); }, E_UNEXPECTED},
                 {[] { throw new CException; }, E_UNEXPECTED},
                 {[] { throw 5; }, E_UNEXPECTED}};
    for (const auto& c : cases) {
        spoken.atDefaultAction = c.thrower;
        EXPECT_EQ(reader.DoDefaultAction(), c.expected);
    }
    EXPECT_EQ(reader->get_accName(ScreenReader::Child(0), nullptr), E_INVALIDARG);
    EXPECT_EQ(reader->accLocation(nullptr, nullptr, nullptr, nullptr, ScreenReader::Child(0)),
              E_INVALIDARG);
    IUnknown* unknown = nullptr;
    EXPECT_EQ(reader->QueryInterface(IID_IDataObject, reinterpret_cast<void**>(&unknown)),
              E_NOINTERFACE);
    EXPECT_EQ(unknown, nullptr);
}

// A reader runs in another apartment, mostly in another process.
TEST_F(AccessibilityTest, AnotherThreadHearsTheSame)
{
    std::atomic<bool> done = false;
    std::wstring name;
    HRESULT result = E_FAIL;
    std::thread thread([&, window = spoken.m_hWnd] {
        ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        {
            ScreenReader reader(window);
            result = reader.last;
            name = reader.Get() != nullptr ? reader.Name(1) : L"";
        }
        ::CoUninitialize();
        done = true;
    });
    EXPECT_TRUE(PumpUntil([&] { return done.load(); }));
    thread.join();
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(name, L"the part");
}

namespace {

LRESULT WINAPI GiveNothing(REFIID, WPARAM, IUnknown*)
{
    return E_OUTOFMEMORY;
}

int refusals = 0;

LRESULT WINAPI GiveWithoutCom(REFIID, WPARAM, IUnknown*)
{
    return ++refusals == 1 ? CO_E_NOTINITIALIZED : 77;
}

}  // namespace

TEST_F(AccessibilityTest, WhereTheObjectCannotBeHandedOutTheSystemAnswers)
{
    constexpr wchar_t framework[] = L"CommonFramework.dll";
    {
        const ImportHook hook(framework, "OLEACC.dll", "LresultFromObject", &GiveNothing);
        EXPECT_EQ(spoken.SendMessage(WM_GETOBJECT, 0, OBJID_CLIENT), 0);
        ScreenReader reader(spoken);
        EXPECT_EQ(reader.Name(), L"Title");
    }
    refusals = 0;
    const ImportHook hook(framework, "OLEACC.dll", "LresultFromObject", &GiveWithoutCom);
    EXPECT_EQ(spoken.SendMessage(WM_GETOBJECT, 0, OBJID_CLIENT), 77) << "COM was begun for it";
}
