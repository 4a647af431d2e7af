#include "YUnicodeString.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <new>
#include <string>
#include <utility>

TEST(YUnicodeString, ConvertsCodePages)
{
    EXPECT_STREQ(YUnicodeString::FromBytes("\x93 \x80", 1252).c_str(), L"\x201C \x20AC");
    EXPECT_EQ(YUnicodeString(L"\x201C \x20AC").ToBytes(1252), "\x93 \x80");
    EXPECT_EQ(YUnicodeString(L"\xD83D\xDE00").ToBytes(CP_UTF8), "\xF0\x9F\x98\x80");
    EXPECT_EQ(YUnicodeString(L"\x4E2D").ToBytes(1252), "?");
    EXPECT_EQ(YUnicodeString().ToBytes(), "");
    EXPECT_TRUE(YUnicodeString::FromBytes("").IsEmpty());
}

TEST(YUnicodeString, DecodesEveryCharacterOfUtf8)
{
    for (char32_t character = 1; character < 0x110000; character += character < 0x900 ? 1 : 251) {
        if (character >= 0xD800 && character < 0xE000) {
            continue;
        }
        std::wstring units(1, static_cast<wchar_t>(character));
        if (character >= 0x10000) {
            units = {static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10)),
                     static_cast<wchar_t>(0xDC00 + (character & 0x3FF))};
        }
        const YUnicodeString text(units);
        ASSERT_EQ(YUnicodeString::FromUtf8(text.ToBytes(CP_UTF8)), text)
            << static_cast<unsigned>(character);
    }
}

TEST(YUnicodeString, RefusesWhatIsNotUtf8)
{
    for (const char* bytes :
         {"a\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2\x41", "\xC2\xC2\x80",
          "\xE0\x9F\xBF", "\xE2\x82", "\xE2\x82\x41", "\xED\xA0\x80", "\xED\xBF\xBF",
          "\xF0\x8F\xBF\xBF", "\xF0\x9F\x98", "\xF0\x9F\x98\x41", "\xF4\x90\x80\x80",
          "\xF5\x80\x80\x80", "\xFE", "\xFF"}) {
        EXPECT_THROW(YUnicodeString::FromUtf8(bytes), IllegalSequence) << bytes;
    }
}

namespace {

// A text that stands nowhere but where it was put. It is longer than all vector registers together:
// the system saves those wherever it likes, with what the last copy moved through them.
class Secret
{
public:
    static constexpr unsigned length = 200;

    explicit Secret(unsigned number) : seed(number) {}

    void AppendTo(YUnicodeString& text, int times) const
    {
        for (int i = 0; i < times; ++i) {
            for (unsigned unit = 0; unit < length; ++unit) {
                text += UnitAt(unit);
            }
        }
    }

    // How often it stands in this process's memory.
    int Count() const
    {
        int found = 0;
        MEMORY_BASIC_INFORMATION region{};
        for (const char* at = nullptr; ::VirtualQuery(at, &region, sizeof(region));
             at = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
            if (region.State == MEM_COMMIT && region.Protect == PAGE_READWRITE) {
                found += CountIn(static_cast<const wchar_t*>(region.BaseAddress),
                                 region.RegionSize / sizeof(wchar_t));
            }
        }
        return found;
    }

private:
    wchar_t UnitAt(unsigned index) const
    {
        return static_cast<wchar_t>(0x4E00 + (seed + index * 7919) % 4096);
    }

    int CountIn(const volatile wchar_t* text, std::size_t size) const
    {
        int found = 0;
        for (std::size_t i = 0; i + length <= size; ++i) {
            unsigned matched = 0;
            while (matched < length && text[i + matched] == UnitAt(matched)) {
                ++matched;
            }
            found += matched == length;
        }
        return found;
    }

    unsigned seed;
};

}  // namespace

// The search finds what is there, and ordinary text does stay behind.
TEST(SensitiveText, OrdinaryTextIsLeftInMemory)
{
    const Secret secret(1);
    {
        YUnicodeString text;
        secret.AppendTo(text, 50);
        EXPECT_GE(secret.Count(), 50);
    }
    EXPECT_GT(secret.Count(), 0);
}

TEST(SensitiveText, IsWipedByDestructionAssignmentAndGrowth)
{
    const Secret secret(2);
    {
        YUnicodeString text(Str::Sensitive);
        secret.AppendTo(text, 30);  // through many blocks
        EXPECT_EQ(secret.Count(), 30);
        YUnicodeString copy = text;
        EXPECT_TRUE(copy.IsSensitive());
        EXPECT_EQ(secret.Count(), 60);
        text = L"something else";
        EXPECT_EQ(secret.Count(), 30);
        const YUnicodeString moved = std::move(copy);
        EXPECT_EQ(secret.Count(), 30);
        text = moved;
        text.Clear();
        EXPECT_EQ(secret.Count(), 30);
    }
    EXPECT_EQ(secret.Count(), 0);
}

// Up to seven units live in the object itself.
TEST(SensitiveText, ShortTextIsWipedInsideTheObject)
{
    alignas(YUnicodeString) std::array<unsigned char, sizeof(YUnicodeString)> place{};
    const auto holds = [&](const wchar_t* text) {
        const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
        return std::search(place.begin(), place.end(), bytes, bytes + 3 * sizeof(wchar_t)) !=
               place.end();
    };
    auto* const text = new (place.data()) YUnicodeString(L"key", Str::Sensitive);
    EXPECT_TRUE(holds(L"key"));
    text->Append(L"0123456789");  // moves to a block
    EXPECT_FALSE(holds(L"key"));
    *text = L"pin";
    EXPECT_TRUE(holds(L"pin"));
    YUnicodeString moved = std::move(*text);
    EXPECT_FALSE(holds(L"pin"));
    *text = moved;
    text->~YUnicodeString();
    EXPECT_FALSE(holds(L"pin"));
}
