// YControllingCheckBox.h: a check box that enables other controls.
#pragma once

#include "CommonUiApi.h"

#include <afxwin.h>

#include <vector>

class YPropertyTreePage;

// For a box of a dialog that checks itself (BS_AUTOCHECKBOX). The controls are enabled while the box
// is enabled and checked. A click goes to the page, not to the parent's ON_BN_CLICKED.
// User-interface thread.
class COMMONUI_API YControllingCheckBox : public CButton
{
    DECLARE_DYNAMIC(YControllingCheckBox)

    YControllingCheckBox() = default;
    ~YControllingCheckBox() override;

    // dialog: has the controls of these ids; page: hears of clicks, may be null. Both borrowed.
    void Init(bool checked, CWnd* dialog, YPropertyTreePage* page,
              std::vector<unsigned> controlIds);
    // The page has the controls.
    void Init(bool checked, YPropertyTreePage* page, std::vector<unsigned> controlIds);

    bool IsChecked() const { return GetCheck() == BST_CHECKED; }
    // After the box was checked, enabled or disabled by the program.
    void Update();

    afx_msg void OnClick();

protected:
    DECLARE_MESSAGE_MAP()

private:
    CWnd* dialog = nullptr;
    YPropertyTreePage* page = nullptr;
    std::vector<unsigned> controlIds;
};
