// The control library's settings among the host's own.
#include "settings/YSettingsStore.h"

#include "YProfileStore.h"
#include "foundation/ScratchRegistry.h"
#include "support/AllocationWatch.h"
#include "support/LeakCheck.h"
#include "support/MemoryProfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr wchar_t personalize[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
constexpr wchar_t barPath[] = L"Software\\Orlith\\Workspace\\Bar";

// Text, a number, and as many numbers as it says: what a damaged block can lie about.
class Layout : public CObject
{
public:
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring()) {
            ar << title;
            ar.WriteCount(widths.size());
        } else {
            ar >> title;
            widths.resize(ar.ReadCount());
        }
        for (int& width : widths) {
            ar.IsStoring() ? ar << width : ar >> width;
        }
        if (meanwhile) {
            meanwhile();
        }
    }

    CString title;
    std::vector<int> widths;
    std::function<void()> meanwhile;  // what else a class of the host's does
};

class SettingsStoreTest : public testing::Test
{
protected:
    SettingsStoreTest()
    {
        YSettingsStore::SetAppName(L"BRNK");
        YSettingsStore::m_iToolBarsToLoad = 0;
        YSettingsStore::m_dwLoadedToolBarVersion = 0;
    }
    ~SettingsStoreTest() override
    {
        YSettingsStore::CleanUp();
        EXPECT_EQ(host.GetLiveProfiles(), 0);
        YSettingsStore::SetAppName(L"");
        YSettingsStore::SetAppConfigPath(L"");
    }

    // As the host itself sees a key below its root.
    static YProfileKey HostKey(const wchar_t* name)
    {
        return YProfileKey(YProfileStore().GetRoot(), name);
    }
    static YSettingsStore& Opened(YSettingsStore& store)
    {
        EXPECT_TRUE(store.CreateKey(barPath));
        return store;
    }

    MemoryProfile host;
};

// All kinds at once: what a test does with one it does with the others.
struct AllKinds
{
    int number = -7;
    DWORD dword = 0x80000000;
    CString text = L"w\u00F6rld";
    CRect rect = {1, -2, 3, 4};
    std::string block = {'a', '\0', 'b'};
    Layout layout;

    AllKinds() { layout.widths = {10, 20}; }

    unsigned WriteTo(CBCGPRegistry& store)  // how many succeeded
    {
        return store.Write(L"int", number) + store.Write(L"dword", dword) +
               store.Write(L"text", static_cast<LPCTSTR>(text)) + store.Write(L"rect", rect) +
               store.Write(L"block", reinterpret_cast<BYTE*>(block.data()), block.size()) +
               store.Write(L"object", &layout);
    }
    unsigned ReadFrom(CBCGPRegistry& store)
    {
        BYTE* bytes = nullptr;
        UINT count = 0;
        CObject* object = &layout;
        const unsigned others = store.Read(L"int", number) + store.Read(L"dword", dword) +
                                store.Read(L"text", text) + store.Read(L"rect", rect) +
                                store.Read(L"object", object);
        if (!store.Read(L"block", &bytes, &count)) {
            EXPECT_TRUE(bytes == nullptr && count == 0);
            return others;
        }
        block.assign(bytes, bytes + count);
        delete[] bytes;
        return others + 1;
    }
    bool operator==(const AllKinds& other) const
    {
        return number == other.number && dword == other.dword && text == other.text &&
               rect == other.rect && block == other.block && layout.widths == other.layout.widths;
    }
};

struct OtherKinds : AllKinds
{
    OtherKinds()
    {
        number = 1;
        dword = 2;
        text = L"other";
        rect = CRect(5, 6, 7, 8);
        block = "other";
        layout.widths = {3};
    }
};

}  // namespace

TEST_F(SettingsStoreTest, KeepsEveryKindWhereEarlierReleasesDid)
{
    ASSERT_TRUE(CBCGPRegistrySP::SetRuntimeClass(RUNTIME_CLASS(YSettingsStore)));
    {
        CBCGPRegistrySP holder;
        CBCGPRegistry& store = holder.Create(FALSE, FALSE);
        ASSERT_TRUE(store.CreateKey(barPath));
        EXPECT_FALSE(store.CreateKey(barPath));  // an object is for one section
        EXPECT_EQ(AllKinds().WriteTo(store), 6);
    }
    CBCGPRegistrySP holder;
    CBCGPRegistry& store = holder.Create(FALSE, TRUE);
    ASSERT_TRUE(store.Open(L"Elsewhere\\Bar"));  // the last part alone counts
    OtherKinds back;
    EXPECT_EQ(back.ReadFrom(store), 6);
    EXPECT_TRUE(back == AllKinds());
    EXPECT_TRUE(CBCGPRegistrySP::SetRuntimeClass(nullptr));

    const YProfileKey key = HostKey(L"BRNKMenuToolbarV3");
    DWORD number = 0;
    YUnicodeString text;
    std::vector<BYTE> bytes;
    EXPECT_TRUE(key.ReadDWORD(L"Bar-int", number) && number == static_cast<DWORD>(-7));
    EXPECT_TRUE(key.ReadString(L"Bar-rect", text) && text == L"4, 3, -2, 1");
    EXPECT_TRUE(key.ReadBinary(L"Bar-object", bytes));
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
              std::string("\xFF\xFE\xFF\0\x02\0\x0A\0\0\0\x14\0\0\0", 14));
    EXPECT_EQ(key.GetValueNames().size(), 6U);
}

TEST_F(SettingsStoreTest, LeavesOutputsAloneWhereNothingFits)
{
    YSettingsStore store;
    OtherKinds kinds;
    EXPECT_EQ(kinds.ReadFrom(store), 0U);  // nothing is open
    EXPECT_EQ(kinds.WriteTo(store), 0U);
    EXPECT_EQ(kinds.ReadFrom(Opened(store)), 0U);  // nothing is stored

    const YProfileKey key = HostKey(L"BRNKMenuToolbarV3");
    key.WriteString(L"Bar-int", L"1"), key.WriteString(L"Bar-dword", L"1");
    key.WriteString(L"Bar-object", L""), key.WriteDWORD(L"Bar-text", 1);
    key.WriteBinary(L"Bar-block", nullptr, 0);
    for (const wchar_t* rect : {L"", L"4, 3, 2", L"none"}) {
        key.WriteString(L"Bar-rect", rect);
        EXPECT_EQ(kinds.ReadFrom(store), 0U);
    }
    EXPECT_TRUE(kinds == OtherKinds());
    CObject* nothing = nullptr;
    EXPECT_FALSE(store.Write(L"null", static_cast<LPCTSTR>(nullptr)) ||
                 store.Write(L"null", nothing) || store.Read(L"Bar-object", nothing));
}

TEST_F(SettingsStoreTest, DamagedObjectsAreToldAndTakeNoMemory)
{
    YSettingsStore store;
    Layout layout;
    layout.title = L"Standard";
    layout.widths.assign(40, 0x01020304);
    ASSERT_TRUE(Opened(store).Write(L"object", layout));
    const YProfileKey key = HostKey(L"BRNKMenuToolbarV3");
    std::vector<BYTE> whole;
    ASSERT_TRUE(key.ReadBinary(L"Bar-object", whole));

    const auto read = [&](const std::vector<BYTE>& bytes) {
        key.WriteBinary(L"Bar-object", bytes.data(), static_cast<unsigned>(bytes.size()));
        Layout back;
        return store.Read(L"object", back) != FALSE;
    };
    const LeakCheck leaks;
    const AllocationWatch watch;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_FALSE(read({whole.begin(), whole.begin() + static_cast<long>(i)})) << i;
        for (const BYTE change : {0x01, 0x80, 0xFF}) {
            std::vector<BYTE> damaged = whole;
            damaged[i] ^= change;
            read(damaged);  // may be another layout
        }
    }
    std::vector<BYTE> hostile = whole;
    std::fill_n(hostile.begin() + 20, 6, BYTE{0xFF});  // four thousand million widths
    EXPECT_FALSE(read(hostile));
    EXPECT_LE(watch.GetLargest(), 4 * whole.size());  // a width is four bytes, its count one
    EXPECT_TRUE(read(whole));
}

TEST_F(SettingsStoreTest, LetsNoExceptionOutAndSerializeIn)
{
    YSettingsStore store;
    Layout failing;
    failing.meanwhile = [] { throw std::runtime_error("a class of the host's"); };
    EXPECT_FALSE(Opened(store).Write(L"object", failing));
    Layout nested;
    int value = 0;
    nested.meanwhile = [&] {
        YSettingsStore inner;
        EXPECT_TRUE(inner.CreateKey(L"Nested") && inner.Write(L"inner", 5));
        EXPECT_TRUE(inner.Read(L"inner", value));
    };
    EXPECT_TRUE(store.Write(L"object", nested) && value == 5);
    EXPECT_FALSE(store.Read(L"object", failing));
    Layout back;
    EXPECT_TRUE(store.Read(L"object", back));  // the lock is free again
}

TEST_F(SettingsStoreTest, LetsOnlyTheKeyOfDarkModeThrough)
{
    const ScratchRegistry registry;
    ScratchRegistry::SetNumber(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme", 0);
    {
        YSettingsStore store;
        DWORD light = 1;
        EXPECT_TRUE(
            store.Open(L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize"));
        EXPECT_FALSE(store.Read(L"AppsUseLightTheme", light));
    }
    YSettingsStore created;
    DWORD light = 1;
    EXPECT_TRUE(created.CreateKey(personalize));  // only opening is let through
    EXPECT_FALSE(created.Read(L"AppsUseLightTheme", light));

    YSettingsStore store;
    ASSERT_TRUE(store.Open(personalize));
    EXPECT_TRUE(store.Read(L"AppsUseLightTheme", light) && light == 0);
    EXPECT_EQ(AllKinds().WriteTo(store), 6U);
    OtherKinds back;
    EXPECT_EQ(back.ReadFrom(store), 6U);
    EXPECT_TRUE(back == AllKinds());
    EXPECT_TRUE(store.DeleteValue(L"int") && !store.Read(L"int", back.number));
    store.Close();
    EXPECT_FALSE(store.Write(L"int", 1));
    EXPECT_TRUE(YSettingsStore::m_pKey->GetValueNames().empty());

    CBCGPRegistrySP::SetRuntimeClass(RUNTIME_CLASS(YSettingsStore));
    globalData.UpdateSysColors();
    EXPECT_TRUE(YSettingsStore::IsSystemAppDarkMode());
    CBCGPRegistrySP::SetRuntimeClass(nullptr);
}

TEST_F(SettingsStoreTest, CopiesBetweenItsKeyAndTheHosts)
{
    YProfileStore settings;
    const YProfileKey parent(settings.GetRoot(), L"Session");
    EXPECT_TRUE(YSettingsStore::Load(parent));  // the first start: nothing there
    const YProfileKey saved(parent, L"BRNKMenuToolbarV3");
    saved.WriteDWORD(L"Bar-old", 1);
    YSettingsStore store;
    AllKinds().WriteTo(Opened(store));
    EXPECT_EQ(host.GetFlushCount(), 0U);
    EXPECT_TRUE(YSettingsStore::Save(parent));
    EXPECT_EQ(host.GetFlushCount(), 1U);
    EXPECT_EQ(saved.GetValueNames().size(), 7U);

    OtherKinds().WriteTo(store);
    EXPECT_TRUE(YSettingsStore::Load(parent));
    AllKinds back;
    int old = 0;
    EXPECT_TRUE(back.ReadFrom(store) == 6 && back == AllKinds());
    EXPECT_TRUE(store.Read(L"old", old) && old == 1);

    for (const YProfileKey& none : {YProfileKey(nullptr), YProfileKey(saved, L"none", 0)}) {
        EXPECT_FALSE(YSettingsStore::Load(none) || YSettingsStore::Save(none));
    }
}

TEST_F(SettingsStoreTest, TellsVersionsAndChangesOfTheBars)
{
    const YProfileKey key = HostKey(L"BRNKMenuToolbarV3");
    int major = 1, minor = 2;
    EXPECT_FALSE(YSettingsStore::StoreToolBarVersion() || YSettingsStore::IsToolBarCustomized());
    EXPECT_TRUE(YSettingsStore::LoadFrameworkVersion(major, minor) && major == 1 && minor == 2);
    EXPECT_EQ(YSettingsStore::FindToolBarsToLoad(), 4);  // opened, and not customised
    EXPECT_TRUE(YSettingsStore::StoreFrameworkVersion(30, 1));
    EXPECT_TRUE(YSettingsStore::LoadFrameworkVersion(major, minor) && major == 30 && minor == 1);
    DWORD stored = 0;
    EXPECT_TRUE(key.ReadDWORD(L"BCGControlBarVersion-Major", stored) && stored == 30);

    YSettingsStore::SetToolBarVersion(12);
    EXPECT_TRUE(YSettingsStore::StoreToolBarVersion());
    EXPECT_TRUE(key.ReadDWORD(L"ToolBar-Version", stored) && stored == 12);
    EXPECT_TRUE(YSettingsStore::SetToolBarCustomized(true));
    EXPECT_TRUE(YSettingsStore::IsToolBarCustomized());
    EXPECT_EQ(YSettingsStore::m_dwLoadedToolBarVersion, 0U);  // as it was when it was opened

    YSettingsStore::CleanUp();
    YSettingsStore store;
    Opened(store);
    EXPECT_EQ(YSettingsStore::FindToolBarsToLoad(), 6);
    EXPECT_EQ(YSettingsStore::m_dwLoadedToolBarVersion, 12U);
}

TEST_F(SettingsStoreTest, LooksForTheFilesOfEarlierReleases)
{
    EXPECT_EQ(YSettingsStore::GetOtherIniFilename(), L"QLTMenuToolbarV3");
    YSettingsStore::SetAppName(L"brnk");
    EXPECT_EQ(YSettingsStore::GetOtherIniFilename(), L"BRNKMenuToolbarV3");
    YSettingsStore::SetAppName(L"QLT");

    const std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                         (L"settings" + std::to_wstring(::GetCurrentProcessId()));
    std::filesystem::create_directory(folder);
    const auto touch = [&](const wchar_t* name) { std::ofstream(folder / name); };
    YSettingsStore::SetAppConfigPath(folder.c_str());
    const auto state = [] {
        return YSettingsStore::HasRecentCustomizeConfig() * 4 +
               YSettingsStore::HasDeprecatedCustomizeConfigV2() * 2 +
               YSettingsStore::HasIncompatibleCustomizeConfig();
    };
    EXPECT_EQ(state(), 0);
    touch(L"QLTMenuToolbarV2.ini");
    EXPECT_EQ(state(), 2);
    HostKey(L"QLTMenuToolbarV2").WriteDWORD(L"ToolBar-IsCustom", 1);
    EXPECT_EQ(state(), 3);
    touch(L"QLTMenuToolbarV3.ini");
    YSettingsStore::SetAppConfigPath((folder / L"").c_str());  // ends with a backslash
    EXPECT_EQ(state(), 6);
    YSettingsStore::SetAppConfigPath(L"");
    EXPECT_EQ(state(), 0);
    std::filesystem::remove_all(folder);
}

TEST_F(SettingsStoreTest, SaysWhatTheHostCouldNotStore)
{
    YSettingsStore store;
    host.FailCreation(ERROR_ACCESS_DENIED);
    AllKinds kinds;
    EXPECT_EQ(kinds.WriteTo(Opened(store)) + kinds.ReadFrom(store), 0U);
    EXPECT_FALSE(YSettingsStore::StoreFrameworkVersion(1, 2));
    EXPECT_EQ(YSettingsStore::FindToolBarsToLoad(), 0);
    host.FailCreation(0);
    YSettingsStore later;
    EXPECT_EQ(kinds.WriteTo(Opened(later)), 6U);  // tried again
    EXPECT_EQ(YSettingsStore::FindToolBarsToLoad(), 4);

    const YProfileKey target = HostKey(L"Session");
    host.FailWrites(ERROR_DISK_FULL);
    EXPECT_EQ(OtherKinds().WriteTo(later), 0U);
    EXPECT_EQ(YSettingsStore::m_pKey->GetLastResult().GetMessageId(), ERROR_DISK_FULL);
    EXPECT_FALSE(YSettingsStore::Save(target) || YSettingsStore::SetToolBarCustomized(true));
    AllKinds back;
    EXPECT_TRUE(back.ReadFrom(later) == 6 && back == kinds);
}

TEST_F(SettingsStoreTest, ManyThreadsLoseNothing)
{
    constexpr int threads = 8;
    constexpr int rounds = 500;
    std::atomic<int> mistakes = 0;
    std::atomic<int> inside = 0;
    const auto work = [&](int thread) {
        Layout hermit;
        hermit.meanwhile = [&] {
            mistakes += ++inside != 1;  // nobody else is being stored
            ::SwitchToThread();
            --inside;
        };
        for (int i = 0; i < rounds; ++i) {
            YSettingsStore store;
            const std::wstring name = std::to_wstring(thread) + L"." + std::to_wstring(i);
            const CRect rect(thread, i, i + 1, -i);
            CRect back;
            mistakes += !(store.CreateKey(barPath) && store.Write(name.c_str(), rect) &&
                          store.Read(name.c_str(), back) && back == rect);
            mistakes += i % 10 == 0 && !store.Write(L"hermit", hermit);
            mistakes += i % 100 == 0 && !YSettingsStore::Save(HostKey(L"Session"));
        }
    };
    std::vector<std::thread> running;
    for (int thread = 0; thread < threads; ++thread) {
        running.emplace_back(work, thread);
    }
    for (std::thread& thread : running) {
        thread.join();
    }
    EXPECT_EQ(mistakes, 0);
    EXPECT_EQ(YSettingsStore::m_pKey->GetValueNames().size(), threads * rounds + 1U);
    EXPECT_EQ(host.GetLiveProfiles(), 1);  // opened once
}
