// afxwnd_.h: windows and the plain controls. Part of afxwin.h.
#pragma once

#include "afxcmd_.h"
#include "afxgdi_.h"

#include <oleacc.h>

#include <memory>

class CDataExchange;
class CFrameWnd;
class CMenu;
class CMFCDynamicLayout;
class CScrollBar;
struct CCreateContext;
struct AFX_SIZEPARENTPARAMS;
class WindowAccessibility;
class WindowCreation;

// A window. An object that creates, subclasses or attaches a window is the permanent one of the
// handle and gets its messages; the others that FromHandle gives only hold the handle, until idle
// time. All of it belongs to the thread that made it. A window that is destroyed lets go of its
// object in OnNcDestroy, which calls PostNcDestroy last: there objects made with new delete
// themselves.
class COMMONFRAMEWORK_API CWnd : public CCmdTarget
{
    DECLARE_DYNCREATE(CWnd)

    CWnd();
    ~CWnd() override;  // destroys the window, which derived classes then no longer hear of

    static CWnd* PASCAL FromHandle(HWND hWnd);
    static CWnd* PASCAL FromHandlePermanent(HWND hWnd);
    static const MSG* PASCAL GetCurrentMessage();  // the one that is being handled

    // Attach makes the object permanent, but leaves the window its procedure. A window that is
    // detached lives on as it was without the object.
    BOOL Attach(HWND hWndNew);
    HWND Detach();
    // The window's messages go through the object until UnsubclassWindow or its end. FALSE: the
    // window has an object, or belongs to another process.
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassDlgItem(UINT nID, CWnd* pParent);
    HWND UnsubclassWindow();
    virtual void PreSubclassWindow() {}

    // A child window.
    virtual BOOL Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                        const RECT& rect, CWnd* pParentWnd, UINT nID,
                        CCreateContext* pContext = nullptr);
    // Any window. After a failure nothing is left of it, and PostNcDestroy has run.
    virtual BOOL CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName,
                          DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID,
                          LPVOID lpParam = nullptr);
    BOOL CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                  int x, int y, int nWidth, int nHeight, HWND hWndParent, HMENU nIDorHMenu,
                  LPVOID lpParam = nullptr);
    // Last changes before creation; without a class name yet it gets one. FALSE: do not create.
    virtual BOOL PreCreateWindow(CREATESTRUCT& cs);
    virtual BOOL DestroyWindow();

    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return m_hWnd; }
    bool operator==(const CWnd& wnd) const { return wnd.m_hWnd == m_hWnd; }

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return ::SendMessage(m_hWnd, message, wParam, lParam);
    }
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return ::PostMessage(m_hWnd, message, wParam, lParam);
    }
    void SendMessageToDescendants(UINT message, WPARAM wParam = 0, LPARAM lParam = 0,
                                  BOOL bDeep = TRUE, BOOL bOnlyPerm = FALSE);

    // Style, text, menu
    DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLong(m_hWnd, GWL_STYLE)); }
    DWORD GetExStyle() const { return static_cast<DWORD>(::GetWindowLong(m_hWnd, GWL_EXSTYLE)); }
    // TRUE: changed. nFlags: also tells the window by SetWindowPos.
    BOOL ModifyStyle(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0);
    BOOL ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0);
    void SetWindowText(LPCTSTR lpszString) { ::SetWindowText(m_hWnd, lpszString); }
    int GetWindowText(LPTSTR lpszString, int nMaxCount) const
    {
        return ::GetWindowText(m_hWnd, lpszString, nMaxCount);
    }
    void GetWindowText(CString& rString) const;
    int GetWindowTextLength() const { return ::GetWindowTextLength(m_hWnd); }
    void SetFont(CFont* pFont, BOOL bRedraw = TRUE);
    CFont* GetFont() const;
    HICON SetIcon(HICON hIcon, BOOL bBigIcon)
    {
        return reinterpret_cast<HICON>(SendMessage(WM_SETICON, static_cast<WPARAM>(bBigIcon),
                                                   reinterpret_cast<LPARAM>(hIcon)));
    }
    CMenu* GetMenu() const;
    BOOL SetMenu(CMenu* pMenu);
    void DrawMenuBar() { ::DrawMenuBar(m_hWnd); }
    void DragAcceptFiles(BOOL bAccept = TRUE) { ::DragAcceptFiles(m_hWnd, bAccept); }

    // Relatives
    CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
    CWnd* GetOwner() const { return GetWindow(GW_OWNER); }
    CWnd* GetWindow(UINT nCmd) const { return FromHandle(::GetWindow(m_hWnd, nCmd)); }
    CWnd* GetTopWindow() const { return FromHandle(::GetTopWindow(m_hWnd)); }
    CWnd* GetDlgItem(int nID) const { return FromHandle(::GetDlgItem(m_hWnd, nID)); }
    UINT IsDlgButtonChecked(int nIDButton) const { return ::IsDlgButtonChecked(m_hWnd, nIDButton); }
    int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
    int SetDlgCtrlID(int nID) { return ::SetWindowLong(m_hWnd, GWL_ID, nID); }
    CWnd* GetTopLevelParent() const { return FromHandle(::GetAncestor(m_hWnd, GA_ROOT)); }
    CFrameWnd* GetParentFrame() const;  // the nearest one above
    CFrameWnd* GetTopLevelFrame() const;  // the outermost, this window included
    BOOL IsChild(const CWnd* pWnd) const { return ::IsChild(m_hWnd, pWnd->GetSafeHwnd()); }
    static CWnd* PASCAL FindWindow(LPCTSTR lpszClassName, LPCTSTR lpszWindowName)
    {
        return FromHandle(::FindWindow(lpszClassName, lpszWindowName));
    }
    static CWnd* PASCAL WindowFromPoint(POINT point)
    {
        return FromHandle(::WindowFromPoint(point));
    }

    // State and place
    BOOL ShowWindow(int nCmdShow) { return ::ShowWindow(m_hWnd, nCmdShow); }
    BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
    BOOL EnableWindow(BOOL bEnable = TRUE) { return ::EnableWindow(m_hWnd, bEnable); }
    BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
    BOOL IsIconic() const { return ::IsIconic(m_hWnd); }
    BOOL IsZoomed() const { return ::IsZoomed(m_hWnd); }
    CWnd* SetActiveWindow() { return FromHandle(::SetActiveWindow(m_hWnd)); }
    BOOL SetForegroundWindow() { return ::SetForegroundWindow(m_hWnd); }
    static CWnd* PASCAL GetForegroundWindow() { return FromHandle(::GetForegroundWindow()); }
    CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
    static CWnd* PASCAL GetFocus() { return FromHandle(::GetFocus()); }
    CWnd* SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }
    static CWnd* PASCAL GetCapture() { return FromHandle(::GetCapture()); }
    void GetWindowRect(LPRECT lpRect) const { ::GetWindowRect(m_hWnd, lpRect); }
    void GetClientRect(LPRECT lpRect) const { ::GetClientRect(m_hWnd, lpRect); }
    void ClientToScreen(LPPOINT lpPoint) const { ::ClientToScreen(m_hWnd, lpPoint); }
    void ClientToScreen(LPRECT lpRect) const;
    void ScreenToClient(LPPOINT lpPoint) const { ::ScreenToClient(m_hWnd, lpPoint); }
    void ScreenToClient(LPRECT lpRect) const;
    void MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint = TRUE)
    {
        ::MoveWindow(m_hWnd, x, y, nWidth, nHeight, bRepaint);
    }
    void MoveWindow(LPCRECT lpRect, BOOL bRepaint = TRUE)
    {
        MoveWindow(lpRect->left, lpRect->top, lpRect->right - lpRect->left,
                   lpRect->bottom - lpRect->top, bRepaint);
    }
    BOOL SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags);
    BOOL GetWindowPlacement(WINDOWPLACEMENT* lpwndpl) const;
    BOOL SetWindowPlacement(const WINDOWPLACEMENT* lpwndpl)
    {
        return ::SetWindowPlacement(m_hWnd, lpwndpl);
    }

    // TRUE: from now on the children that are added to the layout follow the window's size; an
    // earlier layout is forgotten. Ends with the window.
    BOOL EnableDynamicLayout(BOOL bEnable = TRUE);
    CMFCDynamicLayout* GetDynamicLayout() { return dynamicLayout.get(); }  // null: not enabled
    virtual void ResizeDynamicLayout();  // after every change of size

    enum RepositionFlags { reposDefault = 0, reposQuery = 1 };
    // Lets the children of the id range (WM_SIZEPARENT) take their sides of the client area; the
    // rest goes to the child nIDLeftOver or, for reposQuery, which moves nothing, to lpRectParam.
    void RepositionBars(UINT nIDFirst, UINT nIDLast, UINT nIDLeftOver, UINT nFlag = reposDefault,
                        LPRECT lpRectParam = nullptr, LPCRECT lpRectClient = nullptr,
                        BOOL bStretch = TRUE);

    // Painting
    CDC* GetDC() { return CDC::FromHandle(::GetDC(m_hWnd)); }
    CDC* GetWindowDC() { return CDC::FromHandle(::GetWindowDC(m_hWnd)); }
    int ReleaseDC(CDC* pDC) { return ::ReleaseDC(m_hWnd, pDC->GetSafeHdc()); }
    void Invalidate(BOOL bErase = TRUE) { ::InvalidateRect(m_hWnd, nullptr, bErase); }
    void InvalidateRect(LPCRECT lpRect, BOOL bErase = TRUE)
    {
        ::InvalidateRect(m_hWnd, lpRect, bErase);
    }
    void ValidateRect(LPCRECT lpRect) { ::ValidateRect(m_hWnd, lpRect); }
    void UpdateWindow() { ::UpdateWindow(m_hWnd); }
    void SetRedraw(BOOL bRedraw = TRUE) { SendMessage(WM_SETREDRAW, static_cast<WPARAM>(bRedraw)); }
    BOOL RedrawWindow(LPCRECT lpRectUpdate = nullptr, CRgn* prgnUpdate = nullptr,
                      UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE);

    // Scroll bars: the control that GetScrollBarCtrl gives, else the window's own.
    virtual CScrollBar* GetScrollBarCtrl(int nBar) const;
    BOOL SetScrollInfo(int nBar, LPSCROLLINFO lpScrollInfo, BOOL bRedraw = TRUE);  // TRUE: success
    BOOL GetScrollInfo(int nBar, LPSCROLLINFO lpScrollInfo, UINT nMask = SIF_ALL);
    int SetScrollPos(int nBar, int nPos, BOOL bRedraw = TRUE);  // the previous position
    int GetScrollPos(int nBar) const;
    void SetScrollRange(int nBar, int nMinPos, int nMaxPos, BOOL bRedraw = TRUE);
    void GetScrollRange(int nBar, LPINT lpMinPos, LPINT lpMaxPos) const;
    void ShowScrollBar(UINT nBar, BOOL bShow = TRUE);

    UINT_PTR SetTimer(UINT_PTR nIDEvent, UINT nElapse, TIMERPROC lpfnTimer = nullptr)
    {
        return ::SetTimer(m_hWnd, nIDEvent, nElapse, lpfnTimer);
    }
    BOOL KillTimer(UINT_PTR nIDEvent) { return ::KillTimer(m_hWnd, nIDEvent); }
    int MessageBox(LPCTSTR lpszText, LPCTSTR lpszCaption = nullptr, UINT nType = MB_OK);

    // The pump offers every message to the window it is for, then to each parent. TRUE: eaten.
    virtual BOOL PreTranslateMessage(MSG* pMsg);
    static BOOL PASCAL WalkPreTranslateTree(HWND hWndStop, MSG* pMsg);
    BOOL IsDialogMessage(MSG* lpMsg) { return ::IsDialogMessage(m_hWnd, lpMsg); }

    // Lets DoDataExchange move data between members and controls; TRUE: from the controls, checked.
    // Meanwhile the window hears of no notification of its controls. FALSE: something was refused,
    // of which the user knows, or the exchange is under way already.
    BOOL UpdateData(BOOL bSaveAndValidate = TRUE);

    // For what a class draws itself, of which the system knows nothing. Called in its constructor,
    // it makes the window answer screen readers by the operations below, which the class overrides;
    // the base ones say what the system says of any such window, and without this call nothing.
    // varChild: CHILDID_SELF, or a part by its number, from 1. What is given out is the caller's.
    void EnableActiveAccessibility();
    virtual HRESULT get_accParent(IDispatch** ppdispParent);
    virtual HRESULT get_accChildCount(long* pcountChildren);
    virtual HRESULT get_accChild(VARIANT varChild, IDispatch** ppdispChild);
    virtual HRESULT get_accName(VARIANT varChild, BSTR* pszName);
    virtual HRESULT get_accValue(VARIANT varChild, BSTR* pszValue);
    virtual HRESULT get_accDescription(VARIANT varChild, BSTR* pszDescription);
    virtual HRESULT get_accRole(VARIANT varChild, VARIANT* pvarRole);
    virtual HRESULT get_accState(VARIANT varChild, VARIANT* pvarState);
    virtual HRESULT get_accHelp(VARIANT varChild, BSTR* pszHelp);
    virtual HRESULT get_accHelpTopic(BSTR* pszHelpFile, VARIANT varChild, long* pidTopic);
    virtual HRESULT get_accKeyboardShortcut(VARIANT varChild, BSTR* pszKeyboardShortcut);
    virtual HRESULT get_accFocus(VARIANT* pvarChild);
    virtual HRESULT get_accSelection(VARIANT* pvarChildren);
    virtual HRESULT get_accDefaultAction(VARIANT varChild, BSTR* pszDefaultAction);
    virtual HRESULT accSelect(long flagsSelect, VARIANT varChild);
    virtual HRESULT accLocation(long* pxLeft, long* pyTop, long* pcxWidth, long* pcyHeight,
                                VARIANT varChild);  // on the screen
    virtual HRESULT accNavigate(long navDir, VARIANT varStart, VARIANT* pvarEndUpAt);
    virtual HRESULT accHitTest(long xLeft, long yTop, VARIANT* pvarChild);  // on the screen
    virtual HRESULT accDoDefaultAction(VARIANT varChild);
    virtual HRESULT put_accName(VARIANT varChild, BSTR szNewName);
    virtual HRESULT put_accValue(VARIANT varChild, BSTR szNewValue);

    virtual BOOL IsFrameWnd() const { return FALSE; }
    // Where the procedure that was there before ours is kept.
    virtual WNDPROC* GetSuperWndProcAddr() { return &superWindowProc; }

    HWND m_hWnd = nullptr;

protected:
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Default();  // DefWindowProc with the message as it came
    virtual void PostNcDestroy() {}
    virtual void DoDataExchange(CDataExchange*) {}

    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    // A notification of this window that its parent hands back. TRUE: settled here.
    virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    BOOL SendChildNotifyLastMsg(LRESULT* pResult = nullptr);
    static BOOL PASCAL ReflectLastMsg(HWND hWndChild, LRESULT* pResult = nullptr);
    BOOL ReflectChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult);

    afx_msg int OnCreate(LPCREATESTRUCT) { return static_cast<int>(Default()); }
    afx_msg BOOL OnNcCreate(LPCREATESTRUCT) { return static_cast<BOOL>(Default()); }
    afx_msg void OnDestroy() { Default(); }
    afx_msg void OnNcDestroy();
    afx_msg void OnClose() { Default(); }
    afx_msg void OnEndSession(BOOL) { Default(); }
    afx_msg void OnSize(UINT, int, int) { Default(); }
    afx_msg void OnGetMinMaxInfo(MINMAXINFO* lpMMI);
    afx_msg void OnMove(int, int) { Default(); }
    afx_msg void OnShowWindow(BOOL, UINT) { Default(); }
    afx_msg void OnEnable(BOOL) { Default(); }
    afx_msg void OnActivate(UINT, CWnd*, BOOL) { Default(); }
    afx_msg void OnSetFocus(CWnd*) { Default(); }
    afx_msg void OnKillFocus(CWnd*) { Default(); }
    afx_msg void OnWindowPosChanging(WINDOWPOS*) { Default(); }
    afx_msg void OnWindowPosChanged(WINDOWPOS*) { Default(); }
    afx_msg void OnNcCalcSize(BOOL, NCCALCSIZE_PARAMS*) { Default(); }
    afx_msg void OnPaint() { Default(); }
    afx_msg void OnNcPaint() { Default(); }
    afx_msg LRESULT OnNcHitTest(CPoint) { return Default(); }
    afx_msg void OnNcLButtonDown(UINT, CPoint) { Default(); }
    afx_msg void OnNcLButtonDblClk(UINT, CPoint) { Default(); }
    afx_msg void OnNcMouseMove(UINT, CPoint) { Default(); }
    afx_msg BOOL OnEraseBkgnd(CDC*) { return static_cast<BOOL>(Default()); }
    afx_msg HBRUSH OnCtlColor(CDC* pDC, CWnd* pWnd, UINT nCtlColor);
    afx_msg void OnDrawItem(int nIDCtl, LPDRAWITEMSTRUCT lpDrawItemStruct);
    afx_msg void OnSysColorChange() { Default(); }
    afx_msg void OnSettingChange(UINT, LPCTSTR) { Default(); }
    afx_msg BOOL OnSetCursor(CWnd*, UINT, UINT) { return static_cast<BOOL>(Default()); }
    afx_msg int OnMouseActivate(CWnd*, UINT, UINT) { return static_cast<int>(Default()); }
    afx_msg void OnMouseMove(UINT, CPoint) { Default(); }
    afx_msg BOOL OnMouseWheel(UINT, short, CPoint) { return static_cast<BOOL>(Default()); }
    afx_msg void OnLButtonDown(UINT, CPoint) { Default(); }
    afx_msg void OnLButtonUp(UINT, CPoint) { Default(); }
    afx_msg void OnLButtonDblClk(UINT, CPoint) { Default(); }
    afx_msg void OnRButtonDown(UINT, CPoint) { Default(); }
    afx_msg void OnRButtonUp(UINT, CPoint) { Default(); }
    afx_msg void OnCaptureChanged(CWnd*) { Default(); }
    afx_msg void OnKeyDown(UINT, UINT, UINT) { Default(); }
    afx_msg void OnKeyUp(UINT, UINT, UINT) { Default(); }
    afx_msg void OnChar(UINT, UINT, UINT) { Default(); }
    afx_msg void OnSysKeyDown(UINT, UINT, UINT) { Default(); }
    afx_msg void OnVScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar);
    afx_msg void OnHScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar);
    afx_msg void OnTimer(UINT_PTR) { Default(); }
    afx_msg void OnContextMenu(CWnd*, CPoint) { Default(); }
    afx_msg void OnInitMenuPopup(CMenu*, UINT, BOOL) { Default(); }
    afx_msg void OnMenuSelect(UINT, UINT, HMENU) { Default(); }
    afx_msg void OnDropFiles(HDROP) { Default(); }
    afx_msg LRESULT OnGetObject(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    friend class CDialog;
    friend class WindowCreation;
    friend class WindowProcedure;

    LRESULT CallHandler(const AFX_MSGMAP_ENTRY& entry, UINT message, WPARAM wParam, LPARAM lParam);
    bool HookProcedure();
    void RestoreProcedure();
    BOOL AbandonCreation(const WindowCreation& creation);

    std::unique_ptr<CMFCDynamicLayout> dynamicLayout;
    std::unique_ptr<WindowAccessibility> accessibility;  // null: not enabled
    WNDPROC superWindowProc = nullptr;  // null: the system's default one
};

class COMMONFRAMEWORK_API CStatic : public CWnd
{
    DECLARE_DYNAMIC(CStatic)

    BOOL Create(LPCTSTR lpszText, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                UINT nID = 0xFFFF);
    using CWnd::Create;
};

class COMMONFRAMEWORK_API CButton : public CWnd
{
    DECLARE_DYNAMIC(CButton)

    BOOL Create(LPCTSTR lpszCaption, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    using CWnd::Create;
    int GetCheck() const { return static_cast<int>(SendMessage(BM_GETCHECK)); }
    void SetCheck(int nCheck) { SendMessage(BM_SETCHECK, static_cast<WPARAM>(nCheck)); }
};

class COMMONFRAMEWORK_API CEdit : public CWnd
{
    DECLARE_DYNAMIC(CEdit)

    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    using CWnd::Create;
    // Positions count characters; 0, -1: all. The caret is scrolled into view unless bNoScroll.
    void SetSel(int nStartChar, int nEndChar, BOOL bNoScroll = FALSE);
    void GetSel(int& nStartChar, int& nEndChar) const;
    // bCanUndo: the user can take it back; otherwise there is nothing to take back any more.
    void ReplaceSel(LPCTSTR lpszNewText, BOOL bCanUndo = FALSE)
    {
        SendMessage(EM_REPLACESEL, static_cast<WPARAM>(bCanUndo),
                    reinterpret_cast<LPARAM>(lpszNewText));
    }
    // -1: of a field with several lines, what is not selected of those with the selection.
    int LineLength(int nLine = -1) const
    {
        return static_cast<int>(SendMessage(EM_LINELENGTH, static_cast<WPARAM>(nLine)));
    }
    void LimitText(int nChars = 0) { SendMessage(EM_LIMITTEXT, static_cast<WPARAM>(nChars)); }
};

// A scroll bar control: its bar is SB_CTL. Its messages go to the parent's OnVScroll or OnHScroll,
// which hands them back (ON_WM_VSCROLL_REFLECT).
class COMMONFRAMEWORK_API CScrollBar : public CWnd
{
    DECLARE_DYNAMIC(CScrollBar)

    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    using CWnd::Create;
    BOOL SetScrollInfo(LPSCROLLINFO lpScrollInfo, BOOL bRedraw = TRUE);
    BOOL GetScrollInfo(LPSCROLLINFO lpScrollInfo, UINT nMask = SIF_ALL);
    int SetScrollPos(int nPos, BOOL bRedraw = TRUE);
    int GetScrollPos() const;
    void SetScrollRange(int nMinPos, int nMaxPos, BOOL bRedraw = TRUE);
    void GetScrollRange(LPINT lpMinPos, LPINT lpMaxPos) const;
    void ShowScrollBar(BOOL bShow = TRUE);
    BOOL EnableScrollBar(UINT nArrowFlags = ESB_ENABLE_BOTH)
    {
        return ::EnableScrollBar(m_hWnd, SB_CTL, nArrowFlags);
    }
};

// Registers a window class of that look once and names it; the text lives until the thread's next
// call. Throws CResourceException.
COMMONFRAMEWORK_API LPCTSTR AFXAPI AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor = nullptr,
                                                       HBRUSH hbrBackground = nullptr,
                                                       HICON hIcon = nullptr);
