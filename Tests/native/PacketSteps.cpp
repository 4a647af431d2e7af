// PacketSteps [STEPS [SEED]]: the packet against its model by random steps (default: a million).
#include "packet/PacketPair.h"

#include <cstdio>
#include <cstdlib>
#include <random>

int main(int argc, char** argv)
{
    const unsigned long steps = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1'000'000;
    const unsigned long seed = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1;
    std::mt19937 random(static_cast<unsigned>(seed));
    unsigned long step = 0;
    const char* const fault =
        FindPacketFault([&](unsigned count) { return static_cast<unsigned>(random()) % count; },
                        [&] { return step++ < steps; });
    if (fault) {
        std::printf("step %lu of seed %lu (%s): packet and model differ\n", step, seed, fault);
        return 1;
    }
    std::printf("%lu steps of seed %lu: packet and model agree\n", steps, seed);
    return 0;
}
