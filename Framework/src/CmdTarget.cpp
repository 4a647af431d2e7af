#include "MessageMap.h"

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

namespace {

// FALSE: the handler leaves it to others.
BOOL CallCommandHandler(CCmdTarget& target, const AFX_MSGMAP_ENTRY& entry, UINT id, void* extra)
{
    const auto* const notify = static_cast<const AFX_NOTIFY*>(extra);
    switch (entry.nSig) {
    case AfxSig_Command: (target.*RestoreSignature<AfxSig_Command>(entry.pfn))(); break;
    case AfxSig_CommandId: (target.*RestoreSignature<AfxSig_CommandId>(entry.pfn))(id); break;
    case AfxSig_Notify:
        (target.*RestoreSignature<AfxSig_Notify>(entry.pfn))(notify->pNMHDR, notify->pResult);
        break;
    case AfxSig_NotifyEx:
        return (target.*RestoreSignature<AfxSig_NotifyEx>(entry.pfn))(notify->pNMHDR,
                                                                      notify->pResult);
    default: ASSERT(false);
    }
    return TRUE;
}

}  // namespace

const AFX_MSGMAP* PASCAL CCmdTarget::GetThisMessageMap()
{
    static const AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, 0, AfxSig_End, nullptr}};
    static const AFX_MSGMAP map = {nullptr, &entries[0]};
    return &map;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const
{
    return GetThisMessageMap();
}

BOOL CCmdTarget::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo)
{
    const bool isUpdate = static_cast<UINT>(nCode) == CN_UPDATE_COMMAND_UI;
    // The high word is the message, where it is not WM_COMMAND.
    const UINT message = isUpdate || HIWORD(nCode) == 0 ? WM_COMMAND : HIWORD(nCode);
    const UINT code = isUpdate ? CN_UPDATE_COMMAND_UI : LOWORD(nCode);
    const AFX_MSGMAP_ENTRY* const entry = FindCommandEntry(GetMessageMap(), message, code, nID);
    if (entry == nullptr) {
        return FALSE;
    }
    if (pHandlerInfo != nullptr) {
        *pHandlerInfo = {this, entry->pfn};
        return TRUE;
    }
    if (!isUpdate) {
        return CallCommandHandler(*this, *entry, nID, pExtra);
    }
    CCmdUI& item = *static_cast<CCmdUI*>(pExtra);
    item.m_bContinueRouting = FALSE;
    (this->*RestoreSignature<AfxSig_CommandUi>(entry->pfn))(&item);
    return !item.m_bContinueRouting;
}

void CCmdTarget::OnFinalRelease()
{
    delete this;
}

DWORD CCmdTarget::InternalAddRef()
{
    return static_cast<DWORD>(::InterlockedIncrement(&references));
}

DWORD CCmdTarget::InternalRelease()
{
    const LONG left = ::InterlockedDecrement(&references);
    if (left == 0) {
        OnFinalRelease();
    }
    return static_cast<DWORD>(left);
}
