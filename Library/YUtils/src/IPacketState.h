// IPacketState.h: the cursors of a packet, saved.
#pragma once

#include "YNpos.h"

#include <windows.h>

#include <unknwn.h>

class IBuffer;

// Where a packet is read and written: the index of a chunk and a byte offset in it, and how many
// bytes may still be read (npos: all there are).
struct YPacketCursors
{
    unsigned readChunk = 0;
    unsigned readOffset = 0;
    unsigned readLimit = npos;
    unsigned writeChunk = 0;
    unsigned writeOffset = 0;
};

// Made by IPacket::SaveState, given back to RestoreState; does not change. The order is binary
// contract.
class IPacketState : public IUnknown
{
public:
    // Of the packet when it was saved; null: it had none. Borrowed from the state.
    virtual IBuffer* GetFirstChunk() const = 0;
    virtual const YPacketCursors& GetCursors() const = 0;
};
