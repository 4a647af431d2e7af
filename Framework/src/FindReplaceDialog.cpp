#include "WindowProcedure.h"
#include "afxdlgs.h"

#include <cstddef>

IMPLEMENT_DYNAMIC(CCommonDialog, CDialog)
IMPLEMENT_DYNAMIC(CFindReplaceDialog, CCommonDialog)

CFindReplaceDialog::CFindReplaceDialog() : CCommonDialog(nullptr)
{
    m_fr.lStructSize = sizeof(m_fr);
    m_fr.lpstrFindWhat = m_szFindWhat;
    m_fr.wFindWhatLen = static_cast<WORD>(std::size(m_szFindWhat));
}

BOOL CFindReplaceDialog::Create([[maybe_unused]] BOOL bFindDialogOnly, LPCTSTR lpszFindWhat,
                                LPCTSTR, DWORD dwFlags, CWnd* pParentWnd)
{
    ASSERT(bFindDialogOnly);
    CWnd* const owner = pParentWnd != nullptr ? pParentWnd : ::AfxGetMainWnd();
    m_fr.hwndOwner = owner != nullptr ? owner->GetSafeHwnd() : nullptr;
    m_fr.Flags |= dwFlags;
    if (lpszFindWhat != nullptr && lpszFindWhat != m_fr.lpstrFindWhat) {
        ::lstrcpynW(m_fr.lpstrFindWhat, lpszFindWhat, m_fr.wFindWhatLen);
    }
    // The box is the first window that the system makes for it. A hook procedure in m_fr, which
    // hosts may want for themselves, is not needed for that.
    const WindowCreation creation(*this);
    return FinishCreation(creation, creation.IsReady() ? ::FindTextW(&m_fr) : nullptr);
}

CFindReplaceDialog* PASCAL CFindReplaceDialog::GetNotifier(LPARAM lParam)
{
    // The class has virtual operations but no virtual base: its members stand at fixed places.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
    constexpr std::size_t offset = offsetof(CFindReplaceDialog, m_fr);
#pragma GCC diagnostic pop
    return reinterpret_cast<CFindReplaceDialog*>(lParam - static_cast<LPARAM>(offset));
}
