// Every dialog of the program as its user meets it, in every wording.
#include "resource.h"
#include "support/DialogLayout.h"

#include <gtest/gtest.h>

TEST(ConsoleDialogs, ShowAllThatTheySay)
{
    const HMODULE program = ::GetModuleHandleW(nullptr);
    const std::vector<int> templates = FindDialogTemplates(program);
    EXPECT_GE(templates.size(), 10u);
    for (const int id : templates) {
        const bool isPage = id >= IDD_OPTIONS_VIEW && id <= IDD_OPTIONS_CERTIFICATE;
        for (const Wording wording : allWordings) {
            SCOPED_TRACE(std::to_string(id) + " in wording " +
                         std::to_string(static_cast<int>(wording)));
            TemplateDialog dialog(program, id, wording);
            EXPECT_EQ(FindLayoutFaults(dialog.Get()), std::vector<std::string>());
            // A page lies in a dialog with an Apply button.
            EXPECT_EQ(FindKeyboardFaults(dialog.Get(), isPage ? L"a" : L""),
                      std::vector<std::string>());
        }
    }
}
