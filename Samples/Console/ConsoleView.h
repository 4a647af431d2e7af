// ConsoleView.h: the log viewer's text view.
#pragma once

#include "LineRules.h"
#include "LineSearch.h"

#include <textview/YTextView.h>

// Colours lines by the records of LineRules.h, scrolls by keys, and stands still under its reader:
// who scrolls away from the end, or clicks, reads; who is back at the end follows it again.
// Two linked views hold the same lines, selection and place; what is done to one is done to both.
class ConsoleView : public YTextView
{
    DECLARE_DYNCREATE(ConsoleView)

public:
    using LineInfo = YTextViewBuffer::LineInfo;

    void LinkTo(ConsoleView* other);  // one direction; null: to none
    // Takes over what the other shows and how; this one is new.
    void TakeOver(const ConsoleView& other);

    // Adds lines. endsUnfinished: the next call replaces the last one. Out of memory: throws
    // std::bad_alloc; what is shown then may differ between linked views.
    void ShowLines(const LineInfo* lines, unsigned count, bool endsUnfinished);
    void ShowNotice(const wchar_t* text);  // a line of the program's own, after all that is there
    void SetLineLimit(unsigned lines);  // throws std::bad_alloc
    void ChangeFont(const LOGFONT& chosen);
    void ChangeSelectionStyle(SelectionDrawStyle style);
    void ChangeColors(const LineColors& chosen);
    LOGFONT GetShownFont() const;
    static LOGFONT GetUsualFont();  // of who has chosen none

    // What the frame's commands do.
    void Copy() { OnEditCopy(); }
    void SelectAllLines() { SelectAll(); }
    bool HasLines() const { return CanClear(); }
    void GoToStart();
    void GoToEnd() { OnCtrlEnd(); }

    // Selects the next place where the text stands, and tells the frame by ID_SEARCH_PROGRESS,
    // also where there is none, and once where it takes more than a turn: between turns the user
    // goes on. onward: past what is selected, not at it. No text ends the search.
    void Find(const SearchQuery& query, bool onward);
    const LineSearch& GetSearch() const { return search; }
    void CancelSearch() { search.Cancel(); }

    unsigned GetTopLine() const { return GetVScrollPoint(); }
    void GoToLine(unsigned line) { ScrollToPoint(line, GetHScrollPoint()); }
    unsigned GetPageLines() const { return GetPageHeight(); }
    bool IsReading() const { return reading; }
    // The user has scrolled.
    void DecideReading();

    void SetCaretInternal(bool on) override;
    void ClearInternal() override;

protected:
    void GetTextAttributes(const void* attributes, COLORREF& color) const override;
    void OnNormalizeHighlightChange() override;
    BOOL PreCreateWindow(CREATESTRUCT& create) override;

    afx_msg void OnVScroll(UINT code, UINT position, CScrollBar* bar);
    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg LRESULT OnMouseWheel(UINT wParam, long lParam);
    afx_msg void OnKeyDown(UINT key, UINT repeats, UINT flags);
    afx_msg void OnContextMenu(CWnd* window, CPoint point);
    afx_msg void OnTimer(UINT_PTR timer);
    afx_msg LRESULT OnPrintClient(CDC* dc, UINT flags);
    DECLARE_MESSAGE_MAP()

private:
    unsigned Append(const LineInfo* lines, unsigned count, bool endsUnfinished);
    void Limit(unsigned lines);
    void KeepStill(unsigned top, unsigned dropped);
    void Refit();
    void Scroll(UINT message, UINT code);
    YTextViewCharPosition GetSearchStart(bool backwards, bool onward) const;
    void GoOnSearching(bool isFirstTurn);
    void ShowHit();

    ConsoleView* partner = nullptr;  // borrowed
    unsigned lineLimit = 0;  // 0: as the base has it
    bool unfinished = false;  // the last line is not complete
    bool reading = false;  // the base view's caret
    LineColors colors = defaultLineColors;
    LineSearch search;
};
