// afxmnu_.h: menus. Part of afxwin.h.
#pragma once

#include "afx.h"

class CWnd;

// A menu. One that was created or loaded is destroyed with its object; one that FromHandle gave
// stays untouched and is good until idle time.
class COMMONFRAMEWORK_API CMenu : public CObject
{
    DECLARE_DYNCREATE(CMenu)

    CMenu() = default;
    ~CMenu() override;

    static CMenu* PASCAL FromHandle(HMENU hMenu);

    BOOL CreateMenu() { return Attach(::CreateMenu()); }
    BOOL CreatePopupMenu() { return Attach(::CreatePopupMenu()); }
    BOOL LoadMenu(LPCTSTR lpszResourceName);
    BOOL LoadMenu(UINT nIDResource) { return LoadMenu(MAKEINTRESOURCE(nIDResource)); }
    BOOL Attach(HMENU hMenu);
    HMENU Detach();
    BOOL DestroyMenu();

    HMENU GetSafeHmenu() const { return m_hMenu; }
    operator HMENU() const { return m_hMenu; }

    BOOL AppendMenu(UINT nFlags, UINT_PTR nIDNewItem = 0, LPCTSTR lpszNewItem = nullptr)
    {
        return ::AppendMenu(m_hMenu, nFlags, nIDNewItem, lpszNewItem);
    }
    BOOL DeleteMenu(UINT nPosition, UINT nFlags)
    {
        return ::DeleteMenu(m_hMenu, nPosition, nFlags);
    }
    BOOL ModifyMenu(UINT nPosition, UINT nFlags, UINT_PTR nIDNewItem = 0,
                    LPCTSTR lpszNewItem = nullptr)
    {
        return ::ModifyMenu(m_hMenu, nPosition, nFlags, nIDNewItem, lpszNewItem);
    }
    UINT CheckMenuItem(UINT nIDCheckItem, UINT nCheck)
    {
        return ::CheckMenuItem(m_hMenu, nIDCheckItem, nCheck);
    }
    BOOL CheckMenuRadioItem(UINT nIDFirst, UINT nIDLast, UINT nIDItem, UINT nFlags)
    {
        return ::CheckMenuRadioItem(m_hMenu, nIDFirst, nIDLast, nIDItem, nFlags);
    }
    UINT EnableMenuItem(UINT nIDEnableItem, UINT nEnable)
    {
        return ::EnableMenuItem(m_hMenu, nIDEnableItem, nEnable);
    }
    BOOL SetDefaultItem(UINT uItem, BOOL fByPos = FALSE)
    {
        return ::SetMenuDefaultItem(m_hMenu, uItem, fByPos);
    }

    int GetMenuItemCount() const { return ::GetMenuItemCount(m_hMenu); }
    UINT GetMenuItemID(int nPos) const { return ::GetMenuItemID(m_hMenu, nPos); }
    UINT GetMenuState(UINT nID, UINT nFlags) const { return ::GetMenuState(m_hMenu, nID, nFlags); }
    int GetMenuString(UINT nIDItem, CString& rString, UINT nFlags) const;
    CMenu* GetSubMenu(int nPos) const { return FromHandle(::GetSubMenu(m_hMenu, nPos)); }

    // The commands go to pWnd. With TPM_RETURNCMD: the chosen id.
    BOOL TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, LPCRECT lpRect = nullptr);

    HMENU m_hMenu = nullptr;
};
