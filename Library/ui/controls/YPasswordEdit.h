// YPasswordEdit.h: an edit for passwords that may hold control characters.
#pragma once

#include "CommonUiApi.h"

#include <afxwin.h>

// Ctrl with a letter puts that control character in, instead of being a shortcut; only Ctrl+V pastes
// and Backspace deletes. In a dialog Tab, Return and Escape stay the dialog's. The text is
// overwritten when the window is destroyed. User-interface thread.
class COMMONUI_API YPasswordEdit : public CEdit
{
    DECLARE_DYNAMIC(YPasswordEdit)

    YPasswordEdit() = default;
    ~YPasswordEdit() override;

protected:
    afx_msg void OnKeyDown(UINT key, UINT repetitions, UINT flags);
    afx_msg void OnChar(UINT character, UINT repetitions, UINT flags);
    afx_msg void OnDestroy();
    DECLARE_MESSAGE_MAP()
};
