// Children that follow the size of their window.
#include "ScriptedDialog.h"

#include "support/ImportHook.h"

#include <afxlayout.h>

namespace {

// Handles WM_SIZE without a word to its base.
class SizingDialog : public ScriptedDialog
{
public:
    CSize lastSize;

protected:
    afx_msg void OnSize(UINT, int width, int height) { lastSize = CSize(width, height); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(SizingDialog, ScriptedDialog)
    ON_WM_SIZE()
END_MESSAGE_MAP()

using Layout = CMFCDynamicLayout;

class DynamicLayoutTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        ShowTop();
        ASSERT_TRUE(dialog.Create(IDD_SIZING, &top));
        EXPECT_EQ(dialog.GetDynamicLayout(), nullptr);
        ASSERT_TRUE(dialog.EnableDynamicLayout());
        Layout& layout = *dialog.GetDynamicLayout();
        EXPECT_TRUE(layout.IsEmpty());
        EXPECT_TRUE(layout.AddItem(IDC_NAME, Layout::MoveNone(),
                                   Layout::SizeHorizontalAndVertical(33, 100)));
        EXPECT_TRUE(
            layout.AddItem(IDC_FIRST, Layout::MoveHorizontal(33), Layout::SizeHorizontal(67)));
        EXPECT_TRUE(layout.AddItem(::GetDlgItem(dialog, IDOK), Layout::MoveHorizontalAndVertical(),
                                   Layout::SizeNone()));
        dialog.ShowWindow(SW_SHOW);
        PumpMessages();
    }
    void TearDown() override
    {
        dialog.DestroyWindow();
        WindowTest::TearDown();
    }

    CRect PlaceOf(int id)
    {
        CRect place;
        dialog.GetDlgItem(id)->GetWindowRect(&place);
        dialog.ScreenToClient(&place);
        return place;
    }
    void GrowBy(int width, int height)
    {
        CRect rect;
        dialog.GetWindowRect(&rect);
        dialog.SetWindowPos(nullptr, 0, 0, rect.Width() + width, rect.Height() + height,
                            SWP_NOMOVE | SWP_NOZORDER);
    }
    std::vector<CRect> Places() { return {PlaceOf(IDC_NAME), PlaceOf(IDC_FIRST), PlaceOf(IDOK)}; }

    SizingDialog dialog;
};

HDWP WINAPI FailToDefer(HDWP, HWND, HWND, int, int, int, int, UINT)
{
    return nullptr;
}

}  // namespace

TEST_F(DynamicLayoutTest, EachChildTakesItsShare)
{
    const std::vector<CRect> before = Places();
    GrowBy(100, 40);
    CRect name = before[0];
    name.right += 33;
    name.bottom += 40;
    CRect first = before[1];
    first.left += 33;
    first.right += 100;
    EXPECT_EQ(Places(), (std::vector{name, first, before[2] + CPoint(100, 40)}));
}

TEST_F(DynamicLayoutTest, SizingToAndFroMovesNothing)
{
    const std::vector<CRect> before = Places();
    for (int i = 1; i <= 40; ++i) {
        GrowBy(7, 3);
        GrowBy(-5, -2);
    }
    GrowBy(-80, -40);
    EXPECT_EQ(Places(), before);
    dialog.ShowWindow(SW_MINIMIZE);  // nothing is placed for an icon's size
    EXPECT_EQ(Places(), before);
}

TEST_F(DynamicLayoutTest, TheLeastSizeHoldsForTheUserAndForTheChildren)
{
    CRect client;
    dialog.GetClientRect(&client);
    dialog.GetDynamicLayout()->SetMinSize(client.Size());
    const std::vector<CRect> before = Places();
    GrowBy(-60, -30);  // as dragging the frame would
    CRect now;
    dialog.GetClientRect(&now);
    EXPECT_EQ(now.Size(), client.Size());
    dialog.ModifyStyle(WS_THICKFRAME, 0);  // a program may force a smaller one
    ::SetWindowPos(dialog, nullptr, 0, 0, 50, 50, SWP_NOMOVE | SWP_NOZORDER | SWP_NOSENDCHANGING);
    EXPECT_EQ(Places(), before);
}

TEST_F(DynamicLayoutTest, HiddenChildrenFollowAndDestroyedOnesAreForgotten)
{
    const CRect before = PlaceOf(IDOK);
    dialog.GetDlgItem(IDOK)->ShowWindow(SW_HIDE);
    const HWND name = ::GetDlgItem(dialog, IDC_NAME);
    ::DestroyWindow(name);
    GrowBy(10, 10);
    EXPECT_EQ(PlaceOf(IDOK), before + CPoint(10, 10));
    EXPECT_FALSE(dialog.GetDynamicLayout()->HasItem(name));
}

TEST_F(DynamicLayoutTest, AChildAddedToALargerWindowCountsFromThere)
{
    GrowBy(50, 0);
    CDialog page;
    ASSERT_TRUE(page.Create(IDD_PAGE, &dialog));
    ASSERT_TRUE(page.EnableDynamicLayout());
    EXPECT_TRUE(
        page.GetDynamicLayout()->AddItem(IDC_FIRST, Layout::MoveNone(), Layout::SizeHorizontal()));
    EXPECT_TRUE(
        dialog.GetDynamicLayout()->AddItem(page, Layout::MoveNone(), Layout::SizeHorizontal()));
    CRect before;
    page.GetDlgItem(IDC_FIRST)->GetWindowRect(&before);
    GrowBy(-20, 0);
    CRect after;
    page.GetDlgItem(IDC_FIRST)->GetWindowRect(&after);
    EXPECT_EQ(after.Width(), before.Width() - 20);  // the page has its own layout
}

TEST_F(DynamicLayoutTest, AFailingListOfMovesIsMadeUpFor)
{
    const CRect before = PlaceOf(IDOK);
    const ImportHook defer(L"CommonFramework.dll", "user32.dll", "DeferWindowPos", &FailToDefer);
    GrowBy(10, 10);
    EXPECT_EQ(PlaceOf(IDOK), before + CPoint(10, 10));
}
