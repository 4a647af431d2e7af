// The property tree under real keys and clicks, inside DoModal.
#include "PropertyTreePages.h"
#include "TreeKit.h"
#include "support/LeakCheck.h"
#include "support/TestThread.h"

#include <YProfileWindowPlacement.h>
#include <dialogs/YPropertyPageStateMap.h>
#include <gtest/gtest.h>

#include <uxtheme.h>

#include <string>
#include <vector>

namespace {

class PropertyTreeTest : public testing::Test
{
protected:
    PropertyTreeTest()
    {
        first.AddPage(&child);
        child.AddPage(&grandchild);
    }

    // One opening; a new dialog each.
    INT_PTR Run(const std::function<void(TestTree&)>& script, unsigned style = 0)
    {
        TestTree dialog(L"Options", style, &map, placement, nullptr);
        for (TestPage* const page : {&first, &fields, &last}) {
            dialog.AddPage(page);
        }
        dialog.SetNewSession(newSession);
        dialog.script = [&] { script(dialog); };
        return dialog.DoModal();
    }

    YPropertyPageStateMap map;
    YProfileWindowPlacement* placement = nullptr;
    bool newSession = false;
    TestPage first{L"First\nThe first page"};
    TestPage child{L"Same\nA child"};
    TestPage grandchild{L"Deep"};
    TestPage fields{L"Fields\nSome fields", IDD_FIELDS};
    TestPage last{L"Last"};
    TestPage other{L"Same"};
    TestPage added{L"Added"};
};

TEST_F(PropertyTreeTest, ShowsTheFirstPageWithItsHeaderAndFollowsClicks)
{
    const INT_PTR result = Run([&](TestTree& dialog) {
        EXPECT_EQ(GetTextOf(dialog), L"Options");
        EXPECT_EQ(first.TakeLog(), L"set show ");
        EXPECT_EQ(dialog.GetCurrentPage(), &first);
        EXPECT_EQ(dialog.HeaderText(), L"  The first page");
        EXPECT_EQ(::GetFocus(), dialog.Tree().GetSafeHwnd());
        CTreeCtrl& tree = dialog.Tree();
        dialog.ClickItem(tree.GetNextSiblingItem(tree.GetNextSiblingItem(tree.GetRootItem())));
        EXPECT_EQ(first.TakeLog(), L"kill ");
        EXPECT_EQ(dialog.HeaderText(), L"  Last") << "the whole text";
        EXPECT_EQ(dialog.GetCurrentPage(), &last);
        EXPECT_FALSE(first.IsWindowVisible());
        EXPECT_TRUE(last.IsWindowVisible());
        EXPECT_TRUE(dialog.PageFillsFrame());
    });
    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(first.m_hWnd, nullptr);
}

TEST_F(PropertyTreeTest, APageThatRefusesCannotBeLeft)
{
    Run([&](TestTree& dialog) {
        CTreeCtrl& tree = dialog.Tree();
        const HTREEITEM fieldsItem = tree.GetNextSiblingItem(tree.GetRootItem());
        dialog.ClickItem(fieldsItem);
        fields.refuses = true;
        const HWND number = ::GetDlgItem(fields, IDC_NUMBER);
        ::SetFocus(number);
        dialog.ClickItem(tree.GetRootItem());
        PumpMessages();
        EXPECT_EQ(dialog.GetCurrentPage(), &fields);
        EXPECT_EQ(tree.GetSelectedItem(), fieldsItem);
        EXPECT_EQ(::GetFocus(), number) << "where it was before the click";
        first.TakeLog();
        TypeChord({VK_CONTROL, VK_TAB});
        EXPECT_EQ(dialog.GetCurrentPage(), &fields);
        EXPECT_EQ(last.TakeLog(), L"set ") << "asked all the same";
        TypeKey(VK_RETURN);
        EXPECT_TRUE(dialog.IsWindowVisible());
        dialog.ClickItem(fieldsItem);  // where the user is already
        TypeKey(VK_UP);
        EXPECT_EQ(dialog.GetCurrentPage(), &fields);
        EXPECT_EQ(::GetFocus(), tree.GetSafeHwnd()) << "a key has not taken the focus";
        ::SetFocus(number);
        fields.refuses = false;
        last.cannotBeEntered = true;
        TypeChord({VK_CONTROL, VK_TAB});
        EXPECT_EQ(dialog.GetCurrentPage(), &fields) << "the other one refuses";
        fields.TakeLog();
        TypeKey(VK_RETURN);
        EXPECT_EQ(fields.TakeLog(), L"kill ") << "only the current page decides";
    });
}

// A box stands over the dialog; or, where a page only waits, nothing does.
TEST_F(PropertyTreeTest, WhatArrivesWhileAPageRefusesChangesNothing)
{
    Run([&](TestTree& dialog) {
        CTreeCtrl& tree = dialog.Tree();
        const HWND treeWindow = tree;
        const HTREEITEM fieldsItem = tree.GetNextSiblingItem(tree.GetRootItem());
        const POINT lastPlace = dialog.GetPlace(tree.GetNextSiblingItem(fieldsItem));
        dialog.ClickItem(fieldsItem);
        ::SetFocus(::GetDlgItem(fields, IDC_NUMBER));
        fields.refuses = true;
        int asked = 0;
        fields.whenLeft = [&] {
            ++asked;
            const TestThread user([&] {
                const auto isThere = [] { return ::FindWindowW(nullptr, L"Refused") != nullptr; };
                ASSERT_TRUE(PumpUntil(isThere));
                ClickLeft(treeWindow, lastPlace);
                TypeChord({VK_CONTROL, VK_TAB});
                TypeKey(VK_RETURN);
                // Of the box's thread, which may be slow to take its key.
                EXPECT_TRUE(PumpUntil([&] { return !isThere(); }));
            });
            ::MessageBoxW(dialog, L"No", L"Refused", MB_OK);
        };
        dialog.ClickItem(tree.GetRootItem());
        PumpMessages();
        EXPECT_EQ(asked, 1);
        fields.whenLeft = [&] {
            if (++asked > 3) {
                return;
            }
            ClickLeft(treeWindow, lastPlace);
            TypeKey(VK_RETURN);
            TypeChord({VK_CONTROL, VK_TAB});
            dialog.SendMessage(WM_COMMAND, IDOK);
        };
        dialog.ClickItem(tree.GetRootItem());
        PumpMessages();
        EXPECT_EQ(asked, 2) << "not again while it is being asked";
        dialog.SendMessage(WM_COMMAND, IDOK);
        PumpMessages();
        EXPECT_EQ(asked, 3) << "nor by OK";
        EXPECT_EQ(dialog.GetCurrentPage(), &fields);
        EXPECT_EQ(tree.GetSelectedItem(), fieldsItem);
        EXPECT_EQ(::GetFocus(), ::GetDlgItem(fields, IDC_NUMBER));
        EXPECT_EQ(last.TakeLog(), L"");
        fields.whenLeft = nullptr;
        fields.refuses = false;
        dialog.ClickItem(tree.GetRootItem());
        EXPECT_EQ(dialog.GetCurrentPage(), &first) << "and it goes on";
    });
}

TEST_F(PropertyTreeTest, OkEndsWithTheCurrentPagesConsent)
{
    EXPECT_EQ(Run([&](TestTree& dialog) { dialog.SendMessage(WM_COMMAND, IDOK); }), IDOK);
}

// From the tree and from every control of a page; closed branches are passed over.
TEST_F(PropertyTreeTest, ControlTabGoesRoundTheVisiblePages)
{
    Run([&](TestTree& dialog) {
        std::wstring path;
        const auto go = [&](std::initializer_list<WORD> keys) {
            TypeChord(keys);
            path += dialog.SelectedLabel() + L" ";
        };
        go({VK_CONTROL, VK_TAB});
        for (const int control : {IDC_NUMBER, IDC_LIST, IDC_COMBO}) {
            ::SetFocus(::GetDlgItem(fields, control));
            go({VK_CONTROL, VK_NEXT});
            go({VK_CONTROL, VK_PRIOR});
        }
        ::SetFocus(::GetDlgItem(fields, IDC_COMBO));
        TypeKey(VK_F4);
        EXPECT_TRUE(::SendDlgItemMessageW(fields, IDC_COMBO, CB_GETDROPPEDSTATE, 0, 0));
        go({VK_CONTROL, VK_TAB});
        go({VK_CONTROL, VK_SHIFT, VK_TAB});
        EXPECT_FALSE(::SendDlgItemMessageW(fields, IDC_COMBO, CB_GETDROPPEDSTATE, 0, 0));
        go({VK_CONTROL, VK_TAB});
        go({VK_CONTROL, VK_TAB});
        go({VK_CONTROL, VK_SHIFT, VK_TAB});
        EXPECT_EQ(path, L"Fields Last Fields Last Fields Last Fields Last Fields Last First Last ");
        dialog.Tree().Expand(dialog.Tree().GetRootItem(), TVE_EXPAND);
        path.clear();
        go({VK_CONTROL, VK_TAB});
        go({VK_CONTROL, VK_TAB});
        EXPECT_EQ(path, L"First Same ");
    });
}

TEST_F(PropertyTreeTest, TheKeysOfABoxOverItAreTheBoxes)
{
    Run([&](TestTree& dialog) {
        CWnd box;
        ASSERT_TRUE(box.CreateEx(0, nullptr, L"Box", WS_POPUP | WS_VISIBLE, 50, 50, 99, 99, dialog,
                                 nullptr));
        ASSERT_TRUE(Activate(box));
        TypeChord({VK_CONTROL, VK_TAB});
        EXPECT_EQ(dialog.GetCurrentPage(), &first);
        box.DestroyWindow();
    });
}

// Tree, the page's controls, the buttons, and round again; back the same way. A page without a stop
// is passed over.
TEST_F(PropertyTreeTest, TabGoesThroughThePageInBothDirections)
{
    Run([&](TestTree&) {
        const auto walk = [&](std::initializer_list<WORD> keys) {
            std::vector<int> ids;
            do {
                TypeChord(keys);
                const int id = ::GetDlgCtrlID(::GetFocus());
                // A combo box's focus is in its edit.
                ids.push_back(id == 1001 && ::GetParent(::GetFocus()) != fields.m_hWnd ? IDC_COMBO
                                                                                       : id);
            } while (ids.back() != PROPERTY_TREE_TREE && ids.size() < 20);
            return ids;
        };
        EXPECT_EQ(walk({VK_TAB}), (std::vector<int>{IDOK, IDCANCEL, PROPERTY_TREE_TREE}));
        TypeChord({VK_CONTROL, VK_TAB});
        EXPECT_EQ(walk({VK_TAB}), (std::vector<int>{IDC_NUMBER, IDC_LIST, IDC_COMBO, IDOK, IDCANCEL,
                                                    PROPERTY_TREE_TREE}));
        EXPECT_EQ(walk({VK_SHIFT, VK_TAB}), (std::vector<int>{IDCANCEL, IDOK, IDC_COMBO, IDC_LIST,
                                                              IDC_NUMBER, PROPERTY_TREE_TREE}));
    });
}

TEST_F(PropertyTreeTest, ComesBackAsItWasLeftUnlessTheSessionIsNew)
{
    last.AddPage(&other);
    Run([&](TestTree& dialog) {
        CTreeCtrl& tree = dialog.Tree();
        tree.Expand(tree.GetRootItem(), TVE_EXPAND);
        dialog.ClickItem(tree.GetChildItem(tree.GetRootItem()));
        EXPECT_EQ(dialog.GetCurrentPage(), &child);
    });
    EXPECT_EQ(map[YUnicodeString(L"First")], (YPropertyPageState{true, false}));
    EXPECT_EQ(map[YUnicodeString(L"First~Same")], (YPropertyPageState{false, true}));
    EXPECT_EQ(map[YUnicodeString(L"Last~Same")], YPropertyPageState{}) << "another one";
    Run([&](TestTree& dialog) {
        EXPECT_EQ(dialog.GetCurrentPage(), &child);
        EXPECT_TRUE(dialog.Tree().GetItemState(dialog.Tree().GetRootItem(), TVIS_EXPANDED));
        dialog.CollapsePage(&first);
    });
    EXPECT_FALSE(map[YUnicodeString(L"First")].expanded);
    newSession = true;
    Run([&](TestTree& dialog) { EXPECT_EQ(dialog.GetCurrentPage(), &first); });

    // A page that is gone keeps its entry.
    first.RemovePage(&child);
    Run([](TestTree&) {});
    EXPECT_NE(map.FindEntry(YUnicodeString(L"First~Same")), nullptr);
}

// Of two pages that were selected when they were last seen the later one is; nobody is asked.
TEST_F(PropertyTreeTest, OpensWithoutAskingAPageThatNobodyHasSeen)
{
    map.CreateEntry(YUnicodeString(L"First~Same"), {false, true});
    map.CreateEntry(YUnicodeString(L"Last"), {false, true});
    child.refuses = true;
    Run([&](TestTree& dialog) {
        EXPECT_EQ(child.TakeLog(), L"set show ");
        EXPECT_EQ(dialog.GetCurrentPage(), &last);
    });
    EXPECT_FALSE(map[YUnicodeString(L"First~Same")].selected);
    map[YUnicodeString(L"First~Same")].selected = true;
    last.cannotBeEntered = true;
    Run([&](TestTree& dialog) { EXPECT_EQ(dialog.GetCurrentPage(), &child); });
    EXPECT_FALSE(map[YUnicodeString(L"Last")].selected);
    newSession = true;
    Run([&](TestTree& dialog) { EXPECT_EQ(dialog.GetCurrentPage(), &first); });
}

TEST_F(PropertyTreeTest, APageThatIsHiddenIsNotTheOneToComeBackTo)
{
    Run([&](TestTree& dialog) {
        CTreeCtrl& tree = dialog.Tree();
        tree.Expand(tree.GetChildItem(tree.GetRootItem()), TVE_EXPAND);
        dialog.HidePage(&first);
        dialog.ClickItem(tree.GetNextSiblingItem(tree.GetRootItem()));
        dialog.HidePage(&last);
    });
    EXPECT_TRUE(map[YUnicodeString(L"First~Same")].expanded) << "below a hidden one";
    Run([&](TestTree& dialog) { EXPECT_EQ(dialog.GetCurrentPage(), &fields); });
}

TEST_F(PropertyTreeTest, PagesComeAndGoWhileItIsOpen)
{
    Run([&](TestTree& dialog) {
        CTreeCtrl& tree = dialog.Tree();
        dialog.AddPage(&other);
        EXPECT_EQ(tree.GetCount(), 6u);
        other.AddPage(&added);
        EXPECT_EQ(tree.GetCount(), 7u);
        dialog.ClickItem(tree.GetNextSiblingItem(tree.GetRootItem()));
        ::SetFocus(::GetDlgItem(fields, IDC_NUMBER));
        fields.refuses = true;
        dialog.HidePage(&fields);  // with the focus in it, and without asking
        EXPECT_EQ(dialog.GetCurrentPage(), &first);
        EXPECT_EQ(::GetFocus(), tree.GetSafeHwnd());
        EXPECT_EQ(tree.GetCount(), 6u);
        dialog.ShowPage(&fields);
        EXPECT_EQ(tree.GetItemText(tree.GetNextSiblingItem(tree.GetRootItem())), L"Fields")
            << "in its place";
        EXPECT_EQ(dialog.GetCurrentPage(), &first);
        dialog.HidePage(&first);  // the root, with two below it
        EXPECT_EQ(dialog.GetCurrentPage(), &fields);
        EXPECT_EQ(tree.GetCount(), 4u);
        dialog.ShowPage(&first);
        EXPECT_EQ(tree.GetCount(), 6u + 1u);
        fields.refuses = false;
        tree.Expand(tree.GetRootItem(), TVE_EXPAND);
        tree.Expand(tree.GetChildItem(tree.GetRootItem()), TVE_EXPAND);
        dialog.ClickItem(tree.GetChildItem(tree.GetChildItem(tree.GetRootItem())));
        EXPECT_EQ(dialog.GetCurrentPage(), &grandchild);
        dialog.HidePage(&child);  // with the current page below it
        EXPECT_EQ(dialog.GetCurrentPage(), &first);
        EXPECT_FALSE(grandchild.IsWindowVisible());
        dialog.ShowPage(&child);
        EXPECT_EQ(tree.GetCount(), 7u);
        EXPECT_TRUE(tree.GetItemState(tree.GetRootItem(), TVIS_EXPANDED)) << "as it was";
        dialog.HidePage(&first);
        dialog.ShowPage(&child);  // whose parent is not there
        EXPECT_EQ(tree.GetCount(), 4u);
        dialog.ShowPage(&first);
        dialog.RemovePage(&added);
        EXPECT_EQ(added.m_hWnd, nullptr);
        for (TestPage* const page : {&first, &last, &other, &fields}) {
            dialog.RemovePage(page);
        }
        EXPECT_EQ(tree.GetCount(), 0u);
        EXPECT_EQ(dialog.GetCurrentPage(), nullptr);
        dialog.SendMessage(WM_COMMAND, IDOK);  // nothing happens
        EXPECT_TRUE(dialog.IsWindowVisible());
    });
}

TEST_F(PropertyTreeTest, HiddenPagesComeBackInTheirPlaces)
{
    TestPage second{L"Second"};
    TestPage third{L"Third"};
    first.AddPage(&second);
    first.AddPage(&third);
    struct Case
    {
        const char* name;
        std::vector<TestPage*> hidden;
        const wchar_t* rest;
        const TestPage* current;  // the first one at the beginning
        std::vector<TestPage*> shown;
    };
    const wchar_t* const all = L"First(Same(Deep) Second Third) Fields Last";
    const Case cases[] = {
        {"first", {&first}, L"Fields Last", &fields, {&first}},
        {"middle", {&fields}, L"First(Same(Deep) Second Third) Last", &first, {&fields}},
        {"last", {&last}, L"First(Same(Deep) Second Third) Fields", &first, {&last}},
        {"first child", {&child}, L"First(Second Third) Fields Last", &first, {&child}},
        {"middle child", {&second}, L"First(Same(Deep) Third) Fields Last", &first, {&second}},
        {"neighbours, in the other order",
         {&child, &second},
         L"First(Third) Fields Last",
         &first,
         {&second, &child}},
        {"below a hidden one", {&first, &child}, L"Fields Last", &fields, {&child, &first}},
        {"twice", {&last, &last}, L"First(Same(Deep) Second Third) Fields", &first, {&last, &last}},
        {"all", {&first, &fields, &last}, L"", nullptr, {&last, &fields, &first}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        newSession = true;  // each begins on the first page
        Run([&](TestTree& dialog) {
            for (TestPage* const page : c.hidden) {
                dialog.HidePage(page);
            }
            EXPECT_EQ(dialog.TreeText(), c.rest);
            EXPECT_EQ(dialog.GetCurrentPage(), c.current);
            for (TestPage* const page : c.shown) {
                dialog.ShowPage(page);
            }
            EXPECT_EQ(dialog.TreeText(), all);
            ASSERT_NE(dialog.GetCurrentPage(), nullptr);
            EXPECT_EQ(dialog.SelectedLabel(), dialog.GetCurrentPage()->GetLabel().c_str());
            EXPECT_TRUE(dialog.GetCurrentPage()->IsWindowVisible());
        });
    }
    Run([&](TestTree& dialog) {
        dialog.ClickItem(dialog.Tree().GetNextSiblingItem(dialog.Tree().GetRootItem()));
        dialog.HidePage(&last);
        dialog.ShowPage(&last);
        dialog.AddPage(&added);
        EXPECT_EQ(dialog.GetCurrentPage(), &fields) << "also in a new session";
    });
}

// The current page is gone, whatever the one says that comes in its place, and whoever is asked.
TEST_F(PropertyTreeTest, APageThatIsTakenOutIsLeft)
{
    const std::function<void(TestTree&)> ways[] = {
        [&](TestTree& dialog) { dialog.HidePage(&fields); },
        [&](TestTree& dialog) { dialog.RemovePage(&fields); },
        [&](TestTree& dialog) {
            fields.whenLeft = [&] { dialog.HidePage(&fields); };
            dialog.ClickItem(dialog.Tree().GetRootItem());
        },
        [&](TestTree& dialog) {
            first.whenEntered = [&] { dialog.HidePage(&fields); };
            dialog.ClickItem(dialog.Tree().GetRootItem());
        },
        [&](TestTree& dialog) {
            first.whenEntered = [&] { dialog.RemovePage(&fields); };
            dialog.RemovePage(&fields);
        },
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(&way - ways);
        Run([&](TestTree& dialog) {
            fields.refuses = false;
            dialog.ClickItem(dialog.Tree().GetNextSiblingItem(dialog.Tree().GetRootItem()));
            ASSERT_EQ(dialog.GetCurrentPage(), &fields);
            fields.refuses = true;
            first.cannotBeEntered = true;
            way(dialog);
            fields.whenLeft = nullptr;
            first.whenEntered = nullptr;
            first.cannotBeEntered = false;
            PumpMessages();
            EXPECT_EQ(dialog.TreeText(), L"First(Same(Deep)) Last");
            ASSERT_EQ(dialog.GetCurrentPage(), &first);
            EXPECT_EQ(dialog.SelectedLabel(), L"First");
            EXPECT_TRUE(first.IsWindowVisible());
            EXPECT_FALSE(fields.m_hWnd && fields.IsWindowVisible());
        });
    }
}

TEST_F(PropertyTreeTest, NobodyGoesToAPageThatIsTakenOutOnTheWay)
{
    Run([&](TestTree& dialog) {
        first.whenLeft = [&] { dialog.HidePage(&last); };
        TypeKey(VK_END);
        first.whenLeft = nullptr;
        EXPECT_EQ(last.TakeLog(), L"");
        EXPECT_EQ(dialog.GetCurrentPage(), &first);
        EXPECT_EQ(dialog.SelectedLabel(), L"First");
        TypeKey(VK_END);
        EXPECT_EQ(dialog.GetCurrentPage(), &fields);
    });
}

TEST_F(PropertyTreeTest, BranchesAreAddedThreeDeepWhileItIsOpen)
{
    Run([&](TestTree& dialog) {
        TestPage leaf{L"Leaf\nThe leaf"};
        dialog.AddPage(&other);
        other.AddPage(&added);
        added.AddPage(&leaf);
        EXPECT_EQ(dialog.TreeText(), L"First(Same(Deep)) Fields Last Same(Added(Leaf))");
        dialog.RemovePage(&other);
        EXPECT_EQ(leaf.m_hWnd, nullptr);
        dialog.AddPage(&other);  // all of them at once
        EXPECT_EQ(dialog.TreeText(), L"First(Same(Deep)) Fields Last Same(Added(Leaf))");
        EXPECT_EQ(leaf.GetStateMapName(), L"Same~Added~Leaf");
        for (const WORD key : {VK_END, VK_RIGHT, VK_RIGHT, VK_RIGHT, VK_RIGHT}) {
            TypeKey(key);
        }
        EXPECT_EQ(dialog.GetCurrentPage(), &leaf);
        EXPECT_EQ(dialog.HeaderText(), L"  The leaf");
        EXPECT_TRUE(dialog.PageFillsFrame());
        dialog.RemovePage(&other);  // with the current page two below it
        added.RemovePage(&leaf);
        EXPECT_EQ(dialog.GetCurrentPage(), &first);
    });
}

TEST_F(PropertyTreeTest, SizeAndPlaceAreRememberedAndThePageFollows)
{
    YProfileWindowPlacement remembered(L"Options");
    placement = &remembered;
    CRect left;
    CRect small;
    Run([&](TestTree& dialog) {
        dialog.GetWindowRect(&small);
        dialog.MoveWindow(60, 70, small.Width() + 120, small.Height() + 80);
        PumpMessages();
        dialog.GetWindowRect(&left);
        EXPECT_TRUE(dialog.PageFillsFrame());
        dialog.MoveWindow(60, 70, 10, 10);
        CRect least;
        dialog.GetWindowRect(&least);
        EXPECT_EQ(least.Size(), small.Size());
        dialog.MoveWindow(&left);
    });
    const auto whereItOpens = [&] {
        CRect now;
        Run([&](TestTree& dialog) {
            dialog.AwaitPlace();
            dialog.GetWindowRect(&now);
        });
        return now;
    };
    EXPECT_EQ(whereItOpens().Size(), left.Size());
    remembered.Set(YUnicodeString(L"1 -5000 -5000 -4400 -4500"));
    CRect both;
    const CRect now = whereItOpens();
    EXPECT_TRUE(both.IntersectRect(
        &now, CRect(0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN))));
    EXPECT_EQ(both, now) << "of a monitor that is gone";
    remembered.Set(YUnicodeString(L"1 100 100 150 140"));
    EXPECT_EQ(whereItOpens().Size(), small.Size()) << "of a smaller layout";
}

// Every size between the smallest and a large one, there and back: nothing drifts by rounding.
TEST_F(PropertyTreeTest, SizingLeavesEverythingWhereItBelongs)
{
    YProfileWindowPlacement remembered(L"Options");
    placement = &remembered;
    Run([&](TestTree& dialog) {
        const HWND controls[] = {first, dialog.Tree(), ::GetDlgItem(dialog, PROPERTY_TREE_HEADER),
                                 ::GetDlgItem(dialog, IDOK), ::GetDlgItem(dialog, IDCANCEL)};
        const auto places = [&] {
            std::vector<CRect> all;
            for (const HWND control : controls) {
                CRect place;
                ::GetWindowRect(control, &place);
                dialog.ScreenToClient(&place);
                all.push_back(place);
            }
            return all;
        };
        CRect small;
        dialog.GetWindowRect(&small);
        const std::vector<CRect> before = places();
        for (int grown = 1; grown < 100; grown += 7) {
            dialog.SetWindowPos(nullptr, 0, 0, small.Width() + grown * 3, small.Height() + grown,
                                SWP_NOMOVE | SWP_NOZORDER);
        }
        EXPECT_GT(places()[0].Width(), before[0].Width());
        for (int grown = 99; grown >= 0; grown -= 9) {
            dialog.SetWindowPos(nullptr, 0, 0, small.Width() + grown * 3, small.Height() + grown,
                                SWP_NOMOVE | SWP_NOZORDER);
        }
        EXPECT_EQ(places(), before);
    });
}

TEST_F(PropertyTreeTest, PagesFitWheneverTheyComeAndWhateverTheSize)
{
    YProfileWindowPlacement remembered(L"Options");
    remembered.Set(YUnicodeString(L"1 60 70 860 670"));
    placement = &remembered;
    Run([&](TestTree& dialog) {
        const auto everyPageFits = [&] {
            bool fits = true;
            for (HTREEITEM item = dialog.Tree().GetRootItem(); item;
                 item = dialog.Tree().GetNextSiblingItem(item)) {
                dialog.Tree().SelectItem(item);
                fits = fits && dialog.PageFillsFrame();
            }
            return fits;
        };
        EXPECT_TRUE(everyPageFits());
        dialog.HidePage(&fields);
        dialog.MoveWindow(60, 70, 10, 10);
        dialog.ShowPage(&fields);
        dialog.AddPage(&other);
        EXPECT_TRUE(everyPageFits());
        dialog.MoveWindow(60, 70, 900, 600);
        EXPECT_TRUE(everyPageFits());
    });
}

TEST_F(PropertyTreeTest, DrawsLinesWhereTheSystemHasNoTheme)
{
    Run([](TestTree& dialog) {
        const bool isThemed = ::IsThemeActive() && ::IsAppThemed();
        const DWORD style = dialog.Tree().GetStyle();
        EXPECT_EQ((style & TVS_HASLINES) == 0, isThemed);
        constexpr DWORD always =
            TVS_HASBUTTONS | TVS_LINESATROOT | TVS_DISABLEDRAGDROP | TVS_SHOWSELALWAYS;
        EXPECT_EQ(style & always, always);
    });
}

// Each opening goes to every page; the pages are the same ones all the time.
TEST_F(PropertyTreeTest, AThousandOpeningsLeaveNothing)
{
    YProfileWindowPlacement remembered(L"Options");
    placement = &remembered;
    const auto open = [&](unsigned style) {
        Run(
            [&](TestTree& dialog) {
                dialog.Tree().Expand(dialog.Tree().GetRootItem(), TVE_EXPAND);
                for (int page = 0; page < 4; ++page) {
                    dialog.Tree().SelectItem(
                        dialog.Tree().GetNextVisibleItem(dialog.Tree().GetSelectedItem()));
                }
            },
            style);
        CWinThread().OnIdle(1);  // the framework's temporary objects go
    };
    for (unsigned style = 0; style < 4; ++style) {
        open(style);
    }
    const LeakCheck check;
    for (unsigned i = 0; i < 1'000; ++i) {
        open(i % 4);
    }
}

TEST_F(PropertyTreeTest, AChangeEnablesApplyWhereThereIsOne)
{
    Run([](TestTree& dialog) { EXPECT_EQ(dialog.GetApplyButton(), nullptr); });
    for (const unsigned style : {1u, 2u}) {
        Run(
            [&](TestTree& dialog) {
                ASSERT_NE(dialog.GetApplyButton(), nullptr);
                EXPECT_FALSE(dialog.GetApplyButton()->IsWindowEnabled());
                first.OnChange();
                EXPECT_TRUE(dialog.GetApplyButton()->IsWindowEnabled());
                dialog.SendMessage(WM_COMMAND, PROPERTY_TREE_APPLY);
                EXPECT_EQ(dialog.applied, 1u);
                dialog.DisableOkButton();
                EXPECT_FALSE(dialog.GetDlgItem(IDOK)->IsWindowEnabled());
            },
            style);
    }
    Run([](TestTree& dialog) { EXPECT_EQ(dialog.GetApplyButton(), nullptr); }, 3);
}

}  // namespace
