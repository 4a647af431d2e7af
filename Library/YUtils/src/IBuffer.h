// IBuffer.h: a block of bytes, the unit of socket reads and writes and of packet chunks.
#pragma once

#include <windows.h>

#include <unknwn.h>

// The library implements it (YBasicBuffer), hosts may. Data and Capacity stay what they are for the
// object's life, only Size changes and is never above Capacity. Shared by reference: whoever changes
// the bytes or the size changes them for all holders. One thread at a time. The order is binary
// contract.
class IBuffer : public IUnknown
{
public:
    virtual unsigned char* Data() = 0;  // null only without capacity
    virtual unsigned Capacity() const = 0;  // bytes that may be stored
    virtual unsigned Size() const = 0;  // bytes held, from Data() on
    virtual void SetSize(unsigned bytes) = 0;  // commits what was stored, or drops the end
};
