// YStringComboBox.h: a combo box whose lines stand for values.
#pragma once

#include "CommonUiApi.h"
#include "YString.h"
#include "YUnicodeString.h"

#include <afxwin.h>

#include <vector>

// What is shown is for the user, what is chosen for the program. Lines come by AddItem only, and go
// by DeleteString, ResetContent or with the window, values with them; an object whose dialog opens
// anew is filled anew. User-interface thread.
class COMMONUI_API YStringComboBox : public CComboBox
{
    DECLARE_DYNAMIC(YStringComboBox)

    YStringComboBox() = default;
    ~YStringComboBox() override;

    // A sorted combo box puts the text in its place. Texts and values may be equal to others.
    void AddItem(const YUnicodeString& text, const YString& value);
    void AddItem(unsigned messageId, const YString& value);  // without its line end

    // Throws std::out_of_range when no line is selected.
    YString GetCurrentValue() const;
    // Selects the first line with that very value; where there is none, the selection stays.
    void SetCurrentValue(YString value);

protected:
    afx_msg LRESULT OnDeleteString(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnResetContent(WPARAM wParam, LPARAM lParam);
    afx_msg void OnDestroy();
    DECLARE_MESSAGE_MAP()

private:
    std::vector<YString> values;  // one for each line
};
