// YHostName.h: host names that Windows keeps for itself.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <afxwin.h>

// Called from a dialog's DoDataExchange, behind the exchange of the control's text. While the
// dialog saves, tells the user of a name that is a device's (NUL, com1.example) and throws
// CUserException through dataExchange->Fail(), which leaves the focus on the control.
COMMONUI_API void YDDV_ValidateHostName(CDataExchange* dataExchange, int controlId,
                                        const YUnicodeString& hostName);
