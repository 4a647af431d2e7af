// PacketPair.h: a packet and a model that follows the rules byte by byte, going through the same
// steps. Needs no test framework: native programs and the fuzzer use it as well.
#pragma once

#include "YPacket.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

using Bytes = std::vector<unsigned char>;

struct ModelChunk
{
    Bytes bytes;
    unsigned capacity;
};

// Chunks are flat vectors, one may stand in the list several times; everything is done by bytes.
class PacketModel
{
public:
    std::vector<std::shared_ptr<ModelChunk>> chunks;
    bool bigEndian = true;
    YPacketCursors cursors;

    Bytes All() const;
    Bytes Rest() const;  // what may be read
    unsigned GetWritePosition();
    void Drop(unsigned bytes);  // reads them
    bool Unread(unsigned bytes);
    void Settle();  // the read cursor onto the next byte, if there is one
    bool TakeChunk(std::shared_ptr<ModelChunk>& chunk, unsigned& offset);
    void Write(const Bytes& bytes, unsigned newCapacity);
    void WriteInteger(std::uint64_t value, unsigned width);
    void WriteTerminator(unsigned mode, unsigned width);
    void Insert(const std::vector<std::shared_ptr<ModelChunk>>& added, unsigned mode);
    void Truncate();
    // A text at the start of what may be read: how many bytes stand before, in and after it.
    bool FindText(unsigned mode, unsigned width, unsigned length, std::uint64_t (&parts)[3]) const;
    std::uint64_t IntegerAt(const Bytes& bytes, std::size_t at, unsigned width) const;

private:
    void ClampWrite();
    void Close();
    void KeepOff(const std::vector<std::shared_ptr<ModelChunk>>& added);
    void InsertAtWrite(const std::vector<std::shared_ptr<ModelChunk>>& added);
};

class PacketPair
{
public:
    using Choice = std::function<unsigned(unsigned count)>;  // one of 0 .. count - 1

    explicit PacketPair(Choice nextChoice) : choose(std::move(nextChoice)) { Renew(); }

    // One operation on both. False: they differ, in what it gave or in what they now hold.
    bool Step();
    const char* GetLastStep() const { return lastStep; }

private:
    using Operation = bool (PacketPair::*)();
    struct NamedOperation
    {
        const char* name;
        Operation run;
    };
    static const NamedOperation operations[];

    void Renew();
    bool Agree();
    bool ChunksAgree();
    Bytes ChooseBytes(unsigned most);
    unsigned ChooseCount();
    unsigned ChooseMode() { return choose(7); }
    bool Insert(bool done, const std::vector<std::shared_ptr<ModelChunk>>& added, unsigned mode);

    template <class Integer>
    bool ReadAs(bool (YPacket::*read)(Integer&));
    template <class Text>
    bool ReadText(unsigned width);

    bool WriteInteger();
    bool WriteText();
    bool WriteWide();
    bool ReadInteger();
    bool ReadString();
    bool ReadWide();
    bool ReadBytes();
    bool TakeChunk();
    bool Unread();
    bool Seek();
    bool Rewind();
    bool Limit();
    bool Save();
    bool Restore();
    bool WriteToRead();
    bool Truncate();
    bool InsertBuffer();
    bool AppendOther();
    bool AppendItself();
    bool ChangeOrder();
    bool ShrinkByOwner();

    Choice choose;
    const char* lastStep = "";
    YUnknownPointer<YPacket> packet;
    PacketModel model;
    YUnknownPointer<IPacketState> state;
    YPacketCursors modelState;
    std::map<std::shared_ptr<ModelChunk>, YUnknownPointer<IBuffer>> buffers;  // that were seen
};
