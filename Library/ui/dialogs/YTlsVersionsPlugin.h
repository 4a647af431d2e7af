// YTlsVersionsPlugin.h: the choice of TLS versions, for a page of options.
#pragma once

#include "CommonUiApi.h"
#include "dialogs/YTlsVersionsPluginBase.h"
#include "dialogs/YToolTipCtrl.h"

#include <BCGCBProInc.h>

// A line with a box for each version. SavePageData, or the page's own exchange, writes the choice
// into the value; nothing checked is refused, with a message. Deletes itself with its window, that
// is with the page. User-interface thread.
class COMMONUI_API YTlsVersionsPlugin : public YTlsVersionsPluginBase
{
    DECLARE_DYNAMIC(YTlsVersionsPlugin)

    // In the place of a control of the page. value: borrowed, outlives the page. Null: failed.
    static YTlsVersionsPlugin* Create(CDialog* parent, int placeholderId,
                                      YProfileTlsVersions* value);
    using CDialog::Create;

    BOOL PreTranslateMessage(MSG* message) override;

protected:
    ~YTlsVersionsPlugin() override;

    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange* exchange) override;
    void PostNcDestroy() override { delete this; }

private:
    YTlsVersionsPlugin(int placeholderId, YProfileTlsVersions* value);

    void InitSize();
    void PopulateListBox();
    virtual void AddListItem(const wchar_t* text, bool checked, DWORD bit);
    DWORD GetCheckedBits() const;

    CBCGPCheckListBox list;
    YToolTipCtrl tooltip;
    int placeholder;
};
