// PacketPair.h: a packet and a model that follows the rules byte by byte, going through the same
// steps. Needs no test framework: native programs and the fuzzer use it as well.
#pragma once

#include <functional>

// Takes steps for as long as goOn says; choose: one of 0 .. count - 1. Null: both agreed to the
// end. Else the name of the step after which they differ, in what it gave or in what they hold.
const char* FindPacketFault(const std::function<unsigned(unsigned count)>& choose,
                            const std::function<bool()>& goOn);
