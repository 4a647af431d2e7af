#include "BCGPGlobals.h"

#include "BCGPRegistry.h"
#include "afxwin.h"

BCGPGLOBAL_DATA globalData;

BOOL BCGPGLOBAL_DATA::IsSystemAppDarkMode()
{
    if (!isKnown) {
        UpdateSysColors();
    }
    return isDark;
}

void BCGPGLOBAL_DATA::UpdateSysColors()
{
    CBCGPRegistrySP store;
    CBCGPRegistry& registry = store.Create(FALSE, TRUE);
    DWORD light = 1;
    isDark = registry.Open(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize") &&
             registry.Read(L"AppsUseLightTheme", light) && light == 0;
    isKnown = true;
    const CClientDC screen(nullptr);
    m_nBitsPerPixel = screen.GetDeviceCaps(BITSPIXEL);
}

int BCGPMessageBox(HWND hWnd, LPCTSTR lpText, LPCTSTR lpCaption, UINT uType)
{
    const CWinApp* const application = ::AfxGetApp();
    if (lpCaption == nullptr && application != nullptr) {
        lpCaption = application->m_pszAppName;
    }
    return ::MessageBoxW(hWnd, lpText, lpCaption, uType);
}
