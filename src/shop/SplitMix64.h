#pragma once

#include <cstdint>
#include <string>

namespace trotlet::shop {

// SplitMix64: the Golden Fish draws and the ledger's row ids both come from it, so a seeded
// run (the simulator, the tests) is reproducible to the last bit.
struct SplitMix64 {
    static constexpr uint64_t gamma = 0x9E3779B97F4A7C15ULL;

    static constexpr uint64_t mix(uint64_t z) {
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    // A uniform number in [0, 1) from a mixed value.
    static constexpr double unit(uint64_t mixed) {
        return static_cast<double>(mixed >> 11) * 0x1.0p-53;
    }

    uint64_t state = 0;
    uint64_t next() {
        state += gamma;
        return mix(state);
    }
};

// Version-4 style UUID text ("xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx") from a seeded generator.
class IdGenerator {
public:
    explicit IdGenerator(uint64_t seed = 0x5EED5EED5EEDULL) { random_.state = seed; }
    std::string next();

private:
    SplitMix64 random_;
};

}  // namespace trotlet::shop
