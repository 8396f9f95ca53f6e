#pragma once

#include <array>
#include <string_view>

namespace trotlet::metrics {

// Enumerations inside a sample, printed and decoded by their raw strings (the names below, in
// case order). Ordered so that comparisons read naturally: `pressure >= MemoryPressure::warning`.

// Memory pressure from the kernel's pressure stall information. `unknown` when the kernel has
// no PSI (disabled, or an old kernel): the level is then not guessed from free memory.
enum class MemoryPressure { unknown, normal, warning, critical };
inline constexpr std::array<std::string_view, 4> MemoryPressureNames = {"unknown", "normal",
                                                                        "warning", "critical"};

// How close the hottest CPU reading is to the limits the kernel reports for it.
enum class ThermalState { nominal, fair, serious, critical };
inline constexpr std::array<std::string_view, 4> ThermalStateNames = {"nominal", "fair",
                                                                      "serious", "critical"};

enum class InterfaceKind { wired, wifi, cellular, loopback, other };
inline constexpr std::array<std::string_view, 5> InterfaceKindNames = {
    "wired", "wifi", "cellular", "loopback", "other"};

// What a temperature sensor measures, from its hwmon chip or thermal zone type.
enum class SensorGroup { cpu, gpu, soc, memory, storage, battery, board, other };
inline constexpr std::array<std::string_view, 8> SensorGroupNames = {
    "cpu", "gpu", "soc", "memory", "storage", "battery", "board", "other"};

}  // namespace trotlet::metrics
