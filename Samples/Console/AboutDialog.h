// AboutDialog.h: what this program is, and under which licence.
#pragma once

#include <afxwin.h>
#include <controls/YStaticURL.h>

class AboutDialog : public CDialog
{
public:
    explicit AboutDialog(CWnd* parent);

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;

private:
    YStaticURL licence;
};
