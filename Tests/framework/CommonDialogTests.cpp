// The system's common dialogs: what they are asked, and what is made of the answer.
#include "WindowTest.h"

#include "support/ImportHook.h"

#include <afxdlgs.h>

#include <string_view>

namespace {

BOOL WINAPI PlaySave(OPENFILENAMEW* question)
{
    const std::wstring_view filter(question->lpstrFilter, 20);
    EXPECT_EQ(filter, std::wstring_view(L"Text\0*.txt\0All\0*.*\0\0", 20));
    EXPECT_STREQ(question->lpstrFile, L"proposed");
    EXPECT_STREQ(question->lpstrDefExt, L"txt");
    ::lstrcpynW(question->lpstrFile, L"C:\\folder.old\\two.dots.log",
                static_cast<int>(question->nMaxFile));
    return TRUE;
}

BOOL WINAPI PlayCancel(OPENFILENAMEW*)
{
    return FALSE;
}

// As if the user had agreed to what was proposed.
BOOL WINAPI PlayFont(CHOOSEFONTW* question)
{
    question->iPointSize = 120;
    return TRUE;
}

using CommonDialogTest = WindowTest;

}  // namespace

// The system's file dialogs lose a handle each time they are shown, so dialogs are played here.
TEST_F(CommonDialogTest, FileDialogAsksAsToldAndGivesThePartsOfTheAnswer)
{
    const ImportHook save(L"CommonFramework.dll", "comdlg32.dll", "GetSaveFileNameW", &PlaySave);
    CFileDialog dialog(FALSE, L"txt", L"proposed", 0, L"Text|*.txt|All|*.*||", &top);
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetPathName(), L"C:\\folder.old\\two.dots.log");
    EXPECT_EQ(dialog.GetFileName(), L"two.dots.log");
    EXPECT_EQ(dialog.GetFileTitle(), L"two.dots");
    EXPECT_EQ(dialog.GetFileExt(), L"log");
}

TEST_F(CommonDialogTest, CancelledDialogSaysSo)
{
    const ImportHook open(L"CommonFramework.dll", "comdlg32.dll", "GetOpenFileNameW", &PlayCancel);
    EXPECT_EQ(CFileDialog(TRUE, nullptr, nullptr, 0, nullptr, &top).DoModal(), IDCANCEL);
}

TEST_F(CommonDialogTest, FontDialogBeginsWithTheGivenFont)
{
    const ImportHook font(L"CommonFramework.dll", "comdlg32.dll", "ChooseFontW", &PlayFont);
    LOGFONT given{};
    given.lfWeight = FW_BOLD;
    ::lstrcpyW(given.lfFaceName, L"Courier New");
    CFontDialog dialog(&given, CF_SCREENFONTS, nullptr, &top);
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetFaceName(), L"Courier New");
    EXPECT_EQ(dialog.GetSize(), 120);
    EXPECT_EQ(dialog.GetWeight(), FW_BOLD);
}
