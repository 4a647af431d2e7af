#include "WindowMap.h"

#include <utility>

IMPLEMENT_DYNCREATE(CMenu, CObject)

CMenu::~CMenu()
{
    DestroyMenu();
}

CMenu* PASCAL CMenu::FromHandle(HMENU hMenu)
{
    return MenuMap::FromHandle(hMenu);
}

BOOL CMenu::LoadMenu(LPCTSTR lpszResourceName)
{
    const HINSTANCE module = ::AfxFindResourceHandle(lpszResourceName, RT_MENU);
    return Attach(::LoadMenuW(module, lpszResourceName));
}

BOOL CMenu::Attach(HMENU hMenu)
{
    ASSERT(m_hMenu == nullptr);
    if (hMenu == nullptr) {
        return FALSE;
    }
    MenuMap::SetPermanent(hMenu, this);
    m_hMenu = hMenu;
    return TRUE;
}

HMENU CMenu::Detach()
{
    MenuMap::RemoveHandle(m_hMenu, this);
    return std::exchange(m_hMenu, nullptr);
}

BOOL CMenu::DestroyMenu()
{
    return m_hMenu != nullptr && ::DestroyMenu(Detach());
}

int CMenu::GetMenuString(UINT nIDItem, CString& rString, UINT nFlags) const
{
    const int length = ::GetMenuStringW(m_hMenu, nIDItem, nullptr, 0, nFlags);
    const int copied =
        ::GetMenuStringW(m_hMenu, nIDItem, rString.GetBuffer(length + 1), length + 1, nFlags);
    rString.ReleaseBuffer(copied);
    return copied;
}

BOOL CMenu::TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, LPCRECT)
{
    return ::TrackPopupMenu(m_hMenu, nFlags, x, y, 0, pWnd->GetSafeHwnd(), nullptr);
}
