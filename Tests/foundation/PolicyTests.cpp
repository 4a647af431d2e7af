#include "ScratchRegistry.h"
#include "YPolicy.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

namespace {

using namespace std::string_literals;

constexpr wchar_t name[] = L"Value";

// In the order of their weight.
const std::array<std::pair<HKEY, std::wstring>, 5> places{{
    {HKEY_LOCAL_MACHINE, L"Software\\Policies\\Orlith"},
    {HKEY_CURRENT_USER, L"Software\\Policies\\Orlith"},
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Orlith\\Global"},
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Orlith\\Brannock\\Options"},
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Orlith Technologies\\Brannock 3.0\\Options"},
}};

enum State { Zero, One, Absent, Wrong, stateCount };
using States = std::array<int, 5>;

void Play(std::size_t place, int state)
{
    const auto& [root, path] = places[place];
    ::RegDeleteKeyValueW(root, path.c_str(), name);
    if (state == Wrong) {  // the type of a text, or the size
        ScratchRegistry::Set(root, path, name, place % 2 == 0 ? REG_SZ : REG_DWORD, "1\0"s);
    } else if (state != Absent) {
        ScratchRegistry::SetNumber(root, path, name, state == One);
    }
}

DWORD Predict(const States& states, std::size_t count)
{
    for (std::size_t place = 0; place < count; ++place) {
        if (states[place] <= One) {
            return states[place] == One;
        }
    }
    return 7;
}

// All combinations of the places from this one on.
void CheckFrom(std::size_t place, States& states)
{
    if (place == places.size()) {
        ASSERT_EQ(GetPolicyDWORD(name, L"Brannock", L"Options", 7), Predict(states, 5))
            << testing::PrintToString(states);
        ASSERT_EQ(GetPolicyDWORD(name, nullptr, nullptr, 7), Predict(states, 3))
            << testing::PrintToString(states);
        return;
    }
    for (states[place] = 0; states[place] < stateCount; ++states[place]) {
        Play(place, states[place]);
        ASSERT_NO_FATAL_FAILURE(CheckFrom(place + 1, states));
    }
}

class YPolicyTest : public testing::Test
{
protected:
    ScratchRegistry registry;
};

}  // namespace

TEST_F(YPolicyTest, FirstPlaceThatHoldsANumberDecides)
{
    States states{};
    CheckFrom(0, states);
}

TEST_F(YPolicyTest, OldPlaceCountsForTheTerminalOnly)
{
    for (const auto& [product, isTerminal] :
         std::initializer_list<std::pair<std::wstring, bool>>{{L"Brannock", true},
                                                              {L"bRANNOCK Pro", true},
                                                              {L"Brannoc", false},
                                                              {L"Quillet", false}}) {
        ScratchRegistry::MakeKey(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Orlith\\" + product);
        ScratchRegistry::SetNumber(
            HKEY_LOCAL_MACHINE, L"SOFTWARE\\Orlith Technologies\\" + product + L" 3.0\\A", name, 2);
        EXPECT_EQ(GetPolicyBool(name, product.c_str(), L"A", false), isTerminal) << product;
        EXPECT_TRUE(GetPolicyBool(name, product.c_str(), L"A", true));
    }
}

TEST_F(YPolicyTest, ProductIsWhereItsKeyIs)
{
    for (const std::wstring product : {L"Brannock", L"Quillet"}) {
        const std::wstring current = L"SOFTWARE\\Orlith\\" + product;
        const std::wstring old =
            L"SOFTWARE\\Orlith Technologies\\" + product + (product == L"Brannock" ? L" 3.0" : L"");
        EXPECT_EQ(GetProductKeyPath(product.c_str()), YUnicodeString(current));
        ScratchRegistry::MakeKey(HKEY_CURRENT_USER, old);
        EXPECT_EQ(GetProductKeyPath(product.c_str()), YUnicodeString(old));
        ScratchRegistry::MakeKey(HKEY_CURRENT_USER, current);
        EXPECT_EQ(GetProductKeyPath(product.c_str()), YUnicodeString(current));
        ScratchRegistry::MakeKey(HKEY_LOCAL_MACHINE, old);
        EXPECT_EQ(GetProductKeyPath(product.c_str()), YUnicodeString(old));
        ScratchRegistry::MakeKey(HKEY_LOCAL_MACHINE, current);
        EXPECT_EQ(GetProductKeyPath(product.c_str()), YUnicodeString(current));
    }
}

TEST_F(YPolicyTest, ValidatedCryptographyForbidsTheTlsLibraryUnlessExempt)
{
    EXPECT_TRUE(YIsTlsLibraryAllowed());
    for (const auto& [demanded, exempt, isAllowed] :
         {std::array<DWORD, 3>{0, 0, 1}, {0, 1, 1}, {1, 0, 0}, {2, 1, 1}}) {
        ScratchRegistry::SetNumber(places[1].first, places[1].second, L"Enable FIPS Mode",
                                   demanded);
        ScratchRegistry::SetNumber(places[1].first, places[1].second, L"Ignore FIPS Mode for TLS",
                                   exempt);
        EXPECT_EQ(YIsTlsLibraryAllowed(), isAllowed == 1) << demanded << exempt;
    }
}
