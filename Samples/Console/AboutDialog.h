// AboutDialog.h: what this program is.
#pragma once

#include <controls/YStaticURL.h>

class AboutDialog : public CDialog
{
public:
    explicit AboutDialog(CWnd* parent);

protected:
    void DoDataExchange(CDataExchange* exchange) override;

private:
    YStaticURL licence;
};
