// The small controls of dialogs, by mouse, keys and what other programs put on the clipboard.
#include "Kit.h"
#include "autocomplete/LineEditKit.h"
#include "dialogs/TreeKit.h"
#include "support/CaseName.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"
#include "textview/ClipboardFaults.h"

#include <YMessages.h>
#include <YUniqueHandle.h>
#include <controls/LinkedPasswordEdits.h>
#include <controls/YControllingCheckBox.h>
#include <controls/YMultiLineEdit.h>
#include <controls/YPasswordEdit.h>
#include <controls/YStringComboBox.h>
#include <dialogs/YPropertyPageStateMap.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

// The controlling check box

class ControllingCheckBoxTest : public ControlTest
{
protected:
    void SetUp() override
    {
        ControlTest::SetUp();
        ASSERT_TRUE(box.SubclassWindow(host.Add(L"BUTTON", 0, BS_AUTOCHECKBOX, L"All")));
        for (const int id : {1, 2}) {
            host.Add(L"EDIT", id, 0);
        }
    }
    // Of the two controls; the field outside is never touched.
    std::string GetStates()
    {
        EXPECT_TRUE(::IsWindowEnabled(outside));
        std::string states;
        for (const int id : {1, 2}) {
            states += host.GetDlgItem(id)->IsWindowEnabled() ? '+' : '-';
        }
        return states;
    }

    YControllingCheckBox box;
};

TEST_F(ControllingCheckBoxTest, EnablesWhatItControlsWhileItIsOn)
{
    box.Init(false, &host, nullptr, {1, 2, 99});  // 99: not in this dialog
    EXPECT_FALSE(box.IsChecked());
    EXPECT_EQ(GetStates(), "--");
    ClickLeft(box, {5, 10});
    EXPECT_TRUE(box.IsChecked());
    EXPECT_EQ(GetStates(), "++");
    TypeKey(VK_SPACE);
    EXPECT_FALSE(box.IsChecked());
    EXPECT_EQ(GetStates(), "--");
    box.SetCheck(BST_CHECKED);
    EXPECT_EQ(GetStates(), "--");  // not told
    box.Update();
    EXPECT_EQ(GetStates(), "++");
    box.EnableWindow(FALSE);
    EXPECT_EQ(GetStates(), "++");
    box.Update();
    EXPECT_TRUE(box.IsChecked());
    EXPECT_EQ(GetStates(), "--");
    box.EnableWindow();
    box.Init(true, &host, nullptr, {2});  // the other is left as it was
    EXPECT_EQ(GetStates(), "-+");
}

TEST(ControllingCheckBox, TellsThePageThatSomethingCanBeApplied)
{
    YPropertyPageStateMap map;
    TestTree dialog(L"Options", 1, &map, nullptr, nullptr);
    TestPage page(L"Page", IDD_FIELDS);
    dialog.AddPage(&page);
    dialog.script = [&] {
        YControllingCheckBox box;
        ASSERT_TRUE(box.Create(L"All", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX,
                               CRect(150, 10, 230, 30), &page, 5));
        box.Init(true, &page, {IDC_NUMBER});
        CWnd* const apply = dialog.GetDlgItem(PROPERTY_TREE_APPLY);
        EXPECT_FALSE(apply->IsWindowEnabled());
        dialog.AwaitPlace();
        ClickLeft(box, {5, 10});
        EXPECT_FALSE(page.GetDlgItem(IDC_NUMBER)->IsWindowEnabled());
        EXPECT_TRUE(apply->IsWindowEnabled());
        box.DestroyWindow();
    };
    dialog.DoModal();
}

// The combo box with values

// Counts what is selected by messages: an index that does not exist would clear the selection, though
// not on every system.
class TestComboBox : public YStringComboBox
{
public:
    int selections = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        selections += message == CB_SETCURSEL;
        return YStringComboBox::WindowProc(message, wParam, lParam);
    }
};

class StringComboBoxTest : public ControlTest
{
protected:
    void Open(DWORD style)
    {
        ASSERT_TRUE(
            combo.SubclassWindow(host.Add(L"COMBOBOX", 0, CBS_DROPDOWNLIST | WS_VSCROLL | style)));
    }
    // Every line with its value, in order.
    std::string GetLines()
    {
        std::string lines;
        for (int i = 0; i < combo.GetCount(); ++i) {
            CString text;
            combo.GetLBText(i, text);
            combo.SetCurSel(i);
            lines += YUnicodeString(text).ToBytes() + "=" + combo.GetCurrentValue().c_str() + " ";
        }
        return lines;
    }
    void Fill()
    {
        const struct
        {
            const wchar_t* text;
            const char* value;
        } items[] = {{L"pear", "P"}, {L"apple", "A"}, {L"pear", "Q"}, {L"fig", ""}, {L"date", "a"}};
        for (const auto& [text, value] : items) {
            combo.AddItem(text, value);
        }
    }

    bool HasValue(const char* value)
    {
        combo.selections = 0;
        combo.SetCurrentValue(value);
        return combo.selections != 0;
    }

    TestComboBox combo;
};

TEST_F(StringComboBoxTest, KeepsValuesWithTheirLines)
{
    Open(0);
    Fill();
    EXPECT_EQ(GetLines(), "pear=P apple=A pear=Q fig= date=a ");
    combo.SendMessage(CB_DELETESTRING, 1);
    combo.SendMessage(CB_DELETESTRING, 9);
    EXPECT_EQ(GetLines(), "pear=P pear=Q fig= date=a ");
    combo.ResetContent();
    combo.AddItem(L"new", "N");
    EXPECT_EQ(GetLines(), "new=N ");
    EXPECT_FALSE(HasValue("P"));
    combo.DestroyWindow();
    Open(CBS_SORT);  // the object serves another opening of its dialog
    Fill();
    EXPECT_TRUE(HasValue("P"));
    EXPECT_FALSE(HasValue("N"));
    const std::string lines = GetLines();
    EXPECT_TRUE(lines == "apple=A date=a fig= pear=P pear=Q " ||
                lines == "apple=A date=a fig= pear=Q pear=P ")
        << lines;
}

TEST_F(StringComboBoxTest, SelectsByTheVeryValue)
{
    Open(CBS_SORT);
    EXPECT_THROW(combo.GetCurrentValue(), std::out_of_range);
    Fill();
    EXPECT_THROW(combo.GetCurrentValue(), std::out_of_range);
    combo.AddItem(L"zero", YString("A\0", 2));
    combo.AddItem(L"zoo", "A");
    const struct
    {
        YString value;
        int selected;
    } cases[] = {{"a", 1}, {"A", 0}, {YString("A\0", 2), 5}, {"", 2}, {"none", 2}, {"p", 2}};
    for (const auto& [value, selected] : cases) {
        combo.SetCurrentValue(value);
        EXPECT_EQ(combo.GetCurSel(), selected) << value.c_str();
    }
    combo.SetFocus();
    TypeKey(VK_UP);
    EXPECT_EQ(combo.GetCurrentValue(), "a");
}

TEST_F(StringComboBoxTest, TakesTextsFromTheMessageTable)
{
    Open(0);
    combo.AddItem(MSG_END_OF_BUFFER, "end");
    EXPECT_EQ(GetLines(), "End of buffer reached=end ");
}

// The edit that may refuse line breaks

// Another program puts the text there, and has ended when this returns.
bool PutOnClipboard(UINT format, const std::wstring& text)
{
    std::wstring command = L"ClipboardWriter.exe " + std::to_wstring(format) + L" \"" + text + L'"';
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &startup, &process)) {
        return false;
    }
    const YUniqueKernelHandle thread(process.hThread);
    const YUniqueKernelHandle child(process.hProcess);
    DWORD exitCode = STILL_ACTIVE;
    PumpUntil(
        [&] {
            ::GetExitCodeProcess(child.Get(), &exitCode);
            return exitCode != STILL_ACTIVE;
        },
        20'000);
    return exitCode == 0;
}

class MultiLineEditTest : public ControlTest
{
protected:
    void Open(DWORD style)
    {
        ASSERT_TRUE(edit.SubclassWindow(host.Add(L"EDIT", 0, style)));
        edit.SetAllowNewLines(false);
        edit.SetFocus();
    }
    std::wstring Paste()
    {
        Press(VK_CONTROL, 'V');
        EXPECT_EQ(::GetOpenClipboardWindow(), nullptr);
        return GetWholeText(edit);
    }

    YMultiLineEdit edit;
};

constexpr DWORD multiLine = ES_MULTILINE | ES_AUTOVSCROLL | ES_AUTOHSCROLL;
constexpr DWORD singleLine = ES_AUTOHSCROLL;

struct PasteCase
{
    const char* name;
    DWORD style;
    bool allowsNewLines;
    UINT format;
    const wchar_t* clipboard;
    const wchar_t* text;
};

class MultiLineEditPaste : public MultiLineEditTest, public testing::WithParamInterface<PasteCase>
{};

TEST_P(MultiLineEditPaste, OfAnotherProgramsText)
{
    const PasteCase& c = GetParam();
    Open(c.style);
    edit.SetAllowNewLines(c.allowsNewLines);
    ASSERT_TRUE(PutOnClipboard(c.format, c.clipboard));
    EXPECT_EQ(Paste(), c.text);
}

// One case a line.
// clang-format off
const PasteCase pasteCases[] = {
    {"Joined", multiLine, false, CF_UNICODETEXT, L"one\r\ntwo", L"one two"},
    {"JoinedInOneLine", singleLine, false, CF_UNICODETEXT, L"one\r\ntwo", L"one two"},
    {"EveryBreak", multiLine, false, CF_UNICODETEXT, L"\r\none\r\n\r\ntwo\r\n", L" one  two "},
    {"LoneCharactersStay", multiLine, false, CF_UNICODETEXT, L"a\nb\rc\r\r\nd", L"a\nb\rc\r d"},
    {"EightBit", multiLine, false, CF_TEXT, L"\xE9\r\ntwo", L"\xE9 two"},
    {"Allowed", multiLine, true, CF_UNICODETEXT, L"one\r\ntwo", L"one\r\ntwo"},
    {"AllowedInOneLine", singleLine, true, CF_UNICODETEXT, L"one\r\ntwo", L"one"},  // the system's way
    {"NotText", multiLine, false, CF_OEMTEXT + 0x200, L"one\r\ntwo", L""},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, MultiLineEditPaste, testing::ValuesIn(pasteCases), CaseName());

TEST_F(MultiLineEditTest, APasteReplacesTheSelectionAndCanBeUndone)
{
    Open(multiLine);
    SetClipboard(L"1\r\n2");
    edit.SetWindowText(L"abcd");
    edit.SetSel(1, 3);
    EXPECT_EQ(Paste(), L"a1 2d");
    edit.SendMessage(WM_UNDO);
    EXPECT_EQ(GetWholeText(edit), L"abcd");
}

TEST_F(MultiLineEditTest, AReadOnlyFieldTakesNothing)
{
    Open(multiLine | ES_READONLY);
    SetClipboard(L"1\r\n2");
    EXPECT_EQ(Paste(), L"");
    edit.SendMessage(WM_PASTE);  // the key alone does not come to that
    EXPECT_EQ(GetWholeText(edit), L"");
}

HANDLE WINAPI NoData(UINT)
{
    return nullptr;
}

BOOL WINAPI HasOnlyEightBitText(UINT format)
{
    return format == CF_TEXT;
}

TEST_F(MultiLineEditTest, PastesAsTheSystemDoesWhatItCannotRead)
{
    Open(multiLine);
    SetClipboard(L"one\r\ntwo");
    {
        const ImportHook fault(L"CommonUi.dll", "user32.dll", "GetClipboardData", &NoData);
        EXPECT_EQ(Paste(), L"one\r\ntwo");
    }
    edit.SetWindowText(L"");
    const ImportHook older(L"CommonUi.dll", "user32.dll", "IsClipboardFormatAvailable",
                           &HasOnlyEightBitText);
    EXPECT_EQ(Paste(), L"one two");
}

TEST_F(MultiLineEditTest, ClosesTheClipboardWhateverFails)
{
    Open(multiLine);
    SetClipboard(L"one\r\ntwo");
    const int calls = FailEachCall([this](int call) {
        ClipboardFaults::FailAt(call);
        edit.SendMessage(WM_PASTE);
        ClipboardFaults::Stop();
        EXPECT_EQ(::GetOpenClipboardWindow(), nullptr);
    });
    EXPECT_GE(calls, 4);  // the buffer, its lock and copy, the text
}

// Another program has the clipboard open, for a moment or for longer than we wait.
TEST_F(MultiLineEditTest, WaitsAMomentForABusyClipboard)
{
    Open(multiLine);
    SetClipboard(L"one\r\ntwo");
    static int failures;
    failures = 3;
    struct Busy
    {
        static BOOL WINAPI Open(HWND window)
        {
            return failures-- > 0 ? FALSE : ::OpenClipboard(window);
        }
    };
    const ImportHook busy(L"CommonUi.dll", "user32.dll", "OpenClipboard", &Busy::Open);
    EXPECT_EQ(Paste(), L"one two");
    edit.SetWindowText(L"");
    failures = 1'000'000;
    EXPECT_EQ(Paste(), L"one\r\ntwo");
    EXPECT_GT(failures, 999'900);
}

// A thousand times each of the controls of this folder, filled and used.
class ControlRounds : public ControlTest
{
protected:
    void UsePasswords()
    {
        LinkedPasswordEdits linked(nullptr);
        YPasswordEdit control;
        YUnicodeString string(Str::Sensitive);
        linked.password.AssociateString(&string);
        int row = 0;
        for (CEdit* const edit :
             {static_cast<CEdit*>(&linked.password), static_cast<CEdit*>(&linked.confirmation),
              static_cast<CEdit*>(&control)}) {
            ASSERT_TRUE(edit->SubclassWindow(host.Add(L"EDIT", row++, ES_PASSWORD)));
        }
        linked.SetPseudoPassword();
        for (CWnd* const edit :
             {static_cast<CWnd*>(&linked.confirmation), static_cast<CWnd*>(&linked.password),
              static_cast<CWnd*>(&control)}) {
            edit->SetFocus();
            edit->SendMessage(WM_CHAR, 3);
        }
        ::SetFocus(outside);
        control.DestroyWindow();
    }
    void UseOthers()
    {
        YControllingCheckBox box;
        YStringComboBox combo;
        YMultiLineEdit edit;
        ASSERT_TRUE(box.SubclassWindow(host.Add(L"BUTTON", 0, BS_AUTOCHECKBOX)));
        ASSERT_TRUE(combo.SubclassWindow(host.Add(L"COMBOBOX", 1, CBS_DROPDOWNLIST | CBS_SORT)));
        ASSERT_TRUE(edit.SubclassWindow(host.Add(L"EDIT", 2, multiLine)));
        box.Init(true, &host, nullptr, {1, 2});
        box.SendMessage(BM_CLICK);
        combo.AddItem(L"two", YString("a value that needs a block of its own", Str::Sensitive));
        combo.AddItem(L"one", "1");
        combo.SetCurrentValue("1");
        edit.SetAllowNewLines(false);
        edit.SendMessage(WM_PASTE);
    }
    void Use(int rounds)
    {
        for (int i = 0; i < rounds && !HasFailure(); ++i) {
            UsePasswords();
            UseOthers();
        }
        PumpMessages();
        CWinThread().OnIdle(1);
    }
};

TEST_F(ControlRounds, ThousandRoundsLeaveNothingBehind)
{
    SetClipboard(L"one\r\ntwo");
    Use(20);
    const LeakCheck leaks;
    Use(1000);
}

}  // namespace
