#include "certificates/CreateCertificateDialog.h"

#include "YModule.h"
#include "certificates/CertificateDialogIds.h"

IMPLEMENT_DYNAMIC(CreateCertificateDialog, CreateCertificateDialogBase)

CreateCertificateDialog::CreateCertificateDialog(const wchar_t* productName, SslLib library,
                                                 std::uint8_t flags,
                                                 YProfileWindowPlacement* placement, CWnd* parent)
    : CreateCertificateDialogBase(productName, library, flags, placement, parent,
                                  CERTIFICATE_DIALOG, YGetLibraryModule())
{}

CreateCertificateDialog::~CreateCertificateDialog() = default;
