// YCertificatePath.h: files of certificates, as dialogs ask for them.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <afxwin.h>

// User-interface thread.

// Lets the user choose the file of a certificate, which need not exist. path: in, what is proposed;
// out, what was chosen. False: cancelled, and path is as it was.
COMMONUI_API bool BrowseForCertificateFile(CWnd* parent, const wchar_t* title,
                                           YUnicodeString& path);

// What CFileDialog takes as its filter, in the user's language.
COMMONUI_API YUnicodeString GetCertificateFileFilterDescription();

// For a dialog that asks for a certificate that is there: no path is none; a path that names no file
// is refused, with a message.
COMMONUI_API void YDDV_ValidateCertificatePath(CDataExchange* exchange, const CString& path);

// The path as it is written: one whose extension is neither "pfx" nor "p12" gets ".pfx" behind it.
COMMONUI_API YUnicodeString YCompleteCertificatePath(const YUnicodeString& path);
