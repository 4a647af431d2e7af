// CleanSensitiveDataEdit.h: leaves no password in an edit that goes.
#pragma once

#include "CommonUiApi.h"

#include <afxwin.h>

// Overwrites the text with asterisks, as many as there are characters, or 32 where there are none. On
// the way it overwrites what may stand in the edit's memory behind a short text, and what the user
// deleted last, as far as 32 characters or the text go. For WM_DESTROY; the parent hears of changes,
// as of any.
COMMONUI_API void CleanSensitiveDataEdit(CWnd* edit);
