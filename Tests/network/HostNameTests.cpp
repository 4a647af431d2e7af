// Host names that are devices, and the dialog that is told of them.
#include "YHostName.h"

#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int controlId = 100;

class HostNameTest : public testing::Test
{
protected:
    HostNameTest()
    {
        dialog.CreateEx(0, nullptr, L"Connect", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200,
                        nullptr, nullptr);
        edit.CreateEx(0, L"EDIT", L"the text", WS_CHILD | WS_VISIBLE, CRect(0, 0, 99, 20), &dialog,
                      controlId);
        dialog.SetFocus();
        shown.clear();
    }
    ~HostNameTest() override { dialog.DestroyWindow(); }

    bool IsRefused(const wchar_t* name, BOOL saves = TRUE)
    {
        CDataExchange exchange(&dialog, saves);
        try {
            YDDV_ValidateHostName(&exchange, controlId, name);
            return false;
        } catch (CUserException* exception) {
            exception->Delete();
            return true;
        }
    }

    static int WINAPI Record(HWND, LPCWSTR text, LPCWSTR, UINT)
    {
        shown = text;
        return IDOK;
    }

    static inline std::wstring shown;
    CWnd dialog;
    CWnd edit;
    const ImportHook box{L"CommonFramework.dll", "user32.dll", "MessageBoxW", &Record};
};

TEST_F(HostNameTest, TellsDevicesFromHosts)
{
    for (const wchar_t* name : {L"nul", L"CON", L"prn", L"aux", L"Com1", L"com9", L"LPT1",
                                L"Lpt3.local", L"clock$", L"COM1.example", L"con."}) {
        EXPECT_TRUE(IsRefused(name)) << name;
    }
    for (const wchar_t* name : {L"console", L"COM10", L"com0", L"LPT", L"lpt0.local", L"", L".nul",
                                L"clock", L"my.con", L"con-1", L"con:"}) {
        EXPECT_FALSE(IsRefused(name)) << name;
    }
    EXPECT_FALSE(IsRefused(L"NUL", FALSE)) << "looked while not saving";
}

TEST_F(HostNameTest, SaysTheNameAsTypedAndGoesBackToTheControl)
{
    EXPECT_TRUE(IsRefused(L"Nul.Example"));
    EXPECT_NE(shown.find(L"Nul.Example"), std::wstring::npos) << shown;
    EXPECT_EQ(::GetFocus(), edit.m_hWnd);
    EXPECT_EQ(edit.SendMessage(EM_GETSEL), MAKELRESULT(0, 8));
}

}  // namespace
