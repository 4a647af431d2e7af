// YClipboard.h: puts text on the clipboard.
#pragma once

#include "CommonUiApi.h"

// memory: a movable global block of NUL-terminated UTF-16 text; it belongs to the function, which
// frees it when it fails. False: null, or no OLE data source could be made. User-interface thread.
// The text is handed out by this process: it must pump messages, and flush the clipboard at exit.
COMMONUI_API bool YCopyBufferToClipboard(void* memory);

// NUL-terminated. False: null, or no memory. An empty text puts an empty text on the clipboard.
COMMONUI_API bool YCopyTextToClipboard(const wchar_t* text);
