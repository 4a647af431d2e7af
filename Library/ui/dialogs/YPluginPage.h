// YPluginPage.h: a page of another module, inside a page of the tree.
#pragma once

#include "CommonUiApi.h"
#include "dialogs/YPropertyTreePageBase.h"

#include <afxwin.h>

// A child dialog whose template lies in the module of a plug-in. It has no place in the tree of its
// own: its dialog is the one of the page that embeds it. User-interface thread.
class COMMONUI_API YPluginPage : public CDialog, public YPropertyTreePageBase
{
    DECLARE_DYNAMIC(YPluginPage)

    explicit YPluginPage(HINSTANCE plugin);
    ~YPluginPage() override;

    BOOL Create(UINT id, CWnd* parent) override;
    BOOL Create(LPCTSTR name, CWnd* parent) override;
    using CDialog::Create;

    // YPropertyTreePageBase
    BOOL OnSetActive() override { return TRUE; }
    BOOL OnKillActive() override { return TRUE; }
    void OnShow() override {}
    void PreModal(CDialog* dialog) override;
    void Refresh() override {}
    void OnOK() override {}
    void OnCancel() override {}
    YUnicodeString GetStateMapName() const override { return YUnicodeString(); }

protected:
    IPropertyTreeDialog* InternalGetParentDialog() const override { return parentDialog; }

private:
    HINSTANCE module;
    IPropertyTreeDialog* parentDialog = nullptr;
};
