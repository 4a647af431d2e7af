// PopupMessages.h: what is posted to the pop-up, never sent: it runs when the caller is done.
#pragma once

#include <windows.h>

inline constexpr UINT newListMessage = WM_USER;  // from any thread
inline constexpr UINT showMessage = WM_USER + 1;
inline constexpr UINT hideMessage = WM_USER + 2;
