// YTlsVersionsPluginBase.h: the choice of TLS versions without its list.
#pragma once

#include "CommonUiApi.h"
#include "dialogs/YPluginDialog.h"

class YProfileTlsVersions;

// Holds the value that is edited. User-interface thread.
class COMMONUI_API YTlsVersionsPluginBase : public YPluginDialog
{
    DECLARE_DYNAMIC(YTlsVersionsPluginBase)

    explicit YTlsVersionsPluginBase(YProfileTlsVersions* edited);  // borrowed, outlives this
    ~YTlsVersionsPluginBase() override;

protected:
    YProfileTlsVersions& GetValue() const { return *value; }

private:
    YProfileTlsVersions* value;
};
