#pragma once

#include <cstdint>
#include <optional>

#include "metrics/MetricEnums.h"

namespace trotlet::panel {

// How worrying a reading is. Every view colours by level, never by raw number, so a hot CPU
// and a nearly empty battery share one colour.
enum class Level { calm, busy, hot, critical };

// A load or fill fraction, 0..1: calm below 50 %, busy below 75 %, hot below 90 %.
Level loadLevel(double fraction);
// Degrees Celsius: calm below 60, busy below 75, hot below 90.
Level temperatureLevel(double celsius);
// Battery charge: calm above 20 % or while charging, busy above 10 %, hot above 5 %.
Level batteryLevel(std::int64_t percent, bool charging);
Level pressureLevel(metrics::MemoryPressure pressure);
Level thermalLevel(metrics::ThermalState state);
// A volume's free space: hot under 10 %, critical under 5 % or under 2 GB.
Level freeSpaceLevel(std::int64_t availableBytes, std::int64_t totalBytes);

Level worst(Level a, Level b);

}  // namespace trotlet::panel
