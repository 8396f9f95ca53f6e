#pragma once

#include <array>
#include <string_view>

namespace trotlet::menubar {

// The units the user picks for readings (settings "monitoring.temperatureUnit" and
// "monitoring.networkUnit"), with their raw strings in case order.
enum class TemperatureUnit { celsius, fahrenheit };
inline constexpr std::array<std::string_view, 2> TemperatureUnitNames = {"celsius", "fahrenheit"};

enum class NetworkUnit { bytes, bits };
inline constexpr std::array<std::string_view, 2> NetworkUnitNames = {"bytes", "bits"};

}  // namespace trotlet::menubar
