#include "afxwin.h"

void CCmdUI::Enable(BOOL bOn)
{
    m_bEnableChanged = TRUE;
    if (m_pMenu != nullptr) {
        if (m_pSubMenu == nullptr) {  // an item that opens a menu never goes grey
            m_pMenu->EnableMenuItem(m_nIndex, MF_BYPOSITION | (bOn ? MF_ENABLED : MF_GRAYED));
        }
    } else if (m_pOther != nullptr) {
        m_pOther->EnableWindow(bOn);
    }
}

void CCmdUI::SetCheck(int nCheck)
{
    if (m_pMenu != nullptr) {
        if (m_pSubMenu == nullptr) {
            m_pMenu->CheckMenuItem(m_nIndex,
                                   MF_BYPOSITION | (nCheck != 0 ? MF_CHECKED : MF_UNCHECKED));
        }
    } else if (m_pOther != nullptr) {
        m_pOther->SendMessage(BM_SETCHECK, static_cast<WPARAM>(nCheck));
    }
}

void CCmdUI::SetRadio(BOOL bOn)
{
    if (m_pMenu != nullptr && m_pSubMenu == nullptr && bOn) {
        m_pMenu->CheckMenuRadioItem(m_nIndex, m_nIndex, m_nIndex, MF_BYPOSITION);
    } else {
        SetCheck(bOn ? 1 : 0);
    }
}

void CCmdUI::SetText(LPCTSTR lpszText)
{
    if (m_pMenu != nullptr) {
        if (m_pSubMenu == nullptr) {
            // The state goes with the old text: only what the item can show is kept.
            const UINT state = m_pMenu->GetMenuState(m_nIndex, MF_BYPOSITION) &
                               ~(MF_BITMAP | MF_OWNERDRAW | MF_SEPARATOR);
            m_pMenu->ModifyMenu(m_nIndex, MF_BYPOSITION | MF_STRING | state, m_nID, lpszText);
        }
    } else if (m_pOther != nullptr) {
        m_pOther->SetWindowText(lpszText);
    }
}

BOOL CCmdUI::DoUpdate(CCmdTarget* pTarget, BOOL bDisableIfNoHndler)
{
    if (m_nID == 0 || LOWORD(m_nID) == 0xFFFF) {
        return TRUE;  // separators and static texts
    }
    m_bEnableChanged = FALSE;
    const BOOL handled =
        pTarget->OnCmdMsg(m_nID, static_cast<int>(CN_UPDATE_COMMAND_UI), this, nullptr);
    if (bDisableIfNoHndler && !m_bEnableChanged) {
        AFX_CMDHANDLERINFO handler{};
        Enable(pTarget->OnCmdMsg(m_nID, CN_COMMAND, this, &handler));
    }
    return handled;
}
