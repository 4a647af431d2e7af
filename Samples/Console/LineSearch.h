// LineSearch.h: looks for a text in the lines of a view, a slice at a time.
#pragma once

#include <textview/YTextViewBuffer.h>
#include <textview/YTextViewCharPosition.h>

#include <chrono>
#include <string>

// What is looked for, within one line.
struct SearchQuery
{
    std::wstring text;
    bool matchesCase = false;
    bool isWholeWord = false;
    bool isBackwards = false;
    bool wraps = true;  // goes on at the other end

    bool operator==(const SearchQuery&) const = default;
};

// Goes from a place to the end of the lines, then, where it wraps, from their other end to that
// place. Lines may be added, dropped and cleared between two slices; nothing is kept of them. One
// thread.
class LineSearch
{
public:
    enum class State { Idle, Running, Found, NotFound };

    // A hit may begin at from itself (forwards), or must begin before it (backwards).
    void Start(const YTextViewBuffer& lines, const SearchQuery& wanted, YTextViewCharPosition from);
    void Cancel() { state = State::Idle; }
    // Looks until it has found something, has seen all or the time is over: at most one line more.
    State Continue(const YTextViewBuffer& lines, std::chrono::milliseconds slice);
    void OnLinesDropped(unsigned count);  // at the top, between two slices

    State GetState() const { return state; }
    const SearchQuery& GetQuery() const { return query; }
    YTextViewCharPosition GetHit() const { return hit; }  // where it begins; only when found
    bool HasWrapped() const { return wrapped; }

private:
    struct Columns;

    Columns GetColumns() const;
    bool SearchLine(const YTextViewBuffer& lines);
    bool GoOn(unsigned lineCount);

    SearchQuery query;
    std::wstring sought;  // folded unless case matters
    State state = State::Idle;
    bool wrapped = false;
    unsigned line = 0;  // that is looked at next
    YTextViewCharPosition origin;  // once wrapped, the search ends there
    YTextViewCharPosition hit;
};
