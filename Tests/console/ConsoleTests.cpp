// The program: a real frame that loads real files.
#include "ConsoleFile.h"
#include "ConsoleOptions.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "ConsoleView.h"
#include "LineRules.h"
#include "MainFrame.h"
#include "resource.h"
#include "support/ImportHook.h"
#include "support/Input.h"
#include "textview/Lines.h"

#include <afxole.h>
#include <gtest/gtest.h>
#include <textview/YClipboard.h>

#include <commdlg.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::wstring shownMessage;
int shownMessages = 0;

int WINAPI RecordMessage(HWND, LPCWSTR text, LPCWSTR, UINT)
{
    shownMessage = text;
    ++shownMessages;
    return IDOK;
}

std::string MakeLines(unsigned first, unsigned count)
{
    std::string text;
    for (unsigned i = first; i < first + count; ++i) {
        text += "line " + std::to_string(i) + "\n";
    }
    return text;
}

class ConsoleTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ASSERT_TRUE(::AfxOleInit());
        YCopyTextToClipboard(L"");  // OLE makes a window for it, once
        COleDataSource::FlushClipboard();
    }
    static void TearDownTestSuite() { ::AfxOleTerm(); }

    void Start(const ConsoleOptions& options = {})
    {
        int show = SW_SHOWNORMAL;
        frame = new MainFrame(settings);
        ASSERT_TRUE(frame->Load(options, show));
        frame->InitialUpdateFrame(nullptr, TRUE);
        frame->MoveWindow(0, 0, 600, 400);
        PumpMessages();
    }
    void TearDown() override
    {
        if (frame) {
            frame->DestroyWindow();
        }
        PumpMessages();
    }

    ConsoleView& View() const { return frame->GetViews().GetFirst(); }
    ConsoleView& SecondView() const
    {
        const int id = View().GetDlgCtrlID() + 1;  // the next column
        return static_cast<ConsoleView&>(*View().GetParent()->GetDlgItem(id));
    }
    unsigned CountLines() const { return View().GetBuffer().GetLineCount(); }
    std::wstring TextOf(unsigned line) const { return ::TextOf(View().GetBuffer(), line); }
    std::wstring TopText() const { return TextOf(View().GetTopLine()); }
    std::wstring LastText() const { return TextOf(CountLines() - 1); }

    void Command(UINT id) { frame->SendMessage(WM_COMMAND, id); }
    bool IsLoaded(unsigned lines) const
    {
        return PumpUntil([&] { return CountLines() == lines && !frame->IsLoading(); });
    }
    bool Load(unsigned lines)
    {
        frame->OpenFile(file.GetPath());
        return IsLoaded(lines);
    }

    ConsoleFile file;
    ConsoleSettings settings;
    MainFrame* frame = nullptr;
};

// Of every third row: enough to meet each letter.
std::vector<COLORREF> ReadPixels(CDC& dc, const CRect& area)
{
    std::vector<COLORREF> pixels;
    for (int y = area.top; y < area.bottom; y += 3) {
        for (int x = area.left; x < area.right; ++x) {
            pixels.push_back(dc.GetPixel(x, y));
        }
    }
    return pixels;
}

TEST_F(ConsoleTest, ColoursLinesByTheirSeverityAndFollows)
{
    file.Write("plain text\nerror: one\nwarning: two\n");
    Start();
    ASSERT_TRUE(Load(3));
    View().RedrawWindow();
    const int height = View().GetCharacterHeight();
    CClientDC dc(&View());
    const auto countColour = [&](int row, COLORREF colour) {
        const auto pixels = ReadPixels(dc, CRect(0, row * height, 120, (row + 1) * height));
        return std::count(pixels.begin(), pixels.end(), colour);
    };
    EXPECT_GT(countColour(0, ::GetSysColor(COLOR_WINDOWTEXT)), 0);
    EXPECT_GT(countColour(1, defaultLineColors[2]), 0);
    EXPECT_GT(countColour(2, defaultLineColors[1]), 0);
    EXPECT_EQ(countColour(0, defaultLineColors[2]), 0);

    file.Append("added");
    ASSERT_TRUE(PumpUntil([&] { return CountLines() == 4; }));
    file.Append(" later\n");
    ASSERT_TRUE(PumpUntil([&] { return LastText() == L"added later"; }));
    EXPECT_EQ(CountLines(), 4u);
    CString title;
    frame->GetWindowText(title);
    EXPECT_EQ(title.Right(10), CString(L" - Console"));
}

TEST_F(ConsoleTest, LinkedViewsShowTheSameLinesPlaceAndSelection)
{
    file.Write(MakeLines(0, 500));
    Start();
    ASSERT_TRUE(Load(500));
    for (int i = 0; i < 100; ++i) {
        View().SendMessage(WM_VSCROLL, SB_LINEUP);
    }
    const std::wstring top = TopText();
    Command(ID_VIEW_SPLIT);
    PumpMessages();
    ConsoleView& second = SecondView();
    ASSERT_EQ(second.GetBuffer().GetLineCount(), 500u);
    EXPECT_EQ(TopText(), top);

    second.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA));
    EXPECT_NE(TopText(), top);
    EXPECT_EQ(second.GetTopLine(), View().GetTopLine());
    second.SendMessage(WM_KEYDOWN, VK_PRIOR);
    EXPECT_EQ(second.GetTopLine(), View().GetTopLine());
    DragLeft(second, {20, 20}, {100, 60});
    ASSERT_TRUE(second.GetHighlight() && View().GetHighlight());
    EXPECT_TRUE(second.GetHighlight()->Equal(*View().GetHighlight()));

    const YTextViewCharPosition begin = View().GetHighlight()->GetBegin();
    const std::wstring place = TopText();
    Command(ID_VIEW_SPLIT);
    PumpMessages();
    EXPECT_EQ(TopText(), place);
    ASSERT_TRUE(View().GetHighlight());
    EXPECT_EQ(View().GetHighlight()->GetBegin(), begin);
}

class ConsoleReading : public ConsoleTest, public testing::WithParamInterface<bool>
{};

TEST_P(ConsoleReading, KeepsItsTextStillWhileTheBufferDropsLines)
{
    ConsoleOptions options;
    options.lineLimit = 100;
    options.split = GetParam();
    file.Write(MakeLines(0, 100));
    Start(options);
    ASSERT_TRUE(Load(100));
    EXPECT_FALSE(View().IsReading());
    View().SendMessage(WM_KEYDOWN, VK_PRIOR);
    ASSERT_TRUE(View().IsReading());
    const std::wstring top = TopText();

    file.Append(MakeLines(100, 10));
    ASSERT_TRUE(PumpUntil([&] { return LastText() == L"line 109"; }));
    EXPECT_EQ(TopText(), top);
    while (View().IsReading()) {
        const unsigned before = View().GetTopLine();
        View().SendMessage(WM_VSCROLL, SB_PAGEDOWN);
        ASSERT_NE(View().GetTopLine(), before) << "the end is not reached";
    }
    file.Append(MakeLines(110, 10));
    ASSERT_TRUE(PumpUntil([&] { return LastText() == L"line 119"; }));
    EXPECT_EQ(View().GetTopLine(), 100 - View().GetPageLines());
}

INSTANTIATE_TEST_SUITE_P(Views, ConsoleReading, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Split" : "Single"; });

TEST_F(ConsoleTest, ASmallerBufferKeepsTheNewestLinesInOrder)
{
    ConsoleOptions options;
    options.lineLimit = 5'000;
    file.Write(MakeLines(0, 4'500));
    Start(options);
    ASSERT_TRUE(Load(4'500));
    Command(ID_EDIT_CLEAR_ALL);
    file.Append(MakeLines(4'500, 900));  // across the end of the ring
    ASSERT_TRUE(PumpUntil([&] { return CountLines() == 900; }));
    Command(ID_BUFFER_1000);
    ASSERT_EQ(CountLines(), 900u);
    for (unsigned i = 0; i < 900; ++i) {
        ASSERT_EQ(TextOf(i), L"line " + std::to_wstring(4'500 + i));
    }
}

TEST_F(ConsoleTest, AFileThatCannotBeReadLeavesWhatIsShown)
{
    const ImportHook hook(L"CommonFramework.dll", "user32.dll", "MessageBoxW", &RecordMessage);
    file.Write("one\n");
    Start();
    ASSERT_TRUE(Load(1));
    shownMessage.clear();
    frame->OpenFile(L"Q:\\no such file");
    ASSERT_TRUE(PumpUntil([] { return !shownMessage.empty(); }));
    EXPECT_NE(shownMessage.find(L"no such file"), std::wstring::npos);
    EXPECT_EQ(LastText(), L"one");
    file.Append("two\n");
    EXPECT_TRUE(PumpUntil([&] { return LastText() == L"two"; }));
}

TEST_F(ConsoleTest, CopiesItsSelectionAndPrintsWhatItPaints)
{
    file.Write(MakeLines(0, 50) + "error\n");
    Start();
    ASSERT_TRUE(Load(51));
    Command(ID_EDIT_SELECT_ALL);
    Command(ID_EDIT_COPY);
    EXPECT_TRUE(COleDataSource::GetClipboardOwner());
    COleDataSource::FlushClipboard();
    View().RedrawWindow();
    CRect client;
    static_cast<CWnd&>(View()).GetClientRect(&client);
    CClientDC screen(&View());
    CDC memory;
    CBitmap bitmap;
    ASSERT_TRUE(memory.CreateCompatibleDC(&screen));
    ASSERT_TRUE(bitmap.CreateCompatibleBitmap(&screen, client.Width(), client.Height()));
    CBitmap* const previous = memory.SelectObject(&bitmap);
    View().SendMessage(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(memory.GetSafeHdc()), PRF_CLIENT);
    EXPECT_TRUE(ReadPixels(memory, client) == ReadPixels(screen, client));
    memory.SelectObject(previous);
}

// Handles one message, where there is one; the milliseconds that it took.
ULONGLONG PumpOne()
{
    const ULONGLONG start = ::GetTickCount64();
    MSG message;
    if (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) &&
        !CWnd::WalkPreTranslateTree(nullptr, &message)) {
        ::DispatchMessageW(&message);
    }
    return ::GetTickCount64() - start;
}

// Types a key without handling it yet: news that keep coming would be handled with it, to the end.
void SendKey(WORD key)
{
    INPUT inputs[2] = {};
    inputs[0].type = inputs[1].type = INPUT_KEYBOARD;
    inputs[0].ki.wVk = inputs[1].ki.wVk = key;
    inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
    ::SendInput(2, inputs, sizeof(INPUT));
}

TEST_F(ConsoleTest, AnswersWhileALargeFileLoadsAndEscapeCancels)
{
    constexpr unsigned lines = 400'000;
    file.Write(MakeLines(1'000'000'000, lines) + std::string(32u << 20, '\n'));
    Start();
    ASSERT_TRUE(Activate(*frame));
    frame->OpenFile(file.GetPath());
    constexpr ULONGLONG noticeable = 200;  // milliseconds; loading at one go would take seconds
    unsigned slow = 0;
    const ULONGLONG limit = ::GetTickCount64() + 60'000;
    do {
        slow += PumpOne() > noticeable;
    } while (frame->IsLoading() && ::GetTickCount64() < limit);
    EXPECT_LE(slow, 2u);  // the machine has other work, too
    EXPECT_EQ(CountLines(), 100'000u);

    SendKey(VK_F5);
    while (CountLines() == 100'000 && ::GetTickCount64() < limit) {
        PumpOne();
    }
    ASSERT_TRUE(frame->IsLoading());
    SendKey(VK_ESCAPE);
    while (frame->IsLoading() && ::GetTickCount64() < limit) {
        PumpOne();
    }
    EXPECT_EQ(View().GetBuffer().GetLineInfo(CountLines() - 1).attributes, GetNoticeAttributes());
    EXPECT_EQ(LastText(), LoadText(IDS_NOTICE_CANCELLED)) << "it was cancelled, not completed";
}

TEST_F(ConsoleTest, OpensADroppedFile)
{
    file.Write("dropped\n");
    Start();
    EXPECT_TRUE(frame->GetExStyle() & WS_EX_ACCEPTFILES);
    const std::wstring path = file.GetPath();
    const HGLOBAL block =
        ::GlobalAlloc(GHND, sizeof(DROPFILES) + (path.size() + 2) * sizeof(wchar_t));
    auto* const header = static_cast<DROPFILES*>(::GlobalLock(block));
    header->pFiles = sizeof(DROPFILES);
    header->fWide = TRUE;
    std::memcpy(header + 1, path.c_str(), path.size() * sizeof(wchar_t));  // two zeros follow
    ::GlobalUnlock(block);
    frame->PostMessage(WM_DROPFILES, reinterpret_cast<WPARAM>(block));  // the window frees it
    ASSERT_TRUE(IsLoaded(1));
    EXPECT_EQ(LastText(), L"dropped");
}

std::wstring chosenFile;

BOOL WINAPI TakeFile(OPENFILENAMEW* question)
{
    ::lstrcpynW(question->lpstrFile, chosenFile.c_str(), static_cast<int>(question->nMaxFile));
    return TRUE;
}

BOOL WINAPI TakeFont(CHOOSEFONTW* question)
{
    EXPECT_STREQ(question->lpLogFont->lfFaceName, L"Courier New");  // the one that is shown
    question->lpLogFont->lfHeight *= 2;
    return TRUE;
}

TEST_F(ConsoleTest, DoesWhatItsDialogsAreTold)
{
    const ImportHook open(L"CommonFramework.dll", "comdlg32.dll", "GetOpenFileNameW", &TakeFile);
    const ImportHook font(L"CommonFramework.dll", "comdlg32.dll", "ChooseFontW", &TakeFont);
    file.Write("chosen\n");
    chosenFile = file.GetPath();
    Start();
    Command(ID_FILE_OPEN);
    ASSERT_TRUE(IsLoaded(1));
    EXPECT_EQ(LastText(), L"chosen");
    const int height = View().GetCharacterHeight();
    const unsigned pageLines = View().GetPageLines();
    Command(ID_VIEW_FONT);
    EXPECT_GT(View().GetCharacterHeight(), height * 3 / 2);
    EXPECT_LT(View().GetPageLines(), pageLines);
}

// What is left is enough for small blocks, on the thread of the windows; the reader has its own.
constexpr std::size_t largeBlock = 100'000;  // bytes
DWORD starvedThread = 0;
void* (*realMalloc)(std::size_t) = nullptr;

void* StarvingMalloc(std::size_t size)
{
    const bool starved = size >= largeBlock && ::GetCurrentThreadId() == starvedThread;
    return starved ? nullptr : realMalloc(size);
}

TEST_F(ConsoleTest, OutOfMemoryItSaysSoOnceAndKeepsWhatIsShown)
{
    const ImportHook box(L"CommonFramework.dll", "user32.dll", "MessageBoxW", &RecordMessage);
    file.Write("one\ntwo\n");
    Start();
    ASSERT_TRUE(Load(2));
    Command(ID_VIEW_SPLIT);
    shownMessages = 0;
    file.Append(std::string(largeBlock, 'x') + "\nlast\n");
    {
        const ImportHook memory(L"libstdc++-6.dll", "msvcrt.dll", "malloc", &StarvingMalloc);
        realMalloc = memory.Original<void*(std::size_t)>();
        starvedThread = ::GetCurrentThreadId();
        EXPECT_TRUE(PumpUntil([] { return shownMessages > 0; }));
        starvedThread = 0;
    }
    EXPECT_EQ(CountLines(), 2u);
    EXPECT_EQ(LastText(), L"two");
    EXPECT_FALSE(frame->GetViews().IsSplit() || frame->IsLoading());
    EXPECT_TRUE(Load(4));
    EXPECT_EQ(LastText(), L"last");
    EXPECT_EQ(shownMessages, 1);
}

int WidthOf(const CWnd& window)
{
    CRect place;
    window.GetWindowRect(&place);
    return place.Width();
}

TEST_F(ConsoleTest, PanesKeepTheirShareOfTheWidth)
{
    ConsoleOptions options;
    options.split = true;
    Start(options);
    CWnd& splitter = *View().GetParent();
    EXPECT_NEAR(WidthOf(View()), WidthOf(splitter) / 2.0, 2);
    DragLeft(splitter, {WidthOf(View()) + 3, 50}, {WidthOf(splitter) / 4, 50});
    const double share = static_cast<double>(WidthOf(View())) / WidthOf(splitter);
    EXPECT_LT(share, 0.3);
    for (int width = 603; width <= 1'000; width += 3) {  // as a user drags the frame
        frame->MoveWindow(0, 0, width, 400);
    }
    EXPECT_NEAR(WidthOf(View()), share * WidthOf(splitter), 2);
    frame->MoveWindow(0, 0, 120, 400);  // no room for both
    frame->MoveWindow(0, 0, 600, 400);
    EXPECT_NEAR(WidthOf(View()), share * WidthOf(splitter), 2);
}

TEST(ConsoleOptions, AreParsed)
{
    const wchar_t* const good[] = {L"Console", L"--buffer",  L"500",         L"a.log",
                                   L"--split", L"--outline", L"--follow=off"};
    const ConsoleOptions options = ParseConsoleOptions(static_cast<int>(std::size(good)), good);
    EXPECT_EQ(options.file, L"a.log");
    EXPECT_EQ(options.lineLimit, 500u);
    EXPECT_TRUE(options.split && options.outline && !options.follow);
    EXPECT_EQ(options.error.GetMessageId(), 0u);
}

TEST(ConsoleOptions, MistakesAreNamed)
{
    for (const std::vector<const wchar_t*>& bad :
         {std::vector{L"Console", L"--nonsense"}, std::vector{L"Console", L"--buffer", L"0"},
          std::vector{L"Console", L"--buffer", L"-1"}, std::vector{L"Console", L"--buffer"},
          std::vector{L"Console", L"--buffer", L"1000001"}, std::vector{L"Console", L"a", L"b"}}) {
        const ConsoleOptions options =
            ParseConsoleOptions(static_cast<int>(bad.size()), bad.data());
        EXPECT_NE(options.error.GetMessageId(), 0u) << bad.back();
        EXPECT_FALSE(std::wstring(options.error.GetText()).starts_with(L"Could not")) << bad.back();
    }
}

}  // namespace
