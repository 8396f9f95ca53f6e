#include "panel/Level.h"

#include <algorithm>

namespace trotlet::panel {

Level loadLevel(double fraction) {
    if (fraction < 0.5) return Level::calm;
    if (fraction < 0.75) return Level::busy;
    if (fraction < 0.9) return Level::hot;
    return Level::critical;
}

Level temperatureLevel(double celsius) {
    if (celsius < 60) return Level::calm;
    if (celsius < 75) return Level::busy;
    if (celsius < 90) return Level::hot;
    return Level::critical;
}

Level batteryLevel(std::int64_t percent, bool charging) {
    if (charging || percent > 20) return Level::calm;
    if (percent > 10) return Level::busy;
    if (percent > 5) return Level::hot;
    return Level::critical;
}

Level pressureLevel(metrics::MemoryPressure pressure) {
    switch (pressure) {
        case metrics::MemoryPressure::warning:
            return Level::hot;
        case metrics::MemoryPressure::critical:
            return Level::critical;
        default:
            return Level::calm;
    }
}

Level thermalLevel(metrics::ThermalState state) {
    switch (state) {
        case metrics::ThermalState::fair:
            return Level::busy;
        case metrics::ThermalState::serious:
            return Level::hot;
        case metrics::ThermalState::critical:
            return Level::critical;
        default:
            return Level::calm;
    }
}

Level freeSpaceLevel(std::int64_t availableBytes, std::int64_t totalBytes) {
    if (totalBytes <= 0) return Level::calm;
    const double free = double(availableBytes) / double(totalBytes);
    constexpr std::int64_t twoGB = 2'000'000'000;
    if (free < 0.05 || availableBytes < twoGB) return Level::critical;
    if (free < 0.10) return Level::hot;
    if (free < 0.20) return Level::busy;
    return Level::calm;
}

Level worst(Level a, Level b) { return std::max(a, b); }

}  // namespace trotlet::panel
