#include "controls/YControllingCheckBox.h"

#include "dialogs/YPropertyTreePage.h"

#include <utility>

IMPLEMENT_DYNAMIC(YControllingCheckBox, CButton)

BEGIN_MESSAGE_MAP(YControllingCheckBox, CButton)
    ON_CONTROL_REFLECT(BN_CLICKED, &YControllingCheckBox::OnClick)
END_MESSAGE_MAP()

YControllingCheckBox::~YControllingCheckBox() = default;

void YControllingCheckBox::Init(bool checked, CWnd* owner, YPropertyTreePage* notified,
                                std::vector<unsigned> controlled)
{
    SetCheck(checked ? BST_CHECKED : BST_UNCHECKED);
    dialog = owner;
    page = notified;
    controlIds = std::move(controlled);
    Update();
}

void YControllingCheckBox::Init(bool checked, YPropertyTreePage* owner,
                                std::vector<unsigned> controlled)
{
    Init(checked, owner, owner, std::move(controlled));
}

void YControllingCheckBox::Update()
{
    const BOOL isOn = IsWindowEnabled() && IsChecked();
    for (const unsigned id : controlIds) {
        if (CWnd* const control = dialog->GetDlgItem(static_cast<int>(id))) {
            control->EnableWindow(isOn);
        }
    }
}

void YControllingCheckBox::OnClick()
{
    Update();
    if (page) {
        page->OnChange();
    }
}
