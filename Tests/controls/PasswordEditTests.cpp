// Password edits, alone and in pairs, under everything that a user does to them.
#include "Kit.h"
#include "autocomplete/LineEditKit.h"
#include "support/CaseName.h"
#include "support/Doomed.h"

#include <controls/IPasswordEditSink.h>
#include <controls/LinkedPasswordEdits.h>
#include <controls/PasswordEdit.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr wchar_t stars[] = L"********";
constexpr DWORD passwordStyle = ES_PASSWORD | ES_AUTOHSCROLL;

using Log = std::vector<std::string>;

class RecordingSink : public IPasswordEditSink
{
public:
    void OnSetFocusPassword(PasswordEdit* edit) override { Note("set", edit); }
    void OnKillFocusPassword(PasswordEdit* edit) override { Note("kill", edit); }
    void OnEnChangePassword(PasswordEdit* edit) override { Note("change", edit); }

    Log Take() { return std::exchange(log, {}); }

    std::function<void()> whenCalled;

private:
    void Note(const std::string& what, const PasswordEdit* edit)
    {
        log.push_back(edit ? what + " " + std::to_string(edit->GetDlgCtrlID()) : what);
        if (whenCalled) {
            whenCalled();
        }
    }

    Log log;
};

class PasswordEditTest : public ControlTest
{
public:
    void SetUp() override
    {
        ControlTest::SetUp();
        ASSERT_TRUE(edit.SubclassWindow(host.Add(L"EDIT", 0, passwordStyle)));
        edit.AssociateString(&string);
    }

    // By the keyboard, as all that follows; the edit and the field outside are neighbours.
    void Enter()
    {
        TypeKey(VK_TAB);
        EXPECT_EQ(::GetFocus(), edit.m_hWnd);
    }
    void Leave()
    {
        TypeKey(VK_TAB);
        EXPECT_EQ(::GetFocus(), outside);
    }
    std::pair<int, int> GetSelection()
    {
        std::pair<int, int> selection;
        edit.GetSel(selection.first, selection.second);
        return selection;
    }

    RecordingSink sink;
    YUnicodeString string{L"before"};
    PasswordEdit edit{&sink};
};

using Selection = std::pair<int, int>;

struct PasswordCase
{
    const char* name;
    void (*act)(PasswordEditTest& test);
    const wchar_t* text;
    const wchar_t* string;
    bool touched;
};

class PasswordEditState : public PasswordEditTest, public testing::WithParamInterface<PasswordCase>
{};

TEST_P(PasswordEditState, FollowsTheUser)
{
    const PasswordCase& c = GetParam();
    c.act(*this);
    EXPECT_EQ(GetWholeText(edit), c.text);
    EXPECT_EQ(string, c.string);
    EXPECT_EQ(edit.GetTouched(), c.touched);
    EXPECT_EQ(edit.IsEmpty(), *c.text == 0);
    host.DestroyWindow();
    EXPECT_EQ(edit.GetTouched(), c.touched);  // as long as the object lives
}

using T = PasswordEditTest&;

// One case a line.
// clang-format off
const PasswordCase passwordCases[] = {
    {"Plain", [](T) {}, L"", L"before", false},
    {"PlainAndVisited", [](T t) { t.Enter(), t.Leave(); }, L"", L"before", false},
    {"PlainAndTyped", [](T t) { t.Enter(), Type("A"), t.Leave(); }, L"a", L"before", true},
    {"Placeholder", [](T t) { t.edit.SetPseudoPassword(); }, stars, stars, false},
    {"Entered", [](T t) { t.edit.SetPseudoPassword(), t.Enter(); }, L"", L"", false},
    {"Visited", [](T t) { t.edit.SetPseudoPassword(), t.Enter(), t.Leave(); }, stars, stars, false},
    {"VisitedTwice", [](T t) { t.edit.SetPseudoPassword(), t.Enter(), t.Leave(), t.Enter(); }, L"", L"", false},
    {"BackspaceOnNothing", [](T t) { t.edit.SetPseudoPassword(), t.Enter(), TypeKey(VK_BACK), t.Leave(); }, stars, stars, false},
    {"Typed", [](T t) { t.edit.SetPseudoPassword(), t.Enter(), Type("AB"); }, L"ab", L"", true},
    {"TypedAndLeft", [](T t) { t.edit.SetPseudoPassword(), t.Enter(), Type("AB"), t.Leave(); }, L"ab", L"", true},
    {"TypedAndReplaced", [](T t) { t.edit.SetPseudoPassword(), t.Enter(), Type("AB"), t.Leave(), t.Enter(), Type("C"); }, L"c", L"", true},  // Tab selects
    {"TypedAndEmptied", [](T t) { t.edit.SetPseudoPassword(), t.Enter(), Type("A"), TypeKey(VK_BACK), t.Leave(); }, L"", L"", true},
    {"Pasted", [](T t) { SetClipboard(L"XY"), t.edit.SetPseudoPassword(), t.Enter(), Press(VK_CONTROL, 'V'), t.Leave(); }, L"XY", L"", true},
    {"PlaceholderWhileFocused", [](T t) { t.Enter(), t.edit.SetPseudoPassword(); }, stars, stars, false},
    {"PlaceholderWhileFocusedAndLeft", [](T t) { t.Enter(), t.edit.SetPseudoPassword(), t.Leave(); }, stars, stars, false},
    {"PlaceholderAfterTyping", [](T t) { t.Enter(), Type("A"), t.edit.SetPseudoPassword(), t.Leave(), t.Enter(); }, L"", L"", false},
    {"TextByTheHost", [](T t) { t.edit.SetPseudoPassword(), t.edit.SetWindowText(L"host"), t.Enter(), t.Leave(); }, L"host", stars, true},
    {"WithoutString", [](T t) { t.edit.AssociateString(nullptr), t.edit.SetPseudoPassword(), t.Enter(); }, L"", L"before", false},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, PasswordEditState, testing::ValuesIn(passwordCases), CaseName());

TEST_F(PasswordEditTest, TheSinkHearsOfFocusAfterTheTextHasChanged)
{
    edit.SetPseudoPassword();
    EXPECT_EQ(sink.Take(), Log{"change 0"});
    Enter();
    EXPECT_EQ(sink.Take(), (Log{"change 0", "set 0"}));
    Leave();
    EXPECT_EQ(sink.Take(), (Log{"change 0", "kill 0"}));
    Enter();
    sink.Take();
    Type("A");
    EXPECT_EQ(sink.Take(), Log{"change 0"});
    Leave();
    EXPECT_EQ(sink.Take(), Log{"kill 0"});
    host.DestroyWindow();
    EXPECT_EQ(sink.Take(), Log{});  // the overwriting is nobody's change
}

TEST_F(PasswordEditTest, AClickSelectsAllUntilSomethingIsTyped)
{
    constexpr POINT inside{30, 8};
    PasswordEdit filled(nullptr);
    ASSERT_TRUE(filled.SubclassWindow(host.Add(L"EDIT", 1, passwordStyle, L"filled")));
    Selection selection;
    PressLeft(filled, inside);
    filled.GetSel(selection.first, selection.second);
    EXPECT_EQ(selection, Selection(0, 6));
    ReleaseLeft(filled, inside);

    edit.SetPseudoPassword();
    PressLeft(edit, inside);
    EXPECT_EQ(GetSelection(), Selection(0, 0));  // emptied
    ReleaseLeft(edit, inside);
    edit.SetPseudoPassword();
    PressLeft(edit, inside);
    EXPECT_EQ(GetSelection(), Selection(0, 8));
    ReleaseLeft(edit, inside);
    edit.SetSel(0, -1);
    Type("TYPED");
    EXPECT_EQ(GetWholeText(edit), L"typed");
    PressLeft(edit, inside);
    EXPECT_EQ(GetSelection().first, GetSelection().second);
    EXPECT_NE(GetSelection().first, 0);
    ReleaseLeft(edit, inside);
}

// What it was told to do with a pair, and what follows for both.
class PairModel
{
public:
    std::wstring texts[2] = {stars, stars};
    std::wstring strings[2] = {stars, stars};
    bool touched = false;
    int focus = -1;  // outside

    void Focus(int next)
    {
        if (next != focus && !touched) {
            for (int i = 0; i < 2; ++i) {
                texts[i] = strings[i] = next < 0 ? stars : L"";
            }
        }
        focus = next;
    }
    // Whether there was anything to change.
    bool TypeX()
    {
        if (focus < 0) {
            return false;
        }
        texts[focus] += L'x';
        touched = true;
        return true;
    }
    bool Backspace()
    {
        if (focus < 0 || texts[focus].empty()) {
            return false;
        }
        texts[focus].pop_back();
        return true;
    }
};

class LinkedPasswordTest : public ControlTest
{
protected:
    template <class Linked>
    void Bind(Linked& linked)
    {
        ASSERT_TRUE(linked.password.SubclassWindow(host.Add(L"EDIT", 0, passwordStyle)));
        ASSERT_TRUE(linked.confirmation.SubclassWindow(host.Add(L"EDIT", 1, passwordStyle)));
    }

    // One letter of a word: F(irst), S(econd), O(utside), x, b(ackspace). What the outer sink hears,
    // but for what is not said which.
    Log Act(char step, const LinkedPasswordEdits& pair)
    {
        sink.Take();
        switch (step) {
        case 'F': ::SetFocus(pair.password); break;
        case 'S': ::SetFocus(pair.confirmation); break;
        case 'O': ::SetFocus(outside); break;
        case 'x': Type("X"); break;
        default: TypeKey(VK_BACK); break;
        }
        PumpMessages();
        return sink.Take();
    }
    // What it should hear.
    static Log Follow(char step, PairModel& model)
    {
        if (step == 'x' || step == 'b') {
            const bool isChange = step == 'x' ? model.TypeX() : model.Backspace();
            return isChange ? Log{"change"} : Log{};
        }
        const int next = step == 'F' ? 0 : step == 'S' ? 1 : -1;
        Log log;
        if (next != model.focus && model.focus >= 0) {
            log.push_back("kill " + std::to_string(model.focus));
        }
        if (next != model.focus && next >= 0) {
            log.push_back("set " + std::to_string(next));
        }
        model.Focus(next);
        return log;
    }
    void Walk(const std::string& word)
    {
        SCOPED_TRACE(word);
        LinkedPasswordEdits pair(&sink);
        Bind(pair);
        YUnicodeString strings[2];
        pair.password.AssociateString(&strings[0]);
        pair.confirmation.AssociateString(&strings[1]);
        pair.SetPseudoPassword();
        PairModel model;
        for (const char step : word) {
            Log heard = Act(step, pair);
            if (step != 'x' && step != 'b') {
                std::erase(heard, "change");  // from the placeholder's coming and going
            }
            ASSERT_EQ(heard, Follow(step, model)) << step;
            ASSERT_EQ(GetWholeText(pair.password), model.texts[0]) << step;
            ASSERT_EQ(GetWholeText(pair.confirmation), model.texts[1]) << step;
            ASSERT_EQ(strings[0], model.strings[0].c_str()) << step;
            ASSERT_EQ(strings[1], model.strings[1].c_str()) << step;
            ASSERT_EQ(pair.GetTouched(), model.touched) << step;
            ASSERT_EQ(pair.confirmation.GetTouched(), model.touched) << step;
        }
    }

    RecordingSink sink;
};

TEST_F(LinkedPasswordTest, EveryOrderOfEvents)
{
    constexpr char steps[] = {'F', 'S', 'O', 'x', 'b'};
    std::vector<std::string> words{""};
    for (std::size_t first = 0; words[first].size() < 4; ++first) {
        for (const char step : steps) {
            words.push_back(words[first] + step);
        }
    }
    for (const std::string& word : words) {
        if (word.size() == 4) {  // with the shorter ones inside
            Walk(word);
            if (HasFailure()) {
                return;
            }
        }
    }
}

TEST_F(LinkedPasswordTest, ATypedConfirmationAloneCountsAsTouched)
{
    LinkedPasswordEdits pair(nullptr);
    Bind(pair);
    pair.SetPseudoPassword();
    ClickLeft(pair.confirmation, {5, 5});
    Type("A");
    TypeKey(VK_TAB);  // outside
    TypeKey(VK_TAB);  // the password
    EXPECT_EQ(::GetFocus(), pair.password.m_hWnd);
    TypeKey(VK_TAB);
    EXPECT_EQ(GetWholeText(pair.password), L"");
    EXPECT_EQ(GetWholeText(pair.confirmation), L"a");
    EXPECT_TRUE(pair.GetTouched());
    pair.SetPseudoPassword();
    EXPECT_FALSE(pair.GetTouched());
    EXPECT_FALSE(pair.confirmation.GetTouched());
}

TEST_F(LinkedPasswordTest, TheHostMayEndThePairAtAnyCall)
{
    using DoomedPair = Doomed<LinkedPasswordEdits>;
    bool isEnded = true;
    int last = 0;
    while (isEnded) {
        isEnded = false;
        auto* const doomed = new DoomedPair(&sink);
        Bind(*doomed);
        int calls = -++last;
        sink.whenCalled = [&] {
            if (++calls == 0) {
                isEnded = true;
                delete doomed;
            }
        };
        const HWND handles[] = {doomed->password, doomed->confirmation};
        doomed->SetPseudoPassword();
        for (const HWND handle : {handles[0], handles[1], outside}) {
            ::SetFocus(handle);
            PumpMessages();
        }
        ClickLeft(host, {30, 20});
        Type("A");
        ::SetFocus(outside);
        sink.whenCalled = nullptr;
        if (!isEnded) {
            delete doomed;  // there were no more calls
        }
        EXPECT_FALSE(::IsWindow(handles[0]));
        EXPECT_TRUE(DoomedPair::AreRemainsUntouched()) << last;
    }
    EXPECT_GT(last, 15);
    DoomedPair::Bury();
}

}  // namespace
