#include "PacketPair.h"

#include "YBasicBuffer.h"
#include "YPacket.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

// A buffer that is not the library's own.
class HostBuffer : public YUnknown<IBuffer>
{
public:
    explicit HostBuffer(unsigned capacity) : block(capacity) {}
    unsigned char* Data() override { return block.data(); }
    unsigned Capacity() const override { return static_cast<unsigned>(block.size()); }
    unsigned Size() const override { return size; }
    void SetSize(unsigned bytes) override { size = bytes; }

private:
    ~HostBuffer() override = default;

    Bytes block;
    unsigned size = 0;
};

struct Chunk
{
    unsigned capacity;
    Bytes bytes = {};
    YUnknownPointer<IBuffer> buffer = {};  // the packet's, once it was seen

    bool operator==(const Chunk&) const = default;
};
using Chunks = std::vector<std::shared_ptr<Chunk>>;

unsigned Count(const auto& items)
{
    return static_cast<unsigned>(items.size());
}

unsigned SizeOf(const Chunks& chunks)
{
    unsigned size = 0;
    for (const auto& chunk : chunks) {
        size += Count(chunk->bytes);
    }
    return size;
}

// By mode.
constexpr unsigned prefixBytes[] = {4, 2, 1, 0, 0, 0};
const std::wstring terminators[] = {{}, {}, {}, {L'\0'}, L"\r\n", {}};

bool Fits(unsigned mode, std::size_t length)
{
    return mode <= 5 && !(mode == 1 && length > 65535) && !(mode == 2 && length > 255);
}

// Chunks are flat vectors, one may stand in the list several times; everything is done by bytes.
class PacketModel
{
public:
    Chunks chunks;
    bool bigEndian = true;
    YPacketCursors cursors;

    void SetLittleEndian() { bigEndian = false; }
    void SetBigEndian() { bigEndian = true; }
    void SetReadLimit(unsigned bytes) { cursors.readLimit = bytes; }
    void RewindRead() { cursors.readChunk = cursors.readOffset = 0; }
    unsigned GetTotalSize() const { return SizeOf(chunks); }

    unsigned GetReadRemaining() const
    {
        unsigned bytes = 0;
        for (unsigned i = cursors.readChunk, at = cursors.readOffset; i < chunks.size();
             ++i, at = 0) {
            bytes += std::max(SizeAt(i), at) - at;
        }
        return std::min(bytes, cursors.readLimit);
    }

    unsigned GetWritePosition() const
    {
        unsigned position = std::min(cursors.writeOffset, SizeAt(cursors.writeChunk));
        for (unsigned i = 0; i < cursors.writeChunk; ++i) {
            position += SizeAt(i);
        }
        return position;
    }

    bool ReadBytes(unsigned char* bytes, unsigned size)
    {
        if (size > GetReadRemaining()) {
            return false;
        }
        for (unsigned i = 0; i < size; ++i) {
            Settle();
            if (bytes) {
                bytes[i] = chunks[cursors.readChunk]->bytes[cursors.readOffset];
            }
            ++cursors.readOffset;
            cursors.readLimit -= cursors.readLimit == npos ? 0 : 1;
        }
        return true;
    }

    std::optional<std::uint64_t> ReadInteger(unsigned width)
    {
        unsigned char bytes[8] = {};
        if (!ReadBytes(bytes, width)) {
            return std::nullopt;
        }
        std::uint64_t value = 0;
        for (unsigned i = 0; i < width; ++i) {
            value = value << 8 | bytes[bigEndian ? i : width - 1 - i];
        }
        return value;
    }

    std::optional<std::wstring> ReadText(unsigned mode, unsigned width, std::uint64_t length)
    {
        if (mode > PacketLength::None) {
            return std::nullopt;
        }
        const YPacketCursors before = cursors;
        const std::wstring& end = terminators[mode];
        std::optional<std::uint64_t> next = ReadInteger(prefixBytes[mode]);
        if (prefixBytes[mode] > 0) {
            length = next.value_or(0);
        }
        std::wstring text;
        while (next && (end.empty() ? text.size() < length : !text.ends_with(end))) {
            next = ReadInteger(width);
            text.push_back(static_cast<wchar_t>(next.value_or(0)));
        }
        if (!next) {
            cursors = before;
            return std::nullopt;
        }
        return text.substr(0, text.size() - end.size());
    }

    // Of the chunk what had not been read. Nothing: there is none, or more than may be read.
    std::optional<Chunk> TakeNextChunk()
    {
        const YPacketCursors before = cursors;
        Settle();
        const unsigned size = SizeAt(cursors.readChunk);
        Bytes bytes(std::max(size, cursors.readOffset) - cursors.readOffset);
        if (bytes.empty() || !ReadBytes(bytes.data(), Count(bytes))) {
            cursors = before;
            return std::nullopt;
        }
        cursors.readOffset = 0;
        const Chunk& chunk = *chunks[cursors.readChunk++];
        return Chunk{chunk.capacity, bytes, chunk.buffer};
    }

    bool Unread(unsigned bytes)
    {
        const YPacketCursors before = cursors;
        cursors.readOffset = std::min(cursors.readOffset, SizeAt(cursors.readChunk));
        for (; bytes > 0; --bytes) {
            while (cursors.readOffset == 0 && cursors.readChunk > 0) {
                cursors.readOffset = SizeAt(--cursors.readChunk);
            }
            if (cursors.readOffset == 0) {
                cursors = before;
                return false;
            }
            --cursors.readOffset;
            cursors.readLimit += cursors.readLimit < npos - 1 ? 1 : 0;
        }
        return true;
    }

    bool Seek(int bytes)
    {
        const auto distance = static_cast<unsigned>(bytes);
        return bytes < 0 ? Unread(0u - distance) : ReadBytes(nullptr, distance);
    }

    void WriteInteger(std::uint64_t value, unsigned width, unsigned newCapacity = 1024)
    {
        for (unsigned i = 0; i < width; ++i) {
            const unsigned shift = 8 * (bigEndian ? width - 1 - i : i);
            PutByte(static_cast<unsigned char>(value >> shift), newCapacity);
        }
    }

    bool WriteText(const Bytes& characters, unsigned mode, unsigned width)
    {
        if (!Fits(mode, characters.size())) {
            return false;
        }
        WriteInteger(characters.size(), prefixBytes[mode]);
        for (const unsigned char character : characters) {
            WriteInteger(character, width, Count(characters) * width + 1024);
        }
        WriteTerminator(mode, width);
        return true;
    }

    bool Insert(const Chunks& added, unsigned mode)
    {
        if (!Fits(mode, SizeOf(added))) {
            return false;
        }
        if (prefixBytes[mode] > 0) {
            KeepOff(added);
            WriteInteger(SizeOf(added), prefixBytes[mode]);
        }
        CloseWriteChunk();
        InsertAtWrite(added);
        if (!terminators[mode].empty()) {
            KeepOff(added);
            WriteTerminator(mode, 1);
        }
        return true;
    }

    void SetWriteToRead()
    {
        Settle();
        cursors.writeChunk = cursors.readChunk;
        cursors.writeOffset = cursors.readOffset;
    }

    void TruncateAtWrite()
    {
        ClampWrite();
        for (unsigned i = cursors.writeChunk; i < chunks.size(); ++i) {
            chunks[i]->bytes.resize(i == cursors.writeChunk ? cursors.writeOffset : 0);
        }
    }

private:
    unsigned SizeAt(unsigned index) const
    {
        return index < chunks.size() ? Count(chunks[index]->bytes) : 0;
    }

    // The read cursor onto the next byte, if there is one.
    void Settle()
    {
        const YPacketCursors before = cursors;
        while (cursors.readChunk < chunks.size() &&
               cursors.readOffset >= SizeAt(cursors.readChunk)) {
            ++cursors.readChunk;
            cursors.readOffset = 0;
        }
        cursors = cursors.readChunk < chunks.size() ? cursors : before;
    }

    void ClampWrite()
    {
        cursors.writeOffset = std::min(cursors.writeOffset, SizeAt(cursors.writeChunk));
    }

    void EnterNextChunk()
    {
        ++cursors.writeChunk;
        cursors.writeOffset = 0;
    }

    void PutByte(unsigned char value, unsigned newCapacity)
    {
        ClampWrite();
        while (cursors.writeChunk < chunks.size() &&
               cursors.writeOffset == chunks[cursors.writeChunk]->capacity) {
            EnterNextChunk();
        }
        if (cursors.writeChunk == chunks.size()) {
            chunks.push_back(std::make_shared<Chunk>(Chunk{newCapacity}));
        }
        Chunk& chunk = *chunks[cursors.writeChunk];
        chunk.bytes.resize(std::max(Count(chunk.bytes), cursors.writeOffset + 1));
        chunk.bytes[cursors.writeOffset] = value;
        if (++cursors.writeOffset == chunk.capacity) {
            EnterNextChunk();
        }
    }

    void WriteTerminator(unsigned mode, unsigned width)
    {
        for (const wchar_t character : terminators[mode]) {
            WriteInteger(static_cast<unsigned char>(character), width);
        }
    }

    void CloseWriteChunk()
    {
        ClampWrite();
        if (cursors.writeOffset > 0) {
            chunks[cursors.writeChunk]->bytes.resize(cursors.writeOffset);
            EnterNextChunk();
        }
    }

    void InsertAtWrite(const Chunks& added)
    {
        const unsigned at = cursors.writeChunk;
        chunks.insert(chunks.begin() + at, added.begin(), added.end());
        cursors.writeChunk += Count(added);
        if (cursors.readChunk > at || (cursors.readChunk == at && cursors.readOffset > 0)) {
            cursors.readChunk += Count(added);
        }
    }

    void KeepOff(const Chunks& added)
    {
        const auto next = chunks.begin() + cursors.writeChunk;
        if (std::find_first_of(next, chunks.end(), added.begin(), added.end()) != chunks.end()) {
            CloseWriteChunk();
            InsertAtWrite({std::make_shared<Chunk>(Chunk{1024})});
            --cursors.writeChunk;
        }
    }
};

// The packet's next chunk, as the model's TakeNextChunk.
std::optional<Chunk> TakeFrom(YPacket& packet)
{
    IBuffer* taken = nullptr;
    unsigned offset = 0;
    if (!packet.TakeNextChunk(&taken, &offset)) {
        return std::nullopt;
    }
    const auto buffer = YUnknownPointer<IBuffer>::Adopt(taken);
    const Bytes bytes(buffer->Data() + offset, buffer->Data() + buffer->Size());
    return Chunk{buffer->Capacity(), bytes, buffer};
}

class PacketPair
{
public:
    explicit PacketPair(const std::function<unsigned(unsigned)>& nextChoice) : choose(nextChoice)
    {
        Renew();
    }

    // One operation on both; its name when they differ.
    const char* Step()
    {
        const auto& [name, run] = operations[choose(Count(operations))];
        if (!run() || !Agree()) {
            return name;
        }
        if (model.chunks.size() > 40 || model.GetTotalSize() > 3000) {
            Renew();
        }
        return nullptr;
    }

private:
    void Renew()
    {
        const unsigned capacity = choose(10);
        packet = YUnknownPointer<YPacket>::Make(capacity, choose(2) == 1);
        model = {};
        state.Reset();
        if (capacity > 0) {
            model.chunks.push_back(std::make_shared<Chunk>(Chunk{capacity}));
        }
    }

    // On both, through the operations that bear the same names.
    bool Both(auto run)
    {
        if constexpr (std::is_void_v<decltype(run(model))>) {
            run(*packet);
            run(model);
            return true;
        } else {
            return run(*packet) == run(model);
        }
    }

    // The same bytes in the same chunks, and every chunk the very buffer that it was before:
    // nothing that is shared was copied.
    bool Agree()
    {
        bool isSame = Both([](auto& side) { return side.GetTotalSize(); }) &&
                      Both([](auto& side) { return side.GetReadRemaining(); }) &&
                      Both([](auto& side) { return side.GetWritePosition(); });
        const auto before = YUnknownPointer<IPacketState>::Adopt(packet->SaveState());
        packet->SetReadLimit(npos);
        packet->RewindRead();
        for (const auto& chunk : model.chunks) {
            if (!chunk->bytes.empty()) {
                const std::optional<Chunk> taken = TakeFrom(*packet);
                chunk->buffer = taken && !chunk->buffer ? taken->buffer : chunk->buffer;
                isSame = isSame && taken == *chunk;
            }
        }
        isSame = isSame && packet->GetReadRemaining() == 0;
        packet->RestoreState(before.Get());
        return isSame;
    }

    // Rich in what ends a text.
    Bytes ChooseBytes(unsigned most)
    {
        Bytes bytes(choose(most + 1));
        for (unsigned char& value : bytes) {
            constexpr unsigned char frequent[] = {0, 13, 10, 13, 10, 1, 'a'};
            const unsigned index = choose(std::size(frequent) + 1);
            value = static_cast<unsigned char>(index < std::size(frequent) ? frequent[index]
                                                                           : choose(256));
        }
        return bytes;
    }

    // Mostly small, sometimes what an attacker would send.
    unsigned ChooseCount()
    {
        constexpr unsigned hostile[] = {npos, npos - 1, 0x80000000, 0x7FFFFFFF};
        const unsigned kind = choose(40);
        return kind < std::size(hostile) ? hostile[kind] : choose(kind < 20 ? 5 : 40);
    }

    unsigned ChooseMode() { return choose(7); }

    template <class Integer>
    bool WriteInteger(void (YPacket::*write)(Integer))
    {
        const auto value = static_cast<Integer>(choose(npos) * 0x100000001ull ^ choose(256));
        (packet.Get()->*write)(value);
        model.WriteInteger(static_cast<std::uint64_t>(value), sizeof value);
        return true;
    }

    template <class Integer>
    bool ReadInteger(bool (YPacket::*read)(Integer&))
    {
        Integer value = 77;
        const bool done = (packet.Get()->*read)(value);
        const std::optional<std::uint64_t> expected = model.ReadInteger(sizeof value);
        return done == expected.has_value() && value == static_cast<Integer>(expected.value_or(77));
    }

    template <class Text, class Character>
    bool ReadText(unsigned width)
    {
        const unsigned mode = ChooseMode();
        const unsigned length = ChooseCount();
        Text text;
        const bool done = packet->ReadString(text, mode, length);
        const std::optional<std::wstring> expected = model.ReadText(mode, width, length);
        const std::wstring characters = expected.value_or(L"");
        return done == expected.has_value() &&
               std::basic_string_view<Character>(text) ==
                   std::basic_string<Character>(characters.begin(), characters.end());
    }

    bool InsertBuffer()
    {
        const Bytes bytes = ChooseBytes(choose(20) == 0 ? 300 : 8);
        const unsigned capacity = Count(bytes) + choose(4);
        YUnknownPointer<IBuffer> buffer = YUnknownPointer<HostBuffer>::Make(capacity);
        if (choose(2) == 0) {
            buffer = YUnknownPointer<YBasicBuffer>::Make(capacity);
        }
        std::copy(bytes.begin(), bytes.end(), buffer->Data());
        buffer->SetSize(Count(bytes));
        const unsigned mode = ChooseMode();
        return packet->WriteBuffer(buffer.Get(), mode) ==
               model.Insert({std::make_shared<Chunk>(Chunk{capacity, bytes, buffer})}, mode);
    }

    bool AppendOther()
    {
        const auto other = YUnknownPointer<YPacket>::Make(choose(4));
        const Bytes bytes = ChooseBytes(choose(20) == 0 ? 300 : 6);
        other->WriteBytes(bytes.data(), Count(bytes), PacketLength::None);
        other->SetReadLimit(1);
        const unsigned mode = ChooseMode();
        const bool done = packet->WritePacket(other.Get(), mode);
        other->SetReadLimit(npos);
        Chunks added;
        while (const std::optional<Chunk> taken = TakeFrom(*other)) {
            added.push_back(std::make_shared<Chunk>(*taken));
        }
        return done == model.Insert(added, mode);
    }

    bool AppendItself()
    {
        const unsigned mode = ChooseMode();
        Chunks added;
        std::copy_if(model.chunks.begin(), model.chunks.end(), std::back_inserter(added),
                     [](const auto& chunk) { return !chunk->bytes.empty(); });
        return packet->WritePacket(packet.Get(), mode) == model.Insert(added, mode);
    }

    // Whoever shares a chunk may make it smaller at any time.
    bool ShrinkByOwner()
    {
        const auto chunk =
            model.chunks.empty() ? nullptr : model.chunks[choose(Count(model.chunks))];
        if (chunk && chunk->buffer && choose(4) == 0) {
            chunk->bytes.resize(choose(Count(chunk->bytes) + 1));
            chunk->buffer->SetSize(Count(chunk->bytes));
        }
        return true;
    }

    const std::vector<std::pair<const char*, std::function<bool()>>> operations{
        {"WriteByte", [this] { return WriteInteger(&YPacket::WriteByte); }},
        {"WriteInt16", [this] { return WriteInteger(&YPacket::WriteInt16); }},
        {"WriteUInt16", [this] { return WriteInteger(&YPacket::WriteUInt16); }},
        {"WriteInt32", [this] { return WriteInteger(&YPacket::WriteInt32); }},
        {"WriteUInt32", [this] { return WriteInteger(&YPacket::WriteUInt32); }},
        {"WriteInt64", [this] { return WriteInteger(&YPacket::WriteInt64); }},
        {"WriteUInt64", [this] { return WriteInteger(&YPacket::WriteUInt64); }},
        {"WriteBytes",
         [this] {
             const unsigned mode = ChooseMode();
             const Bytes bytes = ChooseBytes(choose(20) == 0 ? 1500 : 12);
             return packet->WriteBytes(bytes.data(), Count(bytes), mode) ==
                    model.WriteText(bytes, mode, 1);
         }},
        {"WriteWide",
         [this] {
             const unsigned mode = ChooseMode();
             const Bytes letters = ChooseBytes(choose(20) == 0 ? 400 : 6);
             const YUnicodeString text(std::wstring(letters.begin(), letters.end()));
             return packet->WriteString(text, mode) == model.WriteText(letters, mode, 2);
         }},
        {"ReadByte", [this] { return ReadInteger<unsigned char>(&YPacket::ReadByte); }},
        {"ReadInt16", [this] { return ReadInteger<std::int16_t>(&YPacket::ReadInt16); }},
        {"ReadUInt16", [this] { return ReadInteger<std::uint16_t>(&YPacket::ReadUInt16); }},
        {"ReadInt32", [this] { return ReadInteger<std::int32_t>(&YPacket::ReadInt32); }},
        {"ReadUInt32", [this] { return ReadInteger<std::uint32_t>(&YPacket::ReadUInt32); }},
        {"ReadInt64", [this] { return ReadInteger<std::int64_t>(&YPacket::ReadInt64); }},
        {"ReadUInt64", [this] { return ReadInteger<std::uint64_t>(&YPacket::ReadUInt64); }},
        {"ReadString", [this] { return ReadText<std::string, char>(1); }},
        {"ReadWide", [this] { return ReadText<YUnicodeString, wchar_t>(2); }},
        {"ReadBytes",
         [this] {
             return Both([size = ChooseCount(), room = model.GetReadRemaining()](auto& side) {
                 Bytes bytes(room);
                 const bool done = side.ReadBytes(bytes.data(), size);
                 return std::pair(done, bytes);
             });
         }},
        {"TakeNextChunk", [this] { return TakeFrom(*packet) == model.TakeNextChunk(); }},
        {"Unread",
         [this] { return Both([n = ChooseCount()](auto& side) { return side.Unread(n); }); }},
        {"Seek",
         [this] {
             const auto bytes = static_cast<int>(ChooseCount() * choose(2) - choose(30));
             return Both([bytes](auto& side) { return side.Seek(bytes); });
         }},
        {"RewindRead", [this] { return Both([](auto& side) { side.RewindRead(); }); }},
        {"SetReadLimit",
         [this] {
             const unsigned limit = choose(2) == 0 ? npos : ChooseCount();
             return Both([limit](auto& side) { side.SetReadLimit(limit); });
         }},
        {"SaveState",
         [this] {
             state = YUnknownPointer<IPacketState>::Adopt(packet->SaveState());
             modelState = model.cursors;
             return true;
         }},
        {"RestoreState",
         [this] {
             packet->RestoreState(state.Get());
             model.cursors = state ? modelState : model.cursors;
             return true;
         }},
        {"SetWriteToRead", [this] { return Both([](auto& side) { side.SetWriteToRead(); }); }},
        {"TruncateAtWrite", [this] { return Both([](auto& side) { side.TruncateAtWrite(); }); }},
        {"InsertBuffer", [this] { return InsertBuffer(); }},
        {"AppendOther", [this] { return AppendOther(); }},
        {"AppendItself", [this] { return AppendItself(); }},
        {"SetBigEndian", [this] { return Both([](auto& side) { side.SetBigEndian(); }); }},
        {"SetLittleEndian", [this] { return Both([](auto& side) { side.SetLittleEndian(); }); }},
        {"ShrinkByOwner", [this] { return ShrinkByOwner(); }},
    };

    const std::function<unsigned(unsigned)>& choose;
    YUnknownPointer<YPacket> packet;
    PacketModel model;
    YUnknownPointer<IPacketState> state;
    YPacketCursors modelState;
};

}  // namespace

const char* FindPacketFault(const std::function<unsigned(unsigned count)>& choose,
                            const std::function<bool()>& goOn)
{
    PacketPair pair(choose);
    const char* fault = nullptr;
    while (!fault && goOn()) {
        fault = pair.Step();
    }
    return fault;
}
