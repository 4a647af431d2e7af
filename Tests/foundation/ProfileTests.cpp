#include "ISynchObject.h"
#include "YProfileData.h"
#include "YProfileStore.h"
#include "YProfileTlsVersions.h"
#include "YProfileWindowPlacement.h"

#include "support/ImportHook.h"
#include "support/MemoryProfile.h"

#include <afxwin.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

class CountingLock : public ISynchObject
{
public:
    void Lock() override { ++depth, ++uses; }
    void Unlock() override { --depth; }

    int depth = 0;
    int uses = 0;
};

class ProfileTest : public testing::Test
{
protected:
    CountingLock lock;
    MemoryProfile memory{&lock};
};

}  // namespace

TEST_F(ProfileTest, TheStoreAsksTheHostUnderItsLockAndGivesEverythingBack)
{
    {
        const YProfileStore store;
        ASSERT_TRUE(store.GetRoot().IsOpen());
        EXPECT_EQ(memory.GetLiveProfiles(), 1);
    }
    EXPECT_EQ(memory.GetLiveProfiles(), 0);
    EXPECT_EQ(lock.depth, 0);
    EXPECT_GT(lock.uses, 0);

    memory.FailCreation(ERROR_DISK_CORRUPT);
    EXPECT_EQ(YProfileStore().GetRoot().GetLastResult().GetMessageId(), DWORD{ERROR_DISK_CORRUPT});
    memory.Withdraw();
    const YProfileStore none;
    DWORD value = 7;
    EXPECT_FALSE(none.GetRoot().IsOpen() || none.GetRoot().ReadDWORD(L"a", value));
    EXPECT_EQ(value, 7u);
    EXPECT_FALSE(YProfileKey(none.GetRoot(), L"child").IsOpen());
    EXPECT_FALSE(YProfileKeyIterator(none.GetRoot()).IsValid());
}

TEST_F(ProfileTest, CopiesAWholeKeyAndTellsWhereItFailed)
{
    const YProfileStore store;
    const YProfileKey source(store.GetRoot(), L"source");
    const YProfileKey target(store.GetRoot(), L"target");
    const BYTE bytes[] = {0, 1, 2};
    source.WriteDWORD(L"number", 5);
    source.WriteString(L"text", YUnicodeString(L"a\0b", 3));
    source.WriteBinary(L"bytes", bytes, 3);
    source.WriteBinary(L"nothing", nullptr, 0);
    YProfileKey(source, L"child").WriteDWORD(L"not copied", 1);
    target.WriteString(L"number", L"another kind");
    target.WriteDWORD(L"stays", 9);
    ASSERT_TRUE(source.CopyValuesTo(target));

    DWORD number = 0;
    YUnicodeString text;
    std::vector<BYTE> block;
    EXPECT_TRUE(target.ReadDWORD(L"number", number) && number == 5);
    EXPECT_TRUE(target.ReadString(L"text", text) && text == YUnicodeString(L"a\0b", 3));
    EXPECT_TRUE(target.ReadBinary(L"bytes", block) && block == std::vector<BYTE>(bytes, bytes + 3));
    EXPECT_TRUE(target.ReadBinary(L"nothing", block) && block.empty());
    EXPECT_TRUE(target.ReadDWORD(L"stays", number) && number == 9);
    EXPECT_FALSE(YProfileKey(target, L"child", YProfileKey::openExisting).IsOpen());

    memory.FailWrites(ERROR_DISK_FULL);
    EXPECT_FALSE(source.CopyValuesTo(target));
    EXPECT_EQ(source.GetLastResult().GetMessageId(), DWORD{ERROR_DISK_FULL});
}

TEST_F(ProfileTest, AValueIsModifiedWhileItDiffersFromWhatIsStored)
{
    const YProfileStore store;
    const YProfileKey key(store.GetRoot(), L"key");
    YProfile2<YUnicodeString, YProfileSz> text(L"text", L"default");
    YProfile2<bool, YProfileDword> flag(L"flag", true);
    EXPECT_FALSE(text.Read(key) || flag.Read(key));
    EXPECT_TRUE(text.Get() == L"default" && flag.Get());

    text.Set(L"other");
    flag.Set(false);
    EXPECT_TRUE(text.IsModified() && flag.IsModified());
    text.Set(L"default");
    EXPECT_FALSE(text.IsModified()) << "a change taken back is none";
    text.Set(L"other");
    memory.FailWrites(ERROR_DISK_FULL);
    EXPECT_FALSE(text.Write(key) || !text.IsModified());
    memory.FailWrites(0);
    EXPECT_TRUE(text.Write(key) && flag.Write(key));
    EXPECT_FALSE(text.IsModified() || flag.IsModified());

    text.Set(L"third");
    text.Revert();
    EXPECT_TRUE(text.Get() == L"other" && !text.IsModified());
    YProfile2<bool, YProfileDword> again(L"flag", true);
    EXPECT_TRUE(again.Read(key) && !again.Get());
    key.WriteString(L"flag", L"of another kind");
    EXPECT_FALSE(again.Read(key) || !again.Get()) << "back to the default";
}

TEST_F(ProfileTest, TlsVersionsAreTextInTheStore)
{
    const YProfileStore store;
    const struct
    {
        const wchar_t* text;
        DWORD mask;
        const wchar_t* stored;
    } cases[] = {{L"1.2=1", 0x1E0, L"1.0=1,1.1=1,1.2=1,1.3=1"},
                 {L"1.0=0,1.1=0", 0x180, L"1.0=0,1.1=0,1.2=1,1.3=1"}};
    for (const auto& c : cases) {
        store.GetRoot().WriteString(L"tls", c.text);
        YProfileTlsVersions versions(L"tls");
        EXPECT_TRUE(versions.Read(store.GetRoot()));
        EXPECT_EQ(versions.GetMask(), c.mask) << c.text;
        EXPECT_TRUE(versions.Write(store.GetRoot()) && versions.Get() == c.stored) << c.text;
    }
    EXPECT_EQ(YProfileTlsVersions::Parse(L"1.0=0,1.1=0,1.2=0,1.3=0", 0xFFFF0000), 0xFFFF0000u);
    EXPECT_EQ(YProfileTlsVersions::Parse(L",=, 1.0=0,1.1=0=1,1.2,1.4=0", 0), 0x120u)
        << "names must match, and only the value 1 allows";
}

// Window placement

namespace {

BOOL WINAPI SmallMonitor(HMONITOR, MONITORINFO* info)
{
    info->rcMonitor = info->rcWork = RECT{0, 0, 800, 600};
    return TRUE;
}

class PlacementTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(window.CreateEx(0, ::AfxRegisterWndClass(0), L"", WS_OVERLAPPEDWINDOW, 10, 20,
                                    300, 200, nullptr, nullptr));
    }
    void TearDown() override { window.DestroyWindow(); }
    CRect GetNormalPlace()
    {
        WINDOWPLACEMENT now{};
        now.length = sizeof(now);
        ::GetWindowPlacement(window, &now);
        return now.rcNormalPosition;
    }

    CWnd window;
    YProfileWindowPlacement placement{L"Window"};
};

}  // namespace

// As a window would be that a user left like this.
WINDOWPLACEMENT left{};

BOOL WINAPI GetLeftPlacement(HWND, WINDOWPLACEMENT* answer)
{
    *answer = left;
    return TRUE;
}

TEST_F(PlacementTest, ComesBackInItsNormalPlaceOrMaximised)
{
    const CRect place(50, 60, 450, 360);
    const struct
    {
        UINT left, flags;
        int show;
    } cases[] = {
        {SW_SHOWNORMAL, 0, SW_SHOWNORMAL},
        {SW_SHOWMAXIMIZED, 0, SW_SHOWMAXIMIZED},
        {SW_SHOWMINIMIZED, 0, SW_SHOWNORMAL},
        {SW_SHOWMINIMIZED, WPF_RESTORETOMAXIMIZED, SW_SHOWMAXIMIZED},
    };
    for (const auto& c : cases) {
        left = {sizeof(left), c.flags, c.left, {}, {}, place};
        {
            const ImportHook hook(L"CommonUi.dll", "USER32.dll", "GetWindowPlacement",
                                  &GetLeftPlacement);
            placement.Remember(window);
        }
        int show = -1;
        ASSERT_TRUE(placement.Restore(window, show));
        EXPECT_EQ(show, c.show);
        EXPECT_FALSE(window.IsWindowVisible());
        EXPECT_EQ(GetNormalPlace(), place);
    }
}

TEST_F(PlacementTest, IsMovedIntoViewOnlyWhereItCannotBeTakenHoldOf)
{
    const ImportHook monitor(L"CommonUi.dll", "USER32.dll", "GetMonitorInfoW", &SmallMonitor);
    int show = -1;
    const std::pair<const wchar_t*, CRect> cases[] = {
        {L"1 -150 100 50 200", {-150, 100, 50, 200}},  // a part of it is enough
        {L"1 2000 100 2200 200", {600, 100, 800, 200}},
        {L"1 -170 100 30 200", {0, 100, 200, 200}},
        {L"1 900 900 2900 1900", {0, 0, 800, 600}}};  // larger than the monitor
    for (const auto& [text, place] : cases) {
        placement.Set(text);
        ASSERT_TRUE(placement.Restore(window, show)) << text;
        EXPECT_EQ(GetNormalPlace(), place) << text;
    }
    const CRect before = GetNormalPlace();
    for (const wchar_t* damaged : {L"", L"1", L"1 2 3 4", L"1 5 5 5 9", L"1 9 9 1 1", L"a b c d e",
                                   L"1 0 0 99999999999 9", L"1 0 0 100 100 7"}) {
        placement.Set(damaged);
        show = 77;
        EXPECT_FALSE(placement.Restore(window, show)) << damaged;
        EXPECT_EQ(show, 77);
    }
    EXPECT_EQ(GetNormalPlace(), before);
}
