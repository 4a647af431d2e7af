#include "KeyNames.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(KeyNames, OrdinaryNamesStayReadable)
{
    EXPECT_EQ(GetKeyFileName(L"BRNKMenuToolbarV3"), L"BRNKMenuToolbarV3.ini");
    EXPECT_EQ(GetKeyFileName(L"My caf\u00E9, 2.0"), L"My caf\u00E9, 2.0.ini");
    EXPECT_EQ(GetRegistryName(L"a.b/c"), L"a.b/c");
}

TEST(KeyNames, NoNameLeadsOutOfTheFolderOrToAnotherFile)
{
    EXPECT_EQ(GetKeyFileName(L".."), L".%2e.ini");
    EXPECT_EQ(GetKeyFileName(L"..\\x"), L"..%5cx.ini");
    EXPECT_EQ(GetKeyFileName(L"C:\\x"), L"C%3a%5cx.ini");
    EXPECT_EQ(GetKeyFileName(L"nul.txt"), L"%6eul.txt.ini");
    EXPECT_EQ(GetKeyFileName(L"settings"), L"%73ettings.ini");
    EXPECT_EQ(GetKeyFileName(std::wstring(300, L'x')), std::nullopt);
    EXPECT_EQ(GetKeyFileName(std::wstring(100, L':')), std::nullopt);
    EXPECT_EQ(GetRegistryName(L"a\\b%"), L"a%5cb%25");
}

TEST(KeyNames, FilesThatAreNoKeysAreNotTakenForSome)
{
    EXPECT_EQ(GetFileKeyName(L"a%2fb.INI"), L"a/b");
    for (const wchar_t* file : {L"Settings.ini", L".ini", L"x.ini.tmp", L"x.ini.lock", L"x.ini.bad",
                                L"%41.ini", L"100%.ini", L"%zz.ini", L"%u12.ini", L"%00.ini"}) {
        EXPECT_EQ(GetFileKeyName(file), std::nullopt) << std::wstring(file).size();
    }
}

}  // namespace
