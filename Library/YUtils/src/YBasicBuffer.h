// YBasicBuffer.h: a buffer of fixed capacity on the heap.
#pragma once

#include "CommonUiApi.h"
#include "IBuffer.h"
#include "YUnknown.h"

#include <memory>

// Made empty; what lies past the size has no meaning. Sensitive: the whole block is overwritten
// before its memory is given back. Final, so that a packet reads its own chunks without a call.
class COMMONUI_API YBasicBuffer final : public YUnknown<IBuffer>
{
public:
    explicit YBasicBuffer(unsigned bytes, bool holdsSensitive = false);
    YBasicBuffer(const YBasicBuffer&) = delete;
    YBasicBuffer& operator=(const YBasicBuffer&) = delete;

    unsigned char* Data() override { return block.get(); }
    unsigned Capacity() const override { return capacity; }
    unsigned Size() const override { return size; }
    // More than fits is what fits: a wrong count never makes anyone read past the block.
    void SetSize(unsigned bytes) override { size = bytes < capacity ? bytes : capacity; }

private:
    ~YBasicBuffer() override;

    std::unique_ptr<unsigned char[]> block;  // capacity bytes
    unsigned capacity;
    unsigned size = 0;  // at most capacity
    bool sensitive;
};
