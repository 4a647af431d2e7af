// ITextViewLinkedScrollbarSink.h: told when a linked scroll bar moves.
#pragma once

// The view implements it, the host's scroll bar calls it: the scroll position is to be read again
// and the view repainted. Borrowed, outlives the bar's use of it. User-interface thread.
class ITextViewLinkedScrollbarSink
{
public:
    virtual void Update() = 0;

protected:
    ~ITextViewLinkedScrollbarSink() = default;  // adds no slot; nobody deletes through it
};
