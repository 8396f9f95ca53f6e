#pragma once

#include <optional>

#include "metrics/MetricEnums.h"

namespace trotlet::metrics {

// Memory pressure from PSI averages, with separate enter and exit levels so the level does not
// flicker around a threshold. The levels follow GNOME's low-memory-monitor: "some" stall of 10 %
// of the last 10 s enters warning, a "full" stall of 10 % enters critical; each is left when its
// average falls below half its enter level.
struct MemoryPressureLevels {
    double warningEnter = 10, warningExit = 5;    // "some avg10", percent
    double criticalEnter = 10, criticalExit = 5;  // "full avg10", percent
};

class MemoryPressureTracker {
public:
    explicit MemoryPressureTracker(MemoryPressureLevels levels = {}) : levels_(levels) {}

    // Absent averages (no PSI on this kernel) give unknown and forget the previous level.
    MemoryPressure update(std::optional<double> someAvg10, std::optional<double> fullAvg10);

private:
    MemoryPressureLevels levels_;
    MemoryPressure level_ = MemoryPressure::unknown;
};

// The thermal state from how far the hottest CPU reading is below its limit (the kernel's crit,
// else max, else the usual 100 °C junction limit). Entering a state needs the reading to reach
// it; leaving needs it to fall `exitMarginC` below the enter level.
struct ThermalLevels {
    double fairBelowLimitC = 25;     // within 25 °C of the limit
    double seriousBelowLimitC = 12;  // within 12 °C
    double criticalBelowLimitC = 3;  // within 3 °C, or past it
    double exitMarginC = 3;
    double defaultLimitC = 100;
};

class ThermalStateTracker {
public:
    explicit ThermalStateTracker(ThermalLevels levels = {}) : levels_(levels) {}

    // No CPU reading: nominal (nothing says otherwise), and the previous state is forgotten.
    ThermalState update(std::optional<double> cpuC, std::optional<double> limitC);

private:
    ThermalLevels levels_;
    ThermalState state_ = ThermalState::nominal;
};

}  // namespace trotlet::metrics
