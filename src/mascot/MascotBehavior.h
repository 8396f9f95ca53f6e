#pragma once

#include <optional>

#include "mascot/LoadSource.h"

namespace trotlet::mascot {

// The settings and environment the state machine reacts to, rebuilt for every update from
// "menuBar.speedSource", "menuBar.speedSensitivity", "mascot.stateReactions" and
// "mascot.sleepWhenIdle", plus the user's idle time.
struct MascotBehavior {
    LoadSource speedSource = LoadSource::cpu;
    double speedSensitivity = 0.75;  // exponent of the speed curve
    bool stateReactions = true;
    bool sleepWhenIdle = true;
    std::optional<double> userIdleSeconds;  // absent when the desktop can't tell

    // The Settings slider shows the exponent as a position s = 2 (1 - exponent).
    static double sliderPosition(double exponent) { return 2 * (1 - exponent); }
    static double exponentForSlider(double position) { return 1 - 0.5 * position; }
};

}  // namespace trotlet::mascot
