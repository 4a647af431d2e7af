// SystemErrorText.h: the system's own words for its errors.
#pragma once

#include "afx.h"

// What the system says of its error, in the user's language, without the line end that it appends,
// cut to the room. Asks for no memory. False: it knows no such error, or there is no room at all.
bool DescribeSystemError(DWORD error, LPTSTR text, UINT capacity);
