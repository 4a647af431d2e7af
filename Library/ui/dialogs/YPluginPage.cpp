#include "dialogs/YPluginPage.h"

#include "dialogs/IPropertyTreeDialog.h"
#include "dialogs/YModuleResourceHandle.h"

IMPLEMENT_DYNAMIC(YPluginPage, CDialog)

YPluginPage::YPluginPage(HINSTANCE plugin) : module(plugin) {}

YPluginPage::~YPluginPage() = default;

BOOL YPluginPage::Create(UINT id, CWnd* parent)
{
    return Create(MAKEINTRESOURCE(id), parent);
}

BOOL YPluginPage::Create(LPCTSTR name, CWnd* parent)
{
    const YModuleResourceHandle resources(module);
    return CDialog::Create(name, parent);
}

void YPluginPage::PreModal(CDialog* dialog)
{
    parentDialog = dynamic_cast<IPropertyTreeDialog*>(dialog);
}
