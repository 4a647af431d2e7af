// afxfrm_.h: frame windows and views. Part of afxwin.h.
#pragma once

#include "afxres.h"
#include "afxwnd_.h"

class CDocument;
class CFrameWnd;
class CView;

// What a frame hands to whoever makes its panes.
struct CCreateContext
{
    CRuntimeClass* m_pNewViewClass = nullptr;
    CDocument* m_pCurrentDoc = nullptr;
    CView* m_pLastView = nullptr;
    CFrameWnd* m_pCurrentFrame = nullptr;
};

// Messages of the framework itself.
#define WM_SIZEPARENT 0x0361  // lParam: AFX_SIZEPARENTPARAMS, to the child that takes a side
#define WM_SETMESSAGESTRING 0x0362  // wParam: string id, or lParam: text; to a frame
#define WM_IDLEUPDATECMDUI 0x0363  // wParam: disable commands without handler
#define WM_INITIALUPDATE 0x0364  // to views, once the frame is made

struct AFX_SIZEPARENTPARAMS
{
    HDWP hDWP;  // collects the moves; null: the question is only what would be left
    RECT rect;  // what is left of the parent's client area
    SIZE sizeTotal;  // what the children take so far
    BOOL bStretch;
};

#define FWS_ADDTOTITLE 0x8000  // a style bit of frames
#define AFX_WS_DEFAULT_VIEW (WS_CHILD | WS_VISIBLE | WS_BORDER)

// A top-level window with menu, accelerators, control bars and one active view. Commands go to the
// active view, the frame, the application. Made with new; deletes itself in PostNcDestroy.
class COMMONFRAMEWORK_API CFrameWnd : public CWnd
{
    DECLARE_DYNCREATE(CFrameWnd)

    static const CRect rectDefault;  // the system chooses the place

    CFrameWnd() = default;

    BOOL Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle = WS_OVERLAPPEDWINDOW,
                const RECT& rect = rectDefault, CWnd* pParentWnd = nullptr,
                LPCTSTR lpszMenuName = nullptr, DWORD dwExStyle = 0,
                CCreateContext* pContext = nullptr);
    using CWnd::Create;
    // Icon, menu, accelerators and caption have the id; all of them may be missing.
    virtual BOOL LoadFrame(UINT nIDResource,
                           DWORD dwDefaultStyle = WS_OVERLAPPEDWINDOW | FWS_ADDTOTITLE,
                           CWnd* pParentWnd = nullptr, CCreateContext* pContext = nullptr);
    BOOL LoadAccelTable(LPCTSTR lpszResourceName);
    CWnd* CreateView(CCreateContext* pContext, UINT nID = AFX_IDW_PANE_FIRST);
    // The views are told that they are complete; then the frame is shown.
    void InitialUpdateFrame(CDocument* pDoc, BOOL bMakeVisible);
    virtual void ActivateFrame(int nCmdShow = -1);
    virtual void RecalcLayout(BOOL bNotify = TRUE);

    CView* GetActiveView() const { return m_pViewActive; }
    void SetActiveView(CView* pViewNew, BOOL bNotify = TRUE);
    virtual CFrameWnd* GetActiveFrame() { return this; }
    virtual CWnd* GetMessageBar();  // the status bar
    void SetMessageText(LPCTSTR lpszText);
    void SetMessageText(UINT nID);
    // The first line of the string: the prompt of a command.
    virtual void GetMessageString(UINT nID, CString& rMessage) const;
    void SetTitle(LPCTSTR lpszTitle) { m_strTitle = lpszTitle; }
    CString GetTitle() const { return m_strTitle; }

    BOOL IsFrameWnd() const override { return TRUE; }
    BOOL PreCreateWindow(CREATESTRUCT& cs) override;
    BOOL PreTranslateMessage(MSG* pMsg) override;
    BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) override;

    // A menu item without any handler is disabled.
    BOOL m_bAutoMenuEnable = TRUE;

protected:
    virtual BOOL OnCreateClient(LPCREATESTRUCT lpcs, CCreateContext* pContext);
    virtual HACCEL GetDefaultAccelerator() { return m_hAccelTable; }
    void PostNcDestroy() override { delete this; }

    afx_msg int OnCreate(LPCREATESTRUCT lpcs);
    afx_msg void OnDestroy();
    afx_msg void OnClose();
    afx_msg void OnSize(UINT nType, int cx, int cy);
    afx_msg void OnSetFocus(CWnd* pOldWnd);
    afx_msg void OnActivate(UINT nState, CWnd* pWndOther, BOOL bMinimized);
    afx_msg BOOL OnEraseBkgnd(CDC* pDC);
    afx_msg void OnInitMenuPopup(CMenu* pMenu, UINT nIndex, BOOL bSysMenu);
    afx_msg void OnMenuSelect(UINT nItemID, UINT nFlags, HMENU hSysMenu);
    afx_msg LRESULT OnSetMessageString(WPARAM wParam, LPARAM lParam);
    afx_msg void OnUpdateKeyIndicator(CCmdUI* pCmdUI);
    DECLARE_MESSAGE_MAP()

    HACCEL m_hAccelTable = nullptr;
    CView* m_pViewActive = nullptr;  // borrowed; a view that goes takes itself out
    CString m_strTitle;

private:
    bool isLayingOut = false;
};

// A child window that shows something in a frame. Made with new, mostly through its run-time
// class; deletes itself in PostNcDestroy.
class COMMONFRAMEWORK_API CView : public CWnd
{
    DECLARE_DYNAMIC(CView)

    // There are no documents here; what takes one gets null.
    CDocument* GetDocument() const { return nullptr; }

    virtual void OnInitialUpdate();
    virtual void OnPrepareDC(CDC* pDC, void* pInfo = nullptr);

    BOOL PreCreateWindow(CREATESTRUCT& cs) override;

protected:
    CView() = default;

    virtual void OnDraw(CDC* pDC) = 0;
    virtual void OnUpdate(CView* pSender, LPARAM lHint, CObject* pHint);
    virtual void OnActivateView(BOOL bActivate, CView* pActivateView, CView* pDeactiveView);
    void PostNcDestroy() override { delete this; }

    afx_msg void OnDestroy();
    afx_msg void OnPaint();
    afx_msg int OnMouseActivate(CWnd* pDesktopWnd, UINT nHitTest, UINT message);
    afx_msg LRESULT OnInitialUpdateMessage(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

    friend class CFrameWnd;
};
