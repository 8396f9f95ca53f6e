#pragma once

#include <cstdint>

#include <nlohmann/json.hpp>

#include "mascot/Gait.h"
#include "mascot/MascotAccessories.h"
#include "mascot/MascotMood.h"

namespace trotlet::mascot {

// What the mascot shows for one sample: the state machine's result and the animator's input.
struct MascotState {
    MascotMood mood = MascotMood::running;
    MascotAccessories accessories;
    double load = 0;  // smoothed, 0...1
    Gait gait = Gait::napping;
    double cyclesPerSecond = 0;
    std::uint8_t loadBand = 0;
    bool userAway = false;

    friend bool operator==(const MascotState&, const MascotState&) = default;

    // Keys in field order; enums as raw strings, accessories as their raw word.
    nlohmann::ordered_json toJson() const;
    static MascotState fromJson(const nlohmann::json& json);
};

}  // namespace trotlet::mascot
