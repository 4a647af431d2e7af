#include "dialogs/YPluginDialog.h"

IMPLEMENT_DYNAMIC(YPluginDialog, YDialog)

YPluginDialog::YPluginDialog(unsigned templateId, HINSTANCE module)
    : YDialog(templateId, module, nullptr)
{}

YPluginDialog::~YPluginDialog() = default;

bool YPluginDialog::SavePageData()
{
    return UpdateData(TRUE) != FALSE;
}
