// What a screen reader hears of the text view, and how often.

#include "support/ScreenReader.h"
#include "textview/ClipboardFaults.h"
#include "textview/ViewFixture.h"

#include <afxole.h>

namespace {

std::vector<DWORD> events;

void WINAPI NoteEvent(DWORD event, HWND, LONG object, LONG child)
{
    EXPECT_EQ(object, OBJID_CLIENT);
    EXPECT_EQ(child, CHILDID_SELF);
    events.push_back(event);
}
BOOL WINAPI SomebodyListens(DWORD)
{
    return TRUE;
}
BOOL WINAPI NobodyListens(DWORD)
{
    return FALSE;
}

class ViewAccessibilityTest : public ViewTest
{
protected:
    static void SetUpTestSuite() { ASSERT_TRUE(AfxOleInit()); }
    void SetUp() override
    {
        ViewTest::SetUp();
        events.clear();
    }

    // What is told while the window is painted.
    std::vector<DWORD> EventsOfAPaint() const
    {
        events.clear();
        view->UpdateWindow();
        return events;
    }

    static constexpr wchar_t library[] = L"CommonUi.dll";
    const ImportHook listening{library, "USER32.dll", "IsWinEventHookInstalled", &SomebodyListens};
    const ImportHook noting{library, "USER32.dll", "NotifyWinEvent", &NoteEvent};
    const std::vector<DWORD> none{};
    const std::vector<DWORD> valueChange{EVENT_OBJECT_VALUECHANGE};
    const std::vector<DWORD> selectionChange{EVENT_OBJECT_TEXTSELECTIONCHANGED};
};

}  // namespace

TEST_F(ViewAccessibilityTest, IsAReadOnlyTextThatHasTheFocus)
{
    ScreenReader reader(*view);
    EXPECT_EQ(reader.Role(), ROLE_SYSTEM_TEXT);
    const long state = reader.State();
    const long expected = STATE_SYSTEM_READONLY | STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_FOCUSED;
    EXPECT_EQ(state & expected, expected);
    EXPECT_EQ(reader.Role(1), -1);
    EXPECT_EQ(reader.Value(1), L"");
    EXPECT_EQ(reader.last, E_INVALIDARG);
}

TEST_F(ViewAccessibilityTest, ItsValueIsWhatIsSeen)
{
    ScreenReader reader(*view);
    EXPECT_EQ(reader.Value(), L"");
    EXPECT_EQ(reader.last, S_FALSE);
    view->Append({L"one", L"", L"three"});
    EXPECT_EQ(reader.Value(), L"one\n\nthree");
    view->AppendNumbered(0, 40);
    EXPECT_EQ(reader.Value().substr(0, 6), L"30\n31\n");
    EXPECT_EQ(reader.Value().substr(24), L"38\n39");
    view->ScrollToPoint(3, 0);
    EXPECT_EQ(reader.Value().substr(0, 6), L"0\n1\n2\n") << "the last row is seen in part";
    EXPECT_EQ(reader.Value().substr(18), L"9\n10");
    view->Append({std::wstring(100'000, L'x')});
    view->SendMessage(WM_VSCROLL, SB_BOTTOM);
    EXPECT_LT(reader.Value().size(), 5'000u);
}

TEST_F(ViewAccessibilityTest, ItsDescriptionIsWhatIsSelected)
{
    ScreenReader reader(*view);
    EXPECT_EQ(reader.Description(), L"");
    view->Append({L"first line", L"x", L"third line"});
    Select(6, 0, 4, 2);
    EXPECT_EQ(reader.Description(), L"line\nx\nthird");
    view->SelectAll();
    EXPECT_EQ(reader.Description(), L"first line\nx\nthird line");
    const auto rectangle = YUnknownPointer<YTextViewHighlight>::Make(
        nullptr, YTextViewCharPosition(2, 0), YTextViewCharPosition(4, 2));
    view->UpdateHighlight(rectangle.Get(), true);
    EXPECT_EQ(reader.Description(), L"rst\n\nird");
    const auto endless = YUnknownPointer<YTextViewHighlight>::Make(
        nullptr, YTextViewCharPosition(0, 1), YTextViewCharPosition(npos, npos));
    view->UpdateHighlight(endless.Get(), false);
    EXPECT_EQ(reader.Description(), L"x\nthird line");
    view->Append({std::wstring(100'000, L'x')});
    view->SelectAll();
    EXPECT_EQ(reader.Description().size(), 65'536u);
}

TEST_F(ViewAccessibilityTest, ABurstOfLinesIsToldOnce)
{
    for (unsigned line = 0; line < 1'000; ++line) {
        view->AppendNumbered(line, 1);
    }
    EXPECT_EQ(events, none);
    EXPECT_EQ(EventsOfAPaint(), valueChange);
    EXPECT_EQ(EventsOfAPaint(), none);
}

TEST_F(ViewAccessibilityTest, OnlyAChangeIsTold)
{
    view->AppendNumbered(0, 40);
    view->UpdateWindow();
    const struct
    {
        const char* what;
        std::function<void()> act;
        const std::vector<DWORD>& expected;
    } cases[] = {{"uncovered", [this] { view->Invalidate(); }, none},
                 {"scrolled", [this] { view->ScrollToPoint(0, 0); }, valueChange},
                 {"nothing selected", [this] { Select(5, 5, 5, 5); }, none},
                 {"lines below", [this] { view->AppendNumbered(40, 3); }, none},
                 {"selected", [this] { view->SelectAll(); }, selectionChange},
                 {"cleared", [this] { view->Clear(); }, valueChange},
                 {"sideways", [this] { view->ScrollToPoint(0, 5); }, none}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        events.clear();
        c.act();
        view->UpdateWindow();
        EXPECT_EQ(events, c.expected);
    }
    const ImportHook nobody(library, "USER32.dll", "IsWinEventHookInstalled", &NobodyListens);
    view->AppendNumbered(0, 40);
    EXPECT_EQ(EventsOfAPaint(), none);
}
