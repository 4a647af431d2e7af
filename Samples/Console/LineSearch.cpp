#include "LineSearch.h"

#include <YNpos.h>

#include <windows.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr unsigned linesBetweenLooks = 64;  // at the clock, which costs as much as a line or two

using FoldTable = std::array<wchar_t, 0x10000>;

// Every character by itself: a text keeps its length.
const FoldTable& GetFoldTable()
{
    static const FoldTable table = [] {
        FoldTable folded;
        std::iota(folded.begin(), folded.end(), L'\0');
        ::CharLowerBuffW(folded.data() + 1, static_cast<DWORD>(folded.size() - 1));
        return folded;
    }();
    return table;
}

std::wstring Fold(std::wstring text)
{
    const FoldTable& table = GetFoldTable();
    for (wchar_t& character : text) {
        character = table[character];
    }
    return text;
}

bool IsWordCharacter(wchar_t character)
{
    return character == L'_' || ::IsCharAlphaNumericW(character) != FALSE;
}

bool IsWord(std::wstring_view text, std::size_t begin, std::size_t length)
{
    const std::size_t end = begin + length;
    return (begin == 0 || !IsWordCharacter(text[begin - 1])) &&
           (end == text.size() || !IsWordCharacter(text[end]));
}

// The places of a line at which the text stands, one after another.
class Finder
{
public:
    Finder(std::wstring_view lineText, std::wstring_view wanted, bool folds)
        : text(lineText), sought(wanted), table(folds ? &GetFoldTable() : nullptr)
    {}

    // The first that begins at from or behind it; npos: none.
    std::size_t Find(std::size_t from) const
    {
        return table ? FindFolded(from) : text.find(sought, from);
    }

private:
    std::size_t FindFolded(std::size_t from) const
    {
        const FoldTable& fold = *table;
        const wchar_t head = sought.front();
        for (; from + sought.size() <= text.size(); ++from) {
            if (fold[text[from]] == head && Stands(from)) {
                return from;
            }
        }
        return std::wstring_view::npos;
    }
    bool Stands(std::size_t at) const
    {
        return std::equal(sought.begin(), sought.end(), text.begin() + static_cast<int>(at),
                          [&](wchar_t left, wchar_t right) { return left == (*table)[right]; });
    }

    std::wstring_view text;
    std::wstring_view sought;
    const FoldTable* table;
};

}  // namespace

// Where hits of one line may begin: [first, end).
struct LineSearch::Columns
{
    unsigned first;
    unsigned end;
};

// Only the line where it began is looked at in two parts, one of them at the very end.
LineSearch::Columns LineSearch::GetColumns() const
{
    if (line != origin.line) {
        return {0, npos};
    }
    const bool isBehind = query.isBackwards == wrapped;
    return isBehind ? Columns{origin.column, npos} : Columns{0, origin.column};
}

void LineSearch::Start(const YTextViewBuffer& lines, const SearchQuery& wanted,
                       YTextViewCharPosition from)
{
    const unsigned lineCount = lines.GetLineCount();
    query = wanted;
    sought = query.matchesCase ? query.text : Fold(query.text);
    state = sought.empty() || lineCount == 0 ? State::NotFound : State::Running;
    wrapped = false;
    origin = from;
    if (from.line >= lineCount) {
        origin = query.isBackwards ? YTextViewCharPosition(npos, lineCount - 1)
                                   : YTextViewCharPosition(0, 0);
    }
    line = origin.line;
}

LineSearch::State LineSearch::Continue(const YTextViewBuffer& lines,
                                       std::chrono::milliseconds slice)
{
    const auto end = std::chrono::steady_clock::now() + slice;
    for (unsigned looked = 1; state == State::Running; ++looked) {
        if (SearchLine(lines)) {
            state = State::Found;
        } else if (!GoOn(lines.GetLineCount())) {
            state = State::NotFound;
        } else if (looked % linesBetweenLooks == 0 && std::chrono::steady_clock::now() >= end) {
            break;
        }
    }
    return state;
}

// Backwards, too, a line is read forwards: its last hit counts.
bool LineSearch::SearchLine(const YTextViewBuffer& lines)
{
    if (line >= lines.GetLineCount()) {
        return false;
    }
    const std::vector<wchar_t>& characters = lines.GetLineInfo(line).text;
    const std::wstring_view text(characters.data(), characters.size());
    const Finder finder(text, sought, !query.matchesCase);
    const Columns columns = GetColumns();
    bool found = false;
    for (std::size_t at = finder.Find(columns.first);
         at < columns.end && (!found || query.isBackwards); at = finder.Find(at + 1)) {
        if (!query.isWholeWord || IsWord(text, at, sought.size())) {
            hit = {static_cast<unsigned>(at), line};
            found = true;
        }
    }
    return found;
}

// To the next line. False: all have been looked at.
bool LineSearch::GoOn(unsigned lineCount)
{
    if (lineCount == 0 || (wrapped && line == origin.line)) {
        return false;
    }
    const bool isLast = query.isBackwards ? line == 0 : line + 1 >= lineCount;
    if (!isLast) {
        line += query.isBackwards ? npos : 1;
        return true;
    }
    if (!query.wraps) {
        return false;
    }
    line = query.isBackwards ? lineCount - 1 : 0;
    return !std::exchange(wrapped, true);
}

// A beginning that is gone is the beginning of what is left.
void LineSearch::OnLinesDropped(unsigned count)
{
    line -= std::min(line, count);
    hit.line -= std::min(hit.line, count);
    if (origin.line < count) {
        origin = {0, 0};
    } else {
        origin.line -= count;
    }
}
