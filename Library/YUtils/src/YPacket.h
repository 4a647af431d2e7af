// YPacket.h: the library's packet.
#pragma once

#include "CommonUiApi.h"
#include "IBuffer.h"
#include "IPacket.h"
#include "YUnknown.h"
#include "YUnknownPointer.h"

#include <optional>
#include <string_view>
#include <vector>

class YBasicBuffer;

// Grows by chunks of 1024 bytes, for a run of bytes by a chunk of its length and 1024 more. Whole
// integers and runs go in one piece where a chunk has them in one piece, with the same outcome as
// byte by byte.
class COMMONUI_API YPacket final : public YUnknown<IPacket>
{
public:
    // bytes: of the first chunk; 0: none is made yet. sensitive: memory of chunks that the packet
    // makes is wiped before it is given back, and wide text read from it is sensitive.
    explicit YPacket(unsigned bytes = 0, bool sensitive = false);
    YPacket(const YPacket&) = delete;
    YPacket& operator=(const YPacket&) = delete;

    // IPacket
    void SetLittleEndian() override { bigEndian = false; }
    void SetBigEndian() override { bigEndian = true; }
    IPacketState* SaveState() const override;
    void RestoreState(const IPacketState* state) override;
    unsigned GetTotalSize() const override;
    unsigned GetReadRemaining() const override;
    unsigned GetWritePosition() const override;
    void SetReadLimit(unsigned bytes) override { cursors.readLimit = bytes; }
    bool ReadBool(bool& value) override;
    bool ReadBool(VARIANT& value) override;
    bool ReadByte(unsigned char& value) override;
    bool ReadByte(VARIANT& value) override;
    bool ReadInt16(std::int16_t& value) override;
    bool ReadInt16(VARIANT& value) override;
    bool ReadUInt16(std::uint16_t& value) override;
    bool ReadUInt16(VARIANT& value) override;
    bool ReadInt32(std::int32_t& value) override;
    bool ReadInt32(VARIANT& value) override;
    bool ReadUInt32(std::uint32_t& value) override;
    bool ReadUInt32(VARIANT& value) override;
    bool ReadInt64(std::int64_t& value) override;
    bool ReadInt64(VARIANT& value) override;
    bool ReadUInt64(std::uint64_t& value) override;
    bool ReadUInt64(VARIANT& value) override;
    bool ReadString(std::string& text, unsigned mode, unsigned length = 0) override;
    bool ReadString(YUnicodeString& text, unsigned mode, unsigned length = 0) override;
    bool ReadBytes(void* bytes, unsigned size) override;
    bool TakeNextChunk(IBuffer** buffer, unsigned* offset) override;
    bool Unread(unsigned bytes) override;
    void RewindRead() override;
    void WriteByte(unsigned char value) override;
    void WriteInt16(std::int16_t value) override;
    void WriteUInt16(std::uint16_t value) override;
    void WriteInt32(std::int32_t value) override;
    void WriteUInt32(std::uint32_t value) override;
    void WriteInt64(std::int64_t value) override;
    void WriteUInt64(std::uint64_t value) override;
    bool WriteBytes(const void* bytes, unsigned size, unsigned mode) override;
    bool WriteString(const char* text, unsigned mode) override;
    bool WriteString(const wchar_t* text, unsigned mode) override;
    bool WriteString(const YUnicodeString& text, unsigned mode) override;
    bool WriteBuffer(IBuffer* buffer, unsigned mode) override;
    bool WritePacket(IPacket* other, unsigned mode) override;
    bool Seek(int bytes) override;
    void SetWriteToRead() override;
    void TruncateAtWrite() override;

private:
    class ReadMark;

    // What an operation asks of a chunk, in one look.
    struct View
    {
        unsigned char* data;
        unsigned size;  // at most capacity
        unsigned capacity;
    };

    // A reference, never null, and what is known of it for good.
    class Chunk
    {
    public:
        explicit Chunk(YUnknownPointer<IBuffer> held);
        IBuffer* operator->() const { return buffer.Get(); }
        IBuffer* Get() const { return buffer.Get(); }
        YBasicBuffer* GetOwn() const { return own; }
        View Look() const;
        bool operator==(const Chunk& other) const { return Get() == other.Get(); }

    private:
        YUnknownPointer<IBuffer> buffer;
        // Nearly every chunk is a YBasicBuffer, whose answers cost no call. Null: a host's.
        YBasicBuffer* own;
    };
    using Chunks = std::vector<Chunk>;

    // Where a cursor stood last, so that an integer costs no way through the list.
    struct KnownChunk
    {
        unsigned index = npos;  // npos: nothing is known
        YBasicBuffer* buffer = nullptr;  // own of chunks[index]
    };

    ~YPacket() override;

    unsigned GetChunkCount() const { return static_cast<unsigned>(chunks.size()); }
    static std::uint64_t SizeOf(Chunks::const_iterator first, Chunks::const_iterator last);
    static Chunks ChunksOf(IPacket& packet);

    static YBasicBuffer* Recall(const KnownChunk& known, unsigned index);
    void LookUp(KnownChunk& known, unsigned index) const;

    bool Holds(std::uint64_t bytes) const;
    bool HoldsAcross(std::uint64_t bytes) const;
    bool SettleRead();
    void ConsumeLimit(unsigned bytes);
    // Inlined: the jump would be a tenth of the price of an integer.
    template <class Integer>
    [[gnu::always_inline]] inline bool ReadInteger(Integer& value);
    template <class Integer>
    [[gnu::noinline]] bool ReadByBytes(Integer& value);
    template <class Integer, class Field>
    bool ReadVariant(VARIANT& variant, VARTYPE type, Field& field);
    std::optional<unsigned> FindTerminator(unsigned mode, unsigned characterBytes) const;
    [[gnu::always_inline]] inline bool ReadLength(unsigned mode, unsigned characterBytes,
                                                  unsigned& length, unsigned& terminatorBytes);
    [[gnu::always_inline]] inline bool TakeWithin(void* bytes, unsigned size);
    bool TakeRun(unsigned char* bytes, unsigned size);

    void SettleWrite();
    void FindRoom(unsigned newCapacity);
    template <class Integer>
    [[gnu::always_inline]] inline void WriteInteger(Integer value);
    template <class Integer>
    [[gnu::noinline]] void WriteByBytes(Integer raw);
    [[gnu::always_inline]] inline bool PutWithin(const void* bytes, unsigned size);
    void PutRun(const unsigned char* bytes, unsigned size, unsigned newCapacity);
    bool WriteLength(unsigned mode, std::uint64_t length);
    void WriteTerminator(unsigned mode, unsigned characterBytes);
    bool WriteWide(std::wstring_view text, unsigned mode);

    bool InsertChunks(const Chunks& added, unsigned mode);
    void InsertAtWrite(const Chunks& added);
    void CloseWriteChunk();
    void KeepOff(const Chunks& added);

    // Chunks are never removed. The cursors may lie past what is there: after a
    // restore, or when the owner of a chunk has made it smaller. Every use takes that as the end.
    Chunks chunks;
    bool bigEndian = true;
    bool chunkFlag;  // sensitive: given to every new chunk
    YPacketCursors cursors;
    // Forgotten when chunks move.
    KnownChunk knownRead;
    KnownChunk knownWrite;
};
