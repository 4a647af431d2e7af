// The text view as its user meets it: bars, wheel, mouse, keys, linked views, clipboard.

#include "textview/ViewFixture.h"

#include <afxole.h>

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

}  // namespace

// Bars

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

TEST_F(ViewTest, GoesWhereTheScrollCodeLeads)
{
    view->SetBufferSize(200);
    view->Append(std::vector<std::wstring>(100, std::wstring(100, L'x')));
    // Both bars are there and 10 x 40 cells are left.
    view->MoveWindow(0, 0, columns * cell.cx + ::GetSystemMetrics(SM_CXVSCROLL),
                     rows * cell.cy + ::GetSystemMetrics(SM_CYHSCROLL));
    // The system clamps positions to the last page: 90 lines down, 60 columns right.
    const struct
    {
        UINT code;
        unsigned from, vertical, horizontal;  // expected
    } cases[] = {{SB_LINEUP, 50, 49, 49},
                 {SB_LINEDOWN, 50, 51, 51},
                 {SB_LINEDOWN, 95, 90, 60},
                 {SB_PAGEUP, 50, 40, 10},
                 {SB_PAGEDOWN, 20, 30, 60},
                 {SB_TOP, 50, 0, 50},
                 {SB_BOTTOM, 50, 90, 50},
                 {SB_ENDSCROLL, 50, 50, 50},
                 {77, 50, 7, 7}};  // of no meaning: the position that the message carries
    for (const auto& c : cases) {
        view->ScrollToPoint(c.from, c.from);
        view->SendMessage(WM_VSCROLL, MAKEWPARAM(c.code, 7));
        view->SendMessage(WM_HSCROLL, MAKEWPARAM(c.code, 7));
        EXPECT_EQ(view->GetVScrollPoint(), c.vertical) << c.code;
        EXPECT_EQ(view->GetHScrollPoint(), c.horizontal) << c.code;
    }
}

// The message carries 16 bits of the position; the view asks for the rest. The whole drag is in the
// input queue before it begins: the loop in which the system follows the thumb runs no code of ours.
TEST_F(ViewTest, TheThumbReachesEveryOfAHundredThousandLines)
{
    constexpr unsigned lines = 100'000;
    view->SetBufferSize(lines);
    view->AppendNumbered(0, lines);
    view->SendMessage(WM_VSCROLL, SB_TOP);
    SCROLLBARINFO info{};
    info.cbSize = sizeof info;
    ASSERT_TRUE(::GetScrollBarInfo(*view, OBJID_VSCROLL, &info));
    const RECT& bar = info.rcScrollBar;
    POINT thumb{(bar.left + bar.right) / 2, bar.top + (info.xyThumbTop + info.xyThumbBottom) / 2};
    INPUT move = ButtonInput(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE);
    move.mi.dx = 65536 * thumb.x / ::GetSystemMetrics(SM_CXSCREEN);
    move.mi.dy =
        65536 * (thumb.y + (bar.bottom - bar.top) * 3 / 5) / ::GetSystemMetrics(SM_CYSCREEN);
    ::ScreenToClient(*view, &thumb);
    MovePointer(*view, thumb);
    SendTogether({ButtonInput(MOUSEEVENTF_LEFTDOWN), move, ButtonInput(MOUSEEVENTF_LEFTUP)});
    EXPECT_EQ(::GetCapture(), nullptr);
    EXPECT_GT(view->trackedLine, 65'535u);
    EXPECT_GT(view->GetVScrollPoint(), 65'535u);
    EXPECT_LT(view->GetVScrollPoint(), lines - rows);
    EXPECT_EQ(view->GetVScrollPoint(), static_cast<unsigned>(InfoOf(*view, SB_VERT).nPos));
}

TEST_F(ViewTest, TheWheelScrollsByTheUsersSetting)
{
    UINT usersSetting = 3;
    ::SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &usersSetting, 0);
    view->SetBufferSize(100);
    view->AppendNumbered(0, 100);
    const struct
    {
        UINT setting;
        int delta;
        unsigned expected;
    } cases[] = {{3, 120, 47},     {3, -30, 53},  // a part of a notch is one
                 {3, -239, 53},  // and so are a notch and a part
                 {3, 120 * 40, 0}, {WHEEL_PAGESCROLL, -120, 60},
                 {0, -120, 50}};
    for (const auto& c : cases) {
        ::SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, c.setting, nullptr, 0);
        view->ScrollToPoint(50, 0);
        TurnWheel(*view, InCell(5, 5), c.delta);
        EXPECT_EQ(view->GetVScrollPoint(), c.expected) << c.setting << " lines, " << c.delta;
    }
    ::SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, usersSetting, nullptr, 0);
}

// Mouse

TEST_F(ViewTest, ADragOutScrollsByTheDistanceAtEachMoveAndNotAtRelease)
{
    view->SetBufferSize(200);
    view->Append(std::vector<std::wstring>(100, std::wstring(100, L'x')));
    view->MoveWindow(100, 100, columns * cell.cx + ::GetSystemMetrics(SM_CXVSCROLL),
                     rows * cell.cy + ::GetSystemMetrics(SM_CYHSCROLL));
    const struct
    {
        int column, row;  // where the pointer goes, in cells of the page
        unsigned line, left;  // first visible line and column after one move
    } cases[] = {{20, 8, 50, 30}, {-6, -4, 47, 25}, {45, 14, 54, 35}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.column);
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
}

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
    TypeKey(VK_END);  // alone it is the host's
    EXPECT_EQ(view->GetVScrollPoint(), 5u);
    SendTogether({KeyInput(VK_CONTROL), KeyInput(VK_END), KeyInput(VK_END, KEYEVENTF_KEYUP),
                  KeyInput(VK_CONTROL, KEYEVENTF_KEYUP)});
    view->AppendNumbered(60, 1);
    EXPECT_EQ(view->GetVScrollPoint(), 51u);
}

// Linked views

TEST_F(ViewTest, ALinkedViewShowsTheSameSelection)
{
    TestView* const other = MakeView(2);
    Place(*other, 280);  // below
    view->SetLinkedView(other);
    other->SetLinkedView(view);
    for (TestView* const each : {view, other}) {
        each->Append({L"0123456789", L"0123456789"});
    }
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

// Whether another program reads this text from the clipboard. Its reading waits for our messages.
bool IsReadInAnotherProcess(const std::wstring& text)
{
    std::wstring command = L"ClipboardReader.exe \"" + text + L'"';
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &startup, &process)) {
        return false;
    }
    DWORD exitCode = STILL_ACTIVE;
    PumpUntil(
        [&] {
            ::GetExitCodeProcess(process.hProcess, &exitCode);
            return exitCode != STILL_ACTIVE;
        },
        20'000);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return exitCode == 0;
}

}  // namespace

TEST_F(ViewTest, AnotherProgramReadsWhatWasCopied)
{
    view->Append({L"one \x20AC", L"two \xD83D\xDE00", L"three"});
    DragLeft(*view, InCell(4, 0), InCell(2, 2, 7));
    view->OnEditCopy();
    view->SelectAll();
    view->EnableCopy(false);
    view->OnEditCopy();  // copies nothing now
    EXPECT_TRUE(IsReadInAnotherProcess(L"\x20AC\r\ntwo \xD83D\xDE00\r\nthr\r\n"));
    ::OleSetClipboard(nullptr);
}
