#include "textview/YTextViewHighlight.h"

#include "textview/ITextViewHighlightSink.h"

YTextViewHighlight::YTextViewHighlight(ITextViewHighlightSink* highlightSink) : sink(highlightSink)
{}

YTextViewHighlight::YTextViewHighlight(ITextViewHighlightSink* highlightSink,
                                       const YTextViewCharPosition& first,
                                       const YTextViewCharPosition& last)
    : begin(first), end(last), sink(highlightSink)
{}

YTextViewHighlight::YTextViewHighlight(const YTextViewHighlight& other) = default;

YTextViewHighlight& YTextViewHighlight::operator=(const YTextViewHighlight& other) = default;

YTextViewHighlight::~YTextViewHighlight() = default;

void YTextViewHighlight::Update(const YTextViewCharPosition& newBegin,
                                const YTextViewCharPosition& newEnd, bool notify)
{
    if (begin == newBegin && end == newEnd) {
        return;
    }
    begin = newBegin;
    end = newEnd;
    if (notify) {
        NotifySink();
    }
}

void YTextViewHighlight::UpdateBegin(const YTextViewCharPosition& position)
{
    begin = position;
}

void YTextViewHighlight::UpdateEnd(const YTextViewCharPosition& position)
{
    Update(begin, position, true);
}

bool YTextViewHighlight::Scroll(unsigned lines)
{
    if (begin.line >= lines) {
        begin.line -= lines;
    } else if (end.line >= lines) {
        begin = {};
    } else {
        return false;
    }
    if (end.line >= lines) {
        end.line -= lines;
    } else {
        end = {};
    }
    return true;
}

bool YTextViewHighlight::ContainsLine(unsigned line) const
{
    return begin.line <= line && line <= end.line;
}

bool YTextViewHighlight::Equal(const YTextViewHighlight& other) const
{
    return begin == other.begin && end == other.end;
}

void YTextViewHighlight::NotifySink()
{
    if (sink) {
        sink->OnHighlightChange();
    }
}
