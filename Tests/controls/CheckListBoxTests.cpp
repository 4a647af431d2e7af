// The check list as its user meets it: clicks, the scroll bar, pixels, a screen reader.
#include "CheckListKit.h"
#include "support/LeakCheck.h"

// Creation

TEST_F(CheckListTest, TakesThePlaceOfAControl)
{
    const HWND placeholder = *dialog.GetDlgItem(IDC_PLACE);
    CRect wanted;
    ::GetWindowRect(placeholder, &wanted);
    ASSERT_TRUE(list.Create(WS_VISIBLE | WS_BORDER, &dialog, IDC_PLACE, nullptr));
    EXPECT_FALSE(::IsWindow(placeholder));
    EXPECT_EQ(*dialog.GetDlgItem(IDC_PLACE), list);
    EXPECT_EQ(::GetWindow(list, GW_HWNDPREV), *dialog.GetDlgItem(IDC_ENCRYPT));
    EXPECT_EQ(::GetWindow(list, GW_HWNDNEXT), *dialog.GetDlgItem(IDC_AFTER));
    CRect place;
    list.GetWindowRect(&place);
    EXPECT_EQ(place.TopLeft(), wanted.TopLeft());
    EXPECT_EQ(place.Width(), wanted.Width());
    EXPECT_NE(list.GetExStyle() & WS_EX_CLIENTEDGE, 0u);
    const DWORD styles = WS_CHILD | WS_CLIPSIBLINGS | WS_VISIBLE | WS_BORDER;
    EXPECT_EQ(list.GetStyle() & (styles | WS_VSCROLL), styles) << "the bar is hidden";
    CString name;
    list.GetWindowText(name);
    EXPECT_STREQ(name, L"CheckList_Control");
}

TEST_F(CheckListTest, WithoutThatControlThereIsNone)
{
    EXPECT_FALSE(list.Create(WS_VISIBLE, &dialog, 4711, nullptr));
    EXPECT_EQ(list.GetSafeHwnd(), nullptr);
    EXPECT_EQ(list.AddItem(nullptr), 0) << "rows can be kept without a window";
    EXPECT_EQ(list.GetCount(), 1);
}

// Rows are counted by the height that was given; where the edges take the room of one, the window is
// lower by it.
TEST_F(CheckListTest, WholeRowsAreSeen)
{
    const struct
    {
        int height, fitted, rows;
    } cases[] = {{84, 84, 5},   {83, 68, 5}, {80, 68, 5}, {85, 84, 5}, {99, 84, 6},
                 {100, 100, 6}, {20, 20, 1}, {19, 4, 1},  {3, 0, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.height);
        YCheckListBox another;
        Close();
        Open(IDD_CHECK_LIST);
        CWnd* const placeholder = dialog.GetDlgItem(IDC_PLACE);
        placeholder->MoveWindow(10, 30, 200, c.height);
        ASSERT_TRUE(another.Create(WS_VISIBLE, &dialog, IDC_PLACE, nullptr));
        CRect place;
        another.GetWindowRect(&place);
        EXPECT_EQ(place.Height(), c.fitted);
        for (int row = 0; row < c.rows + 3; ++row) {
            EXPECT_EQ((another.GetStyle() & WS_VSCROLL) != 0, row > c.rows);
            another.AddItem(L"Row");
        }
        int least = -1;
        int most = -1;
        another.GetScrollRange(SB_VERT, &least, &most);
        EXPECT_EQ(least, 0);
        EXPECT_EQ(most, 3);
        for (const UINT code : {SB_PAGEDOWN, SB_PAGEUP, SB_BOTTOM, SB_LINEUP, SB_LINEDOWN}) {
            another.SendMessage(WM_VSCROLL, code);
            another.UpdateWindow();
        }
        EXPECT_EQ(another.GetScrollPos(SB_VERT), 3);
    }
}

TEST_F(CheckListTest, RowsAreAsHighAsTheTextOfTheDialog)
{
    Close();
    Open(IDD_LARGE_CHECK_LIST);
    CClientDC dc(&dialog);
    CFont* const before = dc.SelectObject(dialog.GetFont());
    TEXTMETRICW metrics{};
    dc.GetTextMetrics(&metrics);
    dc.SelectObject(before);
    ASSERT_GT(metrics.tmHeight, 16);
    rowHeight = metrics.tmHeight;
    Make(5 * rowHeight + 4);
    EXPECT_EQ(list.GetCheckWidth(), rowHeight - 2);
    CRect place;
    list.GetWindowRect(&place);
    list.AddCheckColumn(place.left + 100);
    columns.push_back(100 - 2);
    list.AddItem(L"A row with much too long a text for the place that is left over for it");
    EXPECT_TRUE(IsPainted(0, 0, 0));
    list.SetCheckState(0, 0, 1);
    EXPECT_TRUE(IsPainted(0, 0, DFCS_CHECKED));
}

// Boxes

TEST_F(CheckListTest, AClickIntoABoxTogglesIt)
{
    MakeWithRows(3);
    EXPECT_EQ(list.GetCheckColumnCount(), 2);
    EXPECT_TRUE(IsPainted(1, 0, 0));
    Click(1, 0);
    EXPECT_EQ(States(1), (std::vector<int>{1, 0}));
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(IsPainted(1, 0, DFCS_CHECKED));
    Click(1, 0);
    EXPECT_EQ(States(1), (std::vector<int>{0, 0}));
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(IsPainted(1, 0, 0));
    list.SetCheckState(1, 0, 7);
    EXPECT_EQ(list.GetCheckState(1, 0), 7);
    EXPECT_EQ(changes, 2) << "only of the user's";
    Click(1, 0);
    EXPECT_EQ(States(1), (std::vector<int>{0, 0}));
}

TEST_F(CheckListTest, AClickBesideTheBoxesDoesNothing)
{
    MakeWithRows(3);
    const int side = list.GetCheckWidth();
    const POINT points[] = {{columns[0] - 1, 5},
                            {columns[0] + side, 5},
                            {(columns[0] + columns[1]) / 2 + side, 5},
                            {5, 5},
                            {columns[0] + 5, side},
                            {columns[0] + 5, 3 * rowHeight + 5}};
    for (const POINT point : points) {
        ClickLeft(list, point);
    }
    list.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(columns[0] + 5, -5));
    EXPECT_EQ(changes, 0);
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(States(row), (std::vector<int>{0, 0}));
    }
    // The last pixels that belong to a box.
    ClickLeft(list, {columns[0], 0});
    ClickLeft(list, {columns[1] + side - 1, 2 * rowHeight + side - 1});
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(States(0), (std::vector<int>{1, 0}));
    EXPECT_EQ(States(2), (std::vector<int>{0, 1}));
}

TEST_F(CheckListTest, InRadioStyleARowHasOneCheckedBox)
{
    MakeWithRows(2);
    Click(0, 0);
    Click(1, 0);
    Click(0, 1);
    EXPECT_EQ(States(0), (std::vector<int>{0, 1}));
    EXPECT_EQ(States(1), (std::vector<int>{1, 0}));
    EXPECT_TRUE(IsPainted(0, 0, 0));
    EXPECT_TRUE(IsPainted(0, 1, DFCS_CHECKED)) << "still a check box";
    list.SetRadioStyle(false);
    Click(0, 0);
    EXPECT_EQ(States(0), (std::vector<int>{1, 1}));
    list.SetRadioStyle(true);
    list.SetCheckState(0, 0, 0);
    EXPECT_EQ(States(0), (std::vector<int>{0, 1})) << "a cleared box leaves the others alone";
}

TEST_F(CheckListTest, ReadOnlyItIsGreyAndDeaf)
{
    MakeWithRows(2);
    list.SetCheckState(0, 0, 1);
    list.SetReadOnly(true);
    EXPECT_TRUE(IsPainted(0, 0, DFCS_CHECKED | DFCS_INACTIVE));
    EXPECT_TRUE(IsPainted(0, 1, DFCS_INACTIVE));
    Click(0, 0);
    Click(0, 1);
    EXPECT_EQ(States(0), (std::vector<int>{1, 0}));
    EXPECT_EQ(changes, 0);
    list.SetReadOnly(false);
    EXPECT_TRUE(IsPainted(0, 0, DFCS_CHECKED));
    Click(0, 1);
    EXPECT_EQ(changes, 1);
}

TEST_F(CheckListTest, WhatIsNotThereThrows)
{
    using RowError = YArray<YCheckListBox::Item>::OutOfRange;
    using ColumnError = YArray<int>::OutOfRange;
    MakeWithRows(2);
    for (const int row : {-1, 2}) {
        EXPECT_THROW(list.GetCheckState(row, 0), RowError);
        EXPECT_THROW(list.SetCheckState(row, 0, 1), RowError);
    }
    list.SetCheckState(0, 0, 1);
    for (const int column : {-1, 2}) {
        EXPECT_THROW(list.GetCheckState(0, column), ColumnError);
        EXPECT_THROW(list.SetCheckState(0, column, 1), ColumnError);
    }
    EXPECT_EQ(States(0), (std::vector<int>{1, 0})) << "a refused change changes nothing";
    CRect place;
    list.GetWindowRect(&place);
    list.AddCheckColumn(place.left + 20);
    columns.push_back(20 - 2);
    EXPECT_EQ(list.AddItem(L"younger"), 2);
    EXPECT_EQ(list.GetCheckState(2, 2), 0);
    EXPECT_THROW(list.GetCheckState(1, 2), ColumnError);
    EXPECT_TRUE(IsPainted(2, 2, 0));
    Click(1, 2);
    EXPECT_EQ(changes, 0) << "an older row has no box there";
    Click(2, 2);
    EXPECT_EQ(list.GetCheckState(2, 2), 1);
}

TEST_F(CheckListTest, TheHostMayDestroyItInItsCall)
{
    MakeWithRows(1);
    atChange = [this] { list.DestroyWindow(); };
    Click(0, 0);
    EXPECT_EQ(list.GetSafeHwnd(), nullptr);
    EXPECT_EQ(list.GetCheckState(0, 0), 1) << "what was chosen is still known";
    list.SetCheckState(0, 1, 1);
    EXPECT_EQ(States(0), (std::vector<int>{0, 1}));
}

// Scrolling

TEST_F(CheckListTest, GoesWhereTheScrollCodeLeads)
{
    MakeWithRows(20);
    const struct
    {
        UINT code;
        int from, expected;
    } cases[] = {{SB_LINEUP, 0, 0},     {SB_LINEUP, 7, 6},     {SB_LINEDOWN, 14, 15},
                 {SB_LINEDOWN, 15, 15}, {SB_PAGEUP, 9, 5},     {SB_PAGEUP, 3, 0},
                 {SB_PAGEUP, 0, 0},     {SB_PAGEDOWN, 0, 4},   {SB_PAGEDOWN, 14, 18},
                 {SB_PAGEDOWN, 15, 15}, {SB_PAGEDOWN, 18, 18}, {SB_TOP, 9, 0},
                 {SB_BOTTOM, 3, 15},    {SB_ENDSCROLL, 3, 3}};
    for (const auto& c : cases) {
        list.SendMessage(WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, c.from));
        ASSERT_EQ(GetTopRow(), c.from);
        list.SendMessage(WM_VSCROLL, c.code);
        EXPECT_EQ(GetTopRow(), c.expected) << c.code << " from " << c.from;
        EXPECT_EQ(list.GetScrollPos(SB_VERT), std::min(c.expected, 15));
    }
    // Past the end there is nothing to click on.
    list.SendMessage(WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 18));
    Click(1, 0);
    Click(2, 0);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(list.GetCheckState(19, 0), 1);
    EXPECT_TRUE(IsPainted(1, 0, DFCS_CHECKED));
    EXPECT_EQ(CountInk(2, 0, GetWidth()), 0);
}

TEST_F(CheckListTest, APageThatIsMoreThanWhatIsLeftStopsAtTheEnd)
{
    MakeWithRows(7);
    list.SendMessage(WM_VSCROLL, SB_PAGEDOWN);
    EXPECT_EQ(GetTopRow(), 2);
}

TEST_F(CheckListTest, ScrollsByTheBarAndTogglesWhatIsSeen)
{
    MakeWithRows(20);
    SCROLLBARINFO bar{};
    bar.cbSize = sizeof bar;
    ASSERT_TRUE(::GetScrollBarInfo(list, OBJID_VSCROLL, &bar));
    const int middle = (bar.rcScrollBar.left + bar.rcScrollBar.right) / 2;
    CPoint arrow(middle, bar.rcScrollBar.bottom - 3);
    CPoint page(middle, bar.rcScrollBar.bottom - bar.dxyLineButton - 2);
    list.ScreenToClient(&arrow);
    list.ScreenToClient(&page);
    UseBar(arrow);
    EXPECT_EQ(GetTopRow(), 1);
    UseBar(page);
    EXPECT_EQ(GetTopRow(), 5);
    Click(2, 1);
    EXPECT_EQ(list.GetCheckState(7, 1), 1);
    EXPECT_TRUE(IsPainted(2, 1, DFCS_CHECKED));
    EXPECT_TRUE(IsPainted(1, 1, 0));
}

// The message carries 16 bits of the position; the bar knows the rest.
TEST_F(CheckListTest, TheThumbReachesEveryOfAHundredThousandRows)
{
    MakeWithRows(100'000);
    SCROLLBARINFO bar{};
    bar.cbSize = sizeof bar;
    ASSERT_TRUE(::GetScrollBarInfo(list, OBJID_VSCROLL, &bar));
    CPoint thumb((bar.rcScrollBar.left + bar.rcScrollBar.right) / 2,
                 bar.rcScrollBar.top + (bar.xyThumbTop + bar.xyThumbBottom) / 2);
    list.ScreenToClient(&thumb);
    const POINT end{thumb.x, thumb.y + bar.rcScrollBar.bottom - bar.rcScrollBar.top};
    UseBar(thumb, &end);
    EXPECT_GT(GetTopRow(), 65'535);
    EXPECT_EQ(GetTopRow(), list.GetScrollPos(SB_VERT));
}

// Painting

TEST_F(CheckListTest, TextIsNeverUnderABox)
{
    const std::wstring text(200, L'W');
    const struct
    {
        const char* where;
        std::vector<int> lefts;
        int from, to;  // where the text is
    } cases[] = {{"at the right", {200, 230}, 0, 200},
                 {"at the left", {0, 24}, 38, 250},
                 {"on both sides", {20, 230}, 34, 230},
                 {"none", {}, 0, 250},
                 {"not in order", {230, 150}, 0, 150}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.where);
        Close();
        Open(IDD_CHECK_LIST);
        dialog.GetDlgItem(IDC_PLACE)->MoveWindow(10, 30, 250, 84);
        YCheckListBox another;
        ASSERT_TRUE(another.Create(WS_VISIBLE, &dialog, IDC_PLACE, nullptr));
        CPoint corner(0, 0);
        another.ClientToScreen(&corner);
        for (const int left : c.lefts) {
            another.AddCheckColumn(corner.x + left);
        }
        another.AddItem(text.c_str());
        another.AddItem(L"");
        another.UpdateWindow();
        CClientDC dc(&another);
        CRect client;
        another.GetClientRect(&client);
        int first = client.right;
        int last = 0;
        for (int x = 0; x < client.right; ++x) {
            for (int y = 0; y < 16; ++y) {
                if (dc.GetPixel(x, y) != dc.GetPixel(x, y + 16)) {  // boxes are in both
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
            }
        }
        EXPECT_GE(first, c.from + 3) << "its begin is not under a box";
        EXPECT_LT(first, c.from + 12);
        EXPECT_LT(last, std::min(c.to, static_cast<int>(client.right)));
        EXPECT_GT(last, std::min(c.to, static_cast<int>(client.right)) - 30);
    }
}

namespace {

HBITMAP WINAPI NoBitmap(HDC, int, int)
{
    return nullptr;
}

}  // namespace

TEST_F(CheckListTest, PaintsWithoutRowsAndWithoutMemory)
{
    MakeWithRows(0);
    for (int row = 0; row < 5; ++row) {
        EXPECT_EQ(CountInk(row, 0, GetWidth()), 0);
    }
    AddRows(2);
    list.SetCheckState(1, 0, 1);
    const int ink = CountInk(1, 0, GetWidth());
    const ImportHook hook(L"CommonFramework.dll", "GDI32.dll", "CreateCompatibleBitmap", &NoBitmap);
    list.Invalidate();
    EXPECT_GT(ink, 0);
    EXPECT_EQ(CountInk(1, 0, GetWidth()), ink);
}

// Screen readers

TEST_F(CheckListTest, EveryBoxIsAPartForScreenReaders)
{
    MakeWithRows(20);
    list.SetCheckState(1, 1, 1);
    ScreenReader reader(list);
    EXPECT_EQ(reader.Role(), ROLE_SYSTEM_GROUPING);
    EXPECT_EQ(reader.Name(), L"");
    EXPECT_EQ(reader.ChildCount(), 40);
    EXPECT_EQ(reader.Role(4), ROLE_SYSTEM_CHECKBUTTON);
    EXPECT_EQ(reader.Name(3), L"Row 1, Sign");
    EXPECT_EQ(reader.Name(4), L"Row 1, Encrypt");
    EXPECT_EQ(reader.State(3), 0);
    EXPECT_EQ(reader.State(4), STATE_SYSTEM_CHECKED);
    EXPECT_EQ(reader.State(11), STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN);
    EXPECT_EQ(reader.DefaultAction(3), L"Check");
    EXPECT_EQ(reader.DefaultAction(4), L"Uncheck");
    CPoint middle(InBox(1, 1));
    list.ClientToScreen(&middle);
    EXPECT_TRUE(CRect(reader.Location(4)).PtInRect(middle));
    EXPECT_EQ(CRect(reader.Location(4)).Size(), CSize(14, 14));
    EXPECT_EQ(reader.HitTest(middle), 4);
    EXPECT_EQ(reader.HitTest(middle - CSize(60, 0)), CHILDID_SELF);
    EXPECT_EQ(reader.HitTest({1, 1}), -1);

    EXPECT_EQ(reader.DoDefaultAction(3), S_OK);
    EXPECT_EQ(States(1), (std::vector<int>{1, 0}));
    EXPECT_EQ(changes, 1);
    list.SetReadOnly(true);
    EXPECT_EQ(reader.State(3), STATE_SYSTEM_CHECKED | STATE_SYSTEM_UNAVAILABLE);
    EXPECT_EQ(reader.DefaultAction(3), L"");
    EXPECT_EQ(reader.DoDefaultAction(3), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(changes, 1);
    for (const long child : {-1L, 41L}) {
        EXPECT_EQ(reader.Role(child), -1);
        EXPECT_EQ(reader.Name(child), L"");
        EXPECT_EQ(reader.State(child), -1);
        EXPECT_NE(reader.DoDefaultAction(child), S_OK);
    }
    dialog.GetDlgItem(IDC_ENCRYPT)->ShowWindow(SW_HIDE);
    EXPECT_EQ(reader.Name(4), L"Row 1, 2") << "without a caption";
    list.SetReadOnly(false);
    atChange = [this] { list.DestroyWindow(); };
    EXPECT_EQ(reader.DoDefaultAction(3), S_OK);
    EXPECT_EQ(reader.DoDefaultAction(3), CO_E_OBJNOTCONNECTED);
}

namespace {

std::vector<long> told;

void WINAPI NoteEvent(DWORD event, HWND, LONG object, LONG child)
{
    EXPECT_EQ(event, static_cast<DWORD>(EVENT_OBJECT_STATECHANGE));
    EXPECT_EQ(object, OBJID_CLIENT);
    told.push_back(child);
}

}  // namespace

TEST_F(CheckListTest, TellsOfEachBoxThatHasChanged)
{
    MakeWithRows(20);
    list.SetCheckState(1, 0, 1);
    const ImportHook hook(L"CommonUi.dll", "USER32.dll", "NotifyWinEvent", &NoteEvent);
    told.clear();
    Click(1, 1);
    EXPECT_EQ(told, (std::vector<long>{3, 4}));
    list.SetCheckState(1, 1, 1);
    list.SetCheckState(15, 1, 1);
    EXPECT_EQ(told.size(), 2u) << "no change, not seen";
    told = {};
}

TEST_F(CheckListTest, AThousandRoundsLeaveNothingBehind)
{
    const auto round = [this] {
        YCheckListBox another;
        CWnd placeholder;
        placeholder.Create(L"STATIC", L"", WS_CHILD, CRect(10, 90, 200, 160), &dialog, 77);
        ASSERT_TRUE(another.Create(WS_VISIBLE, &dialog, 77, nullptr));
        another.AddCheckColumn(300);
        for (int row = 0; row < 6; ++row) {
            another.AddItem(L"Row");
        }
        another.SetCheckState(1, 0, 1);
        another.UpdateWindow();
        EXPECT_EQ(ScreenReader(another).Role(1), ROLE_SYSTEM_CHECKBUTTON);
    };
    round();
    CWinThread().OnIdle(1);
    const LeakCheck leaks;
    for (int count = 0; count < 1'000; ++count) {
        round();
    }
    CWinThread().OnIdle(1);
}
