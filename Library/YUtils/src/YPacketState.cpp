#include "YPacketState.h"

YPacketState::YPacketState(IBuffer* first, const YPacketCursors& saved)
    : firstChunk(first), cursors(saved)
{}

YPacketState::~YPacketState() = default;
