// YTextViewBase.h: the scrollback view without its window.
#pragma once

#include "CommonUiApi.h"
#include "YFont.h"
#include "YUnknownPointer.h"
#include "textview/ITextViewHighlightSink.h"
#include "textview/ITextViewLinkedScrollbarSink.h"
#include "textview/ITextViewLinkedView.h"
#include "textview/ITextViewSelectionSink.h"
#include "textview/YTextViewBuffer.h"
#include "textview/YTextViewCharPosition.h"
#include "textview/YTextViewHighlight.h"
#include "textview/YTextViewLineDrawInfo.h"

#include <windows.h>

#include <memory>
#include <vector>

class CDC;
class ITextViewLinkedScrollbar;

// How a view shows what is selected. Any other value: not at all (it can still be copied).
enum class SelectionDrawStyle : unsigned {
    Filled = 1,  // in the highlight colours
    Outline = 2,  // a line round it, the text keeps its colours
};

// Owns the lines and the selections, turns pixels into cells of a fixed-pitch font, follows the
// mouse and cuts the visible lines into runs of one colour. All that needs a window goes through
// the abstract operations, so it runs (and is tested) without one.
// A linked view does what this one does; a linked scroll bar takes the place of the view's own
// vertical bar while that is not to be shown. Both are borrowed and outlive the view.
// User-interface thread, no locks. The order of the virtual operations is binary contract.
class COMMONUI_API YTextViewBase : public ITextViewHighlightSink,
                                   public ITextViewLinkedView,
                                   public ITextViewLinkedScrollbarSink,
                                   public ITextViewSelectionSink
{
public:
    // One run of text to draw.
    struct DrawTextInfo
    {
        COLORREF foreground;
        COLORREF background;
        int x;  // pixels, from the left of the client area
        int y;
        const wchar_t* text;  // in the buffer's line, not terminated
        unsigned count;  // UTF-16 units
    };

    // A colour that no lookup has set: no COLORREF has this value.
    static constexpr COLORREF unsetColor = 0xFFFFFFFF;

    YTextViewBase();
    YTextViewBase(const YTextViewBase&) = delete;
    YTextViewBase& operator=(const YTextViewBase&) = delete;

    void OnHighlightChange() override;
    virtual void ShowVertScrollbarIfNeeded(bool show);
    virtual void ShowHorzScrollbarIfNeeded(bool show);
    virtual void UpdateFont(const YLogFont& font);  // the linked view's as well
    virtual ~YTextViewBase();

protected:
    virtual void UpdateVScrollSize(unsigned total, unsigned page) = 0;  // lines
    virtual void UpdateHScrollSize(unsigned total, unsigned page) = 0;  // columns
    virtual unsigned GetVScrollPointInternal() const = 0;  // first visible line
    virtual unsigned GetHScrollPointInternal() const = 0;  // first visible column
    virtual void ScrollToVPoint(unsigned line) = 0;
    virtual void ScrollToHPoint(unsigned column) = 0;
    virtual void DrawText(CDC* dc, const DrawTextInfo& run) = 0;
    virtual void DrawLine(CDC* dc, COLORREF color,
                          const std::vector<YTextViewLineDrawInfo>& segments) = 0;
    // The colour of a line by its attributes; left alone it is the text colour.
    virtual void GetTextAttributes(const void* attributes, COLORREF& color) const = 0;
    virtual void GetTextColor(COLORREF& foreground, COLORREF& background) const = 0;
    virtual void GetHighlightColor(COLORREF& foreground, COLORREF& background) const = 0;
    virtual void GetClientRect(RECT* rect) const = 0;
    virtual void InvalidateWindow() = 0;  // a repaint will follow
    virtual void RepaintWindow() = 0;  // now
    virtual void CaptureMouse() = 0;
    virtual bool ReleaseMouse() = 0;

public:
    virtual void Clear();  // the linked view as well

protected:
    virtual void UpdateFontInternal() = 0;  // measures the font anew, see UpdateSize

    // Hooks round the normalisation of a selection: before it; on its result, which may be changed
    // or (false) refused; after the normalised selection has become another or none.
    virtual void PrepareForNormalizeHighlight();
    virtual bool FinishNormalizeHighlight(YTextViewCharPosition& begin, YTextViewCharPosition& end);
    virtual void OnNormalizeHighlightChange();

public:
    // ITextViewLinkedView. An override of an interface that is not the first one takes a further
    // slot here in this compiler's layout: these stand behind the slots that are contract.
    void UpdateFontInternal(const YLogFont& font) override;
    void SelectAllInternal() override;
    void ClearInternal() override;
    void SetCaretInternal(bool on) override;
    void UpdateHighlight(YTextViewHighlight* highlight, bool columnar) override;

    // ITextViewSelectionSink.
    const YTextViewBuffer& GetBuffer() const override { return buffer; }
    YTextViewHighlight* GetHighlight() const override { return normalizedHighlight.Get(); }
    bool IsColumnSelect() const override { return columnar; }
    double GetCharacterWidth() const override { return characterWidth; }
    int GetCharacterHeight() const override { return characterHeight; }

    // Shows the lines at the end of the text. Follows the end unless the caret is set; a selection
    // keeps its text or goes with it. Out of memory: throws std::bad_alloc after that.
    void AppendLines(const YTextViewBuffer::LineInfo* lines, unsigned count);
    void SetBufferSize(unsigned size);  // lines; a smaller one drops the oldest and the selection

    void EnableCopy(bool enable) { copyEnabled = enable; }
    bool CanCopy() const { return copyEnabled && normalizedHighlight; }
    bool CanSelectAll() const { return buffer.GetLineCount() > 0; }

    void SetLinkedView(ITextViewLinkedView* view) { linkedView = view; }
    void SetLinkedVerticalScrollbar(ITextViewLinkedScrollbar* bar) { linkedVertScrollbar = bar; }
    void SetSelectionDrawStyle(SelectionDrawStyle style);

protected:
    // Called by the window, points and rectangles in client pixels.
    void OnCreate() {}
    void OnDraw(CDC* dc, RECT clip);  // the background is the window's
    void OnSizeChange();
    void OnLButtonDown(POINT point);
    void OnLButtonUp(POINT point);
    void OnMouseMove(POINT point);
    void OnPageUp();
    void OnPageDown();
    void OnCtrlEnd();
    void OnGoToStart();
    void OnEditCopy();

    void SelectAll();  // the linked view as well
    // Set: the view stays where the user put it. Not set: it follows the end of the text.
    void SetCaret(bool on);  // the linked view's as well
    void ClearLastLine() { buffer.ClearLastLine(); }
    bool CanClear() const { return buffer.GetLineCount() > 0; }

    void ResetMouseHighlight();
    void ResetNormalizedHighlight();

    void UpdateSize(double width, int height);  // of a cell; the page is measured with the next
    void UpdatePageSize();
    void UpdateScrollSize();
    void ScrollToPoint(unsigned line, unsigned column);

    void CalculateVisibleLines(unsigned& first, unsigned& count) const;
    unsigned GetPageWidth() const { return pageWidth; }  // whole cells
    unsigned GetPageHeight() const { return pageHeight; }  // whole lines
    unsigned GetTotalHorz() const { return buffer.GetMaxLineLength(); }
    unsigned GetTotalVert() const { return buffer.GetLineCount(); }
    unsigned GetVScrollPoint() const;
    unsigned GetHScrollPoint() const { return GetHScrollPointInternal(); }

    const YLogFont* GetLogFont() const { return font.get(); }  // null: none was given
    bool IsVertScrollbarShown() const { return showVertScrollbar; }
    bool IsHorzScrollbarShown() const { return showHorzScrollbar; }
    ITextViewLinkedView* GetLinkedView() const { return linkedView; }
    ITextViewLinkedScrollbar* GetLinkedVerticalScrollbar() const { return linkedVertScrollbar; }

private:
    struct Painting;

    // Cells and pixels.
    unsigned ToHorzCharPosition(int x) const;  // 0 for what lies left of the first column
    int ToVertCharPosition(int y) const;
    int GetHorizontalPoint(unsigned column) const;
    void PointToCharposition(POINT point, YTextViewCharPosition& position) const;
    void AdjustPoint(POINT& point) const;

    // Scrolling.
    bool UsesLinkedScrollbar() const { return !showVertScrollbar && linkedVertScrollbar; }
    bool FillsMoreThanPage() const { return buffer.GetLineCount() > pageHeight; }
    void ScrollToEnd();
    bool AutoScroll(POINT point, const YTextViewCharPosition& position);
    void FollowAppend(bool sizeChanged, unsigned removed);
    void FollowShrink();

    // Selection.
    bool NormalizeHighlight();
    bool NormalizeHighlight(YTextViewCharPosition& begin, YTextViewCharPosition& end);
    bool NormalizeColumnarHighlight(YTextViewCharPosition& begin, YTextViewCharPosition& end);
    bool FindNormalizedEnds(YTextViewCharPosition& begin, YTextViewCharPosition& end);
    bool SnapEndToCharacter(YTextViewCharPosition& end) const;
    bool LineHasHighlight(unsigned line, const YTextViewBuffer::LineInfo& info,
                          YTextViewCharPosition& begin, YTextViewCharPosition& end, unsigned& from,
                          unsigned& to) const;
    unsigned LengthOf(unsigned line) const;
    bool IsDrag(POINT point) const;
    void StartMouseHighlight(const YTextViewCharPosition& end);
    void PlaceMouseHighlight(const YTextViewCharPosition& begin, const YTextViewCharPosition& end);
    void ScrollHighlights(unsigned lines);
    bool UpdatePreviousHighlight();

    // Painting.
    Painting StartPainting(CDC* dc, const RECT& clip) const;
    void DrawRow(const Painting& painting, unsigned line, int y);
    void DrawHighlightedRow(const Painting& painting, const YTextViewBuffer::LineInfo& info,
                            DrawTextInfo run, unsigned from, unsigned to);
    void DrawOutline(const Painting& painting, unsigned first, unsigned count);

    ITextViewLinkedView* linkedView = nullptr;  // borrowed
    ITextViewLinkedScrollbar* linkedVertScrollbar = nullptr;  // borrowed
    std::unique_ptr<YLogFont> font;  // as last given to UpdateFont
    bool showVertScrollbar = true;
    bool showHorzScrollbar = true;
    bool columnar = false;  // the selection is a rectangle
    unsigned leftMargin = 0;  // cells
    SelectionDrawStyle selectionDrawStyle = SelectionDrawStyle::Filled;
    double characterWidth = 0.0;  // pixels; 0: nothing measured yet
    int characterHeight = 0;  // pixels; 0: nothing measured yet
    unsigned pageWidth = 0;
    unsigned pageHeight = 0;
    YTextViewBuffer buffer;
    bool caret = false;
    bool mouseDown = false;
    bool copyEnabled = true;
    POINT anchorPoint{};  // where the button went down, the margin taken off
    POINT lastPoint{};  // of a drag
    // Released in reverse. The normalised selection is the one drawn, copied and shown to others;
    // it exists only beside the mouse's, which it is made of. The previous one tells a drag
    // whether there is something new to paint.
    YUnknownPointer<YTextViewHighlight> mouseHighlight;
    YUnknownPointer<YTextViewHighlight> normalizedHighlight;
    YUnknownPointer<YTextViewHighlight> previousHighlight;
};
