#pragma once

#include <array>
#include <string_view>

#include "menubar/DisplayUnits.h"

namespace trotlet::settings {

// Enumerations stored in the settings by their raw strings, in case order (see RawEnum.h).
// The reading units live with the number formatting that uses them.
using menubar::NetworkUnit;
using menubar::NetworkUnitNames;
using menubar::TemperatureUnit;
using menubar::TemperatureUnitNames;

enum class AppearancePreference { system, light, dark };
inline constexpr std::array<std::string_view, 3> AppearancePreferenceNames = {"system", "light",
                                                                              "dark"};

// The short reading shown beside the mascot in the tray.
enum class MenuBarTextMetric { none, cpu, memory, gpu, cpuTemperature, network, battery };
inline constexpr std::array<std::string_view, 7> MenuBarTextMetricNames = {
    "none", "cpu", "memory", "gpu", "cpuTemperature", "network", "battery"};

enum class MenuBarTextPosition { left, right };
inline constexpr std::array<std::string_view, 2> MenuBarTextPositionNames = {"left", "right"};

// Which load sets the mascot's running speed.
enum class LoadSource { cpu, gpu, memory, network, busiest };
inline constexpr std::array<std::string_view, 5> LoadSourceNames = {"cpu", "gpu", "memory",
                                                                    "network", "busiest"};

}  // namespace trotlet::settings
