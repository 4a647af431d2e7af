// The control library's settings in the real registry, below a key of the test's own.
#include "foundation/ScratchRegistry.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"

#include <BCGCBProInc.h>

#include <gtest/gtest.h>

#include <string>

#include <winternl.h>

// The system has it, its headers do not.
extern "C" NTSTATUS NTAPI NtQueryKey(HANDLE KeyHandle, int KeyInformationClass,
                                     void* KeyInformation, ULONG Length, PULONG ResultLength);

namespace {

using namespace std::string_literals;

constexpr wchar_t path[] = L"Software\\Test\\Settings";

class Setting : public CObject
{
public:
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring()) {
            ar << text;
        } else {
            ar >> text;
        }
    }

    CString text;
};

// Somebody who makes the value larger after each of the first three looks at it.
int looks = 0;

LSTATUS WINAPI ReadAndGrow(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                           LPDWORD count)
{
    const LSTATUS status = ::RegQueryValueExW(key, name, reserved, type, data, count);
    if (++looks <= 3) {
        ScratchRegistry::Set(HKEY_CURRENT_USER, path, name, REG_SZ, std::string(50 * looks, 'x'));
    }
    return status;
}

// The link leads to a key by the system's own name of it.
void MakeLink(const wchar_t* name, const wchar_t* targetKey)
{
    struct
    {
        ULONG bytes;
        wchar_t text[512];
    } target{};
    ULONG size = 0;
    HKEY key = nullptr;
    ::RegOpenKeyW(HKEY_CURRENT_USER, targetKey, &key);
    ::NtQueryKey(key, 3, &target, sizeof(target), &size);
    ::RegCloseKey(key);
    ::RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, REG_OPTION_CREATE_LINK,
                      KEY_WRITE | KEY_CREATE_LINK, nullptr, &key, nullptr);
    ::RegSetValueExW(key, L"SymbolicLinkValue", 0, REG_LINK,
                     reinterpret_cast<const BYTE*>(target.text), target.bytes);
    ::RegCloseKey(key);
}

bool Exists(LPCWSTR key)
{
    return CBCGPRegistry(FALSE, TRUE).Open(key) != FALSE;
}

class RegistryTest : public testing::Test
{
protected:
    ScratchRegistry scratch;
};

}  // namespace

TEST_F(RegistryTest, ChangesNothingUnlessItIsOpenAndMay)
{
    {
        CBCGPRegistry registry;
        EXPECT_FALSE(registry.Open(path));
        EXPECT_FALSE(registry.Write(L"int", 1));  // nothing is open
        EXPECT_TRUE(registry.CreateKey(path) && registry.Write(L"int", -7));
    }
    CBCGPRegistry registry(FALSE, TRUE);
    int number = 0;
    EXPECT_TRUE(registry.Open(path) && registry.Read(L"int", number) && number == -7);
    EXPECT_FALSE(registry.Write(L"int", 8) || registry.DeleteValue(L"int") ||
                 registry.DeleteKey(path) || registry.CreateKey(L"Software\\New"));
    EXPECT_TRUE(Exists(path));
    EXPECT_FALSE(CBCGPRegistrySP::SetRuntimeClass(RUNTIME_CLASS(CObject)));
}

TEST_F(RegistryTest, ForeignValueIsReadAsItIsOrNotAtAll)
{
    struct
    {
        DWORD type;
        std::string bytes;
        const wchar_t* text;  // null: not a string
        bool isBlock;
        int number;  // 0: not a number
    } cases[] = {{REG_SZ, "a\0b\0"s, L"ab", false, 0},  // without an end
                 {REG_SZ, "a\0b"s, L"a", false, 0},
                 {REG_EXPAND_SZ, "a\0\0\0b\0\0\0"s, L"a", false, 0},
                 {REG_SZ, ""s, L"", false, 0},
                 {REG_DWORD, "\0cba"s, nullptr, false, 0x61626300},
                 {REG_DWORD, "cba"s, nullptr, false, 0},
                 {REG_BINARY, ""s, nullptr, false, 0},
                 // An object with a string of 2 GB.
                 {REG_BINARY, "\xFF\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F"s, nullptr, true, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.bytes));
        ScratchRegistry::Set(HKEY_CURRENT_USER, path, L"value", c.type, c.bytes);
        CBCGPRegistry registry;
        ASSERT_TRUE(registry.Open(path));
        const LeakCheck leaks;

        CString text(L"before");
        EXPECT_EQ(registry.Read(L"value", text), c.text != nullptr);
        EXPECT_TRUE(text == (c.text != nullptr ? c.text : L"before"));
        BYTE* bytes = nullptr;
        UINT count = 0;
        EXPECT_EQ(registry.Read(L"value", &bytes, &count), c.isBlock);
        EXPECT_EQ(std::string(bytes, bytes + count), c.isBlock ? c.bytes : "");
        delete[] bytes;
        int number = 0;
        EXPECT_EQ(registry.Read(L"value", number), c.number != 0);
        EXPECT_EQ(number, c.number);
        CRect rect;
        Setting setting;
        EXPECT_FALSE(registry.Read(L"value", rect) || registry.Read(L"value", setting));
    }
}

TEST_F(RegistryTest, ReadsAValueThatGrowsMeanwhile)
{
    ScratchRegistry::Set(HKEY_CURRENT_USER, path, L"value", REG_SZ, "a\0\0\0"s);
    looks = 0;
    const ImportHook hook(L"CommonFramework.dll", "ADVAPI32.dll", "RegQueryValueExW", &ReadAndGrow);
    CBCGPRegistry registry;
    CString text;
    EXPECT_TRUE(registry.Open(path) && registry.Read(L"value", text));
    EXPECT_EQ(text.GetLength(), 75);
}

TEST_F(RegistryTest, DeletesATreeButNotWhatALinkPointsTo)
{
    for (const wchar_t* key : {L"Tree\\One\\Deep", L"Tree\\Two", L"Kept\\Inside"}) {
        ScratchRegistry::MakeKey(HKEY_CURRENT_USER, key);
    }
    MakeLink(L"Tree\\Link", L"Kept");
    ASSERT_TRUE(Exists(L"Tree\\Link\\Inside"));

    CBCGPRegistry registry;
    for (const wchar_t* all : {L"", L"\\"}) {
        EXPECT_FALSE(registry.DeleteKey(all));
    }
    EXPECT_TRUE(registry.DeleteKey(L"Tree"));
    EXPECT_FALSE(Exists(L"Tree") || registry.DeleteKey(L"Tree"));
    EXPECT_TRUE(Exists(L"Kept\\Inside"));
}

TEST_F(RegistryTest, TellsDarkFromLight)
{
    constexpr wchar_t personalize[] =
        L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
    globalData.UpdateSysColors();
    EXPECT_FALSE(globalData.IsSystemAppDarkMode());  // nothing is set
    for (const bool isLight : {false, true}) {
        ScratchRegistry::SetNumber(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme", isLight);
        EXPECT_EQ(globalData.IsSystemAppDarkMode(), isLight);  // as before: not asked again
        globalData.UpdateSysColors();
        EXPECT_EQ(globalData.IsSystemAppDarkMode(), !isLight);
    }
}
