// Endpoints: what is taken for an address, how it compares, counts and is written.
#include "YAddress.h"

#include "YAddressIPv4.h"
#include "YAddressIPv6.h"
#include "YUnknownPointer.h"
#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <utility>

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
        {"255.255.255.255", L"255.255.255.255:22"},
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

TEST(MakeNumericAddress, EmptyTextIsTheWildcard)
{
    for (const char* host : {"", static_cast<const char*>(nullptr)}) {
        const Address any = Numeric(host, 8080);
        ASSERT_TRUE(any);
        EXPECT_TRUE(any->IsAny());
        EXPECT_EQ(any->GetPort(), 8080);
    }
}

TEST(MakeAddress, KnowsTwoFamilies)
{
    for (const auto& [family, length, text] :
         {std::tuple{AF_INET, 16, L"0.0.0.0:0"}, std::tuple{AF_INET6, 28, L"[::]:0"}}) {
        const auto made = Address::Adopt(MakeAddress(family));
        const sockaddr* address = nullptr;
        int bytes = 0;
        EXPECT_TRUE(made->IsValid());
        EXPECT_TRUE(made->GetSockAddr(&address, &bytes));
        EXPECT_EQ(address->sa_family, family);
        EXPECT_EQ(bytes, length);
        EXPECT_EQ(made->GetAddressFamily(), family);
        EXPECT_EQ(made->GetSocketType(), SOCK_STREAM);
        EXPECT_EQ(made->GetProtocol(), IPPROTO_TCP);
        EXPECT_EQ(TextOf(made), text);
    }
    EXPECT_EQ(MakeAddress(AF_UNSPEC), nullptr);
    EXPECT_EQ(MakeAddress(AF_UNIX), nullptr);
}

// Some systems write the interface's name.
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
        EXPECT_TRUE(TextOf(scoped).starts_with(L"[fe80::1%")) << TextOf(scoped);
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
        unsigned short leftPort;
        const char* right;
        unsigned short rightPort;
        unsigned prefixBits;
        bool inSubnet, equal;
    } cases[] = {{"10.0.0.1", 0, "10.0.0.1", 22, 32, true, true},
                 {"10.0.0.1", 23, "10.0.0.1", 22, 0, false, false},
                 {"10.0.0.1", 0, "10.0.1.1", 0, 24, false, false},
                 {"10.0.0.1", 0, "10.0.1.1", 0, 23, true, false},
                 {"10.0.0.1", 0, "10.0.2.1", 0, 23, false, false},
                 {"10.0.0.1", 0, "10.0.0.2", 0, 40, false, false},
                 {"192.0.2.5", 0, "::ffff:192.0.2.5", 0, 0, false, false},
                 {"2001:db8::1", 0, "2001:db9::1", 0, 31, true, false},
                 {"2001:db8::1", 0, "2001:db9::1", 0, 32, false, false},
                 {"::1", 1, "::2", 0, 200, false, false},
                 {"fe80::1%3", 0, "fe80::1%4", 0, 10, false, false},
                 {"fe80::1%3", 0, "fe80::1", 0, 10, true, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.left) + " " + c.right);
        const Address left = Numeric(c.left, c.leftPort);
        const Address right = Numeric(c.right, c.rightPort);
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
        bool counted;
        const wchar_t* next;
    } cases[] = {{"10.0.255.255", true, L"10.1.0.0"},
                 {"255.255.255.255", false, L"255.255.255.255"},
                 {"2001:db8::ffff", true, L"2001:db8::1:0"},
                 {"feff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", true, L"ff00::"},
                 {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", false, L"ff00::"}};
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
        EXPECT_FALSE(address->Equals(address.Get()) || address->IsInSubnet(address.Get(), 0));
        EXPECT_FALSE(same->Equals(address.Get()) || same->LessThan(address.Get()));
        EXPECT_FALSE(address->IsAny() || address->IsLoopback() || address->Increment());
        EXPECT_EQ(TextOf(address), L"");
        const void* bytes = "";
        unsigned length = 1;
        EXPECT_FALSE(address->GetRawAddress(&bytes, &length));
        EXPECT_EQ(bytes, nullptr);
        EXPECT_EQ(length, 0u);
        address->SetPort(80);
        EXPECT_EQ(address->GetPort(), 0);
    }
    EXPECT_FALSE(kinds[0]->SetRawAddress("0123456789abcdef", 16));
    EXPECT_TRUE(kinds[0]->SetRawAddress("\x7F\0\0\x02", 4));
    EXPECT_TRUE(kinds[0]->IsLoopback());
    EXPECT_EQ(TextOf(kinds[0]), L"127.0.0.2:22");
    EXPECT_FALSE(kinds[1]->SetRawAddress("\x7F\0\0\x02", 4));
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
                 {AF_INET, "127.1", L"127.1", L""},
                 {AF_INET, "", L"", L""},
                 {AF_INET6, "", L"", L""},
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

TEST(Address, TakesTypeAndProtocolFromALookUp)
{
    sockaddr_in socketAddress{};
    socketAddress.sin_family = AF_INET;
    addrinfo record{};
    record.ai_socktype = SOCK_DGRAM;
    record.ai_protocol = IPPROTO_UDP;
    record.ai_addr = reinterpret_cast<sockaddr*>(&socketAddress);
    record.ai_addrlen = sizeof socketAddress;
    const auto address = YUnknownPointer<YAddressIPv4>::Make();
    EXPECT_TRUE(address->SetFromAddrInfo(&record));
    EXPECT_EQ(address->GetSocketType(), SOCK_DGRAM);
    EXPECT_EQ(address->GetProtocol(), IPPROTO_UDP);
    record.ai_socktype = SOCK_RAW;
    record.ai_addrlen = 4;
    EXPECT_FALSE(address->SetFromAddrInfo(&record));
    EXPECT_EQ(address->GetSocketType(), SOCK_DGRAM);
    EXPECT_FALSE(address->SetFromAddrInfo(nullptr));
}

INT WSAAPI RefuseName(const SOCKADDR*, socklen_t, PWCHAR, DWORD, PWCHAR, DWORD, INT)
{
    return WSANO_RECOVERY;
}

int WSAAPI RefuseLookUp(const char*, const char*, const addrinfo*, addrinfo**)
{
    return WSANO_RECOVERY;
}

TEST(Address, FailingSystemGivesNoAddressAndNoText)
{
    const Address address = Numeric("::1", 22);
    const ImportHook names(L"CommonUi.dll", "ws2_32.dll", "GetNameInfoW", &RefuseName);
    const ImportHook lookUps(L"CommonUi.dll", "ws2_32.dll", "getaddrinfo", &RefuseLookUp);
    EXPECT_EQ(TextOf(address), L"");
    EXPECT_EQ(MakeNumericAddress("", 1), nullptr);
    EXPECT_FALSE(address->SetFromText("::1", 22));
}

}  // namespace
