// YPacketState.h: the library's saved packet cursors.
#pragma once

#include "CommonUiApi.h"
#include "IBuffer.h"
#include "IPacketState.h"
#include "YUnknown.h"
#include "YUnknownPointer.h"

class COMMONUI_API YPacketState : public YUnknown<IPacketState>
{
public:
    YPacketState(IBuffer* first, const YPacketCursors& saved);
    YPacketState(const YPacketState&) = delete;
    YPacketState& operator=(const YPacketState&) = delete;

    IBuffer* GetFirstChunk() const override { return firstChunk.Get(); }
    const YPacketCursors& GetCursors() const override { return cursors; }

private:
    ~YPacketState() override;

    YUnknownPointer<IBuffer> firstChunk;  // may be null
    YPacketCursors cursors;
};
