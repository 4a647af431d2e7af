// YToolbarEditBoxButton.h: a line edit in a toolbar.
#pragma once

#include "CommonUiApi.h"
#include "YLineEdit.h"

#include <BCGCBProInc.h>

#include <string>

// Hosts a YLineEdit without a button of its own. User-interface thread.
class COMMONUI_API YToolbarEditBoxButton : public CBCGPToolbarEditBoxButton
{
    DECLARE_SERIAL(YToolbarEditBoxButton)

    YToolbarEditBoxButton();
    // The width in pixels; the style is kept for copies, the line edit has its own.
    YToolbarEditBoxButton(unsigned id, int image, DWORD style, int width);
    ~YToolbarEditBoxButton() override;

    // Null: empty. Told to the edit, which shows it the next time that it is emptied.
    void SetPlaceholderText(const wchar_t* hint);
    bool IsTextEmpty() const;  // also where there is no edit

    YLineEdit* CreateEdit(CWnd* parent, const CRect& place) override;
    // The label of this button stays where the other one has none.
    void CopyFrom(const CBCGPToolbarButton& source) override;
    HBRUSH OnCtlColor(CDC* dc, UINT kind) override;

private:
    YLineEdit* GetLineEdit() const;  // null: in no toolbar

    std::wstring placeholder;
};
