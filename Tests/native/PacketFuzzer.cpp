// The steps that the fuzzer chooses, a byte or two for each choice; a difference from the model is
// a crash, which keeps the input.
#include "packet/PacketPair.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const unsigned char* const end = data + size;
    const auto take = [&] { return data < end ? *data++ : 0u; };
    const auto choose = [&](unsigned count) {
        const unsigned first = take();
        return (count > 256 ? first << 8 | take() : first) % count;
    };
    if (const char* fault = FindPacketFault(choose, [&] { return data < end; })) {
        std::fprintf(stderr, "%s: packet and model differ\n", fault);
        std::abort();
    }
    return 0;
}
