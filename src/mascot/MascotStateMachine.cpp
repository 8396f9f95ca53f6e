#include "mascot/MascotStateMachine.h"

#include <algorithm>
#include <cmath>

#include "mascot/LoadMapping.h"

namespace trotlet::mascot {
namespace {

double seconds(Timestamp later, Timestamp earlier) {
    return std::chrono::duration<double>(later - earlier).count();
}

bool inRange(const LocalCalendar& c, int month, int firstDay, int lastDay) {
    return c.month && c.day && *c.month == month && *c.day >= firstDay && *c.day <= lastDay;
}

}  // namespace

MascotReadings MascotReadings::from(const metrics::MetricsSnapshot& s, LoadSource source) {
    MascotReadings r;
    r.rawLoad = LoadMapping::load(s, source);
    r.winner = LoadMapping::winningSource(s, source);
    r.online = s.network.online;
    r.temperatureC = s.thermal.cpuC ? s.thermal.cpuC : s.thermal.hottestC();
    if (r.temperatureC && !std::isfinite(*r.temperatureC)) r.temperatureC.reset();
    r.thermalSerious = s.thermal.state >= metrics::ThermalState::serious;
    r.batteryPresent = s.battery.present;
    r.batteryCharging = s.battery.present && s.battery.charging;
    r.batteryPluggedIn = s.battery.present && s.battery.pluggedIn;
    r.batteryPercent = s.battery.percent;
    r.memoryUnderPressure = s.memory.pressure >= metrics::MemoryPressure::warning;
    return r;
}

double MascotStateMachine::smoothingAlpha(double dt) {
    if (!(dt >= 0.05)) return 0.019801326693244747;  // 1 - exp(-0.05 / 2.5)
    return 1 - std::exp(-dt / 2.5);
}

double cyclesPerSecond(MascotMood mood, double load, double sensitivity,
                       const MascotCharacter& character) {
    const double lo = character.cycleRate.lower, hi = character.cycleRate.upper;
    const double x = std::isnan(load) ? 0.0 : std::clamp(load, 0.0, 1.0);
    double curve = std::pow(x, sensitivity);
    curve = std::isnan(curve) ? 0.0 : std::clamp(curve, 0.0, 1.0);
    const double base = lo + curve * (hi - lo);
    switch (mood) {
        case MascotMood::panic: return hi;
        case MascotMood::overheated: return base;
        case MascotMood::lowBattery: return base * 0.6;
        case MascotMood::offline: return std::min(base, lo + 0.4 * (hi - lo));
        case MascotMood::sleeping:
        case MascotMood::sitting: return 0.25;
        case MascotMood::celebrating: return 1.0;
        case MascotMood::running: return base;
    }
    return base;
}

MascotState MascotStateMachine::update(const metrics::MetricsSnapshot& snapshot,
                                       const MascotBehavior& behavior,
                                       const MascotCharacter& character, Timestamp now, double dt,
                                       const LocalCalendar& calendar) {
    return update(MascotReadings::from(snapshot, behavior.speedSource), behavior, character, now,
                  dt, calendar);
}

MascotState MascotStateMachine::update(const MascotReadings& in, const MascotBehavior& behavior,
                                       const MascotCharacter& character, Timestamp now, double dt,
                                       const LocalCalendar& calendar) {
    // Smoothing: the first sample is taken as it is, whatever the interval.
    const double raw = std::isnan(in.rawLoad) ? 0.0 : std::clamp(in.rawLoad, 0.0, 1.0);
    if (firstSample_) {
        smoothedLoad_ = raw;
    } else {
        smoothedLoad_ += smoothingAlpha(dt) * (raw - smoothedLoad_);
    }
    firstSample_ = false;
    const double load = smoothedLoad_;

    // Calm clock, on the smoothed load.
    if (load < 0.04 && !calmSince_) calmSince_ = now;
    if (load > 0.08) calmSince_.reset();
    const double calm = calmSince_ ? seconds(now, *calmSince_) : 0.0;

    // High-load clock and panic, on the raw load: panic reacts to the real spike, not the
    // smoothed echo of it.
    if (raw >= 0.95 && !highLoadSince_) highLoadSince_ = now;
    if (raw < 0.85) highLoadSince_.reset();
    if (!highLoadSince_ || seconds(now, *highLoadSince_) < 10) {
        if (panicActive_) lastPanicEnd_ = now;
        panicActive_ = false;
    } else if (!panicActive_) {
        const bool rearming = lastPanicEnd_ && seconds(now, *lastPanicEnd_) < 30;
        panicActive_ = !rearming;
    }

    // Offline only counts after 3 s, so a Wi-Fi hand-over doesn't open the umbrella.
    if (!in.online) {
        if (!offlineSince_) offlineSince_ = now;
    } else {
        offlineSince_.reset();
    }
    const bool offline = offlineSince_ && seconds(now, *offlineSince_) >= 3;

    // Heat. A serious thermal state holds overheated even when the sensors go quiet.
    const std::optional<double> t = in.temperatureC;
    if (in.thermalSerious || (t && *t >= 108)) {
        isOverheated_ = true;
    } else if (!t || *t < 90) {
        isOverheated_ = false;
    }
    if (t && *t >= 85 && !isSweating_) {
        isSweating_ = !(lastSweatEnd_ && seconds(now, *lastSweatEnd_) < 30);
    } else if (!t || *t < 82) {
        if (isSweating_) lastSweatEnd_ = now;
        isSweating_ = false;
    }

    // Battery.
    if (!in.batteryPresent || in.batteryPluggedIn) {
        isLowBattery_ = false;
    } else if (in.batteryPercent <= 15) {
        isLowBattery_ = true;
    } else if (in.batteryPercent >= 20) {
        isLowBattery_ = false;
    }

    // Away: a user who left a busy machine finds the mascot running at its true pace; one who
    // left a calm machine finds it asleep.
    if (behavior.userIdleSeconds) {
        if (*behavior.userIdleSeconds >= 300) isUserAway_ = true;
        if (*behavior.userIdleSeconds < 2) isUserAway_ = false;
    }
    if (!isUserAway_) {
        awayNap_ = false;
    } else if (load < 0.25) {
        awayNap_ = true;
    } else if (load > 0.32) {
        awayNap_ = false;
    }

    const bool sleepy = behavior.sleepWhenIdle && (calm >= 60 || awayNap_);

    MascotMood mood;
    if (celebrateUntil_ && *celebrateUntil_ > now) {
        mood = MascotMood::celebrating;
    } else if (!behavior.stateReactions) {
        mood = sleepy ? MascotMood::sleeping : MascotMood::running;
    } else if (panicActive_) {
        mood = MascotMood::panic;
    } else if (isOverheated_) {
        mood = MascotMood::overheated;
    } else if (isLowBattery_) {
        mood = MascotMood::lowBattery;
    } else if (offline) {
        mood = MascotMood::offline;
    } else if (sleepy) {
        mood = MascotMood::sleeping;
    } else if (behavior.sleepWhenIdle && calm >= 20) {
        mood = MascotMood::sitting;
    } else {
        mood = MascotMood::running;
    }

    MascotAccessories acc;
    if (behavior.stateReactions) {
        if (in.batteryPresent && in.batteryCharging) acc.insert(MascotAccessories::charging);
        if (in.memoryUnderPressure) acc.insert(MascotAccessories::backpack);
        if (isSweating_ && mood != MascotMood::overheated) acc.insert(MascotAccessories::sweat);
        if (offline) acc.insert(MascotAccessories::umbrella);
        const int hour = calendar.hour;
        const bool nightcap =
            hour < 5 || (mood == MascotMood::sleeping && (hour >= 22 || hour < 7));
        if (nightcap) {
            acc.insert(MascotAccessories::nightcap);
        } else {
            if (inRange(calendar, 10, 24, 31)) acc.insert(MascotAccessories::halloweenHat);
            if (inRange(calendar, 12, 20, 26)) acc.insert(MascotAccessories::holidayHat);
        }
        if (behavior.speedSource == LoadSource::busiest && isRunMood(mood) && load > 0.2) {
            switch (in.winner) {
                case LoadSource::gpu: acc.insert(MascotAccessories::gpuBadge); break;
                case LoadSource::memory: acc.insert(MascotAccessories::memoryBadge); break;
                case LoadSource::network: acc.insert(MascotAccessories::networkBadge); break;
                default: break;
            }
        }
    }

    updateBand(load, character.loadBands, now);
    gait_ = gaitFor(load, gait_);

    state_ = MascotState{
        .mood = mood,
        .accessories = acc,
        .load = load,
        .gait = *gait_,
        .cyclesPerSecond = cyclesPerSecond(mood, load, behavior.speedSensitivity, character),
        .loadBand = loadBand_,
        .userAway = isRunMood(mood) && isUserAway_,
    };
    return state_;
}

void MascotStateMachine::updateBand(double load, const std::vector<double>& t, Timestamp now) {
    const size_t n = std::min<size_t>(t.size(), 255);
    if (n == 0) {
        loadBand_ = 0;
        return;
    }
    size_t c = std::min<size_t>(n, loadBand_);
    while (c < n && load >= t[c] + 0.05) ++c;
    while (c > 0 && load < t[c - 1] - 0.05) --c;
    if (c == loadBand_) return;
    // A change inside the dwell is dropped, not queued: the next sample decides afresh.
    if (bandChangedAt_ && seconds(now, *bandChangedAt_) < 3) return;
    loadBand_ = static_cast<std::uint8_t>(c);
    bandChangedAt_ = now;
}

}  // namespace trotlet::mascot
