// What is remembered of pages, without a window.
#include <dialogs/IPropertyTreeDialog.h>
#include <dialogs/YPropertyPageStateMap.h>
#include <dialogs/YPropertyTreePageBase.h>
#include <gtest/gtest.h>

namespace {

TEST(YMapTest, KeepsOneValueForEachKeyInTheirOrder)
{
    YMap<int, int> map;
    int value = 7;
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_FALSE(map.Lookup(1, value));
    EXPECT_EQ(value, 7);
    map.Set(2, 20);
    map[1] = 10;
    int& stays = map[2];
    map.Set(3, 30);
    map.Set(2, 21);
    EXPECT_EQ(stays, 21);
    ASSERT_EQ(map.GetCount(), 3u);
    EXPECT_EQ(map.GetKey(0), 1);
    EXPECT_EQ(map.GetKey(2), 3);
    EXPECT_THROW(map.GetKey(3), YArrayOutOfRange);
    EXPECT_TRUE(map.RemoveKey(1));
    EXPECT_FALSE(map.RemoveKey(1));
    EXPECT_FALSE(map.IsPresent(1));
    map.RemoveAll();
    EXPECT_TRUE(map.IsEmpty());
}

// The test program's leak check counts the states.
TEST(YPropertyPageStateMapTest, OwnsItsStatesAndCopiesThem)
{
    const YUnicodeString a(L"A");
    YPropertyPageStateMap map;
    map.Set(a, new YPropertyPageState{true, false});
    YPropertyPageState& state = map[a];
    map.Set(a, &state);  // itself
    EXPECT_TRUE(map[a].expanded);
    map.CreateEntry(YUnicodeString(L"B"), {false, true});

    YPropertyPageStateMap copy(map);
    copy[a].expanded = false;
    EXPECT_TRUE(map[a].expanded);
    map = copy;
    EXPECT_FALSE(map[a].expanded);
    EXPECT_EQ(map.GetCount(), 2u);
    EXPECT_TRUE(map.FindEntry(YUnicodeString(L"B"))->selected);
    map.Set(a, new YPropertyPageState{true, true});  // the old one goes
    EXPECT_TRUE(map.RemoveKey(a));
    EXPECT_FALSE(map.RemoveKey(a));
    EXPECT_EQ(map.FindEntry(a), nullptr);
}

class MapDialog : public IPropertyTreeDialog
{
public:
    void SetModified(bool) override {}
    YPropertyPageStateMap* GetPageStateMap() const override { return map; }
    void OnChildAdded(YPropertyTreePage&) override {}
    void OnChildRemoved(YPropertyTreePage&) override {}

    YPropertyPageStateMap* map = nullptr;
};

class BarePage : public YPropertyTreePageBase
{
public:
    BOOL OnSetActive() override { return TRUE; }
    BOOL OnKillActive() override { return TRUE; }
    void OnShow() override {}
    void PreModal(CDialog*) override {}
    void Refresh() override {}
    void OnOK() override {}
    void OnCancel() override {}
    YUnicodeString GetStateMapName() const override { return YUnicodeString(L"Page"); }

    IPropertyTreeDialog* dialog = nullptr;

protected:
    IPropertyTreeDialog* InternalGetParentDialog() const override { return dialog; }
};

TEST(YPropertyTreePageBaseTest, TakesItsStateFromTheMapOrEntersIt)
{
    YPropertyPageStateMap map;
    MapDialog dialog;
    BarePage page;
    page.SetExpanded(true);
    page.SetPageState();  // no dialog
    page.dialog = &dialog;
    page.SavePageState();  // no map
    EXPECT_TRUE(page.IsExpanded());

    dialog.map = &map;
    page.SetPageState();
    EXPECT_EQ(*map.FindEntry(YUnicodeString(L"Page")), (YPropertyPageState{true, false}));
    map[YUnicodeString(L"Page")] = {false, true};
    page.SetPageState();
    EXPECT_FALSE(page.IsExpanded());
    EXPECT_TRUE(page.IsSelected());
    page.SetSelected(false);
    page.SavePageState();
    EXPECT_EQ(map[YUnicodeString(L"Page")], YPropertyPageState{});
}

}  // namespace
