#include "autocomplete/Kit.h"
#include "support/TestThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

namespace {

using Texts = std::vector<std::wstring>;

// The engine as a derived class without a window sees it.
class Engine : public YAutoCompleteBase
{
public:
    Engine(IAutoCompleteDataSource* source, IAutoCompleteSink* client)
        : YAutoCompleteBase(source, client)
    {}
    using YAutoCompleteBase::Accept;
    using YAutoCompleteBase::AutoComplete;
    using YAutoCompleteBase::GetCompletionAtIndex;
    using YAutoCompleteBase::GetCompletionCount;
    using YAutoCompleteBase::OnAutoComplete;
    void OnAutoComplete() override { ++lists; }

    Texts GetCompletions()
    {
        Texts texts;
        for (unsigned i = 0; i < GetCompletionCount(); ++i) {
            texts.push_back(GetCompletionAtIndex(i));
        }
        return texts;
    }

    std::atomic<int> lists = 0;
};

struct EngineTest : testing::Test
{
    // The source holds whom it has not answered, and is held by it.
    void TearDown() override { source->sinks.clear(); }

    YUnknownPointer<TestSource> source = YUnknownPointer<TestSource>::Make();
    RecordingSink sink;
    YUnknownPointer<Engine> engine = YUnknownPointer<Engine>::Make(source.Get(), &sink);
};

TEST_F(EngineTest, AsksOncePerTextAndKeepsTheListUntilTheAnswer)
{
    engine->AutoComplete(L"");  // what an empty edit begins with
    engine->AutoComplete(L"Ab");
    engine->AutoComplete(L"Ab");
    engine->AutoComplete(L"ab");
    EXPECT_EQ(source->requests, (Texts{L"Ab", L"ab"}));
    source->Answer(L"ab", {L"abc"});
    engine->AutoComplete(L"abc");
    EXPECT_EQ(engine->GetCompletions(), Texts{L"abc"});
    EXPECT_EQ(engine->GetCompletionAtIndex(1), L"");
    source->Answer(L"abc", {});
    EXPECT_EQ(engine->GetCompletionCount(), 0u);
    EXPECT_EQ(engine->lists, 2);
}

TEST_F(EngineTest, DropsAnswersToOlderTexts)
{
    engine->AutoComplete(L"ab");
    engine->AutoComplete(L"abc");
    source->Answer(L"abc", {L"abcd"});
    source->Answer(L"ab", {L"abx"});
    source->Answer(L"ABC", {L"abx"});
    EXPECT_EQ(engine->GetCompletions(), Texts{L"abcd"});
    EXPECT_EQ(engine->lists, 1);
}

TEST_F(EngineTest, TakesAnAnswerInsideTheRequest)
{
    source->answersAtOnce = [](const std::wstring& text) { return Texts{text + L"1"}; };
    engine->AutoComplete(L"x");
    EXPECT_EQ(engine->GetCompletions(), Texts{L"x1"});
}

TEST_F(EngineTest, HandsOnWhatIsAccepted)
{
    sink.result = true;
    EXPECT_TRUE(engine->Accept(L"t", true, true, false, true, engine.Get()));
    EXPECT_EQ(sink.accepted, Texts{L"t list alt shift"});
    const auto nobody = YUnknownPointer<Engine>::Make(nullptr, nullptr);
    nobody->AutoComplete(L"a");
    EXPECT_FALSE(nobody->Accept(L"t", false, false, false, false, nobody.Get()));
}

TEST_F(EngineTest, LivesUntilTheLastAnswer)
{
    engine->AutoComplete(L"a");  // the source keeps a reference
    engine.Reset();
    source->Answer(L"a", {L"ab"});
    source->sinks.clear();
    EXPECT_EQ(source->AddRef(), 2u);  // the engine's reference is gone
    source->Release();
}

// Eight threads answer every text, in an order of their own; each list names its text.
TEST_F(EngineTest, ShowsOnlyTheNewestListHoweverManyThreadsAnswer)
{
    constexpr int texts = 400;
    std::atomic<int> newest = 0;
    std::vector<std::unique_ptr<TestThread>> threads;
    for (unsigned seed = 0; seed < 8; ++seed) {
        threads.push_back(std::make_unique<TestThread>([&, seed] {
            std::mt19937 random(seed);
            while (newest < texts) {
                const int back = static_cast<int>(random() % 4);
                const std::wstring text = std::to_wstring(std::max(0, newest - back));
                engine->OnAutoComplete(text.c_str(), Texts(1 + random() % 20, text), nullptr);
            }
        }));
    }
    int shown = 0;  // a list once replaced never comes back
    for (int text = 1; text <= texts; ++text) {
        engine->AutoComplete(std::to_wstring(text).c_str());
        newest = text;
        const std::wstring list = engine->GetCompletionAtIndex(0);
        const int next = list.empty() ? 0 : std::stoi(list);
        EXPECT_GE(next, shown);
        shown = next;
        while (text % 100 == 1 && engine->GetCompletionAtIndex(0) != std::to_wstring(text)) {
            ::Sleep(0);  // until the others have had their turn
        }
    }
    threads.clear();
    const std::wstring last = std::to_wstring(texts);
    engine->OnAutoComplete(last.c_str(), Texts(3, last), nullptr);
    engine->OnAutoComplete(L"1", Texts(1, L"1"), nullptr);
    EXPECT_EQ(engine->GetCompletions(), Texts(3, last));
}

}  // namespace
