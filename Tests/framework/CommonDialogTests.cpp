// The system's common dialogs, answered as a user would.
#include "WindowTest.h"

#include "support/ImportHook.h"

#include <afxdlgs.h>

#include <string_view>

namespace {

// Answers the next dialog of the thread by one of its buttons.
class Answer
{
public:
    explicit Answer(WORD button) : timer(::SetTimer(nullptr, 0, 50, &OnTimer)) { pressed = button; }
    ~Answer() { ::KillTimer(nullptr, timer); }
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        ::EnumThreadWindows(::GetCurrentThreadId(), &PressIn, 0);
    }

    static BOOL CALLBACK PressIn(HWND window, LPARAM)
    {
        wchar_t name[16] = {};
        ::GetClassNameW(window, name, 16);
        if (CString(name) == L"#32770" && ::IsWindowVisible(window)) {
            ::PostMessageW(window, WM_COMMAND, pressed, 0);
        }
        return TRUE;
    }

    static WORD pressed;
    UINT_PTR timer;
};

WORD Answer::pressed = IDCANCEL;

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

using CommonDialogTest = WindowTest;

}  // namespace

// The system's file dialogs lose a handle each time they are shown, so they are played here.
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

TEST_F(CommonDialogTest, CancelledDialogsSaySo)
{
    ShowTop();
    const ImportHook open(L"CommonFramework.dll", "comdlg32.dll", "GetOpenFileNameW", &PlayCancel);
    EXPECT_EQ(CFileDialog(TRUE, nullptr, nullptr, 0, nullptr, &top).DoModal(), IDCANCEL);
    const Answer cancel(IDCANCEL);
    EXPECT_EQ(CFontDialog(nullptr, CF_SCREENFONTS, nullptr, &top).DoModal(), IDCANCEL);
    EXPECT_TRUE(top.IsWindowEnabled());
}

TEST_F(CommonDialogTest, FontDialogBeginsWithTheGivenFont)
{
    ShowTop();
    LOGFONT font{};
    font.lfHeight = -16;
    font.lfWeight = FW_BOLD;
    ::lstrcpyW(font.lfFaceName, L"Courier New");
    CFontDialog dialog(&font, CF_SCREENFONTS, nullptr, &top);
    const Answer ok(IDOK);
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetFaceName(), L"Courier New");
    EXPECT_EQ(dialog.GetSize(), 120);
    EXPECT_EQ(dialog.GetWeight(), FW_BOLD);
}
