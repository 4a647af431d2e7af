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

    // The program's choice: images in full colour, where the display has colours enough.
    BOOL m_bUseBuiltIn32BitIcons = TRUE;
    int m_nBitsPerPixel = 32;  // of the display, as UpdateSysColors has last found it

private:
    bool isKnown = false;
    BOOL isDark = FALSE;
};

COMMONFRAMEWORK_API extern BCGPGLOBAL_DATA globalData;

// As ::MessageBox; without a caption the application's name.
COMMONFRAMEWORK_API int BCGPMessageBox(HWND hWnd, LPCTSTR lpText, LPCTSTR lpCaption = nullptr,
                                       UINT uType = MB_OK);
