#include "YPacket.h"

#include "YBasicBuffer.h"
#include "YPacketState.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <typeinfo>
#include <utility>

namespace {

constexpr unsigned newChunkBytes = 1024;  // capacity, and what a run's own chunk has to spare
constexpr unsigned char lineEnd[] = {13, 10};
constexpr unsigned wideBytes = 2;  // of a character

// Between the machine's order and the other one.
template <class Integer>
Integer Swap(Integer value)
{
    if constexpr (sizeof value == 8) {
        return static_cast<Integer>(__builtin_bswap64(static_cast<std::uint64_t>(value)));
    } else if constexpr (sizeof value == 4) {
        return static_cast<Integer>(__builtin_bswap32(static_cast<std::uint32_t>(value)));
    } else if constexpr (sizeof value == 2) {
        return static_cast<Integer>(__builtin_bswap16(static_cast<std::uint16_t>(value)));
    } else {
        return value;
    }
}

// A call costs more than the one byte of the smallest chunk.
inline void CopyPiece(unsigned char* to, const unsigned char* from, unsigned size)
{
    if (size == 1) {
        *to = *from;
    } else {
        std::memcpy(to, from, size);
    }
}

unsigned Saturate(std::uint64_t bytes)
{
    return static_cast<unsigned>(std::min<std::uint64_t>(bytes, npos));
}

// Whether a text of this length can be told in the mode at all.
bool Fits(unsigned mode, std::uint64_t length)
{
    switch (mode) {
    case PacketLength::FourBytes: return length <= 0xFFFFFFFF;
    case PacketLength::TwoBytes: return length <= 0xFFFF;
    case PacketLength::OneByte: return length <= 0xFF;
    case PacketLength::ZeroByte:
    case PacketLength::CrLf:
    case PacketLength::None: return true;
    default: return false;
    }
}

// Puts a packet's cursors and limit back, however the scope ends.
class StateRestorer
{
public:
    explicit StateRestorer(IPacket& borrowed)
        : packet(borrowed), state(YUnknownPointer<IPacketState>::Adopt(borrowed.SaveState()))
    {}
    ~StateRestorer() { packet.RestoreState(state.Get()); }
    StateRestorer(const StateRestorer&) = delete;
    StateRestorer& operator=(const StateRestorer&) = delete;

private:
    IPacket& packet;
    YUnknownPointer<IPacketState> state;
};

}  // namespace

// Puts the read cursor back unless the read was kept.
class YPacket::ReadMark
{
public:
    explicit ReadMark(YPacketCursors& borrowed) : cursors(borrowed), before(borrowed) {}
    ~ReadMark()
    {
        if (!kept) {
            cursors = before;
        }
    }
    ReadMark(const ReadMark&) = delete;
    ReadMark& operator=(const ReadMark&) = delete;

    bool Keep() { return kept = true; }

private:
    YPacketCursors& cursors;
    YPacketCursors before;
    bool kept = false;
};

// By the address of its type: one that another module describes once more only takes the longer way.
YPacket::Chunk::Chunk(YUnknownPointer<IBuffer> held) : buffer(std::move(held)), own(nullptr)
{
    IBuffer& chunk = *buffer;
    if (&typeid(chunk) == &typeid(YBasicBuffer)) {
        own = static_cast<YBasicBuffer*>(&chunk);
    }
}

inline YPacket::View YPacket::Chunk::Look() const
{
    if (own) {
        return {own->Data(), own->Size(), own->Capacity()};
    }
    const unsigned capacity = buffer->Capacity();
    return {buffer->Data(), std::min(buffer->Size(), capacity), capacity};
}

YPacket::YPacket(unsigned bytes, bool sensitive) : chunkFlag(sensitive)
{
    if (bytes > 0) {
        chunks.emplace_back(YUnknownPointer<YBasicBuffer>::Make(bytes, chunkFlag));
    }
}

YPacket::~YPacket() = default;

std::uint64_t YPacket::SizeOf(Chunks::const_iterator first, Chunks::const_iterator last)
{
    std::uint64_t bytes = 0;
    for (; first != last; ++first) {
        bytes += first->Look().size;
    }
    return bytes;
}

// Through the interface: it need not be a packet of ours. Empty chunks are left out.
YPacket::Chunks YPacket::ChunksOf(IPacket& packet)
{
    Chunks all;
    const StateRestorer restorer(packet);
    packet.SetReadLimit(npos);
    packet.RewindRead();
    IBuffer* chunk = nullptr;
    unsigned offset = 0;
    while (packet.TakeNextChunk(&chunk, &offset)) {
        all.emplace_back(YUnknownPointer<IBuffer>::Adopt(chunk));
    }
    return all;
}

IPacketState* YPacket::SaveState() const
{
    IBuffer* const first = chunks.empty() ? nullptr : chunks.front().Get();
    return YUnknownPointer<YPacketState>::Make(first, cursors).Detach();
}

void YPacket::RestoreState(const IPacketState* state)
{
    if (state) {
        cursors = state->GetCursors();
    }
}

// The sum can pass 32 bits: a packet that is appended to itself doubles without a byte of memory.
unsigned YPacket::GetTotalSize() const
{
    return Saturate(SizeOf(chunks.begin(), chunks.end()));
}

unsigned YPacket::GetReadRemaining() const
{
    std::uint64_t bytes = 0;
    for (unsigned i = cursors.readChunk, offset = cursors.readOffset; i < GetChunkCount();
         ++i, offset = 0) {
        const unsigned size = chunks[i].Look().size;
        bytes += size - std::min(size, offset);
    }
    return Saturate(std::min<std::uint64_t>(bytes, cursors.readLimit));
}

unsigned YPacket::GetWritePosition() const
{
    const unsigned whole = std::min(cursors.writeChunk, GetChunkCount());
    std::uint64_t bytes = SizeOf(chunks.begin(), chunks.begin() + whole);
    if (whole < GetChunkCount()) {
        bytes += std::min(cursors.writeOffset, chunks[whole].Look().size);
    }
    return Saturate(bytes);
}

// Null: not known to be a chunk of our own.
inline YBasicBuffer* YPacket::Recall(const KnownChunk& known, unsigned index)
{
    return known.index == index ? known.buffer : nullptr;
}

void YPacket::LookUp(KnownChunk& known, unsigned index) const
{
    if (known.index != index && index < GetChunkCount()) {
        known = {index, chunks[index].GetOwn()};
    }
}

// Whether so many bytes are there and may be read.
inline bool YPacket::Holds(std::uint64_t bytes) const
{
    const YBasicBuffer* const own = Recall(knownRead, cursors.readChunk);
    const bool isWithin = own && own->Size() >= bytes && cursors.readOffset <= own->Size() - bytes;
    return (isWithin && bytes <= cursors.readLimit) || HoldsAcross(bytes);
}

// Ends as soon as it is sure.
bool YPacket::HoldsAcross(std::uint64_t bytes) const
{
    if (cursors.readLimit != npos && bytes > cursors.readLimit) {
        return false;
    }
    for (unsigned i = cursors.readChunk, offset = cursors.readOffset;
         bytes > 0 && i < GetChunkCount(); ++i, offset = 0) {
        const unsigned size = chunks[i].Look().size;
        bytes -= std::min<std::uint64_t>(bytes, size - std::min(size, offset));
    }
    return bytes == 0;
}

// Moves the read cursor onto the next byte; false, unmoved: there is none. A cursor rests at the
// end of its chunk until then, because that chunk may still be written to (test:
// ReadsWhatIsWrittenAfterTheEndWasReached).
bool YPacket::SettleRead()
{
    for (unsigned i = cursors.readChunk, offset = cursors.readOffset; i < GetChunkCount();
         ++i, offset = 0) {
        if (offset < chunks[i].Look().size) {
            cursors.readChunk = i;
            cursors.readOffset = offset;
            return true;
        }
    }
    return false;
}

void YPacket::ConsumeLimit(unsigned bytes)
{
    if (cursors.readLimit != npos) {
        cursors.readLimit -= bytes;
    }
}

// From a chunk that is known to be our own, within the limit; null: dropped. False: not all of it
// lies there.
inline bool YPacket::TakeWithin(void* bytes, unsigned size)
{
    YBasicBuffer* const own = Recall(knownRead, cursors.readChunk);
    const unsigned offset = cursors.readOffset;
    if (!own || own->Size() < size || offset > own->Size() - size) {
        return false;
    }
    if (bytes) {
        std::memcpy(bytes, own->Data() + offset, size);
    }
    cursors.readOffset = offset + size;
    ConsumeLimit(size);
    return true;
}

// Within the limit. False, nothing consumed: they are not all there; some may have been stored. Null:
// dropped. A cursor rests at the end of its chunk, see SettleRead.
bool YPacket::TakeRun(unsigned char* bytes, unsigned size)
{
    if (size == 0 || TakeWithin(bytes, size)) {
        return true;
    }
    const unsigned wanted = size;
    for (unsigned i = cursors.readChunk, offset = cursors.readOffset; i < GetChunkCount();
         ++i, offset = 0) {
        const View view = chunks[i].Look();
        if (offset >= view.size) {
            continue;
        }
        const unsigned piece = std::min(size, view.size - offset);
        if (bytes) {
            CopyPiece(bytes, view.data + offset, piece);
            bytes += piece;
        }
        size -= piece;
        if (size == 0) {
            cursors.readChunk = i;
            cursors.readOffset = offset + piece;
            ConsumeLimit(wanted);
            LookUp(knownRead, i);  // for the next one
            return true;
        }
    }
    return false;
}

// The whole integer from one chunk that is known to be our own, else by bytes.
template <class Integer>
bool YPacket::ReadInteger(Integer& value)
{
    Integer raw = 0;
    if (cursors.readLimit < sizeof raw || !TakeWithin(&raw, sizeof raw)) {
        return ReadByBytes(value);
    }
    value = bigEndian ? Swap(raw) : raw;
    return true;
}

template <class Integer>
bool YPacket::ReadByBytes(Integer& value)
{
    Integer raw = 0;
    if (cursors.readLimit < sizeof raw ||
        !TakeRun(reinterpret_cast<unsigned char*>(&raw), sizeof raw)) {
        return false;
    }
    value = bigEndian ? Swap(raw) : raw;
    return true;
}

template <class Integer, class Field>
bool YPacket::ReadVariant(VARIANT& variant, VARTYPE type, Field& field)
{
    Integer value = 0;
    if (FAILED(::VariantClear(&variant)) || !ReadInteger(value)) {
        return false;
    }
    variant.vt = type;
    field = static_cast<Field>(value);
    return true;
}

bool YPacket::ReadBool(bool& value)
{
    unsigned char stored = 0;
    if (!ReadInteger(stored)) {
        return false;
    }
    value = stored != 0;
    return true;
}

bool YPacket::ReadBool(VARIANT& value)
{
    if (!ReadVariant<unsigned char>(value, VT_BOOL, value.boolVal)) {
        return false;
    }
    value.boolVal = value.boolVal != 0 ? VARIANT_TRUE : VARIANT_FALSE;
    return true;
}

bool YPacket::ReadByte(unsigned char& value)
{
    return ReadInteger(value);
}

bool YPacket::ReadByte(VARIANT& value)
{
    return ReadVariant<unsigned char>(value, VT_UI1, value.bVal);
}

bool YPacket::ReadInt16(std::int16_t& value)
{
    return ReadInteger(value);
}

bool YPacket::ReadInt16(VARIANT& value)
{
    return ReadVariant<std::int16_t>(value, VT_I2, value.iVal);
}

bool YPacket::ReadUInt16(std::uint16_t& value)
{
    return ReadInteger(value);
}

bool YPacket::ReadUInt16(VARIANT& value)
{
    return ReadVariant<std::uint16_t>(value, VT_UI2, value.uiVal);
}

bool YPacket::ReadInt32(std::int32_t& value)
{
    return ReadInteger(value);
}

bool YPacket::ReadInt32(VARIANT& value)
{
    return ReadVariant<std::int32_t>(value, VT_I4, value.lVal);
}

bool YPacket::ReadUInt32(std::uint32_t& value)
{
    return ReadInteger(value);
}

bool YPacket::ReadUInt32(VARIANT& value)
{
    return ReadVariant<std::uint32_t>(value, VT_UI4, value.ulVal);
}

bool YPacket::ReadInt64(std::int64_t& value)
{
    return ReadInteger(value);
}

bool YPacket::ReadInt64(VARIANT& value)
{
    return ReadVariant<std::int64_t>(value, VT_I8, value.llVal);
}

bool YPacket::ReadUInt64(std::uint64_t& value)
{
    return ReadInteger(value);
}

bool YPacket::ReadUInt64(VARIANT& value)
{
    return ReadVariant<std::uint64_t>(value, VT_UI8, value.ullVal);
}

// Counts the characters before the terminator, across chunks, no further than the limit allows.
std::optional<unsigned> YPacket::FindTerminator(unsigned mode, unsigned characterBytes) const
{
    unsigned left = cursors.readLimit;
    unsigned characters = 0, held = 0;  // held: bytes of the character at hand
    unsigned character = 0, previous = 0;
    for (unsigned i = cursors.readChunk, at = cursors.readOffset; i < GetChunkCount();
         ++i, at = 0) {
        const View view = chunks[i].Look();
        for (; at < view.size && left > 0; ++at, --left) {
            const unsigned next = view.data[at];
            character = bigEndian ? character << 8 | next : character | next << 8 * held;
            if (++held < characterBytes) {
                continue;
            }
            if (mode == PacketLength::ZeroByte && character == 0) {
                return characters;
            }
            if (mode == PacketLength::CrLf && previous == lineEnd[0] && character == lineEnd[1]) {
                return characters - 1;
            }
            previous = std::exchange(character, 0);
            held = 0;
            ++characters;
        }
    }
    return std::nullopt;
}

// Leaves the read cursor at the text. length: as given, where the mode tells none.
bool YPacket::ReadLength(unsigned mode, unsigned characterBytes, unsigned& length,
                         unsigned& terminatorBytes)
{
    const auto read = [&](auto value) {
        const bool done = ReadInteger(value);
        length = value;
        return done;
    };
    terminatorBytes = 0;
    switch (mode) {
    case PacketLength::FourBytes: return read(std::uint32_t{});
    case PacketLength::TwoBytes: return read(std::uint16_t{});
    case PacketLength::OneByte: return read(std::uint8_t{});
    case PacketLength::ZeroByte:
    case PacketLength::CrLf: {
        const std::optional<unsigned> found = FindTerminator(mode, characterBytes);
        length = found.value_or(0);
        terminatorBytes = characterBytes * (mode == PacketLength::CrLf ? 2 : 1);
        return found.has_value();
    }
    case PacketLength::None: return true;
    default: return false;
    }
}

// Nothing is allocated for a length before the bytes are known to be there.
bool YPacket::ReadString(std::string& text, unsigned mode, unsigned length)
{
    ReadMark mark(cursors);
    unsigned terminatorBytes = 0;
    if (!ReadLength(mode, 1, length, terminatorBytes) ||
        !Holds(std::uint64_t{length} + terminatorBytes)) {
        return false;
    }
    text.resize(length);
    TakeRun(reinterpret_cast<unsigned char*>(text.data()), length);
    TakeRun(nullptr, terminatorBytes);
    return mark.Keep();
}

bool YPacket::ReadString(YUnicodeString& text, unsigned mode, unsigned length)
{
    ReadMark mark(cursors);
    unsigned terminatorBytes = 0;
    if (!ReadLength(mode, wideBytes, length, terminatorBytes) ||
        !Holds(std::uint64_t{length} * wideBytes + terminatorBytes)) {
        return false;
    }
    std::wstring characters(length, L'\0');
    for (wchar_t& character : characters) {
        std::uint16_t value = 0;
        ReadInteger(value);
        character = static_cast<wchar_t>(value);
    }
    TakeRun(nullptr, terminatorBytes);
    text = YUnicodeString(characters, chunkFlag ? Str::Sensitive : Str::NotSensitive);
    if (text.IsSensitive()) {
        ::SecureZeroMemory(characters.data(), characters.size() * sizeof(wchar_t));
    }
    return mark.Keep();
}

bool YPacket::ReadBytes(void* bytes, unsigned size)
{
    if (!Holds(size)) {
        return false;
    }
    TakeRun(static_cast<unsigned char*>(bytes), size);
    return true;
}

bool YPacket::TakeNextChunk(IBuffer** buffer, unsigned* offset)
{
    ReadMark mark(cursors);
    if (!SettleRead()) {
        return false;
    }
    const Chunk& chunk = chunks[cursors.readChunk];
    const unsigned rest = chunk.Look().size - cursors.readOffset;
    if (rest > cursors.readLimit) {
        return false;
    }
    *buffer = YUnknownPointer<IBuffer>(chunk.Get()).Detach();
    *offset = cursors.readOffset;
    ConsumeLimit(rest);
    ++cursors.readChunk;
    cursors.readOffset = 0;
    return mark.Keep();
}

bool YPacket::Unread(unsigned bytes)
{
    unsigned chunk = std::min(cursors.readChunk, GetChunkCount());
    unsigned offset =
        chunk < GetChunkCount() ? std::min(cursors.readOffset, chunks[chunk].Look().size) : 0;
    unsigned left = bytes;
    while (left > offset) {
        if (chunk == 0) {
            return false;
        }
        left -= offset;
        offset = chunks[--chunk].Look().size;
    }
    cursors.readChunk = chunk;
    cursors.readOffset = offset - left;
    if (cursors.readLimit != npos) {
        cursors.readLimit += std::min(bytes, npos - 1 - cursors.readLimit);
    }
    return true;
}

void YPacket::RewindRead()
{
    cursors.readChunk = 0;
    cursors.readOffset = 0;
}

// Takes a write cursor past the data as its end: a gap would hold bytes that nobody wrote.
void YPacket::SettleWrite()
{
    if (cursors.writeChunk >= GetChunkCount()) {
        cursors.writeChunk = GetChunkCount();
        cursors.writeOffset = 0;
    } else {
        cursors.writeOffset = std::min(cursors.writeOffset, chunks[cursors.writeChunk].Look().size);
    }
}

// Moves the write cursor to a chunk with room for a byte, made where there is none.
void YPacket::FindRoom(unsigned newCapacity)
{
    SettleWrite();
    while (cursors.writeChunk < GetChunkCount()) {
        if (cursors.writeOffset < chunks[cursors.writeChunk].Look().capacity) {
            return;
        }
        ++cursors.writeChunk;
        cursors.writeOffset = 0;
    }
    chunks.emplace_back(YUnknownPointer<YBasicBuffer>::Make(newCapacity, chunkFlag));
}

// Into a chunk that is known to be our own, with room left afterwards; the outcome is that of bytes
// one by one. False: nothing is done. The bytes may be the packet's own.
inline bool YPacket::PutWithin(const void* bytes, unsigned size)
{
    YBasicBuffer* const own = Recall(knownWrite, cursors.writeChunk);
    const unsigned offset = cursors.writeOffset;
    if (!own || offset > own->Size() || own->Capacity() - offset <= size) {
        return false;
    }
    std::memmove(own->Data() + offset, bytes, size);
    cursors.writeOffset = offset + size;
    if (own->Size() < offset + size) {
        own->SetSize(offset + size);
    }
    return true;
}

void YPacket::PutRun(const unsigned char* bytes, unsigned size, unsigned newCapacity)
{
    while (size > 0 && !PutWithin(bytes, size)) {
        FindRoom(newCapacity);
        const Chunk& chunk = chunks[cursors.writeChunk];
        const View view = chunk.Look();
        const unsigned piece = std::min(size, view.capacity - cursors.writeOffset);
        std::memmove(view.data + cursors.writeOffset, bytes, piece);
        cursors.writeOffset += piece;
        bytes += piece;
        size -= piece;
        if (view.size < cursors.writeOffset) {
            chunk->SetSize(cursors.writeOffset);
        }
        if (cursors.writeOffset == view.capacity) {
            ++cursors.writeChunk;
            cursors.writeOffset = 0;
        }
        LookUp(knownWrite, cursors.writeChunk);
    }
}

template <class Integer>
void YPacket::WriteInteger(Integer value)
{
    const Integer raw = bigEndian ? Swap(value) : value;
    if (!PutWithin(&raw, sizeof raw)) {
        WriteByBytes(raw);
    }
}

template <class Integer>
void YPacket::WriteByBytes(Integer raw)
{
    PutRun(reinterpret_cast<const unsigned char*>(&raw), sizeof raw, newChunkBytes);
}

void YPacket::WriteByte(unsigned char value)
{
    WriteInteger(value);
}

void YPacket::WriteInt16(std::int16_t value)
{
    WriteInteger(value);
}

void YPacket::WriteUInt16(std::uint16_t value)
{
    WriteInteger(value);
}

void YPacket::WriteInt32(std::int32_t value)
{
    WriteInteger(value);
}

void YPacket::WriteUInt32(std::uint32_t value)
{
    WriteInteger(value);
}

void YPacket::WriteInt64(std::int64_t value)
{
    WriteInteger(value);
}

void YPacket::WriteUInt64(std::uint64_t value)
{
    WriteInteger(value);
}

// False, nothing written: the mode cannot tell the length.
bool YPacket::WriteLength(unsigned mode, std::uint64_t length)
{
    if (!Fits(mode, length)) {
        return false;
    }
    switch (mode) {
    case PacketLength::FourBytes: WriteInteger(static_cast<std::uint32_t>(length)); break;
    case PacketLength::TwoBytes: WriteInteger(static_cast<std::uint16_t>(length)); break;
    case PacketLength::OneByte: WriteInteger(static_cast<std::uint8_t>(length)); break;
    default: break;
    }
    return true;
}

void YPacket::WriteTerminator(unsigned mode, unsigned characterBytes)
{
    const auto put = [&](std::uint8_t character) {
        if (characterBytes == wideBytes) {
            WriteInteger<std::uint16_t>(character);
        } else {
            WriteInteger(character);
        }
    };
    if (mode == PacketLength::ZeroByte) {
        put(0);
    } else if (mode == PacketLength::CrLf) {
        put(lineEnd[0]);
        put(lineEnd[1]);
    }
}

bool YPacket::WriteBytes(const void* bytes, unsigned size, unsigned mode)
{
    if (!WriteLength(mode, size)) {
        return false;
    }
    PutRun(static_cast<const unsigned char*>(bytes), size,
           Saturate(std::uint64_t{size} + newChunkBytes));
    WriteTerminator(mode, 1);
    return true;
}

bool YPacket::WriteString(const char* text, unsigned mode)
{
    const std::size_t size = text ? std::strlen(text) : 0;
    return size <= npos && WriteBytes(text, static_cast<unsigned>(size), mode);
}

bool YPacket::WriteString(const wchar_t* text, unsigned mode)
{
    return WriteWide(text ? std::wstring_view(text) : std::wstring_view(), mode);
}

bool YPacket::WriteString(const YUnicodeString& text, unsigned mode)
{
    return WriteWide(text, mode);
}

// Character by character, but into the chunks of one run.
bool YPacket::WriteWide(std::wstring_view text, unsigned mode)
{
    if (!WriteLength(mode, text.size())) {
        return false;
    }
    const unsigned newCapacity = Saturate(std::uint64_t{text.size()} * wideBytes + newChunkBytes);
    for (const wchar_t character : text) {
        const auto value = static_cast<std::uint16_t>(character);
        const std::uint16_t raw = bigEndian ? Swap(value) : value;
        PutRun(reinterpret_cast<const unsigned char*>(&raw), sizeof raw, newCapacity);
    }
    WriteTerminator(mode, wideBytes);
    return true;
}

bool YPacket::WriteBuffer(IBuffer* buffer, unsigned mode)
{
    return buffer && InsertChunks({Chunk(YUnknownPointer<IBuffer>(buffer))}, mode);
}

bool YPacket::WritePacket(IPacket* other, unsigned mode)
{
    return other && InsertChunks(ChunksOf(*other), mode);
}

bool YPacket::InsertChunks(const Chunks& added, unsigned mode)
{
    const auto length = [&] { return SizeOf(added.begin(), added.end()); };
    if (!Fits(mode, length())) {
        return false;
    }
    const bool terminated = mode == PacketLength::ZeroByte || mode == PacketLength::CrLf;
    if (!terminated && mode != PacketLength::None) {
        KeepOff(added);
        WriteLength(mode, length());
    }
    CloseWriteChunk();
    InsertAtWrite(added);
    if (terminated) {
        KeepOff(added);
        WriteTerminator(mode, 1);
    }
    return true;
}

// Before the chunk at the write cursor, which stands at its beginning; the write cursor goes behind
// what is added and the read cursor stays with its byte.
void YPacket::InsertAtWrite(const Chunks& added)
{
    const unsigned at = cursors.writeChunk;
    const auto count = static_cast<unsigned>(added.size());
    chunks.insert(chunks.begin() + at, added.begin(), added.end());
    knownRead = knownWrite = {};
    cursors.writeChunk += count;
    if (cursors.readChunk > at || (cursors.readChunk == at && cursors.readOffset > 0)) {
        cursors.readChunk += count;
    }
}

// A chunk of which nothing lies before the cursor has not been begun: it moves behind what comes.
void YPacket::CloseWriteChunk()
{
    SettleWrite();
    if (cursors.writeOffset > 0) {
        chunks[cursors.writeChunk]->SetSize(cursors.writeOffset);
        ++cursors.writeChunk;
        cursors.writeOffset = 0;
    }
}

// A length or a terminator that went into a chunk which is added itself would be part of what it
// measures: it gets a chunk of its own (test: TakesItselfIn).
void YPacket::KeepOff(const Chunks& added)
{
    SettleWrite();
    const auto next = chunks.begin() + cursors.writeChunk;
    if (std::find_first_of(next, chunks.end(), added.begin(), added.end()) != chunks.end()) {
        CloseWriteChunk();
        InsertAtWrite({Chunk(YUnknownPointer<YBasicBuffer>::Make(newChunkBytes, chunkFlag))});
        --cursors.writeChunk;
    }
}

bool YPacket::Seek(int bytes)
{
    const unsigned distance =
        bytes < 0 ? 0u - static_cast<unsigned>(bytes) : static_cast<unsigned>(bytes);
    return bytes < 0 ? Unread(distance) : ReadBytes(nullptr, distance);
}

void YPacket::SetWriteToRead()
{
    SettleRead();
    cursors.writeChunk = cursors.readChunk;
    cursors.writeOffset = cursors.readOffset;
}

void YPacket::TruncateAtWrite()
{
    SettleWrite();
    for (unsigned i = cursors.writeChunk; i < GetChunkCount(); ++i) {
        chunks[i]->SetSize(i == cursors.writeChunk ? cursors.writeOffset : 0);
    }
}
