// BCGPHeaderCtrl.h: the captions of a list that shows how it is sorted. Part of BCGCBProInc.h.
#pragma once

#include "afxcmn.h"

class COMMONFRAMEWORK_API CBCGPHeaderCtrl : public CHeaderCtrl
{
    DECLARE_DYNAMIC(CBCGPHeaderCtrl)

    // Shows an arrow in the column's caption. bAdd: beside those of other columns; else theirs go.
    // A column that there is not: only they go.
    void SetSortColumn(int iColumn, BOOL bAscending = TRUE, BOOL bAdd = FALSE);
};
