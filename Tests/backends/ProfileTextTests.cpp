// The text of a settings file: what it accepts, and that it notices when anything is missing.
#include "ProfileText.h"
#include "ProfileTree.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using namespace std::string_literals;

std::string Nest(unsigned depth)
{
    std::string path = "[a";
    for (unsigned i = 1; i < depth; ++i) {
        path += "\\a";
    }
    return path + "]";
}

TEST(ProfileText, RefusesWhatIsDamaged)
{
    for (const std::string& text :
         {""s, "\r\n \r\n"s, "; x\r\n"s, std::string(100, '\0'), "a=dword:1\r\n\0"s,
          "\xFF\xFE"s + "a\0=\0d\0"s,
          // No UTF-8.
          "a=\"\xE9\"\r\n"s, "a=\"\xED\xA0\x80\""s, "MZ\x90\0\x03"s,
          // No name, no value, no end.
          "a\r\n"s, "=dword:1"s, "a=text"s, "a=\"text"s, "a=\"x\" y"s, "a=\"\\q\""s, "a=\"\\u12\""s,
          "a=\"\\"s, "a=dword:"s, "a=dword:123456789"s, "a=hex:123"s, "a=hex:1g"s,
          // No section.
          "[a"s, "[]"s, "[a\\]"s, "[a]b"s, Nest(ProfileNode::maxDepth + 1)}) {
        EXPECT_EQ(ParseProfile(text), nullptr) << text;
    }
}

TEST(ProfileText, TakesWhatPeopleWrite)
{
    const auto good = ParseProfile("\xEF\xBB\xBF"
                                   "; by hand\n  a = dword:1F \n\t\"b\"=\"\\u0041\"\r\n\n"
                                   "[ Key \\ \"Sub\" ]\nc=hex:0aFF\nC=\"later\"\n[KEY] \nd=\"\"");
    ASSERT_NE(good, nullptr);
    EXPECT_EQ(good->GetValues().Find(L"A")->data, ProfileData(DWORD{0x1F}));
    EXPECT_EQ(good->GetValues().Find(L"b")->data, ProfileData(YUnicodeString(L"A")));
    const auto key = good->FindChild(L"key");
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->GetValues().Find(L"d")->data, ProfileData(YUnicodeString()));
    EXPECT_EQ(key->FindChild(L"Sub")->GetValues().Find(L"c")->data,
              ProfileData(YUnicodeString(L"later")));
    EXPECT_NE(ParseProfile(Nest(ProfileNode::maxDepth)), nullptr);
}

std::string FormatSmallProfile()
{
    ProfileNode root;
    root.Write(L"Number", DWORD{10});
    root.Write(L"Text", YUnicodeString(L"a\r\nb"));
    root.MakeChild(L"Key")->MakeChild(L"a\\b")->Write(L"Bytes", std::vector<BYTE>{1, 2});
    return FormatProfile(root);
}

TEST(ProfileText, IsReadableAndKeepsTheOrderOfMaking)
{
    EXPECT_EQ(FormatSmallProfile(), "; CommonUi settings, version 1\r\n"
                                    "Number=dword:0000000a\r\n"
                                    "Text=\"a\\r\\nb\"\r\n"
                                    "[Key]\r\n"
                                    "[Key\\\"a\\\\b\"]\r\n"
                                    "Bytes=hex:0102\r\n"
                                    "; end\r\n");
}

TEST(ProfileText, NoticesEveryTruncation)
{
    const std::string whole = FormatSmallProfile();
    ASSERT_NE(ParseProfile(whole), nullptr);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(IsWholeProfile(whole.substr(0, length)));
        const bool lacksLineEndOnly = length + 2 >= whole.size();
        EXPECT_EQ(ParseProfile(whole.substr(0, length)) != nullptr, lacksLineEndOnly) << length;
    }
}

// Damage may read as other settings, but what is read can always be written and read again.
TEST(ProfileText, SurvivesAnyDamage)
{
    std::mt19937 random(1);
    const std::string whole = FormatSmallProfile();
    int accepted = 0;
    for (int i = 0; i < 3000; ++i) {
        std::string text = whole;
        for (unsigned changes = 1 + random() % 3; changes > 0; --changes) {
            text[random() % text.size()] = static_cast<char>(random());
        }
        if (const auto root = ParseProfile(text)) {
            const std::string again = FormatProfile(*root);
            const auto reread = ParseProfile(again);
            ASSERT_NE(reread, nullptr) << again;
            EXPECT_EQ(FormatProfile(*reread), again);
            ++accepted;
        }
    }
    EXPECT_GT(accepted, 100);
}

}  // namespace
