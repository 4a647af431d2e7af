// OptionsDialog.h: the program's options.
#pragma once

#include "ConsoleChoices.h"
#include "OptionPages.h"

#include <dialogs/YPropertyTreeDialog.h>

class ConsoleSettings;

// Works on a copy of the choices, which Apply and OK give to the settings and to every window.
// User-interface thread.
class OptionsDialog : public YPropertyTreeDialog
{
public:
    // The settings are borrowed.
    OptionsDialog(ConsoleSettings& remembered, CWnd* parent);

    INT_PTR DoModal() override;  // IDOK: what was chosen is in force

protected:
    void OnApply() override;

private:
    void Apply();

    CWnd* owner;
    ConsoleSettings& settings;
    ConsoleChoices choices;
    ViewPage view{choices};
    ColorsPage colors{choices};
    FontPage font{choices};
    SearchPage find{choices};
    ConnectionPage connection{choices};
    TlsPage tls{choices};
    CertificatePage certificate{choices, settings};
    LogPage log{choices};
    FilesPage files{choices};
    RecentPage recent{choices};
};
