// What both backends promise, through the key that the library uses.
#include "FolderProfile.h"
#include "OpenProfile.h"
#include "RegistryProfile.h"
#include "ScratchFolder.h"

#include "foundation/ScratchRegistry.h"
#include "support/CaseName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace {

using namespace std::string_view_literals;

struct BackendCase
{
    const char* name;
    std::shared_ptr<YProfileStoreFactory> (*make)(const std::wstring& folder);
};

std::shared_ptr<YProfileStoreFactory> MakeFolderFactory(const std::wstring& folder)
{
    return std::make_shared<FolderProfileFactory>(
        folder, [](const ProfileReport& report) { ADD_FAILURE() << report.error.GetMessageId(); });
}

std::shared_ptr<YProfileStoreFactory> MakeRegistryFactory(const std::wstring&)
{
    return std::make_shared<RegistryProfileFactory>(HKEY_CURRENT_USER, L"Software\\Test\\Profile");
}

std::vector<std::wstring> GetChildren(const YProfileKey& key)
{
    std::vector<std::wstring> names;
    for (YProfileKeyIterator child(key); child.IsValid(); child.Next()) {
        names.emplace_back(child.GetName().c_str());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class ProfileTest : public testing::TestWithParam<BackendCase>
{
protected:
    ProfileTest() { Reopen(); }

    // As another run of the program would.
    void Reopen()
    {
        root = YProfileKey(nullptr);
        factory = GetParam().make(folder.GetPath());
        root = OpenRoot(*factory);
        ASSERT_TRUE(root.IsOpen());
    }

    ScratchRegistry registry;
    ScratchFolder folder;
    std::shared_ptr<YProfileStoreFactory> factory;
    YProfileKey root{nullptr};
};

// As names of keys, names of values and texts.
const std::vector<std::wstring> hostileTexts = {
    // For texts and the names of values.
    L" ", L"  both  ", L"\t", L"a=b", L";x", L"[x]", L"\"x\"", L"\"", L"\\", L"a\\b", L"a/b",
    L"line\r\nline", L"\n", L"\x1\x1F\x7F", L"dword:1", L"hex:00", L"; end", L"\\u0041", L"\\n",
    // For any code.
    L"\x85\x2028", L"\xFEFF", L"\xD800", L"x\xDC00", L"\xDC00\xD800", L"\xD83D\xDE00", L"\xFFFF",
    L"caf\u00E9 \u65E5\u672C",
    // For the names of files.
    L"..", L".", L"...", L"x.", L"CON", L"con.txt", L"NUL", L"Com1", L"LPT\u00B9", L"Settings",
    L"a:b", L"a%b", L"%41", L"%", L"a*?<>|", L"LONGNA~1"};

TEST_P(ProfileTest, KeepsEveryValueExactly)
{
    std::vector<BYTE> many(100'000);  // every byte among them
    std::iota(many.begin(), many.end(), BYTE{0});
    {
        const YProfileKey key(root, L"Key");
        for (const std::wstring& text : hostileTexts) {
            ASSERT_TRUE(key.WriteString(text.c_str(), text.c_str()));
        }
        key.WriteString(L"", L"");
        key.WriteString(L"NulInside", YUnicodeString(L"a\0b\0"sv));
        key.WriteDWORD(L"Number", 0xFEDCBA98);
        key.WriteBinary(L"NoBytes", nullptr, 0);
        ASSERT_TRUE(key.WriteBinary(L"Many", many.data(), 100'000));
        root.WriteString(L"OfTheRoot", L"too");
    }
    Reopen();
    const YProfileKey key(root, L"Key", YProfileKey::openExisting);
    YUnicodeString value;
    for (const std::wstring& text : hostileTexts) {
        EXPECT_TRUE(key.ReadString(text.c_str(), value));
        EXPECT_EQ(value, text.c_str());
    }
    EXPECT_TRUE(key.ReadString(L"", value));
    EXPECT_TRUE(value.IsEmpty());
    EXPECT_TRUE(key.ReadString(L"NulInside", value));
    EXPECT_EQ(std::wstring_view(value), L"a\0b\0"sv);
    EXPECT_EQ(ReadNumber(key, L"Number"), 0xFEDCBA98u);
    std::vector<BYTE> read;
    EXPECT_TRUE(key.ReadBinary(L"NoBytes", read));
    EXPECT_TRUE(read.empty());
    EXPECT_TRUE(key.ReadBinary(L"Many", read));
    EXPECT_EQ(read, many);
    EXPECT_EQ(key.GetValueNames().size(), hostileTexts.size() + 5);
    EXPECT_TRUE(root.ReadString(L"OfTheRoot", value));
    EXPECT_EQ(value, L"too");
}

TEST_P(ProfileTest, KeepsKeysOfAnyName)
{
    for (const std::wstring& name : hostileTexts) {
        const YProfileKey key(root, name.c_str());
        const YProfileKey below(key, name.c_str());
        EXPECT_TRUE(below.WriteString(L"Name", name.c_str())) << below.GetLastResult().GetText();
    }
    Reopen();
    std::vector<std::wstring> expected = hostileTexts;
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(GetChildren(root), expected);
    for (const std::wstring& name : hostileTexts) {
        const YProfileKey key(root, name.c_str(), YProfileKey::openExisting);
        EXPECT_EQ(GetChildren(key), std::vector{name});
        const YProfileKey below(key, name.c_str(), YProfileKey::openExisting);
        YUnicodeString value;
        EXPECT_TRUE(below.ReadString(L"Name", value));
        EXPECT_EQ(value, name.c_str());
    }
}

TEST_P(ProfileTest, TellsWhatIsMissingFromWhatIsOfAnotherKind)
{
    const YProfileKey key(root, L"Key");
    key.WriteDWORD(L"Value", 1);
    YUnicodeString text = L"before";
    std::vector<BYTE> bytes = {1};
    DWORD number = 7;
    EXPECT_FALSE(key.ReadString(L"Value", text));
    EXPECT_EQ(CodeOf(key), DWORD{ERROR_DATATYPE_MISMATCH});
    EXPECT_FALSE(key.ReadBinary(L"Value", bytes));
    EXPECT_EQ(CodeOf(key), DWORD{ERROR_DATATYPE_MISMATCH});
    EXPECT_FALSE(key.ReadDWORD(L"None", number));
    EXPECT_EQ(CodeOf(key), DWORD{ERROR_FILE_NOT_FOUND});
    key.WriteString(L"value", L"a text of some length");  // the same name
    EXPECT_FALSE(key.ReadDWORD(L"VALUE", number));
    EXPECT_EQ(CodeOf(key), DWORD{ERROR_DATATYPE_MISMATCH});
    EXPECT_EQ(key.GetValueNames().size(), 1u);
    EXPECT_TRUE(text == L"before" && bytes == std::vector<BYTE>{1} && number == 7);
    EXPECT_TRUE(key.DeleteValue(L"Value"));
    EXPECT_FALSE(key.DeleteValue(L"Value"));
    EXPECT_EQ(CodeOf(key), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_P(ProfileTest, OpensOnlyWhatIsThereUnlessToldToMakeIt)
{
    for (const YProfileKey& parent : {root, YProfileKey(root, L"Parent")}) {
        EXPECT_EQ(CodeOf(YProfileKey(parent, L"None", YProfileKey::openExisting)),
                  DWORD{ERROR_FILE_NOT_FOUND});
        EXPECT_EQ(CodeOf(YProfileKey(parent, L"")), DWORD{ERROR_INVALID_PARAMETER});
        EXPECT_FALSE(parent.DeleteKey(L"None"));
        EXPECT_FALSE(parent.DeleteKey(L""));
    }
    Reopen();
    EXPECT_EQ(GetChildren(root), std::vector<std::wstring>{L"Parent"});
}

TEST_P(ProfileTest, DeletesAKeyWithAllBelowItAndItsOpenObjectsLeadNowhere)
{
    for (const YProfileKey& parent : {root, YProfileKey(root, L"Parent")}) {
        const YProfileKey key(parent, L"Key");
        const YProfileKey below(key, L"Below");
        below.WriteDWORD(L"Value", 1);
        EXPECT_TRUE(key.Flush());
        EXPECT_TRUE(parent.DeleteKey(L"Key"));
        EXPECT_FALSE(below.WriteDWORD(L"Value", 2));
        EXPECT_FALSE(key.WriteDWORD(L"Value", 2));
        EXPECT_FALSE(YProfileKey(key, L"Other").IsOpen());
        const YProfileKey again(parent, L"Key");
        EXPECT_TRUE(again.GetValueNames().empty());
        EXPECT_TRUE(GetChildren(again).empty());
        EXPECT_TRUE(again.WriteDWORD(L"New", 3));
    }
    Reopen();
    const YProfileKey key(YProfileKey(root, L"Parent"), L"Key", YProfileKey::openExisting);
    EXPECT_EQ(ReadNumber(key, L"New"), 3u);
    EXPECT_TRUE(GetChildren(key).empty());
}

TEST_P(ProfileTest, ThreadsWithProfilesOfTheirOwnLoseNothing)
{
    constexpr DWORD count = 50;
    const auto write = [this](const wchar_t* prefix) {
        for (DWORD i = 1; i <= count; ++i) {
            const YProfileKey key(OpenRoot(*factory), L"Shared");
            const std::wstring name = prefix + std::to_wstring(i);
            if (!key.WriteDWORD(name.c_str(), i) || ReadNumber(key, name.c_str()) != i) {
                return false;
            }
        }
        return true;
    };
    const YProfileKey open(root, L"Shared");  // else each turn would save
    std::future<bool> other = std::async(std::launch::async, write, L"a");
    EXPECT_TRUE(write(L"b"));
    EXPECT_TRUE(other.get());
    EXPECT_EQ(open.GetValueNames().size(), 2 * count);
}

INSTANTIATE_TEST_SUITE_P(Backends, ProfileTest,
                         testing::Values(BackendCase{"Folder", &MakeFolderFactory},
                                         BackendCase{"Registry", &MakeRegistryFactory}),
                         CaseName());

}  // namespace
