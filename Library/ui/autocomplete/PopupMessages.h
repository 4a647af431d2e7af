// PopupMessages.h: what is posted to the pop-up, never sent: it runs when the caller is done.
#pragma once

#include <windows.h>

#include <commctrl.h>

inline constexpr UINT newListMessage = WM_USER;  // from any thread
inline constexpr UINT showMessage = WM_USER + 1;
inline constexpr UINT hideMessage = WM_USER + 2;

inline void SetItemSelected(HWND list, unsigned item, bool selected)
{
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED;
    state.state = selected ? LVIS_SELECTED : 0U;
    ::SendMessageW(list, LVM_SETITEMSTATE, item, reinterpret_cast<LPARAM>(&state));
}
