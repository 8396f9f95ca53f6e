#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include <nlohmann/json.hpp>

#include "shop/Timestamp.h"

namespace trotlet::shop {

// Kept in the shop file under "goldenFish".
struct GoldenFishState {
    static constexpr double firstThresholdSeconds = 900;

    double openSeconds = 0;  // panel-open time counted since the last spawn
    double openSecondsUntilNext = firstThresholdSeconds;
    uint64_t randomState = 0;
    int64_t spawnCounter = 0;

    nlohmann::ordered_json toJson() const;
    static GoldenFishState fromJson(const nlohmann::json& json);
    friend bool operator==(const GoldenFishState&, const GoldenFishState&) = default;
};

struct GoldenFishSpawn {
    int64_t id = 0;
    Timestamp spawnedAt = 0;
    Timestamp endsAt = 0;
    double lane = 0;        // height of the swim line in the header, [0.18, 0.60)
    bool direction = true;  // true: starts at the leading edge
    int64_t value = 5;

    // Horizontal position as a fraction of the header width at a moment: the starting edge
    // at the spawn, past the other edge at the end, eased so the fish slows mid-header.
    double xAt(Timestamp t) const;
    // A gentle bob around the lane, as a fraction of the header height.
    double yAt(Timestamp t) const;

    nlohmann::ordered_json toJson() const;
    friend bool operator==(const GoldenFishSpawn&, const GoldenFishSpawn&) = default;
};

// The four uniform draws a spawn takes from SplitMix64 at state `s`: mixes of s + γ … s + 4γ.
// The state becomes s + 4γ.
std::array<double, 4> drawGoldenFish(uint64_t& state);

}  // namespace trotlet::shop
