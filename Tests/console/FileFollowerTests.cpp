// The follower: real files that grow, shrink, are replaced, or cannot be read.
#include "ConsoleFile.h"
#include "FileFollower.h"
#include "LineRules.h"
#include "support/ImportHook.h"
#include "support/Input.h"

#include <afxwin.h>
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::wstring>;

constexpr UINT newsMessage = WM_APP + 1;

// Shows what a follower delivers as a view would.
class FileFollowerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(window.CreateEx(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr));
    }
    void TearDown() override
    {
        follower.reset();
        window.DestroyWindow();
        PumpMessages();
    }

    void Start(bool follow = true)
    {
        follower.emplace(file.GetPath(), follow, window.m_hWnd, newsMessage);
    }

    void TakeAll()
    {
        while (std::unique_ptr<LineNews> news = follower->Take()) {
            if (endsUnfinished) {
                lines.pop_back();
            }
            for (unsigned i = 0; i < news->lines.GetCount(); ++i) {
                const LineBatch::LineInfo& line = news->lines.GetLines()[i];
                if (line.attributes == GetNoticeAttributes()) {
                    lines.emplace_back(L"notice");
                } else {
                    lines.emplace_back(line.text.begin(), line.text.end());
                }
            }
            endsUnfinished = news->endsUnfinished;
            follower->GiveBack(std::move(news));
        }
    }

    bool Shows(const Lines& expected)
    {
        const bool shown = PumpUntil([&] {
            TakeAll();
            return lines == expected;
        });
        EXPECT_EQ(lines, expected);
        return shown;
    }

    ConsoleFile file;
    CWnd window;
    std::optional<FileFollower> follower;
    Lines lines;
    bool endsUnfinished = false;
};

TEST_F(FileFollowerTest, ShowsWhatIsAddedAndCompletesTheUnfinishedLine)
{
    file.Write("one\ntw");
    Start();
    ASSERT_TRUE(Shows({L"one", L"tw"}));
    EXPECT_TRUE(endsUnfinished);
    file.Append("o");
    ASSERT_TRUE(Shows({L"one", L"two"}));
    file.Append("\nsix");
    ASSERT_TRUE(Shows({L"one", L"two", L"six"}));
    file.Append("\n");
    ASSERT_TRUE(PumpUntil([&] {
        TakeAll();
        return !endsUnfinished;
    }));
    EXPECT_EQ(lines, (Lines{L"one", L"two", L"six"}));
}

TEST_F(FileFollowerTest, ReadsAShorterFileAgain)
{
    file.Write("one\ntwo\nthr");
    Start();
    ASSERT_TRUE(Shows({L"one", L"two", L"thr"}));
    file.Write("new\n");
    EXPECT_TRUE(Shows({L"one", L"two", L"thr", L"notice", L"new"}));
}

TEST_F(FileFollowerTest, GoesOnWithTheSuccessorAfterTheRestOfTheOld)
{
    file.Write("one\n");
    Start();
    ASSERT_TRUE(Shows({L"one"}));
    file.Append("last");
    using namespace std::string_view_literals;
    file.MoveAway();
    file.Write("\xFF\xFEn\0e\0w\0\n\0"sv);
    ASSERT_TRUE(Shows({L"one", L"last", L"notice", L"new"}));
    EXPECT_EQ(follower->GetState().encoding, TextEncoding::Utf16LittleEndian);
}

TEST_F(FileFollowerTest, WaitsForANameThatIsGone)
{
    file.Write("one\n");
    Start();
    ASSERT_TRUE(Shows({L"one"}));
    file.MoveAway();
    const ULONGLONG later = ::GetTickCount64() + 600;  // over two looks at the name
    ASSERT_TRUE(PumpUntil([&] { return ::GetTickCount64() >= later; }));
    EXPECT_FALSE(follower->GetState().ended);
    file.Write("new\n");
    EXPECT_TRUE(Shows({L"one", L"notice", L"new"}));
}

// The system under the tests does not tell of a deletion that waits for our handle.
std::atomic<bool> isDeleted;

BOOL WINAPI ReportDeletion(HANDLE, FILE_INFO_BY_HANDLE_CLASS, void* info, DWORD)
{
    static_cast<FILE_STANDARD_INFO*>(info)->DeletePending = isDeleted.exchange(false);
    return TRUE;
}

TEST_F(FileFollowerTest, LetsGoOfADeletedFileSoThatAnotherCanTakeItsName)
{
    isDeleted = false;
    const ImportHook hook(nullptr, "kernel32.dll", "GetFileInformationByHandleEx", &ReportDeletion);
    file.Write("one\n");
    Start();
    ASSERT_TRUE(Shows({L"one"}));
    file.Delete();
    isDeleted = true;
    ASSERT_TRUE(PumpUntil([&] { return !file.Exists(); }));
    file.Write("new\n");
    EXPECT_TRUE(Shows({L"one", L"notice", L"new"}));
    follower.reset();  // before the hook goes
}

TEST_F(FileFollowerTest, ShowsNothingNewWhileItDoesNotFollow)
{
    file.Write("one\n");
    Start(false);
    ASSERT_TRUE(Shows({L"one"}));
    ASSERT_TRUE(PumpUntil([&] { return follower->GetState().atEnd; }));
    file.Append("two\n");
    follower->SetFollowing(true);
    EXPECT_TRUE(Shows({L"one", L"two"}));
}

TEST_F(FileFollowerTest, TellsWhyAFileCannotBeRead)
{
    Start();
    ASSERT_TRUE(PumpUntil([&] { return follower->GetState().ended; }));
    EXPECT_EQ(follower->GetState().error, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_FALSE(follower->GetState().opened);
    EXPECT_FALSE(follower->Take());
}

TEST_F(FileFollowerTest, OpensAnEmptyFile)
{
    file.Write("");
    Start();
    ASSERT_TRUE(PumpUntil([&] { return follower->GetState().atEnd; }));
    EXPECT_TRUE(follower->GetState().opened);
    file.Append("one\n");
    EXPECT_TRUE(Shows({L"one"}));
}

TEST_F(FileFollowerTest, WaitsForItsReaderAndStopsAtOnce)
{
    std::string text;
    for (int i = 0; i < 200'000; ++i) {
        text += "a line of some length\n";
    }
    file.Write(text);
    Start();
    // The reader does not take: the worker fills all the batches that there are, and waits.
    ULONGLONG read = 0;
    ASSERT_TRUE(PumpUntil([&] {
        const ULONGLONG before = std::exchange(read, follower->GetState().bytesRead);
        ::SleepEx(20, FALSE);
        return read > 0 && read == before;
    }));
    EXPECT_LT(read, text.size());
    const ULONGLONG start = ::GetTickCount64();
    follower->Stop();
    EXPECT_LT(::GetTickCount64() - start, 1000u);
}

TEST_F(FileFollowerTest, DeliversLargeFilesWholeAndInOrder)
{
    std::string text;
    Lines expected;
    for (int i = 0; i < 100'000; ++i) {
        text += std::to_string(i) + " is a number\r\n";
        expected.push_back(std::to_wstring(i) + L" is a number");
    }
    file.Write(text);
    Start();
    ASSERT_TRUE(PumpUntil([&] {
        TakeAll();
        return lines.size() >= expected.size();
    }));
    EXPECT_TRUE(lines == expected);
}

bool failsToPost = false;
unsigned posts = 0;

BOOL WINAPI CountPost(HWND, UINT, WPARAM, LPARAM)
{
    ++posts;
    return !failsToPost;
}

TEST_F(FileFollowerTest, WakesOnceUntilTheReaderHasFoundNothingOrItCouldNotBePosted)
{
    posts = 0;
    failsToPost = false;
    const ImportHook hook(nullptr, "user32.dll", "PostMessageW", &CountPost);
    LineQueue queue(window.m_hWnd, newsMessage);
    for (int i = 0; i < 3; ++i) {
        queue.Put(queue.GetEmpty());
    }
    EXPECT_EQ(posts, 1u);
    while (std::unique_ptr<LineNews> news = queue.Take()) {
        queue.GiveBack(std::move(news));
    }
    failsToPost = true;
    queue.Put(queue.GetEmpty());
    EXPECT_EQ(posts, 2u);
    EXPECT_TRUE(queue.Sleep(1));
    EXPECT_EQ(posts, 3u);
}

}  // namespace
