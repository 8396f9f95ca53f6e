#pragma once

#include <array>
#include <string_view>

namespace trotlet::metrics {

// Deterministic data sets for `--fixture <name>`, in declaration order.
enum class MetricsFixture { normal, idle, busy, panic, hot, lowBattery, offline, desktop, stress };

inline constexpr std::array<std::string_view, 9> MetricsFixtureNames = {
    "normal", "idle", "busy", "panic", "hot", "lowBattery", "offline", "desktop", "stress"};

}  // namespace trotlet::metrics
