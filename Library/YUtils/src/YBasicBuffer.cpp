#include "YBasicBuffer.h"

YBasicBuffer::YBasicBuffer(unsigned bytes, bool holdsSensitive)
    : block(bytes > 0 ? std::make_unique_for_overwrite<unsigned char[]>(bytes) : nullptr),
      capacity(bytes),
      sensitive(holdsSensitive)
{}

YBasicBuffer::~YBasicBuffer()
{
    if (sensitive && block) {
        ::SecureZeroMemory(block.get(), capacity);
    }
}
