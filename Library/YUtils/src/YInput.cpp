#include "YInput.h"

#include <windows.h>

unsigned GetWheelScrollLines()
{
    UINT lines = 0;
    if (!::SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0)) {
        return 3;
    }
    return lines;
}

bool IsKeyModifierPressed(int virtualKey)
{
    return ::GetKeyState(virtualKey) < 0;
}
