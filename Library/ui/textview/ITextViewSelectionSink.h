// ITextViewSelectionSink.h: what drawing a selection needs to know of a view.
#pragma once

class YTextViewBuffer;
class YTextViewHighlight;

// The view implements it, the outline reads it. Borrowed for the time of one paint. User-interface
// thread. The order is binary contract.
class ITextViewSelectionSink
{
public:
    virtual const YTextViewBuffer& GetBuffer() const = 0;
    virtual YTextViewHighlight* GetHighlight() const = 0;  // normalised, borrowed; may be null
    virtual bool IsColumnSelect() const = 0;
    virtual double GetCharacterWidth() const = 0;  // pixels
    virtual int GetCharacterHeight() const = 0;  // pixels

protected:
    ~ITextViewSelectionSink() = default;  // adds no slot; nobody deletes through it
};
