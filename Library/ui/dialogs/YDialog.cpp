#include "dialogs/YDialog.h"

#include "YProfileWindowPlacement.h"

#include <afxlayout.h>

IMPLEMENT_DYNAMIC(YDialog, CDialog)

YDialog::YDialog(unsigned templateId, HINSTANCE module, CWnd* parent,
                 YProfileWindowPlacement* placement)
    : dialogTemplate(templateId), resourceModule(module), windowPlacement(placement)
{
    if (const LPCDLGTEMPLATE layout = LoadTemplate()) {
        InitModalIndirect(layout, parent);
    }
}

YDialog::~YDialog() = default;

LPCDLGTEMPLATE YDialog::LoadTemplate() const
{
    const HRSRC resource =
        ::FindResourceW(resourceModule, MAKEINTRESOURCEW(dialogTemplate), RT_DIALOG);
    const HGLOBAL loaded = resource ? ::LoadResource(resourceModule, resource) : nullptr;
    return static_cast<LPCDLGTEMPLATE>(::LockResource(loaded));
}

INT_PTR YDialog::DoModal()
{
    return LoadTemplate() ? CDialog::DoModal() : -1;
}

BOOL YDialog::CreateChild(CWnd* parent)
{
    return CreateIndirect(LoadTemplate(), parent);
}

// The template's size is the smallest: below it controls would overlap.
BOOL YDialog::InitDynamicLayoutDialog()
{
    EnableDynamicLayout();
    AddToDynamicLayout();
    CRect client;
    GetClientRect(&client);
    GetDynamicLayout()->SetMinSize(client.Size());
    const BOOL setsFocus = CDialog::OnInitDialog();
    int show = SW_SHOWNORMAL;
    if (windowPlacement && windowPlacement->Restore(m_hWnd, show) && show == SW_SHOWMAXIMIZED) {
        ShowWindow(show);
    }
    return setsFocus;
}

void YDialog::SaveDynamicLayoutDialogPlacement()
{
    if (windowPlacement) {
        windowPlacement->Remember(m_hWnd);
    }
}
