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
