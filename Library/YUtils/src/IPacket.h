// IPacket.h: a message of a protocol, being built or being parsed.
#pragma once

#include "IPacketState.h"
#include "YUnicodeString.h"

#include <windows.h>

#include <oaidl.h>
#include <unknwn.h>

#include <cstdint>
#include <string>

class IBuffer;

namespace PacketLength {

// How a text tells its length. Passed as 32 bits: any other value fails and does nothing.
enum Mode : unsigned {
    FourBytes = 0,  // a length of so many bytes before it, in the packet's byte order
    TwoBytes = 1,
    OneByte = 2,
    ZeroByte = 3,  // a 0 after it
    CrLf = 4,  // 13, 10 after it
    None = 5,  // it tells nothing: the reader must know
};

}  // namespace PacketLength

// The bytes lie in a list of chunks, which can be handed out, taken in and shared by reference. One
// cursor reads, one writes; both start at the first byte, and writing overwrites what stands there.
// Integers are in network byte order unless told otherwise.
//
// A false means that nothing happened: a read that would pass the last byte or the read limit
// consumes nothing and changes no output, a text too long for its form writes nothing. A length
// that comes from the peer is held against what is there before memory is taken for it. Running out
// of memory throws. The library implements it; one thread at a time. The order is binary contract.
class IPacket : public IUnknown
{
public:
    virtual void SetLittleEndian() = 0;  // for all integers from here on
    virtual void SetBigEndian() = 0;

    // The caller owns the reference. Restoring puts the cursors and the limit back, not the bytes:
    // a cursor past what a truncation left stands at the end.
    virtual IPacketState* SaveState() const = 0;
    virtual void RestoreState(const IPacketState* state) = 0;

    // Bytes; what 32 bits cannot say is npos.
    virtual unsigned GetTotalSize() const = 0;
    virtual unsigned GetReadRemaining() const = 0;  // at most the limit
    virtual unsigned GetWritePosition() const = 0;

    virtual void SetReadLimit(unsigned bytes) = 0;  // that may still be read; npos: no limit

    // Any byte but 0 is true. A VARIANT is cleared first, even when the read then fails.
    virtual bool ReadBool(bool& value) = 0;
    virtual bool ReadBool(VARIANT& value) = 0;  // VT_BOOL
    virtual bool ReadByte(unsigned char& value) = 0;
    virtual bool ReadByte(VARIANT& value) = 0;  // VT_UI1
    virtual bool ReadInt16(std::int16_t& value) = 0;
    virtual bool ReadInt16(VARIANT& value) = 0;  // VT_I2
    virtual bool ReadUInt16(std::uint16_t& value) = 0;
    virtual bool ReadUInt16(VARIANT& value) = 0;  // VT_UI2
    virtual bool ReadInt32(std::int32_t& value) = 0;
    virtual bool ReadInt32(VARIANT& value) = 0;  // VT_I4
    virtual bool ReadUInt32(std::uint32_t& value) = 0;
    virtual bool ReadUInt32(VARIANT& value) = 0;  // VT_UI4
    virtual bool ReadInt64(std::int64_t& value) = 0;
    virtual bool ReadInt64(VARIANT& value) = 0;  // VT_I8
    virtual bool ReadUInt64(std::uint64_t& value) = 0;
    virtual bool ReadUInt64(VARIANT& value) = 0;  // VT_UI8
    // length: bytes, or characters of wide text; for PacketLength::None only. Wide text is UTF-16:
    // each character is a 2-byte integer, and so is what ends the text. A single 0 byte would end it
    // within its first plain letter.
    virtual bool ReadString(std::string& text, unsigned mode, unsigned length = 0) = 0;
    virtual bool ReadString(YUnicodeString& text, unsigned mode, unsigned length = 0) = 0;
    virtual bool ReadBytes(void* bytes, unsigned size) = 0;
    // Hands out the chunk that is read next, with a new reference, and where in it to begin; what
    // is read next is the chunk behind it, so what is written to this one later is never read.
    // False as well when the chunk reaches past the limit.
    virtual bool TakeNextChunk(IBuffer** buffer, unsigned* offset) = 0;

    // Back over bytes that were read. A finite limit grows by them, but stays finite.
    virtual bool Unread(unsigned bytes) = 0;
    virtual void RewindRead() = 0;  // the limit stays

    virtual void WriteByte(unsigned char value) = 0;
    virtual void WriteInt16(std::int16_t value) = 0;
    virtual void WriteUInt16(std::uint16_t value) = 0;
    virtual void WriteInt32(std::int32_t value) = 0;
    virtual void WriteUInt32(std::uint32_t value) = 0;
    virtual void WriteInt64(std::int64_t value) = 0;
    virtual void WriteUInt64(std::uint64_t value) = 0;
    // A text that holds its own terminator is written whole and read back as its first part. A null
    // text is empty. Wide lengths count characters.
    virtual bool WriteBytes(const void* bytes, unsigned size, unsigned mode) = 0;
    virtual bool WriteString(const char* text, unsigned mode) = 0;
    virtual bool WriteString(const wchar_t* text, unsigned mode) = 0;
    virtual bool WriteString(const YUnicodeString& text, unsigned mode) = 0;
    // Put in by reference at the write cursor, copying no byte; what the chunk there holds past the
    // cursor is dropped, later chunks come behind. Both may belong to this packet already.
    virtual bool WriteBuffer(IBuffer* buffer, unsigned mode) = 0;
    virtual bool WritePacket(IPacket* other, unsigned mode) = 0;  // all of it, whatever it has read

    // Forwards like reading and dropping the bytes, backwards like Unread.
    virtual bool Seek(int bytes) = 0;
    virtual void SetWriteToRead() = 0;  // the next write overwrites what would be read next
    virtual void TruncateAtWrite() = 0;  // the data ends at the write cursor
};
