// The control library's settings in the real registry, below a key of the test's own.
#include "WindowTest.h"

#include "support/CaseName.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"

#include <BCGCBProInc.h>

#include <string>

#include <winternl.h>

// The system has it, its headers do not.
extern "C" NTSTATUS NTAPI NtQueryKey(HANDLE KeyHandle, int KeyInformationClass,
                                     void* KeyInformation, ULONG Length, PULONG ResultLength);

namespace {

using namespace std::string_literals;

constexpr int keyNameInformation = 3;

constexpr wchar_t testsKey[] = L"Software\\CommonUiTests";
constexpr wchar_t path[] = L"Software\\Test\\Settings";

// A string and a number, which not all bytes are.
class Setting : public CObject
{
public:
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring()) {
            ar << text << number;
        } else {
            ar >> text >> number;
        }
    }

    CString text;
    int number = 0;
};

class OtherRegistry : public CBCGPRegistry
{
    DECLARE_DYNCREATE(OtherRegistry)
};
IMPLEMENT_DYNCREATE(OtherRegistry, CBCGPRegistry)

void SetRaw(LPCWSTR key, LPCWSTR name, DWORD type, const std::string& bytes)
{
    ::RegSetKeyValueW(HKEY_CURRENT_USER, key, name, type, bytes.data(), bytes.size());
}

// Somebody who makes the value larger after each of the first three looks at it.
class GrowingValue
{
public:
    GrowingValue() { looks = 0; }

private:
    static LSTATUS WINAPI Grow(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                               LPDWORD count)
    {
        const LSTATUS status = ::RegQueryValueExW(key, name, reserved, type, data, count);
        if (++looks <= 3) {
            SetRaw(path, name, REG_SZ, std::string(50 * looks, 'x'));
        }
        return status;
    }

    static inline int looks;
    ImportHook hook{L"CommonFramework.dll", "ADVAPI32.dll", "RegQueryValueExW", &Grow};
};

// HKEY_CURRENT_USER is a key of this process while the test runs.
class RegistryTest : public testing::Test
{
protected:
    RegistryTest() : scratchPath(testsKey + L"\\"s + std::to_wstring(::GetCurrentProcessId()))
    {
        ::RegCreateKeyW(HKEY_CURRENT_USER, scratchPath.c_str(), &scratch);
        ::RegOverridePredefKey(HKEY_CURRENT_USER, scratch);
    }
    ~RegistryTest() override
    {
        ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ::RegCloseKey(scratch);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, scratchPath.c_str());
        ::RegDeleteKeyW(HKEY_CURRENT_USER, testsKey);  // while no other process has one below
    }

    // By the system's own name of the key.
    static void SetLinkTarget(HKEY link, LPCWSTR target)
    {
        HKEY key = nullptr;
        ::RegOpenKeyW(HKEY_CURRENT_USER, target, &key);
        struct
        {
            ULONG bytes;
            WCHAR text[512];
        } name{};
        ULONG size = 0;
        ::NtQueryKey(key, keyNameInformation, &name, sizeof(name), &size);
        ::RegCloseKey(key);
        ::RegSetValueExW(link, L"SymbolicLinkValue", 0, REG_LINK,
                         reinterpret_cast<const BYTE*>(name.text), name.bytes);
    }
    static bool Exists(LPCWSTR key) { return CBCGPRegistry(FALSE, TRUE).Open(key) != FALSE; }

    std::wstring scratchPath;
    HKEY scratch = nullptr;
};

}  // namespace

TEST_F(RegistryTest, ReadsWhatAnotherObjectWrote)
{
    Setting setting;
    setting.text = L"caf\u00E9";
    setting.number = 5;
    {
        CBCGPRegistry registry;
        EXPECT_FALSE(registry.Open(path));
        EXPECT_FALSE(registry.Write(L"int", 1));  // nothing is open
        ASSERT_TRUE(registry.CreateKey(path));
        EXPECT_TRUE(registry.Write(L"int", -7) && registry.Write(L"dword", 0x80000000UL) &&
                    registry.Write(L"text", L"w\u00F6rld") &&
                    registry.Write(L"rect", CRect(1, -2, 3, 4)) &&
                    registry.Write(L"object", &setting));
    }
    CBCGPRegistry registry(FALSE, TRUE);
    ASSERT_TRUE(registry.Open(path));
    int number = 0;
    DWORD dword = 0;
    CString text;
    CRect rect;
    Setting back;
    CObject* object = &back;
    EXPECT_TRUE(registry.Read(L"int", number) && number == -7);
    EXPECT_TRUE(registry.Read(L"dword", dword) && dword == 0x80000000UL);
    EXPECT_TRUE(registry.Read(L"text", text) && text == L"w\u00F6rld");
    EXPECT_TRUE(registry.Read(L"rect", rect) && rect == CRect(1, -2, 3, 4));
    EXPECT_TRUE(registry.Read(L"object", object) && back.text == setting.text && back.number == 5);
    EXPECT_FALSE(registry.Write(L"int", 8) || registry.DeleteValue(L"int") ||
                 registry.DeleteKey(path) || registry.CreateKey(L"Software\\New"));
    EXPECT_TRUE(Exists(path));
}

struct ForeignCase
{
    const char* name;
    DWORD type;
    std::string bytes;
    const wchar_t* text;  // null: not a string; so below
    const char* block;
    bool isNumber;
};
class RegistryForeign : public RegistryTest, public testing::WithParamInterface<ForeignCase>
{};

TEST_P(RegistryForeign, ValueIsReadAsItIsOrNotAtAll)
{
    const ForeignCase& c = GetParam();
    SetRaw(path, L"value", c.type, c.bytes);
    CBCGPRegistry registry;
    ASSERT_TRUE(registry.Open(path));
    const LeakCheck leaks;

    CString text(L"before");
    EXPECT_EQ(registry.Read(L"value", text), c.text != nullptr);
    EXPECT_TRUE(text == (c.text != nullptr ? c.text : L"before"));
    BYTE* bytes = nullptr;
    UINT count = 0;
    EXPECT_EQ(registry.Read(L"value", &bytes, &count), c.block != nullptr);
    EXPECT_EQ(std::string(bytes, bytes + count), c.block != nullptr ? c.block : "");
    delete[] bytes;
    int number = 77;
    EXPECT_EQ(registry.Read(L"value", number), c.isNumber);
    EXPECT_EQ(number, c.isNumber ? 0x61626300 : 77);
    CRect rect;
    Setting setting;
    EXPECT_FALSE(registry.Read(L"value", rect) || registry.Read(L"value", setting));
}

INSTANTIATE_TEST_SUITE_P(
    Values, RegistryForeign,
    testing::Values(ForeignCase{"EndlessString", REG_SZ, "a\0b\0"s, L"ab", nullptr, false},
                    ForeignCase{"HalfCharacter", REG_SZ, "a\0b"s, L"a", nullptr, false},
                    ForeignCase{"EarlyEnd", REG_EXPAND_SZ, "a\0\0\0b\0\0\0"s, L"a", nullptr, false},
                    ForeignCase{"EmptyString", REG_SZ, ""s, L"", nullptr, false},
                    ForeignCase{"Number", REG_DWORD, "\0cba"s, nullptr, nullptr, true},
                    ForeignCase{"ShortNumber", REG_DWORD, "cba"s, nullptr, nullptr, false},
                    ForeignCase{"Block", REG_BINARY, "abcd"s, nullptr, "abcd", false},
                    ForeignCase{"EmptyBlock", REG_BINARY, ""s, nullptr, nullptr, false},
                    ForeignCase{"HugeString", REG_BINARY,
                                "\xFF\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F"s, nullptr,
                                "\xFF\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F", false}),
    CaseName());

TEST_F(RegistryTest, ReadsAValueThatGrowsMeanwhile)
{
    SetRaw(path, L"value", REG_SZ, "a\0\0\0"s);
    const GrowingValue growing;
    CBCGPRegistry registry;
    CString text;
    EXPECT_TRUE(registry.Open(path) && registry.Read(L"value", text));
    EXPECT_EQ(text.GetLength(), 75);
}

TEST_F(RegistryTest, DeletesATreeButNotWhatALinkPointsTo)
{
    CBCGPRegistry registry;
    for (const wchar_t* key : {L"Tree\\One\\Deep", L"Tree\\Two", L"Kept\\Inside"}) {
        ASSERT_TRUE(registry.CreateKey(key));
    }
    registry.Close();
    HKEY link = nullptr;
    const LSTATUS status =
        ::RegCreateKeyExW(HKEY_CURRENT_USER, L"Tree\\Link", 0, nullptr, REG_OPTION_CREATE_LINK,
                          KEY_WRITE | KEY_CREATE_LINK, nullptr, &link, nullptr);
    ASSERT_EQ(status, ERROR_SUCCESS);
    SetLinkTarget(link, L"Kept");
    ::RegCloseKey(link);
    ASSERT_TRUE(Exists(L"Tree\\Link\\Inside"));  // the link works

    for (const wchar_t* all : {L"", L"\\"}) {
        EXPECT_FALSE(registry.DeleteKey(all));
    }
    EXPECT_TRUE(registry.DeleteKey(L"Tree"));
    EXPECT_FALSE(Exists(L"Tree") || registry.DeleteKey(L"Tree"));
    EXPECT_TRUE(Exists(L"Kept\\Inside"));
}

TEST_F(RegistryTest, MakesTheReplacement)
{
    EXPECT_FALSE(CBCGPRegistrySP::SetRuntimeClass(RUNTIME_CLASS(CObject)));
    EXPECT_TRUE(CBCGPRegistrySP::SetRuntimeClass(RUNTIME_CLASS(OtherRegistry)));
    {
        CBCGPRegistrySP store;
        CBCGPRegistry& registry = store.Create(FALSE, TRUE);
        EXPECT_TRUE(registry.IsKindOf(RUNTIME_CLASS(OtherRegistry)));
        EXPECT_FALSE(registry.CreateKey(path));  // it is read-only
    }
    EXPECT_TRUE(CBCGPRegistrySP::SetRuntimeClass(nullptr));
}

TEST_F(RegistryTest, TellsDarkFromLight)
{
    constexpr wchar_t personalize[] =
        L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
    globalData.UpdateSysColors();
    EXPECT_FALSE(globalData.IsSystemAppDarkMode());  // nothing is set
    SetRaw(personalize, L"AppsUseLightTheme", REG_DWORD, "\0\0\0\0"s);
    EXPECT_FALSE(globalData.IsSystemAppDarkMode());  // not asked again
    globalData.UpdateSysColors();
    EXPECT_TRUE(globalData.IsSystemAppDarkMode());
    SetRaw(personalize, L"AppsUseLightTheme", REG_DWORD, "\1\0\0\0"s);
    globalData.UpdateSysColors();
    EXPECT_FALSE(globalData.IsSystemAppDarkMode());
}
