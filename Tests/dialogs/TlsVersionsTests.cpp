// The choice of TLS versions, inside a page of a property tree.
#include "PropertyTreePages.h"
#include "TreeKit.h"

#include <YProfileTlsVersions.h>
#include <dialogs/TlsVersionsIds.h>
#include <dialogs/YTlsVersionsPlugin.h>
#include <gtest/gtest.h>

namespace {

class TlsPage : public TestPage
{
public:
    explicit TlsPage(YProfileTlsVersions& edited) : TestPage(L"TLS", IDD_FIELDS), value(edited) {}

    BOOL OnKillActive() override { return TestPage::OnKillActive() && plugin->SavePageData(); }

    YTlsVersionsPlugin* plugin = nullptr;  // its own owner

protected:
    BOOL OnInitDialog() override
    {
        plugin = YTlsVersionsPlugin::Create(this, IDC_LIST, &value);
        return TestPage::OnInitDialog();
    }

private:
    YProfileTlsVersions& value;
};

std::wstring shownText;
UINT shownStyle = 0;

int WINAPI RecordBox(HWND, LPCWSTR text, LPCWSTR, UINT style)
{
    shownText = text;
    shownStyle = style;
    return IDOK;
}

class TlsVersionsTest : public testing::Test
{
protected:
    // What is checked, by line.
    std::wstring Checked() const
    {
        std::wstring text;
        for (int line = 0; line < list->GetCount(); ++line) {
            text += list->GetCheck(line) == BST_CHECKED ? L"x" : L"-";
        }
        return text;
    }
    INT_PTR Run(const std::function<void(TestTree&)>& script)
    {
        TlsPage page(value);
        TestPage other(L"Other");
        TestTree dialog(L"Options", 0, nullptr, nullptr, nullptr);
        dialog.AddPage(&page);
        dialog.AddPage(&other);
        dialog.script = [&] {
            ASSERT_NE(page.plugin, nullptr);
            list = static_cast<CBCGPCheckListBox*>(page.plugin->GetDlgItem(TLS_VERSIONS_LIST));
            script(dialog);
        };
        return dialog.DoModal();
    }
    // With the keys of a user.
    void Toggle(int line)
    {
        list->SetFocus();
        list->SetCurSel(line);
        TypeKey(VK_SPACE);
    }

    YProfileTlsVersions value{L"TLS"};
    CBCGPCheckListBox* list = nullptr;
};

TEST_F(TlsVersionsTest, ShowsAndWritesTheVersionsAndLeavesOtherBits)
{
    constexpr DWORD others = 0x3;
    value.SetMask(others | YProfileTlsVersions::version11 | YProfileTlsVersions::version12);
    const INT_PTR result = Run([&](TestTree& dialog) {
        EXPECT_EQ(Checked(), L"-xx-");
        CRect plugin;
        CRect place;
        list->GetParent()->GetWindowRect(&plugin);
        ::GetWindowRect(::GetDlgItem(*dialog.GetCurrentPage(), IDC_LIST), &place);
        EXPECT_EQ(plugin, place);
        Toggle(1);
        Toggle(3);
        EXPECT_EQ(Checked(), L"--xx");
        dialog.SendMessage(WM_COMMAND, IDOK);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(value.GetMask(),
              others | YProfileTlsVersions::version12 | YProfileTlsVersions::version13);
    EXPECT_EQ(value.Get(), L"1.0=0,1.1=0,1.2=1,1.3=1");
}

// By click on another page and by OK: the message, the focus on the list, the page as it was.
TEST_F(TlsVersionsTest, NothingCheckedIsRefusedUntilSomethingIs)
{
    value.SetMask(YProfileTlsVersions::version12);
    const ImportHook box(L"CommonFramework.dll", "user32.dll", "MessageBoxW", &RecordBox);
    const INT_PTR result = Run([&](TestTree& dialog) {
        YPropertyTreePage* const page = dialog.GetCurrentPage();
        Toggle(2);
        const std::function<void()> ways[] = {
            [&] {
                TypeChord({VK_CONTROL, VK_TAB});
            },
            [&] { dialog.SendMessage(WM_COMMAND, IDOK); },
        };
        for (const auto& way : ways) {
            shownText.clear();
            way();
            PumpMessages();
            EXPECT_NE(shownText.find(L"At least one TLS version"), std::wstring::npos);
            EXPECT_EQ(shownStyle & MB_ICONMASK, UINT{MB_ICONEXCLAMATION});
            EXPECT_EQ(dialog.GetCurrentPage(), page);
            EXPECT_EQ(::GetFocus(), list->GetSafeHwnd());
            EXPECT_TRUE(dialog.IsWindowVisible());
        }
        Toggle(3);
        dialog.SendMessage(WM_COMMAND, IDOK);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(value.GetMask(), DWORD{YProfileTlsVersions::version13});
}

}  // namespace
