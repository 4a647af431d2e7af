// YListButtons.h: the buttons that dialogs have beside a list.
#pragma once

#include "CommonUiApi.h"

class CWnd;

// Every button may be null. User-interface thread.

// Puts an arrow on each; large ones for large buttons.
COMMONUI_API void InitializeUpDownButtons(CWnd* up, CWnd* down, bool large);

// Each is enabled where the row selectionIndex (-1: none) of itemCount can go that way and enable is
// true. The focus leaves a button of the two that is to be disabled for the other one. Without an up
// button nothing happens.
COMMONUI_API void EnableUpDownButtons(CWnd* up, CWnd* down, bool enable, int selectionIndex,
                                      int itemCount);

COMMONUI_API void EnableButton(CWnd* button, bool enable);
