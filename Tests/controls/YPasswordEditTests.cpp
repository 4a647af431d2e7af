// The edit that takes control characters.
#include "Kit.h"
#include "autocomplete/LineEditKit.h"
#include "support/CaseName.h"

#include <controls/YPasswordEdit.h>
#include <gtest/gtest.h>

namespace {

class YPasswordEditTest : public ControlTest
{
protected:
    void SetUp() override
    {
        ControlTest::SetUp();
        ASSERT_TRUE(edit.SubclassWindow(host.Add(L"EDIT", 0, ES_AUTOHSCROLL)));
        ::SetFocus(edit);
        SetClipboard(L"XY");
    }

    YPasswordEdit edit;
};

// A key in "abcd", of which [start, end) is selected.
struct CharacterCase
{
    const char* name;
    int start;
    int end;
    void (*type)();
    const wchar_t* text;
    int caret;
};

class YPasswordEditCharacter : public YPasswordEditTest,
                               public testing::WithParamInterface<CharacterCase>
{};

TEST_P(YPasswordEditCharacter, GoesInOrActs)
{
    const CharacterCase& c = GetParam();
    edit.SetWindowText(L"abcd");
    edit.SetSel(c.start, c.end);
    c.type();
    EXPECT_EQ(GetWholeText(edit), c.text);
    int start = 0;
    int end = 0;
    edit.GetSel(start, end);
    EXPECT_EQ(start, c.caret);
    EXPECT_EQ(end, c.caret);
}

// One case a line.
// clang-format off
const CharacterCase characterCases[] = {
    {"CopyReplaces", 1, 2, [] { Press(VK_CONTROL, 'C'); }, L"a\x03" L"cd", 2},
    {"SelectAllAtEnd", 4, 4, [] { Press(VK_CONTROL, 'A'); }, L"abcd\x01", 5},
    {"CutOfAll", 0, 4, [] { Press(VK_CONTROL, 'X'); }, L"\x18", 1},
    {"UndoAtStart", 0, 0, [] { Press(VK_CONTROL, 'Z'); }, L"\x1A" L"abcd", 1},
    {"Last", 2, 2, [] { TypeText(L"\x1F"); }, L"ab\x1F" L"cd", 3},
    {"TwoInARow", 0, 0, [] { Press(VK_CONTROL, 'B'), Press(VK_CONTROL, 'D'); }, L"\x02\x04" L"abcd", 2},
    {"Pastes", 1, 3, [] { Press(VK_CONTROL, 'V'); }, L"aXYd", 3},
    {"BackspaceDeletes", 2, 2, [] { TypeKey(VK_BACK); }, L"acd", 1},
    {"Space", 1, 3, [] { TypeKey(VK_SPACE); }, L"a d", 2},
    {"Letter", 4, 4, [] { Type("E"); }, L"abcde", 5},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, YPasswordEditCharacter, testing::ValuesIn(characterCases),
                         CaseName());

TEST_F(YPasswordEditTest, KeepsToItsLimitAndToBeingReadOnly)
{
    edit.SetWindowText(L"abcd");
    edit.LimitText(4);
    edit.SetSel(4, 4);
    Press(VK_CONTROL, 'A');
    EXPECT_EQ(GetWholeText(edit), L"abcd");
    edit.LimitText(5);
    edit.SendMessage(EM_SETREADONLY, TRUE);
    Press(VK_CONTROL, 'A');
    EXPECT_EQ(GetWholeText(edit), L"abcd");
    edit.SendMessage(EM_SETREADONLY, FALSE);
    Press(VK_CONTROL, 'A');
    EXPECT_EQ(GetWholeText(edit), L"abcd\x01");
}

}  // namespace
