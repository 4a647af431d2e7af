// BCGPGlobals.h: what the whole control library shares. Part of BCGCBProInc.h.
#pragma once

#include "afx.h"

// The user's choice of appearance. User-interface thread.
class COMMONFRAMEWORK_API BCGPGLOBAL_DATA
{
public:
    // The user wants dark applications; asked of the system at the first call, then kept.
    BOOL IsSystemAppDarkMode();
    // Asks the system again: after WM_SETTINGCHANGE and WM_SYSCOLORCHANGE.
    void UpdateSysColors();

private:
    bool isKnown = false;
    BOOL isDark = FALSE;
};

COMMONFRAMEWORK_API extern BCGPGLOBAL_DATA globalData;

// As ::MessageBox; without a caption the application's name.
COMMONFRAMEWORK_API int BCGPMessageBox(HWND hWnd, LPCTSTR lpText, LPCTSTR lpCaption = nullptr,
                                       UINT uType = MB_OK);
