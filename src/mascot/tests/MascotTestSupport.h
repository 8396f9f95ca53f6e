#pragma once

#include <chrono>

#include "mascot/MascotStateMachine.h"

namespace trotlet::mascot::testing {

// A fixed origin for scripted timelines: 2026-03-10 12:00:00 UTC.
inline Timestamp at(double seconds) {
    return metrics::fromUnixSeconds(1773144000.0 + seconds);
}

// An interval long enough that the smoothed load equals the raw one, for tests about the
// rules after smoothing. The clock (`now`) is passed separately, so holds still count in
// real seconds.
inline constexpr double unsmoothed = 1e6;

inline LocalCalendar noon() { return {3, 10, 12}; }

inline MascotReadings loadOf(double raw) {
    MascotReadings r;
    r.rawLoad = raw;
    return r;
}

}  // namespace trotlet::mascot::testing
