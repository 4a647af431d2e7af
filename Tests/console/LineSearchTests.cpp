// The search in lines: against looking at every place of every line.
#include "LineSearch.h"
#include "textview/Lines.h"

#include <YNpos.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

using Place = YTextViewCharPosition;

std::optional<Place> Find(const YTextViewBuffer& lines, const SearchQuery& query, Place from,
                          bool* wrapped = nullptr)
{
    LineSearch search;
    search.Start(lines, query, from);
    while (search.Continue(lines, std::chrono::milliseconds(0)) == LineSearch::State::Running) {}
    if (wrapped) {
        *wrapped = search.HasWrapped();
    }
    return search.GetState() == LineSearch::State::Found ? std::optional(search.GetHit())
                                                         : std::nullopt;
}

// The texts are in lower case but for A, which is a as well.
std::optional<Place> FindSimply(const std::vector<std::wstring>& lines, const SearchQuery& query,
                                Place from)
{
    const auto lower = [&](std::wstring text) {
        if (!query.matchesCase) {
            std::replace(text.begin(), text.end(), L'A', L'a');
        }
        return text;
    };
    std::vector<Place> hits;
    for (unsigned line = 0; line < lines.size(); ++line) {
        const std::wstring text = lower(lines[line]);
        for (unsigned column = 0; column < text.size(); ++column) {
            const std::size_t end = column + query.text.size();
            const bool isWord = (column == 0 || text[column - 1] == L' ') &&
                                (end >= text.size() || text[end] == L' ');
            if (text.compare(column, query.text.size(), lower(query.text)) == 0 &&
                (!query.isWholeWord || isWord)) {
                hits.emplace_back(column, line);
            }
        }
    }
    const auto firstBehind = std::find_if(hits.begin(), hits.end(), [&](const Place& hit) {
        return hit.line > from.line || (hit.line == from.line && hit.column >= from.column);
    });
    if (hits.empty()) {
        return std::nullopt;
    }
    if (query.isBackwards) {
        return firstBehind == hits.begin() ? hits.back() : *(firstBehind - 1);
    }
    return firstBehind == hits.end() ? hits.front() : *firstBehind;
}

TEST(LineSearchTest, FindsWhatLookingAtEveryPlaceFinds)
{
    std::minstd_rand random(7);
    const auto pick = [&](unsigned count) { return static_cast<unsigned>(random() % count); };
    unsigned found = 0;
    for (unsigned round = 0; round < 3'000; ++round) {
        std::vector<std::wstring> texts(1 + pick(4));
        for (std::wstring& text : texts) {
            for (unsigned i = pick(8); i > 0; --i) {
                text += L"aAb "[pick(4)];
            }
        }
        YTextViewBuffer lines(16);
        Append(lines, texts);
        SearchQuery query;
        for (unsigned i = 1 + pick(2); i > 0; --i) {
            query.text += L"aAb"[pick(3)];
        }
        query.matchesCase = pick(2) == 0;
        query.isWholeWord = pick(3) == 0;
        query.isBackwards = pick(2) == 0;
        const Place from(pick(9), pick(static_cast<unsigned>(texts.size())));
        const auto expected = FindSimply(texts, query, from);
        ASSERT_EQ(Find(lines, query, from), expected) << "round " << round;
        found += expected.has_value();
    }
    EXPECT_GT(found, 1'000u);
}

TEST(LineSearchTest, FoldsWhatIsNotLatinAndTellsOfTheWayRound)
{
    YTextViewBuffer lines(4);
    Append(lines, {L"Stra\u00dfe \u0416\u0423\u041a", L"\u00c9t\u00e9"});
    SearchQuery query{L"\u0436\u0443\u043a"};
    bool wrapped = true;
    EXPECT_EQ(Find(lines, query, {0, 0}, &wrapped), Place(7, 0));
    EXPECT_FALSE(wrapped);
    EXPECT_EQ(Find(lines, query, {0, 1}, &wrapped), Place(7, 0));
    EXPECT_TRUE(wrapped);
    query.text = L"\u00e9T";
    EXPECT_EQ(Find(lines, query, {npos, npos}), Place(0, 1));
    query.matchesCase = true;
    EXPECT_EQ(Find(lines, query, {0, 0}), std::nullopt);
    query.text.clear();
    EXPECT_EQ(Find(lines, query, {0, 0}), std::nullopt);
}

TEST(LineSearchTest, EndsAtTheEndWhereItDoesNotWrap)
{
    YTextViewBuffer lines(4);
    Append(lines, {L"aa", L"b", L"aa"});
    SearchQuery query{L"b", true, false, false, false};
    EXPECT_EQ(Find(lines, query, {0, 1}), Place(0, 1));
    EXPECT_EQ(Find(lines, query, {1, 1}), std::nullopt);
    query.isBackwards = true;
    EXPECT_EQ(Find(lines, query, {1, 1}), Place(0, 1));
    EXPECT_EQ(Find(lines, query, {0, 1}), std::nullopt);
}

// A slice of no time looks at 64 lines.
TEST(LineSearchTest, GoesOnWhereTheLinesHaveGone)
{
    constexpr unsigned held = 200;
    for (const bool isBackwards : {false, true}) {
        YTextViewBuffer lines(held);
        std::vector<std::wstring> texts(held, L"not yet");
        texts[150] = L"here";
        Append(lines, texts);
        LineSearch search;
        search.Start(lines, {L"here", false, false, isBackwards}, {0, 20});
        ASSERT_EQ(search.Continue(lines, std::chrono::milliseconds(0)), LineSearch::State::Running);
        const unsigned dropped = Append(lines, std::vector<std::wstring>(120, L"new"));
        search.OnLinesDropped(dropped);
        while (search.Continue(lines, std::chrono::milliseconds(0)) == LineSearch::State::Running) {
        }
        EXPECT_EQ(search.GetState(), LineSearch::State::Found);
        EXPECT_EQ(search.GetHit(), Place(0, 150 - dropped));

        search.Start(lines, {L"nowhere", false, false, isBackwards}, {0, 150});
        search.Continue(lines, std::chrono::milliseconds(0));
        lines.Clear();
        EXPECT_EQ(search.Continue(lines, std::chrono::milliseconds(0)),
                  LineSearch::State::NotFound);
    }
}

}  // namespace
