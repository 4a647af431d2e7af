// YTextView.h: the scrollback text view as a window.
#pragma once

#include "CommonUiApi.h"
#include "textview/YTextViewBase.h"

#include <BCGCBProInc.h>
#include <afxwin.h>

#include <bitset>
#include <memory>
#include <string>

// A read-only text display for a frame or a splitter, created by its run-time class. The host
// derives from it to colour lines (GetTextAttributes), to watch the selection
// (OnNormalizeHighlightChange) or to turn menu and keys into its operations.
// One UTF-16 unit is one cell: what is drawn, hit and copied agrees for every character.
// The view has no timer: a drag that leaves the window scrolls on each move of the pointer.
// User-interface thread only.
class COMMONUI_API YTextView : public TBCGPInternalScrollBarWrapperWnd<CView>, public YTextViewBase
{
    DECLARE_DYNCREATE(YTextView)

public:
    YTextView();
    ~YTextView() override;

    // Whether the own bar is shown when needed; it takes over where the linked bar stood.
    void ShowVertScrollbarIfNeeded(bool show) override;
    // ITextViewLinkedScrollbarSink: the linked bar has moved.
    void Update() override;

    // To screen readers: a read-only text. Its value are the lines that are seen, divided by line
    // feeds, long ones cut; its description is what is selected.
    HRESULT get_accRole(VARIANT child, VARIANT* role) override;
    HRESULT get_accState(VARIANT child, VARIANT* state) override;
    HRESULT get_accValue(VARIANT child, BSTR* value) override;
    HRESULT get_accDescription(VARIANT child, BSTR* description) override;

protected:
    void UpdateVScrollSize(unsigned total, unsigned page) override;
    void UpdateHScrollSize(unsigned total, unsigned page) override;
    unsigned GetVScrollPointInternal() const override;
    unsigned GetHScrollPointInternal() const override;
    void ScrollToVPoint(unsigned line) override;
    void ScrollToHPoint(unsigned column) override;
    void DrawText(CDC* dc, const DrawTextInfo& run) override;
    void DrawLine(CDC* dc, COLORREF color,
                  const std::vector<YTextViewLineDrawInfo>& segments) override;
    void GetTextAttributes(const void* attributes, COLORREF& color) const override;
    void GetTextColor(COLORREF& foreground, COLORREF& background) const override;
    void GetHighlightColor(COLORREF& foreground, COLORREF& background) const override;
    void GetClientRect(RECT* rect) const override;
    void InvalidateWindow() override;
    void RepaintWindow() override;
    void CaptureMouse() override;
    bool ReleaseMouse() override;
    using YTextViewBase::UpdateFontInternal;
    void UpdateFontInternal() override;

    void OnDraw(CDC* dc) override;
    BOOL PreTranslateMessage(MSG* message) override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    // The brush that the window is cleared with; false: the host paints everything itself.
    virtual bool GetBackgroundBrush(CBrush& brush) const;

    afx_msg void OnVScroll(UINT code, UINT position, CScrollBar* bar);
    afx_msg void OnHScroll(UINT code, UINT position, CScrollBar* bar);
    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg int OnCreate(CREATESTRUCT* create);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
    afx_msg LRESULT OnMouseWheel(UINT wParam, long lParam);
    DECLARE_MESSAGE_MAP()

private:
    enum ScrollBarId : unsigned { vertical = 1, horizontal = 2 };
    // Characters below this are looked up once per font; those from here on are drawn with care.
    static constexpr wchar_t firstUnmeasured = 0x180;

    static ScrollBarId ToScrollbarId(int bar);
    bool IsScrollBarVisible(int bar) const { return (visibleScrollBars & ToScrollbarId(bar)) != 0; }
    bool LinkedScrollBar(int bar) const;
    bool DeferToLinkedScrollBar(int bar) const;
    unsigned GetScrollPoint(int bar) const;
    unsigned GetTrackPosition(int bar);
    unsigned GetScrollTarget(int bar, UINT code, UINT position);
    void UpdateScrollbarRange(int bar, bool show, unsigned total, unsigned page);
    void SetScrollPosition(int bar, unsigned position);
    void DoScroll(int bar, long long delta);
    void DoScrollAbs(int bar, unsigned position);
    void DoScrollAbsInternal(int bar, unsigned position);

    std::unique_ptr<CFont> MakeFont(CClientDC& dc) const;
    void MeasureFont(CDC& dc);
    void DrawView(CDC& dc, const CRect& clip, CBrush& background);
    bool FillsOneCell(const wchar_t* text, unsigned count) const;
    void DrawCells(CDC& dc, int x, int y, const wchar_t* text, unsigned count) const;

    std::wstring GetVisibleText() const;
    std::wstring GetSelectedText() const;
    void AnnounceChange();
    std::size_t SumVisibleText() const;
    std::size_t SumSelection() const;

    unsigned visibleScrollBars = 0;  // of ScrollBarId: has a range and is shown
    std::unique_ptr<CFont> font;  // null until the window exists
    std::bitset<firstUnmeasured> oneCellCharacters;  // by font; wide in their own cell exactly
    bool opaqueCells = false;  // the font's own background is lower than a line
    // A repaint of the whole window has been asked for at that tick and not been painted yet.
    bool repaintPending = false;
    DWORD repaintTick = 0;
    std::size_t announcedText = 0;  // sums of what screen readers have been told of; 0: nothing
    std::size_t announcedSelection = 0;
};
