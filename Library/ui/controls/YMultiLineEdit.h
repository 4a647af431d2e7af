// YMultiLineEdit.h: an edit that can keep pasted text on one line.
#pragma once

#include "CommonUiApi.h"

#include <BCGCBProInc.h>

// Where line breaks are refused, each CR LF of a pasted text becomes a space; a lone LF or CR, which
// no edit shows as a break, stays. What is typed is not looked at. User-interface thread.
class COMMONUI_API YMultiLineEdit : public CBCGPEdit
{
    DECLARE_DYNAMIC(YMultiLineEdit)

    YMultiLineEdit() = default;
    ~YMultiLineEdit() override;

    void SetAllowNewLines(bool allow) { allowNewLines = allow; }  // at first they are allowed

protected:
    afx_msg LRESULT OnPaste(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    bool allowNewLines = true;
};
