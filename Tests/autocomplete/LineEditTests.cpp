// The line edit: its hint under everything that changes a text, its button, tooltips.
#include "YModule.h"
#include "autocomplete/Kit.h"
#include "autocomplete/LineEditImages.h"
#include "autocomplete/LineEditKit.h"
#include "autocomplete/YAutoComplete.h"
#include "autocomplete/YLineEdit.h"
#include "support/CaseName.h"
#include "support/Doomed.h"
#include "support/ImportHook.h"
#include "support/Input.h"
#include "support/LeakCheck.h"
#include "support/TestThread.h"

#include <imm.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr UINT editId = 77;
constexpr UINT otherId = 78;

class TestEdit : public YLineEdit
{
public:
    using CBCGPEdit::m_rectBtn;
};

class Host : public CWnd
{
public:
    int changes = 0;
    std::function<void()> atChange;

protected:
    afx_msg void OnEditChange()
    {
        ++changes;
        if (atChange) {
            atChange();
        }
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Host, CWnd)
    ON_EN_CHANGE(editId, &Host::OnEditChange)
END_MESSAGE_MAP()

// The ids of the library's images that are loaded while it lives.
class ImageWatch
{
public:
    ImageWatch()
    {
        ids.clear();
        original = hook.Original<decltype(::LoadImageW)>();
    }
    static std::vector<unsigned> Take() { return std::exchange(ids, {}); }

private:
    static HANDLE WINAPI Watch(HINSTANCE module, LPCWSTR id, UINT type, int width, int height,
                               UINT flags)
    {
        if (module == YGetLibraryModule()) {
            ids.push_back(LOWORD(reinterpret_cast<DWORD_PTR>(id)));
        }
        return original(module, id, type, width, height, flags);
    }
    static inline std::vector<unsigned> ids;
    static inline decltype(&::LoadImageW) original;
    const ImportHook hook{L"CommonUi.dll", "user32.dll", "LoadImageW", &Watch};
};

using Ids = std::vector<unsigned>;

// The first menu of a process leaves things with the system, for good: here, before any test counts.
class FirstMenu : public testing::Environment
{
    void SetUp() override
    {
        const HWND owner = ::CreateWindowExW(0, L"STATIC", nullptr, WS_OVERLAPPEDWINDOW, 0, 0, 9, 9,
                                             nullptr, nullptr, nullptr, nullptr);
        const HMENU menu = ::CreatePopupMenu();
        ::AppendMenuW(menu, MF_STRING, 1, L"Item");
        ::PostMessageW(owner, WM_CANCELMODE, 0, 0);
        ::TrackPopupMenu(menu, 0, 0, 0, 0, owner, nullptr);
        ::DestroyMenu(menu);
        ::DestroyWindow(owner);
    }
};
[[maybe_unused]] const auto* const firstMenu = testing::AddGlobalTestEnvironment(new FirstMenu);

class LineEditTest : public testing::Test
{
public:
    void SetUp() override
    {
        ASSERT_TRUE(host.CreateEx(0, nullptr, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100,
                                  400, 300, nullptr, nullptr));
        ASSERT_TRUE(
            edit.Create(&host, CRect(10, 10, 210, 34), editId, hint, YLineEdit::SearchButton));
        other = ::CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 10, 60, 200, 24, host,
                                  reinterpret_cast<HMENU>(otherId), nullptr, nullptr);
        ASSERT_TRUE(Activate(other));
        MovePointer(host, {300, 200});
        ASSERT_EQ(GetShown(), hint);
        host.changes = 0;
    }
    void TearDown() override
    {
        host.DestroyWindow();
        PumpMessages();
    }

    std::wstring GetShown()
    {
        CString text;
        edit.GetWindowText(text);
        return text.GetString();
    }
    void Focus()
    {
        ::SetFocus(edit);
        PumpMessages();
    }
    CPoint Button() { return edit.m_rectBtn.CenterPoint(); }
    // How many pixels of the text have the colour; nothing here is smoothed.
    int CountPixels(COLORREF color)
    {
        edit.RedrawWindow();
        PumpMessages();
        CClientDC dc(&edit);
        CRect client;
        edit.GetClientRect(&client);
        int count = 0;
        for (int at = 0; at < client.Width() * client.Height(); ++at) {
            count += dc.GetPixel(at % client.Width(), at / client.Width()) == color;
        }
        return count;
    }

    Host host;
    TestEdit edit;
    HWND other = nullptr;
};

// From the focused field with its hint, through what the user does, to the text.
struct HintCase
{
    const char* name;
    void (*act)(LineEditTest& test);
    const wchar_t* text;  // empty: the hint is shown
};

class LineEditHint : public LineEditTest, public testing::WithParamInterface<HintCase>
{};

TEST_P(LineEditHint, ComesAndGoes)
{
    const HintCase& c = GetParam();
    Focus();
    ASSERT_EQ(GetShown(), hint);
    c.act(*this);
    PumpMessages();
    const std::wstring text = c.text;
    EXPECT_EQ(GetShown(), text.empty() ? hint : text);
    EXPECT_EQ(edit.GetText(), c.text);
    EXPECT_EQ(edit.IsPlaceholderText(), text.empty());
    EXPECT_EQ(CountPixels(RGB(128, 128, 128)) > 0, text.empty());
    // The button shows what it does: pressed, it has emptied the field, or had nothing to do.
    ClickLeft(edit, Button());
    EXPECT_EQ(GetShown(), hint);
    // And the field takes text as ever.
    Type("X");
    EXPECT_EQ(GetShown(), L"x");
}

// The edit's own menu is a loop on our thread; a user chooses the item at the place.
void ChooseFromMenu(LineEditTest& test, int place)
{
    TestThread user([place] {
        PumpUntil([] { return ::IsWindowVisible(::FindWindowW(L"#32768", nullptr)) != FALSE; });
        for (int i = 0; i < place; ++i) {
            TypeKey(VK_DOWN);
        }
        TypeKey(VK_RETURN);
    });
    CPoint point(5, 5);
    test.edit.ClientToScreen(&point);
    test.edit.SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(point.x, point.y));
}

void Drop(LineEditTest& test, const wchar_t* text)
{
    test.edit.SendMessage(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text));
}

void OpenCandidates(LineEditTest& test)
{
    test.edit.SendMessage(WM_IME_NOTIFY, IMN_OPENCANDIDATE, 1);
    EXPECT_EQ(test.GetShown(), L"");
}

using T = LineEditTest&;

// clang-format off
const HintCase hintCases[] = {
    {"Untouched", [](T) {}, L""},
    {"Typing", [](T) { Type("AB"); }, L"ab"},
    {"TypingTheHintItself", [](T) { Type("HINT"); }, L""},
    {"TypingOnFromTheHintItself", [](T) { Type("HINTS"); }, L"s"},
    {"DeletingTheLast", [](T) { Type("A"), TypeKey(VK_BACK); }, L""},
    {"DeletingForwards", [](T) { Type("A"), TypeKey(VK_HOME), TypeKey(VK_DELETE); }, L""},
    {"Moving", [](T) { TypeKey(VK_END), Press(VK_SHIFT, VK_HOME); }, L""},
    {"CharacterOfNoText", [](T t) { t.edit.SendMessage(WM_CHAR, VK_ESCAPE); }, L""},
    {"Undo", [](T) { Type("A"), Press(VK_CONTROL, 'Z'); }, L""},
    {"Cut", [](T t) { Type("AB"), t.edit.SetSel(0, -1), Press(VK_CONTROL, 'X'); }, L""},
    {"PasteByKeys", [](T) { SetClipboard(L"new"), Press(VK_CONTROL, 'V'); }, L"new"},
    {"PasteByMenu", [](T t) { SetClipboard(L"new"), ChooseFromMenu(t, 4); }, L"new"},
    {"PasteOfNothing", [](T t) { SetClipboard(L""), t.edit.SendMessage(WM_PASTE); }, L""},
    {"Drop", [](T t) { Drop(t, L"new"); }, L"new"},
    {"DropOfNothing", [](T t) { Drop(t, L""); }, L""},
    {"TextByTheHost", [](T t) { t.edit.SetWindowText(L"host"); }, L"host"},
    {"NoTextByTheHost", [](T t) { t.edit.SetWindowText(L""); }, L""},
    {"ClearByTheHost", [](T t) { Type("AB"), t.edit.Clear(); }, L""},
    {"ClearUnfocused", [](T t) { Type("AB"), ::SetFocus(t.other), t.edit.Clear(); }, L""},
    {"SelectAllAndType", [](T t) { t.edit.SetSel(0, -1), Type("A"); }, L"a"},
    {"FocusOut", [](T t) { ::SetFocus(t.other); }, L""},
    {"FocusOutAndIn", [](T t) { Type("A"), ::SetFocus(t.other), t.Focus(); }, L"a"},
    {"FocusToAndFro", [](T t) { for (HWND w : {t.other, t.edit.m_hWnd, t.other}) ::SetFocus(w); }, L""},
    {"Candidates", [](T t) { OpenCandidates(t), t.edit.SendMessage(WM_IME_CHAR, L'\x6F22'); }, L"\x6F22"},
    {"CandidatesGivenUp", [](T t) { OpenCandidates(t), ::SetFocus(t.other); }, L""},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, LineEditHint, testing::ValuesIn(hintCases), CaseName());

TEST_F(LineEditTest, ThePlaceInTheHintIsNotTheMouses)
{
    Focus();
    const auto selection = [&] { return edit.SendMessage(EM_GETSEL); };
    ASSERT_EQ(selection(), 0);
    ClickLeft(edit, {20, 10});
    EXPECT_EQ(selection(), 0);
    DragLeft(edit, {3, 10}, {60, 10});
    EXPECT_EQ(selection(), 0);
    edit.SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(10, 10));
    EXPECT_EQ(selection(), 0);
    Type("TEXT");
    DragLeft(edit, {1, 10}, {60, 10});
    EXPECT_EQ(selection(), MAKELONG(0, 4));
    // A click that brings the focus must not leave the caret behind in the hint either.
    edit.SetWindowText(L"");
    ::SetFocus(other);
    PressLeft(edit, {3, 10});
    MovePointer(edit, {60, 10});
    EXPECT_EQ(selection(), 0);
    ReleaseLeft(edit, {60, 10});
    EXPECT_EQ(::GetCapture(), nullptr);
}

LONG WINAPI CompositionOfTwoBytes(HIMC, DWORD, LPVOID, DWORD)
{
    return 2;
}

TEST_F(LineEditTest, AKeyOfACompositionLeavesTheHint)
{
    Focus();
    host.changes = 0;
    {
        const ImportHook composing(L"CommonUi.dll", "imm32.dll", "ImmGetCompositionStringW",
                                   &CompositionOfTwoBytes);
        TypeKey(VK_END);
        EXPECT_EQ(host.changes, 0);
    }
    TypeKey(VK_END);
    EXPECT_EQ(host.changes, 2);  // gone and back
}

TEST_F(LineEditTest, TheParentHearsOfEveryChange)
{
    std::vector<std::wstring> seen;
    host.atChange = [&] { seen.push_back(edit.GetText().c_str()); };
    Focus();
    seen.clear();
    Type("A");
    EXPECT_EQ(seen.back(), L"a");
    TypeKey(VK_BACK);
    EXPECT_EQ(seen.back(), L"");
    seen.clear();
    edit.SetWindowText(L"host");
    EXPECT_EQ(seen, std::vector<std::wstring>{L"host"});
    ::SetFocus(other);
    seen.clear();
    edit.Clear();
    EXPECT_EQ(seen, std::vector<std::wstring>{L""});  // by the hint itself
}

using DoomedEdit = Doomed<TestEdit>;

TEST_F(LineEditTest, TheHostMayEndTheEditAtAnyChange)
{
    SetClipboard(L"new");
    bool isEnded = true;
    int last = 0;
    while (isEnded) {
        auto* const doomed = new DoomedEdit;
        host.changes = -++last;
        host.atChange = [&] {
            if (host.changes == 0) {
                delete doomed;
            }
        };
        ASSERT_TRUE(
            doomed->Create(&host, CRect(10, 100, 210, 124), editId, hint, YLineEdit::SearchButton));
        const HWND handle = *doomed;
        PumpMessages();
        ::SetFocus(handle);
        Type("A");
        TypeKey(VK_BACK);
        ::SendMessageW(handle, WM_PASTE, 0, 0);
        ::SetWindowTextW(handle, L"");
        ::SendMessageW(handle, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(L"new"));
        ::SetWindowTextW(handle, L"");
        ::SendMessageW(handle, WM_CHAR, L'b', 1);
        ::SetWindowTextW(handle, L"");
        PumpMessages();
        ::SendMessageW(handle, WM_IME_NOTIFY, IMN_OPENCANDIDATE, 1);
        ::SetFocus(other);
        PumpMessages();
        isEnded = !::IsWindow(handle);
        if (!isEnded) {
            delete doomed;  // there were no more changes
        }
        EXPECT_TRUE(DoomedEdit::AreRemainsUntouched()) << last;
    }
    EXPECT_GT(last, 20);
    DoomedEdit::Bury();
    host.atChange = nullptr;
}

TEST_F(LineEditTest, TheImageFollowsTheTextAndChangesOnlyThen)
{
    const ImageWatch images;
    Focus();
    EXPECT_EQ(images.Take(), Ids{});
    Type("A");
    EXPECT_EQ(images.Take(), Ids{LINE_EDIT_IMAGE_CLEAR_COLOUR});
    edit.SetWindowText(L"host");
    EXPECT_EQ(images.Take(), Ids{});
    ClickLeft(edit, Button());
    EXPECT_EQ(images.Take(), Ids{LINE_EDIT_IMAGE_SEARCH_COLOUR});
}

int WINAPI GetCapsAt144Dpi(HDC, int index)
{
    return index == LOGPIXELSX || index == LOGPIXELSY ? 144 : 24;
}

TEST_F(LineEditTest, TheImageSuitsTheDisplay)
{
    const ImageWatch images;
    const auto change = [&](const wchar_t* text) {
        edit.SetWindowText(text);
        return images.Take();
    };
    globalData.m_nBitsPerPixel = 8;
    EXPECT_EQ(change(L"a"), Ids{LINE_EDIT_IMAGE_CLEAR});
    globalData.m_nBitsPerPixel = 16;
    EXPECT_EQ(change(L"b"), Ids{LINE_EDIT_IMAGE_CLEAR_COLOUR});
    globalData.m_bUseBuiltIn32BitIcons = FALSE;
    EXPECT_EQ(change(L""), Ids{LINE_EDIT_IMAGE_SEARCH});
    globalData.m_bUseBuiltIn32BitIcons = TRUE;
    globalData.m_nBitsPerPixel = 32;
    const int width = edit.m_rectBtn.Width();
    const ImportHook screen(L"CommonFramework.dll", "gdi32.dll", "GetDeviceCaps", &GetCapsAt144Dpi);
    EXPECT_EQ(change(L"c"), Ids{LINE_EDIT_IMAGE_CLEAR_COLOUR + LINE_EDIT_IMAGES_AT_144_DPI});
    EXPECT_EQ(edit.m_rectBtn.Width(), width * 3 / 2);
}

TEST_F(LineEditTest, ADialogsEditIsTakenOverWithItsButton)
{
    const HWND made =
        ::CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"template", WS_CHILD | WS_VISIBLE, 10, 100,
                          200, 24, host, nullptr, nullptr, nullptr);
    TestEdit field;
    ASSERT_TRUE(field.SubclassWindow(made));
    const ImageWatch images;
    field.InitControl(L"folder", YLineEdit::BrowseButton);
    EXPECT_EQ(images.Take(), Ids{LINE_EDIT_IMAGE_BROWSE});
    EXPECT_TRUE(field.IsPlaceholderText());
    field.SetPlaceholderText(L"other");
    EXPECT_EQ(field.GetText(), L"folder");  // what is shown stays, and is text now
    ClickLeft(field, field.m_rectBtn.CenterPoint());
    EXPECT_EQ(field.GetText(), L"");
    EXPECT_TRUE(field.IsPlaceholderText());
    field.DestroyWindow();
}

// What the shown tooltip says; empty: there is none.
std::wstring GetTooltip()
{
    for (HWND tip = nullptr;
         (tip = ::FindWindowExW(nullptr, tip, TOOLTIPS_CLASSW, nullptr)) != nullptr;) {
        ::SendMessageW(tip, TTM_SETDELAYTIME, TTDT_INITIAL, 10);
        if (::IsWindowVisible(tip)) {
            wchar_t text[80] = {};
            TOOLINFOW tool{};
            tool.cbSize = TTTOOLINFOW_V2_SIZE;
            tool.lpszText = text;
            ::SendMessageW(tip, TTM_GETCURRENTTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
            return text;
        }
    }
    return L"";
}

// In the language of the user, which another run of this test makes French.
TEST_F(LineEditTest, TheButtonSaysWhatItDoes)
{
    const bool isFrench = PRIMARYLANGID(::GetUserDefaultUILanguage()) == LANG_FRENCH;
    const auto says = [&](const wchar_t* english, const wchar_t* french) {
        MovePointer(host, {300, 200});
        EXPECT_TRUE(PumpUntil([] { return GetTooltip().empty(); }));
        MovePointer(edit, Button());
        return PumpUntil([&] { return GetTooltip() == (isFrench ? french : english); });
    };
    EXPECT_TRUE(says(L"Search", L"Rechercher"));
    edit.SetWindowPos(nullptr, 0, 0, 120, 24, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_TRUE(says(L"Search", L"Rechercher"));
    edit.SetWindowText(L"text");
    EXPECT_TRUE(says(L"Clear (Esc)", L"Effacer (\xC9"
                                     L"chap)"));
    MovePointer(edit, {20, 10});
    EXPECT_TRUE(PumpUntil([] { return GetTooltip().empty(); }));
}

TEST_F(LineEditTest, ADisabledHintStandsOnWhiteOutsideToolbars)
{
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    edit.EnableWindow(FALSE);
    EXPECT_EQ(edit.CtlColor(&dc, CTLCOLOR_STATIC), ::GetSysColorBrush(COLOR_WINDOW));
    EXPECT_EQ(dc.GetTextColor(), RGB(128, 128, 128));
    EXPECT_EQ(dc.GetBkColor(), ::GetSysColor(COLOR_WINDOW));
    edit.UpdateWindow();
    CWindowDC window(&edit);  // and so does the button
    EXPECT_EQ(window.GetPixel(edit.m_rectBtn.left + 1, 1), ::GetSysColor(COLOR_WINDOW));
    edit.SetWindowText(L"text");
    EXPECT_EQ(edit.CtlColor(&dc, CTLCOLOR_STATIC), ::GetSysColorBrush(COLOR_BTNFACE));
    EXPECT_EQ(dc.GetTextColor(), ::GetSysColor(COLOR_GRAYTEXT));
}

TEST_F(LineEditTest, CompletesWhatIsTyped)
{
    const auto source = YUnknownPointer<TestSource>::Make();
    source->answersAtOnce = [](const std::wstring& text) {
        return std::vector<std::wstring>{text + L"1"};
    };
    RecordingSink sink;
    ASSERT_TRUE(YAutoComplete::CreateAndAttach(edit, source.Get(), &sink, true));
    Focus();
    Type("A");
    TypeKey(VK_DOWN);
    EXPECT_EQ(GetShown(), L"a1");
    TypeKey(VK_ESCAPE);
    EXPECT_EQ(GetShown(), hint);
    edit.DestroyWindow();
    PumpMessages();
    source->sinks.clear();
}

TEST_F(LineEditTest, LeavesNothingBehind)
{
    const auto round = [this] {
        for (const auto icon :
             {YLineEdit::NoButton, YLineEdit::SearchButton, YLineEdit::BrowseButton}) {
            TestEdit field;
            ASSERT_TRUE(field.Create(&host, CRect(10, 100, 210, 124), 90, hint, icon));
            PumpMessages();
            field.SetWindowText(L"text");
            field.UpdateWindow();
            field.SetWindowText(L"");
        }
        CWinThread().OnIdle(1);
    };
    round();
    const LeakCheck leaks;
    for (int i = 0; i < 20; ++i) {
        round();
    }
}

}  // namespace
