// YMessageBox.h: shows a message to the user.
#pragma once

#include "CommonUiApi.h"

#include <afxwin.h>

class IReportMessageParams;

// What message boxes are titled with: the application object's name, else the program file's.
// Valid for the life of the application object.
COMMONUI_API const wchar_t* YGetAppName();

// Both show the message's text and return the button (IDOK, ...), 0 when no box could be shown.
// User-interface thread; messages go on being handled while the box is open.

// Over a parent. Caption null: the application's name. Without an icon in the style, OK and
// OK/Cancel get the exclamation mark, the Yes/No kinds the question mark. The cursor is visible
// meanwhile.
COMMONUI_API int YMessageBox(CWnd* parent, const IReportMessageParams* message,
                             unsigned style = MB_OK, const wchar_t* caption = nullptr);

// Without a parent: the application's own box, which decides icon and caption; the style goes there
// as it is, and the caption is not used. A host that shows all its boxes in one way overrides
// CWinApp::DoMessageBox and gets this one, too.
COMMONUI_API int YMessageBox(const IReportMessageParams* message, unsigned style = MB_OK,
                             const wchar_t* caption = nullptr);
