#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace trotlet::mascot {

// What the mascot wears, as an option set over a 64-bit word. The bit values are stable: they
// are part of the rendered frame's cache key and of saved snapshots.
struct MascotAccessories {
    std::uint64_t rawValue = 0;

    static constexpr std::uint64_t charging = 1;
    static constexpr std::uint64_t backpack = 2;
    static constexpr std::uint64_t nightcap = 4;
    static constexpr std::uint64_t sweat = 8;
    static constexpr std::uint64_t umbrella = 16;
    static constexpr std::uint64_t halloweenHat = 32;
    static constexpr std::uint64_t holidayHat = 64;
    static constexpr std::uint64_t gpuBadge = 128;
    static constexpr std::uint64_t memoryBadge = 256;
    static constexpr std::uint64_t networkBadge = 512;

    constexpr bool contains(std::uint64_t bits) const { return (rawValue & bits) == bits && bits; }
    constexpr void insert(std::uint64_t bits) { rawValue |= bits; }
    constexpr bool isEmpty() const { return rawValue == 0; }
    friend constexpr bool operator==(MascotAccessories, MascotAccessories) = default;

    // The names of the first five bits that are set, in bit order. Hats and badges are
    // decoration only and are not named outside the app.
    std::vector<std::string> dumpNames() const {
        static constexpr std::array<std::string_view, 5> names = {"charging", "backpack",
                                                                  "nightcap", "sweat", "umbrella"};
        std::vector<std::string> out;
        for (size_t i = 0; i < names.size(); ++i)
            if (rawValue & (std::uint64_t{1} << i)) out.emplace_back(names[i]);
        return out;
    }
};

}  // namespace trotlet::mascot
