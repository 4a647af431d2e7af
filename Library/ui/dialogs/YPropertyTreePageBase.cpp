#include "dialogs/YPropertyTreePageBase.h"

#include "dialogs/IPropertyTreeDialog.h"
#include "dialogs/YPropertyPageStateMap.h"

namespace {

YPropertyPageStateMap* GetMap(const YPropertyTreePageBase& page)
{
    const IPropertyTreeDialog* const dialog = page.GetParentDialog();
    return dialog ? dialog->GetPageStateMap() : nullptr;
}

}  // namespace

YPropertyTreePageBase::YPropertyTreePageBase() = default;

YPropertyTreePageBase::~YPropertyTreePageBase() = default;

void YPropertyTreePageBase::SavePageState()
{
    if (YPropertyPageStateMap* const map = GetMap(*this)) {
        (*map)[GetStateMapName()] = {expanded, selected};
    }
}

void YPropertyTreePageBase::SetPageState()
{
    YPropertyPageStateMap* const map = GetMap(*this);
    if (!map) {
        return;
    }
    const YUnicodeString name = GetStateMapName();
    if (const YPropertyPageState* const state = map->FindEntry(name)) {
        expanded = state->expanded;
        selected = state->selected;
    } else {
        map->CreateEntry(name, {expanded, selected});
    }
}
