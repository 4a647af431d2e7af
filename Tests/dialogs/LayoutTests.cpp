// Every dialog of the library as its user meets it, in every wording.
#include "PropertyTreePages.h"
#include "support/DialogLayout.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Sentences = std::vector<std::string>;

bool Mentions(const Sentences& sentences, const char* what)
{
    return std::any_of(sentences.begin(), sentences.end(), [what](const std::string& sentence) {
        return sentence.find(what) != std::string::npos;
    });
}

}  // namespace

// Without this the tests below might find nothing because they look at nothing.
TEST(DialogLayout, FindsWhatIsWrong)
{
    TemplateDialog faulty(::GetModuleHandleW(nullptr), IDD_FAULTY, Wording::English);
    const Sentences faults = FindLayoutFaults(faulty.Get());
    EXPECT_EQ(faults.size(), 4u);
    EXPECT_TRUE(Mentions(faults, "\"A text that is too long for its place\" is clipped"));
    EXPECT_TRUE(Mentions(faults, "control 11 \"&Too narrow for all this\" is clipped"));
    EXPECT_TRUE(Mentions(faults, "lies over"));
    EXPECT_TRUE(Mentions(faults, "control 14 \"Out\" reaches out"));
    EXPECT_TRUE(Mentions(FindKeyboardFaults(faulty.Get()), "control 13"));
    EXPECT_TRUE(Mentions(FindKeyboardFaults(faulty.Get(), L"o"), "control 12"));
    const auto addLine = [&](const wchar_t* line) {
        ::SendDlgItemMessageW(faulty.Get(), 15, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
    };
    addLine(L"It fits");
    EXPECT_EQ(FindLayoutFaults(faulty.Get()).size(), faults.size());
    addLine(L"A line that is too long for its box");
    EXPECT_TRUE(Mentions(FindLayoutFaults(faulty.Get()), "control 15 \"\" clips its line 1"));
    TemplateDialog longer(::GetModuleHandleW(nullptr), IDD_FAULTY, Wording::Longer);
    EXPECT_GT(FindLayoutFaults(longer.Get()).size(), 4u) << "a text that just fitted";
}

TEST(DialogLayout, TheLibrarysDialogsShowAllThatTheySay)
{
    const HMODULE library = ::GetModuleHandleW(L"CommonUi.dll");
    const std::vector<int> templates = FindDialogTemplates(library);
    EXPECT_GE(templates.size(), 5u);
    for (const int id : templates) {
        for (const Wording wording : allWordings) {
            SCOPED_TRACE(std::to_string(id) + " in wording " +
                         std::to_string(static_cast<int>(wording)));
            TemplateDialog dialog(library, id, wording);
            EXPECT_EQ(FindLayoutFaults(dialog.Get()), Sentences());
            EXPECT_EQ(FindKeyboardFaults(dialog.Get()), Sentences());
        }
    }
}
