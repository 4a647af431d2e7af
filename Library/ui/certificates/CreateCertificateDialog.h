// CreateCertificateDialog.h: makes a certificate with its user.
#pragma once

#include "CommonUiApi.h"
#include "certificates/CreateCertificateDialogBase.h"

// Modal, by DoModal: IDOK, the certificate stands at GetPath, its request beside it. See the base.
class COMMONUI_API CreateCertificateDialog : public CreateCertificateDialogBase
{
    DECLARE_DYNAMIC(CreateCertificateDialog)

    CreateCertificateDialog(const wchar_t* productName, SslLib library, std::uint8_t flags,
                            YProfileWindowPlacement* placement, CWnd* parent);
    ~CreateCertificateDialog() override;
};
