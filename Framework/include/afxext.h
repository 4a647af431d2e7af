// afxext.h: splitter windows and status bars.
#pragma once

#include "afxwin.h"

#include <commctrl.h>

#include <vector>

// A window of rows x columns panes with bars between them that the user drags. A pane is any
// window: a view by CreateView, or a child whose id is IdFromRowCol. The window object belongs to
// its maker, mostly a frame; its panes die with it.
class COMMONFRAMEWORK_API CSplitterWnd : public CWnd
{
    DECLARE_DYNCREATE(CSplitterWnd)

    CSplitterWnd() = default;

    // Sizes are zero until SetRowInfo and SetColumnInfo; every pane needs a window before the
    // first layout. At most 16 x 16.
    virtual BOOL CreateStatic(CWnd* pParentWnd, int nRows, int nCols,
                              DWORD dwStyle = WS_CHILD | WS_VISIBLE, UINT nID = AFX_IDW_PANE_FIRST);
    // The first view becomes the active one. FALSE: no such object, or its creation failed.
    virtual BOOL CreateView(int row, int col, CRuntimeClass* pViewClass, SIZE sizeInit,
                            CCreateContext* pContext);
    virtual void DeleteView(int row, int col);

    int GetRowCount() const { return static_cast<int>(rows.size()); }
    int GetColumnCount() const { return static_cast<int>(columns.size()); }
    CWnd* GetPane(int row, int col) const;
    int IdFromRowCol(int row, int col) const { return AFX_IDW_PANE_FIRST + row * 16 + col; }
    BOOL IsChildPane(CWnd* pWnd, int* pRow, int* pCol);
    virtual CWnd* GetActivePane(int* pRow = nullptr, int* pCol = nullptr);
    virtual void SetActivePane(int row, int col, CWnd* pWnd = nullptr);

    // Pixels. What is ideal is kept while there is room for the minimum; the last row and column
    // get what is left. RecalcLayout applies them.
    void SetRowInfo(int row, int cyIdeal, int cyMin);
    void SetColumnInfo(int col, int cxIdeal, int cxMin);
    void GetRowInfo(int row, int& cyCur, int& cyMin) const;
    void GetColumnInfo(int col, int& cxCur, int& cxMin) const;
    virtual void RecalcLayout();

protected:
    enum ESplitType { splitBox, splitBar, splitIntersection, splitBorder };  // bars only are drawn
    virtual void OnDrawSplitter(CDC* pDC, ESplitType nType, const CRect& rect);
    virtual void OnInvertTracker(const CRect& rect);

    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* pResult) override;
    afx_msg void OnSize(UINT nType, int cx, int cy);
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* pDC);
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message);
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point);
    afx_msg void OnMouseMove(UINT nFlags, CPoint point);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags);
    afx_msg void OnCaptureChanged(CWnd* pWnd);
    DECLARE_MESSAGE_MAP()

private:
    struct Track  // a row or a column
    {
        int minimum = 0;
        int ideal = 0;
        int current = 0;  // as laid out; the pane's whole size
    };
    using Tracks = std::vector<Track>;
    struct Bar  // the bar after a row or column; -1: none there
    {
        int row = -1;
        int column = -1;
        bool IsNone() const { return row < 0 && column < 0; }
    };

    static void LayOut(Tracks& tracks, int available);
    static int GetStart(const Tracks& tracks, int index);
    static int FindBar(const Tracks& tracks, int at);
    static int LimitBar(const Tracks& tracks, int index, int at);
    static void MoveBar(Tracks& tracks, int index, int at);
    CRect GetPaneRect(int row, int column) const;
    CRect GetBarRect(const Bar& bar, CPoint at) const;
    CPoint GetPosition(const Bar& bar) const;
    Bar HitTest(CPoint point) const;
    void HideTracker();
    void StopTracking(bool accept);
    void MovePanes();

    Tracks rows;
    Tracks columns;
    // While the user drags: the mouse is captured and the tracker is shown. Else dragged.IsNone().
    Bar dragged;
    CPoint grip;  // where inside the bar it was taken
    CPoint position;  // of the tracker's top left corner
    HWND focusBeforeDrag = nullptr;
};

#define CBRS_ALIGN_TOP 0x2000L
#define CBRS_ALIGN_BOTTOM 0x8000L
#define CBRS_TOP CBRS_ALIGN_TOP
#define CBRS_BOTTOM CBRS_ALIGN_BOTTOM

// A window that takes one side of its frame's client area.
class COMMONFRAMEWORK_API CControlBar : public CWnd
{
    DECLARE_DYNAMIC(CControlBar)

    BOOL IsVisible() const { return (GetStyle() & WS_VISIBLE) != 0; }
    virtual CSize CalcFixedLayout(BOOL bStretch, BOOL bHorz) = 0;
    // Brings what the bar shows up to date; in idle time.
    virtual void OnUpdateCmdUI(CFrameWnd* pTarget, BOOL bDisableIfNoHndler) = 0;

protected:
    afx_msg LRESULT OnSizeParent(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnIdleUpdateCmdUI(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

    DWORD m_dwStyle = 0;  // CBRS_ bits
};

#define SBPS_NORMAL 0x0000
#define SBPS_NOBORDERS SBT_NOBORDERS
#define SBPS_POPOUT SBT_POPOUT
#define SBPS_DISABLED 0x04000000
#define SBPS_STRETCH 0x08000000  // takes what is left; one pane at most

// A row of panes at the bottom of a frame, over the system's status bar.
class COMMONFRAMEWORK_API CStatusBar : public CControlBar
{
    DECLARE_DYNAMIC(CStatusBar)

    virtual BOOL Create(CWnd* pParentWnd, DWORD dwStyle = WS_CHILD | WS_VISIBLE | CBRS_BOTTOM,
                        UINT nID = AFX_IDW_STATUS_BAR);
    virtual BOOL CreateEx(CWnd* pParentWnd, DWORD dwCtrlStyle = 0,
                          DWORD dwStyle = WS_CHILD | WS_VISIBLE | CBRS_BOTTOM,
                          UINT nID = AFX_IDW_STATUS_BAR);
    using CControlBar::Create;
    using CControlBar::CreateEx;

    // Pane 0 stretches and has no border; each of the others is as wide as the string of its id.
    // Null: that many empty panes.
    BOOL SetIndicators(const UINT* lpIDArray, int nIDCount);

    int GetCount() const { return static_cast<int>(panes.size()); }
    int CommandToIndex(UINT nIDFind) const;  // -1: none
    UINT GetItemID(int nIndex) const;
    void GetItemRect(int nIndex, LPRECT lpRect) const;
    CString GetPaneText(int nIndex) const;
    void GetPaneText(int nIndex, CString& rString) const;
    BOOL SetPaneText(int nIndex, LPCTSTR lpszNewText, BOOL bUpdate = TRUE);
    void GetPaneInfo(int nIndex, UINT& nID, UINT& nStyle, int& cxWidth) const;
    void SetPaneInfo(int nIndex, UINT nID, UINT nStyle, int cxWidth);  // pixels of text
    UINT GetPaneStyle(int nIndex) const;
    void SetPaneStyle(int nIndex, UINT nStyle);

    CSize CalcFixedLayout(BOOL bStretch, BOOL bHorz) override;
    void OnUpdateCmdUI(CFrameWnd* pTarget, BOOL bDisableIfNoHndler) override;

protected:
    afx_msg void OnSize(UINT nType, int cx, int cy);
    afx_msg LRESULT OnSetText(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    struct Pane
    {
        UINT id = 0;
        UINT style = SBPS_NORMAL;
        int width = 0;  // of the text, without borders
        CString text;
    };

    bool HasPane(int index) const { return index >= 0 && index < GetCount(); }
    Pane& PaneAt(int index) { return panes.at(static_cast<std::size_t>(index)); }
    const Pane& PaneAt(int index) const { return panes.at(static_cast<std::size_t>(index)); }
    int MeasureText(const CString& text) const;
    void LayOutPanes();
    void ShowPaneText(int index);

    std::vector<Pane> panes;
};
