// YPropertyTreeDialogBase.h: a property tree without its tree.
#pragma once

#include "CommonUiApi.h"
#include "dialogs/IPropertyTreeDialog.h"
#include "dialogs/YDialog.h"

// What every such dialog remembers, and how it opens and closes. User-interface thread.
class COMMONUI_API YPropertyTreeDialogBase : public YDialog, public IPropertyTreeDialog
{
    DECLARE_DYNAMIC(YPropertyTreeDialogBase)

    // placement, map: borrowed, outlive the dialog; null: nothing is remembered. Without a
    // placement the dialog has the size of its template.
    YPropertyTreeDialogBase(unsigned templateId, HINSTANCE module, CWnd* parent,
                            YProfileWindowPlacement* placement, YPropertyPageStateMap* map);
    ~YPropertyTreeDialogBase() override;

    YPropertyPageStateMap* GetPageStateMap() const override { return pageStateMap; }

protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    virtual void DoOnOK() = 0;  // ends the dialog, or lets it be
    virtual void PreparePages() {}  // once, when the dialog opens

private:
    YPropertyPageStateMap* pageStateMap;
};
