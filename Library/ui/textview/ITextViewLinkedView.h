// ITextViewLinkedView.h: a view that follows another one.
#pragma once

class YLogFont;
class YTextViewHighlight;

// Every view implements it and is driven through it by the view that it is linked to. Borrowed,
// outlives the link. User-interface thread. None of these is passed on to a further view, but for
// the caret of a clear. The order is binary contract.
class ITextViewLinkedView
{
public:
    virtual void UpdateFontInternal(const YLogFont& font) = 0;
    virtual void SelectAllInternal() = 0;
    virtual void ClearInternal() = 0;
    virtual void SetCaretInternal(bool on) = 0;
    // Shows highlight (null: none) as this view's own selection; it is copied, not kept.
    virtual void UpdateHighlight(YTextViewHighlight* highlight, bool columnar) = 0;

protected:
    ~ITextViewLinkedView() = default;  // adds no slot; nobody deletes through it
};
