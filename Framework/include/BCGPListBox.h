// BCGPListBox.h: lists of lines. Part of BCGCBProInc.h.
#pragma once

#include "afxwin.h"

// The framework's list of lines with boxes, in the control library's look.
class COMMONFRAMEWORK_API CBCGPCheckListBox : public CCheckListBox
{
    DECLARE_DYNAMIC(CBCGPCheckListBox)
};
