#include "dialogs/YPropertyTreeDialogBase.h"

IMPLEMENT_DYNAMIC(YPropertyTreeDialogBase, YDialog)

YPropertyTreeDialogBase::YPropertyTreeDialogBase(unsigned templateId, HINSTANCE module,
                                                 CWnd* parent, YProfileWindowPlacement* placement,
                                                 YPropertyPageStateMap* map)
    : YDialog(templateId, module, parent, placement), pageStateMap(map)
{}

YPropertyTreeDialogBase::~YPropertyTreeDialogBase() = default;

BOOL YPropertyTreeDialogBase::OnInitDialog()
{
    if (GetPlacement()) {
        return InitDynamicLayoutDialog();
    }
    ModifyStyle(WS_THICKFRAME, 0, SWP_FRAMECHANGED);
    return YDialog::OnInitDialog();
}

void YPropertyTreeDialogBase::OnOK()
{
    DoOnOK();
}
