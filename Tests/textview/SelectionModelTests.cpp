// Selections against a model of the rules, over every pair of ends on small pages; and what is
// drawn, hit and copied against each other.

#include "textview/RecordingView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Position = YTextViewCharPosition;
using Ends = std::optional<std::pair<Position, Position>>;
using Lengths = std::vector<unsigned>;

bool After(const Position& a, const Position& b)
{
    return a.line != b.line ? a.line > b.line : a.column > b.column;
}

// The last cell that exists, up to and with a position in reading order.
std::optional<Position> LastCellUpTo(const Lengths& lengths, const Position& position)
{
    std::optional<Position> last;
    for (unsigned line = 0; line <= position.line; ++line) {
        for (unsigned column = 0; column < lengths[line]; ++column) {
            if (!After({column, line}, position)) {
                last = Position(column, line);
            }
        }
    }
    return last;
}

Ends ModelStream(const Lengths& lengths, Position a, Position b)
{
    if (After(a, b)) {
        std::swap(a, b);
    }
    if (a.column >= lengths[a.line]) {
        a = {0, a.line + 1};
    }
    const auto end = LastCellUpTo(lengths, b);
    return !end || After(a, *end) ? Ends() : Ends({a, *end});
}

Ends ModelColumns(const Lengths& lengths, const Position& a, const Position& b)
{
    const auto [left, right] = std::minmax(a.column, b.column);
    const auto [top, bottom] = std::minmax(a.line, b.line);
    for (unsigned line = bottom + 1; line-- > 0;) {
        if (lengths[line] > left) {
            return {{Position(left, top), Position(right, line)}};
        }
    }
    return {};
}

Ends ModelEnds(const Lengths& lengths, Position a, Position b, bool columns)
{
    const unsigned count = static_cast<unsigned>(lengths.size());
    if (a.line >= count && b.line >= count) {
        return {};
    }
    a.line = std::min(a.line, count - 1);
    b.line = std::min(b.line, count - 1);
    return columns ? ModelColumns(lengths, a, b) : ModelStream(lengths, a, b);
}

bool IsSelected(const Ends& ends, const Position& cell, bool columns)
{
    if (!ends) {
        return false;
    }
    const auto& [begin, end] = *ends;
    if (columns) {
        return begin.line <= cell.line && cell.line <= end.line && begin.column <= cell.column &&
               cell.column <= end.column;
    }
    return !After(begin, cell) && !After(cell, end);
}

Ends EndsOf(const YTextViewBase& view)
{
    const YTextViewHighlight* const highlight = view.GetHighlight();
    return highlight ? Ends({highlight->GetBegin(), highlight->GetEnd()}) : Ends();
}

std::string Describe(const Lengths& lengths, const Position& a, const Position& b, bool columns)
{
    return (columns ? "columns, lengths " : "stream, lengths ") + testing::PrintToString(lengths) +
           ", from and to column and line " +
           testing::PrintToString(Lengths{a.column, a.line, b.column, b.line});
}

// Every pair of positions on a page, both kinds of selection.
template <class Check>
void ForAllPairs(unsigned columns, unsigned rows, Check check)
{
    const unsigned cells = columns * rows;
    for (const bool columnar : {false, true}) {
        std::optional<KeyDown> alt;
        if (columnar) {
            alt.emplace(VK_MENU);
        }
        for (unsigned i = 0; i < cells * cells && !testing::Test::HasFatalFailure(); ++i) {
            const unsigned a = i / cells;
            const unsigned b = i % cells;
            check(Position(a % columns, a / columns), Position(b % columns, b / columns), columnar);
        }
    }
}

// What a copy takes is what is selected, but for one case: a rectangle whose first line ends left of
// it starts at column 0, in the width that it has. A start beyond its line means its beginning.
bool IsCopied(const Lengths& lengths, const Ends& ends, const Position& cell, bool columns)
{
    if (!ends || !columns || ends->first.column <= lengths[ends->first.line]) {
        return IsSelected(ends, cell, columns);
    }
    const auto& [begin, end] = *ends;
    const unsigned width = end.column + 1 - begin.column;
    return begin.line <= cell.line && cell.line <= end.line &&
           cell.column < (cell.line == end.line ? end.column + 1 : width);
}

constexpr wchar_t firstCharacter = 0x100;

// A character of its own for every cell.
std::wstring Character(const Position& cell)
{
    return std::wstring(1, static_cast<wchar_t>(firstCharacter + cell.line * 16 + cell.column));
}

std::vector<std::wstring> PageOf(const Lengths& lengths)
{
    std::vector<std::wstring> texts;
    for (unsigned line = 0; line < lengths.size(); ++line) {
        texts.emplace_back();
        for (unsigned column = 0; column < lengths[line]; ++column) {
            texts.back() += Character({column, line});
        }
    }
    return texts;
}

std::wstring OnlyCharacters(std::wstring text)
{
    std::erase_if(text, [](wchar_t c) { return c < firstCharacter; });
    return text;
}

}  // namespace

// All pages of up to three lines of these lengths; the last column is past every end.
TEST(SelectionOnPages, EveryPairOfEndsIsNormalisedAsTheModelSays)
{
    std::vector<Lengths> pages{{}};
    for (std::size_t i = 0; pages[i].size() < 3 && !HasFatalFailure(); ++i) {
        for (const unsigned length : {0u, 1u, 3u}) {
            Lengths lengths = pages[i];
            lengths.push_back(length);
            pages.push_back(lengths);
            RecordingView view;
            view.Append(PageOf(lengths));
            const auto lines = static_cast<unsigned>(lengths.size());
            ForAllPairs(4, lines + 1, [&](const Position& a, const Position& b, bool columns) {
                view.Drag(a.column, a.line, b.column, b.line);
                ASSERT_EQ(EndsOf(view), ModelEnds(lengths, a, b, columns))
                    << Describe(lengths, a, b, columns);
            });
        }
    }
}

class SelectionInView : public testing::TestWithParam<unsigned>  // first visible column
{};

TEST_P(SelectionInView, WhatIsDrawnHitAndCopiedAgrees)
{
    const unsigned scrolled = GetParam();
    const Lengths lengths{5, 0, 3, 8};
    RecordingView view;
    view.client.right = 6 * RecordingView::width;  // else nothing scrolls
    view.OnSizeChange();
    view.Append(PageOf(lengths));
    view.ScrollToPoint(0, scrolled);
    ASSERT_EQ(view.horizontal.point, scrolled);
    view.client.right = 12 * RecordingView::width;  // room for the drag
    YTextViewBuffer buffer(50);
    Append(buffer, PageOf(lengths));

    ForAllPairs(9 - scrolled, 5, [&](Position a, Position b, bool columns) {
        view.Drag(a.column, a.line, b.column, b.line);
        a.column += scrolled;
        b.column += scrolled;
        const Ends ends = ModelEnds(lengths, a, b, columns);
        std::wstring copied;
        std::wstring visible;
        for (unsigned line = 0; line < lengths.size(); ++line) {
            for (unsigned column = 0; column < lengths[line]; ++column) {
                const Position cell(column, line);
                if (IsSelected(ends, cell, columns) && column >= scrolled) {
                    visible += Character(cell);
                }
                copied += IsCopied(lengths, ends, cell, columns) ? Character(cell) : L"";
            }
        }
        std::wstring drawn;
        std::wstring marked;
        for (const RecordingView::Run& run : view.Draw()) {
            const Position first(static_cast<unsigned>(run.x / RecordingView::width) + scrolled,
                                 static_cast<unsigned>(run.y / RecordingView::height));
            for (unsigned i = 0; i < run.text.size(); ++i) {
                const std::wstring character = Character({first.column + i, first.line});
                ASSERT_EQ(run.text.substr(i, 1), character) << "drawn in another cell";
                drawn += character;
                marked += run.background == RecordingView::markBackColor ? character : L"";
            }
        }
        const std::string what = Describe(lengths, a, b, columns);
        ASSERT_EQ(marked, visible) << what;
        ASSERT_EQ(OnlyCharacters(view.Selected(buffer)), copied) << what;
        std::wstring page;
        for (const std::wstring& text : PageOf(lengths)) {
            page += text.size() > scrolled ? text.substr(scrolled) : L"";
        }
        ASSERT_EQ(drawn, page) << what;
    });
}

INSTANTIATE_TEST_SUITE_P(Scrolled, SelectionInView, testing::Values(0u, 2u));

// Anything in any order: no run may lie outside its line, whatever became of the selection.
TEST(SelectionUnderFire, RandomStepsNeverDrawOrCopyBeyondTheText)
{
    constexpr unsigned seed = 7;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto upTo = [&](unsigned limit) { return random() % (limit + 1); };
    constexpr int extremes[] = {INT_MIN, INT_MIN + 1, -1000, -1, 0,    1,
                                50,      95,          96,    97, 5000, INT_MAX};
    const auto somewhere = [&] {
        const auto pick = [&] {
            return upTo(3) == 0 ? extremes[upTo(11)] : static_cast<int>(upTo(120));
        };
        return POINT{pick(), pick()};
    };
    RecordingView view;
    view.SetBufferSize(8);
    for (unsigned step = 0; step < 20'000; ++step) {
        std::optional<KeyDown> key;
        if (upTo(3) == 0) {
            key.emplace(upTo(1) == 0 ? VK_SHIFT : VK_MENU);
        }
        switch (upTo(12)) {
        case 0: view.OnLButtonDown(somewhere()); break;
        case 1: view.OnLButtonUp(somewhere()); break;
        case 2: view.SelectAll(); break;
        case 3: view.Clear(); break;
        case 4: view.SetBufferSize(1 + upTo(12)); break;
        case 5: view.OnPageUp(); break;
        case 6: view.OnPageDown(); break;
        case 7: view.OnCtrlEnd(); break;
        case 8: view.SetSelectionDrawStyle(static_cast<SelectionDrawStyle>(upTo(3))); break;
        case 9:
        case 10: view.OnMouseMove(somewhere()); break;
        default: view.Append(std::vector<std::wstring>(1 + upTo(2), std::wstring(upTo(15), L'x')));
        }
        for (const RecordingView::Run& run : view.Draw()) {
            ASSERT_EQ(run.text, std::wstring(run.text.size(), L'x')) << "step " << step;
            ASSERT_LE(run.text.size(), 13u) << "step " << step;
        }
    }
}
