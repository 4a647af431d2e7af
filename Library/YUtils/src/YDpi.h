// YDpi.h: lengths at the resolution of a device.
#pragma once

#include "CommonUiApi.h"

class CDC;

// A horizontal length given in pixels at 96 DPI, in pixels of the device. A positive length stays
// at least 1, so that thin lines do not vanish.
COMMONUI_API int AdjustForDpiX(CDC* dc, int value);
