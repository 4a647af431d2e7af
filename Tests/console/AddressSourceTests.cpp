// What an address is completed to, by the real folder and on the system's threads.
#include "AddressSource.h"

#include "support/Input.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::wstring>;

Texts Match(const std::wstring& typed, const Texts& candidates, std::size_t most = 10)
{
    AddressMatches matches(typed, most);
    for (const std::wstring& candidate : candidates) {
        matches.Add(candidate);
    }
    return matches.Take();
}

TEST(AddressMatchesTest, PutsBeginningsFirstAndEachOnce)
{
    const Texts all{L"C:\\logs\\b.log", L"logserver:23", L"LOGHOST:7", L"logServer:23", L"log"};
    EXPECT_EQ(Match(L"log", all), (Texts{L"logserver:23", L"LOGHOST:7", L"C:\\logs\\b.log"}));
    EXPECT_EQ(Match(L"LOG", all, 2), (Texts{L"logserver:23", L"LOGHOST:7"}));
    EXPECT_EQ(Match(L"xyz", all), Texts{});
}

// Keeps the answers; on whichever thread they come.
class AnswerSink : public YUnknown<IAutoCompleteDataSink>
{
public:
    void OnAutoComplete(const wchar_t* text, const Texts& completions,
                        IAutoCompleteDataSource*) override
    {
        const std::lock_guard<WorkerLock> guard(lock);
        asked = text;
        answer = completions;
        thread = ::GetCurrentThreadId();
        ++answers;
    }

    Texts Await(AddressSource& source, const std::wstring& text)
    {
        source.RequestCompletions(text.c_str(), this);
        EXPECT_TRUE(PumpUntil([&] {
            const std::lock_guard<WorkerLock> guard(lock);
            return asked == text;
        }));
        const std::lock_guard<WorkerLock> guard(lock);
        return answer;
    }

    WorkerLock lock;
    std::wstring asked;
    Texts answer;
    DWORD thread = 0;
    int answers = 0;
};

TEST(AddressSourceTest, KnowsWhatWasUsedAndWhatLiesInAFolder)
{
    const fs::path folder =
        fs::temp_directory_path() / (L"addresses-" + std::to_wstring(::GetCurrentProcessId()));
    fs::create_directories(folder / L"Systems");
    for (const wchar_t* name : {L"syslog", L"mySyslog", L"other"}) {
        std::ofstream(folder / name) << "x";
    }
    const std::wstring in = folder.wstring() + L"\\";
    {
        const auto source = YUnknownPointer<AddressSource>::Make();
        const auto sink = YUnknownPointer<AnswerSink>::Make();
        source->SetRecent({L"host:23", in + L"syslog"});
        EXPECT_EQ(sink->Await(*source, L"HO"), Texts{L"host:23"});
        EXPECT_NE(sink->thread, ::GetCurrentThreadId());
        EXPECT_EQ(sink->Await(*source, L""), Texts{});

        Texts found = sink->Await(*source, in + L"SYS");
        ASSERT_EQ(found.size(), 3u);
        EXPECT_EQ(found[0], in + L"syslog");
        EXPECT_EQ(found[1], in + L"Systems\\");
        EXPECT_EQ(found[2], in + L"mySyslog");
        EXPECT_EQ(sink->Await(*source, in + L"nothing\\"), Texts{});
        EXPECT_EQ(sink->Await(*source, L"sys").size(), 1u) << "the folder at hand is nobody's";
    }
    fs::remove_all(folder);
}

// Many texts in no time: the last one is answered, and of each sink.
TEST(AddressSourceTest, AnswersTheNewestTextOfEachSink)
{
    const auto source = YUnknownPointer<AddressSource>::Make();
    const YUnknownPointer<AnswerSink> sinks[] = {YUnknownPointer<AnswerSink>::Make(),
                                                 YUnknownPointer<AnswerSink>::Make()};
    source->SetRecent(Texts(1, L"host 499:23"));
    for (int i = 0; i < 500; ++i) {
        for (const auto& sink : sinks) {
            source->RequestCompletions((L"host " + std::to_wstring(i)).c_str(), sink.Get());
        }
    }
    for (const auto& sink : sinks) {
        EXPECT_TRUE(PumpUntil([&] {
            const std::lock_guard<WorkerLock> guard(sink->lock);
            return sink->asked == L"host 499";
        }));
        EXPECT_EQ(sink->answer, Texts{L"host 499:23"});
        EXPECT_LE(sink->answers, 500);
    }
}

}  // namespace
