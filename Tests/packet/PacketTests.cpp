#include "packet/PacketPair.h"
#include "support/CaseName.h"
#include "support/ImportHook.h"

#include "YBasicBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using PacketPointer = YUnknownPointer<YPacket>;

PacketPointer MakePacket(unsigned bytes = 0, bool sensitive = false)
{
    return PacketPointer::Make(bytes, sensitive);
}

// What may be read, without the first bytes.
Bytes ContentOf(YPacket& packet)
{
    Bytes bytes(packet.GetReadRemaining());
    EXPECT_TRUE(packet.ReadBytes(bytes.data(), packet.GetReadRemaining()));
    return bytes;
}

YUnknownPointer<IBuffer> TakeChunk(YPacket& packet)
{
    IBuffer* chunk = nullptr;
    unsigned offset = 0;
    packet.TakeNextChunk(&chunk, &offset);
    return YUnknownPointer<IBuffer>::Adopt(chunk);
}

}  // namespace

TEST(YPacketModel, AgreesAtEveryStep)
{
    for (unsigned seed = 1; seed <= 4; ++seed) {
        std::mt19937 random(seed);
        PacketPair pair([&](unsigned count) { return static_cast<unsigned>(random()) % count; });
        for (unsigned step = 1; step <= 40'000; ++step) {
            ASSERT_TRUE(pair.Step())
                << pair.GetLastStep() << ", step " << step << ", seed " << seed;
        }
    }
}

struct IntegerCase
{
    const char* name;
    void (*write)(YPacket& packet);
    Bytes big;  // the little one is the reverse
};

class YPacketInteger : public testing::TestWithParam<IntegerCase>
{};

TEST_P(YPacketInteger, IsWrittenInTheOrderThatIsSet)
{
    Bytes expected = GetParam().big;
    const auto packet = MakePacket();
    GetParam().write(*packet);
    EXPECT_EQ(ContentOf(*packet), expected);
    packet->SetLittleEndian();
    GetParam().write(*packet);
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(ContentOf(*packet), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Widths, YPacketInteger,
    testing::Values(
        IntegerCase{"Byte", [](YPacket& packet) { packet.WriteByte(0xFE); }, {0xFE}},
        IntegerCase{"Int16", [](YPacket& packet) { packet.WriteInt16(-2); }, {0xFF, 0xFE}},
        IntegerCase{"UInt16", [](YPacket& packet) { packet.WriteUInt16(0x0102); }, {1, 2}},
        IntegerCase{
            "Int32", [](YPacket& packet) { packet.WriteInt32(-2); }, {0xFF, 0xFF, 0xFF, 0xFE}},
        IntegerCase{
            "UInt32", [](YPacket& packet) { packet.WriteUInt32(0x01020304); }, {1, 2, 3, 4}},
        IntegerCase{"Int64",
                    [](YPacket& packet) { packet.WriteInt64(-2); },
                    {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE}},
        IntegerCase{"UInt64",
                    [](YPacket& packet) { packet.WriteUInt64(0x0102030405060708); },
                    {1, 2, 3, 4, 5, 6, 7, 8}}),
    CaseName());

struct TextCase
{
    const char* name;
    unsigned mode;
    Bytes narrow;  // "abc"
    Bytes wide;  // L"a" and the euro sign
};

class YPacketText : public testing::TestWithParam<TextCase>
{};

TEST_P(YPacketText, IsWrittenInItsFormAndReadBack)
{
    const TextCase& c = GetParam();
    const auto packet = MakePacket();
    ASSERT_TRUE(packet->WriteString("abc", c.mode));
    EXPECT_EQ(ContentOf(*packet), c.narrow);
    ASSERT_TRUE(packet->WriteString(L"a\x20AC", c.mode));
    EXPECT_EQ(ContentOf(*packet), c.wide);
    packet->RewindRead();
    std::string narrow;
    YUnicodeString wide;
    EXPECT_TRUE(packet->ReadString(narrow, c.mode, 3));
    EXPECT_TRUE(packet->ReadString(wide, c.mode, 2));
    EXPECT_EQ(narrow, "abc");
    EXPECT_EQ(wide, L"a\x20AC");
    EXPECT_EQ(packet->GetReadRemaining(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, YPacketText,
    testing::Values(
        TextCase{"FourBytes", 0, {0, 0, 0, 3, 'a', 'b', 'c'}, {0, 0, 0, 2, 0, 'a', 0x20, 0xAC}},
        TextCase{"TwoBytes", 1, {0, 3, 'a', 'b', 'c'}, {0, 2, 0, 'a', 0x20, 0xAC}},
        TextCase{"OneByte", 2, {3, 'a', 'b', 'c'}, {2, 0, 'a', 0x20, 0xAC}},
        TextCase{"ZeroByte", 3, {'a', 'b', 'c', 0}, {0, 'a', 0x20, 0xAC, 0, 0}},
        TextCase{"CrLf", 4, {'a', 'b', 'c', 13, 10}, {0, 'a', 0x20, 0xAC, 0, 13, 0, 10}},
        TextCase{"None", 5, {'a', 'b', 'c'}, {0, 'a', 0x20, 0xAC}}),
    CaseName());

struct LengthCase
{
    const char* name;
    unsigned mode;
    unsigned longest;  // bytes or characters
};

class YPacketTooLong : public testing::TestWithParam<LengthCase>
{};

TEST_P(YPacketTooLong, WritesNothing)
{
    const LengthCase& c = GetParam();
    for (const unsigned length : {c.longest, c.longest + 1}) {
        const bool fits = length == c.longest;
        const std::string narrow(length, 'x');
        const std::wstring wide(length, L'x');
        const auto other = MakePacket();
        other->WriteString(narrow.c_str(), PacketLength::None);
        const auto packet = MakePacket();
        EXPECT_EQ(packet->WriteString(narrow.c_str(), c.mode), fits);
        EXPECT_EQ(packet->WriteString(wide.c_str(), c.mode), fits);
        EXPECT_EQ(packet->WritePacket(other.Get(), c.mode), fits);
        EXPECT_EQ(packet->WriteBuffer(TakeChunk(*other).Get(), c.mode), fits);
        EXPECT_EQ(packet->GetTotalSize() > 0, fits);
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, YPacketTooLong,
                         testing::Values(LengthCase{"TwoBytes", 1, 65535},
                                         LengthCase{"OneByte", 2, 255}),
                         CaseName());

// Exactly one chunk for a long run: what the peer of a socket gets in one piece.
TEST(YPacket, MakesOneChunkForARun)
{
    const auto packet = MakePacket();
    const Bytes run(1500, 7);
    packet->WriteBytes(run.data(), 1500, PacketLength::None);
    EXPECT_EQ(TakeChunk(*packet)->Capacity(), 2524u);
    EXPECT_FALSE(TakeChunk(*packet));
}

TEST(YPacket, ReadsWhatIsWrittenAfterTheEndWasReached)
{
    const auto packet = MakePacket();
    for (const unsigned char value : {1, 2}) {
        packet->WriteByte(value);
        EXPECT_EQ(ContentOf(*packet), Bytes{value});
    }
}

TEST(YPacket, TakesItselfIn)
{
    const auto packet = MakePacket();
    packet->WriteString("ab", PacketLength::None);
    const auto chunk = TakeChunk(*packet);
    ASSERT_TRUE(packet->WritePacket(packet.Get(), PacketLength::OneByte));
    ASSERT_TRUE(packet->WritePacket(packet.Get(), PacketLength::ZeroByte));
    packet->RewindRead();
    EXPECT_EQ(ContentOf(*packet), (Bytes{'a', 'b', 2, 'a', 'b', 'a', 'b', 2, 'a', 'b', 0}));
    packet->RewindRead();
    EXPECT_EQ(TakeChunk(*packet), chunk);
    TakeChunk(*packet);
    EXPECT_EQ(TakeChunk(*packet), chunk);  // by reference
}

TEST(YPacket, CountsNoFurtherThan32Bits)
{
    const auto packet = MakePacket();
    const Bytes run(1 << 20);
    packet->WriteBytes(run.data(), 1 << 20, PacketLength::None);
    for (int doublings = 0; doublings < 12; ++doublings) {
        ASSERT_TRUE(packet->WritePacket(packet.Get(), PacketLength::None));
    }
    EXPECT_EQ(packet->GetTotalSize(), npos);
    EXPECT_EQ(packet->GetReadRemaining(), npos);
    EXPECT_EQ(packet->GetWritePosition(), npos);
    EXPECT_FALSE(packet->WritePacket(packet.Get(), PacketLength::FourBytes));
}

namespace {

// What libstdc++ really calls, counting for the leak check included.
void* (*realMalloc)(std::size_t) = nullptr;
void (*realFree)(void*) = nullptr;

std::size_t largestBlock = 0;

void* RecordingMalloc(std::size_t size)
{
    largestBlock = std::max(largestBlock, size);
    return realMalloc(size);
}

}  // namespace

TEST(YPacket, TakesNoMemoryForALengthThatLies)
{
    const auto packet = MakePacket();
    packet->WriteUInt32(50'000'000);
    std::string narrow = "before";
    YUnicodeString wide(L"before");
    largestBlock = 0;
    {
        // Every operator new of every module of ours is a call of malloc by the C++ run time.
        const ImportHook hook(L"libstdc++-6.dll", "msvcrt.dll", "malloc", &RecordingMalloc);
        realMalloc = hook.Original<void*(std::size_t)>();
        EXPECT_FALSE(packet->ReadString(narrow, PacketLength::FourBytes));
        EXPECT_FALSE(packet->ReadString(wide, PacketLength::FourBytes));
        EXPECT_FALSE(packet->ReadString(narrow, PacketLength::None, 50'000'000));
    }
    EXPECT_LT(largestBlock, 1000u);
    EXPECT_EQ(narrow, "before");
    EXPECT_EQ(wide, L"before");
    EXPECT_EQ(packet->GetReadRemaining(), 4u);
}

struct VariantCase
{
    const char* name;
    bool (YPacket::*read)(VARIANT&);
    VARTYPE type;
    std::int64_t value;  // of eight bytes 0xFE
};

class YPacketVariant : public testing::TestWithParam<VariantCase>
{};

TEST_P(YPacketVariant, IsClearedAndTyped)
{
    const auto packet = MakePacket();
    VARIANT variant{};
    variant.vt = VT_BSTR;
    variant.bstrVal = ::SysAllocString(L"to be freed");
    EXPECT_FALSE((packet.Get()->*GetParam().read)(variant));
    EXPECT_EQ(variant.vt, VT_EMPTY);

    packet->WriteUInt64(0xFEFEFEFEFEFEFEFE);
    ASSERT_TRUE((packet.Get()->*GetParam().read)(variant));
    EXPECT_EQ(variant.vt, GetParam().type);
    VARIANT wide{};
    ASSERT_EQ(::VariantChangeType(&wide, &variant, 0,
                                  variant.vt == VT_UI8 ? VARTYPE{VT_UI8} : VARTYPE{VT_I8}),
              S_OK);
    EXPECT_EQ(wide.llVal, GetParam().value);
}

constexpr auto allOfIt = static_cast<std::int64_t>(0xFEFEFEFEFEFEFEFE);

INSTANTIATE_TEST_SUITE_P(
    Types, YPacketVariant,
    testing::Values(
        VariantCase{"Bool", &YPacket::ReadBool, VT_BOOL, -1},
        VariantCase{"Byte", &YPacket::ReadByte, VT_UI1, 0xFE},
        VariantCase{"Int16", &YPacket::ReadInt16, VT_I2, static_cast<std::int16_t>(0xFEFE)},
        VariantCase{"UInt16", &YPacket::ReadUInt16, VT_UI2, 0xFEFE},
        VariantCase{"Int32", &YPacket::ReadInt32, VT_I4, static_cast<std::int32_t>(0xFEFEFEFE)},
        VariantCase{"UInt32", &YPacket::ReadUInt32, VT_UI4, 0xFEFEFEFE},
        VariantCase{"Int64", &YPacket::ReadInt64, VT_I8, allOfIt},
        VariantCase{"UInt64", &YPacket::ReadUInt64, VT_UI8, allOfIt}),
    CaseName());

namespace {

const unsigned char* watched = nullptr;
bool watchedWasWiped = false;

void WatchingFree(void* memory)
{
    if (memory && memory == watched) {
        watchedWasWiped = std::count(watched, watched + 8, 0) == 8;
    }
    realFree(memory);
}

}  // namespace

TEST(YPacket, LeavesNothingSensitiveBehind)
{
    for (const bool sensitive : {true, false}) {
        auto packet = MakePacket(8, sensitive);
        packet->WriteString(L"abcd", PacketLength::None);
        YUnicodeString text;
        ASSERT_TRUE(packet->ReadString(text, PacketLength::None, 4));
        EXPECT_EQ(text.IsSensitive(), sensitive);
        packet->RewindRead();
        watched = TakeChunk(*packet)->Data();
        watchedWasWiped = false;
        const ImportHook hook(L"libstdc++-6.dll", "msvcrt.dll", "free", &WatchingFree);
        realFree = hook.Original<void(void*)>();
        packet.Reset();
        EXPECT_EQ(watchedWasWiped, sensitive);
    }
}
