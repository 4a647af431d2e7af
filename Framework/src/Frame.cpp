#include "afxwin.h"

IMPLEMENT_DYNCREATE(CFrameWnd, CWnd)

BEGIN_MESSAGE_MAP(CFrameWnd, CWnd)
    ON_WM_CREATE()
    ON_WM_DESTROY()
    ON_WM_CLOSE()
    ON_WM_SIZE()
    ON_WM_SETFOCUS()
    ON_WM_ACTIVATE()
    ON_WM_ERASEBKGND()
    ON_WM_INITMENUPOPUP()
    ON_WM_MENUSELECT()
    ON_MESSAGE(WM_SETMESSAGESTRING, &CFrameWnd::OnSetMessageString)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_CAPS, &CFrameWnd::OnUpdateKeyIndicator)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_NUM, &CFrameWnd::OnUpdateKeyIndicator)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_SCRL, &CFrameWnd::OnUpdateKeyIndicator)
END_MESSAGE_MAP()

const CRect CFrameWnd::rectDefault(CW_USEDEFAULT, CW_USEDEFAULT, 0, 0);

namespace {

constexpr UINT firstSystemCommand = 0xF000;

HBRUSH ColourBrush(int index)
{
    return reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(index) + 1);
}

LPCTSTR FrameClassName(HICON icon)
{
    return ::AfxRegisterWndClass(CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW,
                                 ::LoadCursorW(nullptr, IDC_ARROW), ColourBrush(COLOR_WINDOW),
                                 icon != nullptr ? icon : ::LoadIconW(nullptr, IDI_APPLICATION));
}

HICON FindIcon(LPCTSTR resource)
{
    return ::LoadIconW(::AfxFindResourceHandle(resource, RT_GROUP_ICON), resource);
}

// The default place has the smallest number of all for a left edge, and stands for its own width:
// the difference wraps back to it.
int Subtract(LONG end, LONG start)
{
    return static_cast<int>(static_cast<ULONG>(end) - static_cast<ULONG>(start));
}

// An item that opens a menu goes by the first command in it.
void FillItem(CCmdUI& item)
{
    item.m_nID = item.m_pMenu->GetMenuItemID(static_cast<int>(item.m_nIndex));
    item.m_pSubMenu = nullptr;
    if (item.m_nID == static_cast<UINT>(-1)) {
        item.m_pSubMenu = item.m_pMenu->GetSubMenu(static_cast<int>(item.m_nIndex));
        item.m_nID = item.m_pSubMenu != nullptr ? item.m_pSubMenu->GetMenuItemID(0) : 0;
    }
}

void UpdateMenu(CMenu& menu, CCmdTarget& target, bool disableWithoutHandler)
{
    CCmdUI item;
    item.m_pMenu = &menu;
    item.m_nIndexMax = static_cast<UINT>(menu.GetMenuItemCount());
    for (; item.m_nIndex < item.m_nIndexMax; ++item.m_nIndex) {
        FillItem(item);
        const bool isOwnCommand = item.m_pSubMenu == nullptr && item.m_nID < firstSystemCommand;
        item.DoUpdate(&target, disableWithoutHandler && isOwnCommand);
        item.m_nIndexMax = static_cast<UINT>(menu.GetMenuItemCount());  // a handler may change it
    }
}

}  // namespace

BOOL CFrameWnd::Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                       const RECT& rect, CWnd* pParentWnd, LPCTSTR lpszMenuName, DWORD dwExStyle,
                       CCreateContext* pContext)
{
    HMENU menu = nullptr;
    if (lpszMenuName != nullptr) {
        menu = ::LoadMenuW(::AfxFindResourceHandle(lpszMenuName, RT_MENU), lpszMenuName);
        if (menu == nullptr) {
            PostNcDestroy();
            return FALSE;
        }
    }
    m_strTitle = lpszWindowName;
    const HWND parent = pParentWnd != nullptr ? pParentWnd->GetSafeHwnd() : nullptr;
    const bool created = CreateEx(dwExStyle, lpszClassName, lpszWindowName, dwStyle, rect.left,
                                  rect.top, Subtract(rect.right, rect.left),
                                  Subtract(rect.bottom, rect.top), parent, menu, pContext) != FALSE;
    if (!created && menu != nullptr) {
        ::DestroyMenu(menu);  // fails quietly where the dying window took the menu with it
    }
    return created;
}

BOOL CFrameWnd::LoadFrame(UINT nIDResource, DWORD dwDefaultStyle, CWnd* pParentWnd,
                          CCreateContext* pContext)
{
    const LPCTSTR resource = MAKEINTRESOURCE(nIDResource);
    CString title;
    title.LoadString(nIDResource);
    const int end = title.Find(L'\n');
    if (end >= 0) {
        title = title.Left(end);
    }
    const HINSTANCE module = ::AfxFindResourceHandle(resource, RT_MENU);
    const bool hasMenu = ::FindResourceW(module, resource, RT_MENU) != nullptr;
    LoadAccelTable(resource);
    return Create(FrameClassName(FindIcon(resource)), title, dwDefaultStyle, rectDefault,
                  pParentWnd, hasMenu ? resource : nullptr, 0, pContext);
}

BOOL CFrameWnd::LoadAccelTable(LPCTSTR lpszResourceName)
{
    const HINSTANCE module = ::AfxFindResourceHandle(lpszResourceName, RT_ACCELERATOR);
    m_hAccelTable = ::LoadAcceleratorsW(module, lpszResourceName);
    return m_hAccelTable != nullptr;
}

BOOL CFrameWnd::PreCreateWindow(CREATESTRUCT& cs)
{
    if (cs.lpszClass == nullptr) {
        cs.lpszClass = FrameClassName(nullptr);
    }
    cs.style &= ~static_cast<LONG>(FWS_ADDTOTITLE);  // says something to documents only
    return TRUE;
}

int CFrameWnd::OnCreate(LPCREATESTRUCT lpcs)
{
    if (CWnd::OnCreate(lpcs) == -1) {
        return -1;
    }
    if (!OnCreateClient(lpcs, static_cast<CCreateContext*>(lpcs->lpCreateParams))) {
        return -1;
    }
    RecalcLayout();
    return 0;
}

BOOL CFrameWnd::OnCreateClient(LPCREATESTRUCT, CCreateContext* pContext)
{
    return pContext == nullptr || pContext->m_pNewViewClass == nullptr ||
           CreateView(pContext, AFX_IDW_PANE_FIRST) != nullptr;
}

CWnd* CFrameWnd::CreateView(CCreateContext* pContext, UINT nID)
{
    CObject* const object = pContext->m_pNewViewClass->CreateObject();
    CWnd* const view = DYNAMIC_DOWNCAST(CWnd, object);
    if (view == nullptr) {
        delete object;
        return nullptr;
    }
    // After a failure the view has deleted itself.
    return view->Create(nullptr, nullptr, AFX_WS_DEFAULT_VIEW, CRect(0, 0, 0, 0), this, nID,
                        pContext)
               ? view
               : nullptr;
}

void CFrameWnd::InitialUpdateFrame(CDocument*, BOOL bMakeVisible)
{
    if (m_pViewActive == nullptr) {
        CWnd* const first = GetDlgItem(AFX_IDW_PANE_FIRST);
        if (CView* const view = DYNAMIC_DOWNCAST(CView, first)) {
            SetActiveView(view, FALSE);
        }
    }
    if (!bMakeVisible) {
        return;
    }
    SendMessageToDescendants(WM_INITIALUPDATE, 0, 0, TRUE, TRUE);
    ActivateFrame();
    if (m_pViewActive != nullptr) {
        m_pViewActive->OnActivateView(TRUE, m_pViewActive, m_pViewActive);
    }
}

void CFrameWnd::ActivateFrame(int nCmdShow)
{
    if (nCmdShow == -1) {
        nCmdShow = !IsWindowVisible() ? SW_SHOWNORMAL : IsIconic() ? SW_RESTORE : -1;
    }
    ::BringWindowToTop(m_hWnd);
    if (nCmdShow != -1) {
        ShowWindow(nCmdShow);
    }
}

void CFrameWnd::RecalcLayout(BOOL)
{
    // A bar that moves may bring on a WM_SIZE, which would lay out again.
    if (isLayingOut) {
        return;
    }
    isLayingOut = true;
    RepositionBars(0, 0xFFFF, AFX_IDW_PANE_FIRST);
    isLayingOut = false;
}

void CFrameWnd::SetActiveView(CView* pViewNew, BOOL bNotify)
{
    CView* const previous = m_pViewActive;
    if (pViewNew == previous) {
        return;
    }
    m_pViewActive = nullptr;  // nobody is active while the old one says farewell
    if (previous != nullptr) {
        previous->OnActivateView(FALSE, pViewNew, previous);
    }
    if (m_pViewActive != nullptr) {
        return;  // it has chosen another one
    }
    m_pViewActive = pViewNew;
    if (pViewNew != nullptr && bNotify) {
        pViewNew->OnActivateView(TRUE, pViewNew, previous);
    }
}

BOOL CFrameWnd::PreTranslateMessage(MSG* pMsg)
{
    if (CWnd::PreTranslateMessage(pMsg)) {
        return TRUE;
    }
    const bool isKey = pMsg->message >= WM_KEYFIRST && pMsg->message <= WM_KEYLAST;
    const HACCEL accelerators = isKey ? GetDefaultAccelerator() : nullptr;
    return accelerators != nullptr && ::TranslateAcceleratorW(m_hWnd, accelerators, pMsg) != 0;
}

BOOL CFrameWnd::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo)
{
    CView* const view = GetActiveView();
    if (view != nullptr && view->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo)) {
        return TRUE;
    }
    if (CWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo)) {
        return TRUE;
    }
    CWinApp* const application = ::AfxGetApp();
    return application != nullptr && application->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}

void CFrameWnd::OnDestroy()
{
    m_pViewActive = nullptr;
    CWnd::OnDestroy();
}

void CFrameWnd::OnClose()
{
    DestroyWindow();
}

void CFrameWnd::OnSize(UINT nType, int cx, int cy)
{
    CWnd::OnSize(nType, cx, cy);
    if (nType != SIZE_MINIMIZED) {
        RecalcLayout();
    }
}

void CFrameWnd::OnSetFocus(CWnd* pOldWnd)
{
    if (m_pViewActive != nullptr) {
        m_pViewActive->SetFocus();
    } else {
        CWnd::OnSetFocus(pOldWnd);
    }
}

void CFrameWnd::OnActivate(UINT nState, CWnd* pWndOther, BOOL bMinimized)
{
    CWnd::OnActivate(nState, pWndOther, bMinimized);
    if (m_pViewActive != nullptr && !bMinimized) {
        m_pViewActive->OnActivateView(nState != WA_INACTIVE, m_pViewActive, m_pViewActive);
    }
}

// The view covers the client area: erasing it under the view would only flicker.
BOOL CFrameWnd::OnEraseBkgnd(CDC* pDC)
{
    return m_pViewActive != nullptr ? TRUE : CWnd::OnEraseBkgnd(pDC);
}

void CFrameWnd::OnInitMenuPopup(CMenu* pMenu, UINT, BOOL bSysMenu)
{
    if (!bSysMenu) {
        UpdateMenu(*pMenu, *this, m_bAutoMenuEnable != FALSE);
    }
}

void CFrameWnd::OnMenuSelect(UINT nItemID, UINT nFlags, HMENU)
{
    const bool isClosing = nFlags == 0xFFFF;
    const bool isCommand = (nFlags & (MF_SEPARATOR | MF_POPUP | MF_SYSMENU)) == 0;
    const UINT prompt = isCommand ? nItemID : 0U;
    SetMessageText(isClosing ? static_cast<UINT>(AFX_IDS_IDLEMESSAGE) : prompt);
}

void CFrameWnd::SetMessageText(LPCTSTR lpszText)
{
    SendMessage(WM_SETMESSAGESTRING, 0, reinterpret_cast<LPARAM>(lpszText));
}

void CFrameWnd::SetMessageText(UINT nID)
{
    SendMessage(WM_SETMESSAGESTRING, nID);
}

void CFrameWnd::GetMessageString(UINT nID, CString& rMessage) const
{
    rMessage.LoadString(nID);
    const int end = rMessage.Find(L'\n');
    if (end >= 0) {
        rMessage = rMessage.Left(end);
    }
}

LRESULT CFrameWnd::OnSetMessageString(WPARAM wParam, LPARAM lParam)
{
    CWnd* const bar = GetMessageBar();
    if (bar == nullptr) {
        return 0;
    }
    CString text(reinterpret_cast<LPCTSTR>(lParam));
    if (lParam == 0 && wParam != 0) {
        GetMessageString(static_cast<UINT>(wParam), text);
    }
    bar->SetWindowText(text);
    return 0;
}

CWnd* CFrameWnd::GetMessageBar()
{
    return GetDlgItem(AFX_IDW_STATUS_BAR);
}

void CFrameWnd::OnUpdateKeyIndicator(CCmdUI* pCmdUI)
{
    int key = VK_CAPITAL;
    if (pCmdUI->m_nID == ID_INDICATOR_NUM) {
        key = VK_NUMLOCK;
    } else if (pCmdUI->m_nID == ID_INDICATOR_SCRL) {
        key = VK_SCROLL;
    }
    pCmdUI->Enable((::GetKeyState(key) & 1) != 0);
}
