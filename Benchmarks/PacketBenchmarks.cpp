// The packet against bare copies between flat buffers.
#include "Report.h"
#include "Subjects.h"

#include <YBasicBuffer.h>
#include <YPacket.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using PacketPointer = YUnknownPointer<YPacket>;

constexpr unsigned integers = 16 * 1024;  // 64 KiB of them
constexpr unsigned strings = 64;  // 64 KiB of them
constexpr unsigned stringBytes = 1024;
constexpr unsigned flatBytes = integers * 4;
static_assert(flatBytes == strings * stringBytes);

// A bare bounds-checked copy; called, and with sizes that the compiler does not know, as every
// library's is.
class FlatBuffer
{
public:
    void Rewind() { at = 0; }

    [[gnu::noipa]] bool Write(const void* bytes, unsigned size)
    {
        if (block.size() - at < size) {
            return false;
        }
        std::memcpy(block.data() + at, bytes, size);
        at += size;
        return true;
    }

    [[gnu::noipa]] bool WriteInteger(std::uint32_t value)
    {
        if (block.size() - at < sizeof value) {
            return false;
        }
        std::memcpy(block.data() + at, &value, sizeof value);
        at += sizeof value;
        return true;
    }

    [[gnu::noipa]] bool ReadInteger(std::uint32_t& value)
    {
        if (block.size() - at < sizeof value) {
            return false;
        }
        std::memcpy(&value, block.data() + at, sizeof value);
        at += sizeof value;
        return true;
    }

    [[gnu::noipa]] bool Read(void* bytes, unsigned size)
    {
        if (block.size() - at < size) {
            return false;
        }
        std::memcpy(bytes, block.data() + at, size);
        at += size;
        return true;
    }

private:
    std::vector<unsigned char> block = std::vector<unsigned char>(flatBytes);
    std::size_t at = 0;
};

void RewindWrite(YPacket& packet)
{
    packet.RewindRead();
    packet.SetWriteToRead();
}

void WriteIntegers(YPacket& packet)
{
    for (unsigned i = 0; i < integers; ++i) {
        packet.WriteUInt32(i);
    }
}

void WriteStrings(YPacket& packet)
{
    static const std::vector<char> text(stringBytes, 'x');
    for (unsigned i = 0; i < strings; ++i) {
        packet.WriteBytes(text.data(), stringBytes, PacketLength::FourBytes);
    }
}

// What 1 GB/s is one of.
void CountNanoseconds(benchmark::State& state, double bytes)
{
    state.counters["nanoseconds"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * bytes * 1e-9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Into the chunks of 1 KiB that the first round made.
void WritePacketIntegers(benchmark::State& state)
{
    const auto packet = PacketPointer::Make();
    WriteIntegers(*packet);
    for (auto _ : state) {
        RewindWrite(*packet);
        WriteIntegers(*packet);
    }
    CountNanoseconds(state, flatBytes);
}

void WriteFlatIntegers(benchmark::State& state)
{
    FlatBuffer buffer;
    for (auto _ : state) {
        buffer.Rewind();
        for (unsigned i = 0; i < integers; ++i) {
            benchmark::DoNotOptimize(buffer.WriteInteger(i));
        }
    }
}

void ReadPacketIntegers(benchmark::State& state)
{
    const auto packet = PacketPointer::Make();
    WriteIntegers(*packet);
    for (auto _ : state) {
        packet->RewindRead();
        std::uint32_t value = 0;
        while (packet->ReadUInt32(value)) {
            benchmark::DoNotOptimize(value);
        }
    }
    CountNanoseconds(state, flatBytes);
}

void ReadFlatIntegers(benchmark::State& state)
{
    FlatBuffer buffer;
    for (auto _ : state) {
        buffer.Rewind();
        std::uint32_t value = 0;
        while (buffer.ReadInteger(value)) {
            benchmark::DoNotOptimize(value);
        }
    }
}

void WritePacketStrings(benchmark::State& state)
{
    const auto packet = PacketPointer::Make();
    WriteStrings(*packet);
    for (auto _ : state) {
        RewindWrite(*packet);
        WriteStrings(*packet);
    }
}

void WriteNewPacketStrings(benchmark::State& state)
{
    for (auto _ : state) {
        const auto packet = PacketPointer::Make();
        WriteStrings(*packet);
    }
}

void CopyStringsIn(benchmark::State& state)
{
    FlatBuffer buffer;
    const std::vector<char> text(stringBytes, 'x');
    for (auto _ : state) {
        buffer.Rewind();
        while (buffer.Write(text.data(), stringBytes)) {
            benchmark::ClobberMemory();
        }
    }
}

void ReadPacketStrings(benchmark::State& state)
{
    const auto packet = PacketPointer::Make();
    WriteStrings(*packet);
    std::string text;
    for (auto _ : state) {
        packet->RewindRead();
        while (packet->ReadString(text, PacketLength::FourBytes)) {
            benchmark::ClobberMemory();
        }
    }
}

void CopyStringsOut(benchmark::State& state)
{
    FlatBuffer buffer;
    std::vector<char> text(stringBytes);
    for (auto _ : state) {
        buffer.Rewind();
        while (buffer.Read(text.data(), stringBytes)) {
            benchmark::ClobberMemory();
        }
    }
}

void AppendChunk(YPacket& packet, unsigned bytes)
{
    const auto chunk = YUnknownPointer<YBasicBuffer>::Make(bytes);
    std::memset(chunk->Data(), 'x', bytes);
    chunk->SetSize(bytes);
    packet.WriteBuffer(chunk.Get(), PacketLength::None);
}

void AppendPacket(benchmark::State& state, unsigned chunkBytes)
{
    const auto source = PacketPointer::Make();
    for (unsigned i = 0; i < 64; ++i) {
        AppendChunk(*source, chunkBytes);
    }
    for (auto _ : state) {
        const auto packet = PacketPointer::Make();
        packet->WritePacket(source.Get(), PacketLength::None);
    }
}

void AppendLarge(benchmark::State& state)
{
    AppendPacket(state, 64 * 1024);
}

void AppendSmall(benchmark::State& state)
{
    AppendPacket(state, 16);
}

void ReadOneByteChunks(benchmark::State& state)
{
    const auto packet = PacketPointer::Make();
    for (unsigned i = 0; i < flatBytes; ++i) {
        AppendChunk(*packet, 1);
    }
    for (auto _ : state) {
        packet->RewindRead();
        std::uint32_t value = 0;
        while (packet->ReadUInt32(value)) {
            benchmark::DoNotOptimize(value);
        }
    }
    CountNanoseconds(state, flatBytes);
}

}  // namespace

void AddPacketSubjects(Report& report)
{
    const auto add = [](const char* name, void (*run)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMicrosecond);
    };
    add("WritePacketIntegers", WritePacketIntegers);
    add("WriteFlatIntegers", WriteFlatIntegers);
    add("ReadPacketIntegers", ReadPacketIntegers);
    add("ReadFlatIntegers", ReadFlatIntegers);
    report.CompareRate("write 4-byte integers to a packet, to a flat buffer", "WritePacketIntegers",
                       "WriteFlatIntegers", 0.5);
    report.CheckCounter("  nanoseconds a byte (1: 1 GB/s)", "WritePacketIntegers", "nanoseconds",
                        1);
    report.CompareRate("read 4-byte integers from a packet, from a flat buffer",
                       "ReadPacketIntegers", "ReadFlatIntegers", 0.5);
    report.CheckCounter("  nanoseconds a byte (1: 1 GB/s)", "ReadPacketIntegers", "nanoseconds", 1);

    add("WritePacketStrings", WritePacketStrings);
    add("WriteNewPacketStrings", WriteNewPacketStrings);
    add("CopyStringsIn", CopyStringsIn);
    add("ReadPacketStrings", ReadPacketStrings);
    add("CopyStringsOut", CopyStringsOut);
    report.CompareRate("write strings of 1 KiB to a packet, to memcpy", "WritePacketStrings",
                       "CopyStringsIn", 0.5);
    report.ShowRate("  the same, to a new packet each 64", "WriteNewPacketStrings",
                    "CopyStringsIn");
    report.CompareRate("read strings of 1 KiB from a packet, to memcpy", "ReadPacketStrings",
                       "CopyStringsOut", 0.5);

    add("AppendLarge", AppendLarge);
    add("AppendSmall", AppendSmall);
    report.CompareCost("append a packet of 4 MiB in 64 chunks, to one of 1 KiB in 64",
                       "AppendLarge", "AppendSmall", 2);
    add("ReadOneByteChunks", ReadOneByteChunks);
    report.CheckCounter("read through chunks of 1 byte: nanoseconds a byte", "ReadOneByteChunks",
                        "nanoseconds", 10);
}
