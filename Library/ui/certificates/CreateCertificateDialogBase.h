// CreateCertificateDialogBase.h: what the certificate dialog does, whatever its template.
#pragma once

#include "CommonUiApi.h"
#include "YCreateCertificate.h"
#include "YUnicodeString.h"
#include "YUnknownPointer.h"
#include "dialogs/YDialog.h"

#include <cstdint>

class CertificateGeneration;
class YReportMessageParams;

// Asks for a subject, an end of validity, a key and a file, makes the certificate and writes it. The
// key is made on a thread: meanwhile the controls are disabled, a bar moves, and Cancel gives up at
// once, with nothing written. Ends with IDOK when all is written; no failure ends it.
// User-interface thread.
class COMMONUI_API CreateCertificateDialogBase : public YDialog
{
    DECLARE_DYNAMIC(CreateCertificateDialogBase)

    // flags: see YCertificateParameters. placement: borrowed, outlives the dialog; null: neither
    // sized nor remembered. The template has the controls of CertificateDialogIds.h.
    CreateCertificateDialogBase(const wchar_t* productName, SslLib library, std::uint8_t flags,
                                YProfileWindowPlacement* placement, CWnd* parent,
                                unsigned templateId, HINSTANCE module);
    ~CreateCertificateDialogBase() override;

    // As it is written, once the dialog has ended with IDOK.
    YUnicodeString GetPath() const { return writtenPath; }

    // "1024", "2048", "4096". False: there is no such index, text is as it was.
    static bool GetKeySizeDisplayString(unsigned index, YUnicodeString& text);

protected:
    BOOL OnInitDialog() override;
    void AddToDynamicLayout() override;
    void DoDataExchange(CDataExchange* exchange) override;
    void OnOK() override;
    void OnCancel() override;

    virtual void OnGenerate();
    virtual void OnBrowse();
    virtual void ShowExplanation(int controlId);  // of a field that has got the focus
    // The entries as they were exchanged. False: its user has been told, failedControl is the one
    // to correct.
    virtual bool SaveAndValidate(int& failedControl);
    // False: error says why the entries cannot be a subject.
    virtual bool InitializeCertificateName(YCertificateNameBase& name, YReportMessageParams& error);

    afx_msg void OnFieldFocus(UINT controlId);
    afx_msg void OnDateFocus(NMHDR* notification, LRESULT* result);
    afx_msg void OnGenerateClicked();
    afx_msg void OnBrowseClicked();
    afx_msg void OnTimer(UINT_PTR timer);
    afx_msg void OnDestroy();
    DECLARE_MESSAGE_MAP()

private:
    YCertificateNameBase CollectName() const;
    const char* GetAlgorithm() const;
    bool MayWrite();
    void StartGeneration();
    void FinishGeneration();
    void ShowGenerating(bool on);
    void Show(const YReportMessageParams& message, int controlId);

    CString commonName;
    CString organization;
    CString organizationalUnit;
    CString country;
    CString state;
    CString locality;
    CString email;
    CString path;
    SYSTEMTIME expiration{};  // local
    int keySizeIndex;
    SslLib sslLib;
    std::uint8_t creationFlags;
    YUnicodeString product;
    YUnicodeString writtenPath;
    YUnknownPointer<CertificateGeneration> generation;  // under way; null: none is
};
