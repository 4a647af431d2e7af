// YInput.h: what the system tells about wheel and keyboard.
#pragma once

#include "CommonUiApi.h"

// Lines to scroll for one notch of the wheel: the user's setting. WHEEL_PAGESCROLL (the largest
// value) means a page; 3, the system's default, when the setting cannot be read.
COMMONUI_API unsigned GetWheelScrollLines();

// Whether the key (VK_SHIFT, VK_MENU, ...) was down when the message being handled was queued.
COMMONUI_API bool IsKeyModifierPressed(int virtualKey);
