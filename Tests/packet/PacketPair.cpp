#include "PacketPair.h"

#include "YBasicBuffer.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

using ChunkList = std::vector<std::shared_ptr<ModelChunk>>;

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

unsigned Count(const ChunkList& chunks)
{
    return static_cast<unsigned>(chunks.size());
}

unsigned SizeOf(const ChunkList& chunks, unsigned index)
{
    return index < chunks.size() ? static_cast<unsigned>(chunks[index]->bytes.size()) : 0;
}

bool IsTerminated(unsigned mode)
{
    return mode == PacketLength::ZeroByte || mode == PacketLength::CrLf;
}

constexpr unsigned prefixBytes[] = {4, 2, 1, 0, 0, 0};

bool Fits(unsigned mode, std::size_t length)
{
    return mode <= 5 && !(mode == 1 && length > 65535) && !(mode == 2 && length > 255);
}

}  // namespace

Bytes PacketModel::All() const
{
    Bytes all;
    for (const auto& chunk : chunks) {
        all.insert(all.end(), chunk->bytes.begin(), chunk->bytes.end());
    }
    return all;
}

Bytes PacketModel::Rest() const
{
    Bytes rest;
    for (unsigned i = cursors.readChunk, at = cursors.readOffset; i < chunks.size(); ++i, at = 0) {
        for (; at < SizeOf(chunks, i) && rest.size() < cursors.readLimit; ++at) {
            rest.push_back(chunks[i]->bytes[at]);
        }
    }
    return rest;
}

void PacketModel::ClampWrite()
{
    if (cursors.writeChunk >= chunks.size()) {
        cursors.writeChunk = Count(chunks);
    }
    cursors.writeOffset = std::min(cursors.writeOffset, SizeOf(chunks, cursors.writeChunk));
}

unsigned PacketModel::GetWritePosition()
{
    const YPacketCursors before = cursors;
    ClampWrite();
    unsigned position = cursors.writeOffset;
    for (unsigned i = 0; i < cursors.writeChunk; ++i) {
        position += SizeOf(chunks, i);
    }
    cursors = before;
    return position;
}

void PacketModel::Settle()
{
    const YPacketCursors before = cursors;
    for (; cursors.readChunk < chunks.size(); ++cursors.readChunk, cursors.readOffset = 0) {
        if (cursors.readOffset < SizeOf(chunks, cursors.readChunk)) {
            return;
        }
    }
    cursors = before;
}

void PacketModel::Drop(unsigned bytes)
{
    for (; bytes > 0; --bytes) {
        Settle();
        ++cursors.readOffset;
        cursors.readLimit -= cursors.readLimit == npos ? 0 : 1;
    }
}

bool PacketModel::Unread(unsigned bytes)
{
    YPacketCursors next = cursors;
    next.readChunk = std::min(next.readChunk, Count(chunks));
    next.readOffset = std::min(next.readOffset, SizeOf(chunks, next.readChunk));
    for (unsigned left = bytes; left > 0;) {
        if (next.readOffset > 0) {
            --next.readOffset;
            --left;
            next.readLimit += next.readLimit < npos - 1 ? 1 : 0;
        } else if (next.readChunk == 0) {
            return false;
        } else {
            next.readOffset = SizeOf(chunks, --next.readChunk);
        }
    }
    cursors = next;
    return true;
}

bool PacketModel::TakeChunk(std::shared_ptr<ModelChunk>& chunk, unsigned& offset)
{
    const YPacketCursors before = cursors;
    Settle();
    const unsigned size = SizeOf(chunks, cursors.readChunk);
    if (cursors.readOffset >= size || size - cursors.readOffset > cursors.readLimit) {
        cursors = before;
        return false;
    }
    chunk = chunks[cursors.readChunk];
    offset = cursors.readOffset;
    Drop(size - offset);
    ++cursors.readChunk;
    cursors.readOffset = 0;
    return true;
}

void PacketModel::Write(const Bytes& bytes, unsigned newCapacity)
{
    for (const unsigned char value : bytes) {
        ClampWrite();
        while (cursors.writeChunk < chunks.size() &&
               cursors.writeOffset == chunks[cursors.writeChunk]->capacity) {
            ++cursors.writeChunk;
            cursors.writeOffset = 0;
        }
        if (cursors.writeChunk == chunks.size()) {
            chunks.push_back(std::make_shared<ModelChunk>(ModelChunk{{}, newCapacity}));
        }
        ModelChunk& chunk = *chunks[cursors.writeChunk];
        if (cursors.writeOffset == chunk.bytes.size()) {
            chunk.bytes.push_back(value);
        } else {
            chunk.bytes[cursors.writeOffset] = value;
        }
        if (++cursors.writeOffset == chunk.capacity) {
            ++cursors.writeChunk;
            cursors.writeOffset = 0;
        }
    }
}

void PacketModel::WriteInteger(std::uint64_t value, unsigned width)
{
    Bytes bytes;
    for (unsigned i = 0; i < width; ++i) {
        const unsigned shift = 8 * (bigEndian ? width - 1 - i : i);
        bytes.push_back(static_cast<unsigned char>(value >> shift));
    }
    Write(bytes, 1024);
}

void PacketModel::WriteTerminator(unsigned mode, unsigned width)
{
    if (mode == PacketLength::ZeroByte) {
        WriteInteger(0, width);
    } else if (mode == PacketLength::CrLf) {
        WriteInteger('\r', width);
        WriteInteger('\n', width);
    }
}

void PacketModel::Close()
{
    ClampWrite();
    if (cursors.writeOffset > 0) {
        chunks[cursors.writeChunk]->bytes.resize(cursors.writeOffset);
        ++cursors.writeChunk;
        cursors.writeOffset = 0;
    }
}

void PacketModel::InsertAtWrite(const ChunkList& added)
{
    const unsigned at = cursors.writeChunk;
    chunks.insert(chunks.begin() + at, added.begin(), added.end());
    cursors.writeChunk += Count(added);
    if (cursors.readChunk > at || (cursors.readChunk == at && cursors.readOffset > 0)) {
        cursors.readChunk += Count(added);
    }
}

void PacketModel::KeepOff(const ChunkList& added)
{
    ClampWrite();
    for (unsigned i = cursors.writeChunk; i < chunks.size(); ++i) {
        if (std::find(added.begin(), added.end(), chunks[i]) != added.end()) {
            Close();
            InsertAtWrite({std::make_shared<ModelChunk>(ModelChunk{{}, 1024})});
            --cursors.writeChunk;
            return;
        }
    }
}

void PacketModel::Insert(const ChunkList& added, unsigned mode)
{
    if (mode <= PacketLength::OneByte) {
        KeepOff(added);
        unsigned total = 0;
        for (const auto& chunk : added) {
            total += static_cast<unsigned>(chunk->bytes.size());
        }
        WriteInteger(total, prefixBytes[mode]);
    }
    Close();
    InsertAtWrite(added);
    if (IsTerminated(mode)) {
        KeepOff(added);
        WriteTerminator(mode, 1);
    }
}

void PacketModel::Truncate()
{
    ClampWrite();
    for (unsigned i = cursors.writeChunk; i < chunks.size(); ++i) {
        // Not resize alone: a chunk that stands here twice may have been emptied already.
        chunks[i]->bytes.resize(
            i == cursors.writeChunk ? std::min(cursors.writeOffset, SizeOf(chunks, i)) : 0);
    }
}

std::uint64_t PacketModel::IntegerAt(const Bytes& bytes, std::size_t at, unsigned width) const
{
    std::uint64_t value = 0;
    for (unsigned i = 0; i < width; ++i) {
        value = value << 8 | bytes[at + (bigEndian ? i : width - 1 - i)];
    }
    return value;
}

bool PacketModel::FindText(unsigned mode, unsigned width, unsigned length,
                           std::uint64_t (&parts)[3]) const
{
    const Bytes rest = Rest();
    if (mode > PacketLength::None || rest.size() < prefixBytes[mode]) {
        return false;
    }
    parts[0] = prefixBytes[mode];
    parts[1] = std::uint64_t{length} * width;
    parts[2] = 0;
    if (mode <= PacketLength::OneByte) {
        parts[1] = IntegerAt(rest, 0, prefixBytes[mode]) * width;
    } else if (IsTerminated(mode)) {
        const unsigned units = mode == PacketLength::CrLf ? 2 : 1;
        parts[2] = std::uint64_t{units} * width;
        for (parts[1] = 0; parts[1] + parts[2] <= rest.size(); parts[1] += width) {
            const std::uint64_t first = IntegerAt(rest, parts[1], width);
            if (units == 1 ? first == 0
                           : first == '\r' && IntegerAt(rest, parts[1] + width, width) == '\n') {
                break;
            }
        }
    }
    return parts[0] + parts[1] + parts[2] <= rest.size();
}

const PacketPair::NamedOperation PacketPair::operations[] = {
    {"WriteInteger", &PacketPair::WriteInteger},
    {"WriteText", &PacketPair::WriteText},
    {"WriteWide", &PacketPair::WriteWide},
    {"ReadInteger", &PacketPair::ReadInteger},
    {"ReadString", &PacketPair::ReadString},
    {"ReadWide", &PacketPair::ReadWide},
    {"ReadBytes", &PacketPair::ReadBytes},
    {"TakeChunk", &PacketPair::TakeChunk},
    {"Unread", &PacketPair::Unread},
    {"Seek", &PacketPair::Seek},
    {"Rewind", &PacketPair::Rewind},
    {"Limit", &PacketPair::Limit},
    {"Save", &PacketPair::Save},
    {"Restore", &PacketPair::Restore},
    {"WriteToRead", &PacketPair::WriteToRead},
    {"Truncate", &PacketPair::Truncate},
    {"InsertBuffer", &PacketPair::InsertBuffer},
    {"AppendOther", &PacketPair::AppendOther},
    {"AppendItself", &PacketPair::AppendItself},
    {"ChangeOrder", &PacketPair::ChangeOrder},
    {"ShrinkByOwner", &PacketPair::ShrinkByOwner},
};

bool PacketPair::Step()
{
    const NamedOperation& operation = operations[choose(std::size(operations))];
    lastStep = operation.name;
    if (!(this->*operation.run)() || !Agree()) {
        return false;
    }
    if (model.chunks.size() > 40 || model.All().size() > 3000) {
        Renew();
    }
    return true;
}

void PacketPair::Renew()
{
    const unsigned capacity = choose(10);
    packet = YUnknownPointer<YPacket>::Make(capacity, choose(2) == 1);
    model = {};
    state.Reset();
    buffers.clear();
    if (capacity > 0) {
        model.chunks.push_back(std::make_shared<ModelChunk>(ModelChunk{{}, capacity}));
    }
}

bool PacketPair::Agree()
{
    return packet->GetTotalSize() == model.All().size() &&
           packet->GetReadRemaining() == model.Rest().size() &&
           packet->GetWritePosition() == model.GetWritePosition() && ChunksAgree();
}

// The same bytes in the same chunks, and every chunk the very buffer that it was before: nothing
// that is shared was copied.
bool PacketPair::ChunksAgree()
{
    const auto before = YUnknownPointer<IPacketState>::Adopt(packet->SaveState());
    packet->SetReadLimit(npos);
    packet->RewindRead();
    bool same = true;
    for (const auto& chunk : model.chunks) {
        IBuffer* taken = nullptr;
        unsigned offset = 1;
        if (chunk->bytes.empty()) {
            continue;
        }
        if (!packet->TakeNextChunk(&taken, &offset)) {
            return false;
        }
        const auto buffer = YUnknownPointer<IBuffer>::Adopt(taken);
        auto& known = buffers[chunk];
        known = known ? known : buffer;
        same = same && known == buffer && offset == 0 && buffer->Capacity() == chunk->capacity &&
               Bytes(buffer->Data(), buffer->Data() + buffer->Size()) == chunk->bytes;
    }
    same = same && packet->GetReadRemaining() == 0;
    packet->RestoreState(before.Get());
    return same;
}

// Rich in what ends a text.
Bytes PacketPair::ChooseBytes(unsigned most)
{
    Bytes bytes(choose(most + 1));
    for (unsigned char& value : bytes) {
        constexpr unsigned char frequent[] = {0, 13, 10, 13, 10, 1, 'a'};
        const unsigned index = choose(std::size(frequent) + 1);
        value =
            index < std::size(frequent) ? frequent[index] : static_cast<unsigned char>(choose(256));
    }
    return bytes;
}

// Mostly small, sometimes what an attacker would send.
unsigned PacketPair::ChooseCount()
{
    constexpr unsigned hostile[] = {npos, npos - 1, 0x80000000, 0x7FFFFFFF};
    const unsigned kind = choose(40);
    return kind < std::size(hostile) ? hostile[kind] : choose(kind < 20 ? 5 : 40);
}

bool PacketPair::WriteInteger()
{
    const std::uint64_t value = choose(npos) * 0x100000001ull ^ choose(256);
    const unsigned width = 1u << choose(4);
    switch (width) {
    case 1: packet->WriteByte(static_cast<unsigned char>(value)); break;
    case 2: packet->WriteUInt16(static_cast<std::uint16_t>(value)); break;
    case 4: packet->WriteInt32(static_cast<std::int32_t>(value)); break;
    default: packet->WriteUInt64(value); break;
    }
    model.WriteInteger(value, width);
    return true;
}

bool PacketPair::WriteText()
{
    const unsigned mode = ChooseMode();
    const Bytes bytes = ChooseBytes(choose(20) == 0 ? 1500 : 12);
    const auto size = static_cast<unsigned>(bytes.size());
    const bool fits = Fits(mode, size);
    if (packet->WriteBytes(bytes.data(), size, mode) != fits) {
        return false;
    }
    if (fits) {
        model.WriteInteger(size, prefixBytes[mode]);
        model.Write(bytes, size + 1024);
        model.WriteTerminator(mode, 1);
    }
    return true;
}

bool PacketPair::WriteWide()
{
    const unsigned mode = ChooseMode();
    const Bytes letters = ChooseBytes(choose(20) == 0 ? 400 : 6);
    const std::wstring text(letters.begin(), letters.end());
    const bool fits = Fits(mode, text.size());
    if (packet->WriteString(YUnicodeString(text), mode) != fits) {
        return false;
    }
    if (fits) {
        Bytes bytes;
        for (const unsigned char letter : letters) {
            bytes.insert(bytes.end(), {letter, letter});
            bytes[bytes.size() - (model.bigEndian ? 2 : 1)] = 0;
        }
        model.WriteInteger(text.size(), prefixBytes[mode]);
        model.Write(bytes, static_cast<unsigned>(bytes.size()) + 1024);
        model.WriteTerminator(mode, 2);
    }
    return true;
}

template <class Integer>
bool PacketPair::ReadAs(bool (YPacket::*read)(Integer&))
{
    const Bytes rest = model.Rest();
    Integer value = 77;
    const bool there = rest.size() >= sizeof value;
    if ((packet.Get()->*read)(value) != there) {
        return false;
    }
    if (there) {
        model.Drop(sizeof value);
    }
    return value == (there ? static_cast<Integer>(model.IntegerAt(rest, 0, sizeof value)) : 77);
}

bool PacketPair::ReadInteger()
{
    switch (choose(4)) {
    case 0: return ReadAs<unsigned char>(&YPacket::ReadByte);
    case 1: return ReadAs<std::int16_t>(&YPacket::ReadInt16);
    case 2: return ReadAs<std::uint32_t>(&YPacket::ReadUInt32);
    default: return ReadAs<std::int64_t>(&YPacket::ReadInt64);
    }
}

template <class Text>
bool PacketPair::ReadText(unsigned width)
{
    const unsigned mode = ChooseMode();
    const unsigned length = ChooseCount();
    const Bytes rest = model.Rest();
    std::uint64_t parts[3] = {};
    const bool there = model.FindText(mode, width, length, parts);
    Text text;
    if (packet->ReadString(text, mode, length) != there) {
        return false;
    }
    std::wstring expected;
    for (std::uint64_t at = 0; there && at < parts[1]; at += width) {
        expected.push_back(static_cast<wchar_t>(model.IntegerAt(rest, parts[0] + at, width)));
    }
    if (there) {
        model.Drop(static_cast<unsigned>(parts[0] + parts[1] + parts[2]));
    }
    if constexpr (std::is_same_v<Text, std::string>) {
        return std::equal(
            text.begin(), text.end(), expected.begin(), expected.end(),
            [](char left, wchar_t right) { return static_cast<unsigned char>(left) == right; });
    } else {
        return std::wstring_view(text) == expected;
    }
}

bool PacketPair::ReadString()
{
    return ReadText<std::string>(1);
}

bool PacketPair::ReadWide()
{
    return ReadText<YUnicodeString>(2);
}

bool PacketPair::ReadBytes()
{
    const Bytes rest = model.Rest();
    const unsigned size = ChooseCount();
    const bool there = size <= rest.size();
    Bytes bytes(there ? size : 0);
    if (packet->ReadBytes(bytes.data(), size) != there) {
        return false;
    }
    model.Drop(there ? size : 0);
    return std::equal(bytes.begin(), bytes.end(), rest.begin());
}

bool PacketPair::TakeChunk()
{
    IBuffer* taken = nullptr;
    unsigned offset = 0, expectedOffset = 0;
    std::shared_ptr<ModelChunk> expected;
    const bool there = model.TakeChunk(expected, expectedOffset);
    const bool done = packet->TakeNextChunk(&taken, &offset);
    const auto buffer = YUnknownPointer<IBuffer>::Adopt(taken);
    return done == there && offset == expectedOffset && (!there || buffers[expected] == buffer);
}

bool PacketPair::Unread()
{
    const unsigned bytes = ChooseCount();
    return packet->Unread(bytes) == model.Unread(bytes);
}

bool PacketPair::Seek()
{
    const int delta = static_cast<int>(ChooseCount() * choose(2) - choose(30));
    const bool done = packet->Seek(delta);
    if (delta < 0) {
        return done == model.Unread(0u - static_cast<unsigned>(delta));
    }
    const bool there = static_cast<unsigned>(delta) <= model.Rest().size();
    model.Drop(there ? static_cast<unsigned>(delta) : 0);
    return done == there;
}

bool PacketPair::Rewind()
{
    packet->RewindRead();
    model.cursors.readChunk = model.cursors.readOffset = 0;
    return true;
}

bool PacketPair::Limit()
{
    const unsigned limit = choose(2) == 0 ? npos : ChooseCount();
    packet->SetReadLimit(limit);
    model.cursors.readLimit = limit;
    return true;
}

bool PacketPair::Save()
{
    state = YUnknownPointer<IPacketState>::Adopt(packet->SaveState());
    modelState = model.cursors;
    return true;
}

bool PacketPair::Restore()
{
    packet->RestoreState(state.Get());
    model.cursors = state ? modelState : model.cursors;
    return true;
}

bool PacketPair::WriteToRead()
{
    packet->SetWriteToRead();
    model.Settle();
    model.cursors.writeChunk = model.cursors.readChunk;
    model.cursors.writeOffset = model.cursors.readOffset;
    return true;
}

bool PacketPair::Truncate()
{
    packet->TruncateAtWrite();
    model.Truncate();
    return true;
}

bool PacketPair::Insert(bool done, const ChunkList& added, unsigned mode)
{
    std::size_t total = 0;
    for (const auto& chunk : added) {
        total += chunk->bytes.size();
    }
    if (done && Fits(mode, total)) {
        model.Insert(added, mode);
    }
    return done == Fits(mode, total);
}

bool PacketPair::InsertBuffer()
{
    const Bytes bytes = ChooseBytes(8);
    const auto size = static_cast<unsigned>(bytes.size());
    const unsigned capacity = size + choose(4);
    YUnknownPointer<IBuffer> buffer;
    if (choose(2) == 0) {
        buffer = YUnknownPointer<YBasicBuffer>::Make(capacity);
    } else {
        buffer = YUnknownPointer<HostBuffer>::Make(capacity);
    }
    std::copy(bytes.begin(), bytes.end(), buffer->Data());
    buffer->SetSize(size);
    const auto chunk = std::make_shared<ModelChunk>(ModelChunk{bytes, capacity});
    buffers[chunk] = buffer;
    const unsigned mode = ChooseMode();
    return Insert(packet->WriteBuffer(buffer.Get(), mode), {chunk}, mode);
}

bool PacketPair::AppendOther()
{
    const auto other = YUnknownPointer<YPacket>::Make(choose(4));
    PacketModel otherModel;
    const Bytes bytes = ChooseBytes(choose(20) == 0 ? 300 : 6);
    other->WriteBytes(bytes.data(), static_cast<unsigned>(bytes.size()), PacketLength::None);
    other->SetReadLimit(1);
    const auto before = YUnknownPointer<IPacketState>::Adopt(other->SaveState());
    const unsigned mode = ChooseMode();
    const bool done = packet->WritePacket(other.Get(), mode);
    ChunkList added;
    other->SetReadLimit(npos);
    IBuffer* taken = nullptr;
    for (unsigned offset = 0; other->TakeNextChunk(&taken, &offset);) {
        const auto buffer = YUnknownPointer<IBuffer>::Adopt(taken);
        added.push_back(std::make_shared<ModelChunk>(ModelChunk{
            Bytes(buffer->Data(), buffer->Data() + buffer->Size()), buffer->Capacity()}));
        buffers[added.back()] = buffer;
    }
    return Insert(done, added, mode);
}

bool PacketPair::AppendItself()
{
    const unsigned mode = ChooseMode();
    ChunkList added;
    std::copy_if(model.chunks.begin(), model.chunks.end(), std::back_inserter(added),
                 [](const auto& chunk) { return !chunk->bytes.empty(); });
    return Insert(packet->WritePacket(packet.Get(), mode), added, mode);
}

bool PacketPair::ChangeOrder()
{
    model.bigEndian = choose(2) == 0;
    model.bigEndian ? packet->SetBigEndian() : packet->SetLittleEndian();
    return true;
}

// Whoever shares a chunk may make it smaller at any time.
bool PacketPair::ShrinkByOwner()
{
    if (model.chunks.empty()) {
        return true;
    }
    const auto chunk = model.chunks[choose(Count(model.chunks))];
    const auto known = buffers.find(chunk);
    if (known != buffers.end() && choose(4) == 0) {
        chunk->bytes.resize(choose(static_cast<unsigned>(chunk->bytes.size()) + 1));
        known->second->SetSize(static_cast<unsigned>(chunk->bytes.size()));
    }
    return true;
}
