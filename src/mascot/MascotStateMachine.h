#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "mascot/Gait.h"
#include "mascot/LocalCalendar.h"
#include "mascot/MascotBehavior.h"
#include "mascot/MascotCharacter.h"
#include "mascot/MascotState.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::mascot {

using metrics::Timestamp;

// What one sample means to the mascot, taken from a snapshot by `readings`. The machine only
// needs these few facts; keeping them apart lets a timeline be scripted in a line per sample.
struct MascotReadings {
    double rawLoad = 0;                 // LoadMapping of the speed source
    LoadSource winner = LoadSource::cpu;  // LoadMapping::winningSource of the speed source
    bool online = true;
    std::optional<double> temperatureC;  // CPU, else the hottest reading
    bool thermalSerious = false;         // thermal state serious or critical
    bool batteryPresent = false;
    bool batteryCharging = false;
    bool batteryPluggedIn = false;
    std::int64_t batteryPercent = 0;
    bool memoryUnderPressure = false;    // pressure known and at least warning

    static MascotReadings from(const metrics::MetricsSnapshot& snapshot, LoadSource source);
};

// Turns samples into the mascot's visible state. A plain value with no timers: every hold,
// dwell and re-arm is measured against the `now` passed in, so it can be stepped on a fake
// clock. The animator owns one for its whole life.
class MascotStateMachine {
public:
    MascotState update(const metrics::MetricsSnapshot& snapshot, const MascotBehavior& behavior,
                       const MascotCharacter& character, Timestamp now, double dt,
                       const LocalCalendar& calendar);
    MascotState update(const MascotReadings& readings, const MascotBehavior& behavior,
                       const MascotCharacter& character, Timestamp now, double dt,
                       const LocalCalendar& calendar);

    // Written by the animator's celebrate(); the machine only reads it.
    void setCelebrateUntil(std::optional<Timestamp> until) { celebrateUntil_ = until; }

    const MascotState& state() const { return state_; }
    double smoothedLoad() const { return smoothedLoad_; }
    bool panicActive() const { return panicActive_; }
    bool isOverheated() const { return isOverheated_; }
    bool isSweating() const { return isSweating_; }
    bool isLowBattery() const { return isLowBattery_; }
    bool isUserAway() const { return isUserAway_; }
    bool awayNap() const { return awayNap_; }
    std::uint8_t loadBand() const { return loadBand_; }
    std::optional<Gait> gait() const { return gait_; }

    // The smoothing step for an interval; short or zero intervals use the 50 ms step so that
    // a burst of updates still moves the load.
    static double smoothingAlpha(double dt);

private:
    void updateBand(double load, const std::vector<double>& thresholds, Timestamp now);

    MascotState state_;
    double smoothedLoad_ = 0;
    bool firstSample_ = true;
    std::optional<Timestamp> calmSince_, highLoadSince_, offlineSince_, celebrateUntil_;
    bool panicActive_ = false;
    std::optional<Timestamp> lastPanicEnd_;
    std::optional<Timestamp> lastSweatEnd_;
    bool isOverheated_ = false, isSweating_ = false, isLowBattery_ = false, isUserAway_ = false,
         awayNap_ = false;
    std::uint8_t loadBand_ = 0;
    std::optional<Timestamp> bandChangedAt_;
    std::optional<Gait> gait_;
};

// The pace for a mood: stride cycles per second from the character's rate range.
double cyclesPerSecond(MascotMood mood, double load, double sensitivity,
                       const MascotCharacter& character);

}  // namespace trotlet::mascot
