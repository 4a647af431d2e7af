// YDialog.h: a dialog of the library, which its user may size and which remembers its place.
#pragma once

#include "CommonUiApi.h"

#include <afxwin.h>

class YProfileWindowPlacement;

// Made from a template of a module, whatever the program's resources are at that moment.
// User-interface thread.
class COMMONUI_API YDialog : public CDialog
{
    DECLARE_DYNAMIC(YDialog)

    // placement: borrowed, outlives the dialog; null: neither sized nor remembered.
    YDialog(unsigned templateId, HINSTANCE module, CWnd* parent,
            YProfileWindowPlacement* placement = nullptr);
    ~YDialog() override;

    INT_PTR DoModal() override;  // -1 also where the module has no such template
    BOOL CreateChild(CWnd* parent);  // modeless, of a template with WS_CHILD; FALSE: failed

protected:
    // In the place of CDialog::OnInitDialog: the controls take part in the layout (see
    // AddToDynamicLayout), size and place are as they were left.
    BOOL InitDynamicLayoutDialog();
    virtual void AddToDynamicLayout() {}  // the layout is there
    void SaveDynamicLayoutDialogPlacement();  // while there is a window

    YProfileWindowPlacement* GetPlacement() const { return windowPlacement; }

private:
    LPCDLGTEMPLATE LoadTemplate() const;

    unsigned dialogTemplate;
    HINSTANCE resourceModule;
    YProfileWindowPlacement* windowPlacement;
};
