// The text view as its user meets it: bars, wheel, mouse, keys, linked views, clipboard.

#include "support/CaseName.h"
#include "textview/ViewFixture.h"

#include <afxole.h>

#include <array>

namespace {

using Selection = TestView::Selection;

SCROLLINFO InfoOf(HWND window, int bar)
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    ::GetScrollInfo(window, bar, &info);
    return info;
}

bool HasBar(const CWnd& window, int bar)
{
    return (window.GetStyle() & (bar == SB_VERT ? WS_VSCROLL : WS_HSCROLL)) != 0;
}

// Moves the pointer down in steps and lets the button go, by a timer: the loop in which the system
// follows the thumb of a bar handles no other code of ours. Each step waits for what the last did.
class ThumbDrag
{
public:
    ThumbDrag(TestView& dragged, int pixels) : view(dragged), distance(pixels)
    {
        current = this;
        ::SetTimer(view, timer, 10, &OnTimer);
    }
    ~ThumbDrag() { ::KillTimer(view, timer); }
    ThumbDrag(const ThumbDrag&) = delete;
    ThumbDrag& operator=(const ThumbDrag&) = delete;

    bool IsDone() const { return isDone; }

private:
    static constexpr UINT_PTR timer = 1;
    static constexpr int steps = 4;
    static constexpr int patience = 500;  // ticks

    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) { current->OnTick(); }

    void OnTick()
    {
        const bool gaveUp = ++ticks == patience;
        if (isDone || !(gaveUp || (::GetCapture() && view.trackMessages != seen))) {
            return;
        }
        if (gaveUp || step == steps) {
            isDone = true;
            INPUT up = ButtonInput(MOUSEEVENTF_LEFTUP);
            ::SendInput(1, &up, sizeof up);
            return;
        }
        if (step++ == 0) {
            ::GetCursorPos(&start);
        }
        seen = view.trackMessages;
        ::SetCursorPos(start.x, start.y + distance * step / steps);
    }

    static inline ThumbDrag* current = nullptr;
    TestView& view;
    int distance;
    POINT start{};
    int step = 0;
    int ticks = 0;
    unsigned seen = npos;
    bool isDone = false;
};

// For the life of the object; the user's setting comes back.
class WheelLines
{
public:
    explicit WheelLines(UINT lines)
    {
        ::SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &before, 0);
        ::SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, lines, nullptr, 0);
    }
    ~WheelLines() { ::SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, before, nullptr, 0); }
    WheelLines(const WheelLines&) = delete;
    WheelLines& operator=(const WheelLines&) = delete;

private:
    UINT before = 3;
};

}  // namespace

// Bars

// All the pixel tests rest on this.
TEST_F(ViewTest, TheDefaultFontIsOfFixedPitch)
{
    CClientDC dc(view);
    const std::wstring face = L"Courier New";
    CFont font;
    ASSERT_TRUE(font.CreateFontW(-13, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                 OUT_STRING_PRECIS, CLIP_CHARACTER_PRECIS, DEFAULT_QUALITY,
                                 DEFAULT_PITCH, face.c_str()));
    CFont* const before = dc.SelectObject(&font);
    EXPECT_EQ(dc.GetTextExtent(L"i", 1).cx, cell.cx);
    EXPECT_EQ(dc.GetTextExtent(L"W", 1).cx, cell.cx);
    dc.SelectObject(before);
    EXPECT_EQ(view->GetPageWidth(), static_cast<unsigned>(columns));
    EXPECT_EQ(view->GetPageHeight(), static_cast<unsigned>(rows));
}

// A bar that comes or goes resizes the client area from inside the call, which may bring the other
// one along: whatever the text, both end up right for what is left.
TEST_F(ViewTest, BarsAreThereExactlyWhenTheTextDoesNotFit)
{
    const auto expectConsistent = [this](int bar, unsigned total, unsigned page) {
        EXPECT_EQ(HasBar(*view, bar), total > page);
        if (total > page) {
            const SCROLLINFO info = InfoOf(*view, bar);
            EXPECT_EQ(info.nMin, 0);
            EXPECT_EQ(info.nMax, static_cast<int>(total) - 1);
            EXPECT_EQ(info.nPage, page);
        }
    };
    for (unsigned lines = 1; lines <= rows + 2; ++lines) {
        for (const unsigned width : {1, columns - 3, columns - 2, columns, columns + 1}) {
            SCOPED_TRACE(std::to_string(lines) + " lines of " + std::to_string(width));
            view->Append(std::vector<std::wstring>(lines, std::wstring(width, L'x')));
            RECT client{};
            ::GetClientRect(*view, &client);
            EXPECT_EQ(view->GetPageWidth(), static_cast<unsigned>(client.right / cell.cx));
            EXPECT_EQ(view->GetPageHeight(), static_cast<unsigned>(client.bottom / cell.cy));
            expectConsistent(SB_VERT, lines, view->GetPageHeight());
            expectConsistent(SB_HORZ, width, view->GetPageWidth());
            view->Clear();
            EXPECT_FALSE(HasBar(*view, SB_VERT) || HasBar(*view, SB_HORZ));
            EXPECT_EQ(view->GetVScrollPoint(), 0u);
        }
    }
}

TEST_F(ViewTest, AWindowThatGrowsPastTheTextLosesItsBars)
{
    view->Append(std::vector<std::wstring>(rows + 2, std::wstring(columns + 2, L'x')));
    EXPECT_TRUE(HasBar(*view, SB_VERT) && HasBar(*view, SB_HORZ));
    EXPECT_GT(view->GetVScrollPoint(), 0u);
    view->MoveWindow(0, 0, (columns + 5) * cell.cx, (rows + 5) * cell.cy);
    EXPECT_FALSE(HasBar(*view, SB_VERT) || HasBar(*view, SB_HORZ));
    EXPECT_EQ(view->GetVScrollPoint(), 0u);
    view->MoveWindow(0, 0, 0, 0);
    view->MoveWindow(0, 0, columns * cell.cx, rows * cell.cy);
    EXPECT_TRUE(HasBar(*view, SB_VERT) && HasBar(*view, SB_HORZ));
}

struct ScrollCase
{
    const char* name;
    UINT code;
    int from, vertical, horizontal;  // expected
};

class ViewScroll : public ViewTest, public testing::WithParamInterface<ScrollCase>
{};

TEST_P(ViewScroll, GoesWhereTheCodeLeads)
{
    const ScrollCase& c = GetParam();
    view->SetBufferSize(200);
    view->Append(std::vector<std::wstring>(100, std::wstring(100, L'x')));
    // Both bars are there and 10 x 40 cells are left.
    view->MoveWindow(0, 0, columns * cell.cx + ::GetSystemMetrics(SM_CXVSCROLL),
                     rows * cell.cy + ::GetSystemMetrics(SM_CYHSCROLL));
    view->ScrollToPoint(static_cast<unsigned>(c.from), static_cast<unsigned>(c.from));
    view->SendMessage(WM_VSCROLL, MAKEWPARAM(c.code, 7));
    EXPECT_EQ(view->GetVScrollPoint(), static_cast<unsigned>(c.vertical));
    view->SendMessage(WM_HSCROLL, MAKEWPARAM(c.code, 7));
    EXPECT_EQ(view->GetHScrollPoint(), static_cast<unsigned>(c.horizontal));
}

// The system clamps positions to the last page: 90 lines down, 60 columns right.
INSTANTIATE_TEST_SUITE_P(Codes, ViewScroll,
                         testing::Values(ScrollCase{"LineUp", SB_LINEUP, 50, 49, 49},
                                         ScrollCase{"LineDown", SB_LINEDOWN, 50, 51, 51},
                                         ScrollCase{"LineDownAtTheEnd", SB_LINEDOWN, 95, 90, 60},
                                         ScrollCase{"PageUp", SB_PAGEUP, 50, 40, 10},
                                         ScrollCase{"PageDown", SB_PAGEDOWN, 20, 30, 60},
                                         ScrollCase{"Top", SB_TOP, 50, 0, 50},
                                         ScrollCase{"Bottom", SB_BOTTOM, 50, 90, 50},
                                         ScrollCase{"EndScroll", SB_ENDSCROLL, 50, 50, 50},
                                         ScrollCase{"AnotherCode", 77, 50, 7, 7}),
                         CaseName());

// The message carries 16 bits of the position; the view asks for the rest.
TEST_F(ViewTest, TheThumbReachesEveryOfAHundredThousandLines)
{
    constexpr unsigned lines = 100'000;
    view->SetBufferSize(lines);
    view->AppendNumbered(0, lines);
    view->SendMessage(WM_VSCROLL, SB_TOP);
    SCROLLBARINFO info{};
    info.cbSize = sizeof info;
    ASSERT_TRUE(::GetScrollBarInfo(*view, OBJID_VSCROLL, &info));
    RECT place = info.rcScrollBar;
    ::MapWindowPoints(nullptr, *view, reinterpret_cast<POINT*>(&place), 2);
    const ThumbDrag drag(*view, (place.bottom - place.top) * 3 / 5);
    PressLeft(*view, {(place.left + place.right) / 2,
                      place.top + (info.xyThumbTop + info.xyThumbBottom) / 2});
    EXPECT_TRUE(PumpUntil([&drag] { return drag.IsDone() && !::GetCapture(); }, 10'000));
    EXPECT_GE(view->trackMessages, 4u);
    EXPECT_GT(view->GetVScrollPoint(), 65'535u);
    EXPECT_LT(view->GetVScrollPoint(), lines - rows);
    EXPECT_EQ(view->GetVScrollPoint(), static_cast<unsigned>(InfoOf(*view, SB_VERT).nPos));
}

struct WheelCase
{
    const char* name;
    UINT setting;
    int delta, expected;
};

class ViewWheel : public ViewTest, public testing::WithParamInterface<WheelCase>
{};

TEST_P(ViewWheel, ScrollsByTheUsersSetting)
{
    const WheelCase& c = GetParam();
    const WheelLines setting(c.setting);
    view->SetBufferSize(100);
    view->AppendNumbered(0, 100);
    view->ScrollToPoint(50, 0);
    TurnWheel(*view, InCell(5, 5), c.delta);
    EXPECT_EQ(view->GetVScrollPoint(), static_cast<unsigned>(c.expected));
}

INSTANTIATE_TEST_SUITE_P(Turns, ViewWheel,
                         testing::Values(WheelCase{"OneNotchUp", 3, 120, 47},
                                         WheelCase{"APartDownIsANotch", 3, -30, 53},
                                         WheelCase{"ANotchAndAPartIsANotch", 3, -239, 53},
                                         WheelCase{"BeyondTheTop", 3, 120 * 40, 0},
                                         WheelCase{"ByPages", WHEEL_PAGESCROLL, -120, 60},
                                         WheelCase{"NotAtAll", 0, -120, 50}),
                         CaseName());

// Mouse

struct DragOutCase
{
    const char* name;
    int column, row;  // where the pointer goes, in cells of the page
    unsigned line, left;  // first visible line and column after one move
};

class ViewDragOut : public ViewTest, public testing::WithParamInterface<DragOutCase>
{};

TEST_P(ViewDragOut, ScrollsByTheDistanceAtEachMoveAndNotAtRelease)
{
    const DragOutCase& c = GetParam();
    view->SetBufferSize(200);
    view->Append(std::vector<std::wstring>(100, std::wstring(100, L'x')));
    view->MoveWindow(100, 100, columns * cell.cx + ::GetSystemMetrics(SM_CXVSCROLL),
                     rows * cell.cy + ::GetSystemMetrics(SM_CYHSCROLL));
    view->ScrollToPoint(50, 30);
    PressLeft(*view, InCell(10, 5));
    MovePointer(*view, InCell(c.column, c.row));
    EXPECT_EQ(view->GetVScrollPoint(), c.line);
    EXPECT_EQ(view->GetHScrollPoint(), c.left);
    ReleaseLeft(*view, InCell(c.column, c.row));
    EXPECT_EQ(::GetCapture(), nullptr);
    EXPECT_EQ(view->GetVScrollPoint(), c.line);
    EXPECT_EQ(view->GetHScrollPoint(), c.left);
    EXPECT_TRUE(view->CanCopy());
}

INSTANTIATE_TEST_SUITE_P(Directions, ViewDragOut,
                         testing::Values(DragOutCase{"Inside", 20, 8, 50, 30},
                                         DragOutCase{"Left", -6, 5, 50, 25},
                                         DragOutCase{"Right", 45, 5, 50, 35},
                                         DragOutCase{"AboveAndLeft", -6, -4, 47, 25},
                                         DragOutCase{"BelowAndRight", 45, 14, 54, 35}),
                         CaseName());

TEST_F(ViewTest, ShiftExtendsAndAltSelectsARectangle)
{
    view->Append({L"0123456789", L"0123456789", L"0123456789", L"0123456789"});
    DragLeft(*view, InCell(2, 1), InCell(4, 1, 7));
    EXPECT_EQ(view->GetSelection(), (Selection{1, 2, 1, 4}));
    EXPECT_FALSE(view->IsColumnSelect());
    MovePointer(*view, InCell(7, 2));
    SendTogether({KeyInput(VK_SHIFT), ButtonInput(MOUSEEVENTF_LEFTDOWN),
                  ButtonInput(MOUSEEVENTF_LEFTUP), KeyInput(VK_SHIFT, KEYEVENTF_KEYUP)});
    EXPECT_EQ(view->GetSelection(), (Selection{1, 2, 2, 7}));
    ClickLeft(*view, InCell(3, 3));
    EXPECT_EQ(view->GetSelection(), std::nullopt);
    MovePointer(*view, InCell(6, 0));
    SendTogether({KeyInput(VK_MENU), ButtonInput(MOUSEEVENTF_LEFTDOWN)});
    MovePointer(*view, InCell(3, 2));
    ReleaseLeft(*view, InCell(3, 2));
    SendTogether({KeyInput(VK_MENU, KEYEVENTF_KEYUP)});
    EXPECT_EQ(view->GetSelection(), (Selection{0, 3, 2, 6}));
    EXPECT_TRUE(view->IsColumnSelect());
}

TEST_F(ViewTest, ThePointerIsAnIBeamOverTheTextOnly)
{
    view->AppendNumbered(0, 2 * rows);
    MovePointer(*view, InCell(5, 5));
    EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_IBEAM));
    RECT client{};
    ::GetClientRect(*view, &client);
    MovePointer(*view, {client.right + 8, client.bottom / 2});
    EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_ARROW));
}

// Keys

TEST_F(ViewTest, CtrlEndFollowsTheEndAgain)
{
    view->SetBufferSize(100);
    view->AppendNumbered(0, 60);
    ClickLeft(*view, InCell(1, 1));
    view->ScrollToPoint(5, 0);
    view->AppendNumbered(60, 1);
    EXPECT_EQ(view->GetVScrollPoint(), 5u);
    TypeKey(VK_END);  // alone it is the host's
    EXPECT_EQ(view->GetVScrollPoint(), 5u);
    SendTogether({KeyInput(VK_CONTROL), KeyInput(VK_END), KeyInput(VK_END, KEYEVENTF_KEYUP),
                  KeyInput(VK_CONTROL, KEYEVENTF_KEYUP)});
    EXPECT_EQ(view->GetVScrollPoint(), 51u);
    view->AppendNumbered(61, 1);
    EXPECT_EQ(view->GetVScrollPoint(), 52u);
}

// Linked views

TEST_F(LinkedViewTest, TheOtherViewShowsTheSameSelection)
{
    Append({L"0123456789", L"0123456789"});
    DragLeft(*view, InCell(2, 0), InCell(4, 1, 7));
    EXPECT_EQ(view->GetSelection(), (Selection{0, 2, 1, 4}));
    EXPECT_EQ(other->GetSelection(), view->GetSelection());
    DragLeft(*other, InCell(5, 1), InCell(6, 1, 7));
    EXPECT_EQ(other->GetSelection(), (Selection{1, 5, 1, 6}));
    EXPECT_EQ(view->GetSelection(), other->GetSelection());
    ClickLeft(*view, InCell(0, 0));
    EXPECT_EQ(view->GetSelection(), std::nullopt);
    EXPECT_EQ(other->GetSelection(), std::nullopt);
    other->SelectAll();
    EXPECT_EQ(view->GetSelection(), (Selection{0, 0, 1, 9}));
    MovePointer(*view, InCell(3, 0));
    SendTogether({KeyInput(VK_MENU), ButtonInput(MOUSEEVENTF_LEFTDOWN)});
    ReleaseLeft(*view, InCell(6, 1));
    SendTogether({KeyInput(VK_MENU, KEYEVENTF_KEYUP)});
    EXPECT_EQ(other->GetSelection(), (Selection{0, 3, 1, 6}));
    EXPECT_TRUE(other->IsColumnSelect());
}

TEST_F(LinkedViewTest, ClickClearAndFontGoToBoth)
{
    const auto appendBoth = [this](unsigned first, unsigned count) {
        view->AppendNumbered(first, count);
        other->AppendNumbered(first, count);
    };
    appendBoth(0, 30);
    ClickLeft(*view, InCell(0, 0));
    appendBoth(30, 5);
    EXPECT_EQ(view->GetVScrollPoint(), 20u);
    EXPECT_EQ(other->GetVScrollPoint(), 20u);
    view->Clear();
    EXPECT_FALSE(other->CanClear());
    appendBoth(0, 30);
    EXPECT_EQ(other->GetVScrollPoint(), 20u);

    other->UpdateFont(YLogFont(FontOf(L"Courier New", -24)));
    EXPECT_GT(view->GetCharacterHeight(), cell.cy);
    EXPECT_EQ(view->GetCharacterHeight(), other->GetCharacterHeight());
    EXPECT_EQ(view->GetCharacterWidth(), other->GetCharacterWidth());
}

TEST_F(LinkedBarTest, ScrollMessagesAndWheelGoToTheLinkedBarOnly)
{
    EXPECT_FALSE(HasBar(*view, SB_VERT));
    EXPECT_EQ(bar.total, 100u);
    EXPECT_EQ(bar.page, static_cast<unsigned>(rows));
    EXPECT_EQ(view->GetVScrollPoint(), 90u);
    bar.synced.clear();
    view->SendMessage(WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 12));
    EXPECT_EQ(bar.scrolls, (std::vector<std::pair<UINT, UINT>>{{SB_THUMBPOSITION, 12}}));
    TurnWheel(*view, InCell(5, 5), -120);
    EXPECT_EQ(bar.wheels, std::vector<int>{-120});
    EXPECT_EQ(view->SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, 120)), 17);
    EXPECT_TRUE(bar.synced.empty());
    EXPECT_EQ(view->GetVScrollPoint(), 90u);
}

TEST_F(LinkedBarTest, TheOwnBarContinuesWhereTheLinkedOneStood)
{
    bar.ScrollToPoint(42);
    view->ShowVertScrollbarIfNeeded(true);
    EXPECT_TRUE(HasBar(*view, SB_VERT));
    EXPECT_EQ(view->GetVScrollPoint(), 42u);
    EXPECT_EQ(InfoOf(*view, SB_VERT).nMax, 99);
    bar.synced.clear();
    view->SendMessage(WM_VSCROLL, SB_LINEDOWN);
    EXPECT_EQ(bar.synced, std::vector<unsigned>{43});
    EXPECT_TRUE(bar.scrolls.empty());
    view->ShowVertScrollbarIfNeeded(false);
    EXPECT_FALSE(HasBar(*view, SB_VERT));
    EXPECT_EQ(view->GetVScrollPoint(), 42u);  // the linked bar's again
}

// Clipboard

namespace {

// What another program reads from the clipboard, as UTF-8. Its reading waits for our messages.
std::string ReadInAnotherProcess()
{
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    if (!::CreatePipe(&read, &write, &inherited, 1 << 16)) {
        return "no pipe";
    }
    wchar_t command[MAX_PATH] = L"";
    ::GetModuleFileNameW(nullptr, command, MAX_PATH);
    std::wcscpy(std::wcsrchr(command, L'\\') + 1, L"ClipboardReader.exe");
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = write;
    PROCESS_INFORMATION process{};
    std::string text = "not started";
    if (::CreateProcessW(nullptr, command, nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                         &process)) {
        const bool ended = PumpUntil(
            [&process] { return ::WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0; },
            20'000);
        std::array<char, 4096> bytes{};
        DWORD size = 0;
        if (ended) {
            ::PeekNamedPipe(read, bytes.data(), static_cast<DWORD>(bytes.size()), &size, nullptr,
                            nullptr);
        }
        text.assign(bytes.data(), size);
        ::CloseHandle(process.hThread);
        ::CloseHandle(process.hProcess);
    }
    ::CloseHandle(read);
    ::CloseHandle(write);
    return text;
}

}  // namespace

TEST_F(ViewTest, AnotherProgramReadsWhatWasCopied)
{
    view->Append({L"one \x20AC", L"two \xD83D\xDE00", L"three"});
    DragLeft(*view, InCell(4, 0), InCell(2, 2, 7));
    view->OnEditCopy();
    EXPECT_EQ(ReadInAnotherProcess(), "\xE2\x82\xAC\r\ntwo \xF0\x9F\x98\x80\r\nthr\r\n");
    ::OleSetClipboard(nullptr);
}
