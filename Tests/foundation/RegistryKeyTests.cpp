#include "ScratchRegistry.h"
#include "YRegistryKey.h"
#include "YSecurityDescriptor.h"

#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <winternl.h>

// The system has it, its headers do not.
extern "C" NTSTATUS NTAPI NtQueryKey(HANDLE KeyHandle, int KeyInformationClass,
                                     void* KeyInformation, ULONG Length, PULONG ResultLength);

namespace {

using namespace std::string_literals;

using Strings = std::vector<YUnicodeString>;

constexpr wchar_t path[] = L"Software\\Test";
constexpr wchar_t sddl[] = L"O:BAG:SYD:(A;;KA;;;BA)(A;;KR;;;WD)";

std::string BytesOf(const YSecurityDescriptor& security)
{
    return std::string(static_cast<const char*>(security.Get()), security.GetSize());
}

DWORD ResultOf(const YRegistryKey& key)
{
    return key.GetLastResult().GetMessageId();
}

// The library sees this value under every name, byte for byte: the real registry repairs some.
class PlayedValue
{
public:
    explicit PlayedValue(DWORD typeOfIt, std::string bytesOfIt)
    {
        type = typeOfIt;
        bytes = std::move(bytesOfIt);
        onLook = nullptr;
    }

    static inline DWORD type;
    static inline std::string bytes;
    static inline void (*onLook)();  // another process, after each look

private:
    static LSTATUS WINAPI Query(HKEY, LPCWSTR, LPDWORD, LPDWORD seenType, LPBYTE data, LPDWORD size)
    {
        const DWORD room = data ? *size : 0;
        *seenType = type;
        *size = static_cast<DWORD>(bytes.size());
        const bool fits = data && bytes.size() <= room;
        if (fits) {
            std::copy(bytes.begin(), bytes.end(), data);
        }
        if (onLook) {
            onLook();
        }
        return !data || fits ? ERROR_SUCCESS : ERROR_MORE_DATA;
    }

    ImportHook hook{L"CommonUi.dll", "advapi32.dll", "RegQueryValueExW", &Query};
};

// The link leads to a key by the system's own name of it.
void MakeLink(const std::wstring& name, const wchar_t* targetKey)
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
    ::RegCreateKeyExW(HKEY_CURRENT_USER, name.c_str(), 0, nullptr, REG_OPTION_CREATE_LINK,
                      KEY_WRITE | KEY_CREATE_LINK, nullptr, &key, nullptr);
    ::RegSetValueExW(key, L"SymbolicLinkValue", 0, REG_LINK,
                     reinterpret_cast<const BYTE*>(target.text), target.bytes);
    ::RegCloseKey(key);
}

class YRegistryKeyTest : public testing::Test
{
protected:
    ScratchRegistry registry;
    YRegistryKey key{HKEY_CURRENT_USER, path, KEY_ALL_ACCESS, 0, nullptr, true};
};

}  // namespace

TEST_F(YRegistryKeyTest, ReadsBackWhatItWrote)
{
    ASSERT_TRUE(key.WriteString(L"text", L"w\u00F6rld") && key.WriteDWORD(L"number", 0x80000001) &&
                key.WriteBinary(L"data", "a\0b", 3) &&
                key.WriteMultiString(L"list", {L"one", L"", L"two"}));
    YUnicodeString text;
    DWORD number = 0;
    std::vector<BYTE> data;
    Strings list;
    EXPECT_TRUE(key.ReadString(L"text", text) && text == L"w\u00F6rld");
    EXPECT_TRUE(key.ReadDWORD(L"number", number) && number == 0x80000001);
    EXPECT_TRUE(key.ReadBinary(L"data", data) && std::string(data.begin(), data.end()) == "a\0b"s);
    EXPECT_TRUE(key.ReadMultiString(L"list", list) && list == Strings({L"one", L"two"}));

    const auto stored = [](const wchar_t* name, DWORD type) {
        wchar_t raw[16] = {};
        DWORD size = sizeof(raw);
        ::RegGetValueW(HKEY_CURRENT_USER, path, name, type, nullptr, raw, &size);
        return std::wstring(raw, size / 2);
    };
    EXPECT_EQ(stored(L"list", RRF_RT_REG_MULTI_SZ), std::wstring(L"one\0two\0", 9));
    EXPECT_EQ(stored(L"text", RRF_RT_REG_SZ), std::wstring(L"w\u00F6rld", 6));

    EXPECT_TRUE(key.DeleteValue(L"text"));
    EXPECT_FALSE(key.ReadString(L"text", text) || key.DeleteValue(L"text"));
    EXPECT_EQ(ResultOf(key), DWORD{ERROR_FILE_NOT_FOUND});
}

namespace {

std::wstring Describe(const YUnicodeString& text)
{
    return L" "s + text.c_str();
}

std::wstring Describe(DWORD number)
{
    return L" " + std::to_wstring(number);
}

template <class Item>
std::wstring Describe(const std::vector<Item>& items)
{
    std::wstring all;
    for (const Item& item : items) {
        all += Describe(item);
    }
    return all;
}

// Empty when the reader fails: then it says so and leaves its output alone.
template <class Output>
std::wstring Read(YRegistryKey& key, const wchar_t* reader, Output output,
                  bool (YRegistryKey::*read)(const wchar_t*, Output&))
{
    const Output before = output;
    const bool isRead = (key.*read)(L"v", output);
    EXPECT_EQ(ResultOf(key), DWORD(isRead ? ERROR_SUCCESS : ERROR_DATATYPE_MISMATCH));
    EXPECT_TRUE(isRead || output == before);
    return isRead ? reader + Describe(output) : L"";
}

}  // namespace

TEST_F(YRegistryKeyTest, ForeignValueIsReadAsItIsOrNotAtAll)
{
    const struct
    {
        DWORD type;
        std::string bytes;
        const wchar_t* read;  // by which reader, and as what
    } cases[] = {{REG_SZ, "a\0b\0"s, L"text ab"},
                 {REG_SZ, "a\0b"s, L"text a"},
                 {REG_EXPAND_SZ, ""s, L"text "},
                 {REG_MULTI_SZ, "a\0\0\0b\0"s, L"list a b"},
                 {REG_MULTI_SZ, "\0\0a\0\0\0\0\0b\0\0\0\0\0\0\0"s, L"list a b"},
                 {REG_MULTI_SZ, "a\0\0\0b"s, L"list a"},
                 {REG_BINARY, "\1\0\0\2"s, L"data 1 0 0 2"},
                 {REG_DWORD, "\2\1\0\0"s, L"number 258"},
                 {REG_DWORD, "\4\3\2"s, L""},
                 {REG_DWORD_BIG_ENDIAN, "\4\3\2\1"s, L""}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.type) + testing::PrintToString(c.bytes));
        const PlayedValue played(c.type, c.bytes);
        EXPECT_EQ(Read<YUnicodeString>(key, L"text", L"before", &YRegistryKey::ReadString) +
                      Read<Strings>(key, L"list", {L"before"}, &YRegistryKey::ReadMultiString) +
                      Read<std::vector<BYTE>>(key, L"data", {7}, &YRegistryKey::ReadBinary) +
                      Read<DWORD>(key, L"number", 77, &YRegistryKey::ReadDWORD),
                  c.read);
    }
}

TEST_F(YRegistryKeyTest, ExpandsOnlyWhatAsksForIt)
{
    ::SetEnvironmentVariableW(L"V", L"xxxxx");
    ScratchRegistry::Set(HKEY_CURRENT_USER, path, L"expand", REG_EXPAND_SZ, "%\0V\0%\0!\0"s);
    YUnicodeString text;
    EXPECT_TRUE(key.ReadString(L"expand", text) && text == L"xxxxx!");
    ASSERT_TRUE(key.WriteString(L"plain", L"%V%"));
    EXPECT_TRUE(key.ReadString(L"plain", text) && text == L"%V%");
    ::SetEnvironmentVariableW(L"V", nullptr);
}

TEST_F(YRegistryKeyTest, ReadsOneMomentOfAValueThatOthersChange)
{
    PlayedValue played(REG_SZ, "a\0"s);
    PlayedValue::onLook = [] {
        if (PlayedValue::bytes.size() < 16) {
            PlayedValue::bytes += PlayedValue::bytes;
        }
    };
    YUnicodeString text;
    EXPECT_TRUE(key.ReadString(L"v", text));
    EXPECT_EQ(text, L"aaaaaaaa");

    PlayedValue::onLook = [] { PlayedValue::type = REG_BINARY; };
    for (const DWORD before : {REG_DWORD, REG_MULTI_SZ}) {
        PlayedValue::type = before;
        PlayedValue::bytes = "1234";
        DWORD number = 77;
        Strings list;
        EXPECT_FALSE(before == REG_DWORD ? key.ReadDWORD(L"v", number)
                                         : key.ReadMultiString(L"v", list));
        EXPECT_EQ(ResultOf(key), DWORD{ERROR_DATATYPE_MISMATCH});
        EXPECT_TRUE(number == 77 && list.empty());
    }
}

TEST_F(YRegistryKeyTest, DeletesATreeButNotWhatALinkPointsTo)
{
    for (const std::wstring& name :
         {L"One\\Two\\Three"s, L"One\\Other"s, std::wstring(31, L'a'), std::wstring(32, L'b'),
          std::wstring(33, L'c') + L"\\x", std::wstring(255, L'd')}) {
        ScratchRegistry::MakeKey(HKEY_CURRENT_USER, path + L"\\Tree\\"s + name);
    }
    ScratchRegistry::MakeKey(HKEY_CURRENT_USER, path + L"\\Kept\\Inside"s);
    MakeLink(path + L"\\Tree\\Link"s, (path + L"\\Kept"s).c_str());
    ASSERT_TRUE(key.SubKeyExists(L"Tree\\Link\\Inside"));  // the link works

    EXPECT_TRUE(key.DeleteKey(L"Tree"));
    EXPECT_FALSE(key.SubKeyExists(L"Tree") || key.DeleteKey(L"Tree"));
    EXPECT_EQ(ResultOf(key), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_FALSE(key.DeleteKey(L"") || key.DeleteKey(L"\\"));  // not itself
    EXPECT_TRUE(key.SubKeyExists(L"Kept\\Inside"));
}

TEST_F(YRegistryKeyTest, KeepsSecurity)
{
    YSecurityDescriptor written;
    ASSERT_TRUE(written.SetText(sddl));
    const std::string bytes = BytesOf(written);
    YSecurityDescriptor read;
    EXPECT_TRUE(key.WriteSecurity(L"bytes", written) && key.ReadSecurity(L"bytes", read));
    EXPECT_EQ(BytesOf(read), bytes);
    YSecurityDescriptor joined;
    EXPECT_TRUE(key.WriteMultiString(L"text", {L"O:BAG:SY", L"D:(A;;KA;;;BA)", L"(A;;KR;;;WD)"}) &&
                key.ReadSecurity(L"text", joined));
    EXPECT_EQ(BytesOf(joined), bytes);

    key.WriteBinary(L"short", bytes.data(), static_cast<DWORD>(bytes.size() - 1));
    EXPECT_FALSE(key.ReadSecurity(L"short", read));
    EXPECT_EQ(ResultOf(key), DWORD{ERROR_INVALID_SECURITY_DESCR});
    EXPECT_EQ(BytesOf(read), bytes);
    const YSecurityDescriptor none;
    EXPECT_FALSE(key.WriteSecurity(L"none", none) || key.SetKeySecurity(&none));
    EXPECT_TRUE(key.SetKeySecurity(nullptr));
    EXPECT_EQ(ResultOf(key), DWORD{ERROR_SUCCESS});

    ASSERT_TRUE(key.SetKeySecurity(&written));
    BYTE own[512];
    DWORD size = sizeof(own);
    HKEY raw = nullptr;
    ::RegOpenKeyW(HKEY_CURRENT_USER, path, &raw);
    ASSERT_EQ(::RegGetKeySecurity(raw, DACL_SECURITY_INFORMATION, own, &size), ERROR_SUCCESS);
    ::RegCloseKey(raw);
    ASSERT_TRUE(joined.SetBytes(own, size));
    EXPECT_EQ(BytesOf(joined).substr(joined.GetSize() - 48), bytes.substr(bytes.size() - 48));
}

TEST(YSecurityDescriptor, IsNotFooledByBytesFromElsewhere)
{
    // Bytes that end where the memory does: whoever reads past them crashes.
    BYTE* const pages = static_cast<BYTE*>(
        ::VirtualAlloc(nullptr, 0x2000, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    DWORD before = 0;
    ::VirtualProtect(pages + 0x1000, 0x1000, PAGE_NOACCESS, &before);
    YSecurityDescriptor security;
    const auto set = [&](const std::string& bytes) {
        std::copy(bytes.begin(), bytes.end(), pages + 0x1000 - bytes.size());
        return security.SetBytes(pages + 0x1000 - bytes.size(), bytes.size());
    };
    YSecurityDescriptor whole;
    ASSERT_TRUE(whole.SetText(sddl));
    const std::string bytes = BytesOf(whole);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(set(bytes.substr(0, size))) << size;
    }
    EXPECT_FALSE(security.IsValid() || security.Copy());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        for (const char changed : {'\0', '\x7F', '\xFF', static_cast<char>(bytes[i] ^ 1)}) {
            std::string damaged = bytes;
            damaged[i] = changed;
            EXPECT_TRUE(!set(damaged) || ::IsValidSecurityDescriptor(security.Get())) << i;
        }
    }
    EXPECT_TRUE(::HeapValidate(::GetProcessHeap(), 0, nullptr));  // nor was too much copied

    EXPECT_FALSE(security.SetText(L"") || security.SetStrings({}));
    ::VirtualFree(pages, 0, MEM_RELEASE);
}
