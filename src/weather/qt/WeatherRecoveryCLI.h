#pragma once

namespace trotlet::weather {

// --weather-recovery: the weather store against a forecast base on a closed local port
// (every fetch fails as offline), then against the working one. Time runs on a harness
// clock, so the whole backoff is checked in seconds: the failure trace with its delays, the
// network watch turning on, the report surviving nothing, then the recovery: one success,
// failures reset, the watch off and the regular refresh scheduled.
struct WeatherRecoveryCLI {
    static int run();
};

}  // namespace trotlet::weather
