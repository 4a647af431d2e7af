#include "packet/PacketPair.h"
#include "support/AllocationWatch.h"
#include "support/ImportHook.h"

#include "YPacket.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;
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
        unsigned step = 0;
        const char* const fault =
            FindPacketFault([&](unsigned count) { return static_cast<unsigned>(random()) % count; },
                            [&] { return step++ < 60'000; });
        ASSERT_EQ(fault, nullptr) << fault << ", step " << step << ", seed " << seed;
    }
}

TEST(YPacket, WritesWhatItsPeersExpect)
{
    const auto packet = MakePacket();
    packet->WriteUInt32(0x01020304);
    packet->WriteString("abc", PacketLength::TwoBytes);
    packet->WriteString(L"a\x20AC", PacketLength::CrLf);
    EXPECT_EQ(ContentOf(*packet),
              (Bytes{1, 2, 3, 4, 0, 3, 'a', 'b', 'c', 0, 'a', 0x20, 0xAC, 0, 13, 0, 10}));
    packet->SetLittleEndian();
    packet->WriteUInt32(0x01020304);
    packet->WriteString(L"\x20AC", PacketLength::ZeroByte);
    EXPECT_EQ(ContentOf(*packet), (Bytes{4, 3, 2, 1, 0xAC, 0x20, 0, 0}));
}

TEST(YPacket, WritesNothingThatIsTooLongForItsMode)
{
    constexpr std::pair<unsigned, unsigned> longest[] = {{PacketLength::TwoBytes, 65535},
                                                         {PacketLength::OneByte, 255}};
    for (const auto& [mode, most] : longest) {
        const auto packet = MakePacket();
        EXPECT_FALSE(packet->WriteString(std::string(most + 1, 'x').c_str(), mode));
        EXPECT_FALSE(packet->WriteString(std::wstring(most + 1, L'x').c_str(), mode));
        EXPECT_EQ(packet->GetTotalSize(), 0u);
        EXPECT_TRUE(packet->WriteString(std::string(most, 'x').c_str(), mode));
        const auto other = MakePacket();
        EXPECT_FALSE(other->WritePacket(packet.Get(), mode));  // the length makes it too long
        EXPECT_EQ(other->GetTotalSize(), 0u);
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

TEST(YPacket, TakesNoMemoryForALengthThatLies)
{
    const auto packet = MakePacket();
    packet->WriteUInt32(50'000'000);
    std::string narrow = "before";
    YUnicodeString wide(L"before");
    const AllocationWatch watch;
    EXPECT_FALSE(packet->ReadString(narrow, PacketLength::FourBytes));
    EXPECT_FALSE(packet->ReadString(wide, PacketLength::FourBytes));
    EXPECT_FALSE(packet->ReadString(narrow, PacketLength::None, 50'000'000));
    EXPECT_LT(watch.GetLargest(), 1000u);
    EXPECT_EQ(narrow, "before");
    EXPECT_EQ(wide, L"before");
    EXPECT_EQ(packet->GetReadRemaining(), 4u);
}

TEST(YPacket, ReadsIntoAVariantThatItClearsAndTypes)
{
    const struct
    {
        bool (YPacket::*read)(VARIANT&);
        VARTYPE type;
        std::int64_t value;  // of eight bytes 0xFE
    } cases[] = {{&YPacket::ReadBool, VT_BOOL, -1},
                 {&YPacket::ReadByte, VT_UI1, 0xFE},
                 {&YPacket::ReadUInt32, VT_UI4, 0xFEFEFEFE},
                 {&YPacket::ReadUInt64, VT_UI8, static_cast<std::int64_t>(0xFEFEFEFEFEFEFEFE)}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.type);
        const auto packet = MakePacket();
        VARIANT variant{};
        variant.vt = VT_BSTR;
        variant.bstrVal = ::SysAllocString(L"to be freed");
        EXPECT_FALSE((packet.Get()->*c.read)(variant));
        EXPECT_EQ(variant.vt, VT_EMPTY);

        packet->WriteUInt64(0xFEFEFEFEFEFEFEFE);
        ASSERT_TRUE((packet.Get()->*c.read)(variant));
        EXPECT_EQ(variant.vt, c.type);
        VARIANT wide{};
        const VARTYPE widest = c.type == VT_UI8 ? VT_UI8 : VT_I8;
        ASSERT_EQ(::VariantChangeType(&wide, &variant, 0, widest), S_OK);
        EXPECT_EQ(wide.llVal, c.value);
    }
}

namespace {

const unsigned char* watched = nullptr;
bool watchedWasWiped = false;
void (*realFree)(void*) = nullptr;

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
