#include "FrameworkState.h"
#include "WindowMap.h"
#include "WindowProcedure.h"

IMPLEMENT_DYNAMIC(CDialog, CWnd)

BEGIN_MESSAGE_MAP(CDialog, CWnd)
    ON_MESSAGE(WM_INITDIALOG, &CDialog::HandleInitDialog)
    ON_MESSAGE(WM_SETFONT, &CDialog::HandleSetFont)
    ON_COMMAND(IDOK, &CDialog::OnOK)
    ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

namespace {

// Messages go through the object; the system's own procedure for dialogs asks this one first.
INT_PTR CALLBACK LeaveToObject(HWND, UINT, WPARAM, LPARAM)
{
    return FALSE;
}

HWND MainWindow()
{
    CWnd* const window = ::AfxGetMainWnd();
    return window != nullptr ? window->GetSafeHwnd() : nullptr;
}

// A dialog can only be owned by a window that is nobody's child. Without a parent it comes before
// the dialog that is open already, not between that one and the main window.
HWND OwnerOfModal(const CWnd* parent)
{
    if (parent != nullptr && parent->GetSafeHwnd() != nullptr) {
        return ::GetAncestor(*parent, GA_ROOT);
    }
    const HWND mainWindow = MainWindow();
    return mainWindow != nullptr ? ::GetLastActivePopup(mainWindow) : nullptr;
}

// Takes no input for as long as it is held, unless it did not before.
class DisabledOwner
{
public:
    explicit DisabledOwner(HWND window)
        : owner(window != nullptr && ::IsWindowEnabled(window) ? window : nullptr)
    {
        if (owner != nullptr) {
            ::EnableWindow(owner, FALSE);
        }
    }
    ~DisabledOwner() { Enable(); }
    DisabledOwner(const DisabledOwner&) = delete;
    DisabledOwner& operator=(const DisabledOwner&) = delete;

    void Enable()
    {
        if (owner != nullptr) {
            ::EnableWindow(owner, TRUE);
            owner = nullptr;
        }
    }

private:
    HWND owner;
};

// For threads without an object, such as a console program's.
bool PumpPlainMessage()
{
    MSG message;
    if (::GetMessageW(&message, nullptr, 0, 0) <= 0) {
        return false;
    }
    try {
        if (CWnd::WalkPreTranslateTree(nullptr, &message)) {
            return true;
        }
    } catch (...) {
        AnswerForCurrentException(message);
        return true;
    }
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
    return true;
}

bool PumpOneMessage()
{
    CWinThread* const thread = ::AfxGetThread();
    return thread != nullptr ? thread->PumpMessage() != FALSE : PumpPlainMessage();
}

// Null: there is none of the name.
LPCDLGTEMPLATE LoadTemplate(HINSTANCE module, LPCTSTR name)
{
    const HRSRC resource = ::FindResourceW(module, name, RT_DIALOG);
    const HGLOBAL loaded = resource != nullptr ? ::LoadResource(module, resource) : nullptr;
    return static_cast<LPCDLGTEMPLATE>(::LockResource(loaded));
}

HWND OwnerOfModeless(const CWnd* parent)
{
    return parent != nullptr ? parent->GetSafeHwnd() : MainWindow();
}

bool IsInput(UINT message)
{
    return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
           (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST);
}

}  // namespace

CDialog::CDialog(LPCTSTR lpszTemplateName, CWnd* pParentWnd)
    : templateName(lpszTemplateName), modalParent(pParentWnd)
{}

CDialog::CDialog(UINT nIDTemplate, CWnd* pParentWnd)
    : CDialog(MAKEINTRESOURCE(nIDTemplate), pParentWnd)
{}

BOOL CDialog::Create(UINT nIDTemplate, CWnd* pParentWnd)
{
    return Create(MAKEINTRESOURCE(nIDTemplate), pParentWnd);
}

BOOL CDialog::Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd)
{
    const HINSTANCE module = ::AfxFindResourceHandle(lpszTemplateName, RT_DIALOG);
    return CreateFromTemplate(module, LoadTemplate(module, lpszTemplateName),
                              OwnerOfModeless(pParentWnd));
}

BOOL CDialog::CreateIndirect(LPCDLGTEMPLATE lpDialogTemplate, CWnd* pParentWnd)
{
    return CreateFromTemplate(::AfxGetInstanceHandle(), lpDialogTemplate,
                              OwnerOfModeless(pParentWnd));
}

BOOL CDialog::InitModalIndirect(LPCDLGTEMPLATE lpDialogTemplate, CWnd* pParentWnd)
{
    ASSERT(templateName == nullptr && lpDialogTemplate != nullptr);
    modalTemplate = lpDialogTemplate;
    modalParent = modalParent != nullptr ? modalParent : pParentWnd;
    return TRUE;
}

BOOL CDialog::CreateFromTemplate(HINSTANCE module, LPCDLGTEMPLATE layout, HWND owner)
{
    ASSERT(m_hWnd == nullptr);
    isInitialized = false;
    const WindowCreation creation(*this);
    const HWND handle = layout != nullptr && creation.IsReady()
                            ? ::CreateDialogIndirectParamW(module, layout, owner, &LeaveToObject, 0)
                            : nullptr;
    return FinishCreation(creation, handle);
}

BOOL CDialog::FinishCreation(const WindowCreation& creation, HWND handle)
{
    if (handle == nullptr) {
        return AbandonCreation(creation);
    }
    if (WindowMap::FindPermanent(handle) != this) {
        return FALSE;  // it has ended while it was made
    }
    if (!isInitialized) {
        DestroyWindow();
        return FALSE;
    }
    return TRUE;
}

INT_PTR CDialog::DoModal()
{
    ASSERT(templateName != nullptr || modalTemplate != nullptr);
    const HWND owner = OwnerOfModal(modalParent);
    modalResult = -1;
    isModal = true;
    DisabledOwner disabled(owner);
    const HINSTANCE module = modalTemplate != nullptr
                                 ? ::AfxGetInstanceHandle()
                                 : ::AfxFindResourceHandle(templateName, RT_DIALOG);
    const LPCDLGTEMPLATE layout =
        modalTemplate != nullptr ? modalTemplate : LoadTemplate(module, templateName);
    if (CreateFromTemplate(module, layout, owner)) {
        RunModalLoop();
    }
    isModal = false;
    // The owner first: when the dialog goes, the system activates an enabled window, and that shall
    // not be another program's.
    disabled.Enable();
    if (m_hWnd != nullptr) {
        if (owner != nullptr && ::GetActiveWindow() == m_hWnd) {
            ::SetActiveWindow(owner);
        }
        DestroyWindow();
    }
    return modalResult;
}

// The end of the program is left in the queue for the loop outside, which knows what to do.
void CDialog::RunModalLoop()
{
    if (isModal && !IsWindowVisible()) {
        ShowWindow(SW_SHOWNORMAL);
    }
    MSG next;
    while (isModal && m_hWnd != nullptr) {
        if (!::PeekMessageW(&next, nullptr, 0, 0, PM_NOREMOVE)) {
            ::WaitMessage();
        } else if (next.message == WM_QUIT) {
            return;
        } else if (!PumpOneMessage()) {
            ::AfxPostQuitMessage(0);  // came while the message that was there was being fetched
            return;
        }
    }
}

void CDialog::EndDialog(int nResult)
{
    if (!isModal) {
        ::EndDialog(m_hWnd, nResult);
        return;
    }
    modalResult = nResult;
    isModal = false;
    PostMessage(WM_NULL);  // the loop may be waiting, when nobody's message has brought us here
}

void CDialog::GotoDlgCtrl(CWnd* pWndCtrl)
{
    SendMessage(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(pWndCtrl->GetSafeHwnd()), TRUE);
}

// The keys of a page belong to the outer dialog, whose own PreTranslateMessage the walk of the pump
// comes to next: asked here, the system would send Return and Escape to the page.
bool CDialog::LeavesKeysToOuterDialog() const
{
    if ((GetStyle() & WS_CHILD) == 0 || (GetExStyle() & WS_EX_CONTROLPARENT) == 0) {
        return false;
    }
    for (HWND above = ::GetAncestor(m_hWnd, GA_PARENT); above != nullptr;
         above = ::GetAncestor(above, GA_PARENT)) {
        if (DYNAMIC_DOWNCAST(CDialog, FromHandlePermanent(above)) != nullptr) {
            return true;
        }
    }
    return false;
}

BOOL CDialog::PreTranslateMessage(MSG* pMsg)
{
    if (CWnd::PreTranslateMessage(pMsg)) {
        return TRUE;
    }
    return IsInput(pMsg->message) && !LeavesKeysToOuterDialog() && IsDialogMessage(pMsg);
}

LRESULT CDialog::HandleSetFont(WPARAM wParam, LPARAM)
{
    OnSetFont(CFont::FromHandle(reinterpret_cast<HFONT>(wParam)));
    return Default();
}

LRESULT CDialog::HandleInitDialog(WPARAM, LPARAM)
{
    Default();  // the system's own dialogs prepare themselves there
    const HWND handle = m_hWnd;
    const BOOL wantsFocus = OnInitDialog();
    if (WindowMap::FindPermanent(handle) == this) {
        isInitialized = true;
    }
    return wantsFocus;
}

BOOL CDialog::OnInitDialog()
{
    if (!UpdateData(FALSE)) {
        ::AfxThrowUserException();
    }
    return TRUE;
}

void CDialog::OnOK()
{
    if (UpdateData(TRUE)) {
        EndDialog(IDOK);
    }
}

void CDialog::OnCancel()
{
    EndDialog(IDCANCEL);
}
