// ITextViewHighlightSink.h: told when a selection changes.
#pragma once

// The view implements it, its selections call it. Borrowed, outlives the selection that it was
// given to. User-interface thread.
class ITextViewHighlightSink
{
public:
    virtual void OnHighlightChange() = 0;

protected:
    ~ITextViewHighlightSink() = default;  // adds no slot; nobody deletes through it
};
