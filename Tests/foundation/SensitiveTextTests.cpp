// Text that must not linger, in both widths: searched for in all memory of this process.
#include "YString.h"
#include "YUnicodeString.h"
#include "support/MemorySearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace {

template <class Text>
using UnitOf = decltype(Text()[0]);

// A text that stands nowhere but where it was put. It is longer than all vector registers together:
// the system saves those wherever it likes, with what the last copy moved through them.
template <class Text>
class Secret
{
public:
    static constexpr unsigned length = 200;  // units

    explicit Secret(unsigned number) : seed(number) {}

    void AppendTo(Text& text, int times) const
    {
        for (int i = 0; i < times; ++i) {
            for (unsigned unit = 0; unit < length; ++unit) {
                text += UnitAt(unit);
            }
        }
    }

    // How often it stands in this process's memory.
    unsigned Count() const
    {
        return CountInMemory<UnitOf<Text>>(length, [this](const volatile UnitOf<Text>* text) {
            unsigned matched = 0;
            while (matched < length && text[matched] == UnitAt(matched)) {
                ++matched;
            }
            return matched == length;
        });
    }

private:
    UnitOf<Text> UnitAt(unsigned index) const
    {
        return static_cast<UnitOf<Text>>(0x4E00 + (seed + index * 7919) % 4093);
    }

    unsigned seed;
};

// An ASCII text in the width of a string.
template <class Text>
class Literal
{
public:
    explicit Literal(const char* text)
    {
        std::copy_n(text, std::char_traits<char>::length(text), units.begin());
    }
    operator const UnitOf<Text>*() const { return units.data(); }

private:
    std::array<UnitOf<Text>, 32> units{};
};

template <class Text>
class SensitiveText : public testing::Test
{};
using Texts = testing::Types<YString, YUnicodeString>;
TYPED_TEST_SUITE(SensitiveText, Texts);

}  // namespace

// The search finds what is there, and ordinary text does stay behind.
TYPED_TEST(SensitiveText, OrdinaryTextIsLeftInMemory)
{
    const Secret<TypeParam> secret(1);
    {
        TypeParam text;
        secret.AppendTo(text, 50);
        EXPECT_GE(secret.Count(), 50u);
    }
    EXPECT_GT(secret.Count(), 0u);
}

TYPED_TEST(SensitiveText, IsWipedByDestructionAssignmentAndGrowth)
{
    const Secret<TypeParam> secret(2);
    {
        TypeParam text(Str::Sensitive);
        secret.AppendTo(text, 30);  // through many blocks
        EXPECT_EQ(secret.Count(), 30u);
        TypeParam copy = text;
        EXPECT_TRUE(copy.IsSensitive());
        EXPECT_EQ(secret.Count(), 60u);
        text = Literal<TypeParam>("something else");
        EXPECT_EQ(secret.Count(), 30u);
        const TypeParam moved = std::move(copy);
        EXPECT_EQ(secret.Count(), 30u);
        text = moved;
        text.Clear();
        EXPECT_EQ(secret.Count(), 30u);
    }
    EXPECT_EQ(secret.Count(), 0u);
}

// A few units live in the object itself.
TYPED_TEST(SensitiveText, ShortTextIsWipedInsideTheObject)
{
    const Literal<TypeParam> key("key");
    const Literal<TypeParam> pin("pin");
    alignas(TypeParam) std::array<unsigned char, sizeof(TypeParam)> place{};
    const auto holds = [&](const UnitOf<TypeParam>* text) {
        const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
        return std::search(place.begin(), place.end(), bytes,
                           bytes + 3 * sizeof(UnitOf<TypeParam>)) != place.end();
    };
    auto* const text = new (place.data()) TypeParam(key, Str::Sensitive);
    EXPECT_TRUE(holds(key));
    text->Append(static_cast<const UnitOf<TypeParam>*>(Literal<TypeParam>("0123456789abcdef")));
    EXPECT_FALSE(holds(key));  // moved to a block
    *text = pin;
    EXPECT_TRUE(holds(pin));
    TypeParam moved = std::move(*text);
    EXPECT_FALSE(holds(pin));
    *text = moved;
    text->~TypeParam();
    EXPECT_FALSE(holds(pin));
}
