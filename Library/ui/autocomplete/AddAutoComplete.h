// AddAutoComplete.h: the system's own completion of paths.
#pragma once

#include "CommonUiApi.h"

class CWnd;

// Gives an edit the completion of file-system paths that the system offers, of folders alone on
// request. On the edit's thread, which must have initialised COM; where the system cannot, the edit
// stays as it was. Not for an edit that has a YAutoComplete.
COMMONUI_API void AddAutoComplete(CWnd* edit, bool foldersOnly);
