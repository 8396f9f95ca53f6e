#include "shop/GoldenFish.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "shop/JsonFields.h"
#include "shop/SplitMix64.h"

namespace trotlet::shop {

nlohmann::ordered_json GoldenFishState::toJson() const {
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    out["openSeconds"] = openSeconds;
    out["openSecondsUntilNext"] = openSecondsUntilNext;
    out["randomState"] = randomState;
    out["spawnCounter"] = spawnCounter;
    return out;
}

GoldenFishState GoldenFishState::fromJson(const nlohmann::json& object) {
    GoldenFishState s;
    if (!object.is_object()) return s;
    json::read(object, "openSeconds", s.openSeconds);
    json::read(object, "openSecondsUntilNext", s.openSecondsUntilNext);
    json::read(object, "randomState", s.randomState);
    json::read(object, "spawnCounter", s.spawnCounter);
    // A hand-edited threshold could otherwise make fish come every second.
    if (!(s.openSecondsUntilNext >= firstThresholdSeconds && s.openSecondsUntilNext <= 1140))
        s.openSecondsUntilNext = firstThresholdSeconds;
    if (!(s.openSeconds >= 0) || !std::isfinite(s.openSeconds)) s.openSeconds = 0;
    s.spawnCounter = std::max<int64_t>(0, s.spawnCounter);
    return s;
}

double GoldenFishSpawn::xAt(Timestamp t) const {
    const double progress = endsAt > spawnedAt ? std::clamp((t - spawnedAt) / (endsAt - spawnedAt), 0.0, 1.0) : 1.0;
    // From just outside one edge (-0.1) to just outside the other (1.1).
    const double eased = progress - std::sin(2 * std::numbers::pi * progress) / (2 * std::numbers::pi) * 0.3;
    const double x = -0.1 + 1.2 * eased;
    return direction ? x : 1.0 - x;
}

double GoldenFishSpawn::yAt(Timestamp t) const {
    return lane + 0.03 * std::sin((t - spawnedAt) * 3.0);
}

nlohmann::ordered_json GoldenFishSpawn::toJson() const {
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    out["id"] = id;
    out["spawnedAt"] = formatIso8601(spawnedAt);
    out["endsAt"] = formatIso8601(endsAt);
    out["lane"] = lane;
    out["direction"] = direction;
    out["value"] = value;
    return out;
}

std::array<double, 4> drawGoldenFish(uint64_t& state) {
    std::array<double, 4> draws{};
    for (size_t i = 0; i < draws.size(); ++i)
        draws[i] = SplitMix64::unit(SplitMix64::mix(state + SplitMix64::gamma * (i + 1)));
    state += SplitMix64::gamma * 4;
    return draws;
}

}  // namespace trotlet::shop
