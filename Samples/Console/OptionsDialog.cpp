#include "OptionsDialog.h"

#include "ConsoleFrame.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "OthersDisabled.h"
#include "resource.h"

namespace {

constexpr unsigned withApplyButton = 1;

}  // namespace

OptionsDialog::OptionsDialog(ConsoleSettings& remembered, CWnd* parent)
    : YPropertyTreeDialog(LoadText(IDS_OPTIONS).c_str(), withApplyButton,
                          &remembered.GetPageStates(), &remembered.GetOptionsPlacement(), parent),
      owner(parent),
      settings(remembered),
      choices(remembered.GetChoices())
{
    if (settings.IsLineLimitLocked()) {
        view.Lock(settings.GetLineLimit());
    }
    recent.OfferForgetting(settings);
    view.AddPage(&colors);
    view.AddPage(&font);
    connection.AddPage(&tls);
    connection.AddPage(&certificate);
    connection.AddPage(&log);
    files.AddPage(&recent);
    for (YPropertyTreePage* const page :
         {static_cast<YPropertyTreePage*>(&view), static_cast<YPropertyTreePage*>(&find),
          static_cast<YPropertyTreePage*>(&connection), static_cast<YPropertyTreePage*>(&files)}) {
        page->SetExpanded(true);  // all is to be seen the first time
        AddPage(page);
    }
}

INT_PTR OptionsDialog::DoModal()
{
    const OthersDisabled others(owner);
    const INT_PTR result = YPropertyTreeDialog::DoModal();
    if (result == IDOK) {
        Apply();
    }
    return result;
}

void OptionsDialog::OnApply()
{
    if (GetCurrentPage() && GetCurrentPage()->OnKillActive()) {
        Apply();
        SetModified(false);
    }
}

void OptionsDialog::Apply()
{
    if (choices != settings.GetChoices()) {
        ChangeChoices(settings, choices);
    }
}
