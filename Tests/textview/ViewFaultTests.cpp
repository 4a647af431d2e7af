// The text view when things go wrong around it: lines that go while they are selected, output from
// inside a drag, a system without memory, fonts, bitmaps or clipboard.

#include "textview/ClipboardFaults.h"
#include "textview/RecordingView.h"
#include "textview/ViewFixture.h"

#include <afxole.h>

#include <chrono>

namespace {

class ViewFaultTest : public ViewTest
{
protected:
    // The view does what it is for.
    void ExpectUsable() const
    {
        view->Clear();
        view->Append({L"usable", L"again"});
        EXPECT_GT(Shoot(Page()).Count(::GetSysColor(COLOR_WINDOWTEXT)), 0);
        Select(0, 0, 2, 1);
        view->OnEditCopy();
        EXPECT_EQ(ClipboardText(), L"usable\r\naga\r\n");
        ::OleSetClipboard(nullptr);
    }
};

}  // namespace

// Lines that go

// One drag and one click with Shift, with lines dropped before one of its steps. Rows show lines 120
// to 129, three more when three were dropped. Where the button goes down is a place in the window:
// the text that is there at the first move begins the selection.
TEST_F(ViewFaultTest, BothEndsStayWithTheirTextWhenLinesGo)
{
    const std::function<void()> steps[] = {[this] { SendMouse(WM_LBUTTONDOWN, InCell(0, 2, 0)); },
                                           [this] { SendMouse(WM_MOUSEMOVE, InCell(2, 4)); },
                                           [this] { SendMouse(WM_MOUSEMOVE, InCell(2, 5)); },
                                           [this] { SendMouse(WM_LBUTTONUP, InCell(2, 6)); },
                                           [this] {
                                               const KeyDown shift(VK_SHIFT);
                                               SendMouse(WM_LBUTTONDOWN, InCell(2, 8));
                                               SendMouse(WM_LBUTTONUP, InCell(2, 8));
                                           },
                                           [] {}};
    using Texts = std::pair<std::wstring, std::wstring>;  // of the first and the last selected line
    const Texts expected[] = {{L"125", L"131"}, {L"125", L"131"}, {L"122", L"131"},
                              {L"122", L"131"}, {L"122", L"131"}, {L"122", L"128"}};
    for (std::size_t dropAt = 0; dropAt < std::size(steps); ++dropAt) {
        SCOPED_TRACE(dropAt);
        view->Clear();
        view->AppendNumbered(100, 50);
        view->SetCaret(true);
        view->ScrollToPoint(20, 0);
        for (std::size_t step = 0; step < std::size(steps); ++step) {
            if (step == dropAt) {
                view->AppendNumbered(150, 3);
            }
            steps[step]();
        }
        const auto selection = view->GetSelection().value_or(TestView::Selection{});
        EXPECT_EQ(Texts(TextOf(view->GetBuffer(), selection.line),
                        TextOf(view->GetBuffer(), selection.endLine)),
                  expected[dropAt]);
        view->AppendNumbered(200, 50);
        EXPECT_EQ(view->GetSelection(), std::nullopt);
        EXPECT_FALSE(view->CanCopy());
    }
}

TEST_F(ViewFaultTest, OutputThatArrivesInsideADragPushesTheSelectionOut)
{
    unsigned next = 50;
    view->AppendNumbered(0, 50);
    view->ScrollToPoint(0, 0);
    view->atPost = [this, &next] {
        view->AppendNumbered(next, 7);
        next += 7;
    };
    PressLeft(*view, InCell(0, 1));
    for (int move = 0; move < 20; ++move) {
        MovePointer(*view, InCell(1 + move % 2, 2 + move % 5));
        view->PostMessage(WM_APP);
        PumpMessages();
        const auto selection = view->GetSelection();
        ASSERT_TRUE(!selection || selection->endLine < 50);
    }
    ReleaseLeft(*view, InCell(2, 6));
    EXPECT_EQ(view->GetVScrollPoint(), 0u);
    ExpectUsable();
}

// What a host may do to the view while the view tells it of a selection.
TEST_F(ViewFaultTest, TheHostMayChangeTheViewFromInside)
{
    const std::function<void()> acts[] = {[this] { view->AppendNumbered(0, 10); },
                                          [this] { view->Clear(); }, [this] { view->SelectAll(); },
                                          [this] {
                                              view->SetBufferSize(3);
                                              view->SetBufferSize(50);
                                          }};
    for (const auto& act : acts) {
        view->AppendNumbered(0, 50);
        Select(0, 1, 1, 2);
        const LeakCheck leaks;
        bool inside = false;
        view->atSelectionChange = [&act, &inside] {
            if (!std::exchange(inside, true)) {
                act();
                inside = false;
            }
        };
        for (int round = 0; round < 3; ++round) {
            view->AppendNumbered(0, 20);
            Select(0, 1, 1, 5);
            view->SelectAll();
            Select(0, 4, 1, 3);
        }
        view->atSelectionChange = nullptr;
        view->AppendNumbered(0, 50);
        Select(0, 1, 1, 2);
    }
}

// Size

TEST_F(ViewFaultTest, ALineOfTenMillionCharactersIsPaintedAndCopiedLikeAnother)
{
    using Clock = std::chrono::steady_clock;
    const auto bestPaint = [this] {
        auto best = Clock::duration::max();
        for (int paint = 0; paint < 20; ++paint) {
            const auto start = Clock::now();
            view->Invalidate();
            view->UpdateWindow();
            best = std::min(best, Clock::now() - start);
        }
        return best;
    };
    view->Append({std::wstring(200, L'x')});
    Select(3, 0, 5, 0);
    const auto shortTime = bestPaint();

    constexpr unsigned length = 10'000'000;
    view->Clear();
    view->Append({std::wstring(length - 3, L'x') + L"end"});
    EXPECT_LT(bestPaint(), 5 * shortTime);
    Select(3, 0, 5, 0);
    EXPECT_LT(bestPaint(), 5 * shortTime);
    view->ScrollToPoint(0, length);
    EXPECT_EQ(view->GetHScrollPoint(), length - columns);
    Select(columns - 3, 0, columns - 1, 0);
    EXPECT_LT(bestPaint(), 5 * shortTime);
    view->OnEditCopy();
    EXPECT_EQ(ClipboardText(), L"end");
    ::OleSetClipboard(nullptr);
}

// A system that has run out

namespace {

HBITMAP WINAPI NoBitmap(HDC, int, int)
{
    return nullptr;
}
HDC WINAPI NoDeviceContext(HDC)
{
    return nullptr;
}
HFONT WINAPI NoFont(int, int, int, int, int, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD,
                    LPCWSTR)
{
    return nullptr;
}
HFONT WINAPI NoFontIndirect(const LOGFONTW*)
{
    return nullptr;
}

constexpr wchar_t framework[] = L"CommonFramework.dll";

}  // namespace

TEST_F(ViewFaultTest, WithoutABufferItPaintsStraight)
{
    view->Append({L"0123456789", L"0123456789"});
    Select(2, 0, 4, 1);
    const Picture whole = Shoot(Page());
    const auto expectSame = [this, &whole] {
        const LeakCheck leaks;
        Scribble(RGB(200, 0, 0));
        view->Invalidate();
        EXPECT_EQ(Shoot(Page()), whole);
    };
    {
        const ImportHook hook(framework, "GDI32.dll", "CreateCompatibleBitmap", &NoBitmap);
        expectSame();
    }
    {
        const ImportHook hook(framework, "GDI32.dll", "CreateCompatibleDC", &NoDeviceContext);
        expectSame();
    }
    expectSame();
}

TEST_F(ViewFaultTest, WithoutAFontItUsesTheSystems)
{
    view->AppendNumbered(0, 50);  // every slot of the buffer has memory now, and keeps it
    ExpectUsable();
    CWinThread().OnIdle(1);  // the framework's temporary objects go
    const LeakCheck leaks;
    {
        const ImportHook plain(framework, "GDI32.dll", "CreateFontW", &NoFont);
        const ImportHook indirect(framework, "GDI32.dll", "CreateFontIndirectW", &NoFontIndirect);
        view->UpdateFontInternal();
        EXPECT_GT(view->GetCharacterWidth(), 0.0);
        EXPECT_GT(view->GetCharacterHeight(), 0);
        view->Append({L"in another font"});
        EXPECT_GT(Shoot(Page()).Count(::GetSysColor(COLOR_WINDOWTEXT)), 0);
    }
    view->UpdateFontInternal();
    EXPECT_EQ(view->GetCharacterHeight(), cell.cy);
    ExpectUsable();
    CWinThread().OnIdle(1);
}

// Clipboard

TEST_F(ViewFaultTest, ACopyThatFailsAnywhereLeavesNothingHalfDone)
{
    view->Append({L"first line", L"second line"});
    Select(6, 0, 5, 1);
    view->OnEditCopy();
    const std::wstring copied = L"line\r\nsecond\r\n";
    EXPECT_EQ(ClipboardText(), copied);
    const int calls = FailEachCall([&](int call) {
        ::OleSetClipboard(nullptr);
        ClipboardFaults::FailAt(call);
        EXPECT_NO_THROW(view->OnEditCopy());
        ClipboardFaults::Stop();
        const auto text = ClipboardText();
        EXPECT_TRUE(text ? text == copied : ClipboardFaults::HasFailed());
        ::OleSetClipboard(nullptr);
    });
    EXPECT_GE(calls, 3);  // the block, its lock, the data source
    ExpectUsable();
}
