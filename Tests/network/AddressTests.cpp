// Endpoints: what is taken for an address, how it compares, counts and is written.
#include "YAddress.h"

#include "IInternetAddress.h"
#include "YUnknownPointer.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include <ws2tcpip.h>

namespace {

using Address = YUnknownPointer<IInternetAddress>;

std::wstring TextOf(const Address& address, bool withPort = true)
{
    return address ? std::wstring(address->ToString(withPort).c_str()) : L"none";
}

Address Numeric(const char* host, unsigned short port = 0)
{
    return Address::Adopt(MakeNumericAddress(host, port));
}

sockaddr_in6 ScopedSockAddr(unsigned long scope)
{
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = ::htons(22);
    address.sin6_addr.s6_addr[0] = 0xFE;
    address.sin6_addr.s6_addr[1] = 0x80;
    address.sin6_addr.s6_addr[15] = 1;
    address.sin6_scope_id = scope;
    return address;
}

template <class Record>
Address FromSockAddr(const Record& record, int length = sizeof(Record))
{
    return Address::Adopt(
        MakeAddressFromSockAddr(reinterpret_cast<const sockaddr*>(&record), length));
}

TEST(MakeNumericAddress, TakesAddressesOnly)
{
    constexpr std::pair<const char*, const wchar_t*> addresses[] = {
        {"127.0.0.1", L"127.0.0.1:22"},
        {"2001:DB8:0:0::5", L"[2001:db8::5]:22"},
        {"::ffff:192.0.2.5", L"[::ffff:192.0.2.5]:22"}};
    for (const auto& [host, text] : addresses) {
        EXPECT_EQ(TextOf(Numeric(host, 22)), text);
    }
    for (const char* host : {"127.1", "1.2.3.4.5", "10.0.0.1x", "10.0.0.1 ", "1.2.3.", "1.2.3.4.",
                             "127.0.0.0x1", "1.2.3.256", "localhost", ".", "1::2::3"}) {
        EXPECT_EQ(TextOf(Numeric(host, 22)), L"none") << host;
    }
}

unsigned long ScopeOf(const Address& address)
{
    const sockaddr* record = nullptr;
    int length = 0;
    address->GetSockAddr(&record, &length);
    return reinterpret_cast<const sockaddr_in6*>(record)->sin6_scope_id;
}

TEST(Address, ScopeStaysWithItsAddress)
{
    for (const Address& scoped : {Numeric("fe80::1%3", 22), FromSockAddr(ScopedSockAddr(3))}) {
        ASSERT_TRUE(scoped);
        EXPECT_EQ(ScopeOf(scoped), 3u);
        EXPECT_TRUE(scoped->SetRawAddress("0123456789abcdef", 16));
        EXPECT_EQ(ScopeOf(scoped), 0u);
    }
}

TEST(MakeAddressFromSockAddr, WantsAWholeRecord)
{
    const sockaddr_in6 whole = ScopedSockAddr(3);
    for (const int length : {-1, 0, 1, int{sizeof(sockaddr_in)}, int{sizeof whole} - 1}) {
        EXPECT_EQ(TextOf(FromSockAddr(whole, length)), L"none") << length;
    }
    EXPECT_EQ(MakeAddressFromSockAddr(nullptr, sizeof whole), nullptr);
}

TEST(Address, ComparesTheSameFromBothSides)
{
    const struct
    {
        const char* left;
        unsigned leftPort;
        const char* right;
        unsigned rightPort;
        unsigned prefixBits;
        bool inSubnet, equal;
    } cases[] = {{"10.0.0.1", 0, "10.0.0.1", 22, 32, true, true},
                 {"10.0.0.1", 23, "10.0.0.1", 22, 0, false, false},
                 {"10.0.0.1", 0, "10.0.1.1", 0, 23, true, false},
                 {"192.0.2.5", 0, "::ffff:192.0.2.5", 0, 0, false, false},
                 {"2001:db8::1", 0, "2001:db9::1", 0, 32, false, false},
                 {"::1", 1, "::2", 0, 200, false, false},
                 {"fe80::1%3", 0, "fe80::1%4", 0, 10, false, false},
                 {"fe80::1%3", 0, "fe80::1", 0, 10, true, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.left) + " " + c.right);
        const Address left = Numeric(c.left, static_cast<unsigned short>(c.leftPort));
        const Address right = Numeric(c.right, static_cast<unsigned short>(c.rightPort));
        EXPECT_EQ(left->IsInSubnet(right.Get(), c.prefixBits), c.inSubnet);
        EXPECT_EQ(right->IsInSubnet(left.Get(), c.prefixBits), c.inSubnet);
        EXPECT_EQ(left->Equals(right.Get()), c.equal);
        EXPECT_EQ(right->Equals(left.Get()), c.equal);
    }
}

TEST(Address, IncrementIsLargerByOne)
{
    const struct
    {
        const char* from;
        const wchar_t* next;
        bool counted;
    } cases[] = {{"10.0.255.255", L"10.1.0.0", true},
                 {"255.255.255.255", L"255.255.255.255", false},
                 {"feff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", L"ff00::", true},
                 {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", L"ff00::", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.from);
        const Address before = Numeric(c.from, 7);
        const Address after = Numeric(c.from, 7);
        EXPECT_EQ(after->Increment(), c.counted);
        EXPECT_EQ(TextOf(after, false), c.next);
        EXPECT_EQ(after->GetPort(), 7);
        EXPECT_EQ(before->LessThan(after.Get()), c.counted);
        EXPECT_FALSE(after->LessThan(after.Get()));
    }
}

TEST(Address, FailedSetLeavesItInvalidAndSilent)
{
    const Address kinds[] = {Numeric("192.0.2.5", 22), Numeric("2001:db8::5", 22)};
    for (const Address& address : kinds) {
        const Address same = Numeric("192.0.2.5");
        EXPECT_FALSE(address->SetFromText("no address", 1));
        EXPECT_FALSE(address->IsValid());
        EXPECT_FALSE(address->Equals(address.Get()) || same->LessThan(address.Get()));
        EXPECT_FALSE(address->IsAny() || address->IsLoopback() || address->Increment());
        EXPECT_EQ(TextOf(address), L"");
    }
    EXPECT_FALSE(kinds[0]->SetRawAddress("0123456789abcdef", 16));
    EXPECT_TRUE(kinds[0]->SetRawAddress("\x7F\0\0\x02", 4));
    EXPECT_TRUE(kinds[0]->IsLoopback());
    EXPECT_EQ(TextOf(kinds[0]), L"127.0.0.2:22");
    EXPECT_TRUE(kinds[1]->SetRawAddress("0123456789abcdef", 16));
    EXPECT_EQ(TextOf(kinds[1], false), L"3031:3233:3435:3637:3839:6162:6364:6566");
}

TEST(Address, TextIsReadAlikeInBothForms)
{
    const struct
    {
        int family;
        const char* text;
        const wchar_t* wide;
        const wchar_t* written;
    } cases[] = {{AF_INET, "192.0.2.5", L"192.0.2.5", L"192.0.2.5:65535"},
                 {AF_INET6, "::FFFF:1.2.3.4", L"::FFFF:1.2.3.4", L"[::ffff:1.2.3.4]:65535"},
                 {AF_INET, "::1", L"::1", L""},
                 {AF_INET6, "127.0.0.1", L"127.0.0.1", L""},
                 {AF_INET, "", L"", L""},
                 {AF_INET6, nullptr, nullptr, L""},
                 // U+0131 must not lose its upper byte: it would be a "1".
                 {AF_INET, "127.0.0.\xB1", L"127.0.0.\u0131", L""}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text ? c.text : "null");
        const auto narrow = Address::Adopt(MakeAddress(c.family));
        const auto wide = Address::Adopt(MakeAddress(c.family));
        const bool isAddress = *c.written != L'\0';
        EXPECT_EQ(narrow->SetFromText(c.text, 65535), isAddress);
        EXPECT_EQ(wide->SetFromText(c.wide, 65535), isAddress);
        EXPECT_EQ(TextOf(narrow), c.written);
        EXPECT_EQ(TextOf(wide), c.written);
    }
}

TEST(Address, LoopbackIsOneBlockOrOneAddress)
{
    for (const char* host : {"127.0.0.1", "127.255.255.254", "::1"}) {
        EXPECT_TRUE(Numeric(host)->IsLoopback()) << host;
    }
    for (const char* host : {"128.0.0.1", "0.0.0.0", "::", "::2", "::ffff:127.0.0.1"}) {
        EXPECT_FALSE(Numeric(host)->IsLoopback()) << host;
    }
}

}  // namespace
