// afxdlg_.h: dialogs. Part of afxwin.h.
#pragma once

#include "afxwnd_.h"

// A window made from a dialog template, which is in memory or where AfxSetResourceHandle points. Modal
// by DoModal, with the object on the stack, or modeless by Create; a modeless one that was made with
// new deletes itself in PostNcDestroy and overrides OnOK and OnCancel, which only hide it. A child
// page that the outer dialog's Tab key walks through (DS_CONTROL) leaves all keys to that dialog.
// User-interface thread.
class COMMONFRAMEWORK_API CDialog : public CWnd
{
    DECLARE_DYNAMIC(CDialog)

    CDialog() = default;  // for Create
    // For DoModal. A name is borrowed until then. Without a parent: the main window's foremost one.
    explicit CDialog(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr);
    explicit CDialog(UINT nIDTemplate, CWnd* pParentWnd = nullptr);

    // Modeless. Without a parent: the main window. FALSE: there is no such template, no window, or
    // OnInitDialog threw; nothing is left, and PostNcDestroy has run.
    virtual BOOL Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr);
    virtual BOOL Create(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    using CWnd::Create;
    // The same from a template in memory, which is not needed afterwards.
    virtual BOOL CreateIndirect(LPCDLGTEMPLATE lpDialogTemplate, CWnd* pParentWnd = nullptr);
    // Before DoModal, of an object made without a template; it is borrowed until then.
    BOOL InitModalIndirect(LPCDLGTEMPLATE lpDialogTemplate, CWnd* pParentWnd = nullptr);
    // What EndDialog was called with; -1: it could not be made, or went without EndDialog, as when
    // its owner is destroyed. The owner is disabled meanwhile.
    virtual INT_PTR DoModal();
    // The modal dialog ends when the message in hand is dealt with. A modeless one is hidden.
    void EndDialog(int nResult);

    // Moves the focus as Tab and Shift+Tab do.
    void NextDlgCtrl() const { SendMessage(WM_NEXTDLGCTL); }
    void PrevDlgCtrl() const { SendMessage(WM_NEXTDLGCTL, 1); }
    void GotoDlgCtrl(CWnd* pWndCtrl);
    // The push button that Return presses.
    DWORD GetDefID() const { return static_cast<DWORD>(SendMessage(DM_GETDEFID)); }
    void SetDefID(UINT nID) { SendMessage(DM_SETDEFID, nID); }
    void MapDialogRect(LPRECT lpRect) const { ::MapDialogRect(m_hWnd, lpRect); }

    BOOL PreTranslateMessage(MSG* pMsg) override;

    // All controls are there; fills them (UpdateData). FALSE: the focus has been set. A dialog
    // whose controls cannot be filled does not open.
    virtual BOOL OnInitDialog();
    virtual void OnSetFont(CFont*) {}  // the template's, before the controls exist

protected:
    virtual void OnOK();  // takes the data over and ends with IDOK, or stays
    virtual void OnCancel();

    afx_msg LRESULT HandleInitDialog(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT HandleSetFont(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    friend class CFindReplaceDialog;

    BOOL CreateFromTemplate(HINSTANCE module, LPCDLGTEMPLATE layout, HWND owner);
    BOOL FinishCreation(const WindowCreation& creation, HWND handle);
    bool LeavesKeysToOuterDialog() const;
    void RunModalLoop();

    LPCTSTR templateName = nullptr;  // one of the two, for DoModal
    LPCDLGTEMPLATE modalTemplate = nullptr;
    CWnd* modalParent = nullptr;
    bool isModal = false;  // inside DoModal, and EndDialog has not been called
    bool isInitialized = false;  // OnInitDialog has returned
    int modalResult = -1;
};
