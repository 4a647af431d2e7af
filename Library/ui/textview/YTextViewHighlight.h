// YTextViewHighlight.h: one selection.
#pragma once

#include "CommonUiApi.h"
#include "YUnknown.h"
#include "textview/YTextViewCharPosition.h"

class ITextViewHighlightSink;

// Two ends, in the order in which they were made: begin is the anchor and may lie behind end. In a
// normalised selection begin comes first and the cell at end is selected as well.
// User-interface thread.
class COMMONUI_API YTextViewHighlight : public YUnknown<>
{
public:
    explicit YTextViewHighlight(ITextViewHighlightSink* sink);  // both ends at (0, 0)
    YTextViewHighlight(ITextViewHighlightSink* sink, const YTextViewCharPosition& begin,
                       const YTextViewCharPosition& end);
    YTextViewHighlight(const YTextViewHighlight& other);  // with the sink
    YTextViewHighlight& operator=(const YTextViewHighlight& other);
    ~YTextViewHighlight() override;

    YTextViewCharPosition GetBegin() const { return begin; }
    YTextViewCharPosition GetEnd() const { return end; }

    // The sink hears of a change only: not of ends that are set to where they are.
    void Update(const YTextViewCharPosition& newBegin, const YTextViewCharPosition& newEnd,
                bool notify);
    void UpdateBegin(const YTextViewCharPosition& position);  // never notifies
    void UpdateEnd(const YTextViewCharPosition& position);

    // Follows the text after lines were dropped at the top of the buffer; tells nobody. False: both
    // ends were on dropped lines, nothing is changed.
    bool Scroll(unsigned lines);

    bool ContainsLine(unsigned line) const;
    bool Equal(const YTextViewHighlight& other) const;  // the ends; not the sink

private:
    void NotifySink();

    YTextViewCharPosition begin;
    YTextViewCharPosition end;
    ITextViewHighlightSink* sink;  // borrowed, may be null
};
