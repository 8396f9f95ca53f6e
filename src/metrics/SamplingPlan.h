#pragma once

#include <array>
#include <string_view>

#include "metrics/MetricKinds.h"

namespace trotlet::metrics {

// Who needs readings right now, from least to most demanding. The menu bar alone shows the
// mascot and a short text; with the panel closed the alert rules also watch the volumes; the
// open panel shows everything, faster.
enum class ConsumerTier { menuBarOnly, panelClosed, panelOpen };
inline constexpr std::array<std::string_view, 3> ConsumerTierNames = {"menuBarOnly", "panelClosed",
                                                                      "panelOpen"};

struct SamplingPlan {
    MetricKinds kinds;
    double intervalSec = 0;
    bool fullProcessList = false;
    bool operator==(const SamplingPlan&) const = default;
};

// The kinds and interval for a tier. `updateIntervalSec` is monitoring.updateInterval (used
// while the panel is open, clamped to 0.5..60 s); the closed tiers sample every 3 s (alerts
// watching) or 5 s (menu bar only), never faster than the open panel would. The full process
// list is read only while the Processes screen shows it. `extraKinds` are what the menu bar's
// settings add (the GPU when the mascot follows the GPU or the busiest source, or the ticker
// shows GPU load); the cheap menu-bar kinds are always there.
SamplingPlan planFor(ConsumerTier tier, double updateIntervalSec, bool processListVisible,
                     MetricKinds extraKinds = {});

}  // namespace trotlet::metrics
