// YPluginDialog.h: a small dialog that a page places inside itself.
#pragma once

#include "CommonUiApi.h"
#include "dialogs/IUpdateData.h"
#include "dialogs/YDialog.h"

class IHostnameChanged;

// A child dialog with entries of its own, which the page that embeds it saves. User-interface thread.
class COMMONUI_API YPluginDialog : public YDialog, public IUpdateData
{
    DECLARE_DYNAMIC(YPluginDialog)

    YPluginDialog(unsigned templateId, HINSTANCE module);
    ~YPluginDialog() override;

    virtual BOOL OnSetActive() { return TRUE; }
    virtual BOOL OnKillActive() { return TRUE; }
    bool SavePageData() override;

    // sink: borrowed, hears of the host name that is typed here; null: nobody.
    void SetHostnameChangedSink(IHostnameChanged* sink) { hostnameChanged = sink; }

protected:
    IHostnameChanged* GetHostnameChangedSink() const { return hostnameChanged; }
    void OnOK() override {}  // of the page's dialog, not of ours
    void OnCancel() override {}

private:
    IHostnameChanged* hostnameChanged = nullptr;
};
