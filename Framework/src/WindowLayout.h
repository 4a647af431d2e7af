// WindowLayout.h: moving the children of a window together.
#pragma once

#include "afxwin.h"

// Adds the move to the list, or makes it at once where there is no memory for lists.
void RepositionWindow(HDWP& moves, HWND window, const RECT& place);
