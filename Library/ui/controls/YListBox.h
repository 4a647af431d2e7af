// YListBox.h: a list box made of a list view.
#pragma once

#include "CommonUiApi.h"

#include <BCGCBProInc.h>

// Lines in one column without a caption, one of which may be selected; the column is as wide as its
// longest line, so that the list scrolls sideways. Lines are numbered from 0. User-interface thread.
class COMMONUI_API YListBox : public CBCGPListCtrl
{
    DECLARE_DYNAMIC(YListBox)

    void Init();  // once, after creation

    int AddString(const wchar_t* text);  // the line, or -1
    void DeleteString(int line);
    // The next line after start (-1: from the first) that is the text, regardless of case; -1: none.
    int FindStringExact(int start, const wchar_t* text);
    int GetCount() const;
    int GetCurSel() const;  // -1: none
    void SetCurSel(int line);
    CString GetText(int line) const;

private:
    int widest = 0;  // pixels of text
};
